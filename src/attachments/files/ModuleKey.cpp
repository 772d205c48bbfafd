#include "attachments/files/ModuleKey.h"

#include "base/values/Variant.h"
#include "frame/host_contracts/HostObjects.h"

#include <QVariantList>

#include <algorithm>

namespace tavrin {

namespace {

/// The values of the key columns; none where one of them has none yet.
QVariantList keyOf(const tvBusinessObjectPtr& record)
{
    QVariantList key;
    const auto main = std::dynamic_pointer_cast<tvTableRow>(record->Item(GetModuleKeyFromBO(record)));
    for (int index = 1; main && index <= main->FieldCount(); ++index) {
        const tvFieldPtr field = main->Item(index);
        if (!field->IsKey())
            continue;
        const QVariant value = field->Value();
        if (IsNull(value))
            return {};
        key << value;
    }
    return key;
}

} // namespace

QString GetModuleKeyFromBO(const tvBusinessObjectPtr& record)
{
    constexpr int invalidCall = 5;
    const QString typeName = required(record, QStringLiteral("record")).ClassName();
    const bool endsInBO = typeName.endsWith(QLatin1String("BO"));
    const bool isValid =
        typeName.startsWith(QLatin1String("tvMI")) || (typeName.startsWith(QLatin1String("tv")) && endsInBO);
    if (!isValid)
        throw Error(QStringLiteral("Unexpected business object type '") + typeName +
                        QStringLiteral("' passed to function. Business object type name must start with 'tv' "
                                       "and end with 'BO', or start with 'tvMI'."),
                    invalidCall, QStringLiteral("GetModuleKeyFromBO"));
    constexpr int prefix = 2;
    constexpr int suffix = 2;
    return endsInBO ? typeName.mid(prefix, typeName.size() - prefix - suffix) : typeName.mid(prefix);
}

bool isSameRecord(const tvBusinessObjectPtr& one, const tvBusinessObjectPtr& other)
{
    if (!one || !other || one == other)
        return one && one == other;
    if (one->ClassName() != other->ClassName())
        return false;
    const QVariantList key = keyOf(one);
    const QVariantList otherKey = keyOf(other);
    return !key.isEmpty() && std::equal(key.begin(), key.end(), otherKey.begin(), otherKey.end(), SameValue);
}

} // namespace tavrin
