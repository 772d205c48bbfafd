#pragma once

#include "base/xml/XmlDocument.h"
#include "frame/host_contracts/Services.h"
#include "host/lists/HostRows.h"

#include <QHash>
#include <QMap>
#include <QSet>

#include <map>
#include <memory>
#include <optional>

namespace tavrin {

/// Everything that the host keeps in memory, as read in one go: lists, settings, rights.
///
/// Read only once it is there, so that a refresh replaces it as a whole or not at all.
class HostLists
{
public:
    /// Reads everything from the database; raises an `Error` when that fails.
    static std::shared_ptr<const HostLists> read(Database& database);

    /// Values of a table in their order; none for a table that does not exist.
    const QList<CodeValueRow>& codeValues(int tableNo) const;
    /// nullptr when the table has no such value.
    const CodeValueRow* codeValue(int tableNo, int valueNo) const;
    const EmployeeRow* employee(int officerNo) const;
    const OffenseRow* offense(int offenseNo) const;
    /// Sign-on names compare without case.
    const UserRow* user(const QString& userId) const;

    /// Each call gives a clone, which shares its tree with the others until it is changed.
    XmlDocument tableCodeDocument(int tableNo) const;
    XmlDocument employeeDocument() const;
    XmlDocument offenseDocument() const;
    XmlDocument userDocument() const;

    QString setting(const QString& section, const QString& key) const;
    /// The numbered attachment folder as its table names it; none for a number that nobody has.
    std::optional<QString> attachmentFolder(int folderNo) const;
    /// All of them.
    const QMap<int, QString>& attachmentFolders() const { return m_attachmentFolders; }
    bool hasRight(const QString& userId, const QString& module, int right) const;
    bool isRequired(const QString& module, const QString& table, const QString& field,
                    const QString& extra) const;

    /// Names of the lists that differ from `before`.
    QStringList differencesFrom(const HostLists& before) const;

private:
    HostLists() = default;
    void readCodeValues(Database& database);
    void readEmployees(Database& database);
    void readOffenses(Database& database);
    void readUsers(Database& database);
    void readSettings(Database& database);

    std::map<int, QList<CodeValueRow>> m_codeValues;
    QList<EmployeeRow> m_employees;
    QList<OffenseRow> m_offenses;
    QList<UserRow> m_users;
    QHash<qint64, int> m_codeIndex; // table and value number in one
    QHash<int, int> m_employeeIndex;
    QHash<int, int> m_offenseIndex;
    QHash<QString, int> m_userIndex;
    QHash<QString, QString> m_settings;
    QMap<int, QString> m_attachmentFolders;
    QSet<QString> m_rights;
    QSet<QString> m_required;

    // Built at the first call, then only cloned.
    mutable std::map<int, std::unique_ptr<XmlDocument>> m_tableDocuments;
    mutable std::unique_ptr<XmlDocument> m_employeeDocument;
    mutable std::unique_ptr<XmlDocument> m_offenseDocument;
    mutable std::unique_ptr<XmlDocument> m_userDocument;
};

/// The lists as they are at present, shared by all services of one host.
struct HostListsHolder
{
    std::shared_ptr<const HostLists> Lists;
};

} // namespace tavrin
