#pragma once

#include "base/export/Export.h"
#include "frame/host_contracts/Records.h"

#include <QString>
#include <QStringList>

#include <memory>

namespace tavrin {

/// A record in memory: children by name, which are rows, collections and other records.
///
///     const auto incident = std::make_shared<MemoryRecord>(u"tvIncidentBO"_s);
///     incident->SetItem(u"Weapons"_s, weapons);
///     form.ReadData(incident);
///     ...
///     form.WriteData(incident);
///     incident->MarkSaved();
class TAVRIN_EXPORT MemoryRecord : public tvBusinessObject, public std::enable_shared_from_this<MemoryRecord>
{
public:
    /// A record without children; `className` is as in "tvIncidentBO", "" for a part that is no module's
    /// record.
    explicit MemoryRecord(const QString& className = {});
    ~MemoryRecord() override;

    HostObjectPtr Item(const QString& name) override;
    /// Gives the record a child in the place of the one of this name; nullptr takes that away. The child
    /// learns of its owner when this record is held by a `std::shared_ptr`; what is taken away has none from
    /// then on.
    void SetItem(const QString& name, const HostObjectPtr& child);
    /// As `SetItem` was given them last, ordered without case.
    QStringList ChildNames() const;
    QString ClassName() const override;
    /// From now on another class's record; its children stay.
    void SetClassName(const QString& name);

    /// The record that this one is a child of; nullptr when it is none's.
    tvBusinessObjectPtr Owner() const;
    /// What a host whose records are of this kind answers to `HostServices::GetParentObject`: the owner of a
    /// record or a row in memory, nullptr for anything else.
    static tvBusinessObjectPtr OwnerOf(const tvBusinessObjectPtr& part);

    /// The record has been saved with all that it holds in memory: no row is new any more, links have become
    /// values, and what was removed is deleted.
    void MarkSaved();

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace tavrin
