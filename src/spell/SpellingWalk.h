#pragma once

#include "base/failure/Event.h"
#include "spell/CheckedBox.h"
#include "spell/Speller.h"

#include <QPointer>
#include <QStringList>
#include <QWidget>

#include <memory>
#include <optional>
#include <variant>
#include <vector>

namespace tavrin {

/// One check of a text box from its start to its end: stops at each wrong word, marks it in the box, and does
/// what the person decides about it.
///
/// Each decision goes on to the next wrong word; what it does can be taken back, the last decision first,
/// until the walk has ended. One that fails raises an `Error` with a text for a person, and the walk stays at
/// its word.
///
/// When the text is found to be another one than the walk left, because a program has changed it meanwhile,
/// nothing is done with the old offsets: the walk goes on at its place in the new text and raises an `Error`
/// that says so. A box that dies ends the walk; then `isAtWord` is false.
///
///     SpellingWalk walk(box, speller);
///     while (walk.isAtWord())
///         walk.change(walk.suggestions().first());
class SpellingWalk
{
public:
    /// Raises an `Error` for a widget that is no text box, and when there is no dictionary.
    SpellingWalk(QWidget* textBox, std::shared_ptr<Speller> speller);
    ~SpellingWalk();
    SpellingWalk(const SpellingWalk&) = delete;
    SpellingWalk& operator=(const SpellingWalk&) = delete;

    /// nullptr when it has died.
    QWidget* textBox() const { return m_widget.data(); }
    /// Whether it stands at a wrong word; false at the end of the text.
    bool isAtWord() const { return m_widget && m_isAtWord; }

    /// The whole text.
    const QString& text() const { return m_text; }
    const FoundWord& place() const { return m_place; }
    QString word() const { return m_text.mid(m_place.Offset, m_place.Length); }
    QStringList suggestions() const { return m_speller->suggestions(word()); }
    /// Where the word shows, in global coordinates.
    QRect shownAt() const { return m_widget ? m_box->place() : QRect(); }
    /// Whether `change` and `changeAll` are open to the person.
    bool canChange() const { return m_widget && m_box->canChange(); }

    /// Writes the replacement in place of the word. It is not checked itself.
    void change(const QString& replacement);
    /// Also in place of all that are the same, in the same case, behind it.
    void changeAll(const QString& replacement);
    void ignore();
    /// Takes the word for right in this check. Nothing is written.
    void ignoreAll();
    /// Adds the word to the custom dictionary's file, and raises `WordAdded`.
    void add();

    bool canUndo() const { return m_widget && !m_history.empty(); }
    /// Takes the last decision back and stands at its word again. A word that it takes out of the custom
    /// dictionary's file again raises `WordTakenBack`; one that somebody else has written there stays, and is
    /// right: the walk then stands at the next wrong word.
    void undo();
    /// What the person should know of the last decision or of its taking back; "" mostly.
    const QString& note() const { return m_note; }

    /// The file has the word, which is still at issue.
    Event<> WordAdded;
    /// The word is out of the file again.
    Event<const QString&> WordTakenBack;

private:
    struct Changed
    {
        QString before;
        QString after;
        QList<FoundWord> words; // where they stood
        QStringList ignored;    // words of the replacement that the check passes over from now on
    };
    struct Ignored
    {
        bool all = false;
    };
    struct Added
    {
        bool isNew = true; // else somebody else has written it into the file
    };
    struct Decision
    {
        FoundWord place;
        QString word;
        std::variant<Changed, Ignored, Added> what;
    };

    void findFrom(qsizetype offset);
    std::optional<FoundWord> wrongWordFrom(qsizetype offset) const;
    void decided(std::variant<Changed, Ignored, Added> what, qsizetype next);
    void replace(const QList<FoundWord>& words, const QString& replacement, bool all);
    QList<FoundWord> sameWords() const;
    QStringList wrongWordsOf(const QString& text) const;
    void requireRoom(qsizetype more) const;
    void keepAdded(const QString& word);
    void requireSameText();
    void adoptText();
    void forgetChanges();
    void takeBack(const Changed& change);
    void tellIgnored();

    QPointer<QWidget> m_widget;
    std::unique_ptr<CheckedBox> m_box;
    std::shared_ptr<Speller> m_speller;
    QString m_text;
    FoundWord m_place;
    bool m_isAtWord = false;
    QString m_note;
    std::vector<Decision> m_history;
};

} // namespace tavrin
