#pragma once

#include <QByteArray>
#include <QSet>
#include <QString>
#include <QStringList>

#include <memory>

namespace tavrin {

struct SpellingDictionary;

/// One loaded dictionary of Hunspell, with words added to it.
///
/// Words are in normal form, see `CustomWords`, and not longer than `CustomWords::LongestWord`.
class HunspellDictionary
{
public:
    /// Raises an `Error` that says what is wrong when the dictionary does not know its own words, or takes
    /// anything for a word.
    explicit HunspellDictionary(const SpellingDictionary& dictionary);
    ~HunspellDictionary();

    /// Makes these the added words, in place of those before.
    void setAddedWords(const QSet<QString>& words);
    void addWord(const QString& word);

    bool knows(const QString& word) const;
    /// The likeliest first.
    QStringList suggestions(const QString& word) const;

private:
    class Library;
    std::unique_ptr<Library> m_library;
};

} // namespace tavrin
