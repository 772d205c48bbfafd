#pragma once

#include "spell/CustomDictionary.h"
#include "spell/Speller.h"

#include <QHash>
#include <QSet>

#include <memory>
#include <optional>

namespace tavrin {

class HunspellDictionary;

/// The main dictionary, the custom words and the words to be ignored, as one.
///
/// Words are compared in their composed form, U+2019 counts as an apostrophe, the Unicode hyphens as a
/// hyphen; suggestions come with the apostrophe of the word. A custom word is right in its own case, with a
/// capital letter at its front, wholly in capitals, and with the "'s" of the genitive. A word of more than
/// `LongestWord` code units, or with a character outside the basic plane, is wrong and has no suggestions:
/// Hunspell is not asked about it.
class HunspellSpeller final : public Speller
{
public:
    HunspellSpeller();
    ~HunspellSpeller() override;

    /// Loads a support file of the host. Raises an `Error` that names the file when it is missing, cannot be
    /// read, is damaged, or does not know its own words; there is then no main dictionary.
    void setMainDictionary(const QString& path);
    bool hasMainDictionary() const;
    /// Reads the custom words; "" lets go of them. Raises an `Error` when the file cannot be read; there is
    /// then no custom dictionary. The main dictionary may come later.
    void setCustomDictionary(const QString& path);

    /// Reads the custom words again if somebody has changed the file. When it cannot be read, the words stay
    /// as they are.
    void refreshCustomWords();

    bool isCorrect(const QString& word) override;
    QStringList suggestions(const QString& word) override;
    void ignoreAll(const QString& word) override;
    void forgetIgnored() override;
    bool add(const QString& word) override;
    void removeAdded(const QString& word) override;

private:
    void applyCustomWords();
    bool isKnown(const QString& word);
    bool ask(const QString& word) const;

    std::unique_ptr<HunspellDictionary> m_main;
    std::optional<CustomDictionary> m_custom;
    QSet<QString> m_ignored;
    QHash<QString, bool> m_answers; // of the dictionaries, since a text repeats its words
};

} // namespace tavrin
