#pragma once

#include "base/export/Export.h"
#include "base/failure/Event.h"
#include "base/values/Color.h"

#include <QLineEdit>

#include <functional>
#include <optional>

namespace tavrin {

/// A single-line text box that tells of keys before it takes them.
///
/// Order at a key: `KeyDown` with the key code, then for keys that give a character `KeyPress` with it, then
/// the box takes the key, then `Change` when the text is another one. A handler that sets the code to 0
/// swallows the key. The selection is the same again when code gives the focus back. A text that an input
/// method commits comes as `KeyPress` for each of its UTF-16 units.
class TAVRIN_COMPANION_EXPORT TextBox : public QLineEdit
{
    Q_OBJECT

public:
    explicit TextBox(QWidget* parent = nullptr);

    QString Text() const { return text(); }
    /// Raises `Change` before it returns when the text is another one; a handler's exception reaches the
    /// caller.
    void SetText(const QString& text);

    /// The longest text that a person can enter, in UTF-16 units; 0, as at first, for no limit. A text that
    /// code sets stands whole, also when it is longer; the person can then take away but not add.
    int MaxLength() const { return m_maxLength.value_or(0); }
    void SetMaxLength(int length);

    /// Selects from `start`, counted from 0 in UTF-16 units.
    void SetSelection(int start, int length);

    Color BackColor() const { return m_backColor; }
    void SetBackColor(Color color);
    Color ForeColor() const { return m_foreColor; }
    void SetForeColor(Color color);

    /// Key code by reference, shift state.
    Event<int&, int> KeyDown;
    /// Character code by reference: a UTF-16 unit, control characters as the keyboard gives them.
    Event<int&> KeyPress;
    Event<> Change;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void changeEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    class LengthValidator;
    bool swallows(QKeyEvent* event);
    /// Lets Qt take the event before `Change` is raised: a handler may delete the box that Qt is at work
    /// with.
    void edit(const std::function<void()>& byQt);
    void makeRoomFor(const QString& text);
    void applyColors();

    Color m_backColor = SystemColor::WindowBackground;
    Color m_foreColor = SystemColor::WindowText;
    struct Selection
    {
        QString text;
        int start;
        int length;
    };
    std::optional<Selection> m_leftSelection; // when the focus went
    std::optional<int> m_maxLength;
    LengthValidator* m_lengthValidator = nullptr; // while a text is longer than the limit
    bool m_settingText = false;
    bool m_isEditing = false; // by Qt, which has not come back yet
    bool m_changed = false;   // meanwhile
    bool m_applyingColors = false;
};

} // namespace tavrin
