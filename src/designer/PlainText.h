#pragma once

#include <QString>
#include <QVariant>

namespace tavrin::designer {

/// A text as the designer's property sheets hold it, `shown` being one, but not offered to translators. What
/// was given where this designer cannot make one.
QVariant plainText(const QVariant& shown, const QString& text);

} // namespace tavrin::designer
