#include "OfficeHost.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <TVBoundControls/MemoryCollection.h>
#include <TVBoundControls/MemoryField.h>
#include <TVBoundControls/MemoryRow.h>
#include <initializer_list>
#include <utility>

using namespace Qt::StringLiterals;
using namespace tavrin;

namespace {

struct Code
{
    TableValue entry;
    bool isActive = true;
};

const QHash<TableNumber, QList<Code>>& codeTables()
{
    static const QHash<TableNumber, QList<Code>> tables{
        {Tables::Agency,
         {{{u"MCSO"_s, u"Marlow County Sheriff's Office"_s, 1}},
          {{u"MPD"_s, u"Marlow Police Department"_s, 2}},
          {{u"HARB"_s, u"Harbour Patrol"_s, 3}, false}}},
        {Tables::SuspectRelationship,
         {{{u"FR"_s, u"Friend"_s, 7}}, {{u"NE"_s, u"Neighbor"_s, 8}}, {{u"ST"_s, u"Stranger"_s, 9}}}},
        {WeaponTable,
         {{{u"11"_s, u"Handgun"_s, 11}}, {{u"12"_s, u"Rifle"_s, 12}}, {{u"13"_s, u"Knife"_s, 13}}}}};
    return tables;
}

void addRow(MemoryCollection& rows, std::initializer_list<std::pair<QString, QVariant>> values)
{
    const tvTableRowPtr row = rows.AddNew(); // its key is the next number
    for (const auto& [field, value] : values)
        fieldOf(*row, field)->SetValue(value);
}

} // namespace

//! [services]
TableValues OfficeServices::GetTableValues(TableNumber table, bool includeInactive, const QVariant&, bool)
{
    TableValues values;
    for (const Code& code : codeTables().value(table)) {
        if (code.isActive || includeInactive)
            values.Items << code.entry;
    }
    return values;
}

tvBusinessObjectPtr OfficeServices::GetParentObject(const tvBusinessObjectPtr& record)
{
    return MemoryRecord::OwnerOf(record);
}

/// How a suspect is related to each victim must be known before an incident is saved.
bool OfficeSession::IsFieldRequired(const QString& module, const QString& table, const QString& field,
                                    const QString&)
{
    return module == u"Incident" && table == u"IncdSuspVictim" && field == u"RelationNo";
}

QVariant OfficeSession::MakeFieldReference(const tvFieldPtr& field)
{
    return MemoryField::ReferenceTo(field);
}
//! [/services]

//! [record]
std::shared_ptr<MemoryRecord> savedIncident()
{
    const auto incident = std::make_shared<MemoryRecord>(u"tvIncidentBO"_s);
    const auto main = std::make_shared<MemoryRow>(
        QList<MemoryColumn>{{u"IncidentNo"_s, true}, {u"AgencyNo"_s}, {u"Summary"_s, false, 80}});
    fieldOf(*main, u"IncidentNo"_s)->SetValue(1041);
    fieldOf(*main, u"AgencyNo"_s)->SetValue(1);
    incident->SetItem(u"Incident"_s, main);

    const auto weapons = std::make_shared<MemoryCollection>(QStringList{u"SeqNo"_s, u"WeaponNo"_s});
    addRow(*weapons, {{u"WeaponNo"_s, 12}});
    incident->SetItem(u"Weapons"_s, weapons);

    const auto suspects = std::make_shared<MemoryCollection>(QStringList{u"SeqNo"_s, u"SuspectName"_s});
    addRow(*suspects, {{u"SuspectName"_s, u"Hale, Martin"_s}});
    incident->SetItem(u"Suspects"_s, suspects);

    const auto victims = std::make_shared<MemoryCollection>(QStringList{u"SeqNo"_s, u"VictimName"_s});
    addRow(*victims, {{u"VictimName"_s, u"Ames, Dora"_s}});
    addRow(*victims, {{u"VictimName"_s, u"Birch, Tom"_s}});
    incident->SetItem(u"Victims"_s, victims);

    const auto links = std::make_shared<MemoryCollection>(
        QStringList{u"LinkNo"_s, u"SeqNo"_s, u"VictimSeqNo"_s, u"RelationNo"_s});
    addRow(*links, {{u"SeqNo"_s, 1}, {u"VictimSeqNo"_s, 1}, {u"RelationNo"_s, 7}});
    const auto suspect = std::make_shared<MemoryRecord>();
    suspect->SetItem(u"SuspectVictims"_s, links);
    incident->SetItem(u"SuspectBO"_s, suspect); // now the suspect knows its incident

    incident->MarkSaved(); // as if it had been loaded
    return incident;
}
//! [/record]
