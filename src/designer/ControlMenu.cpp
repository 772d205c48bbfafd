#include "designer/ControlMenu.h"

#include "designer/CodeTableDialog.h"

#include <QAction>
#include <QMenu>
#include <QPixmap>
#include <QtDesigner/QDesignerFormEditorInterface>
#include <QtDesigner/QDesignerFormWindowCursorInterface>
#include <QtDesigner/QDesignerFormWindowInterface>
#include <QtDesigner/QDesignerPropertyEditorInterface>

namespace tavrin::designer {

namespace {

struct NamedColor
{
    const char* name;
    Color color;
};

constexpr NamedColor SystemColors[]{{"Window Background", SystemColor::WindowBackground},
                                    {"Window Text", SystemColor::WindowText},
                                    {"Button Face", SystemColor::ButtonFace},
                                    {"Button Text", SystemColor::ButtonText},
                                    {"Gray Text", SystemColor::GreyText},
                                    {"Highlight", SystemColor::Highlight},
                                    {"Highlight Text", SystemColor::HighlightText},
                                    {"Tooltip Background", SystemColor::TooltipBackground},
                                    {"Tooltip Text", SystemColor::TooltipText}};

} // namespace

ControlMenu::ControlMenu(UserControl& control, QObject* parent)
    : QObject(parent)
    , m_control(control)
{
    for (const char* property : {"TableNo", "TableNumber"})
        addTableAction(property);
    for (const char* property : {"BackColor", "ForeColor"})
        addColorMenu(property);
}

ControlMenu::~ControlMenu() = default;

void ControlMenu::addTableAction(const char* property)
{
    if (m_control.metaObject()->indexOfProperty(property) < 0)
        return;
    m_chooseTable = new QAction(QStringLiteral("Choose Code Table..."), this);
    const QString name = QString::fromLatin1(property);
    connect(m_chooseTable, &QAction::triggered, this, [this, name] { chooseTable(name); });
    m_actions << m_chooseTable;
}

void ControlMenu::addColorMenu(const char* property)
{
    if (m_control.metaObject()->indexOfProperty(property) < 0)
        return;
    const QString name = QString::fromLatin1(property);
    const auto& menu = m_menus.emplace_back(std::make_unique<QMenu>(name + QStringLiteral(" From System")));
    for (const NamedColor& entry : SystemColors) {
        QPixmap sample(16, 16);
        sample.fill(QVariant::fromValue(entry.color).value<QColor>());
        QAction* action = menu->addAction(QIcon(sample), QString::fromLatin1(entry.name));
        const int number = static_cast<int>(entry.color.value());
        action->setCheckable(true);
        action->setData(number);
        connect(action, &QAction::triggered, this, [this, name, number] { put(name, number); });
    }
    menu->menuAction()->setData(name);
    m_actions << menu->menuAction();
}

bool ControlMenu::offersTable() const
{
    if (m_chooseTable) // which nobody can trigger while it is hidden
        m_chooseTable->setVisible(!installedCodeTables().isEmpty());
    return m_chooseTable && m_chooseTable->isVisible();
}

QList<QAction*> ControlMenu::taskActions() const
{
    offersTable();
    for (const auto& menu : m_menus)
        markColor(*menu);
    return m_actions;
}

QAction* ControlMenu::preferredEditAction() const
{
    return offersTable() ? m_chooseTable : nullptr;
}

void ControlMenu::markColor(const QMenu& menu) const
{
    const QByteArray property = menu.menuAction()->data().toByteArray();
    const auto color = m_control.property(property.constData()).value<Color>();
    for (QAction* action : menu.actions())
        action->setChecked(color.isSystem() && action->data().toInt() == static_cast<int>(color.value()));
}

void ControlMenu::chooseTable(const QString& property)
{
    CodeTableDialog dialog(installedCodeTables(), m_control.property(property.toLatin1().constData()).toInt(),
                           m_control.window());
    if (dialog.exec() == QDialog::Accepted && dialog.chosenTable())
        put(property, *dialog.chosenTable());
}

void ControlMenu::put(const QString& property, const QVariant& value)
{
    auto* form = QDesignerFormWindowInterface::findFormWindow(&m_control);
    if (!form)
        return;
    form->cursor()->setWidgetProperty(&m_control, property, value);
    // A system colour has another editor than a fixed one.
    QDesignerPropertyEditorInterface* editor = form->core()->propertyEditor();
    if (editor && editor->object() == &m_control)
        editor->setObject(&m_control);
}

} // namespace tavrin::designer
