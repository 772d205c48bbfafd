#pragma once

#include "base/export/Export.h"
#include "host/records/RecordCollection.h"

namespace tavrin {

/// A record in memory: one main row, its parts and its child collections, complete from loading to saving.
///
/// Nothing reaches the database before `RecordStore::save`, but for rows that are removed immediately.
class TAVRIN_COMPANION_EXPORT Record : public tvBusinessObject,
                                       public ChangeSink,
                                       public std::enable_shared_from_this<Record>
{
public:
    static std::shared_ptr<Record> create(const RecordSchema& schema);

    /// The main row under the main table's name ("Incident"), a part or a collection under its own
    /// ("LocationName", "Offenses"), and the current row of the suspects as a record under "SuspectBO";
    /// nullptr while there is no suspect.
    HostObjectPtr Item(const QString& name) override;
    QString ClassName() const override { return m_schema.ClassName; }

    /// Raised inside the call that changes a field or a collection, and before the collection's own events.
    Event<> Changed;

    const RecordSchema& schema() const { return m_schema; }
    const RecordRowPtr& mainRow() const { return m_main; }
    /// The rows of the parts, in the order of the schema.
    const std::vector<RecordRowPtr>& parts() const { return m_parts; }
    /// nullptr when there is none of this name.
    RecordRowPtr part(const QString& name) const;
    const std::vector<RecordCollectionPtr>& collections() const { return m_collections; }
    /// nullptr when there is none of this name.
    RecordCollectionPtr collection(const QString& name) const;

    /// Key of the main row; 0 until it is saved for the first time.
    qint64 key() const;
    bool isNew() const { return m_main->IsNew(); }
    /// True when anything differs from what was loaded or created.
    bool isChanged() const;
    /// Counts the saves of the record; the store refuses to save over another's.
    int rowVersion() const { return m_rowVersion; }
    void setRowVersion(int version) { m_rowVersion = version; }

    /// Raises an `Error` for the first text that is too long for its column.
    void checkLengths() const;
    /// For the store: what is in memory is in the database now.
    void markSaved(int rowVersion);

    void recordChanged() override { Changed.raise(); }

private:
    explicit Record(const RecordSchema& schema);
    void adoptChildren();
    void removeChildrenOf(const QString& collection, const QVariant& key);
    HostObjectPtr currentPart(const QString& collection);

    RecordSchema m_schema;
    RecordRowPtr m_main;
    std::vector<RecordRowPtr> m_parts;
    std::vector<RecordCollectionPtr> m_collections;
    std::vector<Subscription> m_subscriptions;
    int m_rowVersion = 0;
};

using RecordPtr = std::shared_ptr<Record>;

} // namespace tavrin
