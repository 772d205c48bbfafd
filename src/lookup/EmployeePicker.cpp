#include "lookup/EmployeePicker.h"

#include "base/values/Variant.h"
#include "frame/host_contracts/Host.h"
#include "widgets/drawing/Placement.h"
#include "widgets/labels/Label.h"

namespace tavrin {

EmployeePicker::EmployeePicker(QWidget* parent, const ControlSite& site)
    : ComboPicker(parent, site, m_list)
{
    begin();
}

EmployeePicker::~EmployeePicker() = default;

// Properties

void EmployeePicker::SetK9HandlersOnly(bool handlersOnly)
{
    m_k9HandlersOnly = handlersOnly;
    Q_EMIT PropertyChanged(QStringLiteral("K9HandlersOnly"));
}

void EmployeePicker::SetListAllEmployees(bool listAll)
{
    m_listAllEmployees = listAll;
    Q_EMIT PropertyChanged(QStringLiteral("ListAllEmployees"));
}

QString EmployeePicker::FullText() const
{
    return IsNull(m_value) ? QString() : currentHost().newEmployeeListCache()->FullText(m_value);
}

QString EmployeePicker::ShortText() const
{
    return IsNull(m_value) ? QString() : currentHost().newEmployeeListCache()->ShortText(m_value);
}

SavedProperties EmployeePicker::savedProperties()
{
    return {enabledProperty(),
            showNameProperty(),
            removeUsedValuesProperty(),
            fontProperty(),
            flagProperty(QStringLiteral("K9HandlersOnly"), m_k9HandlersOnly),
            flagProperty(QStringLiteral("ListAllEmployees"), m_listAllEmployees),
            backColorProperty(),
            foreColorProperty()};
}

// The list

void EmployeePicker::search(const QString& query, Suggestions& results)
{
    results = m_list.search(query, searchOptions(m_listAllEmployees), m_k9HandlersOnly,
                            followersOf(&EmployeePicker::Filter));
}

void EmployeePicker::drawRow(PictureSurface& picture, const XmlNode& item, const QString& query, bool)
{
    applyRowFont(picture);
    m_list.drawRow(picture, item, query);
}

// Layout

Twips EmployeePicker::comboWidth() const
{
    return 1695;
}

Twips EmployeePicker::listWidth() const
{
    return Width();
}

void EmployeePicker::placeLabel()
{
    const Twips left = labelLeft();
    moveTo(*lblDescription, left, toTwips(lblDescription->y()));
    if (left < ScaleWidth() && ShowName())
        moveTo(*lblDescription, left, toTwips(lblDescription->y()), ScaleWidth() - left,
               heightOf(*lblDescription));
}

} // namespace tavrin
