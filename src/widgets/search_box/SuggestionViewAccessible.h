#pragma once

#include <QAccessibleWidget>

#include <unordered_map>

namespace tavrin {

class SuggestionView;

/// What a screen reader learns of a `SuggestionView`: a list whose items bear the texts of the rows.
class SuggestionViewAccessible final : public QAccessibleWidget
{
public:
    explicit SuggestionViewAccessible(SuggestionView* view);
    ~SuggestionViewAccessible() override;

    /// Makes the views known to the accessibility of the program; once is enough.
    static void install();
    /// Tells that another row of the view is highlighted.
    static void tellHighlight(SuggestionView& view);

    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* focusChild() const override;

private:
    SuggestionView& view() const;

    mutable std::unordered_map<int, QAccessible::Id> m_rows; // made when they are asked for
};

} // namespace tavrin
