#include "base/values/Variant.h"
#include "lookup/EmployeeList.h"
#include "lookup/FlatPickerForm.h"
#include "lookup/RecordingPicture.h"
#include "support/TestCase.h"
#include "testing/Unhandled.h"

#include <QClipboard>

using namespace tavrin;
using namespace Qt::StringLiterals;
using tavrin::test::EmployeeForm;
using tavrin::test::Journal;
using tavrin::test::RecordingPicture;
using tavrin::test::usedValues;

namespace {

const QString Jack = u"K12: O'Brien, Jack #4512"_s;
const QString Ann = u"A1: Smith, Ann #1245"_s;
const QString Hanna = u"H0: Old, Hanna #300"_s;
const QString Ninel = u"Z0: Zed, Ninel"_s;
const QString Bare = u":"_s;

QString expression(const QString& query, const SearchOptions& options)
{
    return EmployeeList().terms(query, options).expression(u"Employee"_s);
}

QString upper(const QString& field)
{
    return u"translate("_s + field +
           u", 'abcdefghijklmnopqrstuvwxyzabcdefghijklmnopqrstuvwxyz', "
           "'ABCDEFGHIJKLMNOPQRSTUVWXYZABCDEFGHIJKLMNOPQRSTUVWXYZ')"_s;
}

/// The rows that a pasted or typed text finds.
QStringList foundNames(EmployeeForm& form, const QString& text)
{
    QStringList names;
    for (const QString& row : form.found(text))
        names << row.section(u": "_s, 0, 0);
    return names;
}

} // namespace

/// The expressions, the results, the host's filter and the rows of `FlatEmployeePicker`'s list.
class tst_FlatEmployeeSearch : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Search

    void theExpressionReadsWordForWord_data()
    {
        QTest::addColumn<SearchOptions>("options");
        QTest::addColumn<QString>("query");
        QTest::addColumn<QString>("expression");
        const QString none;
        SearchOptions options;
        QTest::newRow("defaults") << options << none << u"Employee[((ActiveFlag='True'))]"_s;
        options.hostValue = 13.0;
        options.restriction = EmployeeList::k9HandlersOnly();
        options.RemoveUsedValues = true;
        options.usedValues = {12.0, Null(), 11};
        const QString literal = u"concat('O', \"'\", 'B')"_s;
        QTest::newRow("everything") << options << u"o'b"_s
                                    << u"Employee[((ActiveFlag='True' or OfficerNo=13) and "
                                       u"IsK9Handler='True' and OfficerNo != 12 and "
                                       "OfficerNo != 11 and (contains("_s +
                                           upper(u"Name"_s) + u", "_s + literal + u") or contains("_s +
                                           upper(u"OfficerId"_s) + u", "_s + literal +
                                           u") or starts-with("_s + upper(u"BadgeNo"_s) + u", "_s + literal +
                                           u")))]"_s;
        options = {};
        options.ListAll = true;
        QTest::newRow("all") << options << none << none;
    }
    void theExpressionReadsWordForWord()
    {
        QFETCH(SearchOptions, options);
        QFETCH(QString, query);
        QFETCH(QString, expression);
        QCOMPARE(::expression(query, options), expression);
    }

    void aTypedTextFindsNameAndOfficerIdAnywhereAndABadgeFromItsStart()
    {
        EmployeeForm form;
        QCOMPARE(form.found(u"o'BR"_s), QStringList{Jack});
        QCOMPARE(form.found(u"12"_s), QStringList({Jack, Ann})); // "K12", and badge 1245
        QCOMPARE(form.found(u"45"_s), QStringList{Jack});        // and not badge 1245
        QCOMPARE(form.found(u"hanna"_s), QStringList());
    }

    void theOptionsDecideWhoIsListed()
    {
        EmployeeForm form;
        form.picker->SetListAllEmployees(true);
        QCOMPARE(form.found(QString()), QStringList({Jack, Ann, Hanna, Ninel, Bare}));
        form.picker->SetK9HandlersOnly(true);
        QCOMPARE(form.found(QString()), QStringList{Ninel});
        form.picker->SetK9HandlersOnly(false);
        form.picker->SetListAllEmployees(false);
        form.contract().SetValue(13, nullptr);
        form.picker->SetValue(Null());
        QCOMPARE(form.found(QString()), QStringList({Jack, Ann, Hanna, Ninel, Bare})); // the host holds her
        form.picker->SetRemoveUsedValues(true);
        form.contract().SetValue(Null(), usedValues({11, Null(), QVariant()}));
        QCOMPARE(form.found(QString()), QStringList({Ann, Ninel, Bare}));
    }

    void theOptionsReportTheirKeysAndTouchNoLook()
    {
        EmployeeForm form;
        Journal journal(form.picker);
        form.host.state().log.clear();
        form.picker->SetK9HandlersOnly(true);
        form.picker->SetListAllEmployees(true);
        form.picker->SetRemoveUsedValues(true);
        QCOMPARE(journal.entries,
                 QStringList({u"K9HandlersOnly"_s, u"ListAllEmployees"_s, u"RemoveUsedValues"_s}));
        QCOMPARE(form.host.state().log, QStringList());
    }

    void everyTextIsSearchedForAsText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("both quotes") << u"x'y\"z"_s;
        QTest::newRow("closed literal") << u"') or true() or ('"_s;
        QTest::newRow("control characters") << u"x\u0001\u001F\u007Fy\t"_s;
        QTest::newRow("NUL") << QString(u"x"_s + QChar(0) + u"y"_s);
        QTest::newRow("100,000 characters") << u"0123456789"_s.repeated(10'000);
        QTest::newRow("10,000 apostrophes") << QString(10'000, u'\'');
        QTest::newRow("lone surrogate") << QString(u"x"_s + QChar(0xD83D));
        QTest::newRow("right to left") << u"\u05E9\u05DC\u05D5\u05DD"_s;
    }
    void everyTextIsSearchedForAsText()
    {
        QFETCH(QString, text);
        EmployeeForm form;
        XmlDocument list;
        const XmlNode root = list.appendChild(list.createElement(u"Employees"_s));
        for (const QString& name : {text.toUpper() + u'.', u"other"_s}) {
            const XmlNode employee = root.appendElement(u"Employee"_s);
            employee.appendElement(u"OfficerId"_s, name == u"other"_s ? u"2"_s : u"1"_s);
            employee.appendElement(u"Name"_s, name);
            employee.appendElement(u"ActiveFlag"_s, u"True"_s);
        }
        form.host.state().employees = list;
        QVERIFY(form.isReady());
        const tavrin::test::Unhandled unhandled;
        QGuiApplication::clipboard()->setText(text);
        form.box->setFocus();
        form.press(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(form.box->Text(), text);
        QCOMPARE(form.list()->rowCount(), 1);
        QVERIFY(form.rows().first().startsWith(u"1:"_s));
        QCOMPARE(unhandled.texts, QStringList());
    }

    // Filter

    void theFilterIsAskedOnceForEachRowOfEachSearch()
    {
        EmployeeForm form;
        QList<qint32> asked;
        QList<bool> given;
        connect(form.picker, &FlatEmployeePicker::Filter, this, [&](qint32 officerNo, bool& exclude) {
            asked << officerNo;
            given << exclude;
            exclude = officerNo == 12;
        });
        QCOMPARE(form.found(QString()), QStringList({Jack, Ninel, Bare}));
        QCOMPARE(asked, QList<qint32>({11, 12, 14, 15}));
        QCOMPARE(given, QList<bool>({false, false, false, false}));
        asked.clear();
        QCOMPARE(form.found(u"smith"_s), QStringList());
        QCOMPARE(asked, QList<qint32>{12}); // only those whom the search found
    }

    void theFilterHidesTheCurrentValueFromTheListAndChangesNothingInIt()
    {
        EmployeeForm form;
        form.picker->SetValue(12);
        Journal journal(form.picker);
        connect(form.picker, &FlatEmployeePicker::Filter, this,
                [&](qint32 officerNo, bool& exclude) { exclude = officerNo == 12; });
        QCOMPARE(foundNames(form, QString()), QStringList({u"K12"_s, u"Z0"_s, Bare}));
        QCOMPARE(form.picker->Value(), QVariant(12.0));
        QVERIFY(form.tag->isVisible());
        QCOMPARE(journal.entries, QStringList());
        form.picker->SetValue(12); // nor is it asked when a value is put
        QCOMPARE(form.picker->Value(), QVariant(12.0));
    }

    // Rows

    void aRowHasIdNameAndBadgeInTheControlsFont()
    {
        EmployeeForm form;
        form.picker->Font()->SetName(u"Sans"_s);
        form.picker->Font()->SetSize(10);
        RecordingPicture picture;
        form.box->DrawItem.raise(picture, EmployeeList().find(12), u"SM"_s, false);
        // Letters of 10 points are 100 twips wide and 200 high, bold ones 101.
        QCOMPARE(picture.calls,
                 QStringList({u"font Sans 10"_s, u"bold"_s, u"print \"A1: \" at 0,0"_s, u"not bold"_s,
                              u"bold"_s, u"mark 404,0 to 606,200"_s, u"x 404"_s, u"y 0"_s,
                              u"print \"Sm\" at 404,0"_s, u"not bold"_s, u"print \"ith, Ann\" at 606,0"_s,
                              u"x 2500"_s, u"print \"#1245\" at 2500,0"_s, u"width 3000"_s, u"end of line"_s,
                              u"height 200"_s}));
        RecordingPicture selected;
        form.box->DrawItem.raise(selected, EmployeeList().find(12), u"SM"_s, true);
        QCOMPARE(selected.calls, picture.calls);
    }

    void aRowWithoutABadgeHasNoNumberSign()
    {
        EmployeeForm form;
        RecordingPicture picture;
        form.box->DrawItem.raise(picture, EmployeeList().find(14), QString(), false);
        QCOMPARE(picture.calls.filter(u"#"_s), QStringList());
    }
};

TAVRIN_TEST_MAIN(tst_FlatEmployeeSearch)
#include "tst_FlatEmployeeSearch.moc"
