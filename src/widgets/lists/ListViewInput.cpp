#include "base/failure/Guard.h"
#include "widgets/boxes/KeyCodes.h"
#include "widgets/lists/ListView.h"
#include "widgets/lists/ListViewModel.h"

#include <QContextMenuEvent>
#include <QMimeData>
#include <QPointer>
#include <QScopeGuard>
#include <QUrl>

namespace tavrin {

namespace {

int buttonBit(Qt::MouseButton button)
{
    return button == Qt::LeftButton ? 1 : button == Qt::RightButton ? 2 : button == Qt::MiddleButton ? 4 : 0;
}

/// Local paths of the files; what lies elsewhere is left out.
QStringList filesOf(const QMimeData& data)
{
    QStringList files;
    for (const QUrl& url : data.urls()) {
        if (url.isLocalFile())
            files << url.toLocalFile();
    }
    return files;
}

} // namespace

// Mouse

void ListView::raiseMouseDown(int button, Qt::KeyboardModifiers modifiers, const QPoint& place)
{
    guard("ListView_MouseDown",
          [&] { MouseDown.raise(button, shiftStateOf(modifiers), toTwips(place.x()), toTwips(place.y())); });
}

void ListView::raiseItemClick(const QString& key)
{
    guard("ListView_ItemClick", [&] { ItemClick.raise(key); });
}

void ListView::mousePressEvent(QMouseEvent* event)
{
    const QPointer<ListView> self(this); // each handler may delete the list
    const QPoint inViewport = event->position().toPoint();
    const QPoint place = viewport()->mapTo(this, inViewport);
    const int button = buttonBit(event->button());
    const Qt::KeyboardModifiers modifiers = event->modifiers();
    const std::optional<QString> pressed = keyBelow(inViewport);

    m_pressing = true;
    setAutoScroll(false);
    const auto finish = qScopeGuard([&self] {
        if (self) {
            self->m_pressing = false;
            self->setAutoScroll(true);
        }
    });
    if (button != 0 && m_mouseDownFirst)
        raiseMouseDown(button, modifiers, place);
    if (!self)
        return;
    takePress(*event, pressed);
    if (button != 0 && !m_mouseDownFirst)
        raiseMouseDown(button, modifiers, place);
    if (self && button != 0 && pressed && Contains(*pressed))
        raiseItemClick(*pressed);
}

void ListView::takePress(QMouseEvent& event, const std::optional<QString>& pressed)
{
    // A handler may have changed the rows: the one that was pressed counts, not what lies there by now.
    if (keyBelow(event.position().toPoint()) == pressed)
        QTreeView::mousePressEvent(&event);
    else if (pressed && Contains(*pressed))
        SetSelectedItem(pressed);
}

void ListView::mouseMoveEvent(QMouseEvent* event)
{
    if (event->buttons() == Qt::NoButton)
        QTreeView::mouseMoveEvent(event);
    else
        event->accept(); // a pressed mouse that moves on takes no other row
}

void ListView::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        mousePressEvent(event);
        return;
    }
    const QPointer<ListView> self(this);
    QTreeView::mouseDoubleClickEvent(event); // counts as a press where it hits another row than the first
    if (self)
        guard("ListView_DblClick", [&] { DblClick.raise(); });
}

void ListView::contextMenuEvent(QContextMenuEvent* event)
{
    event->accept(); // the press of the button or the key has told already
}

// Keyboard

bool ListView::swallows(const QKeyEvent& event)
{
    int code = keyCodeOf(event);
    if (code == 0)
        return false;
    // A key that is held down must not do to one row after the other what was meant for one.
    if (event.isAutoRepeat() && (code == KeyCode::Delete || code == KeyCode::Enter))
        return true;
    guard("ListView_KeyDown", [&] { KeyDown.raise(code, shiftStateOf(event.modifiers())); });
    return code == 0;
}

void ListView::keyPressEvent(QKeyEvent* event)
{
    const QPointer<ListView> self(this);
    if (swallows(*event) || !self) {
        event->accept();
        return;
    }
    if (isMenuKey(*event)) {
        event->accept();
        if (!event->isAutoRepeat())
            openMenuByKey();
        return;
    }
    const std::optional<QString> before = SelectedItem();
    QTreeView::keyPressEvent(event);
    const std::optional<QString> after = SelectedItem();
    if (after && after != before)
        raiseItemClick(*after);
}

void ListView::openMenuByKey()
{
    if (const auto selected = SelectedItem())
        EnsureVisible(*selected); // the menu is about this row
    raiseMouseDown(2, Qt::NoModifier, placeOfMenu());
}

/// At the selected row, or in the list's middle when there is none.
QPoint ListView::placeOfMenu() const
{
    const QModelIndexList rows = selectionModel()->selectedRows();
    const QRect row = rows.isEmpty() ? QRect() : visualRect(rows.first());
    const QRect shown = viewport()->rect();
    const QPoint place =
        shown.intersects(row) ? QPoint(shown.left() + row.height(), row.bottom()) : shown.center();
    return viewport()->mapTo(this, place);
}

// Dropped files

void ListView::setDropOffered(bool offered)
{
    m_dropOffered = offered;
    update();
}

void ListView::offerDrop(QDropEvent& event)
{
    const bool takes = OLEDragDrop.hasHandlers() && !filesOf(*event.mimeData()).isEmpty();
    if (takes != m_dropOffered)
        setDropOffered(takes);
    if (!takes) {
        event.ignore();
        return;
    }
    event.setDropAction(Qt::CopyAction); // whoever drags the files keeps them
    event.accept();
}

void ListView::dragEnterEvent(QDragEnterEvent* event)
{
    offerDrop(*event);
}

void ListView::dragMoveEvent(QDragMoveEvent* event)
{
    offerDrop(*event);
}

void ListView::dragLeaveEvent(QDragLeaveEvent* event)
{
    setDropOffered(false);
    event->accept();
}

void ListView::dropEvent(QDropEvent* event)
{
    setDropOffered(false);
    int effect = 0;
    const QStringList files = filesOf(*event->mimeData());
    guard("ListView_OLEDragDrop", [&] { OLEDragDrop.raise(files, effect); }); // may delete the list
    event->setDropAction(effect == 1 ? Qt::CopyAction : Qt::IgnoreAction);
    event->setAccepted(effect == 1);
}

} // namespace tavrin
