#include "workbench/bindings/PlainBindings.h"

#include "base/failure/Guard.h"
#include "base/values/Variant.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextDocument>
#include <QWheelEvent>

namespace tavrin::workbench {

namespace {

QVariant textOrNull(const QString& text)
{
    return text.isEmpty() ? Null() : QVariant(text);
}

/// A combo box that the wheel passes over while it does not have the focus.
class CalmComboBox final : public QComboBox
{
protected:
    void wheelEvent(QWheelEvent* event) override
    {
        if (hasFocus())
            QComboBox::wheelEvent(event);
        else
            event->ignore();
    }
};

} // namespace

// LineBinding

LineBinding::LineBinding(const QString& fieldName, const QString& label)
    : FieldBinding(fieldName, label)
    , m_edit(new QLineEdit)
{
    m_edit->setObjectName(fieldName);
    m_edit->setTextMargins(3, 2, 3, 2);
    connectGuarded(m_edit, &QLineEdit::textEdited, m_edit, "LineBinding_Edited", [this] { Edited.raise(); });
}

QWidget* LineBinding::widget() const
{
    return m_edit;
}

QString LineBinding::line() const
{
    return m_edit->text();
}

QString LineBinding::toLine(const QVariant& value) const
{
    return ToText(value);
}

QVariant LineBinding::fromLine(const QString& line) const
{
    return textOrNull(line);
}

void LineBinding::load(tvTableRow& row)
{
    const tvField& source = field(row);
    m_edit->setMaxLength(source.MaxLength() > 0 ? source.MaxLength() : 32767);
    m_edit->setText(toLine(source.Value()));
    m_edit->setCursorPosition(0);
}

bool LineBinding::differs(tvTableRow& row) const
{
    return line() != toLine(field(row).Value());
}

void LineBinding::store(tvTableRow& row) const
{
    if (differs(row))
        field(row).SetValue(fromLine(line()));
}

// DateTimeBinding

DateTimeBinding::DateTimeBinding(const QString& fieldName, const QString& label, const QString& dateFormat)
    : LineBinding(fieldName, label)
    , m_format(dateFormat + QStringLiteral(" HH:mm"))
{
    qobject_cast<QLineEdit*>(widget())->setPlaceholderText(m_format.toLower());
}

QString DateTimeBinding::toLine(const QVariant& value) const
{
    return IsNull(value) ? QString() : value.toDateTime().toString(m_format);
}

QVariant DateTimeBinding::fromLine(const QString& line) const
{
    const QDateTime moment = QDateTime::fromString(line.trimmed(), m_format);
    return moment.isValid() ? QVariant(moment) : Null();
}

QDateTime DateTimeBinding::moment() const
{
    return fromLine(line()).toDateTime();
}

QString DateTimeBinding::problem() const
{
    if (line().trimmed().isEmpty() || !IsNull(fromLine(line())))
        return {};
    return QStringLiteral("\"%1\" in \"%2\" is not a date and time. Type it as %3.")
        .arg(line(), plainLabel(), m_format.toLower());
}

// ChoiceBinding

ChoiceBinding::ChoiceBinding(const QString& fieldName, const QString& label, const QStringList& choices)
    : FieldBinding(fieldName, label)
    , m_choices(choices)
    , m_combo(new CalmComboBox)
{
    m_combo->setObjectName(fieldName);
    m_combo->setFocusPolicy(Qt::StrongFocus);
    connectGuarded(m_combo, &QComboBox::activated, m_combo, "ChoiceBinding_Edited",
                   [this] { Edited.raise(); });
}

QWidget* ChoiceBinding::widget() const
{
    return m_combo;
}

void ChoiceBinding::load(tvTableRow& row)
{
    const QString value = ToText(field(row).Value());
    m_combo->clear();
    m_combo->addItems(m_choices);
    if (!m_choices.contains(value))
        m_combo->addItem(value);
    m_combo->setCurrentText(value);
}

bool ChoiceBinding::differs(tvTableRow& row) const
{
    return m_combo->currentText() != ToText(field(row).Value());
}

void ChoiceBinding::store(tvTableRow& row) const
{
    if (differs(row))
        field(row).SetValue(textOrNull(m_combo->currentText()));
}

// MemoBinding

MemoBinding::MemoBinding(const QString& fieldName, const QString& label)
    : FieldBinding(fieldName, label)
    , m_edit(new QPlainTextEdit)
{
    m_edit->setObjectName(fieldName);
    m_edit->setTabChangesFocus(true);
    m_edit->document()->setDocumentMargin(8);
    connectGuarded(m_edit, &QPlainTextEdit::textChanged, m_edit, "MemoBinding_Edited",
                   [this] { Edited.raise(); });
}

QWidget* MemoBinding::widget() const
{
    return m_edit;
}

void MemoBinding::load(tvTableRow& row)
{
    m_maxLength = field(row).MaxLength();
    m_edit->setPlainText(ToText(field(row).Value()));
}

bool MemoBinding::differs(tvTableRow& row) const
{
    return m_edit->toPlainText() != ToText(field(row).Value());
}

void MemoBinding::store(tvTableRow& row) const
{
    if (differs(row))
        field(row).SetValue(textOrNull(m_edit->toPlainText()));
}

QString MemoBinding::problem() const
{
    const auto length = m_edit->toPlainText().size();
    if (m_maxLength == 0 || length <= m_maxLength)
        return {};
    return QStringLiteral("The text is %1 characters long; there is room for %2.")
        .arg(length)
        .arg(m_maxLength);
}

} // namespace tavrin::workbench
