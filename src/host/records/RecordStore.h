#pragma once

#include "base/export/Export.h"
#include "host/database/Database.h"
#include "host/geocode/Geocoder.h"
#include "host/records/IncidentStore.h"
#include "host/records/Record.h"

namespace tavrin {

/// Loads and saves incidents.
class TAVRIN_COMPANION_EXPORT RecordStore
{
public:
    /// The geocoder must outlive the store.
    explicit RecordStore(Database& database, const Geocoder& geocoder = Geocoder::builtIn());
    ~RecordStore();
    RecordStore(const RecordStore&) = delete;
    RecordStore& operator=(const RecordStore&) = delete;

    /// The incidents whose case number, summary or address holds `search` as it stands, without regard to
    /// case; all of them for "". Newest first; at most `limit` of them, 0 for all.
    QList<IncidentSummary> list(const QString& search = {}, int limit = 0);

    /// A new incident, which has no number until it is saved.
    RecordPtr create();
    /// Raises an `Error` when there is no such incident.
    RecordPtr load(qint64 incidentNo);

    /// Writes the record in one transaction; nothing when nothing has changed since it was loaded. A new
    /// record gets its number.
    /// The address of a record whose "GeocodeOnSave" is true is geocoded: read its location again behind the
    /// save.
    ///
    /// Raises an `Error` when a text is too long, the case number is taken, two rows have the same key, the
    /// number of a saved incident was changed, a row is not there any more, somebody else has saved or
    /// deleted the incident since it was loaded, or the database fails. The database and the record are then
    /// as before, and the record can be saved again.
    void save(Record& record);

    /// The same as part of the caller's transaction; if that fails, the record is to be thrown away. Raises
    /// no `Saved`.
    void saveWithin(Record& record);

    /// Raised with the incident's number after each save that wrote something, and after each row that was
    /// removed immediately.
    Event<qint64> Saved;

private:
    class KeyAssignment;
    void write(Record& record, KeyAssignment& key);
    void insertMain(const Record& record);
    void updateMain(const Record& record);
    /// Counts the record's version up; raises an `Error` when it is not the one that was loaded.
    void takeVersion(const Record& record);
    void checkCaseNumber(const Record& record);
    void loadPart(RecordRow& part, qint64 incidentNo);
    void writeRows(const RecordCollection& rows);
    void loadRows(RecordCollection& rows, qint64 incidentNo);
    void attachRemover(Record& record);
    void removeRowNow(Record& record, const RecordCollection& rows, const RecordRow& row);

    Database& m_database;
    const Geocoder& m_geocoder;
    std::shared_ptr<RecordStore*> m_self; // lets records outlive the store
};

} // namespace tavrin
