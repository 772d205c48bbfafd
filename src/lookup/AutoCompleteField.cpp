#include "lookup/AutoCompleteField.h"

#include "base/failure/ByName.h"
#include "base/values/Variant.h"
#include "frame/control_frame/FailurePolicy.h"
#include "lookup/AutoCompleteFieldPrivate.h"
#include "widgets/boxes/TextBox.h"
#include "widgets/lists/DropDownList.h"

#include <QEvent>
#include <QPointer>

namespace tavrin {

namespace {

constexpr Color ChosenBackColor = Color::rgb(255, 255, 128);
constexpr Color ChosenForeColor = Color::rgb(0, 0, 0);

} // namespace

AutoCompleteField::Private::Private(AutoCompleteField& field)
    : q(field)
    , txtSearch(new TextBox(&q))
    , lstMatches(new DropDownList(&q))
    , m_value(Null())
{
    txtSearch->setObjectName(QStringLiteral("txtSearch"));
    lstMatches->setObjectName(QStringLiteral("lstMatches"));
    lstMatches->lower(); // the box covers it
    lstMatches->setBox(txtSearch);
    m_subscriptions.push_back(
        txtSearch->KeyDown.subscribe([this](int& key, int shift) { txtSearch_KeyDown(key, shift); }));
    m_subscriptions.push_back(txtSearch->KeyPress.subscribe([this](int& key) { txtSearch_KeyPress(key); }));
    m_subscriptions.push_back(txtSearch->Change.subscribe([this] { txtSearch_Change(); }));
    m_subscriptions.push_back(
        lstMatches->KeyDown.subscribe([this](int& key, int shift) { lstMatches_KeyDown(key, shift); }));
    m_subscriptions.push_back(lstMatches->Click.subscribe([this] { lstMatches_Click(); }));
}

AutoCompleteField::AutoCompleteField(QWidget* parent, const ControlSite& site)
    : UserControl(parent, site)
    , d(std::make_unique<Private>(*this))
{
    setFocusProxy(d->txtSearch);
    setFocusPolicy(Qt::StrongFocus); // so that the access key of a label finds the way to the box
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    resize(sizeHint());
    begin();
}

AutoCompleteField::~AutoCompleteField() = default;

// Properties

SavedProperties AutoCompleteField::savedProperties()
{
    SavedProperty foreColor = colorProperty(
        QStringLiteral("ForeColor"), SystemColor::WindowText, [this] { return ForeColor(); },
        [this](Color color) { SetForeColor(color); });
    foreColor.writtenKey = QStringLiteral("Forecolor"); // saved forms hold this form of the key
    return {
        booleanProperty(
            QStringLiteral("Enabled"), true, [this] { return Enabled(); },
            [this](bool enabled) { SetEnabled(enabled); }),
        {QStringLiteral("TableNo"), PropertyKind::Long, Tables::None, [this] { return TableNo(); },
         [this](const QVariant& value) { SetTableNo(value.toInt()); }},
        booleanProperty(
            QStringLiteral("IncludeInactiveValues"), false, [this] { return IncludeInactiveValues(); },
            [this](bool include) { SetIncludeInactiveValues(include); }),
        {QStringLiteral("Value"), PropertyKind::Variant, Null(), [this] { return Value(); },
         [this](const QVariant& value) { SetValue(value); }},
        {QStringLiteral("Text"), PropertyKind::Text, QString(), [this] { return Text(); },
         [this](const QVariant& value) { SetText(value); }},
        colorProperty(
            QStringLiteral("BackColor"), SystemColor::WindowBackground, [this] { return BackColor(); },
            [this](Color color) { SetBackColor(color); }),
        foreColor,
    };
}

void AutoCompleteField::UserControl_InitProperties()
{
    trapAndGoOn(
        typeName(), QStringLiteral("InitProperties"), [this] { SetValue(Null()); },
        [this] { SetEnabled(true); }, [this] { SetBackColor(SystemColor::WindowBackground); },
        [this] { SetForeColor(SystemColor::WindowText); });
}

bool AutoCompleteField::Enabled() const
{
    return d->m_enabled;
}

void AutoCompleteField::SetEnabled(bool enabled)
{
    d->m_enabled = enabled;
    if (!enabled)
        d->ShowList(false);
    d->txtSearch->setEnabled(enabled);
    d->lstMatches->setEnabled(enabled);
    Q_EMIT PropertyChanged(QStringLiteral("Enabled"));
}

TableNumber AutoCompleteField::TableNo() const
{
    return d->m_tableNo;
}

void AutoCompleteField::SetTableNo(TableNumber tableNo)
{
    d->m_tableNo = tableNo;
    if (ReportChange(QStringLiteral("TableNo")))
        d->LoadList();
}

bool AutoCompleteField::IncludeInactiveValues() const
{
    return d->m_includeInactive;
}

void AutoCompleteField::SetIncludeInactiveValues(bool include)
{
    d->m_includeInactive = include;
    if (ReportChange(QStringLiteral("IncludeInactiveValues")))
        d->LoadList();
}

QVariant AutoCompleteField::Value() const
{
    return d->m_value;
}

void AutoCompleteField::SetValue(const QVariant& value)
{
    d->m_value = IsEmpty(value) ? Null() : value;
    if (!ReportChange(QStringLiteral("Value")))
        return;
    const bool chosen = !IsNull(d->m_value); // a follower may have set another one
    // The system's colours, and not the stored ones, when the value goes: this is meant.
    d->txtSearch->SetBackColor(chosen ? ChosenBackColor : SystemColor::WindowBackground);
    d->txtSearch->SetForeColor(chosen ? ChosenForeColor : SystemColor::WindowText);
}

QVariant AutoCompleteField::Text() const
{
    return d->txtSearch->Text();
}

void AutoCompleteField::SetText(const QVariant& text)
{
    const QPointer<AutoCompleteField> self(this); // an empty text drops the value, which has followers
    d->txtSearch->SetText(ToText(text));
    if (self)
        Q_EMIT PropertyChanged(QStringLiteral("Text"));
}

Color AutoCompleteField::BackColor() const
{
    return d->m_backColor;
}

void AutoCompleteField::SetBackColor(Color color)
{
    d->m_backColor = color;
    if (IsNull(d->m_value))
        d->txtSearch->SetBackColor(color);
    Q_EMIT PropertyChanged(QStringLiteral("BackColor"));
}

Color AutoCompleteField::ForeColor() const
{
    return d->m_foreColor;
}

void AutoCompleteField::SetForeColor(Color color)
{
    d->m_foreColor = color;
    if (IsNull(d->m_value))
        d->txtSearch->SetForeColor(color);
    Q_EMIT PropertyChanged(QStringLiteral("ForeColor"));
}

void AutoCompleteField::putTableNo(TableNumber tableNo)
{
    byName(*this, "AutoCompleteField.TableNo", [&] { SetTableNo(tableNo); });
}

void AutoCompleteField::putIncludeInactiveValues(bool include)
{
    byName(*this, "AutoCompleteField.IncludeInactiveValues", [&] { SetIncludeInactiveValues(include); });
}

void AutoCompleteField::putText(const QVariant& text)
{
    byName(*this, "AutoCompleteField.Text", [&] { SetText(text); });
}

void AutoCompleteField::ReloadList()
{
    d->LoadList();
}

// Mouse and focus

void AutoCompleteField::UserControl_ExitFocus()
{
    d->ShowList(false);
}

void AutoCompleteField::UserControl_LostFocus()
{
    d->ShowList(false);
}

void AutoCompleteField::UserControl_MouseUp(int button, int, Twips, Twips)
{
    if ((button & 1) != 0)
        d->ShowList(false);
}

// Layout

QSize AutoCompleteField::sizeHint() const
{
    return d->txtSearch->sizeHint();
}

QSize AutoCompleteField::minimumSizeHint() const
{
    return d->txtSearch->minimumSizeHint();
}

void AutoCompleteField::UserControl_Resize()
{
    continueOnError([&] { d->txtSearch->resize(toPixels(ScaleWidth()), d->txtSearch->sizeHint().height()); },
                    [&] {
                        if (!ambient().UserMode() && height() > d->txtSearch->height())
                            SetHeight(toTwips(d->txtSearch->height()));
                    },
                    [&] {
                        if (!ambient().UserMode() && width() > d->txtSearch->width())
                            SetWidth(toTwips(d->txtSearch->width()));
                    },
                    [&] { d->lstMatches->setGeometry(d->txtSearch->geometry()); });
}

void AutoCompleteField::changeEvent(QEvent* event)
{
    UserControl::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        updateGeometry();
        UserControl_Resize(); // the box's height follows its font
    }
}

} // namespace tavrin
