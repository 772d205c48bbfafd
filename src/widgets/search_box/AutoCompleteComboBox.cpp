#include "widgets/search_box/AutoCompleteComboBox.h"

#include "widgets/drawing/IconGlyphs.h"
#include "widgets/labels/Link.h"

#include <QEvent>
#include <QPointer>
#include <QResizeEvent>

namespace tavrin {

namespace {

constexpr int BesideButton = 3;
constexpr int TextMargin = 3;
constexpr int BesideText = 3; // that a line edit leaves of itself
constexpr int TextMarginAbove = 2;

} // namespace

AutoCompleteComboBox::AutoCompleteComboBox(QWidget* parent)
    : SearchBox(parent)
    , lnkButton(new Link(this))
{
    lnkButton->setObjectName(QStringLiteral("lnkButton"));
    lnkButton->SetForeColor(SystemColor::GreyText);
    lnkButton->setCursor(Qt::ArrowCursor);
    m_subscriptions.push_back(lnkButton->Click.subscribe([this] { lnkButton_Click(); }));
    m_subscriptions.push_back(Change.subscribe([this] { refreshButton(); }));
    m_subscriptions.push_back(SelectionChanged.subscribe([this] { refreshButton(); }));
    resize(width(), sizeHint().height());
    refreshButton();
}

void AutoCompleteComboBox::SetShowClearButton(bool show)
{
    m_showClearButton = show;
    refreshButton();
}

void AutoCompleteComboBox::SetMinQueryLength(int length)
{
    SearchBox::SetMinQueryLength(length);
    refreshButton();
}

bool AutoCompleteComboBox::clears() const
{
    return m_showClearButton && (!text().isEmpty() || !SelectedItem().isNull());
}

void AutoCompleteComboBox::refreshButton()
{
    lnkButton->SetSymbol(clears() ? ClearGlyph : DropDownGlyph);
    lnkButton->SetToolTipText(clears() ? tr("Clear") : QString());
    // An empty box that waits for a longer text has nothing to open.
    lnkButton->setVisible(isEnabled() && (clears() || MinQueryLength() == 0));
    setTextMargins(TextMargin, TextMarginAbove, lnkButton->width() + BesideButton - BesideText,
                   TextMarginAbove);
    lnkButton->move(width() - lnkButton->width() - BesideButton, (height() - lnkButton->height()) / 2);
}

void AutoCompleteComboBox::lnkButton_Click()
{
    const QPointer<AutoCompleteComboBox> self(this); // whatever loses the focus may close the form
    setFocus();
    if (!self)
        return;
    if (clears())
        clearByPerson();
    else if (ListIsOpen())
        CloseList();
    else
        openByPerson();
}

void AutoCompleteComboBox::fontChanged()
{
    // A change inside the link's font resizes it.
    lnkButton->Font()->SetSize(Font()->Size());
    resize(width(), sizeHint().height()); // the height of a combo box is its font's
    refreshButton();
}

void AutoCompleteComboBox::resizeEvent(QResizeEvent* event)
{
    SearchBox::resizeEvent(event);
    refreshButton();
}

void AutoCompleteComboBox::changeEvent(QEvent* event)
{
    SearchBox::changeEvent(event);
    if (event->type() == QEvent::EnabledChange)
        refreshButton();
}

} // namespace tavrin
