#pragma once

#include "frame/host_contracts/Services.h"
#include "host/database/Database.h"
#include "host/lists/HostLists.h"

namespace tavrin {

/// The services that every control may call.
class ReferenceHostServices : public HostServices
{
public:
    /// What it is given must outlive it.
    ReferenceHostServices(const HostListsHolder& lists, Database& database, Environment& environment);

    TableValues GetTableValues(TableNumber table, bool includeInactive, const QVariant& leftOut,
                               bool reserved) override;
    /// From the setting "Date Display Format"; "yyyy-MM-dd" when it is not set.
    QString DateDisplayFormat() override;
    tvBusinessObjectPtr GetParentObject(const tvBusinessObjectPtr& record) override;
    /// Writes "custom.dic" of the workstation's folder, see `writeCustomWords`.
    void SyncCustomDictionaryFile() override;

private:
    const HostListsHolder& m_lists;
    Database& m_database;
    Environment& m_environment;
};

} // namespace tavrin
