#pragma once

#include "base/Twips.h"

#include <QDialog>

namespace tavrin {

/// A dialog whose parts have their places in twips. Escape and the window's frame close it.
class Form : public QDialog
{
    Q_OBJECT

public:
    explicit Form(QWidget* parent = nullptr);

    /// Size without the window's frame.
    void SetInnerSize(Twips width, Twips height);
    Twips ScaleWidth() const { return toTwips(width()); }
    Twips ScaleHeight() const { return toTwips(height()); }

    /// Shows the form above the window of `owner` and returns when it is closed. It blocks the program's
    /// windows: no other record can come between the question and its answer. The form keeps what was
    /// entered.
    void ShowModal(QWidget* owner);

protected:
    virtual void Form_Resize() {}

    void resizeEvent(QResizeEvent* event) override;
};

} // namespace tavrin
