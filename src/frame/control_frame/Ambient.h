#pragma once

#include "base/export/Export.h"
#include "base/values/Color.h"
#include "base/values/Font.h"

#include <QString>

#include <memory>

class QWidget;

namespace tavrin {

/// What a control learns of its container. Read afresh at each call.
class TAVRIN_EXPORT Ambient
{
public:
    /// What the parent of `control` tells; the control must outlive the object.
    explicit Ambient(const QWidget& control);
    ~Ambient();

    /// False in the designer, true at run time; fixed when the control is made.
    bool UserMode() const;
    /// The name that the designer gave the instance.
    QString DisplayName() const;
    /// A copy of the container's font; the control's own font without a container.
    FontPtr Font() const;
    /// The container's property "BackColor", else the colour that it shows; the button face without one.
    Color BackColor() const;
    /// Name of the container's unit of length: the container's property "ScaleUnits", else "Twip".
    QString ScaleUnits() const;

private:
    class Q_DECL_HIDDEN Private;
    std::unique_ptr<Private> d;
};

/// Controls that are made while such an object lives on the thread run in the designer: they leave the
/// host's lists alone and show themselves only.
class TAVRIN_EXPORT DesignTime
{
public:
    DesignTime();
    ~DesignTime();
    DesignTime(const DesignTime&) = delete;
    DesignTime& operator=(const DesignTime&) = delete;
    /// Whether one lives on the calling thread.
    static bool isActive();
};

} // namespace tavrin
