#pragma once

#include <QString>
#include <QStringList>

namespace tavrin {

/// What the walk over a text asks about one word.
class Speller
{
public:
    virtual ~Speller() = default;

    /// A word is right when the main dictionary, the custom words or the words to be ignored know it. ""
    /// is right. Raises an `Error` when there is no main dictionary.
    virtual bool isCorrect(const QString& word) = 0;
    /// The likeliest first; none for a word that nothing is like. Raises as `isCorrect` does.
    virtual QStringList suggestions(const QString& word) = 0;

    /// Takes the word, in just this case, for right until `forgetIgnored`. Nothing is written.
    virtual void ignoreAll(const QString& word) = 0;
    /// To be called when a check begins.
    virtual void forgetIgnored() = 0;

    /// Adds the word to the custom dictionary's file. It is right from now on. False when the file held it
    /// already. Raises an `Error` when it is no word, there is no custom dictionary, or the file cannot be
    /// written; the word then stays wrong.
    virtual bool add(const QString& word) = 0;
    /// Takes a word out of the custom dictionary's file again. A word that is not in it is no failure.
    /// Raises an `Error` when the file cannot be written; the word then stays right.
    virtual void removeAdded(const QString& word) = 0;
};

} // namespace tavrin
