#include "lookup/NibrsOffensePicker.h"

#include "base/failure/Error.h"
#include "base/values/Variant.h"
#include "frame/control_frame/FailurePolicy.h"
#include "frame/modUtils.h"
#include "widgets/lists/FlatDropdown.h"

#include <QScopedValueRollback>

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

NibrsOffensePicker::NibrsOffensePicker(QWidget* parent, const ControlSite& site)
    : UserControl(parent, site)
    , cboNibrsCode(new FlatDropdown(this))
    , m_designValue(Null())
    , m_font(cboNibrsCode->Font())
{
    cboNibrsCode->setObjectName(QStringLiteral("cboNibrsCode"));
    cboNibrsCode->SetFirstChoice(1); // behind "(None)"
    setFocusPolicy(Qt::StrongFocus);
    setFocusProxy(cboNibrsCode);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    resize(sizeHint());
    m_subscriptions.push_back(cboNibrsCode->Click.subscribe([this] { Q_EMIT Change(); }));
    begin();
}

NibrsOffensePicker::~NibrsOffensePicker() = default;

// The list

void NibrsOffensePicker::FillList()
{
    cboNibrsCode->Clear();
    if (!ambient().UserMode()) {
        cboNibrsCode->AddItem(ambient().DisplayName());
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
        return m_designValue;
    const int index = cboNibrsCode->ListIndex();
    if (index <= 0)
        return Null();
    const Codes codes = nibrsCodes(); // as they are now
    const int position = cboNibrsCode->ItemData(index);
    if (position >= codes.size())
        throw Error(QStringLiteral("Subscript out of range"), SubscriptOutOfRangeNumber);
    return codes.at(position).first;
}

int NibrsOffensePicker::entryOf(const QVariant& value) const
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
    put(value, ambient().UserMode() ? entryOf(value) : 0);
}

void NibrsOffensePicker::put(const QVariant& value, int entry)
{
    const QPointer<NibrsOffensePicker> self(this);
    if (ambient().UserMode())
        cboNibrsCode->SetListIndex(entry);
    else
        m_designValue = value;
    if (self)
        Q_EMIT PropertyChanged(QStringLiteral("Value"));
}

void NibrsOffensePicker::TavrinControl_SetValue(const QVariant& value, const UsedValues&)
{
    int entry = 0;
    try {
        entry = ambient().UserMode() ? entryOf(value) : 0;
    } catch (...) {
        cboNibrsCode->SetListIndex(0); // the code of the record before must not be saved with this one
        throw;
    }
    put(value, entry);
}

QString NibrsOffensePicker::Text() const
{
    return cboNibrsCode->Text();
}

bool NibrsOffensePicker::ValueIsNull() const
{
    return IsNull(Value());
}

// Properties

void NibrsOffensePicker::SetEnabled(bool enabled)
{
    setEnabled(enabled);
    cboNibrsCode->setEnabled(enabled);
    Q_EMIT PropertyChanged(QStringLiteral("Enabled"));
}

void NibrsOffensePicker::SetFont(const FontPtr& font)
{
    if (font)
        m_font = font;
    LayoutControls();
    Q_EMIT PropertyChanged(QStringLiteral("Font"));
}

Color NibrsOffensePicker::ForeColor() const
{
    return cboNibrsCode->ForeColor();
}

void NibrsOffensePicker::SetForeColor(Color color)
{
    cboNibrsCode->SetForeColor(color);
    Q_EMIT PropertyChanged(QStringLiteral("ForeColor"));
}

Color NibrsOffensePicker::BackColor() const
{
    return cboNibrsCode->BackColor();
}

void NibrsOffensePicker::SetBackColor(Color color)
{
    cboNibrsCode->SetBackColor(color);
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
    FillList();
    SetFont(ambient().Font());
}

void NibrsOffensePicker::UserControl_ReadProperties(const PropertyBag& bag)
{
    FillList();
    UserControl::UserControl_ReadProperties(bag);
}

void NibrsOffensePicker::UserControl_AmbientChanged(const QString& propertyName)
{
    if (propertyName == QLatin1String("DisplayName") && !ambient().UserMode())
        cboNibrsCode->SetList(0, ambient().DisplayName());
}

void NibrsOffensePicker::UserControl_Resize()
{
    LayoutControls();
}

void NibrsOffensePicker::LayoutControls()
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
        [this] { cboNibrsCode->setGeometry(0, 0, toPixels(ScaleWidth()), cboNibrsCode->height()); },
        [this] { resize(cboNibrsCode->size()); });
    updateGeometry();
}

QSize NibrsOffensePicker::sizeHint() const
{
    return {toPixels(UsualWidth), cboNibrsCode->height()};
}

QSize NibrsOffensePicker::minimumSizeHint() const
{
    return {cboNibrsCode->minimumSizeHint().width(), cboNibrsCode->height()};
}

} // namespace tavrin
