#include "attachments/dialogs/TransferBar.h"

#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace tavrin {

namespace {
constexpr int Percent = 100;
constexpr qreal ThickestLine = 6; // of the height, in the middle
} // namespace

TransferBar::TransferBar(QWidget* parent)
    : QProgressBar(parent)
{
    setRange(0, Percent);
    setValue(0);
    setTextVisible(false);
}

void TransferBar::paintEvent(QPaintEvent*)
{
    const qreal thick = std::min<qreal>(height(), ThickestLine);
    const QRectF track(0, std::floor((height() - thick) / 2), width(), thick);
    QPainterPath shape;
    shape.addRoundedRect(track, thick / 2, thick / 2);

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(shape, palette().color(QPalette::Mid));
    QRectF done = track;
    done.setWidth(track.width() * value() / Percent);
    painter.setClipRect(done);
    painter.fillPath(shape, palette().color(QPalette::Highlight));
}

} // namespace tavrin
