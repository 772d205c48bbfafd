#include "widgets/lists/PopupFrame.h"

#include <QFrame>

#include <algorithm>

namespace tavrin {

QFrame* newPopupFrame(QWidget* owner)
{
    // A tool tip window: unlike a popup it leaves the keyboard where it is.
    auto* frame = new QFrame(owner, Qt::ToolTip | Qt::FramelessWindowHint);
    frame->setFrameStyle(QFrame::Box | QFrame::Plain);
    frame->setForegroundRole(QPalette::Mid);
    frame->setAttribute(Qt::WA_ShowWithoutActivating);
    frame->setFocusPolicy(Qt::NoFocus);
    return frame;
}

void endPopup(QWidget* popup, bool isInUse)
{
    if (!isInUse) {
        delete popup;
        return;
    }
    if (!popup)
        return;
    popup->hide();
    popup->setParent(nullptr, popup->windowFlags()); // its owner may be ended in the same event
    popup->deleteLater();
}

QRect popupPlace(const QRect& anchor, const QSize& size, int leastHeight, const QRect& available)
{
    const int below = available.bottom() - anchor.bottom();
    const int above = anchor.top() - available.top();
    const bool upward = size.height() > below && above > below;
    const int height = std::min(size.height(), std::max(upward ? above : below, leastHeight));
    const int width = std::min(size.width(), available.width());
    const int x = std::clamp(anchor.left(), available.left(), available.right() + 1 - width);
    return {x, upward ? anchor.top() - height : anchor.bottom() + 1, width, height};
}

} // namespace tavrin
