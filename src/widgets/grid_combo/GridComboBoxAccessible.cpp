#include "widgets/grid_combo/GridComboBoxAccessible.h"

#include "widgets/grid_combo/GridComboBox.h"

namespace tavrin {

namespace {

QAccessibleInterface* makeInterface(const QString&, QObject* object)
{
    auto* combo = qobject_cast<GridComboBox*>(object);
    return combo ? new GridComboBoxAccessible(combo) : nullptr;
}

} // namespace

GridComboBoxAccessible::GridComboBoxAccessible(GridComboBox* combo)
    : QAccessibleWidget(combo, QAccessible::ComboBox)
{
}

void GridComboBoxAccessible::install()
{
    // Qt takes a factory that it knows already no second time.
    QAccessible::installFactory(makeInterface);
}

QString GridComboBoxAccessible::nameOf(const GridComboBox& combo)
{
    const QWidget* around = combo.parentWidget();
    return combo.accessibleName().isEmpty() && around ? around->accessibleName() : combo.accessibleName();
}

void GridComboBoxAccessible::tellText(GridComboBox& combo)
{
    if (!QAccessible::isActive())
        return;
    QAccessibleValueChangeEvent event(&combo, combo.Text());
    QAccessible::updateAccessibility(&event);
}

void GridComboBoxAccessible::tellExpanded(GridComboBox& combo)
{
    if (!QAccessible::isActive())
        return;
    QAccessible::State changed;
    changed.expanded = true;
    QAccessibleStateChangeEvent event(&combo, changed);
    QAccessible::updateAccessibility(&event);
}

GridComboBox& GridComboBoxAccessible::combo() const
{
    return *static_cast<GridComboBox*>(widget());
}

QString GridComboBoxAccessible::text(QAccessible::Text kind) const
{
    if (kind == QAccessible::Value)
        return combo().Text();
    const QString own = QAccessibleWidget::text(kind);
    return kind == QAccessible::Name && own.isEmpty() ? nameOf(combo()) : own;
}

QAccessible::State GridComboBoxAccessible::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.hasPopup = true;
    state.expandable = true;
    state.expanded = combo().ListIsOpen();
    state.collapsed = !combo().ListIsOpen();
    return state;
}

QStringList GridComboBoxAccessible::actionNames() const
{
    QStringList names = QAccessibleWidget::actionNames();
    if (combo().isEnabled())
        names.prepend(showMenuAction());
    return names;
}

void GridComboBoxAccessible::doAction(const QString& name)
{
    if (name != showMenuAction()) {
        QAccessibleWidget::doAction(name);
        return;
    }
    if (combo().ListIsOpen()) {
        combo().CloseList();
    } else {
        combo().setFocus();
        combo().OpenList();
    }
}

} // namespace tavrin
