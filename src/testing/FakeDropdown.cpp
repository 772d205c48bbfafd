#include "testing/FakeDropdown.h"

#include <QList>
#include <QPair>

namespace tavrin::testing {

struct FakeDropdown::Private
{
    QList<QPair<QString, qint32>> rows;
    int index = -1;
};

FakeDropdown::FakeDropdown()
    : d(std::make_unique<Private>())
{
}

FakeDropdown::~FakeDropdown() = default;

void FakeDropdown::Clear()
{
    *d = {};
}

void FakeDropdown::AddItem(const QString& text, qint32 itemData)
{
    d->rows.append({text, itemData});
}

int FakeDropdown::ListCount() const
{
    return static_cast<int>(d->rows.size());
}

QString FakeDropdown::List(int index) const
{
    return d->rows.value(index).first;
}

qint32 FakeDropdown::ItemData(int index) const
{
    return d->rows.value(index).second;
}

int FakeDropdown::ListIndex() const
{
    return d->index;
}

void FakeDropdown::SetListIndex(int index)
{
    d->index = index;
}

} // namespace tavrin::testing
