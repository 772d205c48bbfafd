#include "lookup/TavrinDropdown.h"

#include "base/values/Variant.h"
#include "frame/control_frame/FailurePolicy.h"
#include "frame/host_contracts/Host.h"
#include "frame/modUtils.h"
#include "widgets/lists/FlatDropdown.h"

#include <QScopedValueRollback>

namespace tavrin {

namespace {
constexpr Twips UsualWidth = 3073;
} // namespace

TavrinDropdown::TavrinDropdown(QWidget* parent, const ControlSite& site)
    : UserControl(parent, site)
    , cboItems(new FlatDropdown(this))
{
    cboItems->setObjectName(QStringLiteral("cboItems"));
    cboItems->SetFirstChoice(1); // behind "(None)"
    setFocusPolicy(Qt::StrongFocus);
    setFocusProxy(cboItems);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_subscriptions.push_back(cboItems->Click.subscribe([this] { cboItems_Click(); }));
    begin();
}

TavrinDropdown::~TavrinDropdown() = default;

// Properties

FontPtr TavrinDropdown::Font() const
{
    return cboItems->Font();
}

void TavrinDropdown::SetFont(const FontPtr& font)
{
    cboItems->SetFont(font);
    // Behind the box, which grows first: the frame has its height at any time.
    m_fontChanged = Font()->FontChanged.subscribe([this](const QString&) { LayoutControls(); });
    LayoutControls();
    Q_EMIT PropertyChanged(QStringLiteral("Font"));
}

QImage TavrinDropdown::Icon() const
{
    return cboItems->Icon();
}

void TavrinDropdown::SetIcon(const QImage& icon)
{
    cboItems->SetIcon(icon);
    LayoutControls();
    Q_EMIT PropertyChanged(QStringLiteral("Icon"));
}

void TavrinDropdown::SetTableNumber(tavrin::TableNumber number)
{
    if (number == m_tableNumber)
        return;
    m_tableNumber = number;
    m_listOutdated = true;
    Q_EMIT PropertyChanged(QStringLiteral("TableNumber"));
}

QVariant TavrinDropdown::Value() const
{
    const int index = cboItems->ListIndex();
    return index <= 0 || cboItems->ListCount() == 0 ? Null() : QVariant(cboItems->ItemData(index));
}

void TavrinDropdown::SetValue(const QVariant& value)
{
    if (cboItems->ListCount() == 0)
        return; // given before the list is there, a value is lost without a trace: this is meant
    int target = 0;
    if (!IsNull(value) && !IsEmpty(value)) {
        for (int i = 1; i < cboItems->ListCount() && target == 0; ++i) {
            if (SameValue(cboItems->ItemData(i), value))
                target = i;
        }
    }
    if (target == cboItems->ListIndex())
        return;
    const QPointer<TavrinDropdown> self(this);
    cboItems->SetListIndex(target); // whose click reports the value as well
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

void TavrinDropdown::BuildList()
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

void TavrinDropdown::cboItems_Click()
{
    if (std::exchange(m_selected, cboItems->ListIndex()) == cboItems->ListIndex())
        return; // a click on the entry that was selected already
    if (ReportChange(QStringLiteral("Value")))
        Q_EMIT Change();
}

// Lifecycle and layout

void TavrinDropdown::UserControl_InitProperties()
{
    trapAndGoOn(
        typeName(), QStringLiteral("InitProperties"), [this] { TakeContainerBackColor(); },
        [this] { SetFont(ambient().Font()); }, [this] { SetTableNumber(Tables::None); },
        [this] { Size(UsualWidth, 0); }, [this] { LayoutControls(); });
}

void TavrinDropdown::UserControl_ReadProperties(const PropertyBag& bag)
{
    trapAndGoOn(typeName(), QStringLiteral("ReadProperties"), [this] { TakeContainerBackColor(); });
    UserControl::UserControl_ReadProperties(bag);
    m_listOutdated = true;
}

void TavrinDropdown::UserControl_AmbientChanged(const QString& propertyName)
{
    if (propertyName == QLatin1String("BackColor"))
        TakeContainerBackColor();
}

void TavrinDropdown::UserControl_Show()
{
    const QPointer<TavrinDropdown> self(this); // a follower of the first selection may delete the control
    BuildList();
    if (self)
        LayoutControls();
}

void TavrinDropdown::UserControl_Resize()
{
    LayoutControls();
}

void TavrinDropdown::LayoutControls()
{
    if (m_inLayout)
        return;
    const QScopedValueRollback inLayout(m_inLayout, true);
    continueOnError([this] { cboItems->resize(toPixels(ScaleWidth()), cboItems->height()); },
                    [this] { modUtils::ResizeTwips(*this, ScaleWidth(), toTwips(cboItems->height())); });
    updateGeometry();
}

QSize TavrinDropdown::sizeHint() const
{
    return {toPixels(UsualWidth), cboItems->height()};
}

QSize TavrinDropdown::minimumSizeHint() const
{
    return {cboItems->minimumSizeHint().width(), cboItems->height()};
}

} // namespace tavrin
