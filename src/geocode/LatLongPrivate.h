#pragma once

#include "base/failure/Event.h"
#include "base/values/Font.h"
#include "geocode/LatLong.h"

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

/// The constituents of the section, the record that it shows, and its handlers.
class LatLong::Private
{
public:
    explicit Private(LatLong& control);

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
    QString failurePrefix(const char* member) const;

    LatLong& q;
    tvBusinessObjectPtr m_bo;
    Label* Label13 = nullptr;
    TextBox* txtLat = nullptr;
    Label* Label14 = nullptr;
    TextBox* txtLong = nullptr;
    GroupBox* grpGeocoding = nullptr;
    FlatOptionButton* optGeocodeOnSave[2] = {}; // by index
    GroupBox* grpWarning = nullptr;
    BoxShape* shpWarning = nullptr;
    FontIconLabel* lblWarning = nullptr;
    TextLink* lnkViewDetails = nullptr;
    PopupMenu* mnuCoordinates = nullptr;
    MenuItem* mnuCopyCoordinates = nullptr;
    QPointer<QMenu> m_openMenu;
    FontPtr m_font;
    std::vector<Subscription> m_subscriptions;
    bool m_refreshing = false;
    bool m_isShown = false; // the record that was read last
};

} // namespace tavrin
