#include "host/records/RecordStore.h"

#include "base/failure/Error.h"
#include "base/values/Variant.h"
#include "host/records/LocationFilling.h"
#include "host/records/RecordSql.h"

#include <QHash>

#include <algorithm>
#include <limits>

namespace tavrin {

namespace {

// A search text of more units than any of the columns holds finds nothing; without this limit the database
// would refuse the pattern.
constexpr qsizetype LongestSearch = 1000;
const QChar FieldSeparator(0x1F);

QString folded(const QString& text)
{
    return text.normalized(QString::NormalizationForm_C).toCaseFolded();
}

QString searchText(const RecordRow& main)
{
    QStringList parts;
    for (const QString& column :
         {QStringLiteral("CaseNo"), QStringLiteral("Summary"), QStringLiteral("Address")})
        parts << ToText(main.cell(column).value());
    return folded(parts.join(FieldSeparator));
}

QString containsPattern(const QString& search)
{
    QString literal = folded(search);
    for (const QChar special : {QLatin1Char('\\'), QLatin1Char('%'), QLatin1Char('_')})
        literal.replace(special, QStringLiteral("\\") + special);
    return QLatin1Char('%') + literal + QLatin1Char('%');
}

bool canBeFound(const QString& search)
{
    return search.size() <= LongestSearch && std::none_of(search.begin(), search.end(), [](QChar c) {
               return c.category() == QChar::Other_Control;
           });
}

QString caseName(const Record& record)
{
    const QString caseNo = ToText(record.mainRow()->cell(QStringLiteral("CaseNo")).value());
    return caseNo.isEmpty() ? QStringLiteral("without a number") : caseNo;
}

/// A saved incident keeps its number: under another it would be written over another incident.
void checkNumber(const Record& record)
{
    const FieldCell& cell = record.mainRow()->cell(record.schema().Main.keyColumn());
    if (!record.isNew() && cell.isChanged())
        throw Error(
            QStringLiteral("The %1 of the case %2 cannot be changed from %3 to %4. Nothing was saved.")
                .arg(cell.column().Name, caseName(record), ToText(cell.savedValue()), ToText(cell.value())));
}

/// The rows of a record stand under its number, each with a key of its own.
void checkKeys(const RecordCollection& rows, const Record& record)
{
    const TableSchema& table = rows.schema().Table;
    QHash<QString, int> positions; // by key
    int position = 0;
    for (const RecordRowPtr& row : rows.rows()) {
        const QString where = QStringLiteral("%1, row %2").arg(table.Table).arg(++position);
        for (const FieldCell* cell : row->cells()) {
            if (cell->column().IsLink && !SameValue(cell->value(), record.key()))
                throw Error(
                    QStringLiteral("%1: the row belongs to the %2 %3 and cannot move to another. Nothing "
                                   "was saved.")
                        .arg(where, cell->column().Name)
                        .arg(record.key()));
        }
        if (IsNull(row->keyValue()))
            throw Error(QStringLiteral("%1: the row has no %2. Give it one and save again.")
                            .arg(where, table.keyColumn()));
        const QString key = ToText(row->keyValue());
        if (positions.contains(key))
            throw Error(QStringLiteral("%1: the rows %2 and %3 both have the %4 %5. Give one of them another "
                                       "and save again.")
                            .arg(table.Table)
                            .arg(positions.value(key))
                            .arg(position)
                            .arg(table.keyColumn(), key));
        positions.insert(key, position);
    }
}

/// The parts of a record stand in its main row.
void checkParts(const Record& record)
{
    for (const RecordRowPtr& part : record.parts()) {
        for (const FieldCell* cell : part->cells()) {
            if (cell->column().IsLink && !SameValue(cell->value(), record.key()))
                throw Error(QStringLiteral("%1: the row belongs to the %2 %3 and cannot move to another. "
                                           "Nothing was saved.")
                                .arg(part->table().RowClass, cell->column().Name)
                                .arg(record.key()));
        }
    }
}

} // namespace

/// Gives a new record its key, and takes it back unless the save comes to its end.
class RecordStore::KeyAssignment
{
public:
    explicit KeyAssignment(Record& record)
        : m_cell(record.mainRow()->cell(record.schema().Main.keyColumn()))
        , m_before(m_cell.value())
    {
    }
    ~KeyAssignment()
    {
        if (m_assigned)
            m_cell.assignKey(m_before);
    }
    KeyAssignment(const KeyAssignment&) = delete;
    KeyAssignment& operator=(const KeyAssignment&) = delete;

    void assign(qint64 key)
    {
        m_assigned = true;
        m_cell.assignKey(key);
    }
    void keep() { m_assigned = false; }

private:
    FieldCell& m_cell;
    QVariant m_before;
    bool m_assigned = false;
};

RecordStore::RecordStore(Database& database, const Geocoder& geocoder)
    : m_database(database)
    , m_geocoder(geocoder)
    , m_self(std::make_shared<RecordStore*>(this))
{
}

RecordStore::~RecordStore() = default;

QList<IncidentSummary> RecordStore::list(const QString& search, int limit)
{
    const QString wanted = search.trimmed();
    if (!canBeFound(wanted))
        return {};
    Statement find(m_database,
                   QStringLiteral("SELECT IncidentNo, CaseNo, ReportedAt, Summary, Address, City, "
                                  "Status FROM incident WHERE SearchText LIKE ? ESCAPE '\\' "
                                  "ORDER BY CASE WHEN ReportedAt IS NULL THEN 1 ELSE 0 END, "
                                  "ReportedAt DESC, IncidentNo DESC LIMIT ?"));
    find.run({containsPattern(wanted), limit > 0 ? limit : std::numeric_limits<int>::max()});
    QList<IncidentSummary> summaries;
    while (find.next()) {
        summaries << IncidentSummary{find.value(0).toLongLong(),
                                     find.text(1),
                                     QDateTime::fromString(find.text(2), Qt::ISODate),
                                     find.text(3),
                                     find.text(4),
                                     find.text(5),
                                     find.text(6)};
    }
    return summaries;
}

RecordPtr RecordStore::create()
{
    RecordPtr record = Record::create(incidentSchema());
    attachRemover(*record);
    return record;
}

RecordPtr RecordStore::load(qint64 incidentNo)
{
    Transaction oneState(m_database, Transaction::Kind::Read);
    const TableSchema& main = incidentSchema().Main;
    Statement find(
        m_database,
        QStringLiteral("SELECT %1, RowVersion FROM incident WHERE IncidentNo = ?").arg(columnList(main)));
    find.bind(incidentNo).run();
    if (!find.next())
        throw Error(
            QStringLiteral("The incident %1 is not there any more. Refresh the list.").arg(incidentNo));

    RecordPtr record = create();
    loadCells(find, *record->mainRow());
    const int version = find.number(static_cast<int>(main.Columns.size()));
    for (const RecordRowPtr& part : record->parts())
        loadPart(*part, incidentNo);
    for (const RecordCollectionPtr& rows : record->collections())
        loadRows(*rows, incidentNo);
    record->markSaved(version);
    return record;
}

void RecordStore::loadPart(RecordRow& part, qint64 incidentNo)
{
    Statement find(m_database, QStringLiteral("SELECT %1 FROM %2 WHERE IncidentNo = ?")
                                   .arg(columnList(part.table()), part.table().Table));
    find.bind(incidentNo).run();
    if (find.next())
        loadCells(find, part);
}

void RecordStore::loadRows(RecordCollection& rows, qint64 incidentNo)
{
    const TableSchema& table = rows.schema().Table;
    Statement find(m_database, QStringLiteral("SELECT %1 FROM %2 WHERE IncidentNo = ? ORDER BY %3")
                                   .arg(columnList(table), table.Table, table.keyColumn()));
    find.bind(incidentNo).run();
    while (find.next())
        loadCells(find, *rows.appendLoadedRow());
    rows.finishLoading();
}

void RecordStore::save(Record& record)
{
    if (!record.isNew() && !record.isChanged())
        return;
    record.checkLengths();
    LocationFilling location(record, m_geocoder);
    KeyAssignment key(record);
    Transaction transaction(m_database);
    write(record, key);
    transaction.commit();
    key.keep();
    location.keep();
    record.markSaved(record.rowVersion() + 1);
    Saved.raise(record.key());
}

void RecordStore::saveWithin(Record& record)
{
    record.checkLengths();
    LocationFilling location(record, m_geocoder);
    KeyAssignment key(record);
    write(record, key);
    key.keep();
    location.keep();
    record.markSaved(record.rowVersion() + 1);
}

void RecordStore::write(Record& record, KeyAssignment& key)
{
    checkNumber(record);
    checkCaseNumber(record);
    if (record.isNew()) {
        key.assign(m_database.nextKey(QStringLiteral("incident")));
        checkParts(record);
        insertMain(record);
    } else {
        checkParts(record);
        takeVersion(record);
        updateMain(record);
    }
    for (const RecordCollectionPtr& rows : record.collections()) {
        checkKeys(*rows, record);
        writeRows(*rows);
    }
}

void RecordStore::checkCaseNumber(const Record& record)
{
    const QVariant caseNo = record.mainRow()->cell(QStringLiteral("CaseNo")).value();
    if (IsNull(caseNo))
        return;
    Statement find(m_database,
                   QStringLiteral("SELECT COUNT(*) FROM incident WHERE CaseNo = ? AND IncidentNo <> ?"));
    find.run({caseNo, record.isNew() ? 0 : record.key()});
    find.next();
    if (find.number(0) > 0)
        throw Error(QStringLiteral("The case number %1 is already in use. Give this case another number and "
                                   "save again.")
                        .arg(ToText(caseNo)));
}

void RecordStore::insertMain(const Record& record)
{
    QList<std::pair<QString, QVariant>> extra{{QStringLiteral("RowVersion"), record.rowVersion() + 1},
                                              {QStringLiteral("SearchText"), searchText(*record.mainRow())}};
    for (const RecordRowPtr& part : record.parts()) {
        for (const FieldCell* cell : part->cells()) {
            if (!cell->column().IsLink)
                extra.emplaceBack(cell->column().Name, cell->value());
        }
    }
    insertRow(m_database, *record.mainRow(), extra);
}

void RecordStore::takeVersion(const Record& record)
{
    Statement take(m_database,
                   QStringLiteral("UPDATE incident SET RowVersion = RowVersion + 1, SearchText = ? "
                                  "WHERE IncidentNo = ? AND RowVersion = ?"));
    take.run({searchText(*record.mainRow()), record.key(), record.rowVersion()});
    if (take.affectedRows() == 1)
        return;
    Statement find(m_database, QStringLiteral("SELECT COUNT(*) FROM incident WHERE IncidentNo = ?"));
    find.bind(record.key()).run();
    find.next();
    if (find.number(0) == 0)
        throw Error(
            QStringLiteral("The case %1 has been deleted by somebody else since you opened it. Nothing "
                           "was saved: note your changes, then make a new case for them.")
                .arg(caseName(record)));
    throw Error(QStringLiteral("Somebody else has saved the case %1 since you opened it. Nothing was saved: "
                               "open the case again and make your changes there.")
                    .arg(caseName(record)));
}

void RecordStore::updateMain(const Record& record)
{
    if (record.mainRow()->isChanged())
        updateRow(m_database, *record.mainRow());
    for (const RecordRowPtr& part : record.parts()) {
        if (part->isChanged())
            updateRow(m_database, *part);
    }
}

void RecordStore::writeRows(const RecordCollection& rows)
{
    const auto moves = [](const RecordRow& row) { return !row.IsNew() && row.isKeyChanged(); };
    // All keys that are given up are free before one of them is taken: rows may pass theirs on.
    for (const RecordRowPtr& row : rows.removedRows())
        deleteRow(m_database, *row);
    for (const RecordRowPtr& row : rows.rows()) {
        if (moves(*row))
            deleteRow(m_database, *row);
    }
    for (const RecordRowPtr& row : rows.rows()) {
        if (row->IsNew() || moves(*row))
            insertRow(m_database, *row);
        else if (row->isChanged())
            updateRow(m_database, *row);
    }
}

void RecordStore::attachRemover(Record& record)
{
    const std::weak_ptr<RecordStore*> store = m_self;
    const std::weak_ptr<Record> weakRecord = record.weak_from_this();
    for (const RecordCollectionPtr& rows : record.collections()) {
        const auto remove = [store, weakRecord](const RecordCollection& collection, const RecordRow& row) {
            const auto self = store.lock();
            const auto owner = weakRecord.lock();
            if (!self || !owner)
                throw Error(QStringLiteral("The record is closed: its rows cannot be removed any more"));
            (*self)->removeRowNow(*owner, collection, row);
        };
        const auto tell = [store, weakRecord] {
            const auto self = store.lock();
            const auto owner = weakRecord.lock();
            if (self && owner)
                (*self)->Saved.raise(owner->key());
        };
        rows->setRowRemover(remove, tell);
    }
}

void RecordStore::removeRowNow(Record& record, const RecordCollection& rows, const RecordRow& row)
{
    checkNumber(record);
    const QString primary = rows.schema().PrimaryColumn;
    Transaction transaction(m_database);
    Statement take(m_database, QStringLiteral("UPDATE incident SET RowVersion = RowVersion + 1 "
                                              "WHERE IncidentNo = ? AND RowVersion = ?"));
    take.run({record.key(), record.rowVersion()});
    if (take.affectedRows() != 1)
        throw Error(
            QStringLiteral("Somebody else has saved or deleted the case %1 since you opened it. Nothing "
                           "was removed: open the case again.")
                .arg(caseName(record)));
    if (!primary.isEmpty()) {
        Statement clear(
            m_database,
            QStringLiteral("UPDATE incident SET %1 = NULL WHERE IncidentNo = ? AND %1 = ?").arg(primary));
        clear.run({record.key(), row.cell(rows.KeyColumn()).savedValue()});
    }
    deleteRow(m_database, row);
    transaction.commit();
    record.setRowVersion(record.rowVersion() + 1);
}

} // namespace tavrin
