#include "base/values/Variant.h"
#include "lookup/ComboPickerForm.h"
#include "lookup/EmployeeList.h"
#include "support/RaisedError.h"
#include "support/TestCase.h"

#include <QVariantList>

#include <array>

using namespace tavrin;
using namespace Qt::StringLiterals;
using tavrin::test::EmployeeSite;
using tavrin::test::listOf;
using tavrin::test::raisedBy;
using tavrin::test::RecordParts;

namespace {

const QString Alphabets = u"'abcdefghijklmnopqrstuvwxyzabcdefghijklmnopqrstuvwxyz', "
                          u"'ABCDEFGHIJKLMNOPQRSTUVWXYZABCDEFGHIJKLMNOPQRSTUVWXYZ'"_s;

/// The three conditions of a typed text, whose literal is given.
QString textGroup(const QString& literal)
{
    return u"(contains(translate(Name, %1), %2) or contains(translate(OfficerId, %1), %2) or "
           u"starts-with(translate(BadgeNo, %1), %2))"_s.arg(Alphabets, literal);
}

QString expressionOf(const QString& query, const SearchOptions& options)
{
    const EmployeeList list;
    return list.terms(query, options).expression(u"Employee"_s);
}

QStringList idsOf(const NumberedList& list, const XmlNodes& items)
{
    QStringList ids;
    for (const XmlNode& item : items)
        ids << list.shortText(item);
    return ids;
}

struct Site : EmployeeSite
{
    int fetches() { return static_cast<int>(host.state().log.count(u"EmployeeListCache.Document"_s)); }
};

} // namespace

/// The lists of numbered records: their expressions as whole texts, their clone, and their records.
class tst_NumberedList : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Expressions

    void theExpressionHoldsTheConditionsInTheirOrder_data()
    {
        QTest::addColumn<QString>("query");
        QTest::addColumn<bool>("listAll");
        QTest::addColumn<QVariant>("hostValue");
        QTest::addColumn<bool>("k9");
        QTest::addColumn<bool>("removeUsed");
        QTest::addColumn<QVariantList>("used");
        QTest::addColumn<QString>("expression");
        const QVariant none = Null();
        const QVariantList nobody;
        const auto row = [](const char* name, const char* query, bool all, const QVariant& host, bool k9,
                            bool remove, const QVariantList& used, const QString& expression) {
            QTest::newRow(name) << QString::fromUtf8(query) << all << host << k9 << remove << used
                                << expression;
        };
        row("nothing asked", "", true, none, false, false, nobody, QString());
        row("active ones", "", false, none, false, false, nobody, u"Employee[((ActiveFlag='True'))]"_s);
        row("the host's value without quotes", "", false, 12, false, false, nobody,
            u"Employee[((ActiveFlag='True' or OfficerNo=12))]"_s);
        row("the host's value as a double", "", false, 12.0, false, false, nobody,
            u"Employee[((ActiveFlag='True' or OfficerNo=12))]"_s);
        row("an empty host's value", "", false, QVariant(), false, false, nobody,
            u"Employee[((ActiveFlag='True'))]"_s);
        row("the host's value does not count where all are listed", "", true, 12, false, false, nobody,
            QString());
        row("handlers", "", true, none, true, false, nobody, u"Employee[(IsK9Handler='True')]"_s);
        row("handlers and the host's value", "", false, 12, true, false, nobody,
            u"Employee[((ActiveFlag='True' or OfficerNo=12) and IsK9Handler='True')]"_s);
        row("used values, each by itself", "", true, none, false, true, {11, 13.0},
            u"Employee[(OfficerNo != 11 and OfficerNo != 13)]"_s);
        row("used values that do not count", "", true, none, false, false, {11, 13}, QString());
        row("used values without a text", "", true, none, false, true, {Null(), QVariant(), QString(), 13},
            u"Employee[(OfficerNo != 13)]"_s);
        row("only used values without a text", "", true, none, false, true, {Null(), QVariant()}, QString());
        row("a text", "aD", true, none, false, false, nobody,
            u"Employee[("_s + textGroup(u"'AD'"_s) + u")]"_s);
        row("a blank is a text", " ", true, none, false, false, nobody,
            u"Employee[("_s + textGroup(u"' '"_s) + u")]"_s);
        row("a double quote", "\"", true, none, false, false, nobody,
            u"Employee[("_s + textGroup(u"'\"'"_s) + u")]"_s);
        row("an apostrophe", "o'h", true, none, false, false, nobody,
            u"Employee[("_s + textGroup(u"concat('O', \"'\", 'H')"_s) + u")]"_s);
        row("a percent sign and a digit", "%1%2", true, none, false, false, nobody,
            u"Employee[("_s + textGroup(u"'%1%2'"_s) + u")]"_s);
        row("all of them", "x", false, 12, true, true, {11, 13},
            u"Employee[((ActiveFlag='True' or OfficerNo=12) and IsK9Handler='True' and OfficerNo != 11 and "
            u"OfficerNo != 13 and "_s +
                textGroup(u"'X'"_s) + u")]"_s);
    }
    void theExpressionHoldsTheConditionsInTheirOrder()
    {
        QFETCH(QString, query);
        QFETCH(bool, listAll);
        QFETCH(QVariant, hostValue);
        QFETCH(bool, k9);
        QFETCH(bool, removeUsed);
        QFETCH(QVariantList, used);
        const QString restriction = k9 ? EmployeeList::k9HandlersOnly() : QString();
        QTEST(expressionOf(query, {listAll, removeUsed, hostValue, used, restriction}), "expression");
    }

    void theUpperCaseOfATextIsAsLongAsTheText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("upper");
        QTest::newRow("empty") << QString() << QString();
        QTest::newRow("letters") << u"aB1 \u00e9\u0436"_s << u"AB1 \u00c9\u0416"_s;
        QTest::newRow("no single capital") << u"stra\u00dfe"_s << u"STRA\u00dfE"_s;
        QTest::newRow("half a character")
            << u"a"_s + QChar(0xD83D) + u"b"_s << u"A"_s + QChar(0xD83D) + u"B"_s;
        QTest::newRow("a character of two units") << u"a\U0001F600b"_s << u"A\U0001F600B"_s;
    }
    void theUpperCaseOfATextIsAsLongAsTheText()
    {
        QFETCH(QString, text);
        QTEST(upperCased(text), "upper");
    }

    void aGroupWithoutMembersLeavesNoTraceInTheExpression()
    {
        SearchTerms terms;
        QCOMPARE(terms.expression(u"R"_s), QString());
        terms.text = QStringList{u"a"_s, u"b"_s};
        QCOMPARE(terms.expression(u"R"_s), u"R[((a or b))]"_s);
        terms.restrictions = QStringList{u"c"_s, u"d"_s};
        QCOMPARE(terms.expression(u"R"_s), u"R[(c and d and (a or b))]"_s);
        terms.active = QStringList{u"e"_s, u"f"_s};
        QCOMPARE(terms.expression(u"R"_s), u"R[((e or f) and c and d and (a or b))]"_s);
    }

    void withoutConditionsAllChildrenOfTheRootAreTakenWhateverTheirName()
    {
        XmlDocument document;
        document.loadXML(u"<L><Employee/><Other/><Employee/></L>"_s);
        QCOMPARE(SearchTerms().select(document, u"Employee"_s).size(), std::size_t(3));
        SearchTerms terms;
        terms.restrictions << u"true()"_s;
        QCOMPARE(terms.select(document, u"Employee"_s).size(), std::size_t(2));
    }

    void anEmptyDocumentHasNoRecords()
    {
        QVERIFY(SearchTerms().select(XmlDocument(), u"Employee"_s).empty());
        SearchTerms terms;
        terms.restrictions << u"true()"_s;
        QVERIFY(terms.select(XmlDocument(), u"Employee"_s).empty());
    }

    // The clone

    void theListIsFetchedAtTheFirstNeedAndKept()
    {
        Site site;
        EmployeeList list;
        QCOMPARE(list.terms(u"x"_s, {}).text.size(), 3);
        QCOMPARE(site.fetches(), 0);
        list.find(11);
        list.search({}, {});
        QCOMPARE(list.document().property(u"SelectionLanguage"_s), QVariant(u"XPath"_s));
        QCOMPARE(site.fetches(), 1);
    }

    void theListIsACloneThatNoChangeOfTheHostsReaches()
    {
        Site site;
        EmployeeList list;
        QCOMPARE(list.search({}, {}).size(), std::size_t(4));
        QVERIFY(list.document().sharesTreeWith(site.host.state().employees)); // and costs nothing
        for (XmlNode flag : site.host.state().employees.selectNodes(u"Employees/Employee/ActiveFlag"_s))
            flag.setText(u"True"_s);
        QCOMPARE(list.search({}, {}).size(), std::size_t(4));
        QCOMPARE(EmployeeList().search({}, {}).size(), std::size_t(6));
    }

    void aHostThatFailsIsAskedAgainAtTheNextNeed()
    {
        Site site;
        EmployeeList list;
        site.host.failWith(Error(u"no list"_s));
        QVERIFY_EXCEPTION_THROWN(list.find(11), Error);
        site.host.failWith({});
        QCOMPARE(list.shortText(list.find(11)), u"A11"_s);
    }

    // Records

    void aNumberIsFoundWhateverItsTypeAndWhetherActiveOrNot_data()
    {
        QTest::addColumn<QVariant>("number");
        QTest::addColumn<QString>("id");
        QTest::newRow("integer") << QVariant(11) << u"A11"_s;
        QTest::newRow("double") << QVariant(11.0) << u"A11"_s;
        QTest::newRow("text") << QVariant(u"11"_s) << u"A11"_s;
        QTest::newRow("inactive") << QVariant(12) << u"B12"_s;
        QTest::newRow("missing") << QVariant(99) << QString();
        QTest::newRow("a fraction") << QVariant(11.5) << QString();
        QTest::newRow("negative") << QVariant(-11) << QString();
        QTest::newRow("a name is an element's") << QVariant(u"Name"_s) << QString();
        QTest::newRow("as it stands, an expression") << QVariant(u"11 or OfficerNo=13"_s) << u"A11"_s;
        QTest::newRow("with the signs of a format") << QVariant(u"11 or '%1%2'='%3'"_s) << u"A11"_s;
    }
    void aNumberIsFoundWhateverItsTypeAndWhetherActiveOrNot()
    {
        QFETCH(QVariant, number);
        const Site site;
        EmployeeList list;
        QTEST(list.shortText(list.find(number)), "id");
    }

    void aNumberThatMakesNoExpressionRaisesAnErrorThatQuotesIt()
    {
        const Site site;
        EmployeeList list;
        for (const QString& number : {u"]"_s, u"1 2"_s, u"'"_s, u"11)"_s, u"1e+20"_s}) {
            try {
                list.find(number);
                QFAIL(qPrintable(number));
            } catch (const Error& error) {
                QVERIFY2(error.Description.endsWith(u"Employee[OfficerNo="_s + number + u']'),
                         qPrintable(error.Description));
            }
        }
        QCOMPARE(list.shortText(list.find(11)), u"A11"_s);
    }

    void theNumberOfARecordIsADoubleAndNullWhereItHasNone_data()
    {
        QTest::addColumn<QString>("xml");
        QTest::addColumn<QVariant>("number");
        QTest::newRow("whole") << u"<OfficerNo>12</OfficerNo>"_s << QVariant(12.0);
        QTest::newRow("a fraction") << u"<OfficerNo>12.5</OfficerNo>"_s << QVariant(12.5);
        QTest::newRow("negative") << u"<OfficerNo>-3</OfficerNo>"_s << QVariant(-3.0);
        QTest::newRow("beyond 32 bits") << u"<OfficerNo>3000000000</OfficerNo>"_s << QVariant(3e9);
        QTest::newRow("blanks around") << u"<OfficerNo> 12 </OfficerNo>"_s << QVariant(12.0);
        QTest::newRow("empty") << u"<OfficerNo/>"_s << Null();
        QTest::newRow("no number") << u"<OfficerNo>twelve</OfficerNo>"_s << Null();
        QTest::newRow("missing") << QString() << Null();
        for (const char* text : {"nan", "NaN", "inf", "-inf", "INF", "1e999"})
            QTest::newRow(text) << u"<OfficerNo>%1</OfficerNo>"_s.arg(QLatin1String(text)) << Null();
    }
    void theNumberOfARecordIsADoubleAndNullWhereItHasNone()
    {
        QFETCH(QString, xml);
        QFETCH(QVariant, number);
        XmlDocument document;
        document.loadXML(u"<Employee>"_s + xml + u"</Employee>"_s);
        const QVariant read = EmployeeList().number(document.documentElement());
        QCOMPARE(read.typeId(), number.typeId());
        QCOMPARE(read, number);
    }

    void aRecordWithoutAChildElementHasAnEmptyTextInItsPlace()
    {
        XmlDocument document;
        document.loadXML(u"<Employee><Name>Only</Name></Employee>"_s);
        const EmployeeList list;
        QCOMPARE(list.shortText(document.documentElement()), QString());
        QCOMPARE(list.longText(document.documentElement()), u"Only"_s);
        QCOMPARE(list.longText(XmlNode()), QString());
    }

    void twelvePickersOfOneFormShareTheTreeAndWhatSearchesKeepBesideIt()
    {
        Site site;
        const XmlDocument& employees = site.host.state().employees;
        std::size_t memory = 0;
        std::array<EmployeeList, 12> lists;
        for (EmployeeList& list : lists) {
            QCOMPARE(idsOf(list, list.search(u"ad"_s, {})), QStringList({u"A11"_s, u"F16"_s}));
            memory = memory == 0 ? employees.searchMemory() : memory;
            QVERIFY(list.document().sharesTreeWith(employees));
            QCOMPARE(employees.searchMemory(), memory);
        }
        QVERIFY(memory > 0);
    }

    // The host's filter

    void theFilterIsAskedOnceForEachRecordInOrderWithAFreshAnswer()
    {
        const Site site;
        EmployeeList list;
        QList<qint32> asked;
        const XmlNodes kept =
            list.filtered(list.search({}, {.ListAll = true}), [&](qint32 officerNo, bool& exclude) {
                QVERIFY(!exclude);
                asked << officerNo;
                exclude = officerNo % 2 == 1;
            });
        QCOMPARE(asked, QList<qint32>({11, 12, 13, 14, 15, 16}));
        QCOMPARE(idsOf(list, kept), QStringList({u"B12"_s, u"D14"_s, u"F16"_s}));
    }

    void theFiltersNumberIsAWholeOneOf32Bits_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("number");
        QTest::addColumn<int>("error");
        QTest::newRow("largest") << u"2147483647"_s << 2147483647 << 0;
        QTest::newRow("smallest") << u"-2147483648"_s << int(-2147483648LL) << 0;
        QTest::newRow("one more") << u"2147483648"_s << 0 << int(Error::OverflowNumber);
        QTest::newRow("one less") << u"-2147483649"_s << 0 << int(Error::OverflowNumber);
        QTest::newRow("written as a double") << u"12.0"_s << 12 << 0;
        QTest::newRow("with an exponent") << u"1.2e1"_s << 12 << 0;
        QTest::newRow("none") << QString() << 0 << 0;
        QTest::newRow("no number") << u"twelve"_s << 0 << 0;
        for (const char* text : {"nan", "NaN", "inf", "-inf", "INF", "1e999"})
            QTest::newRow(text) << QString::fromLatin1(text) << 0 << 0;
    }
    void theFiltersNumberIsAWholeOneOf32Bits()
    {
        QFETCH(QString, text);
        QFETCH(int, number);
        QFETCH(int, error);
        const XmlDocument document = listOf("L", "Employee", {RecordParts{{"OfficerNo", text}}});
        std::optional<qint32> asked;
        const Error raised = raisedBy([&] {
            EmployeeList().filtered(XmlNodes(document.documentElement().childNodes()),
                                    [&](qint32 officerNo, bool&) { asked = officerNo; });
        });
        QCOMPARE(raised.Number, error);
        QCOMPARE(asked, error == 0 ? std::optional(number) : std::nullopt);
    }
};

TAVRIN_TEST_MAIN(tst_NumberedList)
#include "tst_NumberedList.moc"
