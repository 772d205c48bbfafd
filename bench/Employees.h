#pragma once

#include "base/xml/XmlDocument.h"

#include <QString>

// The employees of whom the benchmarks of searches search a list.

namespace tavrin::bench {

struct Employee
{
    QString Name;
    QString OfficerId;
    QString BadgeNo;
};

/// The one at `i` of `count`, counted from 0. Each holds "person" in the name, which ends with `extra`.
inline Employee employeeAt(int i, int count, const QString& extra)
{
    return {QStringLiteral("Person%1, Number%2").arg(i).arg(extra),
            QStringLiteral("A%1").arg(i, 6, 10, QLatin1Char('0')), QString::number(count - i)};
}

/// The root of a new list, as the host delivers it.
inline XmlNode newEmployeeList(XmlDocument& document)
{
    return document.appendChild(document.createElement(QStringLiteral("Employees")));
}

inline void appendEmployee(const XmlNode& list, int number, const Employee& employee)
{
    const XmlNode record = list.appendElement(QStringLiteral("Employee"));
    record.appendElement(QStringLiteral("OfficerNo"), QString::number(number));
    record.appendElement(QStringLiteral("OfficerId"), employee.OfficerId);
    record.appendElement(QStringLiteral("Name"), employee.Name);
    record.appendElement(QStringLiteral("BadgeNo"), employee.BadgeNo);
    record.appendElement(QStringLiteral("ActiveFlag"), QStringLiteral("True"));
    record.appendElement(QStringLiteral("IsK9Handler"));
}

} // namespace tavrin::bench
