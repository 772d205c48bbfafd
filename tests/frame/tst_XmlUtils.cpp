#include "base/failure/Error.h"
#include "frame/XmlUtils.h"
#include "support/TestCase.h"

using namespace Qt::StringLiterals;
using tavrin::XmlDocument;
using tavrin::XmlNode;
using tavrin::XmlNodes;
namespace XmlUtils = tavrin::XmlUtils;

namespace {

const QStringList Names = {
    u"O'Brien"_s, u"Smith \"Smitty\" Jones"_s, u"D'Arcy \"Dee\" O'Neil"_s, u"'"_s, u"plain"_s, u"Jos\u00E9"_s,
    u"<&> ]]>"_s};

XmlDocument people()
{
    XmlDocument document;
    const XmlNode list = document.appendChild(document.createElement(u"List"_s));
    for (const QString& name : Names) {
        const XmlNode person = list.appendElement(u"Person"_s);
        person.appendElement(u"Name"_s, name);
        person.appendElement(u"Active"_s, name == u"plain"_s ? u"0"_s : u"1"_s);
    }
    return document;
}

QStringList found(const QString& condition)
{
    QStringList names;
    for (const XmlNode& person : people().selectNodes(u"List/Person["_s + condition + u']'))
        names << person.childElement(u"Name"_s).text();
    return names;
}

} // namespace

class tst_XmlUtils : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theEmptyTextGivesAPairOfApostrophes() { QCOMPARE(XmlUtils::QuoteLiteral(u""_s), u"''"_s); }

    void anApostropheWithinGivesAConcatCall()
    {
        QCOMPARE(XmlUtils::QuoteLiteral(u"can't"_s), u"concat('can', \"'\", 't')"_s);
        QCOMPARE(XmlUtils::QuoteLiteral(u"O'Brien"_s), u"concat('O', \"'\", 'Brien')"_s);
    }

    void aLoneApostropheGivesTwoEmptyPieces()
    {
        QCOMPARE(XmlUtils::QuoteLiteral(u"'"_s), u"concat('', \"'\", '')"_s);
    }

    void quotesOfBothKindsGiveTheConcatFormWithTheDoubleOnesInside()
    {
        QCOMPARE(XmlUtils::QuoteLiteral(u"say \"don't\""_s), u"concat('say \"don', \"'\", 't\"')"_s);
    }

    void doubleQuotesAloneNeedNoTreatment()
    {
        QCOMPARE(XmlUtils::QuoteLiteral(u"a \"b\""_s), u"'a \"b\"'"_s);
    }

    void apostrophesAtTheEndsAndInARowGiveEmptyPieces()
    {
        QCOMPARE(XmlUtils::QuoteLiteral(u"'a''b'"_s),
                 u"concat('', \"'\", 'a', \"'\", '', \"'\", 'b', \"'\", '')"_s);
    }

    void aTextWithManyApostrophesIsAnExpressionStillAndFindsItself_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("as many as one call takes") << QString(99, u'\'');
        QTest::newRow("one more") << QString(100, u'\'');
        QTest::newRow("a last call of one piece") << QString(200, u'\'');
        QTest::newRow("two rounds") << u"a'"_s.repeated(30000);
    }
    void aTextWithManyApostrophesIsAnExpressionStillAndFindsItself()
    {
        QFETCH(QString, text);
        XmlDocument document;
        const XmlNode list = document.appendChild(document.createElement(u"List"_s));
        const XmlNode longer = list.appendElement(u"Name"_s, text + u'b');
        const XmlNode itself = list.appendElement(u"Name"_s, text);
        const QString literal = XmlUtils::QuoteLiteral(text);
        QCOMPARE(document.selectSingleNode(u"List/Name[. = "_s + literal + u']'), itself);
        QCOMPARE(document.selectSingleNode(u"List/Name[. != "_s + literal + u']'), longer);
    }

    void andExpressionJoinsThreeConditionsInParentheses()
    {
        QCOMPARE(XmlUtils::AndExpression({u"a"_s, u"b"_s, u"c"_s}), u"(a and b and c)"_s);
    }

    void aLeadingEmptyConditionBringsNoJoiner()
    {
        QCOMPARE(XmlUtils::AndExpression({QString(), u"a"_s, u"b"_s}), u"(a and b)"_s);
        QCOMPARE(XmlUtils::OrExpression({QString(), QString()}), u"()"_s);
    }

    void containsExpressionOfNameAndXGivesContainsNameX()
    {
        QCOMPARE(XmlUtils::ContainsExpression(u"Name"_s, u"x"_s), u"contains(Name, 'x')"_s);
    }

    void orExpressionOfOneConditionKeepsTheParentheses()
    {
        QCOMPARE(XmlUtils::OrExpression({u"a"_s}), u"(a)"_s);
        QCOMPARE(XmlUtils::AndExpression({u"a"_s}), u"(a)"_s);
        QCOMPARE(XmlUtils::OrExpression({u"a"_s, u"b"_s}), u"(a or b)"_s);
    }

    void noConditionGivesEmptyParentheses()
    {
        QCOMPARE(XmlUtils::AndExpression({}), u"()"_s);
        QCOMPARE(XmlUtils::OrExpression({}), u"()"_s);
    }

    void placeMarkersInTextsStayAsTheyAre()
    {
        QCOMPARE(XmlUtils::ContainsExpression(u"Name"_s, u"%1 %2"_s), u"contains(Name, '%1 %2')"_s);
        QCOMPARE(XmlUtils::AndExpression({u"a = '%1'"_s, u"b"_s}), u"(a = '%1' and b)"_s);
    }

    void theFunctionsQuoteTheTextAndNotTheField()
    {
        const QString field = u"concat(FirstName, ' ', LastName)"_s;
        QCOMPARE(XmlUtils::ContainsExpression(field, u"x"_s),
                 u"contains(concat(FirstName, ' ', LastName), 'x')"_s);
        QCOMPARE(XmlUtils::StartsWithExpression(u"Name"_s, u"O'"_s),
                 u"starts-with(Name, concat('O', \"'\", ''))"_s);
        QCOMPARE(XmlUtils::TranslateExpression(u"Name"_s, u"a'"_s, u"b"_s),
                 u"translate(Name, concat('a', \"'\", ''), 'b')"_s);
    }

    void upperCaseExpressionHoldsEachAlphabetTwice()
    {
        QCOMPARE(XmlUtils::UpperCaseExpression(u"Name"_s),
                 u"translate(Name, 'abcdefghijklmnopqrstuvwxyzabcdefghijklmnopqrstuvwxyz', "
                 "'ABCDEFGHIJKLMNOPQRSTUVWXYZABCDEFGHIJKLMNOPQRSTUVWXYZ')"_s);
    }

    void nestedConditionsKeepTheirParentheses()
    {
        const QString either = XmlUtils::OrExpression({XmlUtils::StartsWithExpression(u"Name"_s, u"a"_s),
                                                       XmlUtils::ContainsExpression(u"Name"_s, u" b"_s)});
        QCOMPARE(XmlUtils::AndExpression({u"Active = '1'"_s, either}),
                 u"(Active = '1' and (starts-with(Name, 'a') or contains(Name, ' b')))"_s);
    }

    void everyTextFindsItselfInADocument_data()
    {
        QTest::addColumn<QString>("name");
        for (const QString& name : Names)
            QTest::newRow(qPrintable(name)) << name;
    }
    void everyTextFindsItselfInADocument()
    {
        QFETCH(QString, name);
        QCOMPARE(found(u"Name = "_s + XmlUtils::QuoteLiteral(name)), QStringList(name));
        QVERIFY(found(XmlUtils::ContainsExpression(u"Name"_s, name)).contains(name));
        QVERIFY(found(XmlUtils::StartsWithExpression(u"Name"_s, name)).contains(name));
        const QString upper = XmlUtils::UpperCaseExpression(u"Name"_s);
        const bool lettersAToZ = name != u"Jos\u00E9"_s;
        // An accented letter in the text only matches the same capital in the data.
        QCOMPARE(found(XmlUtils::ContainsExpression(upper, name.toUpper())).contains(name), lettersAToZ);
    }

    void veryManyConditionsAreAnExpressionStill_data()
    {
        QTest::addColumn<int>("count");
        QTest::newRow("as many as one chain takes") << 200;
        QTest::newRow("one more") << 201;
        QTest::newRow("chains of chains of chains") << 45000;
    }
    void veryManyConditionsAreAnExpressionStill()
    {
        QFETCH(int, count);
        XmlDocument document;
        document.loadXML(u"<List><Item><No>7</No></Item><Item><No>8</No></Item></List>"_s);
        QStringList conditions;
        for (int i = 0; i < count; ++i)
            conditions << u"No != %1"_s.arg(i == count / 2 ? 7 : 1000 + i);
        const auto found = document.selectNodes(u"List/Item["_s + XmlUtils::AndExpression(conditions) + u']');
        QCOMPARE(found.size(), std::size_t(1));
        QCOMPARE(found.at(0).text(), u"8"_s);
        QCOMPARE(document.selectNodes(u"List/Item["_s + XmlUtils::OrExpression(conditions) + u']').size(),
                 std::size_t(2));
        QCOMPARE(XmlUtils::AndExpression(conditions.first(2)), u"(No != 1000 and No != 1001)"_s);
    }

    void anInjectedConditionIsText()
    {
        QCOMPARE(found(XmlUtils::ContainsExpression(u"Name"_s, u"x') or true() or ('"_s)), QStringList());
        QCOMPARE(found(XmlUtils::ContainsExpression(u"Name"_s, u"'"_s)),
                 QStringList({u"O'Brien"_s, u"D'Arcy \"Dee\" O'Neil"_s, u"'"_s}));
    }

    void anExpressionOfAllPartsSelects()
    {
        const QString upper = XmlUtils::UpperCaseExpression(u"Name"_s);
        QCOMPARE(found(XmlUtils::AndExpression(
                     {u"Active = '1'"_s,
                      XmlUtils::OrExpression({XmlUtils::StartsWithExpression(upper, u"O'B"_s),
                                              XmlUtils::ContainsExpression(upper, u" O'N"_s),
                                              XmlUtils::StartsWithExpression(upper, u"PLAIN"_s)})})),
                 QStringList({u"O'Brien"_s, u"D'Arcy \"Dee\" O'Neil"_s}));
    }

    void nodeListToCollectionHoldsTheSameNodesInTheSameOrder()
    {
        const XmlDocument document = people();
        const auto list = document.selectNodes(u"List/Person"_s);
        const XmlNodes collection = XmlUtils::NodeListToCollection(list);
        QCOMPARE(collection.size(), list.size());
        for (std::size_t i = 0; i < list.size(); ++i)
            QCOMPARE(collection.at(i), list.at(i));
        QVERIFY(XmlUtils::NodeListToCollection(document.selectNodes(u"nothing"_s)).empty());
    }
};

TAVRIN_TEST_MAIN(tst_XmlUtils)
#include "tst_XmlUtils.moc"
