#include "base/xml/SearchCases.h"
#include "support/TestCase.h"

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

XmlDocument documentOf(const QString& records)
{
    XmlDocument document;
    document.loadXML(u"<List typed='ad' empty=''>"_s + records + u"</List>"_s);
    return document;
}

/// Records with an attribute `n` each, which names them.
XmlDocument oddRecords()
{
    return documentOf(u"<R n='plain'><N>ada</N><No>1</No></R>"
                      "<!-- R --><S n='other name'><N>ada</N></S>"
                      "<R n='no child'/>"
                      "<R n='empty'><N></N><No/></R>"
                      "<R n='two'><N>bob</N><N>ada</N><No>9</No><No>1</No></R>"
                      "<R n='mixed'><N>a<!-- x -->d<i>a<b>!</b></i></N><No> 1 </No></R>"
                      "<R n='cdata'><N><![CDATA[<ada>&]]></N><No>1.0</No></R>"
                      "<R n='entities'><N>&lt;&#97;da&gt;&amp;</N><No>x</No></R>"
                      "text<R n='quotes'><N>O'B \"x\"</N><No>-1</No></R>"
                      "<R n='accent'><N>\u00e9ad\u00c9</N><No>1e0</No></R>"
                      "<R n='deep'><S><N>ada</N></S></R>"_s);
}

QString namesOf(const XmlNodeList& nodes)
{
    QStringList names;
    for (const XmlNode& node : nodes)
        names << node.attribute(u"n"_s);
    return names.join(u", "_s);
}

QString found(const XmlDocument& document, const QString& condition)
{
    return namesOf(document.documentElement().selectNodes(u"R["_s + condition + u']'));
}

} // namespace

class tst_XmlSearch : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void conditionsSelectWhatXPathSays_data()
    {
        QTest::addColumn<QString>("condition");
        QTest::addColumn<QString>("names");
        const auto row = [](const QString& condition, const QString& names) {
            QTest::newRow(qPrintable(condition)) << condition << names;
        };
        const QString ada = u"plain, mixed, cdata, entities"_s;
        row(u"contains(N, 'ada')"_s, ada);
        row(u"starts-with(N, 'ada')"_s, u"plain, mixed"_s);
        row(u"N='ada'"_s, u"plain, two"_s);
        row(u"N!='ada'"_s, u"empty, two, mixed, cdata, entities, quotes, accent"_s);
        row(u"not(N='ada')"_s, u"no child, empty, mixed, cdata, entities, quotes, accent, deep"_s);
        row(u"N"_s, u"plain, empty, two, mixed, cdata, entities, quotes, accent"_s);
        row(u"not(N)"_s, u"no child, deep"_s);
        row(u"N=''"_s, u"empty"_s);
        row(u"N!=''"_s, u"plain, two, mixed, cdata, entities, quotes, accent"_s);
        row(u"N='ada!'"_s, u"mixed"_s);
        row(u"N='<ada>&'"_s, u"cdata, entities"_s);
        row(u"concat(N, '')=''"_s, u"no child, empty, deep"_s);
        row(u"translate(N, 'x', 'x')='bob'"_s, u"two"_s);
        row(u"translate(N, 'x', 'x')='ada'"_s, u"plain"_s); // a text is that of the first child
        row(u"contains(N, '')"_s,
            u"plain, no child, empty, two, mixed, cdata, entities, quotes, accent, deep"_s);
        row(u"No=1"_s, u"plain, two, mixed, cdata"_s);
        row(u"No!=9"_s, u"plain, empty, two, mixed, cdata, entities, quotes, accent"_s);
        row(u"No!=1"_s, u"empty, two, entities, quotes, accent"_s);
        row(u"No='1'"_s, u"plain, two"_s);
        row(u"No=-1"_s, u"quotes"_s);
        row(u"concat(No, '')=1"_s, u"plain, mixed, cdata"_s);
        row(u"concat(No, '')!=1"_s, u"no child, empty, two, entities, quotes, accent, deep"_s);
        row(u"contains(N, \"O'B\")"_s, u"quotes"_s);
        row(u"contains(N, 'B \"x')"_s, u"quotes"_s);
        row(u"contains(N, concat('O', \"'\", 'B \"'))"_s, u"quotes"_s);
        row(u"contains(translate(N, 'ad', 'AD'), '\u00e9AD\u00c9')"_s, u"accent"_s);
        row(u"contains(N, '\u00e9')"_s, u"accent"_s);
        row(u"contains(translate(concat(N, ' ', No), 'ad', 'AD'), 'ADA 1')"_s, u"plain"_s);
        row(u"contains(N, /*/@typed)"_s, ada + u", accent"_s);
        row(u"contains(N, /List/@typed) and No=1"_s, u"plain, mixed, cdata"_s);
        row(u"contains(N, /Other/@typed)"_s,
            u"plain, no child, empty, two, mixed, cdata, entities, quotes, accent, deep"_s);
        row(u"N=/*/@empty"_s, u"empty"_s);
        row(u"N!=/*/@none"_s, QString());
        row(u"not(N=/*/@none)"_s,
            u"plain, no child, empty, two, mixed, cdata, entities, quotes, accent, deep"_s);
        row(u"N='bob' or No=9 and N='x'"_s, u"two"_s);
        row(u"(N='bob' or No=9) and N='x'"_s, QString());
        row(u"true() and not(false())"_s,
            u"plain, no child, empty, two, mixed, cdata, entities, quotes, accent, deep"_s);
        row(u"Nobody='x' or contains(Nobody, 'x')"_s, QString());
    }
    void conditionsSelectWhatXPathSays()
    {
        QFETCH(QString, condition);
        QFETCH(QString, names);
        const XmlDocument document = oddRecords();
        QVERIFY(isPlanned(u"R["_s + condition + u']'));
        QCOMPARE(found(document, condition), names);
        QCOMPARE(namesOf(engineNodes(document.documentElement(), u"R["_s + condition + u']')), names);
    }

    void recordsAreFoundFromWhereverThePathBegins_data()
    {
        QTest::addColumn<QString>("context");
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("byColumns");
        QTest::newRow("root") << u"/List"_s << u"R"_s << true;
        QTest::newRow("document") << u"/"_s << u"List/R"_s << true;
        QTest::newRow("slash") << u"/List/R"_s << u"/List/R"_s << true;
        QTest::newRow("any root") << u"/List/R"_s << u"/*/R"_s << true;
        QTest::newRow("nowhere") << u"/List"_s << u"List/R"_s << false;
        QTest::newRow("a record itself") << u"/"_s << u"List"_s << true;
        QTest::newRow("a text") << u"/List/R/N/text()"_s << u"R"_s << true;
        QTest::newRow("several parents") << u"/List"_s << u"R/N"_s << false;
    }
    void recordsAreFoundFromWhereverThePathBegins()
    {
        QFETCH(QString, context);
        QFETCH(QString, path);
        const XmlDocument document = oddRecords();
        const XmlNode from = document.selectSingleNode(context);
        for (const QString& condition : {u"[contains(N,'ada')]"_s, u"[not(i)]"_s}) {
            const QString expression = path + condition;
            QVERIFY(tavrin::test::isPlanned(expression));
            const QString wrong = difference(from, expression);
            QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
        }
        QTEST(document.searchMemory() > 0, "byColumns");
    }

    void anExpressionThatIsNotValidRaisesAsBefore_data()
    {
        QTest::addColumn<QString>("expression");
        QTest::newRow("unclosed") << u"R[N='x"_s;
        QTest::newRow("no condition") << u"R[]"_s;
        QTest::newRow("half a comparison") << u"R[N=]"_s;
        QTest::newRow("too deep") << u"R[N"_s + u" or N"_s.repeated(2000) + u']';
        QTest::newRow("one argument") << u"R[contains(N)]"_s;
    }
    void anExpressionThatIsNotValidRaisesAsBefore()
    {
        QFETCH(QString, expression);
        const XmlDocument document = oddRecords();
        QVERIFY_EXCEPTION_THROWN(document.documentElement().selectNodes(expression), Error);
    }

    // Changes

    void everyChangeIsSeenByTheNextSearch()
    {
        const XmlDocument document = documentOf(u"<R n='1'><N>ada</N></R><R n='2'><N>bob</N></R>"_s);
        const XmlNode root = document.documentElement();
        const QString ada = u"contains(N, 'ada')"_s;
        QCOMPARE(found(document, ada), u"1"_s);
        XmlNode second = root.childNodes().at(1);
        second.childElement(u"N"_s).setText(u"adam"_s);
        QCOMPARE(found(document, ada), u"1, 2"_s);
        XmlNode third = root.appendElement(u"R"_s);
        third.setAttribute(u"n"_s, u"3"_s);
        QCOMPARE(found(document, ada), u"1, 2"_s);
        third.appendElement(u"N"_s, u"ada"_s);
        QCOMPARE(found(document, ada), u"1, 2, 3"_s);
        root.appendChild(root.childNodes().at(0)); // to the end
        QCOMPARE(found(document, ada), u"2, 3, 1"_s);
        XmlNode child = document.createElement(u"N"_s);
        child.setText(u"x"_s);
        root.childNodes().at(0).appendChild(child);
        QCOMPARE(found(document, u"N='x'"_s), u"2"_s);
        child.setText(u"y"_s);
        QCOMPARE(found(document, u"N='x'"_s), QString());
        third.setText(QString());
        QCOMPARE(found(document, ada), u"2, 1"_s);
    }

    void aTextThatIsSetInItsPlaceIsSeen()
    {
        const XmlDocument document = documentOf(u"<R n='1'><N/></R>"_s);
        QCOMPARE(found(document, u"N='ada'"_s), QString());
        document.documentElement().childNodes().at(0).childNodes().at(0).setText(u"ada"_s);
        QCOMPARE(found(document, u"N='ada'"_s), u"1"_s);
        QCOMPARE(found(document, u"N=''"_s), QString());
    }

    void aProcessingInstructionIsNoChildAndNoRecord()
    {
        const XmlDocument document = documentOf(u"<?R ada?><R n='1'><?N ada?><N>bob</N></R>"_s);
        QCOMPARE(found(document, u"contains(N, 'ada')"_s), QString());
        QCOMPARE(found(document, u"contains(N, 'bob')"_s), u"1"_s);
        const XmlNode record = document.documentElement().selectNodes(u"R"_s).at(0);
        QCOMPARE(record.childElement(u"N"_s).text(), u"bob"_s);
    }

    void anExpressionThatReadsTooMuchIsLeftToTheEngine_data()
    {
        QTest::addColumn<QString>("condition");
        QTest::newRow("a long literal in each row")
            << u"contains(concat(N, '%1'), 'ada')"_s.arg(QString(1000, u'x'));
        QTest::newRow("one child many times")
            << u"contains(concat(%1N), 'ada')"_s.arg(u"N, "_s.repeated(100));
        QStringList names;
        for (int i = 0; i < 100; ++i)
            names << u"contains(N%1, 'x')"_s.arg(i);
        QTest::newRow("many children") << names.join(u" or "_s) + u" or contains(N, 'ada')"_s;
    }
    void anExpressionThatReadsTooMuchIsLeftToTheEngine()
    {
        QFETCH(QString, condition);
        const XmlDocument document = documentOf(u"<R n='1'><N>ada</N></R><R n='2'><N>bob</N></R>"_s);
        QCOMPARE(found(document, condition), u"1"_s);
        QCOMPARE(document.searchMemory(), 0U);
    }

    void aLoadedTextIsAnotherList()
    {
        XmlDocument document = documentOf(u"<R n='1'><N>ada</N></R>"_s);
        const XmlNode old = document.documentElement();
        QCOMPARE(found(document, u"N='ada'"_s), u"1"_s);
        document.loadXML(u"<List><R n='2'><N>ada</N></R></List>"_s);
        QCOMPARE(found(document, u"N='ada'"_s), u"2"_s);
        QCOMPARE(namesOf(old.selectNodes(u"R[N='ada']"_s)), u"1"_s); // a handle reads what it read before
    }

    void anAttributeIsReadAnewAndLeavesTheColumns()
    {
        const XmlDocument document = documentOf(u"<R n='1'><N>ada</N></R><R n='2'><N>bob</N></R>"_s);
        XmlNode root = document.documentElement();
        const QString typed = u"contains(N, /*/@typed)"_s;
        QCOMPARE(found(document, typed), u"1"_s);
        const std::size_t memory = document.searchMemory();
        root.setAttribute(u"typed"_s, u"o"_s);
        QCOMPARE(document.searchMemory(), memory);
        QVERIFY(memory > 0);
        QCOMPARE(found(document, typed), u"2"_s);
        root.setAttribute(u"typed"_s, u"a"_s);
        QCOMPARE(found(document, typed), u"1"_s);
        root.appendElement(u"R"_s);
        QCOMPARE(document.searchMemory(), std::size_t(0));
    }

    void aTextThatGoesOnOrBackFindsTheSameAsAnew()
    {
        const XmlDocument document = documentOf(
            u"<R n='1'><N>ada</N></R><R n='2'><N>adb</N></R><R n='3'><N>xad</N></R><R n='4'><N>b</N></R>"_s);
        const auto typed = [&](const QString& text) {
            return found(document, u"not(N='b') and (contains(N, '%1') or starts-with(N, '%1'))"_s.arg(text));
        };
        QCOMPARE(typed(QString()), u"1, 2, 3"_s);
        QCOMPARE(typed(u"a"_s), u"1, 2, 3"_s);
        QCOMPARE(typed(u"ad"_s), u"1, 2, 3"_s);
        QCOMPARE(typed(u"ada"_s), u"1"_s);
        QCOMPARE(typed(u"ad"_s), u"1, 2, 3"_s);
        QCOMPARE(typed(u"xad"_s), u"3"_s);
        QCOMPARE(typed(u"adb"_s), u"2"_s);
    }

    // Sharing

    void clonesShareOneSetOfColumnsUntilTheyChange()
    {
        const XmlDocument original = oddRecords();
        QList<XmlDocument> clones;
        for (int i = 0; i < 12; ++i)
            clones << original.cloneNode(true);
        found(clones.first(), u"contains(N,'ada')"_s);
        const std::size_t memory = original.searchMemory();
        QVERIFY(memory > 0);
        for (const XmlDocument& clone : clones) {
            QCOMPARE(found(clone, u"contains(N,'bob')"_s), u"two"_s);
            QVERIFY(clone.sharesTreeWith(original));
            QCOMPARE(clone.searchMemory(), memory);
        }
        clones.first().documentElement().appendElement(u"R"_s).appendElement(u"N"_s, u"bob"_s);
        QCOMPARE(found(clones.first(), u"contains(N,'bob')"_s), u"two, "_s);
        QCOMPARE(found(original, u"contains(N,'bob')"_s), u"two"_s);
        QCOMPARE(original.searchMemory(), memory);
    }

    void aResultKeepsItsTreeAliveAndItsNodesBelongToTheSearchedClone()
    {
        XmlNodeList nodes;
        {
            const XmlDocument original = oddRecords();
            const XmlDocument clone = original.cloneNode(true);
            nodes = clone.documentElement().selectNodes(u"R[N='bob']"_s);
            QVERIFY(nodes.at(0) != original.documentElement().selectNodes(u"R[N='bob']"_s).at(0));
        }
        QCOMPARE(nodes.size(), std::size_t(1));
        QCOMPARE(nodes.at(0).childElement(u"N"_s).text(), u"bob"_s);
    }

    // Memory

    void columnsThatAreNoLongerAskedForGoBeforeTheyCostMoreThanHalfOfTheTree()
    {
        QString records;
        for (int i = 0; i < 200; ++i)
            records += u"<R><N>%1</N></R>"_s.arg(u"long text "_s.repeated(20));
        const XmlDocument document = documentOf(records);
        const std::size_t texts = std::size_t(200) * 200;
        for (int i = 0; i < 10; ++i) {
            const QString upper = u"contains(translate(N, 'abc%1', 'ABC'), 'LONG')"_s.arg(i);
            QCOMPARE(found(document, upper), QString());
            QVERIFY(document.searchMemory() < 2 * texts);
        }
    }

    void manyListsOfOneTreeAreSearchedOneAfterAnother()
    {
        QString lists;
        for (int i = 0; i < 20; ++i)
            lists += u"<L%1><R n='%1'><N>ada</N></R></L%1>"_s.arg(i);
        const XmlDocument document = documentOf(lists);
        std::size_t first = 0;
        std::size_t most = 0;
        for (int round = 0; round < 2; ++round) {
            for (int i = 0; i < 20; ++i) {
                const QString expression = u"List/L%1/R[N='ada']"_s.arg(i);
                QCOMPARE(namesOf(document.selectNodes(expression)), QString::number(i));
                most = std::max(most, document.searchMemory());
                if (first == 0)
                    first = most;
            }
        }
        QVERIFY(first > 0 && most < 5 * first);
    }

    void aDocumentOfSeveralRootsIsLeftToTheEngine()
    {
        const XmlDocument document = oddRecords();
        document.selectSingleNode(u"/"_s).appendChild(document.createElement(u"Second"_s));
        const QString wrong = difference(document.documentElement(), u"R[N != /*/@typed]"_s);
        QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
        QCOMPARE(document.searchMemory(), std::size_t(0));
    }
};

TAVRIN_TEST_MAIN(tst_XmlSearch)
#include "tst_XmlSearch.moc"
