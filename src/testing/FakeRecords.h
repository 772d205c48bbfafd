#pragma once

#include "base/export/Export.h"
#include "frame/memory_records/MemoryCollection.h"
#include "frame/memory_records/MemoryRecord.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace tavrin::testing {

/// A collection in memory that notes what is done to it, and that can hand out its rows as hosts do that hold
/// them otherwise. Its new rows have no number.
class TAVRIN_EXPORT FakeCollection : public MemoryCollection
{
public:
    /// The first of the columns is the key.
    explicit FakeCollection(const QStringList& columns = {QStringLiteral("SeqNo")});
    ~FakeCollection() override;

    tvTableRowPtr AddNew() override;
    void Add(const tvTableRowPtr& row) override;
    void RemoveCurrent(bool immediately) override;
    tvTableRowPtr Item(qint32 index) override;

    /// How `RemoveCurrent` was asked to remove, call by call.
    QList<bool> removedImmediately;
    /// Whether each call that gives a row makes an object for it.
    bool makesRowsAnew = false;
    /// How many times a row was asked for.
    qint64 reads = 0;

private:
    tvTableRowPtr given(const tvTableRowPtr& row) const;
};

/// An incident without children.
class TAVRIN_EXPORT FakeRecord : public MemoryRecord
{
public:
    FakeRecord();
    ~FakeRecord() override;
};

} // namespace tavrin::testing
