#include "widgets/boxes/TextBox.h"

#include "base/failure/Guard.h"
#include "widgets/boxes/KeyCodes.h"

#include <QApplication>
#include <QPointer>
#include <QScopedValueRollback>
#include <QSet>
#include <QValidator>
#include <QWheelEvent>

#include <algorithm>
#include <limits>
#include <utility>

namespace tavrin {

/// Holds the limit of a box whose text came longer than it. The limit of `QLineEdit` would cut that text, and
/// cannot be moved without forgetting what can be undone.
class TextBox::LengthValidator final : public QValidator
{
public:
    LengthValidator(int limit, const QString& text, QObject* parent)
        : QValidator(parent)
        , m_limit(limit)
        , m_length(text.size())
        , m_longTexts{text}
    {
    }

    State validate(QString& input, int&) const override
    {
        // What stood here before comes back by undoing.
        const bool isTaken =
            input.size() <= std::max<qsizetype>(m_limit, m_length) || m_longTexts.contains(input);
        if (!isTaken)
            return Invalid;
        m_length = input.size();
        if (m_length > m_limit)
            m_longTexts.insert(input);
        return Acceptable;
    }

private:
    int m_limit;
    mutable qsizetype m_length; // of the text before
    mutable QSet<QString> m_longTexts;
};

TextBox::TextBox(QWidget* parent)
    : QLineEdit(parent)
{
    setTextMargins(3, 2, 3, 2); // room around the text, so that a column of boxes reads calmly
    setMaxLength(std::numeric_limits<int>::max()); // Qt's own would cut a text of a record
    connectGuarded(this, &QLineEdit::textChanged, this, "TextBox_Change", [this] {
        if (m_isEditing)
            m_changed = true;
        else if (!m_settingText)
            Change.raise();
    });
}

void TextBox::edit(const std::function<void()>& byQt)
{
    const QPointer<TextBox> self(this);
    const bool isInner = std::exchange(m_isEditing, true);
    byQt();
    if (!self || isInner)
        return;
    m_isEditing = false;
    if (std::exchange(m_changed, false))
        guard("TextBox_Change", [this] { Change.raise(); });
}

void TextBox::SetText(const QString& text)
{
    const QString before = Text();
    {
        const QScopedValueRollback setting(m_settingText, true);
        makeRoomFor(text);
        setText(text);
    }
    if (Text() != before)
        Change.raise();
}

void TextBox::SetMaxLength(int length)
{
    const QScopedValueRollback setting(m_settingText, true);
    m_maxLength = length;
    makeRoomFor(text());
}

void TextBox::makeRoomFor(const QString& text)
{
    if (!m_maxLength)
        return;
    setValidator(nullptr);
    delete std::exchange(m_lengthValidator, nullptr);
    const int limit = *m_maxLength > 0 ? *m_maxLength : std::numeric_limits<int>::max();
    const int needed = std::max(limit, static_cast<int>(text.size()));
    if (needed != maxLength())
        setMaxLength(needed);
    if (needed == limit)
        return;
    m_lengthValidator = new LengthValidator(limit, text, this);
    setValidator(m_lengthValidator);
}

void TextBox::SetSelection(int start, int length)
{
    setSelection(start, length);
}

void TextBox::SetBackColor(Color color)
{
    m_backColor = color;
    applyColors();
}

void TextBox::SetForeColor(Color color)
{
    m_foreColor = color;
    applyColors();
}

void TextBox::applyColors()
{
    const QScopedValueRollback applying(m_applyingColors, true);
    const QPalette system = QApplication::palette(this);
    const QColor back = m_backColor.resolve(system);
    const QColor fore = m_foreColor.resolve(system);
    QPalette palette; // of the roles that are set here; the others are inherited
    if (m_backColor != SystemColor::WindowBackground)
        palette.setColor(QPalette::Base, back);
    if (m_foreColor != SystemColor::WindowText) {
        for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive})
            palette.setColor(group, QPalette::Text, fore);
        // A disabled box stays readable on whatever background it has.
        const QColor faded((fore.red() * 3 + back.red() * 2) / 5, (fore.green() * 3 + back.green() * 2) / 5,
                           (fore.blue() * 3 + back.blue() * 2) / 5);
        palette.setColor(QPalette::Disabled, QPalette::Text, faded);
    }
    setPalette(palette);
}

void TextBox::focusOutEvent(QFocusEvent* event)
{
    m_leftSelection.reset();
    if (hasSelectedText())
        m_leftSelection = {text(), selectionStart(), static_cast<int>(selectedText().size())};
    QLineEdit::focusOutEvent(event); // which drops the selection
}

void TextBox::focusInEvent(QFocusEvent* event)
{
    QLineEdit::focusInEvent(event);
    if (event->reason() == Qt::OtherFocusReason && m_leftSelection && m_leftSelection->text == text())
        setSelection(m_leftSelection->start, m_leftSelection->length);
    m_leftSelection.reset();
}

void TextBox::changeEvent(QEvent* event)
{
    QLineEdit::changeEvent(event);
    // A new palette of the application comes as PaletteChange, through the roles that are inherited.
    const bool themeChanged = event->type() == QEvent::PaletteChange ||
                              event->type() == QEvent::StyleChange || event->type() == QEvent::ThemeChange;
    if (themeChanged && !m_applyingColors)
        applyColors();
}

namespace {

/// The character that the key gives to a text box; 0 for none.
int characterOf(const QKeyEvent& event)
{
    // Delete gives none, although Qt has one for it; Ctrl makes a command of a key and no text.
    const bool isCommand = event.modifiers().testFlag(Qt::ControlModifier) &&
                           !event.modifiers().testFlag(Qt::AltModifier) && !event.text().isEmpty() &&
                           event.text().at(0).isPrint();
    if (event.text().isEmpty() || event.key() == Qt::Key_Delete || isCommand)
        return 0;
    return event.text().at(0).unicode();
}

} // namespace

bool TextBox::swallows(QKeyEvent* event)
{
    int keyCode = keyCodeOf(*event);
    KeyDown.raise(keyCode, shiftStateOf(event->modifiers()));
    if (keyCode == 0 && keyCodeOf(*event) != 0)
        return true;
    int character = characterOf(*event);
    if (character == 0)
        return false;
    KeyPress.raise(character);
    return character == 0;
}

void TextBox::keyPressEvent(QKeyEvent* event)
{
    const QPointer<TextBox> self(this); // a handler may close the form
    bool swallowed = false;
    guard("TextBox_KeyPress", [&] { swallowed = swallows(event); });
    if (!self || swallowed)
        event->accept();
    else
        edit([&] { QLineEdit::keyPressEvent(event); });
}

void TextBox::inputMethodEvent(QInputMethodEvent* event)
{
    const QPointer<TextBox> self(this);
    QString taken;
    for (const QChar unit : event->commitString()) {
        int character = unit.unicode();
        guard("TextBox_KeyPress", [&] { KeyPress.raise(character); }); // one failure loses no text
        if (!self)
            return;
        if (character != 0)
            taken += unit;
    }
    if (taken != event->commitString())
        event->setCommitString(taken, event->replacementStart(), event->replacementLength());
    edit([&] { QLineEdit::inputMethodEvent(event); });
}

void TextBox::wheelEvent(QWheelEvent* event)
{
    event->ignore(); // a page scrolls on, whatever box the mouse passes
}

} // namespace tavrin
