#pragma once

#include <QChar>
#include <QStringView>

/// The characters of a text as the finder of words tells them apart.
namespace tavrin::WordCharacters {

/// A character of a text, and how many UTF-16 code units it takes. A surrogate without its other half is a
/// character by itself.
struct Character
{
    char32_t Code = 0;
    qsizetype Units = 1;
};

inline Character at(QStringView text, qsizetype position)
{
    const QChar first = text.at(position);
    if (first.isHighSurrogate() && position + 1 < text.size() && text.at(position + 1).isLowSurrogate())
        return {QChar::surrogateToUcs4(first, text.at(position + 1)), 2};
    return {first.unicode(), 1};
}

inline bool isAsciiLetter(char32_t c)
{
    return (c >= U'a' && c <= U'z') || (c >= U'A' && c <= U'Z');
}

inline bool isAsciiDigit(char32_t c)
{
    return c >= U'0' && c <= U'9';
}

inline bool isDigit(char32_t c)
{
    return c < 0x80 ? isAsciiDigit(c) : QChar::isDigit(c);
}

/// What a word can begin with.
inline bool isLetterOrDigit(char32_t c)
{
    if (c < 0x80)
        return isAsciiLetter(c) || isAsciiDigit(c);
    return QChar::isLetter(c) || QChar::isDigit(c);
}

inline bool isMark(char32_t c)
{
    return c >= 0x300 && QChar::isMark(c);
}

/// What stands in a word without being seen: soft hyphens, joiners. The blank without width parts words.
inline bool isInvisible(char32_t c)
{
    return c >= 0x80 && c != 0x200B && QChar::category(c) == QChar::Other_Format;
}

inline bool isApostrophe(char32_t c)
{
    return c == U'\'' || c == 0x2019;
}

inline bool isHyphen(char32_t c)
{
    return c == U'-' || c == 0x2010 || c == 0x2011;
}

/// Of a script that writes its words without blanks between them.
inline bool isOfUnspacedScript(char32_t c)
{
    if (c < 0x0E00)
        return false;
    switch (QChar::script(c)) {
    case QChar::Script_Thai:
    case QChar::Script_Lao:
    case QChar::Script_Myanmar:
    case QChar::Script_Khmer:
    case QChar::Script_Hiragana:
    case QChar::Script_Katakana:
    case QChar::Script_Han:
        return true;
    default:
        return false;
    }
}

} // namespace tavrin::WordCharacters
