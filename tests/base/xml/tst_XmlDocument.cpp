#include "base/failure/Error.h"
#include "base/xml/XmlDocument.h"
#include "support/TestCase.h"

using tavrin::Error;
using tavrin::XmlDocument;
using tavrin::XmlNode;
using tavrin::XmlNodeList;

namespace {

XmlDocument documentOf(const QString& text)
{
    XmlDocument document;
    document.loadXML(text);
    return document;
}

QStringList texts(const XmlNodeList& nodes)
{
    QStringList list;
    for (const XmlNode& node : nodes)
        list << node.text();
    return list;
}

} // namespace

class tst_XmlDocument : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void malformedTextRaisesWithPositionAndKeepsTheOldContent_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("position");
        QTest::newRow("empty") << QString() << QStringLiteral("line 1, column 1");
        QTest::newRow("unclosed") << QStringLiteral("<a>\n <b></a>") << QStringLiteral("line 2, column 8");
        QTest::newRow("two roots") << QStringLiteral("<a/>\n<b/>") << QStringLiteral("line 2, column 4");
        QTest::newRow("text behind the root")
            << QStringLiteral("<a/> x") << QStringLiteral("line 1, column 6");
        QTest::newRow("no markup") << QStringLiteral("abc") << QStringLiteral("line 1, column 1");
        QTest::newRow("control character")
            << QStringLiteral("<a>\u0001</a>") << QStringLiteral("line 1, column 4");
        QTest::newRow("NUL") << QStringLiteral("<a>") + QChar(0) + QStringLiteral("</a>")
                             << QStringLiteral("line 1, column 4");
        QTest::newRow("lone surrogate") << QStringLiteral("<a>") + QChar(0xD800) + QStringLiteral("</a>")
                                        << QStringLiteral("line 1, column 4");
        for (const char* text : {"<a x='1' x='2'/>", "<a>&foo;</a>", "<a>b & c</a>", "<a>]]></a>",
                                 "<a b='<'/>", "<a>&#0;</a>", "<a><!-- a -- b --></a>", "<1a/>"})
            QTest::newRow(text) << QString::fromLatin1(text) << QStringLiteral("line 1, column ");
        const auto nested = QStringLiteral("<a>").repeated(5000) + QStringLiteral("</a>").repeated(5000);
        QTest::newRow("too deep") << nested << QStringLiteral("line 1, column 3003");
    }
    void malformedTextRaisesWithPositionAndKeepsTheOldContent()
    {
        QFETCH(QString, text);
        QFETCH(QString, position);
        XmlDocument document = documentOf(QStringLiteral("<kept/>"));
        try {
            document.loadXML(text);
            QFAIL("no error");
        } catch (const Error& error) {
            QCOMPARE(error.Number, Error::OrdinaryNumber);
            QVERIFY2(error.Description.contains(position), qPrintable(error.Description));
        }
        QCOMPARE(document.xml(), QStringLiteral("<kept/>"));
    }

    void nodesAreBuiltAppendedAndRead()
    {
        XmlDocument document;
        QVERIFY(document.documentElement().isNull());
        XmlNode list = document.appendChild(document.createElement(QStringLiteral("List")));
        XmlNode item = document.createElement(QStringLiteral("Item"));
        XmlNode id = document.createElement(QStringLiteral("ID"));
        id.setText(QStringLiteral("a<b&\"c"));
        item.appendChild(id);
        list.appendChild(item);
        id.setAttribute(QStringLiteral("n"), QStringLiteral("1")); // still the same node after two moves
        item.appendElement(QStringLiteral("Name"), QStringLiteral("x"));
        QCOMPARE(document.xml(),
                 QStringLiteral("<List><Item><ID n=\"1\">a&lt;b&amp;\"c</ID><Name>x</Name></Item></List>"));
        QCOMPARE(id.parentNode(), item);
        QVERIFY(list.parentNode().isNull());
        QCOMPARE(item.childNodes().size(), 2U);
        QCOMPARE(item.text(), QStringLiteral("a<b&\"cx"));
    }

    void anAppendedNodeOfTheSameDocumentMoves()
    {
        const XmlDocument document = documentOf(QStringLiteral("<r><a><x/></a><b/></r>"));
        const XmlNode x = document.selectSingleNode(QStringLiteral("r/a/x"));
        document.selectSingleNode(QStringLiteral("r/b")).appendChild(x);
        QCOMPARE(document.xml(), QStringLiteral("<r><a/><b><x/></b></r>"));
    }

    void aNodeOfAnotherDocumentOrAboveTheTargetIsRefused()
    {
        const XmlDocument one = documentOf(QStringLiteral("<r><a/></r>"));
        const XmlDocument other = documentOf(QStringLiteral("<r><a/></r>"));
        const XmlNode a = one.selectSingleNode(QStringLiteral("r/a"));
        QVERIFY_EXCEPTION_THROWN(a.appendChild(one.documentElement()), Error);
        QVERIFY_EXCEPTION_THROWN(a.appendChild(a), Error);
        QVERIFY_EXCEPTION_THROWN(a.appendChild(other.documentElement()), Error);
        QVERIFY_EXCEPTION_THROWN(a.appendChild(XmlNode()), Error);
        a.appendChild(other.documentElement().cloneNode(true));
        QCOMPARE(one.xml(), QStringLiteral("<r><a><r><a/></r></a></r>"));
        QCOMPARE(other.xml(), QStringLiteral("<r><a/></r>"));
    }

    void aNodeKeepsItsDocumentAlive()
    {
        XmlNode node;
        {
            const XmlDocument document = documentOf(QStringLiteral("<r><a>text</a></r>"));
            node = document.selectSingleNode(QStringLiteral("r/a"));
        }
        QCOMPARE(node.text(), QStringLiteral("text"));
        QCOMPARE(node.parentNode().nodeName(), QStringLiteral("r"));
        QCOMPARE(node.ownerDocument().xml(), QStringLiteral("<r><a>text</a></r>"));
    }

    void aCloneSharesTheTreeUntilOneOfTheTwoChanges_data()
    {
        QTest::addColumn<bool>("changeTheClone");
        QTest::newRow("the clone changes") << true;
        QTest::newRow("the original changes") << false;
    }
    void aCloneSharesTheTreeUntilOneOfTheTwoChanges()
    {
        QFETCH(bool, changeTheClone);
        const XmlDocument original = documentOf(QStringLiteral("<r><a>1</a><a>2</a></r>"));
        const XmlDocument clone = original.cloneNode(true);
        QVERIFY(original.sharesTreeWith(clone));
        const XmlDocument& changed = changeTheClone ? clone : original;
        const XmlDocument& other = changeTheClone ? original : clone;
        const XmlNode heldInChanged = changed.selectSingleNode(QStringLiteral("r/a[2]"));
        const XmlNode heldInOther = other.selectSingleNode(QStringLiteral("r/a[2]"));
        const XmlNodeList listInChanged = changed.selectNodes(QStringLiteral("r/a"));

        changed.documentElement().setAttribute(QStringLiteral("n"), QStringLiteral("5"));
        changed.selectSingleNode(QStringLiteral("r/a[2]")).setText(QStringLiteral("two"));

        QVERIFY(!original.sharesTreeWith(clone));
        QCOMPARE(changed.xml(), QStringLiteral("<r n=\"5\"><a>1</a><a>two</a></r>"));
        QCOMPARE(other.xml(), QStringLiteral("<r><a>1</a><a>2</a></r>"));
        QCOMPARE(heldInChanged.text(), QStringLiteral("two")); // the handle followed its document
        QCOMPARE(heldInOther.text(), QStringLiteral("2"));
        QCOMPARE(texts(listInChanged), QStringList({QStringLiteral("1"), QStringLiteral("two")}));

        // And when the other one changes in its turn, nothing of the first shows.
        other.documentElement().appendElement(QStringLiteral("a"), QStringLiteral("3"));
        QCOMPARE(changed.selectNodes(QStringLiteral("r/a")).size(), 2U);
        QCOMPARE(heldInOther.text(), QStringLiteral("2"));
    }

    void handlesFollowThroughSeveralCopies()
    {
        const XmlDocument document = documentOf(QStringLiteral("<r><a>1</a></r>"));
        const XmlNode held = document.selectSingleNode(QStringLiteral("r/a"));
        for (int round = 0; round < 3; ++round) {
            const XmlDocument clone = document.cloneNode(true);
            document.documentElement().appendElement(QStringLiteral("b"));
            QCOMPARE(clone.selectNodes(QStringLiteral("r/b")).size(), static_cast<std::size_t>(round));
        }
        held.appendElement(QStringLiteral("c"));
        QCOMPARE(document.xml(), QStringLiteral("<r><a>1<c/></a><b/><b/><b/></r>"));
    }

    void handlesGoOnReadingTheContentThatWasReplaced()
    {
        XmlDocument document = documentOf(QStringLiteral("<r><a>old</a></r>"));
        const XmlNode held = document.selectSingleNode(QStringLiteral("r/a"));
        document.loadXML(QStringLiteral("<r><a>new</a></r>"));
        QCOMPARE(held.text(), QStringLiteral("old"));
        QCOMPARE(document.selectSingleNode(QStringLiteral("r/a")).text(), QStringLiteral("new"));
    }

    void handlesBelowATextThatWasReplacedBecomeNull()
    {
        const XmlDocument document =
            documentOf(QStringLiteral("<r>") + QStringLiteral("<a>some text</a>").repeated(4000) +
                       QStringLiteral("</r>"));
        const XmlNodeList held = document.selectNodes(QStringLiteral("r/a"));
        const XmlNode one = held.at(7);
        XmlNode root = document.documentElement();
        root.setText(QStringLiteral("new"));
        for (int i = 0; i < 8000; ++i)
            root.appendElement(QStringLiteral("b"), QStringLiteral("more"));
        QCOMPARE(one.text(), QString());
        QVERIFY(one.isNull());
        for (const XmlNode& node : held)
            QCOMPARE(node.nodeName(), QString());
        QCOMPARE(root.childNodes().size(), 8001U);
        QVERIFY(document.xml().startsWith(QStringLiteral("<r>new<b>more</b>")));
    }

    void anExpressionThatSelectsAttributesRaises()
    {
        const XmlDocument document = documentOf(QStringLiteral("<r x='1'/>"));
        QVERIFY_EXCEPTION_THROWN(document.selectNodes(QStringLiteral("r/@x")), Error);
    }

    void selectNodesGivesDocumentOrder()
    {
        const XmlDocument document = documentOf(QStringLiteral("<r><b>1</b><a>2</a><b>3</b></r>"));
        QCOMPARE(texts(document.selectNodes(QStringLiteral("r/b | r/a"))),
                 QStringList({QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3")}));
        QVERIFY(document.selectSingleNode(QStringLiteral("r/c")).isNull());
    }

    void anInvalidExpressionRaisesAndQuotesIt_data()
    {
        QTest::addColumn<QString>("expression");
        QTest::newRow("syntax") << QStringLiteral("r[");
        QTest::newRow("unknown function") << QStringLiteral("nothing()");
        QTest::newRow("no nodes") << QStringLiteral("1 + 1");
        QTest::newRow("empty") << QString();
    }
    void anInvalidExpressionRaisesAndQuotesIt()
    {
        QFETCH(QString, expression);
        const XmlDocument document = documentOf(QStringLiteral("<r/>"));
        for (const bool single : {false, true}) {
            try {
                if (single)
                    document.selectSingleNode(expression);
                else
                    document.selectNodes(expression);
                QFAIL("no error");
            } catch (const Error& error) {
                QVERIFY2(error.Description.endsWith(expression), qPrintable(error.Description));
            }
        }
    }

    void textsThatXmlCannotHoldAreKeptAndFindNothing_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("NUL") << QStringLiteral("a") + QChar(0) + QStringLiteral("b");
        QTest::newRow("lone high surrogate") << QStringLiteral("a") + QChar(0xD83D);
        QTest::newRow("lone low surrogate") << QChar(0xDE00) + QStringLiteral("?");
        QTest::newRow("pair") << QStringLiteral("\U0001F600 \u00E9 \u0421");
    }
    void textsThatXmlCannotHoldAreKeptAndFindNothing()
    {
        QFETCH(QString, text);
        const XmlDocument document =
            documentOf(QStringLiteral("<r><a>a?b</a><a>a\uFFFD</a><a>ab</a><a>?</a></r>"));
        document.documentElement().setAttribute(QStringLiteral("s"), text);
        QCOMPARE(document.documentElement().attribute(QStringLiteral("s")), text);
        QCOMPARE(document.selectNodes(QStringLiteral("r/a[contains(., /*/@s)]")).size(), 0U);
        QCOMPARE(document.selectNodes(QStringLiteral("r/a[contains(., '%1')]").arg(text)).size(), 0U);
    }

    void theSelectionLanguageIsXPathAndTravelsWithClones()
    {
        XmlDocument document = documentOf(QStringLiteral("<r/>"));
        document.setProperty(QStringLiteral("SelectionLanguage"), QStringLiteral("XPath"));
        QCOMPARE(document.cloneNode(true).property(QStringLiteral("SelectionLanguage")),
                 QVariant(QStringLiteral("XPath")));
        QVERIFY_EXCEPTION_THROWN(
            document.setProperty(QStringLiteral("SelectionLanguage"), QStringLiteral("XSLPattern")), Error);
    }

    void aNullNodeReadsAsNothingAndRefusesWrites()
    {
        XmlNode node;
        QVERIFY(node.isNull());
        QCOMPARE(node.text(), QString());
        QCOMPARE(node.nodeName(), QString());
        QCOMPARE(node.childNodes().size(), 0U);
        QVERIFY(node.childElement(QStringLiteral("a")).isNull());
        QVERIFY_EXCEPTION_THROWN(node.setText(QStringLiteral("a")), Error);
        QVERIFY_EXCEPTION_THROWN(node.setAttribute(QStringLiteral("a"), QString()), Error);
    }
};

TAVRIN_TEST_MAIN(tst_XmlDocument)
#include "tst_XmlDocument.moc"
