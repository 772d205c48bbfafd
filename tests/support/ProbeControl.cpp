#include "support/ProbeControl.h"

namespace tavrin::test {

ProbeControl::ProbeControl(QWidget* parent, const ControlSite& site, QStringList* journal,
                           QStringList failingNames, bool traps)
    : UserControl(parent, site)
    , failing(std::move(failingNames))
    , m_journal(journal ? journal : &m_own)
    , m_traps(traps)
{
    note(QStringLiteral("Initialize"));
    begin();
}

ProbeControl::~ProbeControl()
{
    note(QStringLiteral("Terminate"));
}

void ProbeControl::note(const QString& what)
{
    *m_journal << what;
    const bool fails = failing.contains(what);
    if (const auto follower = during) // which may delete the control
        follower(what);
    if (fails)
        throw Error(what + QStringLiteral(" failed"));
}

SavedProperties ProbeControl::savedProperties()
{
    return {{QStringLiteral("First"), PropertyKind::Long, 11,
             [this] {
                 note(QStringLiteral("get First"));
                 return first;
             },
             [this](const QVariant& value) {
                 note(QStringLiteral("put First"));
                 first = value.toInt();
                 Q_EMIT PropertyChanged(QStringLiteral("First"));
             }},
            {QStringLiteral("Second"), PropertyKind::Text, QStringLiteral("two"),
             [this] {
                 note(QStringLiteral("get Second"));
                 return second;
             },
             [this](const QVariant& value) {
                 note(QStringLiteral("put Second"));
                 second = value.toString();
                 Q_EMIT PropertyChanged(QStringLiteral("Second"));
             }},
            {QStringLiteral("Third"), PropertyKind::Color, QVariant::fromValue(SystemColor::WindowText),
             [this] {
                 note(QStringLiteral("get Third"));
                 return QVariant::fromValue(third);
             },
             [this](const QVariant& value) {
                 note(QStringLiteral("put Third"));
                 third = value.value<Color>();
                 Q_EMIT PropertyChanged(QStringLiteral("Third"));
             },
             QStringLiteral("third")}};
}

void ProbeControl::UserControl_ReadProperties(const PropertyBag& bag)
{
    note(QStringLiteral("ReadProperties"));
    UserControl::UserControl_ReadProperties(bag);
}

void ProbeControl::UserControl_WriteProperties(PropertyBag& bag)
{
    note(QStringLiteral("WriteProperties"));
    UserControl::UserControl_WriteProperties(bag);
}

void ProbeControl::UserControl_KeyDown(int& keyCode, int shift)
{
    note(QStringLiteral("KeyDown %1 %2").arg(keyCode).arg(shift));
    if (keyCode == swallowedKey)
        keyCode = 0;
}

void ProbeControl::UserControl_MouseUp(int button, int shift, Twips x, Twips y)
{
    note(QStringLiteral("MouseUp %1 %2 %3 %4").arg(button).arg(shift).arg(x).arg(y));
}

} // namespace tavrin::test
