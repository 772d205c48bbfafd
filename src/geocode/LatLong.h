#pragma once

#include "base/export/Export.h"
#include "frame/control_frame/UserControl.h"
#include "frame/host_contracts/Contracts.h"

#include <QPointer>

#include <optional>
#include <vector>

class QMenu;

namespace tavrin {

class BoxShape;
class FlatOptionButton;
class FontIconLabel;
class GroupBox;
class Label;
class MenuItem;
class PopupMenu;
class TextBox;
class TextLink;

/// The coordinates of a location record.
///
/// The person chooses between coordinates that the host works out from the address when the record is saved
/// and coordinates typed by hand, and is warned when the last geocoding was poor or failed.
///
///     auto* coordinates = new LatLong(form);
///     BoundSection* section = coordinates;
///     section->ReadData(incident); // shows the row incident->Item("LocationName")
///     ...
///     section->WriteData(incident);
///     store.save(*incident); // the host geocodes
///     section->ReadData(incident); // shows what came of it
///
/// It does no geocoding itself: it reads the fields "GeocodeStatus", "GeocodeAccuracy",
/// "GeocodeAccuracyType", "GeocodeError", "GeocodeInputAddress" and "GeocodeOutputAddress", which the host
/// fills, and writes "GeocodeOnSave", "Latitude" and "Longitude". It has no properties and raises no events.
///
/// It always has the size of its contents. A failure is told in a box, and its routine then ends normally.
/// Behind a read that has failed it shows nothing and writes nothing until a record can be read. An option
/// that the record has refused stays as the person has clicked it, and the next write tries it again.
///
/// The coordinates can be copied from its context menu also while they cannot be typed over.
class TAVRIN_EXPORT LatLong final : public UserControl, public BoundSection
{
    Q_OBJECT
    Q_CLASSINFO("ClassName", "TVBoundControls.LatLong")
    Q_CLASSINFO("DefaultInterface", "_LatLong")

public:
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
    /// Shows the record, and keeps it for the person's clicks. A new row is set to coordinates from its
    /// address.
    void BoundSection_ReadData(const tvBusinessObjectPtr& bo) override;
    /// Writes the person's choice, and in manual mode the coordinates as texts. While no record has been
    /// read, and behind a read that has failed, a box tells that nothing is written.
    void BoundSection_WriteData(const tvBusinessObjectPtr& bo) override;

    void RefreshDisplay();
    /// Neither coordinates nor a choice, and nothing to type in.
    void ShowNothing();
    /// `index` of the option that is on; none for neither.
    void showChoice(std::optional<int> index);
    /// Opens the boxes in manual mode, and closes them otherwise.
    void openBoxes();
    void refreshWarning(tvTableRow& row);
    void showWarning(bool show);
    void optGeocodeOnSave_Click(int index);
    void lnkViewDetails_Click();

    // The context menu: LatLongMenu.cpp
    void buildMenu();
    void openMenu(QWidget& widget, const QPoint& place);
    void mnuCopyCoordinates_Click();
    /// The coordinates as they show; "" when there are none.
    QString shownCoordinates() const;

    void makeConstituents();
    void nameConstituents();
    void connectConstituents();
    void layOut();
    QSize contentSize() const;
    QString failurePrefix(const char* member) const;

    tvBusinessObjectPtr m_bo;
    Label* Label13;
    TextBox* txtLat;
    Label* Label14;
    TextBox* txtLong;
    GroupBox* grpGeocoding;
    FlatOptionButton* optGeocodeOnSave[2]; // by index
    GroupBox* grpWarning;
    BoxShape* shpWarning;
    FontIconLabel* lblWarning;
    TextLink* lnkViewDetails;
    PopupMenu* mnuCoordinates = nullptr;
    MenuItem* mnuCopyCoordinates = nullptr;
    QPointer<QMenu> m_openMenu;
    FontPtr m_font;
    std::vector<Subscription> m_subscriptions;
    bool m_refreshing = false;
    bool m_isShown = false; // the record that was read last
};

} // namespace tavrin
