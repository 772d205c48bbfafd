#pragma once

#include "frame/host_contracts/Services.h"
#include "host/lists/HostLists.h"

namespace tavrin {

/// Fills the lists of widgets, and fits pictures into them.
class HostListFilling : public ListFilling
{
public:
    explicit HostListFilling(const HostListsHolder& lists);

    void FillTableCombo(TableNumber table, DropdownTarget& combo, bool includeInactive, const QVariant& value,
                        bool reserved) override;
    void FillTableGrid(TableNumber table, GridCombo& combo, bool includeInactive, const QVariant& value,
                       bool reserved) override;
    /// The whole picture in the middle of the box, scaled with its proportions; the rest shows the back
    /// colour. Without `flag` a small picture is not enlarged. A null image for a null picture or an empty
    /// box.
    QImage FitPicture(const QImage& picture, int height, int width, int mode, bool flag, Color backColor,
                      bool reserved) override;

private:
    QList<CodeValueRow> choices(TableNumber table, bool includeInactive, const QVariant& value) const;

    const HostListsHolder& m_lists;
};

} // namespace tavrin
