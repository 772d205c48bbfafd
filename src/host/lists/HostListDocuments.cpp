#include "host/lists/HostLists.h"

// The XML forms of the lists, whose shapes the pickers read.

namespace tavrin {

namespace {

QString trueOrFalse(bool value)
{
    return value ? QStringLiteral("True") : QStringLiteral("False");
}

QString oneOrZero(bool value)
{
    return value ? QStringLiteral("1") : QStringLiteral("0");
}

/// Text as XML can hold it: control characters and lone surrogates are left out, so that one odd row in the
/// database does not cost the whole list.
QString xmlText(const QString& text)
{
    QString clean;
    clean.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        const bool pair = c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
        if (pair) {
            clean += c;
            clean += text.at(++i);
        } else if (!c.isSurrogate() && c.unicode() < 0xFFFE &&
                   (c.unicode() >= 0x20 || c == QLatin1Char('\n') || c == QLatin1Char('\t'))) {
            clean += c;
        }
    }
    return clean;
}

XmlDocument newList(const QString& root)
{
    XmlDocument document;
    document.appendChild(document.createElement(root));
    return document;
}

void append(const XmlNode& node, const char* name, const QString& text)
{
    node.appendElement(QString::fromLatin1(name), xmlText(text));
}

template <typename Build>
XmlDocument cloneOf(std::unique_ptr<XmlDocument>& kept, const Build& build)
{
    if (!kept)
        kept = std::make_unique<XmlDocument>(build());
    return kept->cloneNode(true);
}

XmlDocument buildTableCodes(const QList<CodeValueRow>& rows)
{
    XmlDocument document = newList(QStringLiteral("TableCodes"));
    for (const CodeValueRow& row : rows) {
        const XmlNode node = document.documentElement().appendElement(QStringLiteral("TableCode"));
        append(node, "ValueNo", QString::number(row.ValueNo));
        append(node, "ValueCode", row.Id);
        append(node, "ValueDesc", row.DisplayText);
        append(node, "ActiveFlag", oneOrZero(row.Active));
    }
    return document;
}

XmlDocument buildEmployees(const QList<EmployeeRow>& rows)
{
    XmlDocument document = newList(QStringLiteral("Employees"));
    for (const EmployeeRow& row : rows) {
        const XmlNode node = document.documentElement().appendElement(QStringLiteral("Employee"));
        append(node, "OfficerNo", QString::number(row.OfficerNo));
        append(node, "OfficerId", row.OfficerId);
        append(node, "Name", row.Name);
        append(node, "BadgeNo", row.BadgeNo);
        append(node, "ActiveFlag", trueOrFalse(row.Active));
        append(node, "IsK9Handler", trueOrFalse(row.K9Handler));
    }
    return document;
}

XmlDocument buildOffenses(const QList<OffenseRow>& rows)
{
    XmlDocument document = newList(QStringLiteral("Offenses"));
    for (const OffenseRow& row : rows) {
        const XmlNode node = document.documentElement().appendElement(QStringLiteral("Offense"));
        append(node, "OffenseNo", QString::number(row.OffenseNo));
        append(node, "OffenseId", row.OffenseId);
        append(node, "Description", row.Description);
        append(node, "RptCode", row.RptCode);
        append(node, "ActiveFlag", oneOrZero(row.Active));
    }
    return document;
}

XmlDocument buildUsers(const QList<UserRow>& rows)
{
    XmlDocument document = newList(QStringLiteral("UserAccounts"));
    for (const UserRow& row : rows) {
        const XmlNode node = document.documentElement().appendElement(QStringLiteral("UserAccount"));
        append(node, "UserId", row.UserId);
        append(node, "IsActive", trueOrFalse(row.Active));
        append(node, "FirstName", row.FirstName);
        append(node, "LastName", row.LastName);
        append(node, "OfficerId", row.OfficerId);
        append(node, "BadgeNo", row.BadgeNo);
    }
    return document;
}

} // namespace

XmlDocument HostLists::tableCodeDocument(int tableNo) const
{
    return cloneOf(m_tableDocuments[tableNo], [&] { return buildTableCodes(codeValues(tableNo)); });
}

XmlDocument HostLists::employeeDocument() const
{
    return cloneOf(m_employeeDocument, [&] { return buildEmployees(m_employees); });
}

XmlDocument HostLists::offenseDocument() const
{
    return cloneOf(m_offenseDocument, [&] { return buildOffenses(m_offenses); });
}

XmlDocument HostLists::userDocument() const
{
    return cloneOf(m_userDocument, [&] { return buildUsers(m_users); });
}

} // namespace tavrin
