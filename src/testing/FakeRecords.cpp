#include "testing/FakeRecords.h"

#include <memory>
#include <utility>

namespace tavrin::testing {

namespace {

/// An object of its own for a row that a collection keeps.
class RowView final : public tvTableRow
{
public:
    explicit RowView(tvTableRowPtr row)
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

} // namespace

FakeCollection::FakeCollection(const QStringList& columns)
    : MemoryCollection(columns)
{
    SetNumbersRows(false);
}

FakeCollection::~FakeCollection() = default;

tvTableRowPtr FakeCollection::AddNew()
{
    return given(MemoryCollection::AddNew());
}

void FakeCollection::Add(const tvTableRowPtr& row)
{
    const auto view = std::dynamic_pointer_cast<RowView>(row);
    MemoryCollection::Add(view ? view->row() : row);
}

void FakeCollection::RemoveCurrent(bool immediately)
{
    removedImmediately << immediately;
    MemoryCollection::RemoveCurrent(immediately);
}

tvTableRowPtr FakeCollection::Item(qint32 index)
{
    ++reads;
    return given(MemoryCollection::Item(index));
}

tvTableRowPtr FakeCollection::given(const tvTableRowPtr& row) const
{
    return makesRowsAnew ? std::make_shared<RowView>(row) : row;
}

FakeRecord::FakeRecord()
    : MemoryRecord(QStringLiteral("tvIncidentBO"))
{
}

FakeRecord::~FakeRecord() = default;

} // namespace tavrin::testing
