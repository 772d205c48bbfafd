#pragma once

#include "workbench/pages/RecordPage.h"

namespace tavrin {
class FlatOptionButton;
class LatLong;
class TextBox;
} // namespace tavrin

namespace tavrin::workbench {

/// Where the incident was: its coordinates.
class LocationPage final : public RecordPage
{
    Q_OBJECT

public:
    LocationPage();

    void load(Record& record) override;
    bool differs(Record& record) const override;
    void store(Record& record) override;
    void showSaved(Record& record) override { load(record); }

private:
    void edited();

    LatLong* m_coordinates;
    TextBox* m_latitude;
    TextBox* m_longitude;
    FlatOptionButton* m_manual;
    std::vector<Subscription> m_subscriptions;
    bool m_loading = false;
};

} // namespace tavrin::workbench
