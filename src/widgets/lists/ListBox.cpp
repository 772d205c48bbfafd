#include "widgets/lists/ListBox.h"

#include "base/failure/Guard.h"

#include <QAbstractListModel>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QStyledItemDelegate>
#include <QTextDocument>
#include <QToolTip>

namespace tavrin {

namespace {

constexpr int RowPadding = 5; // above and below the text together

/// Rows as wide as the list and all of one height.
class RowDelegate final : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const override
    {
        return {0, option.fontMetrics.height() + RowPadding};
    }
};

} // namespace

class ListBox::Model final : public QAbstractListModel
{
public:
    explicit Model(ListBox& owner)
        : QAbstractListModel(&owner)
        , m_owner(owner)
    {
    }

    int rowCount(const QModelIndex& parent) const override
    {
        return parent.isValid() ? 0 : m_owner.ListCount();
    }
    QVariant data(const QModelIndex& index, int role) const override
    {
        const QString text = m_owner.List(index.row());
        if (role == Qt::DisplayRole)
            return text;
        if (role == Qt::ToolTipRole)
            return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text) : text;
        return {};
    }

    void clear()
    {
        beginResetModel();
        m_owner.m_entries.clear();
        endResetModel();
    }
    void append(const QString& text, qint32 data)
    {
        beginInsertRows({}, m_owner.ListCount(), m_owner.ListCount());
        m_owner.m_entries.push_back({text, data});
        endInsertRows();
    }
    void remove(int row)
    {
        beginRemoveRows({}, row, row);
        m_owner.m_entries.erase(m_owner.m_entries.begin() + row);
        endRemoveRows();
    }

private:
    ListBox& m_owner;
};

ListBox::ListBox(QWidget* parent)
    : QListView(parent)
    , m_model(new Model(*this))
{
    setModel(m_model);
    setItemDelegate(new RowDelegate(this));
    setUniformItemSizes(true);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTextElideMode(Qt::ElideRight);
    connectGuarded(this, &QAbstractItemView::clicked, this, "ListBox_Click", [this] {
        if (!m_pressRaised) // a click on the selected entry
            Click.raise();
    });
}

ListBox::~ListBox()
{
    m_byCode = true; // nobody hears of what goes while the list dies
}

void ListBox::SetMultiSelect(bool several)
{
    setSelectionMode(several ? QAbstractItemView::ExtendedSelection : QAbstractItemView::SingleSelection);
}

// Entries

void ListBox::Clear()
{
    const QScopedValueRollback byCode(m_byCode, true);
    m_model->clear();
}

void ListBox::AddItem(const QString& text, qint32 itemData)
{
    m_model->append(text, itemData);
}

void ListBox::RemoveItem(int index)
{
    if (!isInside(index))
        return;
    const QScopedValueRollback byCode(m_byCode, true);
    const QModelIndex row = modelIndex(index);
    // Qt would select a neighbour in its place.
    selectionModel()->select(row, QItemSelectionModel::Deselect);
    if (currentIndex() == row)
        selectionModel()->clearCurrentIndex();
    m_model->remove(index);
}

QString ListBox::List(int index) const
{
    return isInside(index) ? m_entries[static_cast<std::size_t>(index)].text : QString();
}

qint32 ListBox::ItemData(int index) const
{
    return isInside(index) ? m_entries[static_cast<std::size_t>(index)].data : 0;
}

void ListBox::SetItemData(int index, qint32 data)
{
    if (isInside(index))
        m_entries[static_cast<std::size_t>(index)].data = data;
}

QModelIndex ListBox::modelIndex(int index) const
{
    return m_model->index(index, 0);
}

// Selection

int ListBox::ListIndex() const
{
    const QModelIndex current = currentIndex();
    // Qt makes a row current at the first focus, without selecting it.
    return current.isValid() && (MultiSelect() || selectionModel()->isSelected(current)) ? current.row() : -1;
}

void ListBox::SetListIndex(int index)
{
    const int valid = isInside(index) ? index : -1;
    if (valid == ListIndex() && (valid < 0 || Selected(valid)))
        return;
    {
        const QScopedValueRollback byCode(m_byCode, true);
        if (valid < 0)
            selectionModel()->clear();
        else
            selectionModel()->setCurrentIndex(modelIndex(valid), QItemSelectionModel::ClearAndSelect);
    }
    Click.raise();
}

bool ListBox::Selected(int index) const
{
    return isInside(index) && selectionModel()->isSelected(modelIndex(index));
}

void ListBox::SetSelected(int index, bool selected)
{
    if (!isInside(index) || selected == Selected(index))
        return;
    if (!MultiSelect()) {
        SetListIndex(selected ? index : -1);
        return;
    }
    {
        const QScopedValueRollback byCode(m_byCode, true);
        selectionModel()->select(modelIndex(index),
                                 selected ? QItemSelectionModel::Select : QItemSelectionModel::Deselect);
    }
    Click.raise();
}

void ListBox::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected)
{
    QListView::selectionChanged(selected, deselected);
    if (m_byCode)
        return;
    m_pressRaised = true;
    guard("ListBox_Click", [this] { Click.raise(); });
}

// Keys, mouse and look

bool ListBox::selectFirstBy(const QKeyEvent& event)
{
    if (MultiSelect() || ListIndex() >= 0 || ListCount() == 0 || event.modifiers().testFlag(Qt::AltModifier))
        return false;
    switch (event.key()) {
    case Qt::Key_Down:
    case Qt::Key_Up:
    case Qt::Key_Home:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        selectionModel()->setCurrentIndex(modelIndex(0), QItemSelectionModel::ClearAndSelect);
        return true;
    default:
        return false;
    }
}

void ListBox::keyPressEvent(QKeyEvent* event)
{
    if (selectFirstBy(*event))
        event->accept();
    else
        QListView::keyPressEvent(event);
}

void ListBox::mousePressEvent(QMouseEvent* event)
{
    m_pressRaised = false;
    if (!MultiSelect() && !indexAt(event->position().toPoint()).isValid())
        return; // below the entries: the selected one stays
    QListView::mousePressEvent(event);
}

void ListBox::focusInEvent(QFocusEvent* event)
{
    QListView::focusInEvent(event);
    viewport()->update();
}

void ListBox::focusOutEvent(QFocusEvent* event)
{
    QListView::focusOutEvent(event);
    viewport()->update();
}

void ListBox::paintEvent(QPaintEvent* event)
{
    QListView::paintEvent(event);
    if (!hasFocus())
        return;
    // Inside the frame: an owner may hide that. Also where no entry could show the focus.
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::Highlight));
    painter.drawRect(viewport()->rect().adjusted(0, 0, -1, -1));
}

bool ListBox::isCut(const QModelIndex& index) const
{
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    option.rect = visualRect(index);
    option.text = List(index.row());
    option.features |= QStyleOptionViewItem::HasDisplay;
    const int room = style()->subElementRect(QStyle::SE_ItemViewItemText, &option, this).width() -
                     2 * (style()->pixelMetric(QStyle::PM_FocusFrameHMargin, &option, this) + 1);
    return option.fontMetrics.horizontalAdvance(option.text) > room;
}

bool ListBox::viewportEvent(QEvent* event)
{
    if (event->type() == QEvent::ToolTip) {
        const QModelIndex index = indexAt(static_cast<QHelpEvent*>(event)->pos());
        if (!index.isValid() || !isCut(index)) {
            QToolTip::hideText();
            event->ignore();
            return true;
        }
    }
    return QListView::viewportEvent(event);
}

QSize ListBox::minimumSizeHint() const
{
    const int line = fontMetrics().height() + RowPadding;
    return {3 * line, line + 2 * frameWidth()};
}

} // namespace tavrin
