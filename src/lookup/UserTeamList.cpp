#include "lookup/UserTeamList.h"

#include "base/values/Font.h"
#include "base/values/Variant.h"
#include "frame/XmlUtils.h"
#include "frame/host_contracts/Host.h"
#include "frame/modUtils.h"
#include "lookup/NumberedList.h"
#include "widgets/drawing/PictureSurface.h"

namespace tavrin {

using namespace XmlUtils;

namespace {

const QString UserPrefix = QStringLiteral("user:");
const QString TeamPrefix = QStringLiteral("team:");
const QString UserRecord = QStringLiteral("UserAccount");
const QString TeamRecord = QStringLiteral("TableCode");

QVariant identifier(const QVariant& value, const QString& prefix)
{
    const QString text = ToText(value);
    return text.startsWith(prefix) ? QVariant(text.section(QLatin1Char(':'), 1, 1)) : Null();
}

QString part(const XmlNode& item, const char* name)
{
    return item.childElement(QString::fromLatin1(name)).text();
}

QString containsText(const char* field, const QString& text)
{
    return ContainsExpression(UpperCaseExpression(QString::fromLatin1(field)), text);
}

/// The terms that users and teams share: `Identify` gives a value's identifier, Null for the other kind.
template <typename Identify>
SearchTerms sharedTerms(const SearchOptions& options, const QString& activeTest, const QString& key,
                        const Identify& identify)
{
    SearchTerms terms;
    if (!options.ListAll) {
        terms.active << activeTest;
        if (const QVariant held = identify(options.hostValue); !IsNull(held))
            terms.active << key + QLatin1Char('=') + QuoteLiteral(ToText(held));
    }
    if (options.RemoveUsedValues) {
        for (const QVariant& value : options.usedValues) {
            if (const QVariant used = identify(value); !IsNull(used))
                terms.restrictions << key + QStringLiteral(" != ") + QuoteLiteral(ToText(used));
        }
    }
    return terms;
}

} // namespace

// Values

bool UserTeamList::isUser(const QVariant& value)
{
    return ToText(value).startsWith(UserPrefix);
}

bool UserTeamList::isTeam(const QVariant& value)
{
    return ToText(value).startsWith(TeamPrefix);
}

QVariant UserTeamList::userId(const QVariant& value)
{
    return identifier(value, UserPrefix);
}

QVariant UserTeamList::teamNo(const QVariant& value)
{
    return identifier(value, TeamPrefix);
}

XmlNode UserTeamList::find(const QVariant& value)
{
    const bool user = isUser(value);
    const QString key = QuoteLiteral(ToText(user ? userId(value) : teamNo(value)));
    const XmlNode root = (user ? usersDocument() : teamsDocument()).documentElement();
    return root.selectSingleNode(
        (user ? UserRecord + QStringLiteral("[UserId=") : TeamRecord + QStringLiteral("[ValueNo=")) + key +
        QLatin1Char(']'));
}

QString UserTeamList::value(const XmlNode& item) const
{
    if (item.nodeName() == UserRecord)
        return UserPrefix + part(item, "UserId");
    if (item.nodeName() == TeamRecord)
        return TeamPrefix + part(item, "ValueNo");
    return {};
}

QString UserTeamList::shortText(const XmlNode& item)
{
    if (item.nodeName() == UserRecord)
        return usersCache().UserDisplayName(part(item, "UserId"));
    if (item.nodeName() == TeamRecord)
        return part(item, "ValueCode");
    return {};
}

QString UserTeamList::longText(const XmlNode& item)
{
    if (item.nodeName() == UserRecord)
        return shortText(item) + QStringLiteral(" (user)");
    if (item.nodeName() == TeamRecord)
        return shortText(item) + QStringLiteral(" (team)");
    return {};
}

// Searching

SearchTerms UserTeamList::userTerms(const QString& query, const SearchOptions& options)
{
    SearchTerms terms =
        sharedTerms(options, QStringLiteral("IsActive='True'"), QStringLiteral("UserId"), userId);
    if (!query.isEmpty()) {
        const QString text = upperCased(query);
        terms.text << containsText("UserId", text) << containsText("FirstName", text)
                   << containsText("LastName", text) << containsText("concat(FirstName, ' ', LastName)", text)
                   << containsText("OfficerId", text)
                   << StartsWithExpression(UpperCaseExpression(QStringLiteral("BadgeNo")), text);
    }
    return terms;
}

SearchTerms UserTeamList::teamTerms(const QString& query, const SearchOptions& options)
{
    // A number without quotes, unlike the users' test.
    SearchTerms terms =
        sharedTerms(options, QStringLiteral("ActiveFlag=1"), QStringLiteral("ValueNo"), teamNo);
    if (!query.isEmpty()) {
        const QString text = upperCased(query);
        terms.text << containsText("ValueCode", text) << containsText("ValueDesc", text);
    }
    return terms;
}

XmlNodes UserTeamList::SearchUsers(const QString& query, const SearchOptions& options)
{
    return userTerms(query, options).select(usersDocument(), UserRecord);
}

XmlNodes UserTeamList::SearchTeams(const QString& query, const SearchOptions& options)
{
    if (!currentHost().session().FieldExists(QStringLiteral("Personnel"), QStringLiteral("Employee"),
                                             QStringLiteral("DeptTeamNo")))
        return {};
    return teamTerms(query, options).select(teamsDocument(), TeamRecord);
}

// Rows

void UserTeamList::drawRow(PictureSurface& picture, const Font& font, const XmlNode& item,
                           const QString& query, bool selected)
{
    constexpr double SmallerFont = 0.9;
    constexpr Twips LineGap = 0.25F; // of a line's height
    picture.SetFont(font);
    picture.SetFontBold(true);
    modUtils::PrintHighlighted(picture, shortText(item), query);
    picture.SetFontBold(false);
    picture.EndLine();
    picture.SetFontSize(picture.FontSize() * SmallerFont);
    picture.SetCurrentY(picture.CurrentY() + LineGap * picture.TextHeight(QStringLiteral("X")));
    if (!selected)
        picture.SetForeColor(SystemColor::GreyText);
    if (item.nodeName() == UserRecord)
        picture.Print(QStringLiteral("User (") + part(item, "UserId") + QLatin1Char(')'));
    else if (item.nodeName() == TeamRecord)
        picture.Print(QStringLiteral("Team"));
    picture.SetWidth(picture.CurrentX()); // of the second line alone: a long name does not widen the list
    picture.EndLine();
    picture.SetHeight(picture.CurrentY());
}

// Lists

UsersCache& UserTeamList::usersCache()
{
    if (!m_usersCache)
        m_usersCache = currentHost().newUsersCache();
    return *m_usersCache;
}

const XmlDocument& UserTeamList::usersDocument()
{
    if (!m_usersDocument)
        m_usersDocument = cloneForSearch(usersCache().Document());
    return *m_usersDocument;
}

const XmlDocument& UserTeamList::teamsDocument()
{
    if (!m_tableCodeCache)
        m_tableCodeCache = currentHost().newTableCodeCache();
    if (!m_teamsDocument)
        m_teamsDocument = cloneForSearch(m_tableCodeCache->Document(Tables::Team));
    return *m_teamsDocument;
}

void UserTeamList::dropDocuments()
{
    m_usersDocument.reset();
    m_teamsDocument.reset();
}

} // namespace tavrin
