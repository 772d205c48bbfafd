#pragma once

#include <QObject>
#include <QPointer>
#include <QRect>
#include <QSize>

class QFrame;
class QWidget;

namespace tavrin {

/// A framed window for a list that opens below a box. It never takes the focus or the keyboard, and belongs
/// to `owner`.
QFrame* newPopupFrame(QWidget* owner);

/// Lets the view fill the frame, however low it is made.
void fillPopupFrame(QWidget* frame, QWidget* view);

/// Ends a popup with the box that it belongs to. One in whose event the box is ended is only hidden, belongs
/// to nobody, and goes as soon as the event is through. nullptr is ignored.
void endPopup(QWidget* popup, bool isInUse);

/// Marks for its own life that a popup is handling an event, unless `user`, which has the mark, dies
/// meanwhile.
class PopupInUse
{
public:
    PopupInUse(QObject* user, bool& mark)
        : m_user(user)
        , m_mark(mark)
    {
        m_mark = true;
    }
    ~PopupInUse()
    {
        if (m_user)
            m_mark = false;
    }
    PopupInUse(const PopupInUse&) = delete;
    PopupInUse& operator=(const PopupInUse&) = delete;

private:
    QPointer<QObject> m_user;
    bool& m_mark;
};

/// Where a widget stands on the screen.
QRect placeOnScreen(const QWidget& widget);

/// Where a popup of this size stands: below `anchor`, or above it where there is more room; inside
/// `available`, and not lower than `leastHeight`. All on the screen, in pixels.
QRect popupPlace(const QRect& anchor, const QSize& size, int leastHeight, const QRect& available);

} // namespace tavrin
