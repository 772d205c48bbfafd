#pragma once

#include "base/export/Export.h"
#include "frame/control_frame/UserControl.h"

#include <functional>
#include <memory>

namespace tavrin {

/// The controls that can be made by their class names, such as "TVBoundControls.AutoCompleteField".
class TAVRIN_EXPORT ControlRegister
{
public:
    using Factory = std::function<UserControl*(QWidget* parent, const ControlSite& site)>;

    ControlRegister();
    ControlRegister(ControlRegister&& other) noexcept;
    ControlRegister& operator=(ControlRegister&& other) noexcept;
    ~ControlRegister();

    /// A second factory for a name takes the place of the first.
    void add(const QString& className, Factory factory);
    template <typename Control>
    void add(const QString& className)
    {
        add(className, [](QWidget* parent, const ControlSite& site) { return new Control(parent, site); });
    }

    bool contains(const QString& className) const;
    QStringList classNames() const;
    /// A new control, owned by `parent`. Raises an `Error` that names a class that is not registered.
    UserControl* create(const QString& className, QWidget* parent, const ControlSite& site) const;

private:
    class Q_DECL_HIDDEN Private;
    std::unique_ptr<Private> d;
};

} // namespace tavrin
