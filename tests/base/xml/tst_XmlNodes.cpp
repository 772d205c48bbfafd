#include "base/failure/Error.h"
#include "base/xml/XmlNodes.h"
#include "support/TestCase.h"

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace tavrin;

namespace {

XmlDocument documentOf(const QString& items)
{
    XmlDocument document;
    QString text;
    for (const QString& item : items.split(u' ', Qt::SkipEmptyParts))
        text += u"<I>%1</I>"_s.arg(item);
    document.loadXML(u"<List>"_s + text + u"</List>"_s);
    return document;
}

XmlNodes itemsOf(const XmlDocument& document)
{
    return XmlNodes(document.documentElement().childNodes());
}

QString textsOf(const XmlNodes& nodes)
{
    QStringList texts;
    for (const XmlNode& node : nodes)
        texts << node.text();
    return texts.join(u' ');
}

} // namespace

class tst_XmlNodes : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void itHoldsTheNodesOfAListInItsOrder()
    {
        const XmlDocument document = documentOf(u"a b c"_s);
        const XmlNodeList list = document.documentElement().childNodes();
        const XmlNodes nodes(list);
        QCOMPARE(nodes.size(), std::size_t(3));
        QCOMPARE(textsOf(nodes), u"a b c"_s);
        for (std::size_t i = 0; i < list.size(); ++i)
            QCOMPARE(nodes[i], list.at(i));
        QCOMPARE(nodes.front(), list.at(0));
        QVERIFY(nodes.at(3).isNull());
    }

    void anEmptyOneHasNoNodes()
    {
        XmlNodes nodes(documentOf(QString()).documentElement().childNodes());
        QVERIFY(nodes.empty());
        QVERIFY(nodes.front().isNull());
        QVERIFY(!(nodes.begin() != nodes.end()));
        nodes.append(XmlNodes());
        nodes.removeIf([](const XmlNode&) { return true; });
        QVERIFY(nodes.empty());
    }

    void nodesOfSeveralDocumentsStandTogether()
    {
        XmlNodes nodes;
        {
            const XmlDocument one = documentOf(u"a b"_s);
            const XmlDocument two = documentOf(u"c d"_s);
            nodes.append(itemsOf(one));
            nodes.append(itemsOf(two));
            nodes.push_back(itemsOf(one)[1]);
            nodes.push_back(two.createElement(u"New"_s));
            nodes.push_back(XmlNode());
            nodes.append(nodes);
        }
        QCOMPARE(nodes.size(), std::size_t(14)); // which keep their documents alive
        QCOMPARE(textsOf(nodes), u"a b c d b   a b c d b  "_s);
        QCOMPARE(nodes[12].nodeName(), u"New"_s);
        QVERIFY(nodes[6].isNull());
        nodes.clear();
        QVERIFY(nodes.empty());
    }

    void nodesAreTakenOutAfterOneQuestionEachInOrder()
    {
        XmlNodes nodes = itemsOf(documentOf(u"a b"_s));
        nodes.append(itemsOf(documentOf(u"b c d"_s)));
        QStringList asked;
        QList<XmlNode> copies;
        nodes.removeIf([&](const XmlNode& node) {
            asked << node.text();
            copies << node;
            return node.text() == u"b";
        });
        QCOMPARE(asked.join(u' '), u"a b b c d"_s);
        QCOMPARE(textsOf(nodes), u"a c d"_s);
        QCOMPARE(copies[1].text(), u"b"_s); // a copy stays at its node
        QCOMPARE(copies[0], nodes[0]);
        nodes.removeIf([](const XmlNode&) { return true; });
        QVERIFY(nodes.empty());
    }

    void aFailureOfTheTestLeavesAllNodes()
    {
        XmlNodes nodes = itemsOf(documentOf(u"a b c"_s));
        QVERIFY_EXCEPTION_THROWN(nodes.removeIf([](const XmlNode& node) {
            if (node.text() == u"b")
                throw Error(u"no"_s);
            return true;
        }),
                                 Error);
        QCOMPARE(textsOf(nodes), u"a b c"_s);
    }

    void plainNumbersOfAChildAreReadAllAtOnce()
    {
        XmlDocument document;
        document.loadXML(
            u"<List><R><No>7</No></R><R><x/><No>-12</No><No>9</No></R><R/><R><No/></R>"
            "<R><No>123456789</No></R><R><No>1234567890</No></R><R><No>1.0</No></R><R><No> 7</No></R>"
            "<R><No>+7</No></R><R><No>7<!-- --></No></R><R><No><![CDATA[7]]></No></R><R><No>-</No></R>"
            "<R><No><i>7</i></No></R><R><No>007</No></R></List>"_s);
        XmlNodes nodes = itemsOf(document);
        nodes.push_back(XmlNode());
        nodes.append(itemsOf(documentOf(u"8"_s)));
        constexpr std::nullopt_t None = std::nullopt;
        const std::vector<std::optional<qint32>> expected{
            7, -12, None, None, 123456789, None, None, None, None, None, None, None, None, 7, None, None};
        QVERIFY(nodes.childNumbers(u"No"_s) == expected);
        QCOMPARE(nodes.childNumbers(u"none"_s).size(), nodes.size());
        QVERIFY(XmlNodes().childNumbers(u"No"_s).empty());
    }

    void numbersOfManyNodesAreReadFromTheTextsOfTheirList_data()
    {
        QTest::addColumn<bool>("backwards");
        QTest::addColumn<bool>("mixed");
        QTest::newRow("in order") << false << false;
        QTest::newRow("backwards") << true << false;
        QTest::newRow("with nodes of another list") << false << true;
    }
    void numbersOfManyNodesAreReadFromTheTextsOfTheirList()
    {
        QFETCH(bool, backwards);
        QFETCH(bool, mixed);
        XmlDocument document;
        XmlNode list = document.appendChild(document.createElement(u"List"_s));
        for (int i = 0; i < 3000; ++i) {
            const XmlNode record = list.appendElement(mixed && i % 7 == 0 ? u"S"_s : u"R"_s);
            record.appendElement(u"x"_s);
            if (i % 5 != 0)
                record.appendElement(u"No"_s, QString::number(i));
        }
        const auto compare = [&] {
            QList<XmlNode> order;
            for (const XmlNode& node : list.childNodes())
                order << node;
            if (backwards)
                std::reverse(order.begin(), order.end());
            XmlNodes nodes;
            std::vector<std::optional<qint32>> expected;
            for (const XmlNode& node : std::as_const(order)) {
                nodes.push_back(node);
                const QString text = node.childElement(u"No"_s).text();
                expected.push_back(text.isEmpty() ? std::optional<qint32>() : text.toInt());
            }
            QVERIFY(nodes.childNumbers(u"No"_s) == expected);
        };
        compare();
        QVERIFY(document.searchMemory() > 0);
        list.childNodes().at(1).childElement(u"No"_s).setText(u"-1"_s);
        list.appendElement(u"R"_s).appendElement(u"No"_s, u"5"_s);
        compare(); // a change is seen
    }

    void nodesThatMovedWithTheirDocumentTellNoNumber()
    {
        const XmlDocument original = documentOf(u"a"_s);
        const XmlDocument clone = original.cloneNode(true);
        clone.documentElement().appendElement(u"R"_s).appendElement(u"No"_s, u"1"_s);
        const XmlNodes nodes = itemsOf(clone);
        QVERIFY(nodes.childNumbers(u"No"_s) == std::vector<std::optional<qint32>>({std::nullopt, 1}));
        const XmlDocument other = clone.cloneNode(true);
        clone.documentElement().appendElement(u"R"_s);
        QVERIFY(nodes.childNumbers(u"No"_s) == std::vector<std::optional<qint32>>(2));
        QCOMPARE(nodes[1].text(), u"1"_s);
    }

    void nodesFollowTheirDocumentIntoAnotherTree()
    {
        const XmlDocument original = documentOf(u"a b c"_s);
        const XmlDocument clone = original.cloneNode(true);
        XmlNodes nodes = itemsOf(clone);
        itemsOf(clone)[1].setText(u"B"_s);
        QCOMPARE(textsOf(nodes), u"a B c"_s);
        QCOMPARE(textsOf(itemsOf(original)), u"a b c"_s);
        // A test that changes the document goes on with the next node.
        const XmlDocument other = clone.cloneNode(true);
        nodes.removeIf([](const XmlNode& node) {
            XmlNode handle = node;
            handle.setText(node.text() + u"!"_s);
            return node.text() == u"B!";
        });
        QCOMPARE(textsOf(nodes), u"a! c!"_s);
        QCOMPARE(textsOf(itemsOf(other)), u"a B c"_s);
        QCOMPARE(nodes[0].parentNode(), clone.documentElement());
    }
};

TAVRIN_TEST_MAIN(tst_XmlNodes)
#include "tst_XmlNodes.moc"
