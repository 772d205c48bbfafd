#pragma once

#include "frame/host_contracts/Caches.h"
#include "host/lists/HostLists.h"

// The cache classes: views on the host's present lists, so that one made before a refresh shows what came
// with it.

namespace tavrin {

/// What the cache classes share: each holds the lists with the host, which it may outlive.
template <typename Contract>
class HostCache : public Contract
{
public:
    explicit HostCache(std::shared_ptr<HostListsHolder> lists)
        : m_lists(std::move(lists))
    {
    }

protected:
    /// The lists as they are at present; a refresh replaces them.
    const HostLists& lists() const { return *m_lists->Lists; }

private:
    std::shared_ptr<HostListsHolder> m_lists;
};

class HostTableCodeCache : public HostCache<TableCodeCache>
{
public:
    using HostCache::HostCache;
    XmlDocument Document(TableNumber table) override;
    QString GetDescription(TableNumber table, const QVariant& code) override;
};

class HostEmployeeListCache : public HostCache<EmployeeListCache>
{
public:
    using HostCache::HostCache;
    XmlDocument Document() override;
    /// The personnel code; "" for a number that nobody has.
    QString ShortText(const QVariant& officerNo) override;
    /// The name; "" for a number that nobody has.
    QString FullText(const QVariant& officerNo) override;
};

class HostOffenseListCache : public HostCache<OffenseListCache>
{
public:
    using HostCache::HostCache;
    XmlDocument Document() override;
    /// The section; "" for an offense that is not there.
    QString ShortText(const QVariant& offenseNo) override;
    /// The description; "" for an offense that is not there.
    QString FullText(const QVariant& offenseNo) override;
};

class HostUsersCache : public HostCache<UsersCache>
{
public:
    using HostCache::HostCache;
    XmlDocument Document() override;
    /// "First Last"; "" for a user who is not there.
    QString UserDisplayName(const QString& userId) override;
};

class HostNibrsModule : public HostCache<NibrsModuleService>
{
public:
    using HostCache::HostCache;
    /// The offense codes in use.
    QList<QPair<QString, QString>> GetNibrsOffenseCodeList() override;
};

} // namespace tavrin
