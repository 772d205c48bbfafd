#pragma once

#include <QAccessibleWidget>

namespace tavrin {

class GridComboBox;

/// What a screen reader learns of a `GridComboBox`: a combo box with the shown text as its value, that can be
/// opened and closed. The list is a table by itself.
class GridComboBoxAccessible final : public QAccessibleWidget
{
public:
    explicit GridComboBoxAccessible(GridComboBox* combo);

    /// Makes the boxes known to the accessibility of the program; once is enough.
    static void install();
    /// The box's own name; without one, that of the control it stands in.
    static QString nameOf(const GridComboBox& combo);
    /// Tells that the box shows another text.
    static void tellText(GridComboBox& combo);
    /// Tells that the list has opened or closed.
    static void tellExpanded(GridComboBox& combo);

    QString text(QAccessible::Text kind) const override;
    QAccessible::State state() const override;
    QStringList actionNames() const override;
    void doAction(const QString& name) override;

private:
    GridComboBox& combo() const;
};

} // namespace tavrin
