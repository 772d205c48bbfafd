#include "widgets/boxes/KeyCodes.h"

namespace tavrin {

int keyCodeOf(const QKeyEvent& event)
{
    const int key = event.key();
    if ((key >= Qt::Key_0 && key <= Qt::Key_9) || (key >= Qt::Key_A && key <= Qt::Key_Z) ||
        key == Qt::Key_Space)
        return key;
    if (key >= Qt::Key_F1 && key <= Qt::Key_F12)
        return KeyCode::F1 + (key - Qt::Key_F1);
    switch (key) {
    case Qt::Key_Backspace:
        return KeyCode::Backspace;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        return KeyCode::Tab;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return KeyCode::Enter;
    case Qt::Key_Escape:
        return KeyCode::Escape;
    case Qt::Key_PageUp:
        return KeyCode::PageUp;
    case Qt::Key_PageDown:
        return KeyCode::PageDown;
    case Qt::Key_End:
        return KeyCode::End;
    case Qt::Key_Home:
        return KeyCode::Home;
    case Qt::Key_Left:
        return KeyCode::Left;
    case Qt::Key_Up:
        return KeyCode::Up;
    case Qt::Key_Right:
        return KeyCode::Right;
    case Qt::Key_Down:
        return KeyCode::Down;
    case Qt::Key_Insert:
        return KeyCode::Insert;
    case Qt::Key_Delete:
        return KeyCode::Delete;
    case Qt::Key_Menu:
        return KeyCode::Menu;
    default:
        return 0;
    }
}

int shiftStateOf(Qt::KeyboardModifiers modifiers)
{
    return (modifiers.testFlag(Qt::ShiftModifier) ? ShiftState::Shift : 0) |
           (modifiers.testFlag(Qt::ControlModifier) ? ShiftState::Control : 0) |
           (modifiers.testFlag(Qt::AltModifier) ? ShiftState::Alt : 0);
}

bool isMenuKey(const QKeyEvent& event)
{
    return event.key() == Qt::Key_Menu ||
           (event.key() == Qt::Key_F10 && event.modifiers() == Qt::ShiftModifier);
}

} // namespace tavrin
