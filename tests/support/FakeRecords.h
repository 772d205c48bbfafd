#pragma once

#include "frame/host_contracts/Records.h"

#include <QList>
#include <QMap>

namespace tavrin::test {

/// A field that holds a value of its own, or reads the one it was linked to.
class FakeField final : public tvField
{
public:
    explicit FakeField(QString name, QVariant value = QVariant::fromValue(nullptr), bool isKey = false,
                       qint32 maxLength = 0);

    QVariant Value() const override;
    void SetValue(const QVariant& value) override;
    QString Name() const override { return m_name; }
    bool IsKey() const override { return m_isKey; }
    qint32 MaxLength() const override { return m_maxLength; }

private:
    QString m_name;
    QVariant m_value;
    tvFieldPtr m_linked;
    bool m_isKey;
    qint32 m_maxLength;
};

/// A row whose columns are given when it is made.
class FakeRow final : public tvTableRow
{
public:
    explicit FakeRow(QList<tvFieldPtr> fields, bool isNew = true)
        : m_fields(std::move(fields))
        , m_isNew(isNew)
    {
    }

    HostObjectPtr Item(const QString& name) override;
    tvFieldPtr Item(int index) override;
    int FieldCount() const override { return static_cast<int>(m_fields.size()); }
    bool IsNew() const override { return m_isNew; }

private:
    QList<tvFieldPtr> m_fields;
    bool m_isNew;
};

/// An object of its own for a row that a collection keeps, as hosts make them that hold their rows otherwise.
class FakeRowView final : public tvTableRow
{
public:
    explicit FakeRowView(tvTableRowPtr row)
        : m_row(std::move(row))
    {
    }

    HostObjectPtr Item(const QString& name) override { return m_row->Item(name); }
    tvFieldPtr Item(int index) override { return m_row->Item(index); }
    int FieldCount() const override { return m_row->FieldCount(); }
    bool IsNew() const override { return m_row->IsNew(); }

    const tvTableRowPtr& row() const { return m_row; }

private:
    tvTableRowPtr m_row;
};

/// A collection whose new rows have the given columns, the first of them the key.
class FakeCollection final : public tvTableCollection
{
public:
    explicit FakeCollection(QStringList columns = {QStringLiteral("SeqNo")})
        : m_columns(std::move(columns))
    {
    }

    QString KeyColumn() const override { return m_columns.value(0); }
    tvTableRowPtr NewItem() override;
    tvTableRowPtr AddNew() override;
    void Add(const tvTableRowPtr& row) override;
    void RemoveCurrent(bool immediately) override;
    qint32 Count() const override { return static_cast<qint32>(m_rows.size()); }
    tvTableRowPtr Item(qint32 index) override;
    void SetItemClass(const QString& name) override { itemClass = name; }
    qint16 Position() const override { return m_position; }
    void SetPosition(qint16 position) override { m_position = position; }
    bool CurrentIsPrimary() const override { return m_position != 0 && m_position == PrimaryIndex(); }
    void SetPrimaryValue(const QVariant& key) override;
    qint32 PrimaryIndex() const override;

    QString itemClass;
    /// How `RemoveCurrent` was asked to remove, call by call.
    QList<bool> removedImmediately;
    /// Whether each call that gives a row makes an object for it.
    bool makesRowsAnew = false;
    /// Whether a new row has a key, the next number.
    bool numbersRows = false;
    /// How many times a row was asked for.
    qint64 reads = 0;

private:
    QVariant keyOf(const tvTableRowPtr& row) const;
    tvTableRowPtr given(const tvTableRowPtr& row) const;

    QStringList m_columns;
    QList<tvTableRowPtr> m_rows;
    qint16 m_position = 0;
    qint32 m_lastNumber = 0;
    QVariant m_primary = QVariant::fromValue(nullptr);
};

/// A record with children by name.
class FakeRecord final : public tvBusinessObject
{
public:
    HostObjectPtr Item(const QString& name) override { return m_children.value(name.toLower()); }
    void setItem(const QString& name, const HostObjectPtr& child)
    {
        m_children.insert(name.toLower(), child);
    }
    QString ClassName() const override { return className; }

    QString className = QStringLiteral("tvIncidentBO");

private:
    QMap<QString, HostObjectPtr> m_children;
};

} // namespace tavrin::test
