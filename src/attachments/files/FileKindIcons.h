#pragma once

#include <QIcon>

/// The pictures of the kinds of files. They are drawn anew for each size, so they are sharp on every screen.
namespace tavrin::FileKindIcons {

inline constexpr char File[] = "file";
inline constexpr char Image[] = "image";
/// Width and height of the pictures' own size, in pixels.
inline constexpr int Side = 20;

QIcon file();
QIcon image();

/// The picture in its own size, in the middle of a cell of this size in pixels.
QIcon padded(const QIcon& picture, int width, int height);

} // namespace tavrin::FileKindIcons
