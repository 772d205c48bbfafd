#pragma once

#include "base/export/Export.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

/// The words that people add to the dictionary: what is a word, and the file that the host writes and the
/// spelling engine reads and extends.
namespace tavrin::CustomWords {

/// UTF-16 code units of the longest word that spelling looks at.
inline constexpr qsizetype LongestWord = 100;

/// One form for all ways to write a word: composed characters, ' for U+2019, - for the Unicode hyphens, no
/// soft hyphens, no blanks at the ends.
TAVRIN_COMPANION_EXPORT QString normalForm(const QString& word);

/// Why a word in normal form cannot be added, as the end of a sentence; "" when it can. A word has a letter
/// and no blank, no slash and no control character, and is not longer than `LongestWord`.
TAVRIN_COMPANION_EXPORT QString flawOf(const QString& word);

/// The normal form. Raises an `Error` with a text for a person when the word cannot be added.
TAVRIN_COMPANION_EXPORT QString requireWord(const QString& word);

/// Bytes of the longest file that is read.
inline constexpr qint64 LongestFile = qint64(16) << 20;

/// Raises an `Error` that names the file when its content is binary: it holds zeros. Of a text with other
/// faults the good lines count.
TAVRIN_COMPANION_EXPORT void requireText(const QString& path, const QByteArray& content);

/// The words of a file's content, in its order, in normal form, each once. Lines that are no words are
/// passed over.
TAVRIN_COMPANION_EXPORT QStringList parse(const QByteArray& content);

/// The content of a file with these words: UTF-8, one a line.
TAVRIN_COMPANION_EXPORT QByteArray format(const QStringList& words);

} // namespace tavrin::CustomWords
