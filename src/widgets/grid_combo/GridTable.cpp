#include "widgets/grid_combo/GridTable.h"

#include "base/failure/Guard.h"

#include <QAbstractTableModel>
#include <QHeaderView>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>

#include <algorithm>

namespace tavrin {

namespace {

constexpr int VisibleRows = 12;
constexpr int RowPadding = 6;     // above and below the text together
constexpr int TextPadding = 18;   // beside the text of a column
constexpr int BesideNothing = 4;  // before the line of an empty list
constexpr int MeasuredRows = 200; // so many rows, evenly spread, decide how wide a column is
constexpr float Faded = 0.75F;

class RowDelegate final : public QStyledItemDelegate
{
public:
    explicit RowDelegate(GridTable& table)
        : QStyledItemDelegate(&table)
        , m_table(table)
    {
    }

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        option->palette.setCurrentColorGroup(QPalette::Active); // the list's window is never the active one
        option->state |= QStyle::State_Active;
        option->state &= ~(QStyle::State_HasFocus | QStyle::State_MouseOver);
        const Color color = m_table.styleOf(index.row() + 1).ForeColor;
        if (color == SystemColor::WindowText)
            return;
        option->palette.setColor(QPalette::Active, QPalette::Text, color.resolve(m_table.palette()));
        // On the marked row the colour itself might not be readable.
        QColor marked = option->palette.color(QPalette::Active, QPalette::HighlightedText);
        marked.setAlphaF(Faded);
        option->palette.setColor(QPalette::Active, QPalette::HighlightedText, marked);
    }

private:
    const GridTable& m_table;
};

} // namespace

class GridTable::Model final : public QAbstractTableModel
{
public:
    explicit Model(const GridTableSource& source)
        : m_source(source)
    {
    }

    int rowCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : m_rowCount; }
    int columnCount(const QModelIndex& parent) const override
    {
        return parent.isValid() ? 0 : m_source.columnCount();
    }
    QVariant data(const QModelIndex& index, int role) const override
    {
        // Rows that are gone already, and the view has not heard of it, show nothing.
        if (role != Qt::DisplayRole || index.row() >= m_source.rowCount())
            return {};
        return m_source.text(index.row() + 1, index.column());
    }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override
    {
        if (orientation == Qt::Horizontal && role == Qt::DisplayRole)
            return m_source.caption(section);
        if (orientation == Qt::Horizontal && role == Qt::TextAlignmentRole)
            return QVariant::fromValue<Qt::Alignment>(Qt::AlignLeft | Qt::AlignVCenter);
        return {};
    }
    void contentChanged()
    {
        beginResetModel();
        m_rowCount = m_source.rowCount();
        endResetModel();
    }

private:
    const GridTableSource& m_source;
    int m_rowCount = 0;
};

GridTable::GridTable(const GridTableSource& source, QWidget* parent)
    : QTableView(parent)
    , m_source(source)
    , m_model(std::make_unique<Model>(source))
{
    setObjectName(QStringLiteral("rows"));
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setEditTriggers(NoEditTriggers);
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
    setShowGrid(false);
    setWordWrap(false);
    setAutoScroll(false); // a row that the mouse marks stays where it is
    setTabKeyNavigation(false);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerItem);
    setItemDelegate(new RowDelegate(*this));
    viewport()->setMouseTracking(true);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setMinimumSectionSize(1);
    QHeaderView& header = *horizontalHeader();
    header.setSectionsClickable(false);
    header.setHighlightSections(false);
    header.setSectionResizeMode(QHeaderView::Fixed);
    header.setStretchLastSection(true);
    header.setFocusPolicy(Qt::NoFocus);
    setModel(m_model.get());
}

GridTable::~GridTable()
{
    setModel(nullptr);
}

// Rows

void GridTable::refresh()
{
    m_styles.clear();
    verticalHeader()->setDefaultSectionSize(rowHeight());
    m_model->contentChanged();
    for (int column = 0; column < m_source.columnCount(); ++column)
        setColumnHidden(column, !m_source.isShown(column));
    fitColumns();
}

void GridTable::fitColumns()
{
    const QFontMetrics metrics(font());
    const QFontMetrics headerMetrics(horizontalHeader()->font());
    const int step = std::max(m_source.rowCount() / MeasuredRows, 1);
    m_contentWidth = 0;
    for (int column = 0; column < m_source.columnCount(); ++column) {
        if (!m_source.isShown(column))
            continue;
        int width = headerMetrics.horizontalAdvance(m_source.caption(column));
        for (int row = 1; row <= m_source.rowCount(); row += step)
            width = std::max(width, metrics.horizontalAdvance(m_source.text(row, column)));
        setColumnWidth(column, width + TextPadding);
        m_contentWidth += width + TextPadding;
    }
}

int GridTable::markedRow() const
{
    return currentIndex().isValid() ? currentIndex().row() + 1 : 0;
}

void GridTable::setMarkedRow(int row)
{
    if (row < 1 || row > m_model->rowCount({})) {
        if (markedRow() == 0)
            return;
        selectionModel()->clear();
        MarkChanged.raise();
        return;
    }
    int column = 0; // an index in a hidden column cannot be scrolled to
    while (column < m_source.columnCount() - 1 && isColumnHidden(column))
        ++column;
    const QModelIndex index = m_model->index(row - 1, column);
    const bool isAnother = row != markedRow();
    setCurrentIndex(index);
    scrollTo(index);
    if (isAnother)
        MarkChanged.raise();
}

void GridTable::centreMarkedRow()
{
    if (markedRow() > 0)
        scrollTo(currentIndex(), PositionAtCenter);
}

int GridTable::pageRows() const
{
    return std::max(viewport()->height() / rowHeight(), 1);
}

int GridTable::rowHeight() const
{
    return QFontMetrics(font()).height() + RowPadding;
}

int GridTable::headerHeight() const
{
    return horizontalHeader()->sizeHint().height();
}

QSize GridTable::pageSize() const
{
    const int rows = m_model->rowCount({});
    const int bar = rows > VisibleRows ? verticalScrollBar()->sizeHint().width() : 0;
    return {m_contentWidth + bar, std::clamp(rows, 1, VisibleRows) * rowHeight() + headerHeight()};
}

const GridRowStyle& GridTable::styleOf(int row) const
{
    const auto known = m_styles.find(row);
    if (known != m_styles.end())
        return known->second;
    return m_styles.emplace(row, row <= m_source.rowCount() ? m_source.style(row) : GridRowStyle())
        .first->second;
}

void GridTable::paintEvent(QPaintEvent* event)
{
    m_styles.clear();
    QTableView::paintEvent(event);
    m_styles.clear();
    if (m_model->rowCount({}) > 0)
        return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::Disabled, QPalette::Text));
    painter.drawText(viewport()->rect().adjusted(BesideNothing, 0, -BesideNothing, 0),
                     Qt::AlignLeft | Qt::AlignVCenter, tr("No entries"));
}

// Mouse

int GridTable::rowAtPlace(const QPoint& place) const
{
    return viewport()->rect().contains(place) ? rowAt(place.y()) + 1 : 0;
}

void GridTable::showEvent(QShowEvent* event)
{
    QTableView::showEvent(event);
    m_mouse = QCursor::pos(); // a mouse that rests here takes nothing
}

void GridTable::mouseMoveEvent(QMouseEvent* event)
{
    const QPoint place = event->globalPosition().toPoint();
    if (std::exchange(m_mouse, place) == place)
        return;
    const int row = rowAtPlace(event->position().toPoint());
    if (row > 0)
        guard("GridTable_MouseMove", [&] { setMarkedRow(row); });
}

void GridTable::mousePressEvent(QMouseEvent* event)
{
    event->accept(); // the release decides; the press must not reach the window below
}

void GridTable::mouseReleaseEvent(QMouseEvent* event)
{
    const int row = rowAtPlace(event->position().toPoint());
    if (row > 0 && event->button() == Qt::LeftButton)
        guard("GridTable_Click", [&] { RowClicked.raise(row); });
}

void GridTable::mouseDoubleClickEvent(QMouseEvent* event)
{
    event->accept();
}

} // namespace tavrin
