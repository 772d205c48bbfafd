#include "host/SampleIncidents.h"

#include "base/Error.h"
#include "host/RecordStore.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>
#include <utility>

namespace tavrin {

namespace {

constexpr auto FileName = "sample/incidents.json";
constexpr int AnyOffense = -1; // stands for the list of offenses, which is no code table

struct CodeColumn
{
    const char* Name;
    int TableNo;
};

constexpr std::array CodeColumns{CodeColumn{"LocationTypeNo", 301},  CodeColumn{"WeaponNo", 302},
                                 CodeColumn{"BiasNo", 303},          CodeColumn{"RaceNo", 312},
                                 CodeColumn{"SexNo", 313},           CodeColumn{"InjuryNo", 308},
                                 CodeColumn{"OffenseNo", AnyOffense}};

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
        for (const QJsonValue& incident : document.array()) {
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
                    {QStringLiteral("IncidentNo"), QStringLiteral("PrimaryOffenseSeqNo")});
            for (const RecordCollectionPtr& rows : record->collections())
                fillCollection(*rows, incident);
            m_store.saveWithin(*record);
        } catch (const Error& error) {
            fail(line, error.Description);
        }
    }

    void fillCollection(RecordCollection& rows, const QJsonObject& incident) const
    {
        const QJsonValue list = incident.value(rows.name());
        if (!list.isArray())
            throw Error(QStringLiteral("%1 is missing or no array").arg(rows.name()));
        for (const QJsonValue& element : list.toArray()) {
            if (!element.isObject())
                throw Error(QStringLiteral("%1 holds something that is not a row").arg(rows.name()));
            rows.AddNew();
            fillRow(*rows.rows().back(), element.toObject(),
                    {QStringLiteral("IncidentNo"), QStringLiteral("SeqNo")});
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
            checkCode(name, value);
        }
    }

    void checkCode(const QString& column, const QJsonValue& value) const
    {
        const auto found =
            std::find_if(CodeColumns.begin(), CodeColumns.end(),
                         [&column](const CodeColumn& c) { return column == QLatin1String(c.Name); });
        if (found == CodeColumns.end() || value.isNull())
            return;
        const auto values = m_known.Values.find(found->TableNo);
        const bool known = found->TableNo == AnyOffense
                               ? m_known.Offenses.contains(value.toInt())
                               : values != m_known.Values.end() && values->second.contains(value.toInt());
        if (!known)
            throw Error(QStringLiteral("%1 has no row %2 to refer to").arg(column).arg(value.toInt()));
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
