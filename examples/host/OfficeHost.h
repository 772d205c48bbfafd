#pragma once

#include <QString>
#include <QVariant>

#include <TVBoundControls/Host.h>
#include <TVBoundControls/MemoryRecord.h>
#include <memory>

/// The code table that the form's weapons are of. Those of the agencies and of the relationships have numbers
/// that the library knows.
inline constexpr tavrin::TableNumber WeaponTable = 302;

//! [host]
/// All lists of the controls come from here: those of combos and dialogs, and the texts of codes.
class OfficeServices : public tavrin::HostServices
{
public:
    tavrin::TableValues GetTableValues(tavrin::TableNumber table, bool includeInactive,
                                       const QVariant& leftOut, bool reserved) override;
    tavrin::tvBusinessObjectPtr GetParentObject(const tavrin::tvBusinessObjectPtr& record) override;
};

class OfficeSession : public tavrin::Session
{
public:
    bool IsFieldRequired(const QString& module, const QString& table, const QString& field,
                         const QString& extra) override;
    QVariant MakeFieldReference(const tavrin::tvFieldPtr& field) override;
};

/// The host of a small office, in memory. It overrides what the controls of its form ask for; all else keeps
/// its default.
class OfficeHost : public tavrin::Host
{
public:
    tavrin::HostServices& hostServices() override { return m_services; }
    tavrin::Session& session() override { return m_session; }

private:
    OfficeServices m_services;
    OfficeSession m_session;
};
//! [/host]

/// An incident as it was saved: agency 1, a rifle, one suspect, and two victims, to the first of whom the
/// suspect is a friend. How the suspect is related to the second is not known yet.
std::shared_ptr<tavrin::MemoryRecord> savedIncident();
