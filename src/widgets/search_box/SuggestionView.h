#pragma once

#include "base/export/Export.h"
#include "base/failure/Event.h"

#include <QAbstractScrollArea>

#include <functional>

namespace tavrin {

class PictureSurface;

/// The rows of a list of suggestions, all of one height, of which only those in view are ever painted.
///
/// Rows are counted from 0. A list without rows shows one grey line that cannot be chosen. The mouse moves
/// the highlight only when it moves itself, not when rows come to lie below it.
class TAVRIN_COMPANION_EXPORT SuggestionView final : public QAbstractScrollArea
{
    Q_OBJECT

public:
    /// Paints one row, or measures it; ends by telling the picture its size. What it throws is reported, once
    /// for these rows, and the row stays as far as it came.
    using RowPainter = std::function<void(PictureSurface& picture, int row, bool highlighted)>;

    SuggestionView(RowPainter painter, QWidget* parent);

    int rowCount() const { return m_rowCount; }
    /// Shows other rows from the first one on. Measures those of the first page for a list of this width.
    void setRows(int count, int width);
    /// -1 for none.
    int highlightedRow() const { return m_highlighted; }
    /// Scrolls so that the row is in view.
    void setHighlightedRow(int row);

    /// Rows of one page.
    int pageRows() const;
    int rowHeight() const { return m_rowHeight; }
    /// The size at which the first page shows whole.
    QSize pageSize() const;
    /// -1 where there is no row.
    int rowAt(const QPoint& place) const;
    /// In the viewport; outside it for a row out of view.
    QRect rowRect(int row) const;
    /// What stands in the row, for those who cannot see it.
    QString rowText(int row) const;

    /// Bears the row.
    Event<int> RowClicked;
    /// The mouse or code has highlighted another row.
    Event<> HighlightChanged;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void drawRow(PictureSurface& picture, int row, bool highlighted) const;
    void measurePage();
    void refreshScrollBar();
    void paintRow(QPainter& painter, int row) const;
    QSizeF textRoom() const;

    RowPainter m_painter;
    int m_rowCount = 0;
    int m_highlighted = -1;
    int m_rowHeight = 1;
    int m_contentWidth = 0;
    int m_width = 0;
    mutable bool m_painterFailed = false;
    QPoint m_mouse; // on the screen, when it last moved
};

} // namespace tavrin
