#include "base/values/Font.h"

#include <QFontInfo>
#include <QGuiApplication>

#include <algorithm>
#include <utility>

namespace tavrin {

Font::Font()
    : m_font(QGuiApplication::font())
{
}

Font::Font(const QFont& font)
    : m_font(font)
{
}

template <typename Value>
void Font::change(const char* property, Value before, Value after, void (QFont::*set)(Value))
{
    if (before == after)
        return;
    (m_font.*set)(after);
    FontChanged.raise(QString::fromLatin1(property));
}

void Font::SetName(const QString& name)
{
    if (name == Name())
        return;
    m_font.setFamily(name);
    FontChanged.raise(QStringLiteral("Name"));
}

double Font::Size() const
{
    // A font that was given in pixels has no size in points of its own.
    return m_font.pixelSize() > 0 ? QFontInfo(m_font).pointSizeF() : m_font.pointSizeF();
}

void Font::SetSize(double points)
{
    change("Size", Size(), std::max(points, 1.0), &QFont::setPointSizeF);
}

void Font::SetBold(bool bold)
{
    change("Bold", Bold(), bold, &QFont::setBold);
}

void Font::SetItalic(bool italic)
{
    change("Italic", Italic(), italic, &QFont::setItalic);
}

void Font::SetUnderline(bool underline)
{
    change("Underline", Underline(), underline, &QFont::setUnderline);
}

void Font::SetStrikethrough(bool strikethrough)
{
    change("Strikethrough", Strikethrough(), strikethrough, &QFont::setStrikeOut);
}

void Font::SetWeight(int weight)
{
    const int valid = std::clamp(weight, 1, 1000);
    if (valid == Weight())
        return;
    m_font.setWeight(static_cast<QFont::Weight>(valid));
    FontChanged.raise(QStringLiteral("Weight"));
}

void Font::SetCharset(int charset)
{
    if (std::exchange(m_charset, charset) != charset)
        FontChanged.raise(QStringLiteral("Charset"));
}

} // namespace tavrin
