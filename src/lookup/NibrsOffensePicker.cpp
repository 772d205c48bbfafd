#include "lookup/NibrsOffensePicker.h"

#include "base/failure/ByName.h"
#include "base/failure/Error.h"
#include "base/values/Variant.h"
#include "frame/control_frame/FailurePolicy.h"
#include "frame/modUtils.h"
#include "widgets/lists/FlatDropdown.h"

#include <QScopedValueRollback>

#include <vector>

namespace tavrin {

namespace {

constexpr Twips UsualWidth = 3600;
constexpr int SubscriptOutOfRangeNumber = 9;

using Codes = QList<QPair<QString, QString>>;

Codes nibrsCodes()
{
    return modUtils::NibrsModule()->GetNibrsOffenseCodeList();
}

QString displayText(const QPair<QString, QString>& entry)
{
    const auto& [code, description] = entry;
    return description.isEmpty() || description == code ? code : code + QStringLiteral(" - ") + description;
}

} // namespace

class NibrsOffensePicker::Private
{
    Q_DISABLE_COPY_MOVE(Private)

public:
    explicit Private(NibrsOffensePicker& picker);

    void FillList();
    /// The entry of a code; 0, "(None)", for one that the dictionary lacks.
    int entryOf(const QVariant& value) const;
    void put(const QVariant& value, int entry);
    void LayoutControls();

    NibrsOffensePicker& q;
    FlatDropdown* cboNibrsCode;
    QVariant m_designValue;
    FontPtr m_font;
    bool m_inLayout = false;
    std::vector<Subscription> m_subscriptions;
};

NibrsOffensePicker::Private::Private(NibrsOffensePicker& picker)
    : q(picker)
    , cboNibrsCode(new FlatDropdown(&q))
    , m_designValue(Null())
    , m_font(cboNibrsCode->Font())
{
    cboNibrsCode->setObjectName(QStringLiteral("cboNibrsCode"));
    cboNibrsCode->SetFirstChoice(1); // behind "(None)"
    m_subscriptions.push_back(cboNibrsCode->Click.subscribe([this] { Q_EMIT q.Change(); }));
}

NibrsOffensePicker::NibrsOffensePicker(QWidget* parent, const ControlSite& site)
    : UserControl(parent, site)
    , d(std::make_unique<Private>(*this))
{
    setFocusPolicy(Qt::StrongFocus);
    setFocusProxy(d->cboNibrsCode);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    resize(sizeHint());
    begin();
}

NibrsOffensePicker::~NibrsOffensePicker() = default;

// The list

void NibrsOffensePicker::Private::FillList()
{
    cboNibrsCode->Clear();
    if (!q.ambient().UserMode()) {
        cboNibrsCode->AddItem(q.ambient().DisplayName());
        cboNibrsCode->SetListIndex(0);
        return;
    }
    cboNibrsCode->AddItem(QStringLiteral("(None)"));
    const Codes codes = nibrsCodes();
    for (int i = 0; i < codes.size(); ++i)
        cboNibrsCode->AddItem(displayText(codes.at(i)), i);
    cboNibrsCode->SetListIndex(0);
}

QVariant NibrsOffensePicker::Value() const
{
    if (!ambient().UserMode())
        return d->m_designValue;
    const int index = d->cboNibrsCode->ListIndex();
    if (index <= 0)
        return Null();
    const Codes codes = nibrsCodes(); // as they are now
    const int position = d->cboNibrsCode->ItemData(index);
    if (position >= codes.size())
        throw Error(QStringLiteral("Subscript out of range"), SubscriptOutOfRangeNumber);
    return codes.at(position).first;
}

int NibrsOffensePicker::Private::entryOf(const QVariant& value) const
{
    const Codes codes = nibrsCodes();
    for (int i = 1; i < cboNibrsCode->ListCount(); ++i) {
        const int position = cboNibrsCode->ItemData(i);
        // The dictionary may have shrunk: an entry whose code is gone is equal to nothing.
        if (position < codes.size() && SameValue(codes.at(position).first, value))
            return i;
    }
    return 0;
}

void NibrsOffensePicker::SetValue(const QVariant& value)
{
    d->put(value, ambient().UserMode() ? d->entryOf(value) : 0);
}

void NibrsOffensePicker::Private::put(const QVariant& value, int entry)
{
    const QPointer<NibrsOffensePicker> self(&q);
    if (q.ambient().UserMode())
        cboNibrsCode->SetListIndex(entry);
    else
        m_designValue = value;
    if (self)
        Q_EMIT q.PropertyChanged(QStringLiteral("Value"));
}

void NibrsOffensePicker::TavrinControl_SetValue(const QVariant& value, const UsedValues&)
{
    int entry = 0;
    try {
        entry = ambient().UserMode() ? d->entryOf(value) : 0;
    } catch (...) {
        d->cboNibrsCode->SetListIndex(0); // the code of the record before must not be saved with this one
        throw;
    }
    d->put(value, entry);
}

QVariant NibrsOffensePicker::tellValue() const
{
    QVariant value;
    byName(*this, "NibrsOffensePicker.Value", [&] { value = Value(); });
    return value;
}

void NibrsOffensePicker::putValue(const QVariant& value)
{
    byName(*this, "NibrsOffensePicker.Value", [&] { SetValue(value); });
}

bool NibrsOffensePicker::tellValueIsNull() const
{
    bool isNull = false;
    byName(*this, "NibrsOffensePicker.ValueIsNull", [&] { isNull = ValueIsNull(); });
    return isNull;
}

QString NibrsOffensePicker::Text() const
{
    return d->cboNibrsCode->Text();
}

bool NibrsOffensePicker::ValueIsNull() const
{
    return IsNull(Value());
}

// Properties

void NibrsOffensePicker::SetEnabled(bool enabled)
{
    setEnabled(enabled);
    d->cboNibrsCode->setEnabled(enabled);
    Q_EMIT PropertyChanged(QStringLiteral("Enabled"));
}

FontPtr NibrsOffensePicker::Font() const
{
    return d->m_font;
}

void NibrsOffensePicker::SetFont(const FontPtr& font)
{
    if (font)
        d->m_font = font;
    d->LayoutControls();
    Q_EMIT PropertyChanged(QStringLiteral("Font"));
}

Color NibrsOffensePicker::ForeColor() const
{
    return d->cboNibrsCode->ForeColor();
}

void NibrsOffensePicker::SetForeColor(Color color)
{
    d->cboNibrsCode->SetForeColor(color);
    Q_EMIT PropertyChanged(QStringLiteral("ForeColor"));
}

Color NibrsOffensePicker::BackColor() const
{
    return d->cboNibrsCode->BackColor();
}

void NibrsOffensePicker::SetBackColor(Color color)
{
    d->cboNibrsCode->SetBackColor(color);
    Q_EMIT PropertyChanged(QStringLiteral("BackColor"));
}

SavedProperties NibrsOffensePicker::savedProperties()
{
    return {
        {QStringLiteral("Value"), PropertyKind::Variant, Null(), [this] { return Value(); },
         [this](const QVariant& value) { SetValue(value); }},
        fontProperty(
            std::make_shared<tavrin::Font>(), [this] { return Font(); },
            [this](const FontPtr& font) { SetFont(font); }),
        colorProperty(
            QStringLiteral("ForeColor"), SystemColor::WindowText, [this] { return ForeColor(); },
            [this](Color color) { SetForeColor(color); }),
        colorProperty(
            QStringLiteral("BackColor"), SystemColor::WindowBackground, [this] { return BackColor(); },
            [this](Color color) { SetBackColor(color); }),
    };
}

// Lifecycle and layout

void NibrsOffensePicker::UserControl_InitProperties()
{
    d->FillList();
    SetFont(ambient().Font());
}

void NibrsOffensePicker::UserControl_ReadProperties(const PropertyBag& bag)
{
    d->FillList();
    UserControl::UserControl_ReadProperties(bag);
}

void NibrsOffensePicker::UserControl_AmbientChanged(const QString& propertyName)
{
    if (propertyName == QLatin1String("DisplayName") && !ambient().UserMode())
        d->cboNibrsCode->SetList(0, ambient().DisplayName());
}

void NibrsOffensePicker::UserControl_Resize()
{
    d->LayoutControls();
}

void NibrsOffensePicker::Private::LayoutControls()
{
    if (m_inLayout)
        return;
    const QScopedValueRollback inLayout(m_inLayout, true);
    continueOnError(
        [this] {
            // The box follows the font that it is given; its own copy holds a change back until now.
            if (cboNibrsCode->Font()->toQFont() != m_font->toQFont())
                cboNibrsCode->SetFont(std::make_shared<tavrin::Font>(m_font->toQFont()));
        },
        [this] { cboNibrsCode->setGeometry(0, 0, toPixels(q.ScaleWidth()), cboNibrsCode->height()); },
        [this] { q.resize(cboNibrsCode->size()); });
    q.updateGeometry();
}

QSize NibrsOffensePicker::sizeHint() const
{
    return {toPixels(UsualWidth), d->cboNibrsCode->height()};
}

QSize NibrsOffensePicker::minimumSizeHint() const
{
    return {d->cboNibrsCode->minimumSizeHint().width(), d->cboNibrsCode->height()};
}

} // namespace tavrin
