#include "attachments/dialogs/UploadIcon.h"

#include "base/failure/Error.h"
#include "widgets/drawing/ConstituentLook.h"

#include <QPainter>
#include <QPainterPath>

namespace tavrin {

namespace {

constexpr qreal Side = 20; // the signs are drawn in a box of this side

// Readable on white and on dark grey; the strokes on them are white.
constexpr QRgb Good = 0xFF2F8F5B;
constexpr QRgb Bad = 0xFFC9403A;

void paintFile(QPainter& painter, const QPalette& palette)
{
    // Half-way between the pixels, so that the lines are sharp.
    QPainterPath sheet(QPointF(4.5, 2.5));
    sheet.lineTo(11.5, 2.5);
    sheet.lineTo(15.5, 6.5);
    sheet.lineTo(15.5, 17.5);
    sheet.lineTo(4.5, 17.5);
    sheet.closeSubpath();
    QPainterPath fold(QPointF(11.5, 2.5));
    fold.lineTo(11.5, 6.5);
    fold.lineTo(15.5, 6.5);

    painter.setPen(QPen(palette.color(QPalette::PlaceholderText), 1, Qt::SolidLine, Qt::RoundCap));
    painter.setBrush(palette.color(QPalette::Base));
    painter.drawPath(sheet);
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(fold);
    for (const qreal y : {9.5, 11.5, 13.5})
        painter.drawLine(QPointF(7, y), QPointF(13, y));
}

void paintOutcome(QPainter& painter, QRgb color, const QPainterPath& stroke)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor::fromRgb(color));
    painter.drawEllipse(QRectF(2, 2, 16, 16));
    painter.setPen(QPen(Qt::white, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(stroke);
}

void paintSuccess(QPainter& painter, const QPalette&)
{
    QPainterPath tick(QPointF(6.5, 10.5));
    tick.lineTo(9, 13);
    tick.lineTo(13.5, 7.5);
    paintOutcome(painter, Good, tick);
}

void paintError(QPainter& painter, const QPalette&)
{
    QPainterPath cross(QPointF(7, 7));
    cross.lineTo(13, 13);
    cross.moveTo(13, 7);
    cross.lineTo(7, 13);
    paintOutcome(painter, Bad, cross);
}

struct Sign
{
    QLatin1String key;
    QLatin1String name; // for screen readers
    void (*paint)(QPainter&, const QPalette&);
};

const Sign imglIcons[] = {
    {QLatin1String("file"), QLatin1String("File"), paintFile},
    {QLatin1String("success"), QLatin1String("Uploaded"), paintSuccess},
    {QLatin1String("error"), QLatin1String("Failed"), paintError},
};

const Sign& signOf(const QString& key)
{
    for (const Sign& sign : imglIcons) {
        if (sign.key == key)
            return sign;
    }
    throw Error(QStringLiteral("There is no sign '%1'").arg(key));
}

} // namespace

UploadIcon::UploadIcon(QWidget* parent)
    : QWidget(parent)
{
    installAccessibleRole<UploadIcon, QAccessible::Graphic>();
    SetKey(imglIcons[0].key);
}

void UploadIcon::SetKey(const QString& key)
{
    setAccessibleName(signOf(key).name);
    m_key = key;
    update();
}

void UploadIcon::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(width() / Side, height() / Side);
    signOf(m_key).paint(painter, palette());
}

} // namespace tavrin
