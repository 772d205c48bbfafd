#pragma once

#include <QObject>
#include <QPointer>

class QWidget;

namespace tavrin {

/// The text box that a host hands over, known only by the members that it must offer: `hWnd`, `SelStart`,
/// `SelLength` and `SetFocus`.
///
/// `QLineEdit`, `QPlainTextEdit` and `QTextEdit`, and what derives from them, are taken as they are. Any
/// other object offers the members itself: a readable property `hWnd`, the `QWidget*` of a text box, the
/// writable properties `SelStart` and `SelLength`, and an invokable method `SetFocus`.
///
/// Each operation raises an `Error` with the number `Error::NoSuchMemberNumber` when the object does not
/// offer the member.
class LateTextBox
{
public:
    explicit LateTextBox(QObject* object);

    /// False for an object that has died.
    bool isAlive() const { return !m_object.isNull(); }

    /// The text box itself, since a widget of this platform has no window handle of its own.
    QWidget* hWnd() const;
    void SetFocus() const;
    /// Puts the caret in front of the unit with this number, from 0, with nothing selected.
    void SetSelStart(int start) const;
    /// Selects so many UTF-16 units from the start of the selection on.
    void SetSelLength(int length) const;

private:
    QObject& object() const;
    QWidget* knownBox() const;
    void put(const char* property, int value) const;

    QPointer<QObject> m_object;
};

} // namespace tavrin
