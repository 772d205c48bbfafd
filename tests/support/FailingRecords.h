#pragma once

#include "base/failure/Error.h"
#include "frame/host_contracts/Records.h"

#include <QHash>

#include <memory>
#include <utility>

namespace tavrin::test {

/// Counts the calls of a host's records, and fails at one of them.
struct RecordCalls
{
    static constexpr int FailureNumber = 61;

    int made = 0;
    /// Number of the call that fails, counted from 1; 0 for none.
    int failing = 0;

    bool hasFailed() const { return failing != 0 && made >= failing; }
    /// From now on none fails.
    void heal() { made = failing = 0; }
    void note(const char* call)
    {
        if (++made == failing)
            throw Error(QStringLiteral("no server for %1").arg(QLatin1String(call)), FailureNumber);
    }
};

/// The object behind one whose calls, and those of whatever it hands out, are noted in `calls`, which must
/// outlive it.
HostObjectPtr failingObject(const HostObjectPtr& object, RecordCalls& calls);

class FailingField final : public tvField
{
public:
    FailingField(tvFieldPtr field, RecordCalls& calls)
        : m_field(std::move(field))
        , m_calls(calls)
    {
    }

    QVariant Value() const override
    {
        m_calls.note("Value");
        return m_field->Value();
    }
    void SetValue(const QVariant& value) override
    {
        m_calls.note("SetValue");
        m_field->SetValue(value);
    }
    QString Name() const override { return m_field->Name(); }
    bool IsKey() const override { return m_field->IsKey(); }
    qint32 MaxLength() const override { return m_field->MaxLength(); }

private:
    tvFieldPtr m_field;
    RecordCalls& m_calls;
};

class FailingRow final : public tvTableRow
{
public:
    FailingRow(tvTableRowPtr row, RecordCalls& calls)
        : m_row(std::move(row))
        , m_calls(calls)
    {
    }

    HostObjectPtr Item(const QString& name) override
    {
        m_calls.note("Item of a row");
        return failingObject(m_row->Item(name), m_calls);
    }
    tvFieldPtr Item(int index) override
    {
        m_calls.note("Item of a row");
        const tvFieldPtr field = m_row->Item(index);
        return field ? std::make_shared<FailingField>(field, m_calls) : nullptr;
    }
    int FieldCount() const override
    {
        m_calls.note("FieldCount");
        return m_row->FieldCount();
    }
    bool IsNew() const override
    {
        m_calls.note("IsNew");
        return m_row->IsNew();
    }

private:
    tvTableRowPtr m_row;
    RecordCalls& m_calls;
};

/// Makes an object for a row at each call.
class FailingCollection final : public tvTableCollection
{
public:
    FailingCollection(tvTableCollectionPtr rows, RecordCalls& calls)
        : m_rows(std::move(rows))
        , m_calls(calls)
        , m_removed(m_rows->ItemRemoved.subscribe([this](const QVariant& key) { ItemRemoved.raise(key); }))
    {
    }

    QString KeyColumn() const override { return m_rows->KeyColumn(); }
    tvTableRowPtr NewItem() override { return rowOf(m_rows->NewItem()); }
    tvTableRowPtr AddNew() override
    {
        m_calls.note("AddNew");
        return rowOf(m_rows->AddNew());
    }
    void Add(const tvTableRowPtr& row) override { m_rows->Add(row); }
    void RemoveCurrent(bool immediately) override
    {
        m_calls.note("RemoveCurrent");
        m_rows->RemoveCurrent(immediately);
    }
    qint32 Count() const override
    {
        m_calls.note("Count");
        return m_rows->Count();
    }
    tvTableRowPtr Item(qint32 index) override
    {
        m_calls.note("Item of a collection");
        return rowOf(m_rows->Item(index));
    }
    void SetItemClass(const QString& name) override { m_rows->SetItemClass(name); }
    qint16 Position() const override
    {
        m_calls.note("Position");
        return m_rows->Position();
    }
    void SetPosition(qint16 position) override
    {
        m_calls.note("SetPosition");
        m_rows->SetPosition(position);
    }
    bool CurrentIsPrimary() const override { return m_rows->CurrentIsPrimary(); }
    void SetPrimaryValue(const QVariant& key) override { m_rows->SetPrimaryValue(key); }
    qint32 PrimaryIndex() const override { return m_rows->PrimaryIndex(); }

private:
    tvTableRowPtr rowOf(const tvTableRowPtr& row) { return std::make_shared<FailingRow>(row, m_calls); }

    tvTableCollectionPtr m_rows;
    RecordCalls& m_calls;
    Subscription m_removed;
};

/// Hands out the same object for each call of one name.
class FailingRecord final : public tvBusinessObject
{
public:
    FailingRecord(tvBusinessObjectPtr record, RecordCalls& calls)
        : m_record(std::move(record))
        , m_calls(calls)
    {
    }

    HostObjectPtr Item(const QString& name) override
    {
        m_calls.note("Item of a record");
        HostObjectPtr& child = m_children[name];
        if (!child)
            child = failingObject(m_record->Item(name), m_calls);
        return child;
    }

private:
    tvBusinessObjectPtr m_record;
    RecordCalls& m_calls;
    QHash<QString, HostObjectPtr> m_children;
};

inline HostObjectPtr failingObject(const HostObjectPtr& object, RecordCalls& calls)
{
    if (auto row = std::dynamic_pointer_cast<tvTableRow>(object))
        return std::make_shared<FailingRow>(row, calls);
    if (auto record = std::dynamic_pointer_cast<tvBusinessObject>(object))
        return std::make_shared<FailingRecord>(record, calls);
    if (auto rows = std::dynamic_pointer_cast<tvTableCollection>(object))
        return std::make_shared<FailingCollection>(rows, calls);
    if (auto field = std::dynamic_pointer_cast<tvField>(object))
        return std::make_shared<FailingField>(field, calls);
    return nullptr;
}

} // namespace tavrin::test
