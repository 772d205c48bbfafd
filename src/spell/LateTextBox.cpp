#include "spell/LateTextBox.h"

#include "base/failure/Error.h"
#include "spell/CheckedBox.h"

#include <QLineEdit>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QPlainTextEdit>
#include <QTextCursor>
#include <QTextEdit>

#include <algorithm>

namespace tavrin {

namespace {

[[noreturn]] void raiseNoSuchMember()
{
    throw Error(QStringLiteral("Object doesn't support this property or method"), Error::NoSuchMemberNumber);
}

/// Runs `body` with the edit of several lines that the widget is.
template <typename Body>
void withEdit(QWidget* box, Body&& body)
{
    if (auto* plain = qobject_cast<QPlainTextEdit*>(box))
        body(*plain);
    else if (auto* rich = qobject_cast<QTextEdit*>(box))
        body(*rich);
}

int lastPosition(const QTextCursor& cursor)
{
    QTextCursor end(cursor);
    end.movePosition(QTextCursor::End);
    return end.position();
}

void selectInLine(QLineEdit& line, int start, int length)
{
    line.setCursorPosition(start); // which drops the selection
    if (length > 0)
        line.setSelection(start, length);
}

template <typename Edit>
void selectInEdit(Edit& edit, int start, int length)
{
    QTextCursor cursor = edit.textCursor();
    const int last = lastPosition(cursor);
    cursor.setPosition(std::clamp(start, 0, last));
    cursor.setPosition(std::clamp(start + length, 0, last), QTextCursor::KeepAnchor);
    edit.setTextCursor(cursor);
}

} // namespace

LateTextBox::LateTextBox(QObject* object)
    : m_object(object)
{
}

QObject& LateTextBox::object() const
{
    if (!m_object)
        throw Error(QStringLiteral("There is no text box to check"));
    return *m_object;
}

QWidget* LateTextBox::knownBox() const
{
    return CheckedBox::isKnown(&object()) ? qobject_cast<QWidget*>(m_object) : nullptr;
}

QWidget* LateTextBox::hWnd() const
{
    if (QWidget* box = knownBox())
        return box;
    auto* box = object().property("hWnd").value<QWidget*>();
    if (!box)
        raiseNoSuchMember();
    return box;
}

void LateTextBox::SetFocus() const
{
    if (QWidget* box = knownBox()) {
        box->setFocus();
        return;
    }
    const QMetaObject& members = *object().metaObject();
    const int index = members.indexOfMethod("SetFocus()");
    if (index < 0 || !members.method(index).invoke(&object(), Qt::DirectConnection))
        raiseNoSuchMember();
}

void LateTextBox::SetSelStart(int start) const
{
    QWidget* box = knownBox();
    if (!box)
        put("SelStart", start);
    else if (auto* line = qobject_cast<QLineEdit*>(box))
        selectInLine(*line, start, 0);
    else
        withEdit(box, [start](auto& edit) { selectInEdit(edit, start, 0); });
}

void LateTextBox::SetSelLength(int length) const
{
    QWidget* box = knownBox();
    if (!box)
        put("SelLength", length);
    else if (auto* line = qobject_cast<QLineEdit*>(box))
        selectInLine(*line, line->hasSelectedText() ? line->selectionStart() : line->cursorPosition(),
                     length);
    else
        withEdit(box,
                 [length](auto& edit) { selectInEdit(edit, edit.textCursor().selectionStart(), length); });
}

void LateTextBox::put(const char* property, int value) const
{
    const int index = object().metaObject()->indexOfProperty(property);
    if (index < 0 || !object().metaObject()->property(index).write(&object(), value))
        raiseNoSuchMember();
}

} // namespace tavrin
