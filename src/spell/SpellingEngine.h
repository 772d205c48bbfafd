#pragma once

#include "base/export/Export.h"
#include "base/failure/Event.h"

#include <QString>

#include <functional>
#include <memory>

class QWidget;

namespace tavrin {

/// What the spell-check control needs of a spelling engine: two dictionaries, two options, and a modal check
/// over the text of one text box.
///
/// An engine belongs to one control. Whatever fails raises an `Error` with a text for a person.
class TAVRIN_EXPORT SpellingEngine
{
public:
    virtual ~SpellingEngine() = default;

    /// Action code of `UserAction`: the person adds the word at issue to the custom dictionary.
    static constexpr int WordAdded = 5;

    /// Takes the engine's main dictionary. When it cannot be used, the engine is without one.
    virtual void SetMainDictionaryPath(const QString& path) = 0;
    /// Takes the file of the custom words; "" lets go of it, and of its words. When it cannot be read, the
    /// engine is without one.
    virtual void SetCustomDictionaryPath(const QString& path) = 0;
    /// Whether the person may add words. False at the start.
    virtual void SetAllowAdd(bool allow) = 0;
    /// Whether a check opens the dialog at a wrong word. False at the start.
    virtual void SetShowDialog(bool show) = 0;

    /// Runs the modal check over the text of a text box and returns when it has ended. The box is the widget
    /// itself, since a widget of this platform has no window handle of its own; it may die meanwhile.
    virtual void CheckWindow(QWidget* textBox) = 0;

    /// The whole text that is being checked. Asked for during the dialog only, as the two below.
    virtual QString CheckedText() const = 0;
    /// Offset of the word at issue in that text, from 0, in UTF-16 code units.
    virtual qsizetype BadWordStart() const = 0;
    /// Its length in UTF-16 code units.
    virtual qsizetype BadWordLength() const = 0;

    /// A check has ended: 0 when the person went through to the end, another number when it was abandoned.
    Event<int&> CheckEnded;
    /// The person has done something in the dialog; the action's code. What is at issue then is still the
    /// word acted upon.
    Event<int&> UserAction;
    /// During the dialog the person has taken it back that this word was added; it is out of the custom
    /// dictionary's file again.
    Event<const QString&> WordTakenBack;
};

/// Makes an engine, which the caller owns. What it raises, the constructor of the spell-check control raises.
using SpellingEngineFactory = std::function<std::unique_ptr<SpellingEngine>()>;

/// Makes the engine of each spell-check control of this thread; at first one over Hunspell. Another may
/// be put in its place.
TAVRIN_EXPORT SpellingEngineFactory& spellingEngineFactory();

} // namespace tavrin
