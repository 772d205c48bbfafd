#include "host/HostCaches.h"

#include "base/Error.h"
#include "base/Variant.h"
#include "host/SampleIncidents.h"

#include <optional>

namespace tavrin {

namespace {

/// The number in a variant. None for Null, Empty and anything that is no number: such a value names no row,
/// which is no failure for a list that only looks up texts.
std::optional<int> numberIn(const QVariant& value)
{
    if (IsNull(value) || IsEmpty(value))
        return std::nullopt;
    try {
        return ToLong(value);
    } catch (const Error&) {
        return std::nullopt;
    }
}

} // namespace

HostTableCodeCache::HostTableCodeCache(std::shared_ptr<HostListsHolder> lists)
    : m_lists(std::move(lists))
{
}

XmlDocument HostTableCodeCache::Document(TableNumber table)
{
    return m_lists->Lists->tableCodeDocument(table);
}

QString HostTableCodeCache::GetDescription(TableNumber table, const QVariant& code)
{
    const auto number = numberIn(code);
    const CodeValueRow* row = number ? m_lists->Lists->codeValue(table, *number) : nullptr;
    return row ? row->DisplayText : QString();
}

HostEmployeeListCache::HostEmployeeListCache(std::shared_ptr<HostListsHolder> lists)
    : m_lists(std::move(lists))
{
}

XmlDocument HostEmployeeListCache::Document()
{
    return m_lists->Lists->employeeDocument();
}

QString HostEmployeeListCache::ShortText(const QVariant& officerNo)
{
    const auto number = numberIn(officerNo);
    const EmployeeRow* row = number ? m_lists->Lists->employee(*number) : nullptr;
    return row ? row->OfficerId : QString();
}

QString HostEmployeeListCache::FullText(const QVariant& officerNo)
{
    const auto number = numberIn(officerNo);
    const EmployeeRow* row = number ? m_lists->Lists->employee(*number) : nullptr;
    return row ? row->Name : QString();
}

HostOffenseListCache::HostOffenseListCache(std::shared_ptr<HostListsHolder> lists)
    : m_lists(std::move(lists))
{
}

XmlDocument HostOffenseListCache::Document()
{
    return m_lists->Lists->offenseDocument();
}

QString HostOffenseListCache::ShortText(const QVariant& offenseNo)
{
    const auto number = numberIn(offenseNo);
    const OffenseRow* row = number ? m_lists->Lists->offense(*number) : nullptr;
    return row ? row->OffenseId : QString();
}

QString HostOffenseListCache::FullText(const QVariant& offenseNo)
{
    const auto number = numberIn(offenseNo);
    const OffenseRow* row = number ? m_lists->Lists->offense(*number) : nullptr;
    return row ? row->Description : QString();
}

HostUsersCache::HostUsersCache(std::shared_ptr<HostListsHolder> lists)
    : m_lists(std::move(lists))
{
}

XmlDocument HostUsersCache::Document()
{
    return m_lists->Lists->userDocument();
}

QString HostUsersCache::UserDisplayName(const QString& userId)
{
    const UserRow* user = m_lists->Lists->user(userId);
    return user ? (user->FirstName + QLatin1Char(' ') + user->LastName).trimmed() : QString();
}

HostNibrsModule::HostNibrsModule(std::shared_ptr<HostListsHolder> lists)
    : m_lists(std::move(lists))
{
}

QList<QPair<QString, QString>> HostNibrsModule::GetNibrsOffenseCodeList()
{
    QList<QPair<QString, QString>> codes;
    for (const CodeValueRow& row : m_lists->Lists->codeValues(OffenseCodeTable)) {
        if (row.Active)
            codes.append({row.Id, row.DisplayText});
    }
    return codes;
}

} // namespace tavrin
