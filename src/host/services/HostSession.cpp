#include "host/services/HostSession.h"

#include "host/records/RecordField.h"
#include "host/records/RecordSchema.h"

#include <algorithm>

namespace tavrin {

HostSession::HostSession(const HostListsHolder& lists, QString userId)
    : m_lists(lists)
    , m_userId(std::move(userId))
{
}

QString HostSession::CurrentUserId()
{
    return m_userId;
}

QString HostSession::GetSetting(const QString& section, const QString& key)
{
    return m_lists.Lists->setting(section, key);
}

bool HostSession::HasPermission(const QString& module, int right)
{
    const UserRow* user = m_lists.Lists->user(m_userId);
    return user && user->Active && m_lists.Lists->hasRight(m_userId, module, right);
}

bool HostSession::FieldExists(const QString& module, const QString& table, const QString& field)
{
    const QList<TableSchema>& tables = allTables();
    return std::any_of(tables.begin(), tables.end(), [&](const TableSchema& schema) {
        return schema.Module.compare(module, Qt::CaseInsensitive) == 0 &&
               schema.Table.compare(table, Qt::CaseInsensitive) == 0 && schema.indexOf(field) >= 0;
    });
}

bool HostSession::IsFieldRequired(const QString& module, const QString& table, const QString& field,
                                  const QString& extra)
{
    return m_lists.Lists->isRequired(module, table, field, extra);
}

QVariant HostSession::MakeFieldReference(const tvFieldPtr& field)
{
    return FieldReference::toVariant(field);
}

} // namespace tavrin
