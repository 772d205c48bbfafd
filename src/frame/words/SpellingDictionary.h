#pragma once

#include "base/export/Export.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>

namespace tavrin {

/// A main dictionary: what the host's support file holds and the spelling engine works with. The form of the
/// file is told in docs/spelling-dictionary.md.
struct SpellingDictionary
{
    /// Of the installed dictionary, as in "en_US".
    QString Name;
    /// When the ".aff" file was last changed; UTC, in milliseconds.
    QDateTime RulesChanged;
    /// Content of the installed ".aff" file.
    QByteArray AffixRules;
    /// Content of the installed ".dic" file.
    QByteArray WordList;
    /// When the ".dic" file was last changed; UTC, in milliseconds.
    QDateTime WordsChanged = {};
};

/// Raises an `Error` that says what is wrong when the rules or the word list is empty, cut off, no text, of
/// an encoding other than UTF-8 or ISO8859-1, or states a count that its lines belie. Hunspell itself takes
/// such files without a complaint.
TAVRIN_COMPANION_EXPORT void checkSpellingDictionary(const SpellingDictionary& dictionary);

/// The encoding that the rules name; "ISO8859-1" when they name none.
TAVRIN_COMPANION_EXPORT QByteArray encodingOf(const QByteArray& affixRules);

/// The content of a support file.
TAVRIN_COMPANION_EXPORT QByteArray packSpellingDictionary(const SpellingDictionary& dictionary);
/// Raises an `Error` that says what is wrong with the content: no byte of a support file can be changed or
/// missing without that.
TAVRIN_COMPANION_EXPORT SpellingDictionary unpackSpellingDictionary(const QByteArray& content);

/// Reads and checks a support file. Raises an `Error` that names it.
TAVRIN_COMPANION_EXPORT SpellingDictionary readSpellingDictionary(const QString& path);

/// Bytes of the longest dictionary file that is read.
inline constexpr qint64 LongestDictionaryFile = qint64(64) << 20;

} // namespace tavrin
