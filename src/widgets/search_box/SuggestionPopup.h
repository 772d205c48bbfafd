#pragma once

#include "base/values/Twips.h"
#include "widgets/search_box/SuggestionView.h"

#include <QObject>
#include <QPointer>
#include <QRect>

#include <vector>

namespace tavrin {

/// The window of a search box's list: where it stands, what is in it, and what closes it.
///
/// It belongs to the box, which must outlive it, and never takes the focus or the keyboard. A press of the
/// mouse elsewhere, a move of what it hangs on and leaving the window ask by `CloseWanted` to be closed.
class SuggestionPopup final : public QObject
{
    Q_OBJECT

public:
    SuggestionPopup(QWidget& box, SuggestionView::RowPainter painter);
    /// A row's click may be at work: its window then ends with the event.
    ~SuggestionPopup() override;

    /// What the list opens below, and is as wide as; the box at first.
    void setAnchor(QWidget* anchor) { m_anchor = anchor; }
    /// 0, at first, is the anchor's width.
    void setWidth(Twips width) { m_width = width; }

    /// Shows so many rows, in the box's font, in a window of `owner`.
    void open(QWidget& owner, int rows);
    void close();
    bool isOpen() const;

    /// -1 for none.
    int highlightedRow() const { return m_view ? m_view->highlightedRow() : -1; }
    void setHighlightedRow(int row) { m_view->setHighlightedRow(row); }
    /// Answers a key of the open list that moves the highlight; false for any other.
    bool moveHighlight(int keyCode);
    void scroll(QEvent* wheel);
    /// What stands in the highlighted row and where it is, or that there is none, for those who cannot see
    /// it.
    QString description() const;

    Event<int> RowClicked;
    Event<> HighlightChanged;
    Event<> CloseWanted;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void make(QWidget& owner);
    const QWidget& anchor() const;
    int width() const;
    void place();
    bool isLeft(QObject* watched, QEvent* event) const;

    QWidget& m_box;
    SuggestionView::RowPainter m_painter;
    Twips m_width = 0;
    QPointer<QWidget> m_anchor;
    // A child of its owner's window, which may die before the box.
    QPointer<QWidget> m_window;
    QPointer<SuggestionView> m_view;
    std::vector<Subscription> m_subscriptions;
    QRect m_place; // of the anchor on the screen when the list opened
    bool m_isClicked = false;
};

} // namespace tavrin
