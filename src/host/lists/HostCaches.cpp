#include "host/lists/HostCaches.h"

#include "base/failure/Error.h"
#include "base/values/Variant.h"

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

/// A column of the row that a list holds under the number in `key`; "" when it holds none.
template <typename Row>
QString textOf(const HostLists& lists, const Row* (HostLists::*rowUnder)(int) const, const QVariant& key,
               QString Row::*column)
{
    const auto number = numberIn(key);
    const Row* row = number ? (lists.*rowUnder)(*number) : nullptr;
    return row ? row->*column : QString();
}

} // namespace

XmlDocument HostTableCodeCache::Document(TableNumber table)
{
    return lists().tableCodeDocument(table);
}

QString HostTableCodeCache::GetDescription(TableNumber table, const QVariant& code)
{
    const auto number = numberIn(code);
    const CodeValueRow* row = number ? lists().codeValue(table, *number) : nullptr;
    return row ? row->DisplayText : QString();
}

XmlDocument HostEmployeeListCache::Document()
{
    return lists().employeeDocument();
}

QString HostEmployeeListCache::ShortText(const QVariant& officerNo)
{
    return textOf(lists(), &HostLists::employee, officerNo, &EmployeeRow::OfficerId);
}

QString HostEmployeeListCache::FullText(const QVariant& officerNo)
{
    return textOf(lists(), &HostLists::employee, officerNo, &EmployeeRow::Name);
}

XmlDocument HostOffenseListCache::Document()
{
    return lists().offenseDocument();
}

QString HostOffenseListCache::ShortText(const QVariant& offenseNo)
{
    return textOf(lists(), &HostLists::offense, offenseNo, &OffenseRow::OffenseId);
}

QString HostOffenseListCache::FullText(const QVariant& offenseNo)
{
    return textOf(lists(), &HostLists::offense, offenseNo, &OffenseRow::Description);
}

XmlDocument HostUsersCache::Document()
{
    return lists().userDocument();
}

QString HostUsersCache::UserDisplayName(const QString& userId)
{
    const UserRow* user = lists().user(userId);
    return user ? (user->FirstName + QLatin1Char(' ') + user->LastName).trimmed() : QString();
}

QList<QPair<QString, QString>> HostNibrsModule::GetNibrsOffenseCodeList()
{
    QList<QPair<QString, QString>> codes;
    for (const CodeValueRow& row : lists().codeValues(OffenseCodeTable)) {
        if (row.Active)
            codes.append({row.Id, row.DisplayText});
    }
    return codes;
}

} // namespace tavrin
