#include "lookup/TavrinDropdown.h"

#include "base/values/Variant.h"
#include "frame/control_frame/FailurePolicy.h"
#include "frame/host_contracts/Host.h"
#include "frame/modUtils.h"
#include "widgets/lists/FlatDropdown.h"

#include <QScopedValueRollback>

#include <vector>

namespace tavrin {

namespace {
constexpr Twips UsualWidth = 3073;
} // namespace

class TavrinDropdown::Private
{
    Q_DISABLE_COPY_MOVE(Private)

public:
    explicit Private(TavrinDropdown& dropdown);

    void cboItems_Click();
    void BuildList();
    void LayoutControls();

    TavrinDropdown& q;
    FlatDropdown* cboItems;
    tavrin::TableNumber m_tableNumber = 0;
    bool m_listOutdated = false;
    int m_selected = -1; // to tell a change of the selection from a click on the same entry
    bool m_inLayout = false;
    Subscription m_fontChanged;
    std::vector<Subscription> m_subscriptions;
};

TavrinDropdown::Private::Private(TavrinDropdown& dropdown)
    : q(dropdown)
    , cboItems(new FlatDropdown(&q))
{
    cboItems->setObjectName(QStringLiteral("cboItems"));
    cboItems->SetFirstChoice(1); // behind "(None)"
    m_subscriptions.push_back(cboItems->Click.subscribe([this] { cboItems_Click(); }));
}

TavrinDropdown::TavrinDropdown(QWidget* parent, const ControlSite& site)
    : UserControl(parent, site)
    , d(std::make_unique<Private>(*this))
{
    setFocusPolicy(Qt::StrongFocus);
    setFocusProxy(d->cboItems);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    begin();
}

TavrinDropdown::~TavrinDropdown() = default;

// Properties

FontPtr TavrinDropdown::Font() const
{
    return d->cboItems->Font();
}

void TavrinDropdown::SetFont(const FontPtr& font)
{
    d->cboItems->SetFont(font);
    // Behind the box, which grows first: the frame has its height at any time.
    d->m_fontChanged = Font()->FontChanged.subscribe([this](const QString&) { d->LayoutControls(); });
    d->LayoutControls();
    Q_EMIT PropertyChanged(QStringLiteral("Font"));
}

QImage TavrinDropdown::Icon() const
{
    return d->cboItems->Icon();
}

void TavrinDropdown::SetIcon(const QImage& icon)
{
    d->cboItems->SetIcon(icon);
    d->LayoutControls();
    Q_EMIT PropertyChanged(QStringLiteral("Icon"));
}

tavrin::TableNumber TavrinDropdown::TableNumber() const
{
    return d->m_tableNumber;
}

void TavrinDropdown::SetTableNumber(tavrin::TableNumber number)
{
    if (number == d->m_tableNumber)
        return;
    d->m_tableNumber = number;
    d->m_listOutdated = true;
    Q_EMIT PropertyChanged(QStringLiteral("TableNumber"));
}

QVariant TavrinDropdown::Value() const
{
    const int index = d->cboItems->ListIndex();
    return index <= 0 || d->cboItems->ListCount() == 0 ? Null() : QVariant(d->cboItems->ItemData(index));
}

void TavrinDropdown::SetValue(const QVariant& value)
{
    if (d->cboItems->ListCount() == 0)
        return; // given before the list is there, a value is lost without a trace: this is meant
    int target = 0;
    if (!IsNull(value) && !IsEmpty(value)) {
        for (int i = 1; i < d->cboItems->ListCount() && target == 0; ++i) {
            if (SameValue(d->cboItems->ItemData(i), value))
                target = i;
        }
    }
    if (target == d->cboItems->ListIndex())
        return;
    const QPointer<TavrinDropdown> self(this);
    d->cboItems->SetListIndex(target); // whose click reports the value as well
    if (self)
        Q_EMIT PropertyChanged(QStringLiteral("Value"));
}

SavedProperties TavrinDropdown::savedProperties()
{
    return {
        fontProperty(
            ambient().Font(), [this] { return Font(); }, [this](const FontPtr& font) { SetFont(font); }),
        {QStringLiteral("Icon"), PropertyKind::Picture, QVariant(),
         [this] { return Icon().isNull() ? QVariant() : QVariant(Icon()); },
         [this](const QVariant& value) { SetIcon(value.value<QImage>()); }},
        {QStringLiteral("TableNumber"), PropertyKind::Long, Tables::None, [this] { return TableNumber(); },
         [this](const QVariant& value) { SetTableNumber(value.toInt()); }},
    };
}

// The list

void TavrinDropdown::Private::BuildList()
{
    if (!m_listOutdated)
        return;
    // All that can fail comes first: a list that cannot be built leaves the one before, with what is chosen
    // in it, and the next `Show` tries again. Half a list would read as Null and be saved so.
    std::vector<std::pair<QString, qint32>> entries;
    if (m_tableNumber != Tables::None) {
        const TableValues values = currentHost().hostServices().GetTableValues(m_tableNumber, false);
        for (const TableValue& value : values.Items)
            entries.emplace_back(value.DisplayText, ToLong(value.Value));
    }
    m_listOutdated = false;
    cboItems->Clear();
    m_selected = -1;
    if (m_tableNumber == Tables::None)
        return;
    cboItems->AddItem(QStringLiteral("(None)"));
    for (const auto& [text, value] : entries)
        cboItems->AddItem(text, value);
    cboItems->SetListIndex(0);
}

void TavrinDropdown::Private::cboItems_Click()
{
    if (std::exchange(m_selected, cboItems->ListIndex()) == cboItems->ListIndex())
        return; // a click on the entry that was selected already
    if (q.ReportChange(QStringLiteral("Value")))
        Q_EMIT q.Change();
}

// Lifecycle and layout

void TavrinDropdown::UserControl_InitProperties()
{
    trapAndGoOn(
        typeName(), QStringLiteral("InitProperties"), [this] { TakeContainerBackColor(); },
        [this] { SetFont(ambient().Font()); }, [this] { SetTableNumber(Tables::None); },
        [this] { Size(UsualWidth, 0); }, [this] { d->LayoutControls(); });
}

void TavrinDropdown::UserControl_ReadProperties(const PropertyBag& bag)
{
    trapAndGoOn(typeName(), QStringLiteral("ReadProperties"), [this] { TakeContainerBackColor(); });
    UserControl::UserControl_ReadProperties(bag);
    d->m_listOutdated = true;
}

void TavrinDropdown::UserControl_AmbientChanged(const QString& propertyName)
{
    if (propertyName == QLatin1String("BackColor"))
        TakeContainerBackColor();
}

void TavrinDropdown::UserControl_Show()
{
    const QPointer<TavrinDropdown> self(this); // a follower of the first selection may delete the control
    if (ambient().UserMode())
        d->BuildList();
    else
        continueOnError([this] { d->BuildList(); }); // the designer may have no host
    if (self)
        d->LayoutControls();
}

void TavrinDropdown::UserControl_Resize()
{
    d->LayoutControls();
}

void TavrinDropdown::Private::LayoutControls()
{
    if (m_inLayout)
        return;
    const QScopedValueRollback inLayout(m_inLayout, true);
    continueOnError([this] { cboItems->resize(toPixels(q.ScaleWidth()), cboItems->height()); },
                    [this] { modUtils::ResizeTwips(q, q.ScaleWidth(), toTwips(cboItems->height())); });
    q.updateGeometry();
}

QSize TavrinDropdown::sizeHint() const
{
    return {toPixels(UsualWidth), d->cboItems->height()};
}

QSize TavrinDropdown::minimumSizeHint() const
{
    return {d->cboItems->minimumSizeHint().width(), d->cboItems->height()};
}

} // namespace tavrin
