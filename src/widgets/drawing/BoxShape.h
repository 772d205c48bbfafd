#pragma once

#include "base/values/Color.h"

#include <QWidget>

namespace tavrin {

/// The outline and fill of a box, behind its other widgets.
///
/// It lies below the siblings that are there when it is made. The mouse goes through it, and outside of its
/// rounded corners the parent shows.
class BoxShape : public QWidget
{
    Q_OBJECT

public:
    explicit BoxShape(QWidget* parent = nullptr);

    /// The colour of a window's frame at first.
    Color BorderColor() const { return m_borderColor; }
    void SetBorderColor(Color color);
    Color BackColor() const { return m_backColor; }
    void SetBackColor(Color color);
    /// While off, only the outline is painted. On at first.
    bool Filled() const { return m_filled; }
    void SetFilled(bool filled);

    /// Of the corners, in pixels.
    static constexpr qreal Radius = 3;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Color m_borderColor{0x80000006U};
    Color m_backColor = SystemColor::WindowBackground;
    bool m_filled = true;
};

} // namespace tavrin
