#include "ModuleKey.h"

#include "frame/host_contracts/HostObjects.h"

namespace tavrin {

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

} // namespace tavrin
