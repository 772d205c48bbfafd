#include "frame/control_frame/Ambient.h"

#include "frame/control_frame/ContainerColor.h"

#include <QVariant>
#include <QWidget>

namespace tavrin {

namespace {
thread_local int designTimeDepth = 0;
}

DesignTime::DesignTime()
{
    ++designTimeDepth;
}

DesignTime::~DesignTime()
{
    --designTimeDepth;
}

bool DesignTime::isActive()
{
    return designTimeDepth > 0;
}

class Ambient::Private
{
public:
    const QWidget& control;
    bool userMode;
};

Ambient::Ambient(const QWidget& control)
    : d(std::make_unique<Private>(Private{control, !DesignTime::isActive()}))
{
}

Ambient::~Ambient() = default;

bool Ambient::UserMode() const
{
    return d->userMode;
}

QString Ambient::DisplayName() const
{
    return d->control.objectName();
}

FontPtr Ambient::Font() const
{
    const QWidget* container = d->control.parentWidget();
    return std::make_shared<tavrin::Font>(container ? container->font() : d->control.font());
}

Color Ambient::BackColor() const
{
    const QWidget* container = d->control.parentWidget();
    return container ? shownBackColor(*container) : SystemColor::ButtonFace;
}

QString Ambient::ScaleUnits() const
{
    const QWidget* container = d->control.parentWidget();
    const QVariant units = container ? container->property("ScaleUnits") : QVariant();
    return units.isValid() ? units.toString() : QStringLiteral("Twip");
}

} // namespace tavrin
