#pragma once

#include "base/export/Export.h"
#include "base/failure/Event.h"
#include "frame/control_frame/UserControl.h"

#include <functional>
#include <memory>
#include <vector>

namespace tavrin {

class SpellingEngine;
class tvCustomDictionary;

using SpellingEngineFactory = std::function<std::unique_ptr<SpellingEngine>()>;

/// Makes the engine of each spell-check control of this thread; at first a `HunspellEngine`. Another one may
/// be put in its place.
SpellingEngineFactory& spellingEngineFactory();

/// Checks the spelling of a host's text boxes.
///
/// It stands on a form beside them, shows itself in the designer only, and always has a size of 32 by 32
/// pixels. The host hands it a text box, and the spelling dialog goes over the text:
///
///     auto* spelling = new TavrinSpellcheck(form);
///     connectGuarded(cmdCheck, &QPushButton::clicked, this, "cmdCheck_Click", [this] {
///         spelling->CheckSpelling(txtNarrative);
///     });
///
/// A text box is any object that offers `hWnd`, `SelStart`, `SelLength` and `SetFocus`, see `LateTextBox`;
/// Qt's own text boxes and ours do. The first check of a control loads the dictionaries from the
/// workstation's folder, and the first one of all controls of the thread brings the custom words up to date.
/// Whoever has right 1 of the module "_Global" may add words, which are then the words of all.
///
/// A failure is told in a box. The control has no saved properties and raises no events.
class TAVRIN_EXPORT TavrinSpellcheck final : public UserControl
{
    Q_OBJECT
    Q_CLASSINFO("ClassName", "TVBoundControls.TavrinSpellcheck")
    Q_CLASSINFO("DefaultInterface", "_TavrinSpellcheck")

public:
    explicit TavrinSpellcheck(QWidget* parent = nullptr, const ControlSite& site = {});
    ~TavrinSpellcheck() override;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

    /// Checks the text box, and then tells in a box that the check is complete, whatever came of it.
    Q_INVOKABLE void CheckSpelling(QObject* txt);
    /// Checks the text box. True when the person went through to the end, or there was nothing to ask; False
    /// after a cancelled check and after a failure, which is told in a box. An engine that ends without
    /// saying how leaves the answer of the check before. Afterwards the caret stands at the text's start.
    Q_INVOKABLE bool CheckSpellingWithResult(QObject* txt);
    /// Brings the custom dictionary up to date with the database. A failure is told in a box. It may be
    /// called at any time; a first check brings the words up to date all the same.
    Q_INVOKABLE void SyncCustomDictionary();

protected:
    void UserControl_Resize() override;
    void paintEvent(QPaintEvent* event) override;

private:
    bool checkText(QObject* txt);
    bool initialize();
    void loadDictionaries();
    void takeDictionaries();
    void vsSpellCheck_CheckEnded(int abandoned);
    void vsSpellCheck_UserAction(int code);
    void addWord();
    void takeBackWord(const QString& word);

    std::unique_ptr<SpellingEngine> vsSpellCheck;
    Subscription m_checkEnded;
    Subscription m_userAction;
    Subscription m_wordTakenBack;
    bool m_initialized = false;
    bool m_loadFailed = false;
    bool m_completed = false;
    struct AddedWord
    {
        QString word;
        std::unique_ptr<tvCustomDictionary> dictionary; // that added it
    };
    std::vector<AddedWord> m_addedWords; // of the check that runs
};

} // namespace tavrin
