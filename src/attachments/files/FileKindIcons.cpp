#include "attachments/files/FileKindIcons.h"

#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace tavrin::FileKindIcons {

namespace {

// Readable on white, on dark grey, and on the blue of a selected row.
constexpr QRgb Paper = 0xFFFDFDFD;
constexpr QRgb PaperLine = 0xFF7F8B97;
constexpr QRgb PaperText = 0xFFA9B3BD;
constexpr QRgb PaperFold = 0xFFDDE3E9;
constexpr QRgb Sky = 0xFFE3F0FC;
constexpr QRgb Frame = 0xFF5A82AD;
constexpr QRgb Sun = 0xFFE8A317;
constexpr QRgb Hill = 0xFF4F9468;
constexpr QRgb FarHill = 0xFF7DB592;
constexpr qreal DisabledOpacity = 0.5;

QPolygonF polygon(std::initializer_list<QPointF> points)
{
    return QPolygonF(QList<QPointF>(points));
}

/// A sheet with a folded corner and lines of text, in a box of 20 by 20.
void paintFile(QPainter& painter)
{
    painter.setPen(QPen(QColor::fromRgb(PaperLine), 1, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.setBrush(QColor::fromRgb(Paper));
    painter.drawPolygon(polygon({{3.5, 1.5}, {12.5, 1.5}, {16.5, 5.5}, {16.5, 18.5}, {3.5, 18.5}}));
    painter.setBrush(QColor::fromRgb(PaperFold));
    painter.drawPolygon(polygon({{12.5, 1.5}, {12.5, 5.5}, {16.5, 5.5}}));
    painter.setPen(QPen(QColor::fromRgb(PaperText), 1, Qt::SolidLine, Qt::FlatCap));
    for (const qreal y : {8.5, 10.5, 12.5})
        painter.drawLine(QPointF(6, y), QPointF(14, y));
    painter.drawLine(QPointF(6, 14.5), QPointF(11, 14.5));
}

/// A framed landscape, in a box of 20 by 20.
void paintImage(QPainter& painter)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor::fromRgb(Sky));
    painter.drawRect(QRectF(2, 4, 16, 13));
    painter.setBrush(QColor::fromRgb(Sun));
    painter.drawEllipse(QPointF(6.5, 7.5), 1.75, 1.75);
    painter.setBrush(QColor::fromRgb(FarHill));
    painter.drawPolygon(polygon({{8, 17}, {13, 9}, {18, 15}, {18, 17}}));
    painter.setBrush(QColor::fromRgb(Hill));
    painter.drawPolygon(polygon({{2, 17}, {2, 15}, {6.5, 11}, {12, 17}}));
    painter.setPen(QPen(QColor::fromRgb(Frame), 1, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(QRectF(1.5, 3.5, 17, 14));
}

/// An engine of which Qt asks pictures of any size.
class Engine : public QIconEngine
{
public:
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, QRect({}, size), mode, state);
        return picture;
    }
};

class KindEngine final : public Engine
{
public:
    explicit KindEngine(void (*draw)(QPainter&))
        : m_draw(draw)
    {
    }
    QIconEngine* clone() const override { return new KindEngine(m_draw); }
    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override { return {QSize(Side, Side)}; }
    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        if (mode == QIcon::Disabled)
            painter->setOpacity(painter->opacity() * DisabledOpacity);
        const qreal side = std::min(rect.width(), rect.height());
        painter->translate(rect.x() + (rect.width() - side) / 2, rect.y() + (rect.height() - side) / 2);
        painter->scale(side / Side, side / Side);
        m_draw(*painter);
        painter->restore();
    }

private:
    void (*m_draw)(QPainter&);
};

class PaddedEngine final : public Engine
{
public:
    PaddedEngine(QIcon picture, const QSize& cell)
        : m_picture(std::move(picture))
        , m_cell(cell)
    {
    }
    QIconEngine* clone() const override { return new PaddedEngine(m_picture, m_cell); }
    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override { return {m_cell}; }
    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override
    {
        const QSize own = m_picture.availableSizes().value(0, m_cell);
        const qreal scale = std::min(static_cast<qreal>(rect.width()) / m_cell.width(),
                                     static_cast<qreal>(rect.height()) / m_cell.height());
        const QSize shown(qRound(own.width() * scale), qRound(own.height() * scale));
        const QPoint corner(rect.x() + qRound((rect.width() - shown.width()) / 2.0),
                            rect.y() + qRound((rect.height() - shown.height()) / 2.0));
        m_picture.paint(painter, QRect(corner, shown), Qt::AlignCenter, mode, state);
    }

private:
    QIcon m_picture;
    QSize m_cell;
};

} // namespace

QIcon file()
{
    return QIcon(new KindEngine(paintFile));
}

QIcon image()
{
    return QIcon(new KindEngine(paintImage));
}

QIcon padded(const QIcon& picture, int width, int height)
{
    return QIcon(new PaddedEngine(picture, QSize(width, height)));
}

} // namespace tavrin::FileKindIcons
