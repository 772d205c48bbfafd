#include "lookup/SearchPicker.h"

#include "base/failure/ByName.h"
#include "base/values/Variant.h"
#include "frame/control_frame/FailurePolicy.h"
#include "lookup/SearchPickerPrivate.h"

#include <QByteArray>
#include <QVariantList>

namespace tavrin {

SearchPicker::SearchPicker(QWidget* parent, const ControlSite& site)
    : UserControl(parent, site)
{
}

SearchPicker::~SearchPicker() = default;

SearchPicker::Private::Private(SearchPicker& picker, SearchBox& box)
    : q(picker)
    , m_box(box)
    , m_font([this] { applyFont(); })
{
    m_box.setParent(&q);
    m_subscriptions.push_back(m_box.SearchRequested.subscribe(
        [this](const QString& query, Suggestions& results) { search(query, results); }));
    m_subscriptions.push_back(
        m_box.DrawItem.subscribe([this](PictureSurface& picture, const XmlNode& item, const QString& query,
                                        bool selected) { drawRow(picture, item, query, selected); }));
    m_subscriptions.push_back(
        m_box.GetItemText.subscribe([this](const XmlNode& item, QString& text) { text = boxText(item); }));
    m_subscriptions.push_back(m_box.SelectionChanged.subscribe([this] { selectionChanged(); }));
    m_subscriptions.push_back(m_box.ItemPicked.subscribe([this](const XmlNode&) { Q_EMIT q.ItemSelect(); }));
    InitDefaults();
}

SearchPicker::Private::~Private() = default;

void SearchPicker::Private::InitDefaults()
{
    m_showName = true;
    m_removeUsedValues = false;
    m_value = Null();
    m_usedValues = std::make_shared<QVariantList>();
}

// Contract

void SearchPicker::TavrinControl_SetValue(const QVariant& value, const UsedValues& usedValues)
{
    // In this order: while the value is put, the used values are the new ones and the host's value is still
    // the one before.
    d->m_usedValues = usedValues ? usedValues : std::make_shared<QVariantList>();
    const QPointer<SearchPicker> self(this);
    const int put = ++d->m_contractPuts;
    try {
        SetValue(value);
    } catch (...) {
        if (self && put == d->m_contractPuts)
            d->loadFailed(value);
        throw;
    }
    if (self && put == d->m_contractPuts) // a follower may have loaded another record
        d->m_hostValue = value;
}

void SearchPicker::Private::putNumber(const QVariant& value, NumberedList& list)
{
    const QPointer<SearchPicker> self(&q);
    m_value = value;
    XmlNode item;
    try {
        item = ToText(value).isEmpty() ? XmlNode() : list.find(value);
    } catch (...) {
        m_box.ForgetSelection();
        selectionForgotten();
        throw;
    }
    if (item.isNull())
        m_box.ClearSelection(); // whose handler writes Null over a value that is not in the list
    else
        m_box.SelectItem(item);
    if (self)
        Q_EMIT q.PropertyChanged(QStringLiteral("Value"));
}

SearchOptions SearchPicker::Private::searchOptions(bool listAll) const
{
    return {listAll, m_removeUsedValues, m_hostValue, *m_usedValues};
}

// Properties

Color SearchPicker::BackColor() const
{
    return d->m_box.BackColor();
}

void SearchPicker::SetBackColor(Color color)
{
    d->m_box.SetBackColor(color);
    Q_EMIT PropertyChanged(QStringLiteral("BackColor"));
}

Color SearchPicker::ForeColor() const
{
    return d->m_box.ForeColor();
}

void SearchPicker::SetForeColor(Color color)
{
    d->m_box.SetForeColor(color);
    Q_EMIT PropertyChanged(QStringLiteral("ForeColor"));
}

FontPtr SearchPicker::Font() const
{
    return d->m_font.get();
}

void SearchPicker::SetFont(const FontPtr& font)
{
    d->m_font.set(font);
    Q_EMIT PropertyChanged(QStringLiteral("Font"));
}

QVariant SearchPicker::Value() const
{
    return d->m_value;
}

bool SearchPicker::ShowName() const
{
    return d->m_showName;
}

QString SearchPicker::TypedText() const
{
    return d->m_box.TypedText();
}

bool SearchPicker::RemoveUsedValues() const
{
    return d->m_removeUsedValues;
}

void SearchPicker::SetRemoveUsedValues(bool remove)
{
    d->m_removeUsedValues = remove;
    Q_EMIT PropertyChanged(QStringLiteral("RemoveUsedValues"));
}

QByteArray SearchPicker::Private::member(const char* name) const
{
    return q.typeName().toLatin1() + '.' + name;
}

void SearchPicker::putValue(const QVariant& value)
{
    byName(*this, d->member("Value").constData(), [&] { SetValue(value); });
}

QString SearchPicker::tellFullText() const
{
    QString text;
    byName(*this, d->member("FullText").constData(), [&] { text = FullText(); });
    return text;
}

QString SearchPicker::tellShortText() const
{
    QString text;
    byName(*this, d->member("ShortText").constData(), [&] { text = ShortText(); });
    return text;
}

SavedProperty SearchPicker::Private::enabledProperty()
{
    return booleanProperty(
        QStringLiteral("Enabled"), true, [this] { return q.Enabled(); },
        [this](bool enabled) { q.SetEnabled(enabled); });
}

SavedProperty SearchPicker::Private::showNameProperty()
{
    return booleanProperty(
        QStringLiteral("ShowName"), true, [this] { return q.ShowName(); },
        [this](bool show) { q.SetShowName(show); });
}

SavedProperty SearchPicker::Private::removeUsedValuesProperty()
{
    return booleanProperty(
        QStringLiteral("RemoveUsedValues"), false, [this] { return q.RemoveUsedValues(); },
        [this](bool remove) { q.SetRemoveUsedValues(remove); });
}

SavedProperty SearchPicker::Private::fontProperty()
{
    return tavrin::fontProperty(
        q.ambient().Font(), [this] { return q.Font(); }, [this](const FontPtr& font) { q.SetFont(font); });
}

SavedProperty SearchPicker::Private::backColorProperty()
{
    return colorProperty(
        QStringLiteral("BackColor"), SystemColor::WindowBackground, [this] { return q.BackColor(); },
        [this](Color color) { q.SetBackColor(color); });
}

SavedProperty SearchPicker::Private::foreColorProperty()
{
    return colorProperty(
        QStringLiteral("ForeColor"), SystemColor::WindowText, [this] { return q.ForeColor(); },
        [this](Color color) { q.SetForeColor(color); });
}

SavedProperty SearchPicker::Private::flagProperty(const QString& key, bool& field)
{
    return booleanProperty(
        key, false, [&field] { return field; }, [&field](bool value) { field = value; });
}

// Lifecycle

void SearchPicker::Private::showDisplayName()
{
    if (!q.ambient().UserMode())
        m_box.SetText(q.ambient().DisplayName());
}

void SearchPicker::UserControl_InitProperties()
{
    trapAndGoOn(
        typeName(), QStringLiteral("InitProperties"), [this] { d->InitDefaults(); },
        [this] { SetFont(ambient().Font()); }, [this] { d->showDisplayName(); });
}

void SearchPicker::UserControl_ReadProperties(const PropertyBag& bag)
{
    const QPointer<SearchPicker> self(this);
    UserControl::UserControl_ReadProperties(bag);
    if (!self)
        return;
    trapAndGoOn(typeName(), QStringLiteral("ReadProperties"), [this] { d->showDisplayName(); });
}

} // namespace tavrin
