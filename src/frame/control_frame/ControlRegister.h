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
    /// Makes a control, which `parent` owns.
    using Factory = std::function<UserControl*(QWidget* parent, const ControlSite& site)>;

    ControlRegister();
    ControlRegister(ControlRegister&& other) noexcept;
    ControlRegister& operator=(ControlRegister&& other) noexcept;
    ~ControlRegister();

    /// A second factory for a name takes the place of the first.
    void add(const QString& className, Factory factory);
    /// The same for a class whose constructor takes a parent and a site.
    template <typename Control>
    void add(const QString& className)
    {
        add(className, [](QWidget* parent, const ControlSite& site) { return new Control(parent, site); });
    }

    /// Whether a class is registered. Class names are compared exactly.
    bool contains(const QString& className) const;
    /// The registered classes, ordered by name.
    QStringList classNames() const;
    /// A new control, owned by `parent`, or by the caller where that is nullptr. Raises an `Error` that names
    /// a class that is not registered, and what the control's constructor raises.
    UserControl* create(const QString& className, QWidget* parent, const ControlSite& site) const;

private:
    class Q_DECL_HIDDEN Private;
    std::unique_ptr<Private> d;
};

} // namespace tavrin
