#pragma once

#include "spell/WordFinder.h"

#include <QList>
#include <QObject>
#include <QRect>
#include <QString>

#include <memory>

class QWidget;

namespace tavrin {

/// The text box that is being checked: its text, the mark in it, and changes that go through its own undo.
///
/// Offsets are the box's own positions, in UTF-16 code units; in a text of several paragraphs the separator
/// between two of them is one unit. The box must live for as long as it is used.
class CheckedBox
{
public:
    /// Knows `QLineEdit`, `QPlainTextEdit` and `QTextEdit`; raises an `Error` for any other widget.
    static std::unique_ptr<CheckedBox> of(QWidget* textBox);
    static bool isKnown(const QObject* object);

    virtual ~CheckedBox() = default;

    /// "" for a box that hides its text or gives it a fixed form: there is nothing to spell in it.
    virtual QString text() const = 0;
    /// Selects the word and brings it into view.
    virtual void select(const FoundWord& word) = 0;
    /// Where the selection shows, in global coordinates.
    virtual QRect place() const = 0;

    /// Whether a person could change the text: the box is enabled and not read-only.
    virtual bool canChange() const = 0;
    /// The longest text that the box takes from a person, in UTF-16 units; 0 for no limit.
    virtual int maxLength() const = 0;
    /// How many units the text counts towards that limit.
    virtual qsizetype length() const = 0;
    /// Writes `replacement` in place of each of the words, as one step of the box's undo. What stays of a
    /// word keeps its format. The words do not overlap and are in their order.
    virtual void replace(const QList<FoundWord>& words, const QString& replacement) = 0;

    virtual bool canUndo() const = 0;
    virtual void undo() = 0;
    virtual void redo() = 0;
};

/// The text with `replacement` in place of each of the words, which are in their order.
QString replaced(const QString& text, const QList<FoundWord>& words, const QString& replacement);

} // namespace tavrin
