#pragma once

#include <QKeyEvent>

namespace tavrin {

/// Key codes as handlers of `KeyDown` see them.
namespace KeyCode {
inline constexpr int Backspace = 8;
inline constexpr int Tab = 9;
inline constexpr int Enter = 13;
inline constexpr int Escape = 27;
inline constexpr int PageUp = 33;
inline constexpr int PageDown = 34;
inline constexpr int End = 35;
inline constexpr int Home = 36;
inline constexpr int Left = 37;
inline constexpr int Up = 38;
inline constexpr int Right = 39;
inline constexpr int Down = 40;
inline constexpr int Insert = 45;
inline constexpr int Delete = 46;
inline constexpr int Menu = 93;
inline constexpr int F1 = 112;
} // namespace KeyCode

/// Bits of a shift state.
namespace ShiftState {
inline constexpr int Shift = 1;
inline constexpr int Control = 2;
inline constexpr int Alt = 4;
} // namespace ShiftState

/// The key code of a key: letters and digits have their own character, keys without a code give 0.
int keyCodeOf(const QKeyEvent& event);
int shiftStateOf(Qt::KeyboardModifiers modifiers);
/// Whether it is the key of the context menu, or Shift+F10.
bool isMenuKey(const QKeyEvent& event);

} // namespace tavrin
