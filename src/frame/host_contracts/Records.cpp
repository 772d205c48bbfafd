#include "Records.h"

#include "base/Error.h"

namespace tavrin {

tvFieldPtr fieldOf(tvTableRow& row, const QString& name)
{
    if (auto field = std::dynamic_pointer_cast<tvField>(row.Item(name)))
        return field;
    throw Error(QStringLiteral("The row has no field %1").arg(name));
}

} // namespace tavrin
