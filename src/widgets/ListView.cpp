#include "ListView.h"

#include "KeyCodes.h"
#include "ListViewModel.h"
#include "base/Error.h"
#include "base/Guard.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QHelpEvent>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QToolTip>

namespace tavrin {

namespace {

/// Rows with room above and below their texts.
class RowDelegate final : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        constexpr int room = 3;
        return QStyledItemDelegate::sizeHint(option, index) + QSize(0, 2 * room);
    }
};

} // namespace

ListView::ListView(QWidget* parent)
    : QTreeView(parent)
    , m_model(std::make_unique<Model>())
{
    setModel(m_model.get());
    setItemDelegate(new RowDelegate(this));
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
    applyWidths();
}

void ListView::applyWidths()
{
    // The last column takes what the others leave.
    for (int column = 0, shown = 0; shown < header()->count() - 1; ++column) {
        if (m_model->shownIndex(column) != shown)
            continue;
        header()->resizeSection(shown, std::max(toPixels(m_model->column(column).width), 0));
        ++shown;
    }
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
    applyWidths();
}

void ListView::SetSortKey(const QString& columnKey)
{
    m_model->sortBy(m_model->columnOf(columnKey));
}

void ListView::SetAllowColumnReorder(bool allow)
{
    header()->setSectionsMovable(allow);
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

void ListView::Remove(const QString& key)
{
    m_model->remove(key);
}

bool ListView::Contains(const QString& key) const
{
    return m_model->contains(key);
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

// Mouse and keyboard

void ListView::raiseMouseDown(int button, Qt::KeyboardModifiers modifiers, const QPoint& place)
{
    guard("ListView_MouseDown",
          [&] { MouseDown.raise(button, shiftStateOf(modifiers), toTwips(place.x()), toTwips(place.y())); });
}

void ListView::mousePressEvent(QMouseEvent* event)
{
    QTreeView::mousePressEvent(event);
    const int button = event->button() == Qt::LeftButton     ? 1
                       : event->button() == Qt::RightButton  ? 2
                       : event->button() == Qt::MiddleButton ? 4
                                                             : 0;
    const QPoint place = viewport()->mapTo(this, event->position().toPoint());
    if (button != 0)
        raiseMouseDown(button, event->modifiers(), place); // a handler may delete the list
}

void ListView::keyPressEvent(QKeyEvent* event)
{
    const bool opensMenu = event->key() == Qt::Key_Menu ||
                           (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier);
    if (!opensMenu) {
        QTreeView::keyPressEvent(event);
        return;
    }
    event->accept();
    if (!event->isAutoRepeat())
        raiseMouseDown(2, Qt::NoModifier, placeOfMenu());
}

void ListView::contextMenuEvent(QContextMenuEvent* event)
{
    event->accept(); // the press of the button or the key has told already
}

/// Below the selected row, or in the list's middle when that is out of sight.
QPoint ListView::placeOfMenu() const
{
    const QModelIndexList rows = selectionModel()->selectedRows();
    const QRect row = rows.isEmpty() ? QRect() : visualRect(rows.first());
    const QRect shown = viewport()->rect();
    const QPoint place =
        shown.intersects(row) ? QPoint(shown.left() + row.height(), row.bottom()) : shown.center();
    return viewport()->mapTo(this, place);
}

QString ListView::cutTextAt(const QPoint& place) const
{
    const QModelIndex index = indexAt(place);
    if (!index.isValid() || sizeHintForIndex(index).width() <= visualRect(index).width())
        return {};
    return index.data().toString();
}

bool ListView::viewportEvent(QEvent* event)
{
    if (event->type() == QEvent::ToolTip) {
        const auto* help = static_cast<QHelpEvent*>(event);
        // As it stands, also when it looks like markup.
        const QString cut = cutTextAt(help->pos());
        QToolTip::showText(help->globalPos(),
                           cut.isEmpty() ? QString() : QStringLiteral("<qt>%1</qt>").arg(cut.toHtmlEscaped()),
                           viewport());
        return true;
    }
    return QTreeView::viewportEvent(event);
}

// Looks

bool ListView::event(QEvent* event)
{
    const bool taken = QTreeView::event(event);
    if (event->type() == QEvent::Paint) {
        const bool marks = hasFocus() && isEnabled();
        QPainter painter(this);
        painter.setClipRegion(QRegion(rect()) - rect().adjusted(1, 1, -1, -1));
        painter.fillRect(rect(), palette().color(marks ? QPalette::Highlight : QPalette::Mid));
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
