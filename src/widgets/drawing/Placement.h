#pragma once

#include "base/values/Twips.h"

#include <QWidget>

#include <algorithm>

// The place of a constituent in twips, below its parent's left upper corner.

namespace tavrin {

inline Twips leftOf(const QWidget& widget)
{
    return toTwips(widget.x());
}

inline Twips widthOf(const QWidget& widget)
{
    return toTwips(widget.width());
}

inline Twips heightOf(const QWidget& widget)
{
    return toTwips(widget.height());
}

inline void moveTo(QWidget& widget, Twips left, Twips top)
{
    widget.move(toPixels(left), toPixels(top));
}

/// A negative width or height counts as 0.
inline void moveTo(QWidget& widget, Twips left, Twips top, Twips width, Twips height)
{
    // Qt itself would keep a negative one.
    widget.setGeometry(toPixels(left), toPixels(top), std::max(0, toPixels(width)),
                       std::max(0, toPixels(height)));
}

} // namespace tavrin
