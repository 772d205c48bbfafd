#include "widgets/panels/TipPanel.h"

#include "widgets/drawing/Placement.h"
#include "widgets/labels/Label.h"

#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>

namespace tavrin {

namespace {

constexpr Twips PanelWidth = 5355;
constexpr Twips PanelHeight = 495;
constexpr Twips PictureLeft = 180;
constexpr Twips PictureTop = 135;
constexpr Twips PictureSide = 240;
constexpr Twips TitleLeft = 480;
constexpr Twips TextTop = 120;
constexpr Twips TitleWidth = 360;
constexpr Twips SentenceLeft = 900;
constexpr Twips SentenceWidth = 4650;
constexpr Twips TextHeight = 240;

constexpr QRgb Glow = 0xFFE8A317; // readable on white and on dark grey

/// A light bulb in a box of 16 by 16.
void paintBulb(QPainter& painter, const QColor& socket)
{
    QPainterPath bulb;
    bulb.moveTo(5.6, 10.8);
    bulb.cubicTo(5.6, 9.2, 3.2, 8.6, 3.2, 5.6);
    bulb.cubicTo(3.2, 2.9, 5.3, 0.8, 8, 0.8);
    bulb.cubicTo(10.7, 0.8, 12.8, 2.9, 12.8, 5.6);
    bulb.cubicTo(12.8, 8.6, 10.4, 9.2, 10.4, 10.8);
    bulb.closeSubpath();
    QColor fill = QColor::fromRgba(Glow);
    painter.setPen(QPen(fill.darker(115), 1));
    fill.setAlphaF(0.75F);
    painter.setBrush(fill);
    painter.drawPath(bulb);
    painter.setPen(QPen(socket, 1.2, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(5.8, 12.8), QPointF(10.2, 12.8));
    painter.drawLine(QPointF(6.6, 14.9), QPointF(9.4, 14.9));
}

Label* newLabel(const QString& caption, TipPanel* panel)
{
    auto* label = new Label(panel);
    label->SetAutoSize(false);
    label->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    label->SetForeColor(SystemColor::WindowText);
    label->SetCaption(caption);
    return label;
}

} // namespace

TipPanel::TipPanel(const QString& sentence, QWidget* parent)
    : QWidget(parent)
    , m_title(newLabel(QStringLiteral("Tip"), this))
    , m_sentence(newLabel(sentence, this))
{
    const FontPtr bold = std::make_shared<Font>();
    bold->SetBold(true);
    m_title->SetFont(bold);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setEnabled(false);
    resize(toPixels(PanelWidth), toPixels(PanelHeight));
    moveTo(*m_title, TitleLeft, TextTop, TitleWidth, TextHeight);
    moveTo(*m_sentence, SentenceLeft, TextTop, SentenceWidth, TextHeight);
}

QString TipPanel::Sentence() const
{
    return m_sentence->Caption();
}

void TipPanel::SetFaded(bool faded)
{
    m_faded = faded;
    for (Label* label : {m_title, m_sentence})
        label->SetForeColor(faded ? SystemColor::GreyText : SystemColor::WindowText);
    update();
}

void TipPanel::paintEvent(QPaintEvent*)
{
    const QPalette::ColorGroup group = m_faded ? QPalette::Disabled : QPalette::Active;
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(group, QPalette::Base));
    painter.setOpacity(m_faded ? 0.5 : 1);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(toPixels(PictureLeft), toPixels(PictureTop));
    const qreal scale = toPixels(PictureSide) / 16.0;
    painter.scale(scale, scale);
    paintBulb(painter, palette().color(group, QPalette::Text));
}

} // namespace tavrin
