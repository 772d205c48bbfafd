#include "widgets/lists/ListKeys.h"

#include "widgets/boxes/KeyCodes.h"

#include <QClipboard>
#include <QGuiApplication>

#include <algorithm>

namespace tavrin {

namespace {

Qt::KeyboardModifiers modifiersOf(const QKeyEvent& event)
{
    return event.modifiers() & ~Qt::KeypadModifier;
}

bool closesList(const QKeyEvent& event)
{
    return event.key() == Qt::Key_Escape || isEnterKey(event);
}

bool isListKey(const QKeyEvent& event, ListKeys keys)
{
    if (closesList(event))
        return true;
    if (modifiersOf(event) != Qt::NoModifier)
        return false;
    switch (event.key()) {
    case Qt::Key_Down:
        return true;
    case Qt::Key_Up:
    case Qt::Key_PageDown:
    case Qt::Key_PageUp:
        return keys >= ListKeys::Moving;
    case Qt::Key_Home:
    case Qt::Key_End:
        return keys >= ListKeys::MovingAndEnds;
    default:
        return keys == ListKeys::AllButFunctions && (event.key() < Qt::Key_F1 || event.key() > Qt::Key_F35);
    }
}

} // namespace

bool togglesList(const QKeyEvent& event)
{
    const int key = event.key();
    const auto modifiers = modifiersOf(event);
    return (key == Qt::Key_F4 && !modifiers) ||
           (modifiers == Qt::AltModifier && (key == Qt::Key_Down || key == Qt::Key_Up));
}

bool isEnterKey(const QKeyEvent& event)
{
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

bool isTabKey(const QKeyEvent& event)
{
    return (event.key() == Qt::Key_Tab || event.key() == Qt::Key_Backtab) &&
           !(event.modifiers() & (Qt::ControlModifier | Qt::AltModifier));
}

bool claimsListKey(QEvent& event, ListKeys keys)
{
    if (event.type() != QEvent::ShortcutOverride || !isListKey(static_cast<const QKeyEvent&>(event), keys))
        return false;
    event.accept();
    return true;
}

bool copiesText(QEvent& event, const QString& text)
{
    const bool isKey = event.type() == QEvent::KeyPress || event.type() == QEvent::ShortcutOverride;
    if (!isKey || text.isEmpty() || !static_cast<QKeyEvent&>(event).matches(QKeySequence::Copy))
        return false;
    if (event.type() == QEvent::KeyPress)
        QGuiApplication::clipboard()->setText(text);
    event.accept();
    return true;
}

std::optional<int> rowByKey(int keyCode, int row, int page, int first, int last)
{
    int target = row;
    switch (keyCode) {
    case KeyCode::Down:
        target = row + 1;
        break;
    case KeyCode::Up:
        target = row - 1;
        break;
    case KeyCode::PageDown:
        target = row + page;
        break;
    case KeyCode::PageUp:
        target = row - page;
        break;
    case KeyCode::Home:
        target = first;
        break;
    case KeyCode::End:
        target = last;
        break;
    default:
        return std::nullopt;
    }
    return last < first ? row : std::clamp(target, first, last);
}

} // namespace tavrin
