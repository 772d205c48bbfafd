#include "lookup/AgencyPicker.h"

#include "base/failure/ByName.h"
#include "base/values/Variant.h"
#include "frame/control_frame/FailurePolicy.h"
#include "frame/modUtils.h"
#include "lookup/AgencyPickerPrivate.h"
#include "widgets/drawing/ConstituentLook.h"
#include "widgets/drawing/Placement.h"
#include "widgets/grid_combo/GridComboBox.h"
#include "widgets/labels/Label.h"

#include <QScopedValueRollback>

namespace tavrin {

namespace {

constexpr Twips NarrowComboWidth = 1632;
constexpr Twips LabelLeft = 1680;
constexpr Twips AroundLine = 120;
constexpr Twips UsualWidth = 4500;

} // namespace

AgencyPicker::Private::Private(AgencyPicker& picker)
    : q(picker)
    , tdbcValues(new GridComboBox(&q))
    , lblDescription(new Label(&q))
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
}

AgencyPicker::AgencyPicker(QWidget* parent, const ControlSite& site)
    : UserControl(parent, site)
    , d(std::make_unique<Private>(*this))
{
    setFocusPolicy(Qt::StrongFocus);
    setFocusProxy(d->tdbcValues);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    resize(sizeHint());
    d->InitDefaults();
    begin();
}

AgencyPicker::~AgencyPicker() = default;

void AgencyPicker::Private::InitDefaults()
{
    m_showName = true;
    m_removeUsedValues = false;
    m_value = Null();
}

// Properties

Color AgencyPicker::BackColor() const
{
    return d->tdbcValues->BackColor();
}

void AgencyPicker::SetBackColor(Color color)
{
    d->tdbcValues->SetBackColor(color);
    Q_EMIT PropertyChanged(QStringLiteral("BackColor"));
}

Color AgencyPicker::ForeColor() const
{
    return d->tdbcValues->ForeColor();
}

void AgencyPicker::SetForeColor(Color color)
{
    d->tdbcValues->SetForeColor(color);
    Q_EMIT PropertyChanged(QStringLiteral("ForeColor"));
}

FontPtr AgencyPicker::Font() const
{
    return d->m_font.get();
}

void AgencyPicker::SetFont(const FontPtr& font)
{
    d->m_font.set(font);
    Q_EMIT PropertyChanged(QStringLiteral("Font"));
}

QVariant AgencyPicker::Value() const
{
    return d->m_value;
}

void AgencyPicker::SetValue(const QVariant& value)
{
    TavrinControl_SetValue(value, std::make_shared<QVariantList>());
}

bool AgencyPicker::Enabled() const
{
    return d->tdbcValues->Enabled();
}

void AgencyPicker::SetEnabled(bool enabled)
{
    d->tdbcValues->SetEnabled(enabled);
    Q_EMIT PropertyChanged(QStringLiteral("Enabled"));
}

bool AgencyPicker::ShowName() const
{
    return d->m_showName;
}

void AgencyPicker::SetShowName(bool show)
{
    d->m_showName = show;
    d->lblDescription->setVisible(show);
    UserControl_Resize();
    Q_EMIT PropertyChanged(QStringLiteral("ShowName"));
}

bool AgencyPicker::ListAllAgencies() const
{
    return d->m_listAllAgencies;
}

void AgencyPicker::SetListAllAgencies(bool listAll)
{
    d->m_listAllAgencies = listAll;
    if (ambient().UserMode()) {
        const QPointer<AgencyPicker> self(this);
        d->LoadAgencies(Value());
        modUtils::SelectGridComboValue(*d->tdbcValues, Value());
        if (!self)
            return;
    }
    Q_EMIT PropertyChanged(QStringLiteral("ListAllAgencies"));
}

bool AgencyPicker::RemoveUsedValues() const
{
    return d->m_removeUsedValues;
}

void AgencyPicker::SetRemoveUsedValues(bool remove)
{
    d->m_removeUsedValues = remove;
    Q_EMIT PropertyChanged(QStringLiteral("RemoveUsedValues"));
}

QString AgencyPicker::FullText() const
{
    return IsNull(d->m_value) ? QString() : ToText(d->tdbcValues->Columns(Private::LongTextColumn).Value());
}

QString AgencyPicker::ShortText() const
{
    return IsNull(d->m_value) ? QString() : ToText(d->tdbcValues->Columns(Private::ShortTextColumn).Value());
}

void AgencyPicker::putValue(const QVariant& value)
{
    byName(*this, "AgencyPicker.Value", [&] { SetValue(value); });
}

void AgencyPicker::putListAllAgencies(bool listAll)
{
    byName(*this, "AgencyPicker.ListAllAgencies", [&] { SetListAllAgencies(listAll); });
}

QString AgencyPicker::tellFullText() const
{
    QString text;
    byName(*this, "AgencyPicker.FullText", [&] { text = FullText(); });
    return text;
}

QString AgencyPicker::tellShortText() const
{
    QString text;
    byName(*this, "AgencyPicker.ShortText", [&] { text = ShortText(); });
    return text;
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
                [this](bool listAll) { d->m_listAllAgencies = listAll; }),
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
        typeName(), QStringLiteral("InitProperties"), [this] { d->InitDefaults(); },
        [this] { SetFont(ambient().Font()); });
}

void AgencyPicker::UserControl_ReadProperties(const PropertyBag& bag)
{
    UserControl::UserControl_ReadProperties(bag);
    if (!ambient().UserMode() || d->tdbcValues->HasArray())
        return;
    trapAndGoOn(
        typeName(), QStringLiteral("ReadProperties"), [this] { d->LoadAgencies(Null()); },
        [this] { modUtils::SelectGridComboValue(*d->tdbcValues, Null()); });
}

void AgencyPicker::Private::ApplyFont()
{
    q.QWidget::setFont(wholeFont(m_font));
    lblDescription->SetFont(q.Font());
    tdbcValues->SetFont(q.Font());
    q.UserControl_Resize();
}

// Layout

void AgencyPicker::UserControl_Resize()
{
    if (d->m_inResize)
        return;
    const QScopedValueRollback inResize(d->m_inResize, true);
    Twips rowHeight = 0;
    continueOnError(
        [&] {
            const int width = toPixels(ShowName() ? NarrowComboWidth : ScaleWidth());
            d->tdbcValues->resize(width, d->tdbcValues->height());
        },
        [&] { rowHeight = toTwips(fontMetrics().height()) + AroundLine; },
        [&] { d->lblDescription->resize(d->lblDescription->width(), toPixels(rowHeight)); },
        [&] {
            const Twips width = std::max(ScaleWidth() - leftOf(*d->lblDescription), Twips(0));
            d->lblDescription->resize(toPixels(width), d->lblDescription->height());
        },
        [&] {
            if (Height() != rowHeight)
                SetHeight(rowHeight);
        },
        [&] {
            if (widthOf(*d->tdbcValues) > Width())
                SetWidth(widthOf(*d->tdbcValues));
        });
    updateGeometry();
}

QSize AgencyPicker::sizeHint() const
{
    return {toPixels(UsualWidth), d->tdbcValues->height()};
}

QSize AgencyPicker::minimumSizeHint() const
{
    return {ShowName() ? d->tdbcValues->width() : d->tdbcValues->minimumSizeHint().width(),
            d->tdbcValues->height()};
}

} // namespace tavrin
