#include "host/records/RecordSchema.h"

#include <algorithm>

namespace tavrin {

namespace {

ColumnSchema number(const char* name)
{
    return {QString::fromLatin1(name), ColumnType::Integer};
}

ColumnSchema real(const char* name)
{
    return {QString::fromLatin1(name), ColumnType::Real};
}

ColumnSchema text(const char* name, qint32 maxLength = 0)
{
    return {QString::fromLatin1(name), ColumnType::Text, maxLength};
}

ColumnSchema yesNo(const char* name)
{
    return {QString::fromLatin1(name), ColumnType::Boolean};
}

ColumnSchema date(const char* name)
{
    return {QString::fromLatin1(name), ColumnType::Date};
}

ColumnSchema dateTime(const char* name)
{
    return {QString::fromLatin1(name), ColumnType::DateTime};
}

ColumnSchema key(const char* name)
{
    return {QString::fromLatin1(name), ColumnType::Integer, 0, true};
}

ColumnSchema link(const char* name)
{
    return {QString::fromLatin1(name), ColumnType::Integer, 0, true, true};
}

/// The key of a row of another collection.
ColumnSchema parent(const char* name, const char* collection)
{
    ColumnSchema column = number(name);
    column.Parent = QString::fromLatin1(collection);
    return column;
}

TableSchema child(const char* table, QList<ColumnSchema> columns)
{
    const QString name = QString::fromLatin1(table);
    columns.prepend(key("SeqNo"));
    columns.prepend(link("IncidentNo"));
    return {QStringLiteral("Incident"), name, QStringLiteral("Incident.") + name, std::move(columns)};
}

/// Where the incident was, and what the last geocoding said of it.
PartSchema makeLocation()
{
    const QString incident = QStringLiteral("Incident");
    constexpr qint32 addressLength = 200;
    return {QStringLiteral("LocationName"),
            {incident,
             incident,
             QStringLiteral("Incident.LocationName"),
             {link("IncidentNo"), text("Latitude", 40), text("Longitude", 40), yesNo("GeocodeOnSave"),
              number("GeocodeStatus"), real("GeocodeAccuracy"), text("GeocodeAccuracyType", 20),
              text("GeocodeError", 200), text("GeocodeInputAddress", addressLength),
              text("GeocodeOutputAddress", addressLength)}}};
}

/// Rows with a number of their own that belong to rows of other collections.
CollectionSchema links(const char* name, const char* table, const char* keyColumn,
                       QList<ColumnSchema> columns)
{
    const QString tableName = QString::fromLatin1(table);
    columns.prepend(key(keyColumn));
    columns.prepend(link("IncidentNo"));
    return {
        QString::fromLatin1(name),
        {QStringLiteral("Incident"), tableName, QStringLiteral("Incident.") + tableName, std::move(columns)},
        {}};
}

/// The links from suspects to one kind of party.
CollectionSchema suspectLinks(const char* name, const char* table, const char* partySeqNo,
                              const char* parties)
{
    return links(name, table, "LinkNo",
                 {parent("SeqNo", "Suspects"), parent(partySeqNo, parties), number("RelationNo")});
}

/// The files of the incident, whose contents lie in the attachments folder.
CollectionSchema attachments()
{
    constexpr qint32 descriptionLength = 100;
    constexpr qint32 notesLength = 2000;
    TableSchema table =
        child("IncdAttachment", {text("FileName"), text("OriginalFileName"), number("FolderNo"),
                                 text("Description", descriptionLength), text("Notes", notesLength),
                                 text("UserId"), dateTime("UserDate")});
    table.RowClass = QStringLiteral("TVEvent.tvAttachmentIndex");
    return {QStringLiteral("Attachments"), std::move(table), QStringLiteral("PrimaryAttachmentSeqNo")};
}

RecordSchema makeIncident()
{
    const QString incident = QStringLiteral("Incident");
    constexpr qint32 nameLength = 80;
    RecordSchema schema;
    schema.ClassName = QStringLiteral("tvIncidentBO");
    schema.Main = {incident,
                   incident,
                   QStringLiteral("Incident.Incident"),
                   {key("IncidentNo"), text("CaseNo", 20), dateTime("ReportedAt"), dateTime("OccurredAt"),
                    text("Summary", 200), text("Address", 120), text("City", 60), text("Status", 20),
                    number("AgencyNo"), number("LocationTypeNo"), number("WeaponNo"), number("BiasNo"),
                    number("ReportingOfficerNo"), number("K9HandlerNo"), text("Narrative", 100000),
                    number("PrimaryOffenseSeqNo"), number("PrimaryAttachmentSeqNo")}};
    schema.Parts = {makeLocation()};
    schema.Collections = {
        {QStringLiteral("Offenses"),
         child("IncdOffense", {number("OffenseNo"), text("NibrsCode", 10), yesNo("Completed")}),
         QStringLiteral("PrimaryOffenseSeqNo")},
        {QStringLiteral("Suspects"),
         child("IncdSuspect",
               {text("SuspectName", nameLength), date("DateOfBirth"), number("RaceNo"), number("SexNo")}),
         {}},
        {QStringLiteral("Victims"),
         child("IncdVictim",
               {text("VictimName", nameLength), date("DateOfBirth"), number("SexNo"), number("InjuryNo")}),
         {}},
        {QStringLiteral("Witnesses"), child("IncdWitness", {text("WitnessName", nameLength)}), {}},
        {QStringLiteral("Others"), child("IncdOther", {text("OtherName", nameLength)}), {}},
        {QStringLiteral("Assignments"), child("IncdAssignment", {text("AssignedTo", 80)}), {}},
        suspectLinks("SuspectVictims", "IncdSuspVictim", "VictimSeqNo", "Victims"),
        suspectLinks("SuspectWitnesses", "IncdSuspWitness", "WitnessSeqNo", "Witnesses"),
        suspectLinks("SuspectOthers", "IncdSuspOther", "OtherSeqNo", "Others"),
        links("OffenseWeapons", "IncdOffWeapon", "RowNo",
              {parent("OffenseSeqNo", "Offenses"), number("WeaponNo")}),
        links("OffenseBiases", "IncdOffBias", "RowNo",
              {parent("OffenseSeqNo", "Offenses"), number("BiasNo")}),
        attachments(),
    };
    return schema;
}

QList<TableSchema> makeAllTables()
{
    QList<TableSchema> tables{incidentSchema().Main};
    for (const PartSchema& part : incidentSchema().Parts)
        tables << part.Table;
    for (const CollectionSchema& collection : incidentSchema().Collections)
        tables << collection.Table;
    const QString personnel = QStringLiteral("Personnel");
    tables << TableSchema{personnel,
                          QStringLiteral("Employee"),
                          QStringLiteral("Personnel.Employee"),
                          {key("OfficerNo"), text("OfficerId", 20), text("Name", 80), text("BadgeNo", 20),
                           yesNo("Active"), yesNo("K9Handler"), date("Hired"), date("LeftOn"),
                           number("DeptTeamNo")}};
    return tables;
}

bool sameName(const QString& a, const QString& b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

} // namespace

int TableSchema::indexOf(const QString& column) const
{
    const auto found = std::find_if(Columns.begin(), Columns.end(),
                                    [&column](const ColumnSchema& c) { return sameName(c.Name, column); });
    return found == Columns.end() ? -1 : static_cast<int>(found - Columns.begin());
}

QString TableSchema::keyColumn() const
{
    const auto found = std::find_if(Columns.begin(), Columns.end(),
                                    [](const ColumnSchema& c) { return c.IsKey && !c.IsLink; });
    return found == Columns.end() ? QString() : found->Name;
}

const RecordSchema& incidentSchema()
{
    static const RecordSchema schema = makeIncident();
    return schema;
}

const QList<TableSchema>& allTables()
{
    static const QList<TableSchema> tables = makeAllTables();
    return tables;
}

const TableSchema* tableOfRowClass(const QString& rowClass)
{
    const QList<TableSchema>& tables = allTables();
    const auto found = std::find_if(tables.begin(), tables.end(), [&rowClass](const TableSchema& table) {
        return sameName(table.RowClass, rowClass);
    });
    return found == tables.end() ? nullptr : &*found;
}

} // namespace tavrin
