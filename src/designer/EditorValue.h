#pragma once

#include "frame/control_frame/SavedProperty.h"

class QObject;

namespace tavrin::designer {

/// What the property editor shows a saved property as, and forms hold it as.
enum class Editor
{
    Plain, ///< as the property is declared: yes or no, number, text
    Text,
    Number,
    Color,
    Font,
    Picture
};

Editor editorOf(const QObject& control, const SavedProperty& property);

/// The control's value as the editor takes it. A system colour other than `start`, which no colour of a form
/// stands for, is a number.
QVariant editorValue(Editor editor, const QVariant& value, const QVariant& start);

/// What the control is to get; invalid for a value that the editor does not stand for.
QVariant controlValue(Editor editor, const QVariant& value);

/// Whether both say the same: fonts by what they look like, a missing text as an empty one.
bool saysTheSame(Editor editor, const QVariant& a, const QVariant& b);

} // namespace tavrin::designer
