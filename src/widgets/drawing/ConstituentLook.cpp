#include "widgets/drawing/ConstituentLook.h"

#include <QApplication>
#include <QTextDocument>

namespace tavrin {

QColor shownColor(const QWidget& widget, Color color)
{
    return color.resolve(QApplication::palette(&widget));
}

QFont wholeFont(QFont font)
{
    font.setResolveMask(QFont::AllPropertiesResolved);
    return font;
}

QFont wholeFont(const SharedFont& font)
{
    return wholeFont(font.get()->toQFont());
}

void setPlainToolTip(QWidget& widget, const QString& text)
{
    const bool looksLikeMarkup = Qt::mightBeRichText(text);
    widget.setToolTip(looksLikeMarkup ? Qt::convertFromPlainText(text, Qt::WhiteSpaceNormal) : text);
    widget.setAccessibleDescription(looksLikeMarkup ? text : QString()); // Qt reads the tool tip out itself
}

} // namespace tavrin
