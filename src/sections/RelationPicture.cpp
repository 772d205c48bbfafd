#include "sections/RelationPicture.h"

#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>

namespace tavrin {

namespace {

constexpr qreal Side = 48; // the paths are drawn in a box of this side

/// Head and shoulders whose middle is at `x` and whose feet stand at `y`.
QPainterPath person(qreal x, qreal y)
{
    QPainterPath path;
    path.addEllipse(QPointF(x, y - 19.5), 5.5, 5.5);
    QPainterPath shoulders;
    shoulders.moveTo(x - 10, y);
    shoulders.cubicTo(x - 10, y - 16, x + 10, y - 16, x + 10, y);
    shoulders.closeSubpath();
    return path.united(shoulders);
}

} // namespace

RelationPicture::RelationPicture(QWidget* parent)
    : QWidget(parent)
{
}

void RelationPicture::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(width() / Side, height() / Side);
    const QColor accent = palette().color(QPalette::Highlight);
    const QColor quiet = palette().color(QPalette::PlaceholderText);

    painter.setPen(QPen(quiet, 2.5, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(21.5, 20.5), QPointF(26.5, 20.5));

    painter.setPen(Qt::NoPen);
    painter.setBrush(accent);
    painter.drawPath(person(13, 40));
    painter.setBrush(quiet);
    painter.drawPath(person(35, 40));
}

} // namespace tavrin
