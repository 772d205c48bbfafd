#pragma once

#include "base/failure/Event.h"
#include "widgets/panels/Form.h"

#include <functional>
#include <memory>

class QLabel;
class QListWidget;
class QPushButton;
class QTextEdit;

namespace tavrin {

class SpellingWalk;
class TextBox;

/// The spelling dialog: shows the wrong word that a walk stands at, asks the person what is to become of it,
/// and goes on to the next until the walk ends.
///
///     const auto walk = std::make_shared<SpellingWalk>(box, speller);
///     const QPointer<frmSpelling> dialog = new frmSpelling(walk, allowAdd); // dies with the box's window
///     const auto unload = qScopeGuard([&] { delete dialog; });
///     if (walk->isAtWord())
///         dialog->ShowModal(box);
///
/// Enter changes the word, Escape ends the check; each button has a letter for Alt. The dialog keeps clear of
/// the word in the box. What the person decides is done in the box at once.
class frmSpelling final : public Form
{
    Q_OBJECT

public:
    /// The walk stands at a word. Without `allowAdd` there is no button to add words.
    frmSpelling(std::shared_ptr<SpellingWalk> walk, bool allowAdd, QWidget* parent = nullptr);
    ~frmSpelling() override;

    /// The person has pressed Cancel or Escape, or closed the window.
    bool Canceled() const { return m_canceled; }

    void reject() override;

protected:
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void build();
    void arrange();
    void connectButtons();
    void showWord();
    void showSentence();
    void showSuggestions();
    void showMessage(const QString& text);
    void announceWord();
    void applyMessageColor();
    void enableButtons();
    void keepClearOfWord();
    /// Does what the person has decided and goes on; a failure is told in the dialog.
    void decide(const std::function<void(SpellingWalk&)>& decision);

    std::shared_ptr<SpellingWalk> m_walk;
    QLabel* lblSentence;
    QTextEdit* txtSentence;
    QLabel* lblChangeTo;
    TextBox* txtChangeTo;
    QLabel* lblSuggestions;
    QListWidget* lstSuggestions;
    QLabel* lblMessage;
    QPushButton* cmdIgnore;
    QPushButton* cmdIgnoreAll;
    QPushButton* cmdAdd; // hidden without the right
    QPushButton* cmdChange;
    QPushButton* cmdChangeAll;
    QPushButton* cmdUndo;
    QPushButton* cmdCancel;
    Subscription m_typed;
    bool m_canceled = false;
};

} // namespace tavrin
