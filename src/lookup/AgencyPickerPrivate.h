#pragma once

#include "lookup/AgencyPicker.h"
#include "widgets/drawing/SharedFont.h"

#include <vector>

namespace tavrin {

class GridComboBox;
struct GridRowStyle;
class Label;

class AgencyPicker::Private
{
public:
    static constexpr int ShortTextColumn = 0;
    static constexpr int LongTextColumn = 1;
    static constexpr int ValueColumn = 2;
    static constexpr int ActiveColumn = 3;

    explicit Private(AgencyPicker& picker);
    Private(const Private&) = delete;
    Private& operator=(const Private&) = delete;

    void InitDefaults();
    void LoadAgencies(const QVariant& value);
    void select(const QVariant& value);
    void chooseNothing();
    void showLongText();
    void ApplyFont();
    void tdbcValues_RowChange();
    void tdbcValues_FetchRowStyle(int row, GridRowStyle& style);

    AgencyPicker& q;
    GridComboBox* tdbcValues;
    Label* lblDescription;
    QVariant m_value;
    int m_puts = 0;
    bool m_showName = true;
    bool m_listAllAgencies = false;
    bool m_removeUsedValues = false;
    bool m_settingValue = false; // from a value that is set until the next row change
    bool m_hadFirstRowChange = false;
    bool m_isLoading = false;
    bool m_inResize = false;
    SharedFont m_font;
    std::vector<Subscription> m_subscriptions;
};

} // namespace tavrin
