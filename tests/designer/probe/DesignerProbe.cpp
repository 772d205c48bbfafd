#include "designer/probe/DesignerProbe.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QDockWidget>
#include <QFile>
#include <QFont>
#include <QJsonDocument>
#include <QLineEdit>
#include <QMessageBox>
#include <QPixmap>
#include <QTreeView>
#include <QTreeWidget>
#include <QUndoStack>
#include <QtDesigner/QDesignerFormEditorInterface>
#include <QtDesigner/QDesignerFormWindowCursorInterface>
#include <QtDesigner/QDesignerFormWindowInterface>
#include <QtDesigner/QDesignerFormWindowManagerInterface>
#include <QtDesigner/QDesignerObjectInspectorInterface>
#include <QtDesigner/QDesignerPropertyEditorInterface>
#include <QtDesigner/QDesignerPropertySheetExtension>
#include <QtDesigner/QDesignerTaskMenuExtension>
#include <QtDesigner/QDesignerWidgetBoxInterface>
#include <QtDesigner/QExtensionManager>

namespace {

constexpr int StepLimit = 30000;
constexpr QSize PictureSize(1560, 900);

QVariant valueFrom(const QJsonObject& edit)
{
    const QString kind = edit.value(QStringLiteral("kind")).toString();
    const QVariant value = edit.value(QStringLiteral("value")).toVariant();
    if (kind == QLatin1String("color"))
        return QColor(value.toString());
    if (kind == QLatin1String("font")) {
        QFont font;
        font.fromString(value.toString());
        return font;
    }
    return kind == QLatin1String("number") ? QVariant(value.toInt()) : value;
}

QJsonArray menuTexts(const QList<QAction*>& actions)
{
    QJsonArray texts;
    for (const QAction* action : actions) {
        if (action->isVisible())
            texts.append(action->text());
    }
    return texts;
}

/// What a tree shows in its first column, with the rows that are open.
void appendTexts(const QAbstractItemModel& model, const QModelIndex& parent, int depth, QJsonArray& texts)
{
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex index = model.index(row, 0, parent);
        texts.append(index.data().toString());
        if (depth > 0)
            appendTexts(model, index, depth - 1, texts);
    }
}

QPalette darkPalette()
{
    QPalette dark;
    dark.setColor(QPalette::Window, QColor(0x2A, 0x2B, 0x2E));
    dark.setColor(QPalette::Base, QColor(0x1E, 0x1F, 0x22));
    dark.setColor(QPalette::Button, QColor(0x3A, 0x3B, 0x3F));
    for (QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        dark.setColor(role, QColor(0xEC, 0xEC, 0xEC));
    dark.setColor(QPalette::PlaceholderText, QColor(0x90, 0x90, 0x90));
    return dark;
}

QAction* actionFor(QKeySequence::StandardKey key)
{
    for (QWidget* widget : QApplication::allWidgets()) {
        for (QAction* action : widget->actions()) {
            if (action->shortcuts().contains(QKeySequence(key)))
                return action;
        }
    }
    return nullptr;
}

} // namespace

void DesignerProbe::initialize(QDesignerFormEditorInterface* core)
{
    m_core = core;
    QFile script(qEnvironmentVariable("TAVRIN_PROBE_SCRIPT"));
    if (!script.open(QIODevice::ReadOnly))
        return; // somebody else's Designer
    m_script = QJsonDocument::fromJson(script.readAll()).object();
    planSteps();
    connect(&m_timer, &QTimer::timeout, this, &DesignerProbe::goOn);
    m_stepTime.start();
    m_timer.start(20);
}

void DesignerProbe::planSteps()
{
    m_steps = {[this] { return isReady(); }, [this] { return notePalette(); }, [this] { return drag(); },
               [this] {
                   planControls();
                   return true;
               }};
}

void DesignerProbe::planControls()
{
    QDesignerFormWindowCursorInterface* cursor = form()->cursor();
    for (int i = 0; i < cursor->widgetCount(); ++i) {
        QWidget* control = cursor->widget(i);
        if (control->inherits("tavrin::UserControl"))
            m_steps.emplace_back([this, control] { return noteControl(control); });
    }
    for (const auto& step : {&DesignerProbe::edit, &DesignerProbe::chooseTable, &DesignerProbe::takePictures,
                             &DesignerProbe::save})
        m_steps.emplace_back([this, step] { return (this->*step)(); });
    m_steps.emplace_back([this] {
        leave({});
        return true;
    });
}

void DesignerProbe::answerBox()
{
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (!box || !box->isVisible())
        return;
    QJsonArray boxes = m_report.value(QStringLiteral("boxes")).toArray();
    boxes.append(QString(box->text() + u' ' + box->informativeText()).trimmed());
    m_report.insert(QStringLiteral("boxes"), boxes);
    box->accept();
}

bool DesignerProbe::drag()
{
    const QString control = m_script.value(QStringLiteral("drag")).toString();
    if (control.isEmpty())
        return true;
    if (!m_drag)
        m_drag = std::make_unique<PaletteDrag>(*m_core, control);
    if (!m_drag->goOn())
        return false;
    m_report.insert(QStringLiteral("dropped"), m_drag->dropped());
    return true;
}

void DesignerProbe::goOn()
{
    answerBox();
    if (m_busy || m_next >= m_steps.size())
        return;
    m_busy = true; // a step may open a dialog
    const Step step = m_steps[m_next];
    if (step()) {
        ++m_next;
        m_stepTime.restart();
    } else if (m_stepTime.elapsed() > StepLimit) {
        leave(QStringLiteral("Step %1 of %2 did not come about").arg(m_next + 1).arg(m_steps.size()));
    }
    m_busy = false;
}

QDesignerFormWindowInterface* DesignerProbe::form() const
{
    return m_core->formWindowManager()->activeFormWindow();
}

QWidget* DesignerProbe::widget(const QString& name) const
{
    return form()->findChild<QWidget*>(name);
}

QDesignerPropertySheetExtension* DesignerProbe::sheetOf(QWidget* control) const
{
    return qt_extension<QDesignerPropertySheetExtension*>(m_core->extensionManager(), control);
}

bool DesignerProbe::isReady()
{
    return form() && form()->mainContainer() && form()->isVisible() && m_core->widgetBox() &&
           m_core->widgetBox()->categoryCount() > 0;
}

bool DesignerProbe::notePalette()
{
    QJsonObject palette;
    const QDesignerWidgetBoxInterface* box = m_core->widgetBox();
    for (int i = 0; i < box->categoryCount(); ++i) {
        const QDesignerWidgetBoxInterface::Category category = box->category(i);
        QJsonArray names;
        for (int j = 0; j < category.widgetCount(); ++j)
            names.append(category.widget(j).name());
        palette.insert(category.name(), names);
    }
    m_report.insert(QStringLiteral("palette"), palette);
    QJsonArray shown;
    for (const auto* tree : box->findChildren<QTreeWidget*>())
        appendTexts(*tree->model(), {}, 0, shown);
    m_report.insert(QStringLiteral("groups"), shown);
    return true;
}

QJsonObject DesignerProbe::sheetReport(QWidget* control) const
{
    const QDesignerPropertySheetExtension* sheet = sheetOf(control);
    QJsonArray names;
    QJsonArray changed;
    QJsonObject types;
    QJsonObject values;
    for (int i = 0; i < sheet->count(); ++i) {
        const QString name = sheet->propertyName(i);
        if (!sheet->isVisible(i))
            continue;
        names.append(name);
        types.insert(name, QString::fromLatin1(sheet->property(i).typeName()));
        values.insert(name, sheet->property(i).toString());
        if (sheet->isChanged(i))
            changed.append(name);
    }
    return {{QStringLiteral("properties"), names},
            {QStringLiteral("types"), types},
            {QStringLiteral("values"), values},
            {QStringLiteral("changed"), changed}};
}

bool DesignerProbe::noteControl(QWidget* control)
{
    QDesignerPropertyEditorInterface* editor = m_core->propertyEditor();
    if (editor->object() != control) {
        form()->clearSelection(false);
        form()->selectWidget(control);
        return false;
    }
    QJsonObject report = sheetReport(control);
    QJsonArray shown;
    for (const QTreeView* tree : editor->findChildren<QTreeView*>())
        appendTexts(*tree->model(), {}, 1, shown);
    report.insert(QStringLiteral("shown"), shown);
    report.insert(QStringLiteral("class"), QString::fromLatin1(control->metaObject()->className()));
    if (auto* menu = qt_extension<QDesignerTaskMenuExtension*>(m_core->extensionManager(), control))
        report.insert(QStringLiteral("menu"), menuTexts(menu->taskActions()));
    QStringList texts;
    for (const QLineEdit* box : control->findChildren<QLineEdit*>())
        texts << box->text();
    if (control->inherits("tavrin::NibrsOffensePicker")) // whose list is of the library's own
        texts << control->property("Text").toString();
    report.insert(QStringLiteral("texts"), texts.join(u' '));
    QJsonObject controls = m_report.value(QStringLiteral("controls")).toObject();
    controls.insert(control->objectName(), report);
    m_report.insert(QStringLiteral("controls"), controls);
    return true;
}

bool DesignerProbe::edit()
{
    QJsonObject edited;
    for (const QJsonValue& entry : m_script.value(QStringLiteral("edits")).toArray()) {
        const QJsonObject edit = entry.toObject();
        const QString name = edit.value(QStringLiteral("object")).toString();
        const QString property = edit.value(QStringLiteral("property")).toString();
        const QString kind = edit.value(QStringLiteral("kind")).toString();
        QWidget* control = widget(name);
        if (kind == QLatin1String("undo"))
            form()->commandHistory()->undo();
        else if (kind == QLatin1String("redo"))
            form()->commandHistory()->redo();
        else if (kind == QLatin1String("reset"))
            form()->cursor()->resetWidgetProperty(control, property);
        else
            form()->cursor()->setWidgetProperty(control, property, valueFrom(edit));
        edited.insert(name, sheetReport(control));
    }
    m_report.insert(QStringLiteral("edited"), edited);
    return true;
}

bool DesignerProbe::chooseTable()
{
    if (!m_script.contains(QStringLiteral("table")))
        return true;
    QWidget* control = widget(QStringLiteral("autoCompleteField"));
    auto* menu = qt_extension<QDesignerTaskMenuExtension*>(m_core->extensionManager(), control);
    QAction* choose = menu ? menu->preferredEditAction() : nullptr;
    if (!choose) // the host names no tables
        return true;
    QTimer answer;
    connect(&answer, &QTimer::timeout, this, [this, &answer] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        auto* search = dialog ? dialog->findChild<QLineEdit*>() : nullptr;
        if (!search)
            return;
        answer.stop();
        const QString picture = m_script.value(QStringLiteral("tablePicture")).toString();
        if (!picture.isEmpty()) {
            search->setText(QStringLiteral("off"));
            dialog->grab().save(picture);
            const QPalette light = QApplication::palette();
            QApplication::setPalette(darkPalette());
            QApplication::processEvents();
            dialog->grab().save(QString(picture).replace(QLatin1String(".png"), QLatin1String("-dark.png")));
            QApplication::setPalette(light);
        }
        search->setText(m_script.value(QStringLiteral("table")).toString());
        dialog->accept();
    });
    answer.start(20);
    choose->trigger();
    const QDesignerPropertySheetExtension* sheet = sheetOf(control);
    m_report.insert(QStringLiteral("chosenTable"),
                    sheet->property(sheet->indexOf(QStringLiteral("TableNo"))).toInt());
    return true;
}

bool DesignerProbe::takePictures()
{
    const QString folder = m_script.value(QStringLiteral("pictures")).toString();
    if (folder.isEmpty())
        return true;
    // The window gets its size in its own time.
    QWidget* window = form()->window();
    if (window->size() != PictureSize) {
        makeRoom(*window);
        window->resize(PictureSize);
        form()->clearSelection(false);
        form()->selectWidget(widget(QStringLiteral("flatEmployeePicker")));
        return false;
    }
    openGroupOnly();
    const auto save = [&folder](QWidget* shown, const char* name) {
        shown->grab().save(folder + u'/' + QLatin1String(name) + QStringLiteral(".png"));
    };
    showOwnProperties();
    QApplication::processEvents();
    save(window, "designer");
    save(m_core->propertyEditor(), "properties");
    save(m_core->widgetBox(), "palette");
    const QPalette light = QApplication::palette();
    QApplication::setPalette(darkPalette());
    QApplication::processEvents();
    save(m_core->widgetBox(), "palette-dark");
    QApplication::setPalette(light);
    return true;
}

void DesignerProbe::makeRoom(QWidget& window)
{
    for (QDockWidget* dock : window.findChildren<QDockWidget*>()) {
        if (dock->isAncestorOf(m_core->widgetBox()) || dock->isAncestorOf(m_core->propertyEditor()) ||
            dock->isAncestorOf(m_core->objectInspector()))
            continue;
        dock->hide();
    }
}

void DesignerProbe::openGroupOnly()
{
    auto* tree = m_core->widgetBox()->findChild<QTreeWidget*>();
    for (int i = 0; i < tree->topLevelItemCount(); ++i) {
        QTreeWidgetItem* item = tree->topLevelItem(i);
        item->setExpanded(item->text(0).startsWith(QLatin1String("Tavrin")));
    }
}

void DesignerProbe::showOwnProperties()
{
    for (QTreeView* tree : m_core->propertyEditor()->findChildren<QTreeView*>()) {
        for (int row = 0; row < tree->model()->rowCount(); ++row) {
            const QModelIndex group = tree->model()->index(row, 0);
            tree->setExpanded(group, !group.data().toString().startsWith(u'Q'));
        }
    }
}

bool DesignerProbe::save()
{
    if (!m_report.contains(QStringLiteral("saved"))) {
        form()->setDirty(true);
        QAction* action = actionFor(QKeySequence::Save);
        if (!action)
            return false;
        action->trigger();
        m_report.insert(QStringLiteral("saved"), true);
    }
    return !form()->isDirty();
}

void DesignerProbe::leave(const QString& fault)
{
    m_timer.stop();
    m_report.insert(QStringLiteral("fault"), fault);
    QFile file(m_script.value(QStringLiteral("report")).toString());
    const bool written = file.open(QIODevice::WriteOnly) && file.write(QJsonDocument(m_report).toJson()) > 0;
    if (form())
        form()->setDirty(false); // nothing is asked at the end
    QCoreApplication::exit(written && fault.isEmpty() ? 0 : 3);
}
