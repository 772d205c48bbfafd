#include "Form.h"

#include "base/Guard.h"

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

void Form::resizeEvent(QResizeEvent* event)
{
    QDialog::resizeEvent(event);
    guard("Form_Resize", [this] { Form_Resize(); });
}

} // namespace tavrin
