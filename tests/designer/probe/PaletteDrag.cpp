#include "designer/probe/PaletteDrag.h"

#include <QListView>
#include <QTreeWidget>
#include <QtDesigner/QDesignerFormEditorInterface>
#include <QtDesigner/QDesignerFormWindowCursorInterface>
#include <QtDesigner/QDesignerFormWindowInterface>
#include <QtDesigner/QDesignerFormWindowManagerInterface>
#include <QtDesigner/QDesignerWidgetBoxInterface>

#include <utility>

namespace {

QString moveTo(QPoint place)
{
    return QStringLiteral("move %1 %2").arg(place.x()).arg(place.y());
}

/// The lists of the palette stand in its tree, one below each group.
QTreeWidgetItem* groupOf(const QTreeWidget& tree, const QListView& list)
{
    for (int i = 0; i < tree.topLevelItemCount(); ++i) {
        QTreeWidgetItem* group = tree.topLevelItem(i);
        for (int j = 0; j < group->childCount(); ++j) {
            if (tree.itemWidget(group->child(j), 0) == &list)
                return group;
        }
    }
    return nullptr;
}

} // namespace

PaletteDrag::PaletteDrag(QDesignerFormEditorInterface& core, const QString& control)
    : m_core(core)
    , m_control(control)
{
}

QDesignerFormWindowInterface& PaletteDrag::form() const
{
    return *m_core.formWindowManager()->activeFormWindow();
}

void PaletteDrag::input(const QStringList& steps)
{
    m_input.start(QStringLiteral("python3"), QStringList{qEnvironmentVariable("TAVRIN_INPUT")} + steps);
}

bool PaletteDrag::showEntry()
{
    const auto* tree = m_core.widgetBox()->findChild<QTreeWidget*>();
    for (QListView* list : m_core.widgetBox()->findChildren<QListView*>()) {
        for (int row = 0; row < list->model()->rowCount(); ++row) {
            const QModelIndex entry = list->model()->index(row, 0);
            QTreeWidgetItem* group = groupOf(*tree, *list);
            if (entry.data().toString() != m_control || !group)
                continue;
            for (int i = 0; i < tree->topLevelItemCount(); ++i)
                tree->topLevelItem(i)->setExpanded(tree->topLevelItem(i) == group);
            const QRect place = list->visualRect(entry);
            if (!list->viewport()->visibleRegion().contains(place.center()))
                return false;
            const QPoint from = list->viewport()->mapToGlobal(place.center());
            return std::exchange(m_from, from) == from; // it has come to rest
        }
    }
    return false;
}

bool PaletteDrag::goOn()
{
    if (m_input.state() != QProcess::NotRunning)
        return false;
    switch (m_phase) {
    case Phase::Show:
        form().window()->resize(1560, 900);
        if (!showEntry())
            return false;
        m_before = widgets();
        m_to = form().mainContainer()->mapToGlobal(QPoint(DropX, DropY));
        m_phase = Phase::Press;
        return false;
    case Phase::Press:
        input({moveTo(m_from), QStringLiteral("down")});
        m_phase = Phase::Move;
        return false;
    case Phase::Move:
        input({moveTo((m_from + m_to) / 2), moveTo(m_to - QPoint(9, 9)), moveTo(m_to)});
        m_phase = Phase::Release;
        return false;
    case Phase::Release:
        input({QStringLiteral("up")});
        m_phase = Phase::Wait;
        return false;
    default:
        return form().cursor()->widgetCount() > m_before.size();
    }
}

QList<QWidget*> PaletteDrag::widgets() const
{
    QList<QWidget*> widgets;
    for (int i = 0; i < form().cursor()->widgetCount(); ++i)
        widgets << form().cursor()->widget(i);
    return widgets;
}

QJsonObject PaletteDrag::dropped() const
{
    QList<QWidget*> added = widgets();
    added.removeIf([this](QWidget* widget) { return m_before.contains(widget); });
    if (added.size() != 1)
        return {};
    const QWidget* widget = added.first();
    const QPoint place = widget->mapTo(form().mainContainer(), QPoint());
    return {{QStringLiteral("name"), widget->objectName()},
            {QStringLiteral("class"), QString::fromLatin1(widget->metaObject()->className())},
            {QStringLiteral("x"), place.x()},
            {QStringLiteral("y"), place.y()},
            {QStringLiteral("width"), widget->width()},
            {QStringLiteral("height"), widget->height()}};
}
