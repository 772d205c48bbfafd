#pragma once

#include "base/values/Color.h"
#include "widgets/drawing/SharedFont.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QWidget>

// How small constituents show to eyes and to screen readers.

namespace tavrin {

/// The colour to paint with now. A disabled constituent keeps it: whoever disables it says how it looks.
QColor shownColor(const QWidget& widget, Color color);

/// The font with all that it says, so that a widget takes nothing over from its parent, and a painter nothing
/// from what it paints on.
QFont wholeFont(QFont font);
QFont wholeFont(const SharedFont& font);

/// Shows the text as it stands as the widget's tool tip, also when it looks like markup.
void setPlainToolTip(QWidget& widget, const QString& text);

/// Lets screen readers know all widgets of a class by this role.
template <typename Widget, QAccessible::Role role>
void installAccessibleRole()
{
    // Qt takes a factory that it knows already no second time.
    QAccessible::installFactory([](const QString&, QObject* object) -> QAccessibleInterface* {
        auto* widget = qobject_cast<Widget*>(object);
        return widget ? new QAccessibleWidget(widget, role) : nullptr;
    });
}

} // namespace tavrin
