#pragma once

#include "frame/host_contracts/Services.h"
#include "host/lists/HostLists.h"

namespace tavrin {

/// Who sits at the workstation, and what holds for that person.
class HostSession : public Session
{
public:
    HostSession(const HostListsHolder& lists, QString userId);

    QString CurrentUserId() override;
    QString GetSetting(const QString& section, const QString& key) override;
    /// False for a user who is not known or not active.
    bool HasPermission(const QString& module, int right) override;
    bool FieldExists(const QString& module, const QString& table, const QString& field) override;
    bool IsFieldRequired(const QString& module, const QString& table, const QString& field,
                         const QString& extra) override;
    QVariant MakeFieldReference(const tvFieldPtr& field) override;

private:
    const HostListsHolder& m_lists;
    QString m_userId;
};

} // namespace tavrin
