#pragma once

#include "base/export/Export.h"
#include "base/lists/DropdownTarget.h"

#include <QString>

#include <memory>

namespace tavrin::testing {

/// A list without a widget, for whatever fills lists.
class TAVRIN_EXPORT FakeDropdown : public DropdownTarget
{
public:
    FakeDropdown();
    ~FakeDropdown() override;

    void Clear() override;
    void AddItem(const QString& text, qint32 itemData) override;
    int ListCount() const override;
    QString List(int index) const override;
    qint32 ItemData(int index) const override;
    int ListIndex() const override;
    void SetListIndex(int index) override;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace tavrin::testing
