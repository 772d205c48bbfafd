#pragma once

#include "base/export/Export.h"
#include "base/values/Color.h"

class QWidget;

namespace tavrin {

/// A control's container, as far as the control may ask it.
class TAVRIN_EXPORT Container
{
public:
    /// `widget` stays its owner's; nullptr is a container that offers nothing.
    explicit Container(QWidget* widget)
        : m_widget(widget)
    {
    }

    /// Whether it offers a property "BackColor": a `Color`, a `QColor` or a number.
    bool HasBackColor() const;
    /// The container's property "BackColor". Raises error 438 when it has none.
    Color BackColor() const;
    /// The widget itself; nullptr for a control without a parent.
    QWidget* widget() const { return m_widget; }

private:
    QWidget* m_widget;
};

/// The container's wrapper around a control: its place, in the container's units of length.
///
/// The unit is the container's property "ScaleUnits", twips where it has none. Another unit is the host's to
/// know: what `UiServices::ScaleModeFromUnits` raises reaches the caller. Places are kept in whole pixels.
class TAVRIN_EXPORT Extender
{
public:
    /// The control must outlive the object.
    explicit Extender(QWidget& control)
        : m_control(control)
    {
    }

    /// Place of the upper left corner in the container.
    float Left() const;
    float Top() const;
    /// Outer size.
    float Width() const;
    void SetWidth(float width);
    float Height() const;
    void SetHeight(float height);
    /// Place and outer size in one step.
    void Move(float left, float top, float width, float height);
    /// The control's parent.
    tavrin::Container Container() const;

private:
    float unitX() const;
    float unitY() const;

    QWidget& m_control;
};

} // namespace tavrin
