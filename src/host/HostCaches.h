#pragma once

#include "frame/host_contracts/Caches.h"
#include "host/HostLists.h"

// The cache classes: views on the host's present lists, so that one made before a refresh shows what came
// with it.

namespace tavrin {

class HostTableCodeCache : public TableCodeCache
{
public:
    explicit HostTableCodeCache(std::shared_ptr<HostListsHolder> lists);
    XmlDocument Document(TableNumber table) override;
    QString GetDescription(TableNumber table, const QVariant& code) override;

private:
    std::shared_ptr<HostListsHolder> m_lists;
};

class HostEmployeeListCache : public EmployeeListCache
{
public:
    explicit HostEmployeeListCache(std::shared_ptr<HostListsHolder> lists);
    XmlDocument Document() override;
    /// The personnel code; "" for a number that nobody has.
    QString ShortText(const QVariant& officerNo) override;
    /// The name; "" for a number that nobody has.
    QString FullText(const QVariant& officerNo) override;

private:
    std::shared_ptr<HostListsHolder> m_lists;
};

class HostOffenseListCache : public OffenseListCache
{
public:
    explicit HostOffenseListCache(std::shared_ptr<HostListsHolder> lists);
    XmlDocument Document() override;
    /// The section; "" for an offense that is not there.
    QString ShortText(const QVariant& offenseNo) override;
    /// The description; "" for an offense that is not there.
    QString FullText(const QVariant& offenseNo) override;

private:
    std::shared_ptr<HostListsHolder> m_lists;
};

class HostUsersCache : public UsersCache
{
public:
    explicit HostUsersCache(std::shared_ptr<HostListsHolder> lists);
    XmlDocument Document() override;
    /// "First Last"; "" for a user who is not there.
    QString UserDisplayName(const QString& userId) override;

private:
    std::shared_ptr<HostListsHolder> m_lists;
};

class HostNibrsModule : public NibrsModuleService
{
public:
    explicit HostNibrsModule(std::shared_ptr<HostListsHolder> lists);
    /// The offense codes in use.
    QList<QPair<QString, QString>> GetNibrsOffenseCodeList() override;

private:
    std::shared_ptr<HostListsHolder> m_lists;
};

} // namespace tavrin
