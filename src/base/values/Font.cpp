#include "base/values/Font.h"

#include <QFontInfo>
#include <QGuiApplication>

#include <algorithm>
#include <utility>

namespace tavrin {

class Font::Private
{
public:
    /// Whether the value is another one; `set` has put it then.
    template <typename Value>
    bool change(Value before, Value after, void (QFont::*set)(Value))
    {
        if (before == after)
            return false;
        (font.*set)(after);
        return true;
    }

    QFont font;
    int charset = 1;
};

Font::Font()
    : Font(QGuiApplication::font())
{
}

Font::Font(const QFont& font)
    : d(std::make_unique<Private>(Private{font}))
{
}

Font::~Font() = default;

QString Font::Name() const
{
    return d->font.family();
}

void Font::SetName(const QString& name)
{
    if (name == Name())
        return;
    d->font.setFamily(name);
    FontChanged.raise(QStringLiteral("Name"));
}

double Font::Size() const
{
    // A font that was given in pixels has no size in points of its own.
    return d->font.pixelSize() > 0 ? QFontInfo(d->font).pointSizeF() : d->font.pointSizeF();
}

void Font::SetSize(double points)
{
    if (d->change(Size(), std::max(points, 1.0), &QFont::setPointSizeF))
        FontChanged.raise(QStringLiteral("Size"));
}

bool Font::Bold() const
{
    return d->font.bold();
}

void Font::SetBold(bool bold)
{
    if (d->change(Bold(), bold, &QFont::setBold))
        FontChanged.raise(QStringLiteral("Bold"));
}

bool Font::Italic() const
{
    return d->font.italic();
}

void Font::SetItalic(bool italic)
{
    if (d->change(Italic(), italic, &QFont::setItalic))
        FontChanged.raise(QStringLiteral("Italic"));
}

bool Font::Underline() const
{
    return d->font.underline();
}

void Font::SetUnderline(bool underline)
{
    if (d->change(Underline(), underline, &QFont::setUnderline))
        FontChanged.raise(QStringLiteral("Underline"));
}

bool Font::Strikethrough() const
{
    return d->font.strikeOut();
}

void Font::SetStrikethrough(bool strikethrough)
{
    if (d->change(Strikethrough(), strikethrough, &QFont::setStrikeOut))
        FontChanged.raise(QStringLiteral("Strikethrough"));
}

int Font::Weight() const
{
    return d->font.weight();
}

void Font::SetWeight(int weight)
{
    const int valid = std::clamp(weight, 1, 1000);
    if (valid == Weight())
        return;
    d->font.setWeight(static_cast<QFont::Weight>(valid));
    FontChanged.raise(QStringLiteral("Weight"));
}

int Font::Charset() const
{
    return d->charset;
}

void Font::SetCharset(int charset)
{
    if (std::exchange(d->charset, charset) != charset)
        FontChanged.raise(QStringLiteral("Charset"));
}

QFont Font::toQFont() const
{
    return d->font;
}

} // namespace tavrin
