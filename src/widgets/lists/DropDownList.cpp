#include "widgets/lists/DropDownList.h"

#include "widgets/lists/PopupFrame.h"

#include <QAbstractListModel>
#include <QApplication>
#include <QFrame>
#include <QListView>
#include <QScreen>
#include <QStyledItemDelegate>
#include <QTimer>

#include <algorithm>

namespace tavrin {

namespace {

constexpr int RowPadding = 8;     // above and below the text together
constexpr int TextPadding = 24;   // beside the text, and a scroll bar's share
constexpr int MeasuredRows = 200; // so many rows decide how wide the list is

class RowDelegate final : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const override
    {
        return {0, option.fontMetrics.height() + RowPadding};
    }

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        option->palette.setCurrentColorGroup(QPalette::Active); // the list's window is never the active one
        option->state |= QStyle::State_Active;
    }
};

} // namespace

class DropDownList::Model final : public QAbstractListModel
{
public:
    explicit Model(const DropDownList& owner)
        : m_owner(owner)
    {
    }

    int rowCount(const QModelIndex& parent) const override
    {
        return parent.isValid() ? 0 : m_owner.ListCount();
    }
    QVariant data(const QModelIndex& index, int role) const override
    {
        if (role == Qt::DisplayRole || role == Qt::ToolTipRole)
            return m_owner.List(index.row());
        return {};
    }
    void contentChanged()
    {
        beginResetModel();
        endResetModel();
    }

private:
    const DropDownList& m_owner;
};

DropDownList::DropDownList(QWidget* parent)
    : QWidget(parent)
    , m_model(std::make_unique<Model>(*this))
{
    setFocusPolicy(Qt::NoFocus); // Tab goes past it; code may set the focus
}

DropDownList::~DropDownList()
{
    delete m_popup.data(); // before the model that its view shows
}

// Entries

void DropDownList::Clear()
{
    m_entries.clear();
    m_listIndex = -1;
    entriesChanged();
}

void DropDownList::AddItem(const QString& text, qint32 itemData)
{
    m_entries.push_back({text, itemData});
    entriesChanged();
}

void DropDownList::entriesChanged()
{
    update(); // for what shows the selected entry
    // The view learns of any number of changes at once.
    if (!std::exchange(m_viewIsStale, true) && IsOpen())
        QTimer::singleShot(0, this, [this] { refreshPopup(); });
}

QString DropDownList::List(int index) const
{
    return index >= 0 && index < ListCount() ? m_entries[static_cast<std::size_t>(index)].text : QString();
}

qint32 DropDownList::ItemData(int index) const
{
    return index >= 0 && index < ListCount() ? m_entries[static_cast<std::size_t>(index)].data : 0;
}

void DropDownList::setEntryData(int index, qint32 data)
{
    if (index >= 0 && index < ListCount())
        m_entries[static_cast<std::size_t>(index)].data = data;
}

void DropDownList::setEntryText(int index, const QString& text)
{
    if (index < 0 || index >= ListCount())
        return;
    m_entries[static_cast<std::size_t>(index)].text = text;
    entriesChanged();
}

void DropDownList::SetListIndex(int index)
{
    const int valid = index >= 0 && index < ListCount() ? index : -1;
    if (valid == m_listIndex)
        return;
    m_listIndex = valid;
    if (IsOpen())
        refreshPopup();
    Click.raise();
}

// The list's window

void DropDownList::makePopup()
{
    m_popup = newPopupFrame(window());
    m_popup->setObjectName(QStringLiteral("dropDown"));
    m_view = new QListView(m_popup);
    m_view->setObjectName(QStringLiteral("entries"));
    m_view->setAccessibleName(accessibleName());
    m_view->setFrameShape(QFrame::NoFrame);
    m_view->setFocusPolicy(Qt::NoFocus);
    m_view->setUniformItemSizes(true);
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_view->setMouseTracking(true);
    m_view->setItemDelegate(new RowDelegate(m_view));
    m_view->setModel(m_model.get());
    m_view->viewport()->installEventFilter(this);
    fillPopupFrame(m_popup, m_view);
}

void DropDownList::Open()
{
    if (IsOpen() || !isVisible() || !isEnabled())
        return;
    if (m_popup && m_popup->parentWidget() != window()) { // the widget went to another window
        delete m_popup.data();
    }
    if (!m_popup)
        makePopup();
    m_viewIsStale = true;
    refreshPopup();
    qApp->installEventFilter(this);
    m_popup->show();
}

void DropDownList::Close()
{
    if (!IsOpen())
        return;
    qApp->removeEventFilter(this);
    m_popup->hide();
    if (m_box && window()->focusWidget() == this) // the window's, which may be behind another one
        m_box->setFocus();
}

bool DropDownList::IsOpen() const
{
    return m_popup && m_popup->isVisible();
}

void DropDownList::refreshPopup()
{
    if (!m_popup)
        return;
    if (std::exchange(m_viewIsStale, false)) {
        m_view->setFont(font());
        m_model->contentChanged();
        placePopup();
    }
    markSelection();
}

void DropDownList::markSelection()
{
    const QModelIndex current = m_model->index(m_listIndex);
    m_view->setCurrentIndex(current);
    if (current.isValid())
        m_view->scrollTo(current);
    else
        m_view->selectionModel()->clear();
}

int DropDownList::contentWidth() const
{
    const QFontMetrics metrics(font());
    int width = 0;
    for (std::size_t i = 0; i < m_entries.size() && i < MeasuredRows; ++i)
        width = std::max(width, metrics.horizontalAdvance(m_entries[i].text));
    return width + TextPadding;
}

void DropDownList::placePopup()
{
    const int rows = std::clamp(ListCount(), 1, VisibleRows);
    const int frame = 2 * (static_cast<QFrame*>(m_popup.data())->frameWidth() + 1);
    const int rowHeight = QFontMetrics(m_view->font()).height() + RowPadding;
    const QSize wanted(std::max(width(), contentWidth()), rows * rowHeight + frame);
    m_popup->setGeometry(
        popupPlace(placeOnScreen(*this), wanted, rowHeight + frame, screen()->availableGeometry()));
}

} // namespace tavrin
