#include "widgets/boxes/FlatOptionButton.h"

#include "base/failure/Guard.h"
#include "widgets/drawing/ConstituentLook.h"

#include <QScopedValueRollback>
#include <QStyleOptionButton>

#include <algorithm>
#include <utility>

namespace tavrin {

FlatOptionButton::FlatOptionButton(QWidget* parent)
    : QRadioButton(parent)
    , m_font([this] { setFont(wholeFont(m_font)); })
{
    setFont(wholeFont(m_font));
    connectGuarded(this, &QAbstractButton::toggled, this, "FlatOptionButton_Click",
                   [this](bool on) { noteToggled(on); });
    connectGuarded(this, &QAbstractButton::clicked, this, "FlatOptionButton_Click", [this] {
        if (std::exchange(m_turnedOn, false))
            Click.raise();
    });
}

void FlatOptionButton::SetValue(bool on)
{
    if (on == isChecked())
        return;
    {
        const QScopedValueRollback raising(m_raisesItself, true);
        setAutoExclusive(on); // Qt does not let the one that is on be turned off otherwise
        setChecked(on);
        setAutoExclusive(true);
    }
    if (on)
        Click.raise(); // not from inside Qt: a handler's failure reaches the caller
}

void FlatOptionButton::nextCheckState()
{
    const QScopedValueRollback raising(m_raisesItself, true);
    const bool wasOn = isChecked();
    QRadioButton::nextCheckState();
    m_turnedOn = !wasOn && isChecked(); // `clicked` follows
}

void FlatOptionButton::initStyleOption(QStyleOptionButton* option) const
{
    QRadioButton::initStyleOption(option);
    if (hasFocus())
        option->state |= QStyle::State_KeyboardFocusChange;
}

void FlatOptionButton::noteToggled(bool on)
{
    chooseTabStop();
    if (!on || m_raisesItself)
        return;
    // Not here, where Qt needs the button once more.
    QMetaObject::invokeMethod(
        this, [this] { guard("FlatOptionButton_Click", [this] { Click.raise(); }); }, Qt::QueuedConnection);
}

void FlatOptionButton::chooseTabStop()
{
    if (!parentWidget())
        return;
    const auto group = parentWidget()->findChildren<FlatOptionButton*>(QString(), Qt::FindDirectChildrenOnly);
    const bool anyIsOn =
        std::any_of(group.begin(), group.end(), [](const auto* option) { return option->Value(); });
    for (FlatOptionButton* option : group) {
        const bool isStop = option->Value() || !anyIsOn;
        option->setFocusPolicy(isStop ? Qt::StrongFocus : Qt::ClickFocus);
    }
}

void FlatOptionButton::SetFont(const FontPtr& font)
{
    m_font.set(font);
}

} // namespace tavrin
