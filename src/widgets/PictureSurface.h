#pragma once

#include "base/Color.h"
#include "base/Twips.h"

#include <QFont>
#include <QRectF>
#include <QString>

class QPainter;

namespace tavrin {

/// How a filled box joins with what lies below it.
enum class DrawMode
{
    MaskPen = 9,  ///< bitwise and of the box's colour and the pixel below
    CopyPen = 13, ///< the box's colour
};

/// A drawing surface with a current position and a font. Lengths are twips.
class PictureSurface
{
public:
    virtual ~PictureSurface() = default;

    virtual Twips CurrentX() const = 0;
    virtual void SetCurrentX(Twips x) = 0;
    virtual Twips CurrentY() const = 0;
    virtual void SetCurrentY(Twips y) = 0;
    virtual bool FontBold() const = 0;
    virtual void SetFontBold(bool bold) = 0;
    virtual void SetDrawMode(DrawMode mode) = 0;
    virtual Twips TextWidth(const QString& text) const = 0;
    virtual Twips TextHeight(const QString& text) const = 0;
    /// Prints at the current position, which then stands behind the text on the same line. The draw mode
    /// counts for boxes only.
    virtual void Print(const QString& text) = 0;
    /// Fills the box; the current position is then its second corner.
    virtual void DrawBox(Twips x1, Twips y1, Twips x2, Twips y2, Color color) = 0;
};

/// The surface of one row that is being painted. Coordinates start at the row's left upper corner.
class PaintedPicture final : public PictureSurface
{
public:
    /// Paints through `painter`, which must outlive it, with the painter's font and pen colour.
    PaintedPicture(QPainter& painter, const QRectF& row);

    Twips CurrentX() const override { return m_x; }
    void SetCurrentX(Twips x) override { m_x = x; }
    Twips CurrentY() const override { return m_y; }
    void SetCurrentY(Twips y) override { m_y = y; }
    bool FontBold() const override { return m_font.bold(); }
    void SetFontBold(bool bold) override { m_font.setBold(bold); }
    void SetDrawMode(DrawMode mode) override { m_mode = mode; }
    Twips TextWidth(const QString& text) const override;
    Twips TextHeight(const QString& text) const override;
    void Print(const QString& text) override;
    void DrawBox(Twips x1, Twips y1, Twips x2, Twips y2, Color color) override;

private:
    QPainter& m_painter;
    QRectF m_row;
    QFont m_font;
    Twips m_x = 0;
    Twips m_y = 0;
    DrawMode m_mode = DrawMode::CopyPen;
};

} // namespace tavrin
