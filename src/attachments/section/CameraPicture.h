#pragma once

#include <QWidget>

namespace tavrin {

/// The sign of a camera, in the quiet colour of the theme. It stands where a picture might be.
class CameraPicture : public QWidget
{
    Q_OBJECT

public:
    explicit CameraPicture(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace tavrin
