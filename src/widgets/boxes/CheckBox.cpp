#include "widgets/boxes/CheckBox.h"

#include "base/failure/Guard.h"

#include <QScopedValueRollback>

#include <utility>

namespace tavrin {

CheckBox::CheckBox(QWidget* parent)
    : QCheckBox(parent)
{
    connectGuarded(this, &QAbstractButton::toggled, this, "CheckBox_Click", [this] {
        if (m_raisesItself)
            return;
        // Not here, where Qt needs the box once more.
        QMetaObject::invokeMethod(
            this, [this] { guard("CheckBox_Click", [this] { Click.raise(); }); }, Qt::QueuedConnection);
    });
    connectGuarded(this, &QAbstractButton::clicked, this, "CheckBox_Click", [this] {
        if (std::exchange(m_changed, false))
            Click.raise();
    });
}

void CheckBox::SetValue(int value)
{
    if (value == Value())
        return;
    {
        const QScopedValueRollback raising(m_raisesItself, true);
        setChecked(value == Checked);
    }
    Click.raise(); // not from inside Qt: a handler's failure reaches the caller
}

void CheckBox::nextCheckState()
{
    const QScopedValueRollback raising(m_raisesItself, true);
    QCheckBox::nextCheckState();
    m_changed = true; // `clicked` follows
}

} // namespace tavrin
