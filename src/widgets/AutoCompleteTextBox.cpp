#include "AutoCompleteTextBox.h"

#include <QApplication>

namespace tavrin {

AutoCompleteTextBox::AutoCompleteTextBox(QWidget* parent)
    : SearchBox(parent)
{
    setFrame(false);
    setTextMargins(0, 0, 0, 0);
}

void AutoCompleteTextBox::SetPlaceholderColor(Color color)
{
    m_placeholderColor = color;
    applyPlaceholderColor();
}

void AutoCompleteTextBox::applyPlaceholderColor()
{
    const QColor color = m_placeholderColor.resolve(QApplication::palette());
    QPalette own = palette();
    if (own.color(QPalette::PlaceholderText) == color)
        return;
    own.setColor(QPalette::PlaceholderText, color);
    setPalette(own);
}

void AutoCompleteTextBox::changeEvent(QEvent* event)
{
    SearchBox::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) // the text box makes its palette anew with each colour
        applyPlaceholderColor();
}

QWidget* AutoCompleteTextBox::listOwner() const
{
    QWidget* owner = QWidget::find(static_cast<WId>(static_cast<quint32>(m_ownerWindow)));
    return owner ? owner->window() : nullptr;
}

void AutoCompleteTextBox::ShowSuggestions(const QString& query)
{
    if (!hasFocus())
        setFocus();
    openList(query);
}

QSize AutoCompleteTextBox::sizeHint() const
{
    return {SearchBox::sizeHint().width(), fontMetrics().height()};
}

QSize AutoCompleteTextBox::minimumSizeHint() const
{
    return {0, 0};
}

} // namespace tavrin
