#include "ConstituentLook.h"

#include <QApplication>
#include <QTextDocument>

namespace tavrin {

QColor shownColor(const QWidget& widget, Color color)
{
    return color.resolve(QApplication::palette(&widget));
}

QFont wholeFont(const SharedFont& font)
{
    QFont whole = font.get()->toQFont();
    whole.setResolveMask(QFont::AllPropertiesResolved);
    return whole;
}

void setPlainToolTip(QWidget& widget, const QString& text)
{
    const bool looksLikeMarkup = Qt::mightBeRichText(text);
    widget.setToolTip(looksLikeMarkup ? Qt::convertFromPlainText(text, Qt::WhiteSpaceNormal) : text);
    widget.setAccessibleDescription(looksLikeMarkup ? text : QString()); // Qt reads the tool tip out itself
}

} // namespace tavrin
