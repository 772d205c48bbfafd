#include "widgets/search_box/SuggestionView.h"

#include "base/failure/Guard.h"
#include "widgets/drawing/PictureSurface.h"
#include "widgets/search_box/SuggestionViewAccessible.h"

#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>

namespace tavrin {

namespace {

constexpr int VisibleRows = 10;
constexpr int BesideText = 8;
constexpr int AboveText = 3;

QString noMatches()
{
    return SuggestionView::tr("No matches");
}

} // namespace

SuggestionView::SuggestionView(RowPainter painter, QWidget* parent)
    : QAbstractScrollArea(parent)
    , m_painter(std::move(painter))
{
    SuggestionViewAccessible::install();
    setObjectName(QStringLiteral("suggestions"));
    setAccessibleName(tr("Suggestions"));
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setMouseTracking(true);
    viewport()->setBackgroundRole(QPalette::Base);
}

// Rows

void SuggestionView::setRows(int count, int width)
{
    m_rowCount = count;
    m_width = width;
    m_highlighted = -1;
    m_painterFailed = false;
    m_mouse = QCursor::pos(); // it rests, whatever rows come to lie below it
    setAccessibleDescription(count == 0   ? noMatches()
                             : count == 1 ? tr("1 suggestion")
                                          : tr("%1 suggestions").arg(count));
    measurePage();
    refreshScrollBar();
    verticalScrollBar()->setValue(0);
    viewport()->update();
}

QSizeF SuggestionView::textRoom() const
{
    return {std::max(m_width - 2.0 * BesideText, 0.0), static_cast<double>(m_rowHeight)};
}

void SuggestionView::drawRow(PictureSurface& picture, int row, bool highlighted) const
{
    try {
        m_painter(picture, row, highlighted);
    } catch (...) {
        // One report is enough: rows are drawn again and again.
        if (!std::exchange(m_painterFailed, true))
            reportUnhandledError(QStringLiteral("SuggestionView_DrawItem"));
    }
}

void SuggestionView::measurePage()
{
    m_contentWidth = 0;
    m_rowHeight = fontMetrics().height() + 2 * AboveText;
    for (int row = 0; row < std::min(m_rowCount, VisibleRows); ++row) {
        MeasuredPicture picture(font(), viewport(), textRoom());
        const Twips given = picture.Width();
        drawRow(picture, row, false);
        m_rowHeight = std::max(m_rowHeight, toPixels(picture.Height()) + 2 * AboveText);
        if (picture.Width() != given) // a row that leaves it is content with the list's
            m_contentWidth = std::max(m_contentWidth, toPixels(picture.Width()) + 2 * BesideText);
    }
}

int SuggestionView::pageRows() const
{
    return std::max(viewport()->height() / m_rowHeight, 1);
}

QSize SuggestionView::pageSize() const
{
    const int bar = m_rowCount > VisibleRows ? verticalScrollBar()->sizeHint().width() : 0;
    return {m_contentWidth + bar, std::clamp(m_rowCount, 1, VisibleRows) * m_rowHeight};
}

int SuggestionView::rowAt(const QPoint& place) const
{
    if (!viewport()->rect().contains(place))
        return -1;
    const int row = (place.y() + verticalScrollBar()->value()) / m_rowHeight;
    return row < m_rowCount ? row : -1;
}

QRect SuggestionView::rowRect(int row) const
{
    return {0, row * m_rowHeight - verticalScrollBar()->value(), viewport()->width(), m_rowHeight};
}

QString SuggestionView::rowText(int row) const
{
    if (row < 0 || row >= m_rowCount)
        return {};
    MeasuredPicture picture(font(), viewport(), textRoom());
    drawRow(picture, row, false);
    return picture.text();
}

void SuggestionView::setHighlightedRow(int row)
{
    const int valid = row >= 0 && row < m_rowCount ? row : -1;
    if (valid >= 0) {
        QScrollBar& bar = *verticalScrollBar();
        const int top = valid * m_rowHeight;
        bar.setValue(std::clamp(bar.value(), top + m_rowHeight - viewport()->height(), top));
    }
    if (valid == m_highlighted)
        return;
    m_highlighted = valid;
    viewport()->update();
    if (valid >= 0)
        SuggestionViewAccessible::tellHighlight(*this);
    HighlightChanged.raise();
}

void SuggestionView::refreshScrollBar()
{
    QScrollBar& bar = *verticalScrollBar();
    bar.setRange(0, std::max(m_rowCount * m_rowHeight - viewport()->height(), 0));
    bar.setPageStep(viewport()->height());
    bar.setSingleStep(m_rowHeight);
}

// Painting

void SuggestionView::paintRow(QPainter& painter, int row) const
{
    const bool highlighted = row == m_highlighted;
    const QRect place = rowRect(row);
    const QColor ground =
        palette().color(QPalette::Active, highlighted ? QPalette::Highlight : QPalette::Base);
    painter.save();
    painter.setClipRect(place);
    painter.fillRect(place, ground);
    painter.setFont(font());
    painter.setPen(
        palette().color(QPalette::Active, highlighted ? QPalette::HighlightedText : QPalette::Text));
    PaintedPicture picture(painter, place.adjusted(BesideText, AboveText, -BesideText, -AboveText), ground);
    drawRow(picture, row, highlighted);
    painter.restore();
}

void SuggestionView::paintEvent(QPaintEvent* event)
{
    QPainter painter(viewport());
    if (m_rowCount == 0) {
        painter.setPen(palette().color(QPalette::Disabled, QPalette::Text));
        painter.drawText(viewport()->rect().adjusted(BesideText, 0, -BesideText, 0),
                         Qt::AlignLeft | Qt::AlignVCenter, noMatches());
        return;
    }
    const QRect dirty = event->rect();
    const int offset = verticalScrollBar()->value();
    const int last = std::min((dirty.bottom() + offset) / m_rowHeight, m_rowCount - 1);
    for (int row = (dirty.top() + offset) / m_rowHeight; row <= last; ++row)
        paintRow(painter, row);
}

void SuggestionView::resizeEvent(QResizeEvent* event)
{
    QAbstractScrollArea::resizeEvent(event);
    refreshScrollBar();
}

// Mouse

void SuggestionView::mouseMoveEvent(QMouseEvent* event)
{
    const QPoint place = event->globalPosition().toPoint();
    if (std::exchange(m_mouse, place) == place)
        return;
    const int row = rowAt(event->position().toPoint());
    if (row >= 0)
        guard("SuggestionView_MouseMove", [&] { setHighlightedRow(row); });
}

void SuggestionView::mousePressEvent(QMouseEvent* event)
{
    event->accept(); // the release decides; the press must not reach the window below
}

void SuggestionView::mouseReleaseEvent(QMouseEvent* event)
{
    const int row = rowAt(event->position().toPoint());
    if (row >= 0 && event->button() == Qt::LeftButton)
        guard("SuggestionView_Click", [&] { RowClicked.raise(row); });
}

} // namespace tavrin
