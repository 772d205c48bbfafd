// The list of the agency picker, and what is chosen in it.

#include "base/values/Variant.h"
#include "frame/control_frame/FailurePolicy.h"
#include "frame/modUtils.h"
#include "lookup/AgencyPickerPrivate.h"
#include "widgets/grid_combo/GridComboBox.h"
#include "widgets/labels/Label.h"

#include <QScopedValueRollback>

#include <optional>

namespace tavrin {

// Contract

void AgencyPicker::TavrinControl_SetValue(const QVariant& value, const UsedValues& usedValues)
{
    const QPointer<AgencyPicker> self(this); // a follower of Change may delete the control
    const int put = ++d->m_puts;
    try {
        d->LoadAgencies(value);
        if (RemoveUsedValues())
            modUtils::RemoveUsedGridValues(*d->tdbcValues, usedValues ? *usedValues : QVariantList(), value);
        d->m_settingValue = true;
        d->select(value);
    } catch (...) {
        if (self && put == d->m_puts)
            d->chooseNothing();
        throw;
    }
}

void AgencyPicker::Private::select(const QVariant& value)
{
    const QPointer<AgencyPicker> self(&q);
    const int put = m_puts;
    const QVariant selected = modUtils::SelectGridComboValue(*tdbcValues, value);
    if (!self || put != m_puts) // a follower has put another value, which stands
        return;
    m_value = selected;
    showLongText();
    if (IsNull(tdbcValues->Bookmark()))
        tdbcValues->SetBookmark(Null()); // a list without rows: the row before is gone, which nobody has told
}

/// What a put that failed leaves: nothing of the record before that a save could write, and a list to choose
/// from.
void AgencyPicker::Private::chooseNothing()
{
    const QPointer<AgencyPicker> self(&q);
    const int put = m_puts;
    m_value = Null();
    m_settingValue = true; // the person has chosen nothing
    select(Null());
    if (self && put == m_puts)
        m_settingValue = false;
}

/// A list that cannot be loaded leaves the one before, with the row chosen in it. The row is the business of
/// whoever loads: what comes and goes on the way counts for nothing.
void AgencyPicker::Private::LoadAgencies(const QVariant& value)
{
    const QScopedValueRollback loading(m_isLoading, true);
    std::optional<GridArray> before;
    const QVariant row = tdbcValues->Bookmark();
    if (tdbcValues->HasArray())
        before = std::move(tdbcValues->Array()); // a new one comes in its place
    try {
        modUtils::FillGridCombo(*tdbcValues, Tables::Agency, value, m_listAllAgencies);
    } catch (...) {
        if (!before) {
            tdbcValues->RemoveArray();
            throw;
        }
        tdbcValues->ResetArray();
        tdbcValues->Array() = std::move(*before);
        tdbcValues->Rebind();
        if (!IsNull(row))
            tdbcValues->SetBookmark(row);
        throw;
    }
}

// Choosing

void AgencyPicker::Private::tdbcValues_RowChange()
{
    const bool isFirst = !std::exchange(m_hadFirstRowChange, true);
    if (isFirst || m_isLoading)
        return;
    showLongText();
    const QVariant bookmark = tdbcValues->Bookmark();
    if (!tdbcValues->HasArray())
        m_value = Null();
    else if (!IsNull(bookmark) && ToLong(bookmark) != 0)
        m_value = tdbcValues->Array().Value(ToLong(bookmark), ValueColumn);
    const QPointer<AgencyPicker> self(&q);
    if (!m_settingValue)
        Q_EMIT q.ItemSelect();
    if (!self)
        return;
    m_settingValue = false;
    q.update();
    Q_EMIT q.Change();
}

void AgencyPicker::Private::showLongText()
{
    lblDescription->SetCaption(ToText(tdbcValues->Columns(LongTextColumn).Value()));
}

void AgencyPicker::Private::tdbcValues_FetchRowStyle(int row, GridRowStyle& style)
{
    continueOnError([&] {
        if (tdbcValues->Columns(ActiveColumn).CellText(row) != QLatin1String("1"))
            style.ForeColor = SystemColor::GreyText;
    });
}

} // namespace tavrin
