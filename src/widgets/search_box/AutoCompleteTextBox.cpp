#include "widgets/search_box/AutoCompleteTextBox.h"

#include <QApplication>
#include <QPointer>

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
    applyOwnColors();
}

void AutoCompleteTextBox::applyOwnColors()
{
    const QPalette system = QApplication::palette();
    const QColor hint = m_placeholderColor.resolve(system);
    const QColor text = ForeColor().resolve(system);
    QPalette own = palette();
    if (own.color(QPalette::PlaceholderText) == hint && own.color(QPalette::Disabled, QPalette::Text) == text)
        return;
    own.setColor(QPalette::PlaceholderText, hint);
    own.setColor(QPalette::Disabled, QPalette::Text, text);
    setPalette(own);
}

void AutoCompleteTextBox::changeEvent(QEvent* event)
{
    SearchBox::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) // the text box makes its palette anew with each colour
        applyOwnColors();
}

QWidget* AutoCompleteTextBox::listOwner() const
{
    QWidget* owner = QWidget::find(static_cast<WId>(static_cast<quint32>(m_ownerWindow)));
    return owner ? owner->window() : nullptr;
}

void AutoCompleteTextBox::ShowSuggestions(const QString& query)
{
    const QPointer<AutoCompleteTextBox> self(this); // whatever loses the focus may close the form
    if (!hasFocus())
        setFocus();
    if (self)
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
