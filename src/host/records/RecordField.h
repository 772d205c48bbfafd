#pragma once

#include "base/export/Export.h"
#include "frame/host_contracts/Records.h"
#include "host/records/RecordSchema.h"

#include <memory>
#include <optional>

namespace tavrin {

/// Whoever wants to know that something in a record has changed.
class ChangeSink
{
public:
    virtual ~ChangeSink() = default;
    virtual void recordChanged() = 0;
};

/// What `Session::MakeFieldReference` gives: it stands for the field, whatever value that has when it is
/// read.
class TAVRIN_COMPANION_EXPORT FieldReference : public HostObject
{
public:
    explicit FieldReference(tvFieldPtr target);
    const tvFieldPtr& target() const { return m_target; }
    /// The reference in a variant, as `tvField::SetValue` takes it.
    static QVariant toVariant(const tvFieldPtr& target);

private:
    tvFieldPtr m_target;
};

/// The content of one column of one row, as saved and as it is now.
class TAVRIN_COMPANION_EXPORT FieldCell
{
public:
    explicit FieldCell(ColumnSchema column);

    const ColumnSchema& column() const { return m_column; }
    /// Null when empty. A cell that refers to another field gives that field's value in its own type, and
    /// raises an `Error` that names both when the value does not fit the type.
    QVariant value() const;
    /// Converts to the column's type. Raises an `Error` that names the column for a value that does not fit
    /// the type, and for a reference that would lead back to this cell; the cell then stays as it was. ""
    /// counts as Null.
    void setValue(const QVariant& value);
    /// A reference to a value that does not fit the type counts as a change.
    bool isChanged() const;
    const QVariant& savedValue() const { return m_saved; }
    /// What the database holds. Sets the saved value and the present one.
    void load(const QVariant& value);
    /// The present value is in the database now; a reference becomes the plain value.
    void markSaved();
    /// The database now holds this value; the present one stays.
    void noteSaved(const QVariant& value) { m_saved = value; }
    /// For keys: takes a value without telling anybody.
    void assignKey(const QVariant& value) { fillIn(value); }
    /// For what a save fills in: takes a value without telling anybody.
    void fillIn(const QVariant& value);
    void setSink(std::weak_ptr<ChangeSink> sink) { m_sink = std::move(sink); }

private:
    bool refersTo(const tvFieldPtr& field) const;
    QVariant converted(const QVariant& value) const;
    /// Nothing while the cell refers to a value that does not fit its type.
    std::optional<QVariant> readableValue() const;

    ColumnSchema m_column;
    QVariant m_value;
    QVariant m_saved;
    tvFieldPtr m_reference;
    std::weak_ptr<ChangeSink> m_sink;
};

/// A field of the host's records under one of the two published contracts.
template <typename Contract>
class BasicRecordField : public Contract, public FieldCell
{
public:
    using FieldCell::FieldCell;

    QVariant Value() const override { return value(); }
    void SetValue(const QVariant& value) override { setValue(value); }
    QString Name() const override { return column().Name; }
    bool IsKey() const override { return column().IsKey; }
    qint32 MaxLength() const override { return column().MaxLength; }
};

using RecordField = BasicRecordField<tvField>;
using RecordLinkField = BasicRecordField<tvLinkField>;

} // namespace tavrin
