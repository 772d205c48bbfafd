#include "spell/CheckedBox.h"

#include "base/failure/Error.h"
#include "spell/WaitCursor.h"
#include "widgets/boxes/TextArea.h"
#include "widgets/boxes/TextBox.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScrollArea>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>

#include <algorithm>

namespace tavrin {

namespace {

/// Scrolls the areas that the box stands in, so that what it shows at `place` can be seen.
void bringIntoView(const QWidget& box, const QRect& place)
{
    constexpr int margin = 8; // pixels
    for (QWidget* above = box.parentWidget(); above; above = above->parentWidget()) {
        auto* area = qobject_cast<QScrollArea*>(above);
        if (!area || !area->widget() || !area->widget()->isAncestorOf(&box))
            continue;
        const QPoint corner = box.mapTo(area->widget(), place.bottomRight());
        area->ensureVisible(corner.x(), corner.y(), margin, margin);
        const QPoint origin = box.mapTo(area->widget(), place.topLeft());
        area->ensureVisible(origin.x(), origin.y(), margin, margin);
    }
}

/// The part of `place` that the box shows; the whole box when none of it does.
QRect shownPart(const QWidget& box, const QRect& place)
{
    const QRect shown = place & box.rect();
    const QRect part = shown.isEmpty() ? box.rect() : shown;
    return {box.mapToGlobal(part.topLeft()), part.size()};
}

class LineBox final : public CheckedBox
{
public:
    explicit LineBox(QLineEdit& edit)
        : m_edit(edit)
    {
    }

    QString text() const override
    {
        const bool isProse = m_edit.echoMode() == QLineEdit::Normal && m_edit.inputMask().isEmpty();
        return isProse ? m_edit.text() : QString();
    }
    void select(const FoundWord& word) override
    {
        m_edit.setSelection(static_cast<int>(word.Offset), static_cast<int>(word.Length));
        bringIntoView(m_edit, m_edit.rect());
    }
    QRect place() const override
    {
        const QRect anchor = m_edit.inputMethodQuery(Qt::ImAnchorRectangle).toRect();
        const QRect cursor = m_edit.inputMethodQuery(Qt::ImCursorRectangle).toRect();
        return shownPart(m_edit, anchor | cursor);
    }
    bool canChange() const override { return m_edit.isEnabled() && !m_edit.isReadOnly(); }
    int maxLength() const override
    {
        if (const auto* box = qobject_cast<TextBox*>(&m_edit); box && box->MaxLength() > 0)
            return box->MaxLength(); // Qt's own limit is higher while the box holds a longer text
        return m_edit.maxLength();
    }
    qsizetype length() const override { return m_edit.text().size(); }
    void replace(const QList<FoundWord>& words, const QString& replacement) override
    {
        // From the first word to the last in one insertion, since a line edit undoes one at a time.
        const FoundWord whole{words.first().Offset, words.last().end() - words.first().Offset};
        const QString before = m_edit.text().mid(whole.Offset, whole.Length);
        QList<FoundWord> inside = words;
        for (FoundWord& word : inside)
            word.Offset -= whole.Offset;
        m_edit.setSelection(static_cast<int>(whole.Offset), static_cast<int>(whole.Length));
        m_edit.insert(replaced(before, inside, replacement));
    }
    bool canUndo() const override { return m_edit.isUndoAvailable(); }
    void undo() override { m_edit.undo(); }
    void redo() override { m_edit.redo(); }

private:
    QLineEdit& m_edit;
};

/// How many units two words begin alike, without half a character.
qsizetype commonStart(const QString& one, const QString& other)
{
    const qsizetype most = std::min(one.size(), other.size());
    qsizetype count = 0;
    while (count < most && one.at(count) == other.at(count))
        ++count;
    return count > 0 && one.at(count - 1).isHighSurrogate() ? count - 1 : count;
}

/// How many units of the last `most` of two words are alike.
qsizetype commonEnd(const QString& one, const QString& other, qsizetype most)
{
    qsizetype count = 0;
    while (count < most && one.at(one.size() - 1 - count) == other.at(other.size() - 1 - count))
        ++count;
    return count > 0 && one.at(one.size() - count).isLowSurrogate() ? count - 1 : count;
}

/// Writes the replacement in the format of what it takes the place of; letters that stay are not touched.
void replaceWord(QTextCursor& cursor, const FoundWord& word, const QString& replacement)
{
    cursor.setPosition(static_cast<int>(word.Offset));
    cursor.setPosition(static_cast<int>(word.end()), QTextCursor::KeepAnchor);
    const QString before = cursor.selectedText();
    const qsizetype start = commonStart(before, replacement);
    const qsizetype end = commonEnd(before, replacement, std::min(before.size(), replacement.size()) - start);

    // The format of a cursor is that of the character before it.
    const qsizetype changed = word.Offset + start;
    const bool isInsertion = before.size() == start + end;
    cursor.setPosition(static_cast<int>(isInsertion && start > 0 ? changed : changed + 1));
    const QTextCharFormat format = cursor.charFormat();
    cursor.setPosition(static_cast<int>(changed));
    cursor.setPosition(static_cast<int>(word.end() - end), QTextCursor::KeepAnchor);
    cursor.insertText(replacement.mid(start, replacement.size() - start - end), format);
}

void replaceEach(QTextCursor& cursor, const QList<FoundWord>& words, const QString& replacement)
{
    const WaitCursor wait;
    for (auto word = words.crbegin(); word != words.crend(); ++word) // earlier offsets stay right
        replaceWord(cursor, *word, replacement);
}

template <typename Edit>
class DocumentBox final : public CheckedBox
{
public:
    explicit DocumentBox(Edit& edit)
        : m_edit(edit)
    {
    }

    QString text() const override { return m_edit.document()->toRawText(); }
    void select(const FoundWord& word) override
    {
        m_edit.setTextCursor(cursorOver(word));
        m_edit.ensureCursorVisible();
        bringIntoView(m_edit, wordRect());
    }
    QRect place() const override
    {
        const QWidget* viewport = m_edit.viewport();
        const QRect shown = wordRect().translated(-viewport->pos()) & viewport->rect();
        return shownPart(m_edit, shown.translated(viewport->pos()));
    }
    bool canChange() const override { return m_edit.isEnabled() && !m_edit.isReadOnly(); }
    int maxLength() const override
    {
        const auto* area = qobject_cast<TextArea*>(&m_edit);
        return area ? std::max(area->MaxLength(), 0) : 0;
    }
    qsizetype length() const override
    {
        // A text area counts what its text is kept as once a person has changed it.
        const QString raw = text();
        return raw.size() + raw.count(QChar::ParagraphSeparator) + raw.count(QChar::LineSeparator);
    }
    void replace(const QList<FoundWord>& words, const QString& replacement) override
    {
        QTextCursor cursor(m_edit.document());
        cursor.beginEditBlock();
        replaceEach(cursor, words, replacement);
        cursor.endEditBlock(); // now the box's handlers learn of it
    }
    bool canUndo() const override { return m_edit.document()->isUndoAvailable(); }
    void undo() override { m_edit.undo(); }
    void redo() override { m_edit.redo(); }

private:
    QTextCursor cursorOver(const FoundWord& word) const
    {
        QTextCursor cursor(m_edit.document());
        cursor.setPosition(static_cast<int>(word.Offset));
        cursor.setPosition(static_cast<int>(word.end()), QTextCursor::KeepAnchor);
        return cursor;
    }
    /// In the box's own coordinates.
    QRect wordRect() const
    {
        QTextCursor ends = m_edit.textCursor();
        const QRect last = m_edit.cursorRect(ends);
        ends.setPosition(ends.anchor());
        return (m_edit.cursorRect(ends) | last).translated(m_edit.viewport()->pos());
    }

    Edit& m_edit;
};

} // namespace

bool CheckedBox::isKnown(const QObject* object)
{
    return qobject_cast<const QLineEdit*>(object) || qobject_cast<const QPlainTextEdit*>(object) ||
           qobject_cast<const QTextEdit*>(object);
}

std::unique_ptr<CheckedBox> CheckedBox::of(QWidget* textBox)
{
    if (auto* line = qobject_cast<QLineEdit*>(textBox))
        return std::make_unique<LineBox>(*line);
    if (auto* plain = qobject_cast<QPlainTextEdit*>(textBox))
        return std::make_unique<DocumentBox<QPlainTextEdit>>(*plain);
    if (auto* rich = qobject_cast<QTextEdit*>(textBox))
        return std::make_unique<DocumentBox<QTextEdit>>(*rich);
    throw Error(QStringLiteral("Only the text of a text box can be checked"));
}

QString replaced(const QString& text, const QList<FoundWord>& words, const QString& replacement)
{
    QString result;
    qsizetype done = 0;
    for (const FoundWord& word : words) {
        result += QStringView(text).sliced(done, word.Offset - done);
        result += replacement;
        done = word.end();
    }
    result += QStringView(text).sliced(done);
    return result;
}

} // namespace tavrin
