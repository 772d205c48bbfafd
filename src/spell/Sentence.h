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

/// The sentence of a text that holds the word. A long one is cut at a blank on both sides of the word, with
/// "…" at the cut.
Sentence sentenceAround(const QString& text, const FoundWord& word);

} // namespace tavrin
