#pragma once

#include <QPointer>
#include <QRect>
#include <QSize>

class QFrame;
class QWidget;

namespace tavrin {

/// A framed window for a list that opens below a box. It never takes the focus or the keyboard, and belongs
/// to `owner`.
QFrame* newPopupFrame(QWidget* owner);

/// Where a popup of this size stands: below `anchor`, or above it where there is more room; inside
/// `available`, and not lower than `leastHeight`. All on the screen, in pixels.
QRect popupPlace(const QRect& anchor, const QSize& size, int leastHeight, const QRect& available);

} // namespace tavrin
