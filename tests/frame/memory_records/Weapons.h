#pragma once

#include "frame/memory_records/MemoryCollection.h"

#include <QVariantList>

namespace tavrin::test {

/// A saved collection with the columns SeqNo and WeaponNo, and a row for each value.
inline std::shared_ptr<MemoryCollection> weaponRows(const QVariantList& values = {})
{
    auto rows =
        std::make_shared<MemoryCollection>(QStringList{QStringLiteral("SeqNo"), QStringLiteral("WeaponNo")});
    for (const QVariant& value : values)
        fieldOf(*rows->AddNew(), QStringLiteral("WeaponNo"))->SetValue(value);
    rows->MarkSaved();
    return rows;
}

inline void removeRowAt(tvTableCollection& rows, qint16 position, bool immediately = false)
{
    rows.SetPosition(position);
    rows.RemoveCurrent(immediately);
}

} // namespace tavrin::test
