#pragma once

#include <QWidget>

namespace tavrin {

/// The picture of two people and the bond between them, in the colours of the theme.
class RelationPicture : public QWidget
{
    Q_OBJECT

public:
    explicit RelationPicture(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace tavrin
