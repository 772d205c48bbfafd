#pragma once

#include "base/failure/Event.h"
#include "frame/host_contracts/Records.h"

#include <QWidget>

namespace tavrin::workbench {

/// Why something on a page cannot be saved, in a sentence for the person, and where.
struct FieldProblem
{
    QWidget* field;
    QString text;
};

/// The problem of a text that was typed into a search and not chosen from its list.
inline QString notChosenText(const QString& typed, const QString& plainLabel)
{
    return QStringLiteral(
               "\"%1\" in \"%2\" was typed but not chosen from the list. Choose an entry, or empty "
               "the field.")
        .arg(typed, plainLabel);
}

/// Ties one widget of a page to one field of the record's main row.
class FieldBinding
{
public:
    /// `label` is the field's name for the person, with the mark of its access key.
    FieldBinding(QString fieldName, QString label)
        : m_fieldName(std::move(fieldName))
        , m_label(std::move(label))
    {
    }
    FieldBinding(const FieldBinding&) = delete;
    FieldBinding& operator=(const FieldBinding&) = delete;
    virtual ~FieldBinding() = default;

    const QString& fieldName() const { return m_fieldName; }
    const QString& label() const { return m_label; }
    QString plainLabel() const { return QString(m_label).remove(u'&'); }
    virtual QWidget* widget() const = 0;
    /// Shows the field's value.
    virtual void load(tvTableRow& row) = 0;
    /// The widget holds something else than the field.
    virtual bool differs(tvTableRow& row) const = 0;
    /// Writes what the widget holds into the field.
    virtual void store(tvTableRow& row) const = 0;
    /// Why the content cannot be saved, in a sentence for the person; "" when it can.
    virtual QString problem() const { return {}; }

    /// The record is not saved without a value, whatever the host's rules say.
    virtual bool isRequired() const { return false; }

    /// The person has changed something.
    Event<> Edited;

protected:
    tvField& field(tvTableRow& row) const { return *fieldOf(row, m_fieldName); }

private:
    QString m_fieldName;
    QString m_label;
};

} // namespace tavrin::workbench
