#include "widgets/labels/Tag.h"

#include "widgets/drawing/ConstituentLook.h"

#include <QApplication>
#include <QPainter>

namespace tavrin {

namespace {

constexpr int SidePadding = 8;
constexpr int LinePadding = 2; // above and below the text each
constexpr qreal Radius = 4;

} // namespace

Tag::Tag(QWidget* parent)
    : QWidget(parent)
    , m_font([this] { fit(); })
{
    installAccessibleRole<Tag, QAccessible::StaticText>();
    setFocusPolicy(Qt::NoFocus);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    fit();
}

void Tag::SetCaption(const QString& caption)
{
    m_caption = caption;
    setAccessibleName(caption);
    fit();
}

void Tag::SetFont(const FontPtr& font)
{
    m_font.set(font);
}

void Tag::SetForeColor(Color color)
{
    m_foreColor = color;
    update();
}

void Tag::SetBackColor(Color color)
{
    m_backColor = color;
    update();
}

void Tag::SetToolTipText(const QString& text)
{
    m_toolTipText = text;
    setPlainToolTip(*this, text);
}

QSize Tag::sizeHint() const
{
    const QFontMetrics metrics(font());
    const QSize text = metrics.size(Qt::TextSingleLine, m_caption);
    return {text.width() + 2 * SidePadding, metrics.height() + 2 * LinePadding};
}

void Tag::fit()
{
    setFont(wholeFont(m_font));
    resize(Tag::sizeHint());
    updateGeometry();
    update(); // another caption may have the same size
}

void Tag::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(shownColor(*this, m_backColor));
    painter.drawRoundedRect(rect(), Radius, Radius);
    const QRect room = rect().adjusted(SidePadding, 0, -SidePadding, 0);
    painter.setPen(shownColor(*this, m_foreColor));
    painter.drawText(room, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                     fontMetrics().elidedText(m_caption, Qt::ElideRight, room.width()));
}

} // namespace tavrin
