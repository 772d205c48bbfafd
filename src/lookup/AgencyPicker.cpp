#include "lookup/AgencyPicker.h"

#include "base/values/Variant.h"
#include "frame/control_frame/FailurePolicy.h"
#include "frame/modUtils.h"
#include "widgets/drawing/ConstituentLook.h"
#include "widgets/drawing/Placement.h"
#include "widgets/grid_combo/GridComboBox.h"
#include "widgets/labels/Label.h"

#include <QScopedValueRollback>

#include <optional>

namespace tavrin {

namespace {

constexpr int ShortTextColumn = 0;
constexpr int LongTextColumn = 1;
constexpr int ValueColumn = 2;
constexpr int ActiveColumn = 3;

constexpr Twips NarrowComboWidth = 1632;
constexpr Twips LabelLeft = 1680;
constexpr Twips AroundLine = 120;
constexpr Twips UsualWidth = 4500;

} // namespace

AgencyPicker::AgencyPicker(QWidget* parent, const ControlSite& site)
    : UserControl(parent, site)
    , tdbcValues(new GridComboBox(this))
    , lblDescription(new Label(this))
    , m_font([this] { ApplyFont(); })
{
    tdbcValues->setObjectName(QStringLiteral("tdbcValues"));
    // Employee words, which stay as they are.
    tdbcValues->Columns(ShortTextColumn).SetCaption(QStringLiteral("Officer Id"));
    tdbcValues->Columns(LongTextColumn).SetCaption(QStringLiteral("Name"));
    tdbcValues->Columns(ValueColumn).SetCaption(QStringLiteral("OfficerNo"));
    tdbcValues->Columns(ValueColumn).SetVisible(false);
    tdbcValues->Columns(ActiveColumn).SetCaption(QStringLiteral("ActiveFlag"));
    tdbcValues->Columns(ActiveColumn).SetVisible(false);
    lblDescription->setObjectName(QStringLiteral("lblDescription"));
    lblDescription->SetAutoSize(false);
    moveTo(*lblDescription, LabelLeft, 0);
    m_subscriptions.push_back(tdbcValues->RowChange.subscribe([this] { tdbcValues_RowChange(); }));
    m_subscriptions.push_back(tdbcValues->FetchRowStyle.subscribe(
        [this](int row, GridRowStyle& style) { tdbcValues_FetchRowStyle(row, style); }));
    setFocusPolicy(Qt::StrongFocus);
    setFocusProxy(tdbcValues);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    resize(sizeHint());
    InitDefaults();
    begin();
}

AgencyPicker::~AgencyPicker() = default;

void AgencyPicker::InitDefaults()
{
    m_showName = true;
    m_removeUsedValues = false;
    m_value = Null();
}

// Contract

void AgencyPicker::TavrinControl_SetValue(const QVariant& value, const UsedValues& usedValues)
{
    const QPointer<AgencyPicker> self(this); // a follower of Change may delete the control
    const int put = ++m_puts;
    try {
        LoadAgencies(value);
        if (RemoveUsedValues())
            modUtils::RemoveUsedGridValues(*tdbcValues, usedValues ? *usedValues : QVariantList(), value);
        m_settingValue = true;
        select(value);
    } catch (...) {
        if (self && put == m_puts)
            chooseNothing();
        throw;
    }
}

void AgencyPicker::select(const QVariant& value)
{
    const QPointer<AgencyPicker> self(this);
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
void AgencyPicker::chooseNothing()
{
    const QPointer<AgencyPicker> self(this);
    const int put = m_puts;
    m_value = Null();
    m_settingValue = true; // the person has chosen nothing
    select(Null());
    if (self && put == m_puts)
        m_settingValue = false;
}

/// A list that cannot be loaded leaves the one before, with the row chosen in it. The row is the business of
/// whoever loads: what comes and goes on the way counts for nothing.
void AgencyPicker::LoadAgencies(const QVariant& value)
{
    const QScopedValueRollback loading(m_isLoading, true);
    std::optional<GridArray> before;
    const QVariant row = tdbcValues->Bookmark();
    if (tdbcValues->HasArray())
        before = std::move(tdbcValues->Array()); // a new one comes in its place
    try {
        modUtils::FillGridCombo(*tdbcValues, Tables::Agency, value, ListAllAgencies());
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

// Properties

Color AgencyPicker::BackColor() const
{
    return tdbcValues->BackColor();
}

void AgencyPicker::SetBackColor(Color color)
{
    tdbcValues->SetBackColor(color);
    Q_EMIT PropertyChanged(QStringLiteral("BackColor"));
}

Color AgencyPicker::ForeColor() const
{
    return tdbcValues->ForeColor();
}

void AgencyPicker::SetForeColor(Color color)
{
    tdbcValues->SetForeColor(color);
    Q_EMIT PropertyChanged(QStringLiteral("ForeColor"));
}

void AgencyPicker::SetFont(const FontPtr& font)
{
    m_font.set(font);
    Q_EMIT PropertyChanged(QStringLiteral("Font"));
}

void AgencyPicker::SetValue(const QVariant& value)
{
    TavrinControl_SetValue(value, std::make_shared<QVariantList>());
}

bool AgencyPicker::Enabled() const
{
    return tdbcValues->Enabled();
}

void AgencyPicker::SetEnabled(bool enabled)
{
    tdbcValues->SetEnabled(enabled);
    Q_EMIT PropertyChanged(QStringLiteral("Enabled"));
}

void AgencyPicker::SetShowName(bool show)
{
    m_showName = show;
    lblDescription->setVisible(show);
    UserControl_Resize();
    Q_EMIT PropertyChanged(QStringLiteral("ShowName"));
}

void AgencyPicker::SetListAllAgencies(bool listAll)
{
    m_listAllAgencies = listAll;
    if (ambient().UserMode()) {
        const QPointer<AgencyPicker> self(this);
        LoadAgencies(Value());
        modUtils::SelectGridComboValue(*tdbcValues, Value());
        if (!self)
            return;
    }
    Q_EMIT PropertyChanged(QStringLiteral("ListAllAgencies"));
}

void AgencyPicker::SetRemoveUsedValues(bool remove)
{
    m_removeUsedValues = remove;
    Q_EMIT PropertyChanged(QStringLiteral("RemoveUsedValues"));
}

QString AgencyPicker::FullText() const
{
    return IsNull(m_value) ? QString() : ToText(tdbcValues->Columns(LongTextColumn).Value());
}

QString AgencyPicker::ShortText() const
{
    return IsNull(m_value) ? QString() : ToText(tdbcValues->Columns(ShortTextColumn).Value());
}

// Choosing

void AgencyPicker::tdbcValues_RowChange()
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
    const QPointer<AgencyPicker> self(this);
    if (!m_settingValue)
        Q_EMIT ItemSelect();
    if (!self)
        return;
    m_settingValue = false;
    update();
    Q_EMIT Change();
}

void AgencyPicker::showLongText()
{
    lblDescription->SetCaption(ToText(tdbcValues->Columns(LongTextColumn).Value()));
}

void AgencyPicker::tdbcValues_FetchRowStyle(int row, GridRowStyle& style)
{
    continueOnError([&] {
        if (tdbcValues->Columns(ActiveColumn).CellText(row) != QLatin1String("1"))
            style.ForeColor = SystemColor::GreyText;
    });
}

// Lifecycle

SavedProperties AgencyPicker::savedProperties()
{
    return {booleanProperty(
                QStringLiteral("Enabled"), true, [this] { return Enabled(); },
                [this](bool enabled) { SetEnabled(enabled); }),
            booleanProperty(
                QStringLiteral("ShowName"), true, [this] { return ShowName(); },
                [this](bool show) { SetShowName(show); }),
            booleanProperty(
                QStringLiteral("ListAllAgencies"), false, [this] { return ListAllAgencies(); },
                [this](bool listAll) { m_listAllAgencies = listAll; }),
            booleanProperty(
                QStringLiteral("RemoveUsedValues"), false, [this] { return RemoveUsedValues(); },
                [this](bool remove) { SetRemoveUsedValues(remove); }),
            fontProperty(
                ambient().Font(), [this] { return Font(); }, [this](const FontPtr& font) { SetFont(font); }),
            colorProperty(
                QStringLiteral("BackColor"), SystemColor::WindowBackground, [this] { return BackColor(); },
                [this](Color color) { SetBackColor(color); }),
            colorProperty(
                QStringLiteral("ForeColor"), SystemColor::WindowText, [this] { return ForeColor(); },
                [this](Color color) { SetForeColor(color); })};
}

void AgencyPicker::UserControl_InitProperties()
{
    trapAndGoOn(
        typeName(), QStringLiteral("InitProperties"), [this] { InitDefaults(); },
        [this] { SetFont(ambient().Font()); });
}

void AgencyPicker::UserControl_ReadProperties(const PropertyBag& bag)
{
    UserControl::UserControl_ReadProperties(bag);
    if (!ambient().UserMode() || tdbcValues->HasArray())
        return;
    trapAndGoOn(
        typeName(), QStringLiteral("ReadProperties"), [this] { LoadAgencies(Null()); },
        [this] { modUtils::SelectGridComboValue(*tdbcValues, Null()); });
}

void AgencyPicker::ApplyFont()
{
    QWidget::setFont(wholeFont(m_font));
    lblDescription->SetFont(Font());
    tdbcValues->SetFont(Font());
    UserControl_Resize();
}

// Layout

void AgencyPicker::UserControl_Resize()
{
    if (m_inResize)
        return;
    const QScopedValueRollback inResize(m_inResize, true);
    Twips rowHeight = 0;
    continueOnError(
        [&] {
            const int width = toPixels(ShowName() ? NarrowComboWidth : ScaleWidth());
            tdbcValues->resize(width, tdbcValues->height());
        },
        [&] { rowHeight = toTwips(fontMetrics().height()) + AroundLine; },
        [&] { lblDescription->resize(lblDescription->width(), toPixels(rowHeight)); },
        [&] {
            const Twips width = std::max(ScaleWidth() - leftOf(*lblDescription), Twips(0));
            lblDescription->resize(toPixels(width), lblDescription->height());
        },
        [&] {
            if (Height() != rowHeight)
                SetHeight(rowHeight);
        },
        [&] {
            if (widthOf(*tdbcValues) > Width())
                SetWidth(widthOf(*tdbcValues));
        });
    updateGeometry();
}

QSize AgencyPicker::sizeHint() const
{
    return {toPixels(UsualWidth), tdbcValues->height()};
}

QSize AgencyPicker::minimumSizeHint() const
{
    return {ShowName() ? tdbcValues->width() : tdbcValues->minimumSizeHint().width(), tdbcValues->height()};
}

} // namespace tavrin
