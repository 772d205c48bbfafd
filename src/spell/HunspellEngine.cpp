#include "spell/HunspellEngine.h"

#include "base/failure/Error.h"
#include "spell/HunspellSpeller.h"
#include "spell/WaitCursor.h"
#include "spell/frmSpelling.h"

#include <QScopeGuard>
#include <QSet>

namespace tavrin {

namespace {

/// The text boxes of this thread that are being checked.
QSet<const QWidget*>& boxesUnderCheck()
{
    thread_local QSet<const QWidget*> boxes;
    return boxes;
}

} // namespace

HunspellEngine::HunspellEngine()
    : m_speller(std::make_shared<HunspellSpeller>())
    , m_alive(std::make_shared<bool>(true))
{
}

HunspellEngine::~HunspellEngine()
{
    *m_alive = false;
    if (m_dialog)
        m_dialog->reject();
}

void HunspellEngine::SetMainDictionaryPath(const QString& path)
{
    const WaitCursor wait;
    m_speller->setMainDictionary(path);
}

void HunspellEngine::SetCustomDictionaryPath(const QString& path)
{
    m_speller->setCustomDictionary(path);
}

void HunspellEngine::CheckWindow(QWidget* textBox)
{
    if (m_walk || boxesUnderCheck().contains(textBox))
        throw Error(QStringLiteral("A spell check is already under way."));
    boxesUnderCheck().insert(textBox);
    // The engine may die with its form while the dialog is open.
    const auto isGone = [alive = m_alive] { return !*alive; };
    const auto end = qScopeGuard([&] {
        boxesUnderCheck().remove(textBox);
        if (!isGone())
            m_walk.reset();
    });

    m_speller->refreshCustomWords(); // another control or program may have added some
    const auto walk = std::make_shared<SpellingWalk>(textBox, m_speller);
    if (isGone()) // a handler of the box has closed the form at the first mark
        return;
    m_walk = walk;
    const Subscription added = walk->WordAdded.subscribe([this, isGone] {
        int code = WordAdded;
        if (!isGone())
            UserAction.raise(code);
    });
    const Subscription takenBack = walk->WordTakenBack.subscribe([this, isGone](const QString& word) {
        if (!isGone())
            WordTakenBack.raise(word);
    });
    const bool completed = askPerson(walk);
    if (isGone())
        return;
    m_walk.reset();
    int abandoned = completed ? 0 : 1;
    CheckEnded.raise(abandoned);
}

bool HunspellEngine::askPerson(const std::shared_ptr<SpellingWalk>& walk)
{
    if (!walk->isAtWord() || !m_showDialog)
        return walk->textBox() != nullptr;
    auto* dialog = new frmSpelling(walk, m_allowAdd);
    const QPointer<frmSpelling> alive = dialog; // it dies with the box's window
    const auto unload = qScopeGuard([&] { delete alive; });
    m_dialog = dialog;
    dialog->ShowModal(walk->textBox());
    return alive && !alive->Canceled() && walk->textBox();
}

QString HunspellEngine::CheckedText() const
{
    return m_walk ? m_walk->text() : QString();
}

qsizetype HunspellEngine::BadWordStart() const
{
    return m_walk ? m_walk->place().Offset : 0;
}

qsizetype HunspellEngine::BadWordLength() const
{
    return m_walk ? m_walk->place().Length : 0;
}

} // namespace tavrin
