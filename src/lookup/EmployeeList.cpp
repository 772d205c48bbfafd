#include "lookup/EmployeeList.h"

#include "base/values/Variant.h"
#include "frame/XmlUtils.h"
#include "frame/host_contracts/Host.h"
#include "frame/modUtils.h"
#include "widgets/drawing/PictureSurface.h"

namespace tavrin {

namespace {

constexpr int BadgeColumn = 25; // letters "X" from the left

NumberedList::Shape employeeShape()
{
    return {QStringLiteral("Employee"),
            QStringLiteral("OfficerNo"),
            QStringLiteral("OfficerId"),
            QStringLiteral("Name"),
            QStringLiteral("ActiveFlag='True'"),
            [](const QString& text) {
                using namespace XmlUtils;
                return QStringList{
                    ContainsExpression(UpperCaseExpression(QStringLiteral("Name")), text),
                    ContainsExpression(UpperCaseExpression(QStringLiteral("OfficerId")), text),
                    StartsWithExpression(UpperCaseExpression(QStringLiteral("BadgeNo")), text)};
            }};
}

/// 0 for an employee without a number.
qint32 officerNumber(const XmlNode& employee)
{
    return ToLong(
        NumberedList::numberIn(employee.childElement(QStringLiteral("OfficerNo")).text()).value_or(0));
}

} // namespace

EmployeeList::EmployeeList()
    : NumberedList(employeeShape(), [] { return currentHost().newEmployeeListCache()->Document(); })
{
}

QString EmployeeList::k9HandlersOnly()
{
    return QStringLiteral("IsK9Handler='True'");
}

XmlNodes EmployeeList::filtered(XmlNodes employees, const Filter& filter)
{
    // Touches nothing but what is here: whoever is asked may delete the picker and its list.
    const auto numbers = employees.childNumbers(QStringLiteral("OfficerNo"));
    auto number = numbers.begin();
    employees.removeIf([&](const XmlNode& employee) {
        const std::optional<qint32> plain = *number++;
        bool exclude = false;
        filter(plain ? *plain : officerNumber(employee), exclude);
        return exclude;
    });
    return employees;
}

XmlNodes EmployeeList::search(const QString& query, SearchOptions options, bool k9HandlersOnly,
                              const Filter& filter)
{
    if (k9HandlersOnly)
        options.restriction = EmployeeList::k9HandlersOnly();
    XmlNodes employees = NumberedList::search(query, options);
    return filter ? filtered(std::move(employees), filter) : employees;
}

void EmployeeList::drawRow(PictureSurface& picture, const XmlNode& employee, const QString& query) const
{
    picture.SetFontBold(true);
    modUtils::PrintHighlighted(picture, shortText(employee) + QStringLiteral(": "), query);
    picture.SetFontBold(false);
    modUtils::PrintHighlighted(picture, longText(employee), query);
    // Set outright, so that the badges make a column; a long name runs below its badge.
    picture.SetCurrentX(picture.TextWidth(QString(BadgeColumn, QLatin1Char('X'))));
    const QString badge = employee.childElement(QStringLiteral("BadgeNo")).text();
    if (!badge.trimmed().isEmpty())
        modUtils::PrintHighlighted(picture, QLatin1Char('#') + badge, query);
    picture.SetWidth(picture.CurrentX());
    picture.EndLine();
    picture.SetHeight(picture.CurrentY());
}

} // namespace tavrin
