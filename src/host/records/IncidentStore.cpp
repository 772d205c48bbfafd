#include "host/records/IncidentStore.h"

#include "base/failure/Error.h"
#include "host/records/RecordStore.h"

namespace tavrin {

namespace {

Record& recordOf(const tvBusinessObjectPtr& incident)
{
    auto* record = dynamic_cast<Record*>(incident.get());
    if (!record)
        throw Error(QStringLiteral("The record is no incident of this store"));
    return *record;
}

} // namespace

class IncidentStore::Private
{
public:
    explicit Private(Database& database)
        : records(database)
    {
    }

    RecordStore records;
    Subscription saved;
};

IncidentStore::IncidentStore(Database& database)
    : d(std::make_unique<Private>(database))
{
    d->saved = d->records.Saved.subscribe([this](qint64 number) { Saved.raise(number); });
}

IncidentStore::~IncidentStore() = default;

QList<IncidentSummary> IncidentStore::list(const QString& search, int limit)
{
    return d->records.list(search, limit);
}

tvBusinessObjectPtr IncidentStore::create()
{
    return d->records.create();
}

tvBusinessObjectPtr IncidentStore::open(qint64 incidentNo)
{
    return d->records.load(incidentNo);
}

void IncidentStore::save(const tvBusinessObjectPtr& incident)
{
    d->records.save(recordOf(incident));
}

qint64 IncidentStore::numberOf(const tvBusinessObjectPtr& incident)
{
    return recordOf(incident).key();
}

bool IncidentStore::isChanged(const tvBusinessObjectPtr& incident)
{
    return recordOf(incident).isChanged();
}

} // namespace tavrin
