#include "host/services/ReferenceHostServices.h"

#include "host/records/PartOfRecord.h"
#include "host/words/CustomWordTable.h"

namespace tavrin {

ReferenceHostServices::ReferenceHostServices(const HostListsHolder& lists, Database& database,
                                             Environment& environment)
    : m_lists(lists)
    , m_database(database)
    , m_environment(environment)
{
}

TableValues ReferenceHostServices::GetTableValues(TableNumber table, bool includeInactive,
                                                  const QVariant& leftOut, bool reserved)
{
    Q_UNUSED(leftOut)
    Q_UNUSED(reserved)
    TableValues values;
    for (const CodeValueRow& row : m_lists.Lists->codeValues(table)) {
        if (row.Active || includeInactive)
            values.Items << TableValue{row.Id, row.DisplayText, row.ValueNo};
    }
    return values;
}

QString ReferenceHostServices::DateDisplayFormat()
{
    const QString format =
        m_lists.Lists->setting(QStringLiteral("_Global"), QStringLiteral("Date Display Format"));
    return format.isEmpty() ? QStringLiteral("yyyy-MM-dd") : format;
}

tvBusinessObjectPtr ReferenceHostServices::GetParentObject(const tvBusinessObjectPtr& record)
{
    if (const auto part = std::dynamic_pointer_cast<PartOfRecord>(record))
        return part->record();
    const auto row = std::dynamic_pointer_cast<RecordRow>(record);
    return row ? row->record() : nullptr;
}

void ReferenceHostServices::SyncCustomDictionaryFile()
{
    writeCustomWords(m_database, m_environment.GetDictionaryFolder() + QStringLiteral("/custom.dic"));
}

} // namespace tavrin
