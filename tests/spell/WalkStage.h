#pragma once

#include "spell/SpellingStage.h"
#include "spell/SpellingWalk.h"
#include "widgets/boxes/TextArea.h"

#include <QTextEdit>

// What the tests of the walk over a text share.

namespace tavrin::test {

using namespace Qt::StringLiterals;

inline const QString TextChanged = u"The text was changed meanwhile. The check goes on in the new text."_s;

/// A window with a text box of one kind.
struct WalkStage
{
    explicit WalkStage(const QString& kind = u"line"_s)
    {
        if (kind == u"line"_s)
            box = new TextBox(&window);
        else if (kind == u"area"_s)
            box = new TextArea(&window);
        else
            box = new QTextEdit(&window);
        box->resize(200, 80);
    }

    /// Shows the window, and gives the box the focus.
    bool show()
    {
        window.show();
        window.activateWindow();
        if (!QTest::qWaitForWindowActive(&window))
            return false;
        box->setFocus();
        return true;
    }
    TextBox* line() const { return qobject_cast<TextBox*>(box.data()); }
    TextArea* area() const { return qobject_cast<TextArea*>(box.data()); }
    QTextEdit* rich() const { return qobject_cast<QTextEdit*>(box.data()); }
    void setText(const QString& text) const
    {
        if (line())
            line()->SetText(text);
        else if (area())
            area()->SetText(text);
        else
            rich()->setPlainText(text);
    }
    QString text() const
    {
        if (line())
            return line()->text();
        return area() ? area()->toPlainText() : rich()->toPlainText();
    }
    QString selected() const
    {
        if (line())
            return line()->selectedText();
        return area() ? area()->textCursor().selectedText() : rich()->textCursor().selectedText();
    }
    bool canUndo() const
    {
        if (line())
            return line()->isUndoAvailable();
        return area() ? area()->document()->isUndoAvailable() : rich()->document()->isUndoAvailable();
    }
    std::unique_ptr<SpellingWalk> walk() const
    {
        return std::make_unique<SpellingWalk>(box, spellerOf(folder));
    }

    SpellingFolder folder;
    QWidget window;
    QPointer<QWidget> box;
};

inline void addKinds()
{
    QTest::addColumn<QString>("kind");
    for (const char* kind : {"line", "area", "rich"})
        QTest::newRow(kind) << QString::fromLatin1(kind);
}

/// Goes through to the end: each word with its offset.
inline QString wordsOf(SpellingWalk& walk)
{
    QStringList words;
    for (; walk.isAtWord(); walk.ignore())
        words << u"%1@%2"_s.arg(walk.word()).arg(walk.place().Offset);
    return words.join(u' ');
}

} // namespace tavrin::test
