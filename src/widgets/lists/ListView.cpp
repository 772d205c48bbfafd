#include "widgets/lists/ListView.h"

#include "base/failure/Error.h"
#include "widgets/lists/ListViewModel.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QToolTip>

namespace tavrin {

/// Rows with room above and below their texts, or of one height, marked as the list says.
class ListView::RowDelegate final : public QStyledItemDelegate
{
public:
    explicit RowDelegate(ListView& list)
        : QStyledItemDelegate(&list)
        , m_list(list)
    {
    }

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        constexpr int room = 3;
        const QSize size = QStyledItemDelegate::sizeHint(option, index);
        return {size.width(), m_list.m_rowHeight > 0 ? m_list.m_rowHeight : size.height() + 2 * room};
    }

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        option->state.setFlag(QStyle::State_Selected, m_list.isMarked(index));
        // A cell is one line, whatever its text holds.
        option->text.replace(QStringLiteral("\r") + QChar::LineSeparator, QStringLiteral(" "));
        option->text.replace(QChar::LineSeparator, u' ').replace(u'\r', u' ');
    }

private:
    ListView& m_list;
};

ListView::ListView(QWidget* parent)
    : QTreeView(parent)
    , m_model(std::make_unique<Model>())
{
    setModel(m_model.get());
    setItemDelegate(new RowDelegate(*this));
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setUniformRowHeights(true); // no row is measured that is not in view
    setEditTriggers(NoEditTriggers);
    setSelectionMode(SingleSelection);
    setSelectionBehavior(SelectRows);
    setAllColumnsShowFocus(true);
    setTextElideMode(Qt::ElideRight);
    setFrameStyle(static_cast<int>(QFrame::Box) | static_cast<int>(QFrame::Plain));
    header()->setSectionsMovable(false);
    header()->setSectionsClickable(false);
    header()->setHighlightSections(false);
    header()->setStretchLastSection(true);
    setAcceptDrops(true); // offers of anything else than files are refused
}

ListView::~ListView()
{
    setModel(nullptr);
}

// Columns

void ListView::ClearColumnHeaders()
{
    m_model->clearColumns();
}

void ListView::AddColumnHeader(const QString& key, const QString& caption, Twips width)
{
    m_model->addColumn({key, caption, width, width > 0});
    for (int column = 0; column < m_model->columnTotal(); ++column)
        applyWidth(column); // the header forgets widths when it gets a section
    letLastColumnShrink();
}

void ListView::letLastColumnShrink()
{
    // The last column keeps the width from which it was stretched where the others leave less.
    header()->setStretchLastSection(false);
    if (header()->count() > 0)
        header()->resizeSection(header()->count() - 1, header()->minimumSectionSize());
    header()->setStretchLastSection(true);
}

void ListView::applyWidth(int column)
{
    // The last column takes what the others leave.
    const int shown = m_model->shownIndex(column);
    if (shown >= 0 && shown < header()->count() - 1)
        header()->resizeSection(shown, std::max(toPixels(m_model->column(column).width), 0));
}

Twips ListView::ColumnWidth(const QString& key) const
{
    return m_model->column(m_model->columnOf(key)).width;
}

void ListView::SetColumnWidth(const QString& key, Twips width)
{
    const int index = m_model->columnOf(key);
    if (m_model->shownIndex(index) < 0)
        return;
    m_model->column(index).width = width;
    applyWidth(index);
}

Twips ListView::ColumnLeft(const QString& key) const
{
    const int shown = m_model->shownIndex(m_model->columnOf(key));
    return shown < 0 ? 0 : toTwips(header()->sectionPosition(shown));
}

void ListView::SetMinimumColumnWidth(Twips width)
{
    header()->setMinimumSectionSize(toPixels(width));
    letLastColumnShrink();
}

void ListView::SetSortKey(const QString& columnKey)
{
    m_model->sortBy(m_model->columnOf(columnKey));
}

void ListView::SetAllowColumnReorder(bool allow)
{
    header()->setSectionsMovable(allow);
}

void ListView::SetRowHeight(int pixels)
{
    m_rowHeight = pixels;
    scheduleDelayedItemsLayout();
}

void ListView::SetHideSelection(bool hide)
{
    m_hideSelection = hide;
    viewport()->update();
}

void ListView::SetBorder(bool border)
{
    m_border = border;
    update();
}

void ListView::SetMouseDownFirst(bool first)
{
    m_mouseDownFirst = first;
}

bool ListView::HasVerticalScrollBar()
{
    executeDelayedItemsLayout(); // rows that were added or removed just now count
    return verticalScrollBar()->minimum() < verticalScrollBar()->maximum();
}

// Rows

void ListView::Clear()
{
    m_model->clearRows();
}

int ListView::Count() const
{
    return m_model->rowCount();
}

void ListView::AddItem(const QString& key, const QString& text)
{
    m_model->add(key, text);
}

void ListView::SetSubItem(const QString& key, const QString& columnKey, const QString& text)
{
    m_model->setText(key, m_model->columnOf(columnKey), text);
}

QString ListView::SubItem(const QString& key, const QString& columnKey) const
{
    return m_model->text(key, m_model->columnOf(columnKey));
}

void ListView::SetSubItemIcon(const QString& key, const QString& columnKey, const QIcon& icon,
                              const QString& name)
{
    m_model->setIcon(key, m_model->columnOf(columnKey), icon, name);
}

void ListView::SetSubItemToolTip(const QString& key, const QString& columnKey, const QString& text)
{
    m_model->setToolTip(key, m_model->columnOf(columnKey), text);
}

QString ListView::Tag(const QString& key) const
{
    return m_model->tag(key);
}

void ListView::SetTag(const QString& key, const QString& tag)
{
    m_model->setTag(key, tag);
}

void ListView::Remove(const QString& key)
{
    m_model->remove({key});
}

void ListView::Remove(const QStringList& keys)
{
    m_model->remove(keys);
}

bool ListView::Contains(const QString& key) const
{
    return m_model->contains(key);
}

int ListView::IndexOf(const QString& key) const
{
    return m_model->rowOf(key);
}

QString ListView::Key(int index) const
{
    if (index < 0 || index >= Count())
        throw Error(QStringLiteral("The list has no row %1").arg(index), MissingKeyNumber);
    return m_model->keyAt(index);
}

std::optional<QString> ListView::SelectedItem() const
{
    const QModelIndexList rows = selectionModel()->selectedRows();
    return rows.isEmpty() ? std::nullopt : std::optional(m_model->keyAt(rows.first().row()));
}

void ListView::SetSelectedItem(const std::optional<QString>& key)
{
    if (key)
        setCurrentIndex(m_model->index(m_model->rowOf(*key), 0));
    else
        selectionModel()->clear();
}

std::optional<QString> ListView::DropHighlight() const
{
    return m_dropHighlight.isValid() ? std::optional(m_model->keyAt(m_dropHighlight.row())) : std::nullopt;
}

void ListView::SetDropHighlight(const std::optional<QString>& key)
{
    m_dropHighlight = key ? m_model->index(m_model->rowOf(*key), 0) : QModelIndex();
    viewport()->update();
}

std::optional<QString> ListView::HitTest(Twips x, Twips y) const
{
    return keyBelow(viewport()->mapFrom(this, QPoint(toPixels(x), toPixels(y))));
}

std::optional<QString> ListView::keyBelow(const QPoint& placeInViewport) const
{
    const QModelIndex index =
        viewport()->rect().contains(placeInViewport) ? indexAt(placeInViewport) : QModelIndex();
    return index.isValid() ? std::optional(m_model->keyAt(index.row())) : std::nullopt;
}

void ListView::EnsureVisible(const QString& key)
{
    const QModelIndex index = m_model->index(m_model->rowOf(key), 0);
    // The second click of two must not hit another row than the first.
    const bool isBelowMouse = m_pressing && viewport()->rect().intersects(visualRect(index));
    if (!isBelowMouse)
        scrollTo(index);
}

QItemSelectionModel::SelectionFlags ListView::selectionCommand(const QModelIndex& index,
                                                               const QEvent* event) const
{
    // A click beside the rows leaves the selection, and no key or click takes it from a row.
    if (event && !index.isValid())
        return QItemSelectionModel::NoUpdate;
    const auto command = QTreeView::selectionCommand(index, event);
    return command & (QItemSelectionModel::Deselect | QItemSelectionModel::Toggle)
               ? QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows
               : command;
}

// Looks

bool ListView::isMarked(const QModelIndex& index) const
{
    const bool isHidden = m_hideSelection && !hasFocus();
    return (m_dropHighlight.isValid() && m_dropHighlight.row() == index.row()) ||
           (!isHidden && selectionModel()->isSelected(index));
}

QString ListView::toolTipAt(const QPoint& place) const
{
    const QModelIndex index = indexAt(place);
    if (!index.isValid())
        return {};
    const QString own = index.data(Qt::ToolTipRole).toString();
    const bool isCut = sizeHintForIndex(index).width() > visualRect(index).width();
    return own.isEmpty() && isCut ? index.data().toString() : own;
}

bool ListView::viewportEvent(QEvent* event)
{
    if (event->type() == QEvent::ToolTip) {
        const auto* help = static_cast<QHelpEvent*>(event);
        // As it stands, also when it looks like markup.
        const QString text = toolTipAt(help->pos());
        QToolTip::showText(
            help->globalPos(),
            text.isEmpty() ? QString() : QStringLiteral("<qt>%1</qt>").arg(text.toHtmlEscaped()), viewport());
        return true;
    }
    return QTreeView::viewportEvent(event);
}

bool ListView::event(QEvent* event)
{
    const bool taken = QTreeView::event(event);
    if (event->type() == QEvent::Paint) {
        const bool marks = (hasFocus() && isEnabled()) || m_dropOffered;
        const QPalette::ColorRole quiet = m_border ? QPalette::Mid : QPalette::Base;
        QPainter painter(this);
        painter.setClipRegion(QRegion(rect()) - rect().adjusted(1, 1, -1, -1));
        painter.fillRect(rect(), palette().color(marks ? QPalette::Highlight : quiet));
    }
    return taken;
}

void ListView::focusInEvent(QFocusEvent* event)
{
    QTreeView::focusInEvent(event);
    update();
}

void ListView::focusOutEvent(QFocusEvent* event)
{
    QTreeView::focusOutEvent(event);
    update();
}

QSize ListView::sizeHint() const
{
    const int line = fontMetrics().height();
    return {40 * line, 10 * line};
}

} // namespace tavrin
