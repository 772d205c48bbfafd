#include "widgets/grid_combo/GridComboBox.h"

#include "base/failure/Error.h"
#include "base/failure/Guard.h"
#include "base/values/Variant.h"
#include "widgets/drawing/ConstituentLook.h"
#include "widgets/drawing/IconGlyphs.h"
#include "widgets/grid_combo/GridComboBoxAccessible.h"
#include "widgets/lists/PopupFrame.h"

#include <QApplication>
#include <QFrame>
#include <QHeaderView>
#include <QScreen>
#include <QStyleOptionFrame>
#include <QStylePainter>

#include <algorithm>

namespace tavrin {

namespace {

constexpr int BesideText = 5;
constexpr int AboveText = 4; // and below
constexpr int FrameLine = 2; // the frame's line and the margin, on either side of the list
constexpr float Faded = 0.6F;

} // namespace

// Columns

QVariant GridColumn::Value() const
{
    return m_combo->cell(m_combo->m_row, m_index);
}

QString GridColumn::CellText(const QVariant& bookmark) const
{
    return IsNull(bookmark) ? QString() : m_combo->text(ToLong(bookmark), m_index);
}

GridColumn& GridComboBox::Columns(int index)
{
    if (index < 0 || index >= columnCount())
        throw Error(QStringLiteral("The grid has no column %1").arg(index));
    return m_columns.at(static_cast<std::size_t>(index));
}

QString GridComboBox::caption(int column) const
{
    return m_columns.at(static_cast<std::size_t>(column)).Caption();
}

bool GridComboBox::isShown(int column) const
{
    return m_columns.at(static_cast<std::size_t>(column)).Visible();
}

QString GridComboBox::text(int row, int column) const
{
    return ToText(cell(row, column));
}

GridRowStyle GridComboBox::style(int row) const
{
    GridRowStyle style;
    try {
        const_cast<GridComboBox*>(this)->FetchRowStyle.raise(row, style);
    } catch (...) {
        // One report is enough: rows are painted again and again.
        if (!std::exchange(m_styleFailed, true))
            reportUnhandledError(QStringLiteral("GridComboBox_FetchRowStyle"));
    }
    return style;
}

GridComboBox::GridComboBox(QWidget* parent)
    : QWidget(parent)
    , m_font([this] {
        QWidget::setFont(wholeFont(m_font));
        resize(width(), sizeHint().height());
        updateGeometry();
    })
{
    GridComboBoxAccessible::install();
    for (int i = 0; i < columnCount(); ++i) {
        m_columns.at(static_cast<std::size_t>(i)).m_combo = this;
        m_columns.at(static_cast<std::size_t>(i)).m_index = i;
    }
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAttribute(Qt::WA_Hover);
    resize(sizeHint());
}

GridComboBox::~GridComboBox()
{
    if (m_table)
        m_table->setModel(nullptr); // its rows live here
    m_tableSubscriptions.clear();
    endPopup(m_popup, m_isClicked);
}

// Rows

GridArray& GridComboBox::Array()
{
    if (!m_array)
        throw Error(QStringLiteral("The grid has no array"));
    return *m_array;
}

const GridArray& GridComboBox::Array() const
{
    return const_cast<GridComboBox*>(this)->Array();
}

QVariant GridComboBox::cell(int row, int column) const
{
    return hasRow(row) ? m_array->Value(row, column) : Null();
}

GridArray::Row GridComboBox::cellsOf(int row) const
{
    GridArray::Row cells;
    for (int column = 0; column < columnCount(); ++column)
        cells.at(static_cast<std::size_t>(column)) = cell(row, column);
    return cells;
}

void GridComboBox::ResetArray()
{
    CloseList();
    m_array.emplace();
    m_styleFailed = false;
    if (m_told)
        m_told->isMoved = true;
}

void GridComboBox::RemoveArray()
{
    CloseList();
    m_array.reset();
    SetBookmark(Null());
}

void GridComboBox::Rebind()
{
    if (m_told)
        m_told->isMoved = true;
    if (rowCount() > 0 && !hasRow(m_row))
        m_row = 1;
    showRow();
    if (ListIsOpen()) {
        m_table->refresh();
        placeList();
        m_table->setMarkedRow(m_row);
    }
    if (!m_told)
        tellRow();
}

QVariant GridComboBox::Bookmark() const
{
    return hasRow(m_row) ? QVariant(m_row) : Null();
}

void GridComboBox::SetBookmark(const QVariant& row)
{
    m_row = IsNull(row) ? 0 : ToLong(row);
    showRow();
    if (ListIsOpen())
        m_table->setMarkedRow(m_row);
    tellRow();
}

void GridComboBox::SetText(const QString& text)
{
    m_text = text;
    update();
    GridComboBoxAccessible::tellText(*this);
}

void GridComboBox::showRow()
{
    if (m_row == 0 || hasRow(m_row))
        SetText(text(m_row, 0));
}

bool GridComboBox::isTold(int row) const
{
    if (!m_told)
        return false;
    if (!m_told->isMoved)
        return m_told->row == row;
    const GridArray::Row cells = cellsOf(row);
    return std::equal(cells.begin(), cells.end(), m_told->cells.begin(), SameValue);
}

void GridComboBox::tellRow()
{
    if (m_row == 0) {
        if (std::exchange(m_told, std::nullopt))
            RowChange.raise();
        return;
    }
    if (!hasRow(m_row))
        return;
    const bool isAnother = !isTold(m_row);
    m_told = ToldRow{m_row, cellsOf(m_row), false};
    if (isAnother)
        RowChange.raise();
}

// The list's window

void GridComboBox::makeList()
{
    if (m_popup && m_popup->parentWidget() == window())
        return;
    delete m_popup.data(); // the box has gone to another window
    m_popup = newPopupFrame(window());
    m_popup->setObjectName(QStringLiteral("gridList"));
    m_table = new GridTable(*this, m_popup);
    m_tableSubscriptions.clear();
    m_tableSubscriptions.push_back(m_table->RowClicked.subscribe([this](int row) {
        const PopupInUse inUse(this, m_isClicked); // a follower may delete the box
        take(row);
    }));
    m_tableSubscriptions.push_back(m_table->MarkChanged.subscribe([this] { markChanged(); }));
    fillPopupFrame(m_popup, m_table);
}

void GridComboBox::OpenList()
{
    if (ListIsOpen() || !isVisible() || !isEnabled())
        return;
    makeList();
    m_typed.clear();
    m_table->setFont(font());
    m_table->horizontalHeader()->setFont(font());
    m_table->setAccessibleName(GridComboBoxAccessible::nameOf(*this));
    m_table->refresh();
    placeList();
    qApp->installEventFilter(this);
    m_popup->show();
    m_table->setMarkedRow(m_row);
    m_table->centreMarkedRow();
    markChanged();
    update();
    GridComboBoxAccessible::tellExpanded(*this);
}

void GridComboBox::CloseList()
{
    if (!ListIsOpen())
        return;
    qApp->removeEventFilter(this);
    m_popup->hide();
    m_typed.clear();
    setAccessibleDescription(QString());
    update();
    GridComboBoxAccessible::tellExpanded(*this);
}

bool GridComboBox::ListIsOpen() const
{
    return m_popup && m_popup->isVisible();
}

void GridComboBox::placeList()
{
    m_place = placeOnScreen(*this);
    const QSize page = m_table->pageSize();
    const QSize wanted(std::max(page.width() + 2 * FrameLine, width()), page.height() + 2 * FrameLine);
    const int least = m_table->headerHeight() + m_table->rowHeight() + 2 * FrameLine;
    m_popup->setGeometry(popupPlace(m_place, wanted, least, screen()->availableGeometry()));
}

void GridComboBox::markChanged()
{
    const int row = m_table->markedRow();
    if (row == 0) {
        setAccessibleDescription(QString());
        return;
    }
    QStringList texts;
    for (int column = 0; column < columnCount(); ++column) {
        if (isShown(column) && !text(row, column).isEmpty())
            texts << text(row, column);
    }
    setAccessibleDescription(
        tr("%1, %2 of %3").arg(texts.join(QStringLiteral(", "))).arg(row).arg(rowCount()));
}

// Looks

void GridComboBox::SetBackColor(Color color)
{
    m_backColor = color;
    update();
}

void GridComboBox::SetForeColor(Color color)
{
    m_foreColor = color;
    update();
}

QSize GridComboBox::sizeHint() const
{
    const int line = fontMetrics().height();
    return {12 * line, line + 2 * AboveText};
}

QSize GridComboBox::minimumSizeHint() const
{
    const QSize wanted = sizeHint();
    return {3 * wanted.height(), wanted.height()};
}

void GridComboBox::paintEvent(QPaintEvent*)
{
    QStylePainter painter(this);
    QStyleOptionFrame frame;
    frame.initFrom(this);
    frame.lineWidth = QWidget::style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &frame, this);
    frame.state |= QStyle::State_Sunken;
    if (ListIsOpen())
        frame.state |= QStyle::State_HasFocus;
    if (isEnabled() || m_backColor != SystemColor::WindowBackground)
        frame.palette.setColor(QPalette::Base, shownColor(*this, m_backColor));
    painter.drawPrimitive(QStyle::PE_PanelLineEdit, frame);

    const int line = fontMetrics().height();
    QColor fore = shownColor(*this, m_foreColor);
    QColor sign = fore;
    sign.setAlphaF(isEnabled() ? Faded : Faded / 2);
    if (!isEnabled())
        fore = m_foreColor == SystemColor::WindowText ? palette().color(QPalette::Disabled, QPalette::Text)
                                                      : sign;
    const QRect room = rect().adjusted(BesideText, 0, -(line + BesideText), 0);
    painter.setPen(fore);
    painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     fontMetrics().elidedText(m_text, Qt::ElideRight, room.width()));
    paintIconGlyph(painter, DropDownGlyph,
                   QRectF(width() - line - BesideText / 2.0, (height() - line) / 2.0, line, line), sign);
}

} // namespace tavrin
