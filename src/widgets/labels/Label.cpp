#include "widgets/labels/Label.h"

#include "widgets/drawing/ConstituentLook.h"

#include <QPainter>
#include <QRegularExpression>
#include <QStyle>

namespace tavrin {

Label::Label(QWidget* parent)
    : QLabel(parent)
    , m_font([this] { fit(); })
{
    setTextFormat(Qt::PlainText);
    fit();
}

void Label::SetCaption(const QString& caption)
{
    setText(caption);
    fit();
}

void Label::SetFont(const FontPtr& font)
{
    m_font.set(font);
}

void Label::SetForeColor(Color color)
{
    m_foreColor = color;
    update();
}

void Label::SetAutoSize(bool autoSize)
{
    m_autoSize = autoSize;
    fit();
    updateGeometry();
    update();
}

void Label::SetElideMode(Qt::TextElideMode mode)
{
    m_elideMode = mode;
    applyToolTip();
    update();
}

QSize Label::minimumSizeHint() const
{
    const QSize whole = QLabel::minimumSizeHint();
    return m_autoSize ? whole : QSize(0, whole.height());
}

void Label::fit()
{
    setFont(wholeFont(m_font));
    if (m_autoSize)
        resize(sizeHint());
    applyToolTip();
}

void Label::applyToolTip()
{
    if (toolTip() != m_ownToolTip) // it was given one
        return;
    QString whole;
    if (shownText() != text()) {
        whole = text();
        if (buddy()) // where '&' marks the key, and "&&" stands for one
            whole.replace(QRegularExpression(QStringLiteral("&(.)")), QStringLiteral("\\1"));
    }
    setPlainToolTip(*this, whole);
    m_ownToolTip = toolTip();
}

QRect Label::room() const
{
    const int inset = margin();
    return contentsRect().adjusted(inset, inset, -inset, -inset);
}

int Label::textFlags() const
{
    auto flags = static_cast<int>(QStyle::visualAlignment(layoutDirection(), alignment()));
    if (buddy()) {
        const bool underlines = style()->styleHint(QStyle::SH_UnderlineShortcut, nullptr, this) != 0;
        flags |= underlines ? Qt::TextShowMnemonic : Qt::TextHideMnemonic;
    }
    return m_autoSize ? flags : flags | Qt::TextSingleLine;
}

QString Label::shownText() const
{
    if (m_autoSize)
        return text();
    return fontMetrics().elidedText(text(), m_elideMode, room().width(), buddy() ? Qt::TextShowMnemonic : 0);
}

void Label::resizeEvent(QResizeEvent* event)
{
    QLabel::resizeEvent(event);
    applyToolTip();
}

void Label::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    drawFrame(&painter);
    painter.setPen(shownColor(*this, m_foreColor));
    style()->drawItemText(&painter, room(), textFlags(), palette(), isEnabled(), shownText(),
                          QPalette::NoRole);
}

} // namespace tavrin
