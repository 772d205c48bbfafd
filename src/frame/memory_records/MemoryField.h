#pragma once

#include "base/export/Export.h"
#include "frame/host_contracts/Records.h"

#include <QString>
#include <QVariant>

#include <memory>

namespace tavrin {

/// One column of a row in memory: a value of its own, or the value of the field that it is linked to.
///
/// Empty becomes Null; a text without characters stays one.
class TAVRIN_EXPORT MemoryField : public tvField
{
public:
    /// `maxLength` is in UTF-16 units, 0 where no length is set. Raises what `SetValue` raises.
    explicit MemoryField(const QString& name, const QVariant& value = {}, bool isKey = false,
                         qint32 maxLength = 0);
    ~MemoryField() override;

    QVariant Value() const override;
    /// Raises an `Error` for an object that is no field and for a link that leads back to this field; the
    /// value then stays as it was. A text longer than `MaxLength` is kept whole: what to do with one is for
    /// those who enter texts, and for the database.
    void SetValue(const QVariant& value) override;
    QString Name() const override;
    bool IsKey() const override;
    qint32 MaxLength() const override;

    /// What a host whose records are of this kind answers to `Session::MakeFieldReference`. Raises an `Error`
    /// for nullptr.
    static QVariant ReferenceTo(const tvFieldPtr& field);

    /// Ends a link with the value that has come by it. One that still gives Null stays.
    void MarkSaved();

private:
    /// The field that holds the value: a link column's own stands inside it. nullptr for fields of other
    /// makers, which nobody can look into.
    static const MemoryField* within(const tvField* field);
    bool refersTo(const MemoryField* field) const;

    struct Private;
    std::unique_ptr<Private> d;
};

/// A column in memory that links its row to the record above it.
class TAVRIN_EXPORT MemoryLinkField : public tvLinkField
{
public:
    /// As a `MemoryField`.
    explicit MemoryLinkField(const QString& name, const QVariant& value = {}, bool isKey = false,
                             qint32 maxLength = 0);
    ~MemoryLinkField() override;

    QVariant Value() const override;
    /// As `MemoryField::SetValue`.
    void SetValue(const QVariant& value) override;
    QString Name() const override;
    bool IsKey() const override;
    qint32 MaxLength() const override;

    /// As `MemoryField::MarkSaved`.
    void MarkSaved();

private:
    friend class MemoryField; // follows links through it

    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace tavrin
