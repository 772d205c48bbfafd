#pragma once

#include "base/values/Color.h"

#include <QWidget>

namespace tavrin {

/// A plain container with a background of its own.
class GroupBox : public QWidget
{
    Q_OBJECT

public:
    explicit GroupBox(QWidget* parent = nullptr);

    /// The colour of the window at first.
    Color BackColor() const { return m_backColor; }
    void SetBackColor(Color color);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Color m_backColor = SystemColor::ButtonFace;
};

} // namespace tavrin
