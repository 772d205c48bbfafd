#pragma once

#include "spell/SpellingEngine.h"
#include "spell/SpellingWalk.h"

#include <QPointer>

namespace tavrin {

class frmSpelling;
class HunspellSpeller;

/// The spelling engine on Hunspell, with the dialog `frmSpelling`.
///
/// A check walks over `QLineEdit`, `QPlainTextEdit` and `QTextEdit`; other widgets raise an `Error`. It stops
/// at each wrong word; when there is none, no dialog comes. A check counts as abandoned when the person
/// cancels it or the text box dies; what was changed until then stays changed. A box that is read-only or
/// disabled is checked, and its text is not changed. Without the dialog a check has nothing to do, and ends.
///
/// `UserAction` with `WordAdded` is raised when the word stands in the custom dictionary's file, before the
/// dialog goes on. For as long as it is open "Undo Last" takes an added word out of the file again, which
/// raises `WordTakenBack`; a word that somebody else had written there stays, and nothing is raised.
class HunspellEngine final : public SpellingEngine
{
public:
    HunspellEngine();
    /// Ends a check that is under way, without an event.
    ~HunspellEngine() override;
    HunspellEngine(const HunspellEngine&) = delete;
    HunspellEngine& operator=(const HunspellEngine&) = delete;

    void SetMainDictionaryPath(const QString& path) override;
    void SetCustomDictionaryPath(const QString& path) override;
    void SetAllowAdd(bool allow) override { m_allowAdd = allow; }
    void SetShowDialog(bool show) override { m_showDialog = show; }

    /// Raises an `Error` while another check of this engine or of this text box runs, without a main
    /// dictionary, and for a widget that is no text box.
    void CheckWindow(QWidget* textBox) override;

    QString CheckedText() const override;
    qsizetype BadWordStart() const override;
    qsizetype BadWordLength() const override;

private:
    bool askPerson(const std::shared_ptr<SpellingWalk>& walk);

    std::shared_ptr<HunspellSpeller> m_speller; // shared with a check that outlives the engine
    std::shared_ptr<bool> m_alive;
    std::shared_ptr<const SpellingWalk> m_walk; // while a check runs
    QPointer<frmSpelling> m_dialog;
    bool m_allowAdd = false;
    bool m_showDialog = false;
};

} // namespace tavrin
