#pragma once

#include "spell/WordFinder.h"

#include <QString>

namespace tavrin {

/// A word in the sentence around it, to be shown.
struct Sentence
{
    QString Text;
    FoundWord Word; ///< where it stands in `Text`
};

/// UTF-16 units of the longest word that is shown whole.
inline constexpr qsizetype LongestWordShown = 200;

/// A word as it is shown: of one that is too long its beginning and its end, with "…" between them.
QString shownWord(const QString& word);

/// The sentence of a text that holds the word, as `shownWord` says. A long one is cut at a blank on both
/// sides of the word, with "…" at the cut.
Sentence sentenceAround(const QString& text, const FoundWord& word);

} // namespace tavrin
