#include "widgets/panels/Form.h"

#include "base/failure/Guard.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QTimer>

namespace tavrin {

Form::Form(QWidget* parent)
    : QDialog(parent)
{
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
}

void Form::SetInnerSize(Twips width, Twips height)
{
    resize(toPixels(width), toPixels(height));
}

void Form::ShowModal(QWidget* owner)
{
    setParent(owner ? owner->window() : nullptr, windowFlags());
    setWindowModality(Qt::ApplicationModal);
    exec();
}

bool Form::event(QEvent* event)
{
    const bool activates = event->type() == QEvent::WindowActivate || event->type() == QEvent::Show;
    if (activates && !m_activationWaits) {
        m_activationWaits = true;
        QTimer::singleShot(0, this, [this] {
            m_activationWaits = false;
            if (isVisible())
                guard("Form_Activate", [this] { Form_Activate(); });
        });
    }
    return QDialog::event(event);
}

void Form::closeEvent(QCloseEvent* event)
{
    if (m_busy)
        event->ignore();
    else
        QDialog::closeEvent(event);
}

void Form::keyPressEvent(QKeyEvent* event)
{
    if (m_busy && event->matches(QKeySequence::Cancel))
        event->accept();
    else
        QDialog::keyPressEvent(event);
}

void Form::resizeEvent(QResizeEvent* event)
{
    QDialog::resizeEvent(event);
    guard("Form_Resize", [this] { Form_Resize(); });
}

} // namespace tavrin
