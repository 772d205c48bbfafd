#pragma once

#include "base/LiveObject.h"
#include "base/export/Export.h"
#include "base/values/Twips.h"

#include <QDialog>

namespace tavrin {

/// A dialog whose parts have their places in twips. Escape and the window's frame close it.
class TAVRIN_COMPANION_EXPORT Form : public QDialog
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
    /// The form works and cannot be closed.
    bool isBusy() const { return m_busy; }

protected:
    virtual void Form_Resize() {}
    /// Comes behind the events that brought the window up, each time that it becomes the active one; never
    /// inside a call of Qt's that shows it. A form that works in here is destroyed by nobody but its owner.
    virtual void Form_Activate() {}

    /// While it is set neither Escape nor the window's frame closes the form.
    void SetBusy(bool busy) { m_busy = busy; }

    bool event(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    LiveObject m_live;
    bool m_busy = false;
    bool m_activationWaits = false;
};

} // namespace tavrin
