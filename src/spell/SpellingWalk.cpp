#include "spell/SpellingWalk.h"

#include "base/failure/Error.h"
#include "spell/WaitCursor.h"

#include <algorithm>
#include <utility>

namespace tavrin {

SpellingWalk::SpellingWalk(QWidget* textBox, std::shared_ptr<Speller> speller)
    : m_widget(textBox)
    , m_box(CheckedBox::of(textBox))
    , m_speller(std::move(speller))
    , m_text(m_box->text())
{
    m_speller->forgetIgnored();
    findFrom(0);
}

SpellingWalk::~SpellingWalk() = default;

void SpellingWalk::findFrom(qsizetype offset)
{
    m_isAtWord = false;
    const std::optional<FoundWord> wrong = wrongWordFrom(offset);
    if (!wrong)
        return;
    m_place = *wrong;
    m_isAtWord = true;
    m_box->select(m_place); // a handler of the box may end it here
}

std::optional<FoundWord> SpellingWalk::wrongWordFrom(qsizetype offset) const
{
    const WaitCursor wait;
    WordFinder words(m_text, offset);
    std::optional<FoundWord> found = words.next();
    while (found && m_speller->isCorrect(m_text.sliced(found->Offset, found->Length)))
        found = words.next();
    return found;
}

void SpellingWalk::decided(std::variant<Changed, Ignored, Added> what, qsizetype next)
{
    m_history.push_back({m_place, word(), std::move(what)});
    findFrom(next);
}

void SpellingWalk::requireSameText()
{
    m_note.clear();
    if (!m_widget || m_box->text() == m_text)
        return;
    adoptText();
    throw Error(QStringLiteral("The text was changed meanwhile. The check goes on in the new text."));
}

/// Another text: earlier changes cannot be taken back in it.
void SpellingWalk::adoptText()
{
    forgetChanges();
    m_text = m_box->text();
    findFrom(std::min(m_place.Offset, m_text.size()));
}

void SpellingWalk::forgetChanges()
{
    std::erase_if(m_history,
                  [](const Decision& decision) { return std::holds_alternative<Changed>(decision.what); });
}

void SpellingWalk::requireRoom(qsizetype more) const
{
    const int most = m_box->maxLength();
    if (more <= 0 || most <= 0 || m_box->length() + more <= most)
        return;
    throw Error(QStringLiteral("There is no room for this change: the text can have %1 characters at most.")
                    .arg(most));
}

void SpellingWalk::change(const QString& replacement)
{
    requireSameText();
    if (isAtWord())
        replace({m_place}, replacement, false);
}

void SpellingWalk::changeAll(const QString& replacement)
{
    requireSameText();
    if (isAtWord())
        replace(sameWords(), replacement, true);
}

void SpellingWalk::replace(const QList<FoundWord>& words, const QString& replacement, bool all)
{
    if (!canChange())
        throw Error(QStringLiteral("The text of this box cannot be changed."));
    requireRoom((replacement.size() - m_place.Length) * words.size());
    const QString wanted = replaced(m_text, words, replacement);
    const Changed change{word(), replacement, words, all ? wrongWordsOf(replacement) : QStringList()};
    const QString before = std::exchange(m_text, wanted);
    m_box->replace(words, replacement);
    if (!m_widget)
        return;
    const QString now = m_box->text();
    if (now == before) {
        m_text = before;
        m_box->select(m_place);
        throw Error(QStringLiteral("The box does not take this text."));
    }
    m_history.push_back({m_place, change.before, change});
    for (const QString& ignored : change.ignored)
        m_speller->ignoreAll(ignored);
    if (now != wanted) { // a handler of the form has made yet another text of it
        m_text = now;
        forgetChanges();
    }
    findFrom(std::min(m_place.Offset + replacement.size(), m_text.size()));
}

QList<FoundWord> SpellingWalk::sameWords() const
{
    const WaitCursor wait;
    QList<FoundWord> same;
    const QString wanted = word();
    WordFinder words(m_text, m_place.Offset);
    while (const auto found = words.next()) {
        if (QStringView(m_text).sliced(found->Offset, found->Length) == wanted)
            same << *found;
    }
    return same;
}

/// What would stop the check again at each of the places.
QStringList SpellingWalk::wrongWordsOf(const QString& text) const
{
    QStringList wrong;
    WordFinder words(text);
    while (const auto found = words.next()) {
        const QString word = text.sliced(found->Offset, found->Length);
        if (!m_speller->isCorrect(word))
            wrong << word;
    }
    return wrong;
}

void SpellingWalk::ignore()
{
    requireSameText();
    if (isAtWord())
        decided(Ignored{}, m_place.end());
}

void SpellingWalk::ignoreAll()
{
    requireSameText();
    if (!isAtWord())
        return;
    m_speller->ignoreAll(word());
    decided(Ignored{true}, m_place.end());
}

void SpellingWalk::add()
{
    requireSameText();
    if (!isAtWord())
        return;
    const QString added = word();
    const bool isNew = m_speller->add(added);
    m_history.push_back({m_place, added, Added{isNew}});
    WordAdded.raise(); // a box may open: whatever stands around the walk may die, and time passes
    keepAdded(added);
    requireSameText();
    if (isAtWord())
        findFrom(m_place.end());
}

/// A program that brought the file up to date before all were told of the word has dropped its line.
void SpellingWalk::keepAdded(const QString& word)
{
    auto* added = m_history.empty() ? nullptr : std::get_if<Added>(&m_history.back().what);
    try {
        if (m_speller->add(word) && added)
            added->isNew = true;
    } catch (const Error&) { // NOLINT(bugprone-empty-catch): it was added once, which counts
    }
}

void SpellingWalk::undo()
{
    requireSameText();
    if (!canUndo())
        return;
    const Decision last = m_history.back();
    const auto* added = std::get_if<Added>(&last.what);
    // When it fails the decision stays.
    if (added && added->isNew)
        m_speller->removeAdded(last.word);
    if (const auto* change = std::get_if<Changed>(&last.what))
        takeBack(*change);
    else
        m_history.pop_back();
    tellIgnored();
    if (m_widget) {
        m_place = last.place;
        findFrom(std::min(last.place.Offset, m_text.size()));
    }
    if (added && added->isNew)
        WordTakenBack.raise(last.word);
    else if (added)
        m_note = QStringLiteral("\"%1\" stays in the custom dictionary: it is there from elsewhere.")
                     .arg(last.word);
}

/// Also takes the decision out of the history, unless the box refuses.
void SpellingWalk::takeBack(const Changed& change)
{
    if (!canChange())
        throw Error(QStringLiteral("The text of this box cannot be changed."));
    QList<FoundWord> words = change.words; // where the replacements stand now
    for (qsizetype i = 0; i < words.size(); ++i) {
        words[i].Offset += i * (change.after.size() - change.before.size());
        words[i].Length = change.after.size();
    }
    const QString wanted = replaced(m_text, words, change.before);
    if (m_box->canUndo()) {
        m_box->undo();
        if (m_widget && m_box->text() != wanted)
            m_box->redo(); // it was something else that the box remembered
    }
    if (m_widget && m_box->text() == m_text)
        m_box->replace(words, change.before);
    if (!m_widget)
        return;
    const QString now = m_box->text();
    if (now == m_text) {
        m_box->select(m_place);
        throw Error(QStringLiteral("The box does not take this text."));
    }
    m_text = now;
    m_history.pop_back();
    if (now != wanted)
        forgetChanges();
}

/// The words that the remaining decisions pass over.
void SpellingWalk::tellIgnored()
{
    m_speller->forgetIgnored();
    for (const Decision& decision : m_history) {
        if (const auto* ignored = std::get_if<Ignored>(&decision.what); ignored && ignored->all)
            m_speller->ignoreAll(decision.word);
        if (const auto* change = std::get_if<Changed>(&decision.what)) {
            for (const QString& word : change->ignored)
                m_speller->ignoreAll(word);
        }
    }
}

} // namespace tavrin
