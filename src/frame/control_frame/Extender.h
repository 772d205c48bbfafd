#pragma once

#include "base/export/Export.h"
#include "base/values/Color.h"

class QWidget;

namespace tavrin {

/// A control's container, as far as the control may ask it.
class TAVRIN_EXPORT Container
{
public:
    explicit Container(QWidget* widget)
        : m_widget(widget)
    {
    }

    /// Whether it offers a property "BackColor": a `Color`, a `QColor` or a number.
    bool HasBackColor() const;
    /// The container's property "BackColor". Raises error 438 when it has none.
    Color BackColor() const;
    QWidget* widget() const { return m_widget; }

private:
    QWidget* m_widget;
};

/// The container's wrapper around a control: its place, in the container's units of length.
class TAVRIN_EXPORT Extender
{
public:
    explicit Extender(QWidget& control)
        : m_control(control)
    {
    }

    float Left() const;
    float Top() const;
    float Width() const;
    void SetWidth(float width);
    float Height() const;
    void SetHeight(float height);
    void Move(float left, float top, float width, float height);
    tavrin::Container Container() const;

private:
    float unitX() const;
    float unitY() const;

    QWidget& m_control;
};

} // namespace tavrin
