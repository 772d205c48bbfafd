#include "frame/host_contracts/Records.h"

#include "base/failure/Error.h"
#include "base/values/Variant.h"

namespace tavrin {

tvFieldPtr fieldOf(tvTableRow& row, const QString& name)
{
    if (auto field = std::dynamic_pointer_cast<tvField>(row.Item(name)))
        return field;
    throw Error(QStringLiteral("The row has no field %1").arg(name));
}

bool isSameRow(const tvTableCollection& rows, const tvTableRowPtr& one, const tvTableRowPtr& other)
{
    if (!one || !other || one == other)
        return one == other;
    const QString column = rows.KeyColumn();
    const QVariant key = fieldOf(*one, column)->Value();
    return !IsNull(key) && SameValue(key, fieldOf(*other, column)->Value());
}

qint32 indexOf(tvTableCollection& rows, const tvTableRowPtr& row)
{
    const qint32 count = rows.Count();
    if (!row || count == 0)
        return 0;
    const qint32 position = rows.Position();
    if (position >= 1 && position <= count && isSameRow(rows, rows.Item(position), row))
        return position;
    for (qint32 index = 1; index <= count; ++index) {
        if (index != position && isSameRow(rows, rows.Item(index), row))
            return index;
    }
    return 0;
}

} // namespace tavrin
