#include "host/samples/SampleIncidents.h"

#include "base/failure/Error.h"
#include "base/values/Variant.h"
#include "frame/host_contracts/Contracts.h"
#include "host/records/RecordStore.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>
#include <utility>

namespace tavrin {

namespace {

constexpr auto FileName = "sample/incidents.json";
// These stand for lists that are no code tables.
constexpr int AnyOffense = -1;
constexpr int AnyEmployee = -2;

struct CodeColumn
{
    const char* Name;
    int TableNo;
};

constexpr std::array CodeColumns{CodeColumn{"LocationTypeNo", 301},
                                 CodeColumn{"WeaponNo", 302},
                                 CodeColumn{"BiasNo", 303},
                                 CodeColumn{"AgencyNo", Tables::Agency},
                                 CodeColumn{"RelationNo", Tables::SuspectRelationship},
                                 CodeColumn{"RaceNo", 312},
                                 CodeColumn{"SexNo", 313},
                                 CodeColumn{"InjuryNo", 308},
                                 CodeColumn{"OffenseNo", AnyOffense},
                                 CodeColumn{"ReportingOfficerNo", AnyEmployee},
                                 CodeColumn{"K9HandlerNo", AnyEmployee}};

int lineAt(const QByteArray& json, qsizetype offset)
{
    return static_cast<int>(json.left(offset).count('\n')) + 1;
}

/// The lines on which the objects of the outermost array start. Qt's parser does not keep them.
QList<int> startLines(const QByteArray& json)
{
    QList<int> lines;
    int line = 1;
    int depth = 0;
    bool inText = false;
    for (qsizetype at = 0; at < json.size(); ++at) {
        const char c = json.at(at);
        if (c == '\n')
            ++line;
        if (inText && c == '\\')
            ++at;
        else if (c == '"')
            inText = !inText;
        else if (!inText && c == '{' && depth++ == 0)
            lines << line;
        else if (!inText && c == '}')
            --depth;
    }
    return lines;
}

class IncidentReader
{
public:
    IncidentReader(Database& database, const DataFiles& files, const KnownCodes& known)
        : m_store(database)
        , m_known(known)
        , m_path(files.path(QString::fromLatin1(FileName)))
        , m_json(files.read(QString::fromLatin1(FileName)))
    {
    }

    void insertAll()
    {
        QJsonParseError problem;
        const QJsonDocument document = QJsonDocument::fromJson(m_json, &problem);
        if (problem.error != QJsonParseError::NoError)
            fail(lineAt(m_json, problem.offset), problem.errorString());
        if (!document.isArray())
            fail(1, QStringLiteral("the file is not an array of incidents"));
        const QList<int> lines = startLines(m_json);
        int index = 0;
        for (const auto& incident : document.array()) {
            if (!incident.isObject())
                fail(1, QStringLiteral("element %1 is not an incident").arg(index + 1));
            insert(incident.toObject(), lines.value(index++, 1));
        }
    }

private:
    void insert(const QJsonObject& incident, int line)
    {
        try {
            const RecordPtr record = m_store.create();
            fillRow(*record->mainRow(), incident,
                    {QStringLiteral("IncidentNo"), QStringLiteral("PrimaryOffenseSeqNo"),
                     QStringLiteral("PrimaryAttachmentSeqNo")});
            fillLocation(*record, incident);
            for (const RecordCollectionPtr& rows : record->collections())
                fillCollection(*rows, incident);
            for (const RecordCollectionPtr& rows : record->collections())
                checkParents(*record, *rows);
            m_store.saveWithin(*record);
        } catch (const Error& error) {
            fail(line, error.Description);
        }
    }

    /// The store geocodes; so the fields for what came of it are not in the file.
    void fillLocation(const Record& record, const QJsonObject& incident) const
    {
        const QString name = QStringLiteral("LocationName");
        const QJsonValue location = incident.value(name);
        if (!location.isObject())
            throw Error(QStringLiteral("%1 is missing or no object").arg(name));
        const RecordRowPtr row = record.part(name);
        const QStringList given{QStringLiteral("Latitude"), QStringLiteral("Longitude"),
                                QStringLiteral("GeocodeOnSave")};
        QStringList filledIn;
        for (const FieldCell* cell : row->cells()) {
            if (!given.contains(cell->column().Name))
                filledIn << cell->column().Name;
        }
        fillRow(*row, location.toObject(), filledIn);
    }

    void fillCollection(RecordCollection& rows, const QJsonObject& incident) const
    {
        const QJsonValue list = incident.value(rows.name());
        if (!list.isArray())
            throw Error(QStringLiteral("%1 is missing or no array").arg(rows.name()));
        for (const auto& element : list.toArray()) {
            if (!element.isObject())
                throw Error(QStringLiteral("%1 holds something that is not a row").arg(rows.name()));
            rows.AddNew();
            fillRow(*rows.rows().back(), element.toObject(),
                    {QStringLiteral("IncidentNo"), rows.KeyColumn()});
        }
    }

    void fillRow(const RecordRow& row, const QJsonObject& values, const QStringList& assigned) const
    {
        for (FieldCell* cell : row.cells()) {
            const QString name = cell->column().Name;
            if (assigned.contains(name))
                continue;
            if (!values.contains(name))
                throw Error(QStringLiteral("%1 is missing").arg(name));
            const QJsonValue value = values.value(name);
            cell->setValue(value.isNull() ? QVariant::fromValue(nullptr) : value.toVariant());
            if (!value.isNull())
                checkReference(name, value);
        }
    }

    /// Rows that belong to others name rows that are there.
    static void checkParents(const Record& record, const RecordCollection& rows)
    {
        for (const RecordRowPtr& row : rows.rows()) {
            for (const FieldCell* cell : row->cells()) {
                const QString parent = cell->column().Parent;
                if (!parent.isEmpty() && !record.collection(parent)->hasKey(cell->value()))
                    throw Error(QStringLiteral("%1: %2 refers to the row %3 of %4, which is not there")
                                    .arg(rows.name(), cell->column().Name, ToText(cell->value()), parent));
            }
        }
    }

    void checkReference(const QString& column, const QJsonValue& value) const
    {
        checkCode(column, value.toInt());
        if (column == QStringLiteral("K9HandlerNo") && !m_known.K9Handlers.contains(value.toInt()))
            throw Error(QStringLiteral("%1 refers to the employee %2, who handles no dog")
                            .arg(column)
                            .arg(value.toInt()));
        if (column == QStringLiteral("AssignedTo"))
            checkAssignment(column, value.toVariant().toString());
    }

    void checkCode(const QString& column, int number) const
    {
        const auto found =
            std::find_if(CodeColumns.begin(), CodeColumns.end(),
                         [&column](const CodeColumn& c) { return column == QLatin1String(c.Name); });
        if (found != CodeColumns.end() && !isKnown(found->TableNo, number))
            throw Error(QStringLiteral("%1 has no row %2 to refer to").arg(column).arg(number));
    }

    bool isKnown(int tableNo, int number) const
    {
        if (tableNo == AnyOffense)
            return m_known.Offenses.contains(number);
        if (tableNo == AnyEmployee)
            return m_known.Employees.contains(number);
        const auto values = m_known.Values.find(tableNo);
        return values != m_known.Values.end() && values->second.contains(number);
    }

    /// "user:" and a sign-on name, or "team:" and a value of the table of teams.
    void checkAssignment(const QString& column, const QString& assignedTo) const
    {
        const QString kind = assignedTo.section(QLatin1Char(':'), 0, 0);
        const QString key = assignedTo.section(QLatin1Char(':'), 1);
        bool known = false;
        if (kind == QStringLiteral("user"))
            known = m_known.Users.contains(key);
        else if (kind == QStringLiteral("team"))
            known = key == QString::number(key.toInt()) && isKnown(Tables::Team, key.toInt());
        else
            throw Error(QStringLiteral("%1 takes \"user:\" with a UserId or \"team:\" with a value of table "
                                       "%2, not \"%3\"")
                            .arg(column)
                            .arg(Tables::Team)
                            .arg(assignedTo));
        if (!known)
            throw Error(QStringLiteral("%1 has no %2 \"%3\" to refer to").arg(column, kind, key));
    }

    [[noreturn]] void fail(int line, const QString& what) const
    {
        throw Error(QStringLiteral("%1, line %2: %3").arg(m_path, QString::number(line), what));
    }

    RecordStore m_store;
    const KnownCodes& m_known;
    QString m_path;
    QByteArray m_json;
};

} // namespace

void insertSampleIncidents(Database& database, const DataFiles& files, const KnownCodes& known)
{
    IncidentReader(database, files, known).insertAll();
}

} // namespace tavrin
