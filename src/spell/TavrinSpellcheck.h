#pragma once

#include "base/export/Export.h"
#include "frame/control_frame/UserControl.h"

#include <memory>

namespace tavrin {

/// Checks the spelling of a host's text boxes.
///
/// It stands on a form beside them, shows itself in the designer only, and always has a size of 32 by 32
/// pixels. The host hands it a text box, and the spelling dialog goes over the text:
///
///     auto* spelling = new TavrinSpellcheck(form);
///     connectGuarded(cmdCheck, &QPushButton::clicked, this, "cmdCheck_Click", [this, spelling] {
///         spelling->CheckSpelling(txtNarrative);
///     });
///
/// A text box is a `QLineEdit`, `QPlainTextEdit` or `QTextEdit`, and so any of ours, or an object that offers
/// the same by its members: a readable property `hWnd`, the `QWidget*` of a text box, writable properties
/// `SelStart` and `SelLength`, in UTF-16 units, and an invokable method `SetFocus`.
///
/// The first check of a control loads the dictionaries from the workstation's folder, and the first one of
/// all controls of the thread brings the custom words up to date. Whoever has right 1 of the module "_Global"
/// may add words, which are then the words of all.
///
/// A failure is told in a box. The control has no saved properties and raises no events.
class TAVRIN_EXPORT TavrinSpellcheck final : public UserControl
{
    Q_OBJECT
    Q_CLASSINFO("ClassName", "TVBoundControls.TavrinSpellcheck")
    Q_CLASSINFO("DefaultInterface", "_TavrinSpellcheck")

public:
    /// Raises what making the spelling engine raises.
    explicit TavrinSpellcheck(QWidget* parent = nullptr, const ControlSite& site = {});
    ~TavrinSpellcheck() override;

    /// 32 by 32 pixels, as ever.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

    /// Checks the text box, and then tells in a box that the check is complete, whatever came of it. Returns
    /// when the dialog has gone; the control may have been deleted by then. Raises nothing: an object that is
    /// no text box, or nullptr, is told in a box as well.
    Q_INVOKABLE void CheckSpelling(QObject* txt);
    /// Checks the text box. True when the person went through to the end, or there was nothing to ask; False
    /// after a cancelled check and after a failure, which is told in a box. An engine that ends without
    /// saying how leaves the answer of the check before. Afterwards the caret stands at the text's start.
    /// Raises nothing, and takes `txt` as `CheckSpelling` does.
    Q_INVOKABLE bool CheckSpellingWithResult(QObject* txt);
    /// Brings the custom dictionary up to date with the database. A failure is told in a box, and nothing is
    /// raised. It may be called at any time; a first check brings the words up to date all the same.
    Q_INVOKABLE void SyncCustomDictionary();

protected:
    void UserControl_Resize() override;
    void paintEvent(QPaintEvent* event) override;

private:
    class Q_DECL_HIDDEN Private;
    std::unique_ptr<Private> d;
};

} // namespace tavrin
