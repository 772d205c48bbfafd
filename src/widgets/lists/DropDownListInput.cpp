// Keys, mouse and focus of the drop-down list.

#include "base/failure/Guard.h"
#include "widgets/boxes/KeyCodes.h"
#include "widgets/lists/DropDownList.h"
#include "widgets/lists/ListKeys.h"

#include <QListView>
#include <QMouseEvent>

#include <optional>

namespace tavrin {

bool DropDownList::isInsidePopup(const QObject* object) const
{
    const auto* widget = qobject_cast<const QWidget*>(object);
    return widget && (widget == m_popup || m_popup->isAncestorOf(widget));
}

bool DropDownList::answersRelease(const QMouseEvent& event)
{
    const QModelIndex row = m_view->indexAt(event.position().toPoint());
    if (row.isValid() && event.button() == Qt::LeftButton)
        guard("DropDownList_Click", [&] { choose(row.row()); });
    else
        markSelection(); // the press has marked the row below it
    return true;
}

bool DropDownList::eventFilter(QObject* watched, QEvent* event)
{
    const auto* widget = qobject_cast<QWidget*>(watched);
    if (!widget || !IsOpen())
        return false;
    switch (event->type()) {
    case QEvent::ShortcutOverride:
        return widget == m_box && claimsListKey(*event, ListKeys::Entering);
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        if (!isInsidePopup(widget) && !keepsOpenAt(widget))
            Close();
        break;
    case QEvent::MouseButtonRelease:
        return widget == m_view->viewport() && answersRelease(static_cast<QMouseEvent&>(*event));
    case QEvent::Move:
    case QEvent::Resize:
        if (widget == this || widget->isAncestorOf(this))
            placePopup();
        break;
    case QEvent::WindowDeactivate:
        if (widget == window())
            Close();
        break;
    default:
        break;
    }
    return false;
}

void DropDownList::choose(int index)
{
    const QPointer<DropDownList> self(this);
    Close();
    if (!self || index >= ListCount()) // the view has not heard yet that the row is gone
        return;
    m_listIndex = index;
    Click.raise();
}

// Keys and focus

bool DropDownList::event(QEvent* event)
{
    if (IsOpen() && claimsListKey(*event, ListKeys::AllButFunctions))
        return true; // the open list has it, and no shortcut of the window
    return QWidget::event(event);
}

void DropDownList::keyPressEvent(QKeyEvent* event)
{
    if (m_box && !IsOpen()) { // what a person cannot see chooses nothing
        event->accept();
        m_box->setFocus();
        return;
    }
    const QPointer<DropDownList> self(this); // a handler may close the form
    bool taken = false;
    guard("DropDownList_KeyDown", [&] {
        int keyCode = keyCodeOf(*event);
        KeyDown.raise(keyCode, shiftStateOf(event->modifiers()));
        taken = !self || (keyCode == 0 && keyCodeOf(*event) != 0);
        if (!taken && keyCode == KeyCode::Escape && IsOpen()) {
            Close();
            taken = true;
        }
        if (!taken)
            taken = !isShortcut(*event) && (moveBy(keyCode) || typeAhead(event->text()));
    });
    if (!self || taken)
        event->accept();
    else
        QWidget::keyPressEvent(event);
}

bool DropDownList::moveBy(int keyCode)
{
    const std::optional<int> row = rowByKey(keyCode, m_listIndex, VisibleRows - 1, 0, ListCount() - 1);
    if (row)
        SetListIndex(*row); // a handler may close the form
    return row.has_value();
}

bool DropDownList::isShortcut(const QKeyEvent& event)
{
    const bool alt = event.modifiers().testFlag(Qt::AltModifier);
    const bool control = event.modifiers().testFlag(Qt::ControlModifier);
    return alt != control ||
           event.modifiers().testFlag(Qt::MetaModifier); // both make letters on some keyboards
}

bool DropDownList::typeAhead(const QString& text)
{
    if (text.isEmpty() || !text.at(0).isPrint())
        return false;
    for (int step = 1; step <= ListCount(); ++step) {
        const int index = (m_listIndex + step) % ListCount();
        if (List(index).startsWith(text, Qt::CaseInsensitive)) {
            SetListIndex(index);
            break;
        }
    }
    return true;
}

void DropDownList::focusOutEvent(QFocusEvent* event)
{
    QWidget::focusOutEvent(event);
    Close();
}

void DropDownList::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    Close();
}

void DropDownList::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::EnabledChange && !isEnabled())
        Close();
}

} // namespace tavrin
