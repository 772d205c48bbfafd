#pragma once

#include <QProgressBar>

namespace tavrin {

/// How far a transfer is, in percent: a flat bar without words and without motion of its own.
class TransferBar : public QProgressBar
{
    Q_OBJECT

public:
    explicit TransferBar(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace tavrin
