#pragma once

#include "base/values/Color.h"
#include "base/values/Font.h"
#include "base/values/Twips.h"

#include <QFont>
#include <QRectF>
#include <QString>

class QPainter;
class QPaintDevice;

namespace tavrin {

/// How a filled box joins with what lies below it.
enum class DrawMode
{
    MaskPen = 9,  ///< the box takes on the ground's colour, and still shows
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
    virtual void SetFont(const Font& font) = 0;
    virtual void SetFontName(const QString& name) = 0;
    /// In points.
    virtual double FontSize() const = 0;
    virtual void SetFontSize(double points) = 0;
    virtual bool FontBold() const = 0;
    virtual void SetFontBold(bool bold) = 0;
    /// Colour of the texts that are printed from now on.
    virtual void SetForeColor(Color color) = 0;
    virtual void SetDrawMode(DrawMode mode) = 0;
    virtual Twips TextWidth(const QString& text) const = 0;
    virtual Twips TextHeight(const QString& text) const = 0;
    /// Prints at the current position, which then stands behind the text on the same line. The draw mode
    /// counts for boxes only.
    virtual void Print(const QString& text) = 0;
    /// Moves the position to the start of the next line.
    virtual void EndLine() = 0;
    /// Fills the box; the current position is then its second corner.
    virtual void DrawBox(Twips x1, Twips y1, Twips x2, Twips y2, Color color) = 0;
    /// The size that the painter of a row tells of it; at first that of the surface.
    virtual Twips Width() const = 0;
    virtual void SetWidth(Twips width) = 0;
    virtual Twips Height() const = 0;
    virtual void SetHeight(Twips height) = 0;
};

/// Position, font and size of a surface; what comes onto it is its descendants' matter.
class RowPicture : public PictureSurface
{
public:
    Twips CurrentX() const override { return m_x; }
    void SetCurrentX(Twips x) override { m_x = x; }
    Twips CurrentY() const override { return m_y; }
    void SetCurrentY(Twips y) override { m_y = y; }
    void SetFont(const Font& font) override;
    void SetFontName(const QString& name) override { m_font.setFamily(name); }
    double FontSize() const override;
    void SetFontSize(double points) override { m_font.setPointSizeF(points); }
    bool FontBold() const override { return m_font.bold(); }
    void SetFontBold(bool bold) override { m_font.setBold(bold); }
    void SetDrawMode(DrawMode mode) override { m_mode = mode; }
    Twips TextWidth(const QString& text) const override;
    Twips TextHeight(const QString& text) const override;
    void EndLine() override;
    Twips Width() const override { return m_width; }
    void SetWidth(Twips width) override { m_width = width; }
    Twips Height() const override { return m_height; }
    void SetHeight(Twips height) override { m_height = height; }

protected:
    /// `device` decides the resolution of the font's measures.
    RowPicture(const QFont& font, QPaintDevice* device, const QSizeF& pixels);

    const QFont& font() const { return m_font; }
    DrawMode drawMode() const { return m_mode; }

private:
    QFont m_font;
    QPaintDevice* m_device;
    Twips m_x = 0;
    Twips m_y = 0;
    Twips m_width;
    Twips m_height;
    DrawMode m_mode = DrawMode::CopyPen;
};

/// The surface of one row that is being painted. Coordinates start at the row's left upper corner.
class PaintedPicture final : public RowPicture
{
public:
    /// Paints through `painter`, which must outlive it, with the painter's font and pen colour, on a row
    /// that is filled with `ground` already.
    PaintedPicture(QPainter& painter, const QRectF& row, const QColor& ground);

    void SetForeColor(Color color) override;
    void Print(const QString& text) override;
    void DrawBox(Twips x1, Twips y1, Twips x2, Twips y2, Color color) override;

private:
    QPainter& m_painter;
    QRectF m_row;
    QColor m_ground;
};

/// Paints nothing: measures a row and takes down its text.
class MeasuredPicture final : public RowPicture
{
public:
    MeasuredPicture(const QFont& font, QPaintDevice* device, const QSizeF& pixels)
        : RowPicture(font, device, pixels)
    {
    }

    void SetForeColor(Color) override {}
    void Print(const QString& text) override;
    void EndLine() override;
    void DrawBox(Twips x1, Twips y1, Twips x2, Twips y2, Color color) override;

    /// What was printed, one line behind the other.
    QString text() const { return m_text.simplified(); }

private:
    QString m_text;
    // The end of the last text; what is printed elsewhere is another word.
    Twips m_endX = 0;
    Twips m_endY = 0;
};

} // namespace tavrin
