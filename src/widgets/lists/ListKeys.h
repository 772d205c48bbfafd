#pragma once

#include <QKeyEvent>

#include <optional>

namespace tavrin {

/// The keys that mean a list which is open below a box, while the box has the keyboard. Escape and Enter mean
/// it whatever the shift state, the others without a modifier.
enum class ListKeys
{
    Entering,       ///< Escape, Enter and the arrow down, which goes into the list; the others are the box's
    Moving,         ///< Escape, Enter, the arrows up and down and the page keys; the others are the text's
    MovingAndEnds,  ///< also Home and End
    AllButFunctions ///< every key but the function keys: letters find an entry
};

/// Alt+Down, Alt+Up and F4 open the list, or close it.
bool togglesList(const QKeyEvent& event);

/// Either of the two Enter keys.
bool isEnterKey(const QKeyEvent& event);

/// Tab and Shift+Tab, which take the marked row before the focus goes on.
bool isTabKey(const QKeyEvent& event);

/// For `event` of a box whose list is open: accepts what asks whether a key is a shortcut of the window, if
/// the key is one of the list's. True when it was.
bool claimsListKey(QEvent& event, ListKeys keys);

/// For `event` of a box whose text nobody can mark: Ctrl+C copies the text, and is no shortcut of the window.
/// True when it was that. An empty text leaves the key to others.
bool copiesText(QEvent& event, const QString& text);

/// The row to which a key, given by its code (`KeyCodes.h`), leads from `row`, kept within `first` and
/// `last`: an arrow by one, a page key by `page`, Home and End to the ends. Nothing for any other key; `row`
/// itself in an empty list.
std::optional<int> rowByKey(int keyCode, int row, int page, int first, int last);

} // namespace tavrin
