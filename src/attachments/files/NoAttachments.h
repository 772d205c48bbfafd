#pragma once

#include "base/failure/Error.h"
#include "frame/host_contracts/Records.h"

namespace tavrin {

/// The attachments of a control in the designer, where no host makes collections: none, and none to come.
class NoAttachments final : public tvTableCollection
{
public:
    QString KeyColumn() const override { return QStringLiteral("SeqNo"); }
    tvTableRowPtr NewItem() override { throw notHere(); }
    tvTableRowPtr AddNew() override { throw notHere(); }
    void Add(const tvTableRowPtr&) override { throw notHere(); }
    void RemoveCurrent(bool) override { throw notHere(); }
    qint32 Count() const override { return 0; }
    tvTableRowPtr Item(qint32) override { throw notHere(); }
    void SetItemClass(const QString&) override {}
    qint16 Position() const override { return 0; }
    void SetPosition(qint16) override { throw notHere(); }
    bool CurrentIsPrimary() const override { return false; }
    void SetPrimaryValue(const QVariant&) override { throw notHere(); }
    qint32 PrimaryIndex() const override { return 0; }

private:
    static Error notHere() { return Error(QStringLiteral("There are no attachments in the designer")); }
};

} // namespace tavrin
