#pragma once

#include "base/export/Export.h"
#include "base/failure/Event.h"
#include "frame/host_contracts/Records.h"

#include <QDateTime>
#include <QList>
#include <QString>

#include <memory>

namespace tavrin {

class Database;

/// One line of a list of incidents.
struct IncidentSummary
{
    qint64 IncidentNo = 0; ///< its number in the database
    QString CaseNo;        ///< what people call it by
    QDateTime ReportedAt;  ///< local time; invalid when it is not known
    QString Summary;       ///< one line
    QString Address;       ///< of the place
    QString City;          ///< of the place
    QString Status;        ///< as the record holds it, in words
};

/// The incidents of a database of the reference host, as a form opens and saves them.
///
///     IncidentStore incidents(*database);
///     const tvBusinessObjectPtr incident = incidents.open(incidents.list().first().IncidentNo);
///     section->ReadData(incident);
///     ...
///     section->WriteData(incident);
///     incidents.save(incident);
///
/// A record is read whole when it is opened and written whole, in one transaction, when it is saved. Its rows
/// are reached by `Item`: "Incident" is the row of the incident itself, "Attachments", "Offenses", "Suspects"
/// and the like are its collections.
class TAVRIN_EXPORT IncidentStore
{
public:
    /// The database must outlive the store.
    explicit IncidentStore(Database& database);
    ~IncidentStore();

    /// The incidents whose case number, summary or address holds `search` as it stands, without regard to
    /// case; all of them for "". Newest first; at most `limit` of them, 0 for all.
    QList<IncidentSummary> list(const QString& search = {}, int limit = 0);
    /// A new incident, which has no number until it is saved.
    tvBusinessObjectPtr create();
    /// Raises an `Error` when there is no such incident.
    tvBusinessObjectPtr open(qint64 incidentNo);
    /// Writes the incident in one transaction; nothing when nothing has changed since it was opened. A new
    /// one gets its number. An address whose "GeocodeOnSave" is True is geocoded: read the location again
    /// behind the save.
    ///
    /// Raises an `Error` when a text is too long, the case number is taken, two rows have the same key, a row
    /// is not there any more, somebody else has saved or deleted the incident since it was opened, the
    /// database fails, or the record is none of this store. Database and record are then as before, and the
    /// record can be saved again.
    void save(const tvBusinessObjectPtr& incident);

    /// The number of a record of this store; 0 until it is saved for the first time. Raises an `Error` for
    /// any other record.
    static qint64 numberOf(const tvBusinessObjectPtr& incident);
    /// Whether anything differs from what was opened or created. Raises an `Error` for a record that is none
    /// of a store.
    static bool isChanged(const tvBusinessObjectPtr& incident);

    /// Raised with the incident's number after each save that wrote something, and after each row that was
    /// removed immediately.
    Event<qint64> Saved;

private:
    class Q_DECL_HIDDEN Private;
    std::unique_ptr<Private> d;
};

} // namespace tavrin
