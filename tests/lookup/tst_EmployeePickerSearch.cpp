#include "base/failure/Guard.h"
#include "base/values/Variant.h"
#include "lookup/ComboPickerForm.h"
#include "lookup/EmployeePicker.h"
#include "support/TestCase.h"
#include "testing/Unhandled.h"

using namespace tavrin;
using namespace Qt::StringLiterals;
using tavrin::test::employee;
using tavrin::test::listOf;
using tavrin::test::Unhandled;
using Form = tavrin::test::ComboPickerForm<EmployeePicker>;

namespace {

const QStringList Everyone{u"A11"_s, u"B12"_s, u"C13"_s, u"D14"_s, u"E15"_s, u"F16"_s};
const QStringList ActiveOnes{u"A11"_s, u"C13"_s, u"D14"_s, u"F16"_s};

/// Notes the numbers that `Filter` asks about, and leaves out those that are given.
struct FilterHost
{
    explicit FilterHost(EmployeePicker& picker, QList<qint32> excluded = {})
    {
        QObject::connect(&picker, &EmployeePicker::Filter, &picker,
                         [this, excluded](qint32 officerNo, bool& exclude) {
                             begunIncluded = begunIncluded && !exclude;
                             asked << officerNo;
                             exclude = excluded.contains(officerNo);
                         });
    }
    QList<qint32> take() { return std::exchange(asked, {}); }

    QList<qint32> asked;
    bool begunIncluded = true;
};

} // namespace

/// The searches of `EmployeePicker`: what they find, what the host strikes out, and texts of every kind.
class tst_EmployeePickerSearch : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // What is found

    void aTextIsFoundInNameAndIdAnywhereAndAtTheStartOfABadge_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QStringList>("found");
        QTest::newRow("in the name") << u"ada"_s << QStringList({u"A11"_s, u"F16"_s});
        QTest::newRow("upper case") << u"ADA"_s << QStringList({u"A11"_s, u"F16"_s});
        QTest::newRow("inside the name") << u"carl"_s << QStringList{u"C13"_s};
        QTest::newRow("inside the id") << u"16"_s << QStringList{u"F16"_s};
        QTest::newRow("start of a badge") << u"50"_s << QStringList{u"A11"_s};
        QTest::newRow("not inside a badge") << u"01"_s << QStringList();
        QTest::newRow("badge or id") << u"1"_s << ActiveOnes;
        QTest::newRow("a blank badge starts with a blank, and names hold one") << u" "_s << ActiveOnes;
        QTest::newRow("inactive") << u"baker"_s << QStringList();
        QTest::newRow("nowhere") << u"zz"_s << QStringList();
        QTest::newRow("not the flag") << u"true"_s << QStringList();
        QTest::newRow("an apostrophe") << u"o'h"_s << QStringList{u"D14"_s};
        QTest::newRow("both quotes") << u"'hara, \"r"_s << QStringList{u"D14"_s};
    }
    void aTextIsFoundInNameAndIdAnywhereAndAtTheStartOfABadge()
    {
        QFETCH(QString, typed);
        QFETCH(QStringList, found);
        Form form;
        QVERIFY(form.isReady());
        form.type(typed);
        QVERIFY(form.box->ListIsOpen()); // also to tell that there is nothing
        QStringList shown;
        for (const QString& row : form.rows())
            shown << row.section(u':', 0, 0);
        QCOMPARE(shown, found);
        form.box->CloseList();
    }

    void theFirstCharacterSearchesAlready()
    {
        Form form;
        QVERIFY(form.isReady());
        form.type(u"c"_s);
        QCOMPARE(form.rows(), QStringList({u"A11: Adams, Ann #501"_s, u"C13: Cole, Carl #77"_s}).mid(1));
        form.box->CloseList();
    }

    void downInTheEmptyBoxOffersAllActiveOnes()
    {
        Form form;
        QVERIFY(form.isReady());
        QTest::keyClick(form.box, Qt::Key_Down);
        QCOMPARE(form.rows(), QStringList({u"A11: Adams, Ann #501"_s, u"C13: Cole, Carl #77"_s,
                                           u"D14: O'Hara, \"Red\""_s, u"F16: Adamson, Al #150"_s}));
        form.box->CloseList();
    }

    void theOptionsAreReadAtTheNextSearch()
    {
        const Form form;
        QCOMPARE(form.found(), ActiveOnes);
        form.picker->SetListAllEmployees(true);
        QCOMPARE(form.found(), Everyone);
        form.picker->SetK9HandlersOnly(true);
        QCOMPARE(form.found(), QStringList({u"C13"_s, u"E15"_s, u"F16"_s}));
        form.hold(Null(), {16});
        QCOMPARE(form.found(), QStringList({u"C13"_s, u"E15"_s, u"F16"_s}));
        form.picker->SetRemoveUsedValues(true);
        QCOMPARE(form.found(), QStringList({u"C13"_s, u"E15"_s}));
        form.picker->SetListAllEmployees(false);
        QCOMPARE(form.found(), QStringList{u"C13"_s});
        form.picker->SetK9HandlersOnly(false);
        QCOMPARE(form.found(u"ad"_s), QStringList{u"A11"_s});
        form.picker->SetRemoveUsedValues(false);
        QCOMPARE(form.found(u"ad"_s), QStringList({u"A11"_s, u"F16"_s}));
    }

    void theHostsValueStaysOfferedWhileInactiveAlsoAfterAnotherChoice()
    {
        Form form;
        QVERIFY(form.isReady());
        form.hold(12);
        QCOMPARE(form.found(), QStringList({u"A11"_s, u"B12"_s, u"C13"_s, u"D14"_s, u"F16"_s}));
        form.box->selectAll();
        form.type(u"cole"_s);
        QTest::keyClick(form.box, Qt::Key_Return);
        QCOMPARE(form.found(u"bak"_s), QStringList{u"B12"_s});
        form.hold(Null());
        QCOMPARE(form.found(u"bak"_s), QStringList());
    }

    void theHostsValueIsOfferedAlsoWhenItIsMissingFromTheListAndThenMeansNobody()
    {
        const Form form;
        form.hold(99);
        QVERIFY(IsNull(form.picker->Value()));
        QCOMPARE(form.found(), ActiveOnes);
    }

    void aHostsValueThatIsUsedElsewhereIsNotOffered()
    {
        const Form form;
        form.picker->SetRemoveUsedValues(true);
        form.hold(12, {12});
        QCOMPARE(form.found(), ActiveOnes);
    }

    void k9HandlersOnlyIsAndedWithTheActiveGroupSoThatAHostsValueWithoutADogDropsOut()
    {
        const Form form;
        form.picker->SetK9HandlersOnly(true);
        form.hold(12);
        QCOMPARE(form.found(), QStringList({u"C13"_s, u"F16"_s}));
        form.hold(15); // inactive, and a handler
        QCOMPARE(form.found(), QStringList({u"C13"_s, u"E15"_s, u"F16"_s}));
    }

    void theConditionForTheHostsValueReadsOfficerNoEquals12WithoutQuotes()
    {
        const Form form;
        form.hold(12, {u"]"_s}); // which spoils the expression, so that it is quoted
        form.picker->SetRemoveUsedValues(true);
        const QString error = form.searchError();
        QVERIFY2(error.endsWith(u"Employee[((ActiveFlag='True' or OfficerNo=12) and OfficerNo != ])]"_s),
                 qPrintable(error));
    }

    void anEmptySearchForAllReturnsAllChildNodesThroughTheFilterStillAndWhateverTheirName()
    {
        Form form;
        form.host.state().employees.documentElement().appendElement(u"Remark"_s);
        form.picker->SetListAllEmployees(true);
        FilterHost host(*form.picker, {13});
        const Suggestions all = form.search({});
        QCOMPARE(all.size(), std::size_t(6));
        QCOMPARE(all[5].nodeName(), u"Remark"_s);
        QCOMPARE(host.take(), QList<qint32>({11, 12, 13, 14, 15, 16, 0}));
        form.picker->SetRemoveUsedValues(true); // no used value, no condition
        QCOMPARE(form.search({}).size(), std::size_t(6));
        QCOMPARE(form.search(u"a"_s).size(), std::size_t(5)); // and these are employees
    }

    void usedValuesWithoutATextStrikeOutNothing()
    {
        const Form form;
        form.picker->SetRemoveUsedValues(true);
        form.hold(Null(), {Null(), QVariant(), QString()});
        QCOMPARE(form.found(), ActiveOnes);
    }

    void aUsedValueThatMakesNoExpressionFailsTheSearchAndTheNextOnesSucceed()
    {
        Form form;
        QVERIFY(form.isReady());
        const Unhandled unhandled;
        form.picker->SetRemoveUsedValues(true);
        form.hold(Null(), {u"]"_s});
        form.type(u"a"_s);
        QCOMPARE(unhandled.texts.size(), 1);
        QVERIFY(unhandled.texts.first().contains(u"OfficerNo != ]"_s));
        QVERIFY(!form.box->ListIsOpen());
        QCOMPARE(form.box->Text(), u"a"_s);
        form.hold(Null(), {11});
        form.type(u"ad"_s);
        QCOMPARE(form.rows(), QStringList{u"F16: Adamson, Al #150"_s});
        QTest::keyClick(form.box, Qt::Key_Return);
        QCOMPARE(form.picker->Value(), QVariant(16.0));
    }

    void aHostWithoutAListFailsTheSearchAndIsAskedAgain()
    {
        Form form;
        QVERIFY(form.isReady());
        const Unhandled unhandled;
        form.host.failWith(Error(u"no list"_s));
        form.type(u"c"_s);
        QCOMPARE(unhandled.texts.size(), 1);
        form.host.failWith({});
        form.type(u"o"_s);
        QCOMPARE(unhandled.texts.size(), 1);
        QCOMPARE(form.rows(), QStringList{u"C13: Cole, Carl #77"_s});
        form.box->CloseList();
    }

    void theListIsTheOneOfTheFirstNeedForThePickersWholeLife()
    {
        Form form;
        QCOMPARE(form.found(), ActiveOnes);
        form.host.state().employees = listOf("L", "Employee", {employee(1, "new", "New", "", true)});
        form.host.state().hub.CacheRefreshed.raise({});
        QCOMPARE(form.found(), ActiveOnes);
        form.picker->SetValue(1);
        QVERIFY(IsNull(form.picker->Value()));
        QCOMPARE(form.host.state().log.count(u"EmployeeListCache.Document"_s), 1);
    }

    // Filter

    void filterIsAskedOnceForEachRowOnEverySearchInTheListsOrder()
    {
        const Form form;
        FilterHost host(*form.picker);
        QCOMPARE(form.found(u"ad"_s), QStringList({u"A11"_s, u"F16"_s}));
        QCOMPARE(host.take(), QList<qint32>({11, 16}));
        form.found(u"ad"_s);
        QCOMPARE(host.take(), QList<qint32>({11, 16}));
        form.found();
        QCOMPARE(host.take(), QList<qint32>({11, 13, 14, 16}));
        form.found(u"zz"_s);
        QCOMPARE(host.take(), QList<qint32>());
        form.picker->SetValue(11);
        QCOMPARE(host.take(), QList<qint32>()); // a value is not searched for
        QVERIFY(host.begunIncluded);
    }

    void excludedEmployeesAreNotOfferedYetStayAValue()
    {
        Form form;
        QVERIFY(form.isReady());
        const FilterHost host(*form.picker, {11, 13});
        QTest::keyClick(form.box, Qt::Key_Down);
        QCOMPARE(form.rows(), QStringList({u"D14: O'Hara, \"Red\""_s, u"F16: Adamson, Al #150"_s}));
        form.clickRow(0);
        QCOMPARE(form.picker->Value(), QVariant(14.0));
        form.picker->SetValue(11);
        QCOMPARE(form.picker->Value(), QVariant(11.0));
    }

    void aHostsValueIsFilteredLikeTheOthers()
    {
        const Form form;
        const FilterHost host(*form.picker, {12});
        form.hold(12);
        QCOMPARE(form.found(), ActiveOnes);
    }

    void whereEveryoneIsExcludedTheListSaysSo()
    {
        Form form;
        QVERIFY(form.isReady());
        const FilterHost host(*form.picker, {11, 12, 13, 14, 15, 16});
        form.type(u"a"_s);
        QVERIFY(form.box->ListIsOpen());
        QCOMPARE(form.rows(), QStringList());
        QTest::keyClick(form.box, Qt::Key_Return);
        QVERIFY(IsNull(form.picker->Value()));
        form.box->CloseList();
    }

    void ofSeveralFollowersTheLastHasTheLastWord()
    {
        const Form form;
        const FilterHost host(*form.picker, {11});
        connect(form.picker, &EmployeePicker::Filter, this, [](qint32 officerNo, bool& exclude) {
            if (officerNo == 11)
                exclude = false;
        });
        QCOMPARE(form.found(), ActiveOnes);
    }

    void aNumberThatIsNotInRangeFailsTheSearchesThatFindItAndNoOther()
    {
        Form form;
        QVERIFY(form.isReady());
        const Unhandled unhandled;
        form.host.state()
            .employees.selectSingleNode(u"Employees/Employee[3]/OfficerNo"_s)
            .setText(u"2147483648"_s);
        FilterHost host(*form.picker);
        form.type(u"c"_s);
        QCOMPARE(unhandled.texts.size(), 1);
        QVERIFY(!form.box->ListIsOpen());
        QCOMPARE(host.take(), QList<qint32>());
        form.emptyBox();
        form.type(u"al"_s);
        QCOMPARE(form.rows(), QStringList{u"F16: Adamson, Al #150"_s});
        form.box->CloseList();
        form.picker->SetValue(2147483648.0); // it is a number all the same
        QCOMPARE(form.label->Caption(), u"Cole, Carl"_s);
    }

    void aRecordWhoseNumberIsNoneIsAskedForByZeroAndIsNoValue_data()
    {
        QTest::addColumn<QString>("text");
        for (const char* text : {"nan", "inf", "-inf", "thirteen", ""})
            QTest::newRow(*text ? text : "empty") << QString::fromLatin1(text);
    }
    void aRecordWhoseNumberIsNoneIsAskedForByZeroAndIsNoValue()
    {
        QFETCH(QString, text);
        Form form;
        QVERIFY(form.isReady());
        const Unhandled unhandled;
        form.host.state().employees.selectSingleNode(u"Employees/Employee[3]/OfficerNo"_s).setText(text);
        FilterHost host(*form.picker);
        form.type(u"cole"_s);
        QCOMPARE(unhandled.texts, QStringList());
        QCOMPARE(form.rows(), QStringList{u"C13: Cole, Carl #77"_s});
        QCOMPARE(host.take().last(), 0);
        QTest::keyClick(form.box, Qt::Key_Return);
        QVERIFY(IsNull(form.picker->Value()));
        for (const double number : {qQNaN(), qInf(), -qInf()}) {
            form.picker->SetValue(number); // nor is it found as one
            QVERIFY(IsNull(form.picker->Value()));
            form.hold(number);
            QVERIFY(form.found(u"baker"_s).isEmpty());
        }
        QCOMPARE(unhandled.texts, QStringList());
    }

    void withoutAFollowerNumbersOutOfRangeDoNotMatter()
    {
        Form form;
        form.host.state()
            .employees.selectSingleNode(u"Employees/Employee[3]/OfficerNo"_s)
            .setText(u"2147483648"_s);
        QCOMPARE(form.found(), ActiveOnes);
    }

    void aFilterThatFailsIsToldAndItsRowStays()
    {
        Form form;
        QVERIFY(form.isReady());
        const Unhandled unhandled;
        connectGuarded(form.picker, &EmployeePicker::Filter, form.picker, "Host_Filter",
                       [](qint32 officerNo, bool& exclude) {
                           if (officerNo == 13)
                               throw Error(u"no answer"_s);
                           exclude = true;
                       });
        form.type(u"c"_s);
        QCOMPARE(unhandled.texts, QStringList{u"Host_Filter: no answer"_s});
        QCOMPARE(form.rows(), QStringList{u"C13: Cole, Carl #77"_s});
        form.box->CloseList();
    }

    void aFilterMayPutAValueOrDeleteThePicker()
    {
        Form form;
        QVERIFY(form.isReady());
        const auto putting =
            connect(form.picker, &EmployeePicker::Filter, this, [&] { form.picker->SetValue(11); });
        form.type(u"c"_s);
        QCOMPARE(form.picker->Value(), QVariant(11.0));
        QCOMPARE(form.box->Text(), u"A11"_s);
        form.box->CloseList();
        disconnect(putting);
        const QPointer<EmployeePicker> picker(form.picker);
        connect(form.picker, &EmployeePicker::Filter, &form.window, [&] { delete form.picker; });
        QTest::keyClick(form.box, Qt::Key_Down); // more than one row
        QVERIFY(picker.isNull());
    }

    // Texts of every kind

    void anyTextIsSearchedForAsThatTextAndFindsTheRecordThatHoldsItAndNoOther_data()
    {
        QTest::addColumn<QString>("text");
        const qsizetype length = 100000;
        const auto times = [&](const QString& part) { return part.repeated(length / part.size()); };
        QTest::newRow("apostrophe") << u"'"_s;
        QTest::newRow("double quote") << u"\""_s;
        QTest::newRow("both quotes") << u"'\"'\"\"''"_s;
        QTest::newRow("an expression") << u"') or true() or contains('a', '"_s;
        QTest::newRow("brackets") << u"x] | //Employee["_s;
        QTest::newRow("markup") << u"<Name>&amp;</Name>]]>"_s;
        QTest::newRow("a variable, a wildcard, a format") << u"$x * %1 %2 {0} \\n"_s;
        QTest::newRow("NUL") << u"zz"_s + QChar(0) + u"zz"_s;
        QTest::newRow("NUL alone") << QString(QChar(0));
        QTest::newRow("control characters") << u"z\u0001\u0007\u001b\u007f\u0085"_s;
        QTest::newRow("tab and line ends") << u"z\tz\nz\r\nz"_s;
        QTest::newRow("line separators") << u"z\u2028z\u2029z"_s;
        QTest::newRow("a lone high surrogate") << u"z"_s + QChar(0xD83D) + u"z"_s;
        QTest::newRow("a lone low surrogate") << u"z"_s + QChar(0xDE00);
        QTest::newRow("surrogates the wrong way round") << QString(QChar(0xDE00)) + QChar(0xD83D);
        QTest::newRow("a character beyond 16 bits") << u"z\U0001F600"_s;
        QTest::newRow("not a character") << u"z\uFFFE\uFFFF"_s;
        QTest::newRow("right to left") << u"\u05D3\u05D5\u05D3 \u0639\u0645\u0631"_s;
        QTest::newRow("marks of direction") << u"\u202Ezz\u202C\u200F"_s;
        QTest::newRow("capitals with accents") << u"JOS\u00c9"_s;
        QTest::newRow("letters without a single capital") << u"STRA\u00dfE \ufb03"_s;
        QTest::newRow("capitals of other alphabets") << u"\u0416\u0394\u0130"_s;
        QTest::newRow("a combining accent") << u"Jose\u0301"_s;
        QTest::newRow("100,000 letters") << times(u"z"_s);
        QTest::newRow("100,000 apostrophes") << times(u"'"_s);
        QTest::newRow("100,000 of both quotes") << times(u"'\""_s);
        QTest::newRow("100,000 brackets") << times(u"("_s);
        QTest::newRow("100,000 capitals with accents") << times(u"\u00c9"_s);
    }
    void anyTextIsSearchedForAsThatTextAndFindsTheRecordThatHoldsItAndNoOther()
    {
        QFETCH(QString, text);
        Form form;
        QVERIFY(form.isReady());
        const Unhandled unhandled;
        XmlDocument& list = form.host.state().employees;
        list = listOf("L", "Employee",
                      {employee(1, "one", "Name", "1", true), employee(2, "two", "", "2", true)});
        form.paste(text);
        QVERIFY2(unhandled.texts.isEmpty(), qPrintable(unhandled.texts.value(0).left(200)));
        QVERIFY(form.box->ListIsOpen());
        QCOMPARE(form.box->Query(), text);
        QCOMPARE(form.rows(), QStringList());
        QVERIFY(IsNull(form.picker->Value()));
        form.box->CloseList();
        // Another picker over a list in which somebody bears the text.
        list.selectSingleNode(u"L/Employee[2]/Name"_s).setText(u"b "_s + text + u" e"_s);
        EmployeePicker other(&form.window);
        Suggestions found;
        other.findChild<AutoCompleteComboBox*>()->SearchRequested.raise(text, found);
        QCOMPARE(found.size(), std::size_t(1));
        QCOMPARE(found.front().childElement(u"OfficerId"_s).text(), u"two"_s);
    }

    void aLetterBeyondAToZMatchesOnlyItsCapitalInTheListAndThatIsMeant()
    {
        Form form;
        form.host.state().employees =
            listOf("L", "Employee",
                   {employee(1, "small", "Jos\u00e9", "", true), employee(2, "big", "JOS\u00c9", "", true)});
        QCOMPARE(form.found(u"jos\u00e9"_s), QStringList{u"big"_s});
        QCOMPARE(form.found(u"JOS\u00c9"_s), QStringList{u"big"_s});
        QCOMPARE(form.found(u"jos"_s), QStringList({u"small"_s, u"big"_s}));
    }

    void aRowThatHoldsALongMatchIsPaintedWhole()
    {
        const Form form;
        const QString text(100000, u'\'');
        XmlDocument list = listOf("L", "Employee", {employee(1, "one", "", "1", true)});
        list.selectSingleNode(u"L/Employee/Name"_s).setText(text);
        const QStringList calls = form.drawn(list.selectSingleNode(u"L/Employee"_s), text);
        QCOMPARE(calls.filter(text).size(), 1);
    }
};

TAVRIN_TEST_MAIN(tst_EmployeePickerSearch)
#include "tst_EmployeePickerSearch.moc"
