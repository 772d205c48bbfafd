#include "spell/HunspellSpeller.h"

#include "base/failure/Error.h"
#include "frame/words/CustomWords.h"
#include "frame/words/SpellingDictionary.h"
#include "spell/HunspellDictionary.h"

namespace tavrin {

namespace {

/// Words whose answers are kept; a text seldom has more different ones.
constexpr qsizetype MostAnswers = 100'000;
constexpr QChar CurlyApostrophe(0x2019);

bool isForHunspell(const QString& word)
{
    return word.size() <= CustomWords::LongestWord;
}

} // namespace

HunspellSpeller::HunspellSpeller() = default;
HunspellSpeller::~HunspellSpeller() = default;

void HunspellSpeller::setMainDictionary(const QString& path)
{
    m_main.reset();
    m_answers.clear();
    const SpellingDictionary dictionary = readSpellingDictionary(path);
    try {
        m_main = std::make_unique<HunspellDictionary>(dictionary);
    } catch (...) {
        throw Error(QStringLiteral("The spelling dictionary %1 cannot be used: %2")
                        .arg(path, Error::fromCurrentException().Description));
    }
    applyCustomWords();
}

bool HunspellSpeller::hasMainDictionary() const
{
    return m_main != nullptr;
}

void HunspellSpeller::setCustomDictionary(const QString& path)
{
    m_custom.reset();
    // A file that cannot be read must not leave the words of the one before.
    if (path.isEmpty()) {
        applyCustomWords();
        return;
    }
    try {
        m_custom.emplace(path);
    } catch (...) {
        applyCustomWords();
        throw;
    }
    applyCustomWords();
}

void HunspellSpeller::refreshCustomWords()
{
    try {
        if (m_custom && m_custom->refresh())
            applyCustomWords();
    } catch (const Error&) { // NOLINT(bugprone-empty-catch): the words stay
    }
}

void HunspellSpeller::applyCustomWords()
{
    m_answers.clear();
    if (m_main)
        m_main->setAddedWords(m_custom ? m_custom->words() : QSet<QString>());
}

bool HunspellSpeller::isCorrect(const QString& word)
{
    if (!m_main)
        throw Error(QStringLiteral("No spelling dictionary is loaded"));
    return isKnown(word) || (!m_ignored.isEmpty() && m_ignored.contains(CustomWords::normalForm(word)));
}

bool HunspellSpeller::isKnown(const QString& word)
{
    if (!isForHunspell(word))
        return false;
    if (const auto answered = m_answers.constFind(word); answered != m_answers.cend())
        return *answered;
    if (m_answers.size() >= MostAnswers)
        m_answers.clear();
    return *m_answers.insert(word, ask(CustomWords::normalForm(word)));
}

bool HunspellSpeller::ask(const QString& word) const
{
    if (word.isEmpty() || m_main->knows(word))
        return true;
    if (!m_custom)
        return false;
    const bool isGenitive = word.endsWith(QStringLiteral("'s"), Qt::CaseInsensitive);
    return m_custom->knows(word) || (isGenitive && m_custom->knows(word.chopped(2)));
}

QStringList HunspellSpeller::suggestions(const QString& word)
{
    if (!m_main)
        throw Error(QStringLiteral("No spelling dictionary is loaded"));
    if (!isForHunspell(word))
        return {};
    QStringList found = m_main->suggestions(CustomWords::normalForm(word));
    if (word.contains(CurlyApostrophe))
        found.replaceInStrings(QStringLiteral("'"), QString(CurlyApostrophe));
    return found;
}

void HunspellSpeller::ignoreAll(const QString& word)
{
    m_ignored.insert(CustomWords::normalForm(word));
}

void HunspellSpeller::forgetIgnored()
{
    m_ignored.clear();
}

bool HunspellSpeller::add(const QString& word)
{
    if (!m_custom)
        throw Error(QStringLiteral("No custom dictionary is open"));
    const QString normal = CustomWords::requireWord(word);
    const bool isNew = m_custom->add(normal);
    m_answers.clear();
    if (m_main)
        m_main->addWord(normal);
    return isNew;
}

void HunspellSpeller::removeAdded(const QString& word)
{
    if (!m_custom)
        throw Error(QStringLiteral("No custom dictionary is open"));
    m_custom->remove(CustomWords::normalForm(word));
    applyCustomWords();
}

} // namespace tavrin
