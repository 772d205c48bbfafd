#include "spell/Sentence.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace tavrin {

namespace {

constexpr qsizetype MostOnOneSide = 120; // UTF-16 units
constexpr qsizetype LongestWordLeftOut = 30;
constexpr QChar Ellipsis(0x2026);

/// Whether a line or a part of a document ends at the character.
bool endsLine(QChar c)
{
    constexpr char16_t beginningOfFrame = 0xFDD0;
    constexpr char16_t endOfFrame = 0xFDD1;
    return c == u'\n' || c == u'\r' || c == QChar::LineSeparator || c == QChar::ParagraphSeparator ||
           c == beginningOfFrame || c == endOfFrame;
}

struct Bounds
{
    qsizetype start;
    qsizetype end;
};

/// Of the line that the word stands in, no farther than what is looked at.
Bounds lineAround(const QString& text, const FoundWord& word)
{
    constexpr qsizetype most = 2 * MostOnOneSide;
    Bounds line{word.Offset, word.end()};
    while (line.start > std::max<qsizetype>(word.Offset - most, 0) && !endsLine(text.at(line.start - 1)))
        --line.start;
    while (line.end < std::min(word.end() + most, text.size()) && !endsLine(text.at(line.end)))
        ++line.end;
    return line;
}

Bounds sentenceBounds(const QString& text, const FoundWord& word)
{
    const Bounds line = lineAround(text, word);
    const QString window = text.sliced(line.start, line.end - line.start);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Sentence, window);
    finder.setPosition(word.Offset - line.start);
    if (!finder.isAtBoundary())
        finder.toPreviousBoundary();
    const qsizetype start = std::max<qsizetype>(finder.position(), 0);
    finder.setPosition(word.end() - line.start);
    if (!finder.isAtBoundary())
        finder.toNextBoundary();
    const qsizetype end = finder.position() < 0 ? window.size() : finder.position();
    return {line.start + start, line.start + end};
}

/// The first place from `from` on, not behind `limit`, at which a word begins; `from` in a long word.
qsizetype startOfWord(const QString& text, qsizetype from, qsizetype limit)
{
    for (qsizetype i = from; i < std::min(limit, from + LongestWordLeftOut); ++i) {
        if (text.at(i - 1).isSpace())
            return i;
    }
    return from < limit && text.at(from).isLowSurrogate() ? from + 1 : from;
}

/// The last place up to `to`, not before `limit`, at which a word ends; `to` in a long word.
qsizetype endOfWord(const QString& text, qsizetype to, qsizetype limit)
{
    for (qsizetype i = to; i > std::max(limit, to - LongestWordLeftOut); --i) {
        if (text.at(i).isSpace())
            return i;
    }
    return to > limit && text.at(to - 1).isHighSurrogate() ? to - 1 : to;
}

} // namespace

QString shownWord(const QString& word)
{
    if (word.size() <= LongestWordShown)
        return word;
    constexpr qsizetype beginning = 100;
    constexpr qsizetype ending = 30;
    const bool cutsBefore = word.at(beginning - 1).isHighSurrogate();
    const bool cutsBehind = word.at(word.size() - ending).isLowSurrogate();
    return word.first(beginning - (cutsBefore ? 1 : 0)) + Ellipsis + word.last(ending - (cutsBehind ? 1 : 0));
}

Sentence sentenceAround(const QString& text, const FoundWord& word)
{
    if (word.Length > LongestWordShown) {
        constexpr qsizetype lookedAt = 2 * MostOnOneSide;
        const QString shown = shownWord(text.mid(word.Offset, word.Length));
        const QString before = text.first(word.Offset).last(std::min(word.Offset, lookedAt));
        return sentenceAround(before + shown + text.mid(word.end(), lookedAt), {before.size(), shown.size()});
    }
    Bounds bounds = sentenceBounds(text, word);
    const bool isCutBefore = word.Offset - bounds.start > MostOnOneSide;
    const bool isCutBehind = bounds.end - word.end() > MostOnOneSide;
    if (isCutBefore)
        bounds.start = startOfWord(text, word.Offset - MostOnOneSide, word.Offset);
    if (isCutBehind)
        bounds.end = endOfWord(text, word.end() + MostOnOneSide, word.end());
    while (bounds.start < word.Offset && text.at(bounds.start).isSpace())
        ++bounds.start;
    while (bounds.end > word.end() && text.at(bounds.end - 1).isSpace())
        --bounds.end;

    Sentence sentence;
    if (isCutBefore)
        sentence.Text += Ellipsis;
    sentence.Word = {sentence.Text.size() + word.Offset - bounds.start, word.Length};
    sentence.Text += QStringView(text).sliced(bounds.start, bounds.end - bounds.start);
    if (isCutBehind)
        sentence.Text += Ellipsis;
    return sentence;
}

} // namespace tavrin
