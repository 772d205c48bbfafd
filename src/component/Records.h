#pragma once

#include "frame/host_contracts/Records.h"

#include <QList>

#include <vector>

// Records that live in memory alone, for programs that keep theirs elsewhere and hand them over as texts.

namespace tavrin::component {

/// A column of a row that is made.
struct Column
{
    QString name;
    bool isKey = false;
    qint32 maxLength = 0;
    bool isLink = false;
};
using Columns = std::vector<Column>;

/// A field that holds a value of its own, or reads the one that it was linked to.
template <typename Kind>
class Field final : public Kind
{
public:
    explicit Field(Column column)
        : m_column(std::move(column))
        , m_value(QVariant::fromValue(nullptr))
    {
    }

    QVariant Value() const override { return m_linked ? m_linked->Value() : m_value; }
    void SetValue(const QVariant& value) override
    {
        m_linked = value.canConvert<HostObjectPtr>()
                       ? std::dynamic_pointer_cast<tvField>(value.value<HostObjectPtr>())
                       : nullptr;
        if (!m_linked)
            m_value = value;
    }
    QString Name() const override { return m_column.name; }
    bool IsKey() const override { return m_column.isKey; }
    qint32 MaxLength() const override { return m_column.maxLength; }

private:
    Column m_column;
    QVariant m_value;
    tvFieldPtr m_linked;
};

class Row final : public tvTableRow
{
public:
    Row(const Columns& columns, bool isNew);

    HostObjectPtr Item(const QString& name) override;
    tvFieldPtr Item(int index) override { return m_fields.value(index - 1); }
    int FieldCount() const override { return static_cast<int>(m_fields.size()); }
    bool IsNew() const override { return m_isNew; }

    const Columns& columns() const { return m_columns; }

private:
    Columns m_columns;
    QList<tvFieldPtr> m_fields;
    bool m_isNew;
};

class Collection final : public tvTableCollection
{
public:
    Collection(QString key, Columns columns)
        : m_key(std::move(key))
        , m_columns(std::move(columns))
    {
    }

    QString KeyColumn() const override { return m_key; }
    /// Numbered behind the highest key.
    tvTableRowPtr NewItem() override;
    tvTableRowPtr AddNew() override;
    void Add(const tvTableRowPtr& row) override;
    void RemoveCurrent(bool immediately) override;
    qint32 Count() const override { return static_cast<qint32>(m_rows.size()); }
    tvTableRowPtr Item(qint32 index) override;
    void SetItemClass(const QString&) override {}
    qint16 Position() const override { return m_position; }
    void SetPosition(qint16 position) override;
    bool CurrentIsPrimary() const override { return m_position != 0 && m_position == PrimaryIndex(); }
    void SetPrimaryValue(const QVariant& key) override;
    qint32 PrimaryIndex() const override;

    const Columns& columns() const { return m_columns; }
    const QVariant& primary() const { return m_primary; }

private:
    QVariant keyOf(const tvTableRowPtr& row) const;
    qint32 highestKey() const;

    QString m_key;
    Columns m_columns;
    QList<tvTableRowPtr> m_rows;
    qint16 m_position = 0;
    qint32 m_lastNumber = 0;
    QVariant m_primary = QVariant::fromValue(nullptr);
};

/// A record with children by name, in their order.
class Record final : public tvBusinessObject
{
public:
    HostObjectPtr Item(const QString& name) override;
    QString ClassName() const override { return className; }

    QString className;
    std::vector<std::pair<QString, HostObjectPtr>> children;
    tvBusinessObjectPtr parent; // nullptr for none
};

} // namespace tavrin::component
