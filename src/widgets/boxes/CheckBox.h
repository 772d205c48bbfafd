#pragma once

#include "base/failure/Event.h"

#include <QCheckBox>

namespace tavrin {

/// A box to tick.
///
/// It raises `Click` once whenever its value changes: by mouse or Space, by a screen reader, and by code.
/// Where Qt itself changes it, as for a screen reader, `Click` follows when control returns to the event
/// loop.
class CheckBox : public QCheckBox
{
    Q_OBJECT

public:
    static constexpr int Unchecked = 0;
    static constexpr int Checked = 1;

    explicit CheckBox(QWidget* parent = nullptr);

    /// 0 at first; 1 while it is ticked.
    int Value() const { return isChecked() ? Checked : Unchecked; }
    /// Raises `Click` before it returns when the value is another one; a handler's exception reaches the
    /// caller.
    void SetValue(int value);

    /// Plain text, in which an '&' marks the access key.
    QString Caption() const { return text(); }
    void SetCaption(const QString& caption) { setText(caption); }

    /// A handler may delete the box.
    Event<> Click;

protected:
    void nextCheckState() override;

private:
    bool m_raisesItself = false; // whoever changes it raises Click behind it
    bool m_changed = false;      // by the click that is under way
};

} // namespace tavrin
