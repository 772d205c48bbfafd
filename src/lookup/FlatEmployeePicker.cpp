#include "lookup/FlatEmployeePicker.h"

#include "widgets/drawing/PictureSurface.h"
#include "widgets/drawing/Placement.h"
#include "widgets/labels/Tag.h"

namespace tavrin {

FlatEmployeePicker::FlatEmployeePicker(QWidget* parent, const ControlSite& site)
    : FlatPicker(parent, site)
{
    setFocusProxy(acTextBox);
    begin();
}

FlatEmployeePicker::~FlatEmployeePicker() = default;

// Properties

void FlatEmployeePicker::SetValue(const QVariant& value)
{
    putNumber(value, m_list);
}

void FlatEmployeePicker::SetK9HandlersOnly(bool handlersOnly)
{
    m_k9HandlersOnly = handlersOnly;
    Q_EMIT PropertyChanged(QStringLiteral("K9HandlersOnly"));
}

void FlatEmployeePicker::SetListAllEmployees(bool listAll)
{
    m_listAllEmployees = listAll;
    Q_EMIT PropertyChanged(QStringLiteral("ListAllEmployees"));
}

SavedProperties FlatEmployeePicker::savedProperties()
{
    return {enabledProperty(),
            showNameProperty(),
            removeUsedValuesProperty(),
            fontProperty(),
            flagProperty(QStringLiteral("K9HandlersOnly"), m_k9HandlersOnly),
            flagProperty(QStringLiteral("ListAllEmployees"), m_listAllEmployees),
            backColorProperty(),
            foreColorProperty(),
            captionProperty(),
            requiredProperty()};
}

// The list

void FlatEmployeePicker::search(const QString& query, Suggestions& results)
{
    results = m_list.search(query, searchOptions(m_listAllEmployees), m_k9HandlersOnly,
                            followersOf(&FlatEmployeePicker::Filter));
}

void FlatEmployeePicker::drawRow(PictureSurface& picture, const XmlNode& item, const QString& query, bool)
{
    picture.SetFont(*Font());
    m_list.drawRow(picture, item, query);
}

QString FlatEmployeePicker::boxText(const XmlNode& item)
{
    return m_list.shortText(item);
}

QVariant FlatEmployeePicker::valueOf(const XmlNode& item)
{
    return m_list.number(item);
}

QString FlatEmployeePicker::longText(const XmlNode& item)
{
    return m_list.longText(item);
}

// Layout

int FlatEmployeePicker::tagLength() const
{
    return 25;
}

void FlatEmployeePicker::placeTag(Tag& tag, Twips margin)
{
    moveTo(tag, margin, captionHeight() + margin); // as wide as its caption
}

} // namespace tavrin
