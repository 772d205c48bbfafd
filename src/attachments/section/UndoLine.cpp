#include "attachments/section/UndoLine.h"

#include "base/failure/Guard.h"
#include "widgets/drawing/Placement.h"
#include "widgets/labels/Label.h"
#include "widgets/labels/TextLink.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QPointer>

#include <algorithm>

namespace tavrin {

namespace {

constexpr Twips Gap = 90;

} // namespace

UndoLine::UndoLine(QWidget& list, QWidget* parent)
    : GroupBox(parent)
    , m_list(list)
    , lblRemoved(new Label(this))
    , lnkUndo(new TextLink(this))
{
    setObjectName(QStringLiteral("picUndo"));
    lblRemoved->setObjectName(QStringLiteral("lblRemoved"));
    lnkUndo->setObjectName(QStringLiteral("lnkUndo"));
    lblRemoved->SetAutoSize(false);
    lblRemoved->SetElideMode(Qt::ElideMiddle); // the end says what has become of the name
    lnkUndo->SetCaption(QStringLiteral("Undo"));
    lnkUndo->SetForeColor(SystemColor::Highlight);
    lnkUndo->SetHoverUnderline(true);
    m_click = lnkUndo->Click.subscribe([this] { Undo.raise(); });
    m_list.installEventFilter(this);
    hide();
}

QWidget* UndoLine::link() const
{
    return lnkUndo;
}

void UndoLine::Tell(const QString& name)
{
    lblRemoved->SetCaption(name + QStringLiteral(" removed."));
    lnkUndo->setAccessibleDescription(QStringLiteral("Puts %1 back").arg(name));
    layOut();
    show();
    raise();
    QAccessibleEvent announcement(lblRemoved, QAccessible::Alert);
    QAccessible::updateAccessibility(&announcement);
}

void UndoLine::Clear()
{
    const QPointer<UndoLine> self(this); // whoever hears of the focus may delete the control
    if (lnkUndo->hasFocus())
        m_list.setFocus(); // it would go to whatever is next on the form
    if (self)
        hide();
}

void UndoLine::layOut()
{
    const QSize words = lblRemoved->QLabel::sizeHint();
    const int gap = toPixels(Gap);
    const QRect place = contentsRect();
    const int room = std::max(0, place.width() - gap - lnkUndo->width());
    lblRemoved->setGeometry(place.x(), place.y(), std::min(words.width(), room), words.height());
    lnkUndo->move(lblRemoved->geometry().right() + 1 + gap, place.y());
}

bool UndoLine::event(QEvent* event)
{
    const bool taken = GroupBox::event(event);
    if (event->type() == QEvent::Resize || event->type() == QEvent::ContentsRectChange)
        layOut();
    return taken;
}

bool UndoLine::eventFilter(QObject* watched, QEvent* event)
{
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
    if (watched != &m_list || !isKey || !static_cast<QKeyEvent*>(event)->matches(QKeySequence::Undo))
        return GroupBox::eventFilter(watched, event);
    const bool isHeld = static_cast<QKeyEvent*>(event)->isAutoRepeat();
    if (!isHeld)
        m_hasTakenPress = !isHidden();
    // The repeats of a press are whose the press was, also when it has hidden the line.
    if (isHidden() && !m_hasTakenPress)
        return GroupBox::eventFilter(watched, event);
    event->accept(); // a shortcut of the form must not take the keys
    if (event->type() == QEvent::KeyPress && !isHeld)
        guard("UndoLine_Undo", [this] { Undo.raise(); });
    return true;
}

} // namespace tavrin
