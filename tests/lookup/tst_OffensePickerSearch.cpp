#include "base/values/Variant.h"
#include "lookup/ComboPickerForm.h"
#include "lookup/OffensePicker.h"
#include "support/TestCase.h"
#include "testing/Unhandled.h"
#include "widgets/labels/Link.h"

using namespace tavrin;
using namespace tavrin::test;
using namespace Qt::StringLiterals;
using Form = ComboPickerForm<OffensePicker>;

namespace {

const QStringList Everything{u"13A"_s, u"13B"_s, u"220"_s, u"240"_s, u"999"_s};
const QStringList InUse{u"13A"_s, u"220"_s, u"240"_s};
const QString Alphabets = u"'abcdefghijklmnopqrstuvwxyzabcdefghijklmnopqrstuvwxyz', "
                          u"'ABCDEFGHIJKLMNOPQRSTUVWXYZABCDEFGHIJKLMNOPQRSTUVWXYZ'"_s;

} // namespace

/// The searches of `OffensePicker`: when it searches, what it finds, and texts of every kind.
class tst_OffensePickerSearch : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // When it searches

    void onlyTheSecondCharacterSearches()
    {
        Form form;
        QVERIFY(form.isReady());
        form.type(u"b"_s);
        QVERIFY(!form.box->ListIsOpen());
        QCOMPARE(form.host.calls(), 0);
        form.type(u"u"_s);
        QCOMPARE(form.rows(), QStringList{u"220: Burglary"_s});
        QTest::keyClick(form.box, Qt::Key_Backspace);
        QVERIFY(!form.box->ListIsOpen());
        QCOMPARE(form.box->Text(), u"b"_s);
    }

    void nothingOpensTheListOfAnEmptyBox_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("Down") << int(Qt::Key_Down);
        QTest::newRow("F4") << int(Qt::Key_F4);
    }
    void nothingOpensTheListOfAnEmptyBox()
    {
        QFETCH(int, key);
        Form form;
        QVERIFY(form.isReady());
        QTest::keyClick(form.box, static_cast<Qt::Key>(key));
        QVERIFY(!form.box->ListIsOpen());
        QCOMPARE(form.host.calls(), 0);
        QVERIFY(!form.box->findChild<Link*>(u"lnkButton"_s)->isVisible());
    }

    void theButtonClearsWhatIsChosen()
    {
        Form form;
        QVERIFY(form.isReady());
        form.picker->SetValue(31);
        form.follow();
        auto* button = form.box->findChild<Link*>(u"lnkButton"_s);
        QVERIFY(button->isVisible());
        QTest::mouseClick(button, Qt::LeftButton);
        QCOMPARE(form.take(), QStringList{u"Change Null"_s});
        QVERIFY(!form.box->ListIsOpen());
    }

    // What is found

    void idDescriptionAndCodeAllMatchAnywhere_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QStringList>("found");
        QTest::newRow("description") << u"aSSault"_s << QStringList{u"13A"_s};
        QTest::newRow("inside the id, or inside the code") << u"3a"_s << QStringList({u"13A"_s, u"240"_s});
        QTest::newRow("inside the code") << u"200"_s << QStringList{u"220"_s};
        QTest::newRow("not in use") << u"simple"_s << QStringList();
    }
    void idDescriptionAndCodeAllMatchAnywhere()
    {
        QFETCH(QString, typed);
        QFETCH(QStringList, found);
        Form form;
        QVERIFY(form.isReady());
        form.type(typed);
        QStringList shown;
        for (const QString& row : form.rows())
            shown << row.section(u':', 0, 0);
        QCOMPARE(shown, found);
        form.box->CloseList();
    }

    void activeFlagEquals1WithoutQuotesSoThatAListWithTheTextTrueMatchesNothing()
    {
        Form form;
        QCOMPARE(form.found(), InUse); // 999 bears "True"
        form.host.state().offenses =
            listOf("L", "Offense", {offense(1, "one", "", "", "True"), offense(2, "two", "", "", "1.0")});
        OffensePicker other(&form.window);
        Suggestions found;
        other.findChild<AutoCompleteComboBox*>()->SearchRequested.raise(QString(), found);
        QCOMPARE(found.size(), std::size_t(1)); // a number is compared, not a text
        QCOMPARE(found.front().childElement(u"OffenseId"_s).text(), u"two"_s);
    }

    void theExpressionHoldsTheConditionsInTheirOrder_data()
    {
        QTest::addColumn<QString>("query");
        QTest::addColumn<bool>("listAll");
        QTest::addColumn<QVariant>("hostValue");
        QTest::addColumn<QString>("expression");
        const QString group = u"(contains(translate(OffenseId, %1), %2) or "
                              u"contains(translate(Description, %1), %2) or "
                              u"contains(translate(RptCode, %1), %2))"_s.arg(Alphabets, u"'X1'"_s);
        QTest::newRow("used values") << QString() << true << Null()
                                     << u"Offense[(OffenseNo != 7 and OffenseNo != ])]"_s;
        QTest::newRow("in use") << QString() << false << Null()
                                << u"Offense[((ActiveFlag=1) and OffenseNo != 7 and OffenseNo != ])]"_s;
        QTest::newRow("all")
            << u"x1"_s << false << QVariant(32)
            << u"Offense[((ActiveFlag=1 or OffenseNo=32) and OffenseNo != 7 and OffenseNo != ] and "_s +
                   group + u")]"_s;
    }
    void theExpressionHoldsTheConditionsInTheirOrder()
    {
        QFETCH(QString, query);
        QFETCH(bool, listAll);
        QFETCH(QVariant, hostValue);
        QFETCH(QString, expression);
        const Form form;
        form.picker->SetListAllOffenses(listAll);
        form.picker->SetRemoveUsedValues(true);
        form.hold(hostValue, {7, Null(), u"]"_s}); // which spoils the expression, so that it is quoted
        const QString error = form.searchError(query);
        QCOMPARE(error.mid(error.indexOf(u"Offense["_s)), expression);
    }

    void theOptionsAreReadAtTheNextSearchAndTheHostsValueStaysOffered()
    {
        const Form form;
        QCOMPARE(form.found(), InUse);
        form.hold(32, {31});
        QCOMPARE(form.found(), QStringList({u"13A"_s, u"13B"_s, u"220"_s, u"240"_s}));
        form.picker->SetRemoveUsedValues(true);
        QCOMPARE(form.found(), QStringList({u"13B"_s, u"220"_s, u"240"_s}));
        form.picker->SetListAllOffenses(true);
        QCOMPARE(form.found(), Everything.mid(1));
        form.picker->SetRemoveUsedValues(false);
        QCOMPARE(form.found(), Everything);
        form.picker->SetListAllOffenses(false);
        form.hold(Null());
        QCOMPARE(form.found(), InUse);
    }

    void aTextOfEveryKindIsSearchedForAndNeverAnError_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("both quotes") << u"'\"'"_s;
        QTest::newRow("an expression") << u"') or true() or ('"_s;
        QTest::newRow("NUL") << QString(2, QChar(0));
        QTest::newRow("control characters") << u"\u0001\u001b\n"_s;
        QTest::newRow("half characters") << QString(2, QChar(0xDE00));
        QTest::newRow("right to left") << u"\u05D3\u05D5\u05D3"_s;
        QTest::newRow("100,000 letters") << QString(100000, u'z');
        QTest::newRow("100,000 apostrophes") << QString(100000, u'\'');
    }
    void aTextOfEveryKindIsSearchedForAndNeverAnError()
    {
        QFETCH(QString, text);
        Form form;
        QVERIFY(form.isReady());
        const Unhandled unhandled;
        form.host.state()
            .offenses.selectSingleNode(u"Offenses/Offense[3]/RptCode"_s)
            .setText(u"a"_s + text + u"b"_s);
        form.paste(text);
        QCOMPARE(unhandled.texts.size(), 0);
        QCOMPARE(form.rows(), QStringList{u"220: Burglary"_s});
        QTest::keyClick(form.box, Qt::Key_Return);
        QCOMPARE(form.picker->Value(), QVariant(33.0));
    }
};

TAVRIN_TEST_MAIN(tst_OffensePickerSearch)
#include "tst_OffensePickerSearch.moc"
