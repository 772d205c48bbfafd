#pragma once

#include "base/failure/Error.h"
#include "sections/MultiValueForm.h"
#include "testing/FakeRecords.h"

#include <QStringList>

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

namespace tavrin::test {

/// Child rows without values that note what is asked of them, in its order, and fail where they are told to.
class NotingRows final : public tvTableCollection
{
public:
    explicit NotingRows(qsizetype count)
    {
        for (qsizetype i = 0; i < count; ++i)
            m_rows->AddNew();
    }

    QString KeyColumn() const override { return m_rows->KeyColumn(); }
    tvTableRowPtr NewItem() override { return m_rows->NewItem(); }
    tvTableRowPtr AddNew() override
    {
        note(QStringLiteral("AddNew"));
        return m_rows->AddNew();
    }
    void Add(const tvTableRowPtr& row) override { m_rows->Add(row); }
    void RemoveCurrent(bool immediately) override
    {
        note(QStringLiteral("RemoveCurrent %1").arg(immediately));
        m_rows->RemoveCurrent(immediately);
    }
    qint32 Count() const override { return countTold.value_or(m_rows->Count()); }
    tvTableRowPtr Item(qint32 index) override
    {
        note(QStringLiteral("Item %1").arg(index));
        return m_rows->Item(std::min(index, m_rows->Count()));
    }
    void SetItemClass(const QString&) override {}
    qint16 Position() const override { return m_rows->Position(); }
    void SetPosition(qint16 position) override
    {
        note(QStringLiteral("Position %1").arg(position));
        m_rows->SetPosition(position);
    }
    bool CurrentIsPrimary() const override { return false; }
    void SetPrimaryValue(const QVariant&) override {}
    qint32 PrimaryIndex() const override { return 0; }

    QStringList take() { return std::exchange(m_log, {}); }

    QString failing;
    std::optional<qint32> countTold;

private:
    void note(const QString& call)
    {
        m_log << call;
        if (call == failing)
            throw Error(QStringLiteral("disk full"), 61, QStringLiteral("host"));
    }

    std::shared_ptr<FakeCollection> m_rows = std::make_shared<FakeCollection>(WeaponColumns);
    QStringList m_log;
};

} // namespace tavrin::test
