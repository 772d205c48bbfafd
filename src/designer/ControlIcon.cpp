#include "designer/ControlIcon.h"

#include <QGuiApplication>
#include <QHash>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>

#include <algorithm>
#include <utility>

namespace tavrin::designer {

namespace {

constexpr qreal Grid = 22; // the size that the palette shows; all icons are drawn in its units
constexpr qreal Stroke = 1.4;

/// The brush that all icons share: lines in the colour of text, and one accent.
class Brush
{
public:
    Brush(QPainter& painter, const QPalette& palette, bool disabled)
        : m_painter(painter)
        , m_ink(palette.color(disabled ? QPalette::Disabled : QPalette::Active, QPalette::WindowText))
        , m_accent(disabled                  ? m_ink
                   : m_ink.lightness() > 127 ? QColor(0x62, 0xA8, 0xF0) // on a dark ground
                                             : QColor(0x1F, 0x6F, 0xC4))
    {
    }

    void ink() { pen(m_ink); }
    void accent() { pen(m_accent); }
    void filled(bool accent = true)
    {
        m_painter.setPen(Qt::NoPen);
        m_painter.setBrush(accent ? m_accent : m_ink);
    }
    QPainter* operator->() { return &m_painter; }

    void box(const QRectF& place)
    {
        ink();
        m_painter.drawRoundedRect(place, 1.5, 1.5);
    }
    void lines(std::initializer_list<QPointF> points)
    {
        m_painter.drawPolyline(points.begin(), static_cast<int>(points.size()));
    }
    /// A chevron that points down.
    void chevron(qreal x, qreal y) { lines({{x - 2, y - 1}, {x, y + 1}, {x + 2, y - 1}}); }
    void person(qreal x, qreal y)
    {
        filled();
        m_painter.drawEllipse(QPointF(x, y), 2.1, 2.1);
        QPainterPath shoulders(QPointF(x - 3.6, y + 6.6));
        shoulders.cubicTo(x - 3.6, y + 1.8, x + 3.6, y + 1.8, x + 3.6, y + 6.6);
        m_painter.drawPath(shoulders);
    }

private:
    void pen(const QColor& color)
    {
        m_painter.setPen(QPen(color, Stroke, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        m_painter.setBrush(Qt::NoBrush);
    }

    QPainter& m_painter;
    QColor m_ink;
    QColor m_accent;
};

/// A combo box, with room for a sign at its left.
void combo(Brush& brush)
{
    brush.box({2, 5, 18, 12});
    brush.chevron(16, 11.2);
}

/// The flat look: a short caption over a box that is a line only.
void flatField(Brush& brush)
{
    brush.ink();
    brush.lines({{2.5, 3.5}, {9.5, 3.5}});
    brush.lines({{2.5, 19}, {19.5, 19}});
    brush.chevron(17, 14);
}

void drawAgency(Brush& brush)
{
    combo(brush);
    brush.filled();
    QPainterPath shield(QPointF(8, 7));
    shield.quadTo(9.5, 8.3, 11, 8.2);
    shield.quadTo(11.4, 13, 8, 15.2);
    shield.quadTo(4.6, 13, 5, 8.2);
    shield.quadTo(6.5, 8.3, 8, 7);
    brush->drawPath(shield);
}

void drawEmployee(Brush& brush)
{
    combo(brush);
    brush.person(8, 9);
}

void drawFlatEmployee(Brush& brush)
{
    flatField(brush);
    brush.person(8, 10);
}

void drawFlatUser(Brush& brush)
{
    flatField(brush);
    brush.person(6, 10);
    brush->save();
    brush->translate(11.5, 10.8);
    brush->scale(0.82, 0.82);
    brush.person(0, 0);
    brush->restore();
}

/// A gavel.
void drawOffense(Brush& brush)
{
    combo(brush);
    brush.accent();
    brush->save();
    brush->translate(8.3, 10.2);
    brush->rotate(-45);
    brush.lines({{0, 1}, {0, 5.2}});
    brush.filled();
    brush->drawRoundedRect(QRectF(-3.1, -1.9, 6.2, 3.2), 0.8, 0.8);
    brush->restore();
}

/// The sign of a number, for codes.
void drawNibrs(Brush& brush)
{
    combo(brush);
    brush.accent();
    brush.lines({{7, 8}, {6, 14}});
    brush.lines({{10.5, 8}, {9.5, 14}});
    brush.lines({{5.2, 9.8}, {11.5, 9.8}});
    brush.lines({{4.9, 12.4}, {11.2, 12.4}});
}

void drawDropdown(Brush& brush)
{
    combo(brush);
    brush.filled();
    brush->drawRoundedRect(QRectF(4.5, 8, 6, 6), 1, 1);
}

void drawAutoComplete(Brush& brush)
{
    brush.box({2, 5, 18, 12});
    brush.accent();
    brush->drawEllipse(QPointF(14, 10.2), 2.7, 2.7);
    brush.lines({{16, 12.3}, {17.8, 14.1}});
    brush.ink();
    brush.lines({{5, 8.5}, {5, 13.5}});
    brush.lines({{7.5, 11}, {9.3, 11}});
}

void drawMultiValue(Brush& brush)
{
    brush.box({2, 2.5, 13, 17});
    brush.lines({{5, 6.5}, {12, 6.5}});
    brush.lines({{5, 10}, {12, 10}});
    brush.lines({{5, 13.5}, {9, 13.5}});
    brush.accent();
    brush.lines({{17.5, 8.5}, {17.5, 13.5}});
    brush.lines({{15 + 0.2, 11}, {20, 11}});
}

void drawRelations(Brush& brush)
{
    brush.ink();
    brush.lines({{6, 6}, {16, 11}});
    brush.lines({{6, 17}, {16, 11}});
    brush.filled();
    brush->drawEllipse(QPointF(16, 11), 3.3, 3.3);
    brush.filled(false);
    brush->drawEllipse(QPointF(5.5, 5.5), 2.6, 2.6);
    brush->drawEllipse(QPointF(5.5, 17), 2.6, 2.6);
}

/// A paper clip.
void drawAttachments(Brush& brush)
{
    brush.accent();
    brush->save();
    brush->translate(11, 11);
    brush->rotate(40);
    QPainterPath clip(QPointF(3.6, -3));
    clip.lineTo(3.6, 4.5);
    clip.arcTo(QRectF(-3.6, 1.5, 7.2, 7.2), 0, -180);
    clip.lineTo(-3.6, -5.5);
    clip.arcTo(QRectF(-3.6, -8.2, 5, 5), 180, -180);
    clip.lineTo(1.4, 4);
    clip.arcTo(QRectF(-1.2, 2.8, 2.6, 2.6), 0, -180);
    clip.lineTo(-1.2, -2.5);
    brush->drawPath(clip);
    brush->restore();
}

void drawCover(Brush& brush)
{
    brush.box({2, 3.5, 18, 15});
    brush.filled();
    brush->drawEllipse(QPointF(7, 8), 1.8, 1.8);
    brush->drawPolygon(QPolygonF({{4, 16.5}, {9, 11}, {11.5, 13.5}, {14, 9.5}, {18, 16.5}}));
}

/// Words on a line, a wave below, and a tick.
void drawSpelling(Brush& brush)
{
    brush.ink();
    brush.lines({{2.5, 11.5}, {5.5, 3.5}, {8.5, 11.5}});
    brush.lines({{3.7, 8.6}, {7.3, 8.6}});
    brush.lines({{11.5, 3.5}, {11.5, 11.5}});
    brush->drawArc(QRectF(9.8, 3.6, 5, 3.7), 90 * 16, -180 * 16);
    brush->drawArc(QRectF(9.4, 7.4, 6, 4), 90 * 16, -180 * 16);
    brush.accent();
    brush.lines({{8, 16}, {11.5, 19.2}, {19, 12}});
}

/// A pin on a map.
void drawLatLong(Brush& brush)
{
    brush.ink();
    brush.lines({{7.2, 14.6}, {3, 16.2}, {3, 19.6}, {19, 19.6}, {19, 16.2}, {14.8, 14.6}});
    brush.filled();
    QPainterPath pin(QPointF(11, 17));
    pin.cubicTo(8.5, 12.5, 6, 10.5, 6, 7.2);
    pin.arcTo(QRectF(6, 2.2, 10, 10), 180, -180);
    pin.cubicTo(16, 10.5, 13.5, 12.5, 11, 17);
    pin.addEllipse(QPointF(11, 7.2), 2, 2);
    brush->drawPath(pin);
}

using Drawing = void (*)(Brush& brush);

Drawing drawingOf(const QString& control)
{
    static const QHash<QString, Drawing> drawings{
        {QStringLiteral("AgencyPicker"), drawAgency},
        {QStringLiteral("Attachments"), drawAttachments},
        {QStringLiteral("AutoCompleteField"), drawAutoComplete},
        {QStringLiteral("CoverImage"), drawCover},
        {QStringLiteral("EmployeePicker"), drawEmployee},
        {QStringLiteral("FlatEmployeePicker"), drawFlatEmployee},
        {QStringLiteral("FlatUserPicker"), drawFlatUser},
        {QStringLiteral("LatLong"), drawLatLong},
        {QStringLiteral("MultiValue"), drawMultiValue},
        {QStringLiteral("NibrsOffensePicker"), drawNibrs},
        {QStringLiteral("OffensePicker"), drawOffense},
        {QStringLiteral("SuspRelList"), drawRelations},
        {QStringLiteral("TavrinDropdown"), drawDropdown},
        {QStringLiteral("TavrinSpellcheck"), drawSpelling},
    };
    return drawings.value(control, nullptr);
}

class Engine final : public QIconEngine
{
public:
    explicit Engine(Drawing drawing)
        : m_drawing(drawing)
    {
    }

    void paint(QPainter* painter, const QRect& place, QIcon::Mode mode, QIcon::State) override
    {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        const qreal side = std::min(place.width(), place.height());
        painter->translate(QRectF(place).center() - QPointF(side, side) / 2);
        painter->scale(side / Grid, side / Grid);
        Brush brush(*painter, QGuiApplication::palette(), mode == QIcon::Disabled);
        m_drawing(brush);
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override { return {{22, 22}, {44, 44}}; }

    QIconEngine* clone() const override { return new Engine(m_drawing); }

private:
    Drawing m_drawing;
};

} // namespace

QIcon controlIcon(const QString& control)
{
    const Drawing drawing = drawingOf(control);
    return drawing ? QIcon(new Engine(drawing)) : QIcon();
}

} // namespace tavrin::designer
