#include "base/values/Variant.h"
#include "lookup/FlatPickerForm.h"
#include "lookup/NumberedList.h"
#include "lookup/RecordingPicture.h"
#include "lookup/UserTeamList.h"
#include "support/TestCase.h"
#include "testing/Unhandled.h"

#include <QClipboard>
#include <QVariantList>

using namespace tavrin;
using namespace Qt::StringLiterals;
using tavrin::test::PeopleSite;
using tavrin::test::RecordingPicture;
using tavrin::test::usedValues;
using tavrin::test::UserForm;

namespace {

/// A field in upper case, as an expression has it.
QString upper(const QString& field)
{
    return u"translate("_s + field +
           u", 'abcdefghijklmnopqrstuvwxyzabcdefghijklmnopqrstuvwxyz', "
           "'ABCDEFGHIJKLMNOPQRSTUVWXYZABCDEFGHIJKLMNOPQRSTUVWXYZ')"_s;
}

/// The condition of a typed text on a user, for the text's literal.
QString userText(const QString& literal)
{
    return u"(contains("_s + upper(u"UserId"_s) + u", "_s + literal + u") or contains("_s +
           upper(u"FirstName"_s) + u", "_s + literal + u") or contains("_s + upper(u"LastName"_s) + u", "_s +
           literal + u") or contains("_s + upper(u"concat(FirstName, ' ', LastName)"_s) + u", "_s + literal +
           u") or contains("_s + upper(u"OfficerId"_s) + u", "_s + literal + u") or starts-with("_s +
           upper(u"BadgeNo"_s) + u", "_s + literal + u"))"_s;
}

QString teamText(const QString& literal)
{
    return u"(contains("_s + upper(u"ValueCode"_s) + u", "_s + literal + u") or contains("_s +
           upper(u"ValueDesc"_s) + u", "_s + literal + u"))"_s;
}

QString usersExpression(const QString& query, const SearchOptions& options)
{
    return UserTeamList::userTerms(query, options).expression(u"UserAccount"_s);
}

QString teamsExpression(const QString& query, const SearchOptions& options)
{
    return UserTeamList::teamTerms(query, options).expression(u"TableCode"_s);
}

QStringList idsOf(const XmlNodes& items, const QString& key)
{
    QStringList ids;
    for (const XmlNode& item : items)
        ids << item.childElement(key).text();
    return ids;
}

QStringList users(const QString& query, const SearchOptions& options)
{
    return idsOf(UserTeamList().SearchUsers(query, options), u"UserId"_s);
}

QStringList teams(const QString& query, const SearchOptions& options)
{
    return idsOf(UserTeamList().SearchTeams(query, options), u"ValueNo"_s);
}

SearchOptions listAll()
{
    SearchOptions options;
    options.ListAll = true;
    return options;
}

SearchOptions withUsed(const QVariantList& used)
{
    SearchOptions options = listAll();
    options.RemoveUsedValues = true;
    options.usedValues = used;
    return options;
}

QString numbersUpTo100000Characters()
{
    QString text;
    for (int number = 1; text.size() < 100'000; ++number)
        text += QString::number(number) + u'x';
    return text.left(100'000);
}

/// Everything that a person can type or paste.
void addBadTexts()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("apostrophe") << u"x'y"_s;
    QTest::newRow("double quote") << u"x\"y"_s;
    QTest::newRow("both quotes") << u"x'y\"z"_s;
    QTest::newRow("closed literal") << u"') or true() or ('"_s;
    QTest::newRow("closed double literal") << u"\") or true() or (\""_s;
    QTest::newRow("brackets") << u"]]>[//*"_s;
    QTest::newRow("markup") << u"<a>&amp;</a>"_s;
    QTest::newRow("tab") << u"x\ty"_s;
    QTest::newRow("control characters") << u"x\u0001\u001F\u007Fy"_s;
    QTest::newRow("NUL") << QString(u"x"_s + QChar(0) + u"y"_s);
    QTest::newRow("100,000 characters") << numbersUpTo100000Characters();
    QTest::newRow("10,000 apostrophes") << QString(10'000, u'\'');
    QTest::newRow("high surrogate") << QString(u"x"_s + QChar(0xD83D));
    QTest::newRow("low surrogate") << QString(QChar(0xDE00) + u"x"_s);
    QTest::newRow("emoji") << u"\U0001F600"_s;
    QTest::newRow("right to left") << u"\u05E9\u05DC\u05D5\u05DD"_s;
    QTest::newRow("direction marks") << u"\u202Ex\u202C"_s;
    QTest::newRow("place markers") << u"%1%2"_s;
    QTest::newRow("backslash") << u"\\"_s;
}

} // namespace

/// The expressions, the results and the rows of `FlatUserPicker`'s list.
class tst_UserTeamSearch : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Expressions

    void theExpressionOfUsersReadsWordForWord()
    {
        SearchOptions options;
        options.hostValue = u"user:7"_s;
        options.RemoveUsedValues = true;
        options.usedValues = {u"user:9"_s};
        QCOMPARE(usersExpression(u"ann"_s, options),
                 u"UserAccount[((IsActive='True' or UserId='7') and UserId != '9' and "_s +
                     userText(u"'ANN'"_s) + u")]"_s);
    }

    void theExpressionOfUsersFollowsItsOptions_data()
    {
        QTest::addColumn<SearchOptions>("options");
        QTest::addColumn<QString>("query");
        QTest::addColumn<QString>("expression");
        const QString none;
        SearchOptions options;
        QTest::newRow("defaults") << options << none << u"UserAccount[((IsActive='True'))]"_s;
        QTest::newRow("query") << options << u"q"_s
                               << u"UserAccount[((IsActive='True') and "_s + userText(u"'Q'"_s) + u")]"_s;
        options.hostValue = u"team:7"_s;
        QTest::newRow("held team") << options << none << u"UserAccount[((IsActive='True'))]"_s;
        options.hostValue = u""_s;
        QTest::newRow("held empty text") << options << none << u"UserAccount[((IsActive='True'))]"_s;
        options.hostValue = u"user:a:b"_s;
        QTest::newRow("held user up to its colon")
            << options << none << u"UserAccount[((IsActive='True' or UserId='a'))]"_s;
        options.hostValue = u"user:o'b"_s;
        QTest::newRow("held user with an apostrophe")
            << options << none << u"UserAccount[((IsActive='True' or UserId=concat('o', \"'\", 'b')))]"_s;
        options.ListAll = true;
        QTest::newRow("all, in spite of a held user") << options << none << none;
        QTest::newRow("all with a query")
            << options << u"q"_s << u"UserAccount[("_s + userText(u"'Q'"_s) + u")]"_s;
        QTest::newRow("used values")
            << withUsed({u"user:1"_s, u"team:2"_s, Null(), QVariant(), u""_s, u"x"_s, u"user:o'b"_s}) << none
            << u"UserAccount[(UserId != '1' and UserId != concat('o', \"'\", 'b'))]"_s;
        QTest::newRow("only others' used values") << withUsed({u"team:2"_s}) << none << none;
        options = withUsed({u"user:1"_s});
        options.RemoveUsedValues = false;
        QTest::newRow("used values that may stay") << options << none << none;
    }
    void theExpressionOfUsersFollowsItsOptions()
    {
        QFETCH(SearchOptions, options);
        QFETCH(QString, query);
        QFETCH(QString, expression);
        QCOMPARE(usersExpression(query, options), expression);
    }

    void theExpressionOfTeamsFollowsItsOptions_data()
    {
        QTest::addColumn<SearchOptions>("options");
        QTest::addColumn<QString>("query");
        QTest::addColumn<QString>("expression");
        const QString none;
        SearchOptions options;
        QTest::newRow("defaults") << options << none << u"TableCode[((ActiveFlag=1))]"_s;
        options.hostValue = u"user:7"_s;
        QTest::newRow("held user") << options << none << u"TableCode[((ActiveFlag=1))]"_s;
        options.hostValue = u"team:7"_s;
        options.RemoveUsedValues = true;
        options.usedValues = {u"user:9"_s, u"team:3"_s, u"team:4"_s};
        QTest::newRow("everything") << options << u"dog"_s
                                    << u"TableCode[((ActiveFlag=1 or ValueNo='7') and ValueNo != '3' and "
                                       "ValueNo != '4' and "_s +
                                           teamText(u"'DOG'"_s) + u")]"_s;
        QTest::newRow("all") << listAll() << none << none;
    }
    void theExpressionOfTeamsFollowsItsOptions()
    {
        QFETCH(SearchOptions, options);
        QFETCH(QString, query);
        QFETCH(QString, expression);
        QCOMPARE(teamsExpression(query, options), expression);
    }

    // Results

    void noQueryWithInactiveOnesAndNothingUsedReturnsEveryChildOfBothDocumentsTeamsLast()
    {
        UserForm form;
        form.host.state().users = tavrin::test::xmlOf(
            u"<Users><UserAccount><UserId>b</UserId><IsActive>False</IsActive></UserAccount><Other/>"
            "<UserAccount><UserId>a</UserId></UserAccount></Users>"_s);
        form.picker->SetIncludeInactive(true);
        QCOMPARE(form.found(QString()), QStringList({u"User (b)"_s, QString(), u"User (a)"_s, u"TRAF Team"_s,
                                                     u"K9 Team"_s, u"OLD Team"_s}));
    }

    void aTypedTextFindsAFieldAnywhereAndABadgeFromItsStart_data()
    {
        QTest::addColumn<QString>("query");
        QTest::addColumn<QStringList>("found");
        const QStringList none;
        QTest::newRow("sign-on name") << u"mith"_s << QStringList{u"asmith"_s};
        QTest::newRow("first name") << u"aNN"_s << QStringList({u"asmith"_s, u"7"_s});
        QTest::newRow("last name") << u"o'b"_s << QStringList{u"jobrien"_s};
        QTest::newRow("both names") << u"k o'"_s << QStringList{u"jobrien"_s};
        QTest::newRow("names the other way round") << u"o'brien jack"_s << none;
        QTest::newRow("officer id") << u"-12"_s << QStringList{u"jobrien"_s};
        QTest::newRow("badge from its start only") << u"45"_s << QStringList{u"jobrien"_s};
        QTest::newRow("whole badge") << u"1245"_s << QStringList{u"asmith"_s};
        QTest::newRow("badge and more") << u"12456"_s << none;
        QTest::newRow("a space") << u" "_s
                                 << QStringList({u"jobrien"_s, u"asmith"_s, u"7"_s, u"9"_s, u"bare"_s});
    }
    void aTypedTextFindsAFieldAnywhereAndABadgeFromItsStart()
    {
        QFETCH(QString, query);
        QFETCH(QStringList, found);
        const PeopleSite site;
        QCOMPARE(users(query, listAll()), found);
    }

    void aTeamIsFoundByCodeAndDescriptionAndNotByItsNumber()
    {
        const PeopleSite site;
        QCOMPARE(teams(u"raf"_s, listAll()), QStringList{u"3"_s});
        QCOMPARE(teams(u"dog t"_s, listAll()), QStringList{u"7"_s});
        QCOMPARE(teams(u"3"_s, listAll()), QStringList());
    }

    void theMatchIgnoresCaseForAsciiLettersAlone()
    {
        PeopleSite site;
        site.host.state().users = tavrin::test::xmlOf(
            u"<Users>"_s + tavrin::test::userRecord(u"1"_s, true, u"Jos\u00E9"_s, u"a"_s, u"x"_s, u"1"_s) +
            tavrin::test::userRecord(u"2"_s, true, u"JOS\u00C9"_s, u"a"_s, u"x"_s, u"1"_s) + u"</Users>"_s);
        QCOMPARE(users(u"jos"_s, listAll()), QStringList({u"1"_s, u"2"_s}));
        // The typed letter becomes a capital, and the record's does not: odd, and meant.
        QCOMPARE(users(u"jos\u00E9"_s, listAll()), QStringList{u"2"_s});
    }

    void inactiveOnesAreListedOnRequestOrWhileTheHostHoldsThem()
    {
        const PeopleSite site;
        SearchOptions options;
        QVERIFY(!users(QString(), options).contains(u"7"_s));
        QVERIFY(!teams(QString(), options).contains(u"9"_s));
        options.hostValue = u"user:7"_s;
        QVERIFY(users(QString(), options).contains(u"7"_s));
        QVERIFY(!teams(QString(), options).contains(u"9"_s));
        options.hostValue = u"team:9"_s;
        QVERIFY(!users(QString(), options).contains(u"7"_s));
        QCOMPARE(teams(QString(), options), QStringList({u"3"_s, u"7"_s, u"9"_s}));
        QVERIFY(users(QString(), listAll()).contains(u"7"_s));
    }

    void aUsedTeamRemovesNoUserOfItsNumberAndAUsedUserNoTeam()
    {
        const PeopleSite site;
        QVERIFY(users(QString(), withUsed({u"team:7"_s})).contains(u"7"_s));
        QVERIFY(!teams(QString(), withUsed({u"team:7"_s})).contains(u"7"_s));
        QVERIFY(!users(QString(), withUsed({u"user:7"_s})).contains(u"7"_s));
        QVERIFY(teams(QString(), withUsed({u"user:7"_s})).contains(u"7"_s));
    }

    void theOwnValueIsRemovedOnlyWhenTheHostPassedItAsUsed()
    {
        UserForm form;
        form.picker->SetRemoveUsedValues(true);
        form.picker->SetShowName(false);
        form.contract().SetValue(u"user:asmith"_s, usedValues({}));
        QCOMPARE(form.found(u"ann s"_s).size(), 1);
        form.contract().SetValue(u"user:asmith"_s, usedValues({u"user:asmith"_s}));
        QCOMPARE(form.found(u"ann s"_s).size(), 0);
    }

    void theOptionsAreReadAtTheNextSearch()
    {
        UserForm form;
        QCOMPARE(form.found(u"hanna"_s).size(), 0);
        form.picker->SetIncludeInactive(true);
        QCOMPARE(form.rows().size(), 0); // the open list stays as it is
        QCOMPARE(form.found(u"hanna"_s).size(), 1);
    }

    void withoutTheTeamFieldThePickerOffersUsersOnlyAndStillFindsAStoredTeam()
    {
        UserForm form;
        form.host.state().missingFields.insert(u"Personnel/Employee/DeptTeamNo"_s);
        form.picker->SetIncludeInactive(true);
        QCOMPARE(form.found(u"traf"_s), QStringList());
        QCOMPARE(form.found(QString()).size(), 5);
        QCOMPARE(form.host.state().log.count(u"TableCodeCache.Document 228"_s), 0);
        form.picker->SetValue(u"team:3"_s);
        QCOMPARE(form.tag->Caption(), u"TRAF (team)"_s);
    }

    // Whatever can be typed

    void everyTextIsSearchedForAsText_data() { addBadTexts(); }
    void everyTextIsSearchedForAsText()
    {
        QFETCH(QString, text);
        PeopleSite site;
        XmlDocument list;
        const XmlNode root = list.appendChild(list.createElement(u"Users"_s));
        const auto add = [&](const QString& id, const QString& lastName) {
            const XmlNode user = root.appendElement(u"UserAccount"_s);
            user.appendElement(u"UserId"_s, id);
            user.appendElement(u"LastName"_s, lastName);
        };
        add(u"1"_s, u"before "_s + text.toUpper() + u" after"_s);
        add(u"2"_s, u"other"_s);
        add(u"3"_s, text.toUpper().chopped(1));
        site.host.state().users = list;
        QCOMPARE(users(text, listAll()), QStringList{u"1"_s}); // that one, no other, and no error
        QCOMPARE(teams(text, listAll()), QStringList());
    }

    void everyTextMayBePastedAndFindsNothingOrItselfWithoutAnError_data() { addBadTexts(); }
    void everyTextMayBePastedAndFindsNothingOrItselfWithoutAnError()
    {
        QFETCH(QString, text);
        UserForm form;
        QVERIFY(form.isReady());
        const tavrin::test::Unhandled unhandled;
        QGuiApplication::clipboard()->setText(text);
        form.box->setFocus();
        form.press(Qt::Key_V, Qt::ControlModifier);
        QVERIFY(!form.box->Text().isEmpty());
        QVERIFY(form.box->ListIsOpen());
        QCOMPARE(form.rows(), QStringList());
        QCOMPARE(unhandled.texts, QStringList());
        form.press(Qt::Key_A, Qt::ControlModifier);
        form.choose(u"smith"_s);
        QCOMPARE(form.picker->Value(), QVariant(u"user:asmith"_s));
    }

    // Rows

    void aRowHasTheNameInBoldWithItsMatchAndTheKindInGreyBelow()
    {
        const PeopleSite site;
        UserTeamList list;
        Font font;
        font.SetName(u"Sans"_s);
        font.SetSize(10);
        RecordingPicture picture;
        list.drawRow(picture, font, list.find(u"user:asmith"_s), u"SM"_s, false);
        // Bold letters of 10 points are 101 twips wide and 200 high, letters of 9 points 90 and 180.
        QCOMPARE(picture.calls,
                 QStringList({u"font Sans 10"_s, u"bold"_s, u"print \"Ann \" at 0,0"_s,
                              u"mark 404,0 to 606,200"_s, u"x 404"_s, u"y 0"_s, u"print \"Sm\" at 404,0"_s,
                              u"print \"ith\" at 606,0"_s, u"not bold"_s, u"end of line"_s, u"size 9"_s,
                              u"y 245"_s, u"colour 80000011"_s, u"print \"User (asmith)\" at 0,245"_s,
                              u"width 1170"_s, u"end of line"_s, u"height 425"_s}));
        QCOMPARE(font.Size(), 10.0); // the control's own is left alone
        QVERIFY(!font.Bold());
    }

    void aSelectedRowKeepsItsColour()
    {
        const PeopleSite site;
        UserTeamList list;
        RecordingPicture picture;
        list.drawRow(picture, Font(), list.find(u"user:asmith"_s), QString(), true);
        QCOMPARE(picture.calls.filter(u"colour"_s), QStringList());
        QVERIFY(picture.calls.contains(u"print \"Ann Smith\" at 0,0"_s));
    }

    void aTeamsRowSaysTeamAndHasNoMarkBelow()
    {
        const PeopleSite site;
        UserTeamList list;
        RecordingPicture picture;
        list.drawRow(picture, Font(), list.find(u"team:3"_s), u"t"_s, false);
        QStringList texts;
        for (const QString& call : picture.calls.filter(u"print"_s))
            texts << call.section(u'"', 1, 1);
        QCOMPARE(texts, QStringList({u"T"_s, u"RAF"_s, u"Team"_s}));
        QCOMPARE(picture.calls.filter(u"mark"_s).size(), 1);
    }

    void aRowOfAnotherRecordIsEmpty()
    {
        UserTeamList list;
        RecordingPicture picture;
        const XmlDocument other = tavrin::test::xmlOf(u"<Other><UserId>x</UserId></Other>"_s);
        list.drawRow(picture, Font(), other.documentElement(), u"x"_s, false);
        QCOMPARE(picture.calls.filter(u"print"_s), QStringList());
        QCOMPARE(picture.Width(), 0.0F);
        QVERIFY(picture.Height() > 0);
    }

    void theWidthOfARowFollowsItsSecondLineAlone()
    {
        PeopleSite site;
        site.host.state().userNames.insert(u"asmith"_s, QString(200, u'n'));
        UserTeamList list;
        Font font;
        font.SetSize(10);
        RecordingPicture picture;
        list.drawRow(picture, font, list.find(u"user:asmith"_s), QString(), false);
        QCOMPARE(picture.Width(), 13 * 90.0F);
    }

    void thePickersRowsHaveItsFontAndTellWhichIsHighlighted()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.picker->Font()->SetSize(31);
        form.type(u"traf"_s);
        RecordingPicture picture;
        form.box->DrawItem.raise(picture, UserTeamList().find(u"team:3"_s), u"traf"_s, true);
        QVERIFY(picture.calls.first().endsWith(u" 31"_s));
        QCOMPARE(picture.calls.filter(u"colour"_s), QStringList());
        QCOMPARE(picture.calls.filter(u"mark"_s).size(), 1);
        RecordingPicture plain;
        form.box->DrawItem.raise(plain, UserTeamList().find(u"team:3"_s), u"traf"_s, false);
        QCOMPARE(plain.calls.filter(u"colour"_s).size(), 1);
    }

    void theItemsTextInTheBoxIsTheShortOne()
    {
        UserForm form;
        UserTeamList list;
        QString text;
        form.box->GetItemText.raise(list.find(u"team:3"_s), text);
        QCOMPARE(text, u"TRAF"_s);
        form.box->GetItemText.raise(list.find(u"user:9"_s), text);
        QCOMPARE(text, u"Ninel Zed"_s);
    }
};

TAVRIN_TEST_MAIN(tst_UserTeamSearch)
#include "tst_UserTeamSearch.moc"
