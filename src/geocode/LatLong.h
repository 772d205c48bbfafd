#pragma once

#include "base/export/Export.h"
#include "frame/control_frame/UserControl.h"
#include "frame/host_contracts/Contracts.h"

#include <memory>

namespace tavrin {

/// The coordinates of a location record.
///
/// The person chooses between coordinates that the host works out from the address when the record is saved
/// and coordinates typed by hand, and is warned when the last geocoding was poor or failed.
///
///     auto* coordinates = new LatLong(form);
///     BoundSection* section = coordinates;
///     section->ReadData(incident); // shows the row incident->Item(QStringLiteral("LocationName"))
///     ...
///     section->WriteData(incident);
///     ...                          // the host saves the record, and geocodes
///     section->ReadData(incident); // shows what came of it
///
/// It does no geocoding itself: it reads the fields "GeocodeStatus", "GeocodeAccuracy",
/// "GeocodeAccuracyType", "GeocodeError", "GeocodeInputAddress" and "GeocodeOutputAddress", which the host
/// fills, and writes "GeocodeOnSave", "Latitude" and "Longitude". It has no properties and raises no events.
///
/// A read keeps the record for the person's clicks, and sets a new row to coordinates from its address. A
/// write puts the person's choice, and in manual mode the coordinates as texts. No failure leaves a routine:
/// it is told in a box. Behind a read that has failed the control shows nothing. While no record could be
/// read a write writes nothing, and a box says so. An option that the record has refused stays as the person
/// has clicked it, and the next write tries it again.
///
/// The control always has the size of its contents.
///
/// The coordinates can be copied from its context menu also while they cannot be typed over.
class TAVRIN_EXPORT LatLong final : public UserControl, public BoundSection
{
    Q_OBJECT
    Q_CLASSINFO("ClassName", "TVBoundControls.LatLong")
    Q_CLASSINFO("DefaultInterface", "_LatLong")

public:
    /// Shows no record yet. Asks nothing of the host.
    explicit LatLong(QWidget* parent = nullptr, const ControlSite& site = {});
    ~LatLong() override;

    /// The size of the contents.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void UserControl_Resize() override;
    void changeEvent(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    /// Shows the row `bo->Item("LocationName")`, and keeps the record for the person's clicks. A failure is
    /// told in a box, and nothing is raised: the control shows nothing then. It may have been deleted by
    /// then.
    void BoundSection_ReadData(const tvBusinessObjectPtr& bo) override;
    /// Puts the person's choice into the row, and in manual mode the coordinates as texts. A failure is told
    /// in a box, and nothing is raised; without a record that could be read nothing is written, and a box
    /// says so.
    void BoundSection_WriteData(const tvBusinessObjectPtr& bo) override;

    class Q_DECL_HIDDEN Private;
    std::unique_ptr<Private> d;
};

} // namespace tavrin
