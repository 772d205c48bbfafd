#include "lookup/SearchPicker.h"

#include "base/values/Variant.h"
#include "frame/control_frame/FailurePolicy.h"

#include <QVariantList>

namespace tavrin {

SearchPicker::SearchPicker(QWidget* parent, const ControlSite& site, SearchBox& box)
    : UserControl(parent, site)
    , m_box(box)
    , m_font([this] { applyFont(); })
{
    m_box.setParent(this);
    m_subscriptions.push_back(m_box.SearchRequested.subscribe(
        [this](const QString& query, Suggestions& results) { search(query, results); }));
    m_subscriptions.push_back(
        m_box.DrawItem.subscribe([this](PictureSurface& picture, const XmlNode& item, const QString& query,
                                        bool selected) { drawRow(picture, item, query, selected); }));
    m_subscriptions.push_back(
        m_box.GetItemText.subscribe([this](const XmlNode& item, QString& text) { text = boxText(item); }));
    m_subscriptions.push_back(m_box.SelectionChanged.subscribe([this] { selectionChanged(); }));
    m_subscriptions.push_back(m_box.ItemPicked.subscribe([this](const XmlNode&) { Q_EMIT ItemSelect(); }));
    InitDefaults();
}

void SearchPicker::InitDefaults()
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
    m_usedValues = usedValues ? usedValues : std::make_shared<QVariantList>();
    const QPointer<SearchPicker> self(this);
    const int put = ++m_contractPuts;
    try {
        SetValue(value);
    } catch (...) {
        if (self && put == m_contractPuts)
            loadFailed(value);
        throw;
    }
    if (self && put == m_contractPuts) // a follower may have loaded another record
        m_hostValue = value;
}

void SearchPicker::putNumber(const QVariant& value, NumberedList& list)
{
    const QPointer<SearchPicker> self(this);
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
        Q_EMIT PropertyChanged(QStringLiteral("Value"));
}

SearchOptions SearchPicker::searchOptions(bool listAll) const
{
    return {listAll, m_removeUsedValues, m_hostValue, *m_usedValues};
}

// Properties

void SearchPicker::SetBackColor(Color color)
{
    m_box.SetBackColor(color);
    Q_EMIT PropertyChanged(QStringLiteral("BackColor"));
}

void SearchPicker::SetForeColor(Color color)
{
    m_box.SetForeColor(color);
    Q_EMIT PropertyChanged(QStringLiteral("ForeColor"));
}

void SearchPicker::SetFont(const FontPtr& font)
{
    m_font.set(font);
    Q_EMIT PropertyChanged(QStringLiteral("Font"));
}

void SearchPicker::SetRemoveUsedValues(bool remove)
{
    m_removeUsedValues = remove;
    Q_EMIT PropertyChanged(QStringLiteral("RemoveUsedValues"));
}

SavedProperty SearchPicker::enabledProperty()
{
    return booleanProperty(
        QStringLiteral("Enabled"), true, [this] { return Enabled(); },
        [this](bool enabled) { SetEnabled(enabled); });
}

SavedProperty SearchPicker::showNameProperty()
{
    return booleanProperty(
        QStringLiteral("ShowName"), true, [this] { return ShowName(); },
        [this](bool show) { SetShowName(show); });
}

SavedProperty SearchPicker::removeUsedValuesProperty()
{
    return booleanProperty(
        QStringLiteral("RemoveUsedValues"), false, [this] { return RemoveUsedValues(); },
        [this](bool remove) { SetRemoveUsedValues(remove); });
}

SavedProperty SearchPicker::fontProperty()
{
    return tavrin::fontProperty(
        ambient().Font(), [this] { return Font(); }, [this](const FontPtr& font) { SetFont(font); });
}

SavedProperty SearchPicker::backColorProperty()
{
    return colorProperty(
        QStringLiteral("BackColor"), SystemColor::WindowBackground, [this] { return BackColor(); },
        [this](Color color) { SetBackColor(color); });
}

SavedProperty SearchPicker::foreColorProperty()
{
    return colorProperty(
        QStringLiteral("ForeColor"), SystemColor::WindowText, [this] { return ForeColor(); },
        [this](Color color) { SetForeColor(color); });
}

SavedProperty SearchPicker::flagProperty(const QString& key, bool& field)
{
    return booleanProperty(
        key, false, [&field] { return field; }, [&field](bool value) { field = value; });
}

// Lifecycle

void SearchPicker::showDisplayName()
{
    if (!ambient().UserMode())
        m_box.SetText(ambient().DisplayName());
}

void SearchPicker::UserControl_InitProperties()
{
    trapAndGoOn(
        typeName(), QStringLiteral("InitProperties"), [this] { InitDefaults(); },
        [this] { SetFont(ambient().Font()); }, [this] { showDisplayName(); });
}

void SearchPicker::UserControl_ReadProperties(const PropertyBag& bag)
{
    const QPointer<SearchPicker> self(this);
    UserControl::UserControl_ReadProperties(bag);
    if (!self)
        return;
    trapAndGoOn(typeName(), QStringLiteral("ReadProperties"), [this] { showDisplayName(); });
}

QString SearchPicker::TypedText() const
{
    return m_box.TypedText();
}

} // namespace tavrin
