#pragma once

#include "widgets/drawing/PictureSurface.h"

#include <QStringList>

#include <utility>

namespace tavrin::test {

/// A surface that notes each call. A letter is 10 twips wide and 20 high for each point of the font; bold
/// makes it one twip wider.
class RecordingPicture final : public PictureSurface
{
public:
    Twips CurrentX() const override { return m_x; }
    void SetCurrentX(Twips x) override
    {
        m_x = x;
        note("x", x);
    }
    Twips CurrentY() const override { return m_y; }
    void SetCurrentY(Twips y) override
    {
        m_y = y;
        note("y", y);
    }
    void SetFont(const Font& font) override
    {
        m_size = font.Size();
        m_bold = font.Bold();
        calls << QStringLiteral("font %1 %2").arg(font.Name(), QString::number(font.Size()));
    }
    void SetFontName(const QString& name) override { calls << QStringLiteral("font name ") + name; }
    double FontSize() const override { return m_size; }
    void SetFontSize(double points) override
    {
        m_size = points;
        note("size", points);
    }
    bool FontBold() const override { return m_bold; }
    void SetFontBold(bool bold) override
    {
        if (std::exchange(m_bold, bold) != bold)
            calls << (bold ? QStringLiteral("bold") : QStringLiteral("not bold"));
    }
    void SetForeColor(Color color) override
    {
        calls << QStringLiteral("colour %1").arg(color.value(), 0, 16);
    }
    void SetDrawMode(DrawMode) override {}
    Twips TextWidth(const QString& text) const override
    {
        return static_cast<Twips>(text.size()) * (10 * static_cast<Twips>(m_size) + (m_bold ? 1.0F : 0.0F));
    }
    Twips TextHeight(const QString&) const override { return 20 * static_cast<Twips>(m_size); }
    void Print(const QString& text) override
    {
        if (!text.isEmpty()) {
            calls << QStringLiteral("print \"%1\" at %2,%3")
                         .arg(text, QString::number(m_x), QString::number(m_y));
        }
        m_x += TextWidth(text);
    }
    void EndLine() override
    {
        m_y += TextHeight(QString());
        m_x = 0;
        calls << QStringLiteral("end of line");
    }
    void DrawBox(Twips x1, Twips y1, Twips x2, Twips y2, Color) override
    {
        calls << QStringLiteral("mark %1,%2 to %3,%4").arg(x1).arg(y1).arg(x2).arg(y2);
        m_x = x2;
        m_y = y2;
    }
    Twips Width() const override { return m_width; }
    void SetWidth(Twips width) override
    {
        m_width = width;
        note("width", width);
    }
    Twips Height() const override { return m_height; }
    void SetHeight(Twips height) override
    {
        m_height = height;
        note("height", height);
    }

    QStringList calls;

private:
    void note(const char* what, double number)
    {
        calls << QString::fromLatin1(what) + QLatin1Char(' ') + QString::number(number);
    }

    double m_size = 9;
    bool m_bold = false;
    Twips m_x = 0;
    Twips m_y = 0;
    Twips m_width = 0;
    Twips m_height = 0;
};

} // namespace tavrin::test
