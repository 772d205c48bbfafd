#include "widgets/lists/PopupFrame.h"

#include "base/LiveObject.h"

#include <QFrame>
#include <QVBoxLayout>

#include <algorithm>

namespace tavrin {

namespace {

/// Counted by itself, since it may outlive its owner.
class PopupFrame final : public QFrame
{
public:
    using QFrame::QFrame;

private:
    LiveObject m_live;
};

} // namespace

QFrame* newPopupFrame(QWidget* owner)
{
    // A tool tip window: unlike a popup it leaves the keyboard where it is.
    auto* frame = new PopupFrame(owner, Qt::ToolTip | Qt::FramelessWindowHint);
    frame->setFrameStyle(QFrame::Box | QFrame::Plain);
    frame->setForegroundRole(QPalette::Mid);
    frame->setAttribute(Qt::WA_ShowWithoutActivating);
    frame->setFocusPolicy(Qt::NoFocus);
    return frame;
}

void fillPopupFrame(QWidget* frame, QWidget* view)
{
    auto* layout = new QVBoxLayout(frame);
    layout->setContentsMargins(1, 1, 1, 1);
    layout->setSizeConstraint(QLayout::SetNoConstraint); // a short list is lower than the view's least height
    layout->addWidget(view);
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

QRect placeOnScreen(const QWidget& widget)
{
    return {widget.mapToGlobal(QPoint(0, 0)), widget.size()};
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
