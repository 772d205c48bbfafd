#pragma once

#include "base/xml/XmlDocument.h"
#include "frame/host_contracts/Caches.h"

#include <QString>
#include <QVariant>

#include <memory>
#include <optional>
#include <vector>

namespace tavrin {

class Font;
class PictureSurface;
struct SearchOptions;
struct SearchTerms;

/// The host's users and teams, as one list: users first.
///
/// A value is "user:" and the user's sign-on name, or "team:" and the number of the team's code.
class UserTeamList
{
public:
    static bool isUser(const QVariant& value);
    static bool isTeam(const QVariant& value);
    /// What stands behind the prefix, up to another colon; Null for a value of the other kind.
    static QVariant userId(const QVariant& value);
    static QVariant teamNo(const QVariant& value);

    /// The record of a value of either form; a null node when it is in neither list.
    XmlNode find(const QVariant& value);
    QString value(const XmlNode& item) const;
    QString shortText(const XmlNode& item);
    /// With the kind behind it: "Jack O'Brien (user)".
    QString longText(const XmlNode& item);

    /// The conditions of a search of either list.
    static SearchTerms userTerms(const QString& query, const SearchOptions& options);
    static SearchTerms teamTerms(const QString& query, const SearchOptions& options);
    XmlNodes SearchUsers(const QString& query, const SearchOptions& options);
    /// None where the host's employees have no team.
    XmlNodes SearchTeams(const QString& query, const SearchOptions& options);

    /// The name with the match marked, and the kind in grey below it.
    void drawRow(PictureSurface& picture, const Font& font, const XmlNode& item, const QString& query,
                 bool selected);

    /// The host's lists have changed: they are cloned afresh at the next need.
    void dropDocuments();

private:
    UsersCache& usersCache();
    const XmlDocument& usersDocument();
    const XmlDocument& teamsDocument();

    std::unique_ptr<UsersCache> m_usersCache;
    std::unique_ptr<TableCodeCache> m_tableCodeCache;
    std::optional<XmlDocument> m_usersDocument;
    std::optional<XmlDocument> m_teamsDocument;
};

} // namespace tavrin
