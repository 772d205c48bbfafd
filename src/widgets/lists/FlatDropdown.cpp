#include "widgets/lists/FlatDropdown.h"

#include "widgets/drawing/ConstituentLook.h"
#include "widgets/drawing/IconGlyphs.h"
#include "widgets/lists/ListKeys.h"

#include <QKeyEvent>
#include <QPainter>

namespace tavrin {

namespace {

constexpr int Padding = 6;
constexpr int AboveText = 4;
constexpr int Radius = 2;
constexpr float Faded = 0.6F;

} // namespace

FlatDropdown::FlatDropdown(QWidget* parent)
    : DropDownList(parent)
    , m_font([this] {
        setFont(wholeFont(m_font));
        resize(width(), sizeHint().height());
        updateGeometry();
    })
    , m_repaint(Click.subscribe([this] { update(); }))
{
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAttribute(Qt::WA_Hover);
    resize(FlatDropdown::sizeHint());
}

void FlatDropdown::SetIcon(const QImage& icon)
{
    m_icon = icon;
    update();
}

void FlatDropdown::SetBackColor(Color color)
{
    m_backColor = color;
    update();
}

void FlatDropdown::SetForeColor(Color color)
{
    m_foreColor = color;
    update();
}

QSize FlatDropdown::sizeHint() const
{
    const int line = fontMetrics().height();
    return {12 * line, line + 2 * AboveText};
}

QSize FlatDropdown::minimumSizeHint() const
{
    const QSize wanted = sizeHint();
    return {4 * wanted.height(), wanted.height()};
}

void FlatDropdown::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QPalette::ColorRole border = hasFocus() ? QPalette::Highlight : QPalette::Mid;
    painter.setPen(palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, border));
    painter.setBrush(isEnabled() ? shownColor(*this, m_backColor) : palette().color(QPalette::Window));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Radius, Radius);

    const int line = fontMetrics().height();
    QRect room = rect().adjusted(Padding, 0, -(line + Padding), 0);
    if (!m_icon.isNull()) {
        const int iconWidth = m_icon.width() * line / std::max(m_icon.height(), 1);
        painter.drawImage(QRect(room.left(), (height() - line) / 2, iconWidth, line), m_icon);
        room.setLeft(room.left() + iconWidth + Padding);
    }
    QColor fore = shownColor(*this, m_foreColor);
    if (!isEnabled())
        fore.setAlphaF(Faded);
    painter.setPen(fore);
    painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter,
                     fontMetrics().elidedText(Text(), Qt::ElideRight, room.width()));
    fore.setAlphaF(Faded);
    paintIconGlyph(painter, DropDownGlyph,
                   QRectF(width() - line - Padding / 2.0, (height() - line) / 2.0, line, line), fore);
}

void FlatDropdown::toggle()
{
    if (IsOpen())
        Close();
    else
        Open();
}

void FlatDropdown::keyPressEvent(QKeyEvent* event)
{
    const auto modifiers = event->modifiers() & ~Qt::KeypadModifier;
    const bool toggles = togglesList(*event) || (!modifiers && event->key() == Qt::Key_Space);
    const bool closes = IsOpen() && isEnterKey(*event);
    if (toggles || closes) {
        toggle();
        event->accept();
        return;
    }
    DropDownList::keyPressEvent(event);
}

bool FlatDropdown::event(QEvent* event)
{
    if (copiesText(*event, ListIndex() >= m_firstChoice ? Text() : QString()))
        return true;
    return DropDownList::event(event);
}

void FlatDropdown::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        toggle();
}

void FlatDropdown::wheelEvent(QWheelEvent* event)
{
    event->ignore(); // a page scrolls on, whatever box the mouse passes
}

void FlatDropdown::focusInEvent(QFocusEvent* event)
{
    DropDownList::focusInEvent(event);
    update();
}

void FlatDropdown::focusOutEvent(QFocusEvent* event)
{
    DropDownList::focusOutEvent(event);
    update();
}

void FlatDropdown::changeEvent(QEvent* event)
{
    DropDownList::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        resize(width(), sizeHint().height());
    update();
}

} // namespace tavrin
