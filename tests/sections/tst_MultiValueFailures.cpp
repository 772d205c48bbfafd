#include "base/failure/ByName.h"
#include "base/failure/Error.h"
#include "sections/MultiValueForm.h"
#include "sections/NotingRows.h"
#include "support/FailingRecords.h"
#include "support/RaisedError.h"
#include "support/TestCase.h"
#include "testing/Unhandled.h"

#include <limits>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

/// Failures of the host's two calls, and what a save does behind a fill that has failed.
class tst_MultiValueFailures : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Where it failed

    void failuresOfTheSaveBearTheNumberOfTheirStatement_data()
    {
        QTest::addColumn<QString>("failing");
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("line");
        QTest::newRow("adding a row") << u"AddNew"_s << 0 << 1020;
        QTest::newRow("writing a value") << u"Item 1"_s << 2 << 1030;
        QTest::newRow("looking at the last row") << u"Item 4"_s << 4 << 1050;
        QTest::newRow("moving") << u"Position 4"_s << 4 << 1070;
        QTest::newRow("removing") << u"RemoveCurrent 0"_s << 4 << 1080;
        QTest::newRow("looking at the new last row") << u"Item 3"_s << 4 << 1100;
    }
    void failuresOfTheSaveBearTheNumberOfTheirStatement()
    {
        QFETCH(QString, failing);
        QFETCH(int, rows);
        QFETCH(int, line);
        MultiValueForm form;
        form.fill({11, 12});
        const auto noting = std::make_shared<NotingRows>(rows);
        noting->failing = failing;
        const Error error = raisedBy([&] { form.save(noting); });
        QCOMPARE(error.Number, 61);
        QCOMPARE(error.Source, u"host -> MultiValue.BoundControl_SetControl [line %1]"_s.arg(line));
        QCOMPARE(error.Description, u"Could not persist control values: disk full"_s);
    }

    void clearingAValueThatFailsBearsItsNumber()
    {
        MultiValueForm form;
        const auto rows = std::make_shared<NotingRows>(2);
        putField(*rows, 2, u"Remark"_s, u"kept"_s);
        rows->failing = u"Item 1"_s;
        const Error error = raisedBy([&] { form.save(rows); });
        QCOMPARE(error.Source, u"host -> MultiValue.BoundControl_SetControl [line 1120]"_s);
    }

    void aPositionBeyond16BitsFailsOnTheConversion()
    {
        MultiValueForm form;
        const auto rows = std::make_shared<NotingRows>(1);
        rows->countTold = std::numeric_limits<qint16>::max() + 1;
        const Error error = raisedBy([&] { form.save(rows); });
        QCOMPARE(error.Number, Error::OverflowNumber);
        QVERIFY(error.Source.endsWith(u" -> MultiValue.BoundControl_SetControl [line 1070]"_s));
    }

    void aFieldThatTheRowsDoNotHaveIsNamed()
    {
        MultiValueForm form;
        const BoundBinding wrong{u"ToolNo"_s, WeaponTable};
        const Error fill = raisedBy([&] { form.contract().FillControl(&wrong, {}, rowsOf({11})); });
        QCOMPARE(fill.Source, u" -> MultiValue.BoundControl_FillControl [line 1040]"_s);
        QVERIFY(fill.Description.startsWith(u"Could not populate control: "_s));
        QVERIFY(fill.Description.contains(u"ToolNo"_s));
    }

    void failuresOfTheFillBearTheNumberOfTheirStatement()
    {
        MultiValueForm form;
        const auto rows = std::make_shared<NotingRows>(2);
        rows->failing = u"Item 2"_s;
        const Error row = raisedBy([&] { form.fill(rows); });
        QCOMPARE(row.Number, 61);
        QCOMPARE(row.Source, u"host -> MultiValue.BoundControl_FillControl [line 1030]"_s);
        QCOMPARE(row.Description, u"Could not populate control: disk full"_s);
        form.host.failWith(Error(u"no table"_s, 7, u"cache"_s));
        const Error list = raisedBy([&] { form.fill({11}); });
        QCOMPARE(list.Number, 7);
        QCOMPARE(list.Source, u"cache -> MultiValue.BoundControl_FillControl [line 1060]"_s);
        QCOMPARE(list.Description, u"Could not populate control: no table"_s);
        form.host.failWith({});
        form.fill({12});
        QCOMPARE(form.entries(), QStringList({u"Rifle"_s}));
    }

    // Enabled by its name

    void enabledThatFailsByItsNameGoesToTheHandlerOfUnhandledErrors()
    {
        Unhandled unhandled;
        MultiValueForm form;
        form.fill({11, 12});
        form.host.failWith(Error(u"no table"_s, 7));
        form.control->setProperty("Enabled", false);
        QCOMPARE(unhandled.texts, QStringList{u"MultiValue.Enabled: no table"_s});
        QVERIFY(!form.control->Enabled());
        form.host.failWith({});
        form.control->setProperty("Enabled", true);
        QVERIFY(form.control->Enabled());
        QCOMPARE(form.entries(), QStringList({u"Handgun"_s, u"Rifle"_s}));
        QCOMPARE(unhandled.texts.size(), 1);
    }

    void enabledThatFailsRaisesForWhoeverCallsItWithoutQtInBetween()
    {
        const Unhandled unhandled;
        MultiValueForm form;
        form.fill({11, 12});
        form.host.failWith(Error(u"no table"_s, 7));
        QCOMPARE(raisedBy([&] { form.control->SetEnabled(false); }).Number, 7);
        const RaiseByName raise(*form.control, "Enabled");
        const int index = form.control->metaObject()->indexOfProperty("Enabled");
        bool enabled = true;
        void* arguments[] = {&enabled};
        const Error raised =
            raisedBy([&] { form.control->qt_metacall(QMetaObject::WriteProperty, index, arguments); });
        QCOMPARE(raised.Number, 7);
        QCOMPARE(unhandled.texts, QStringList());
    }

    // Behind a fill that has failed

    void afterAFillThatFailsHalfWayTheListIsEmptyAndASaveLeavesTheRowsAlone_data()
    {
        QTest::addColumn<QString>("failing");
        QTest::addColumn<QString>("field");
        QTest::newRow("the first row") << u"Item 1"_s << u"WeaponNo"_s;
        QTest::newRow("the last row") << u"Item 3"_s << u"WeaponNo"_s;
        QTest::newRow("a field that is missing") << QString() << u"ToolNo"_s;
    }
    void afterAFillThatFailsHalfWayTheListIsEmptyAndASaveLeavesTheRowsAlone()
    {
        QFETCH(QString, failing);
        QFETCH(QString, field);
        MultiValueForm form;
        form.fill({11, 12}); // of another record
        form.list->SetListIndex(1);
        const auto rows = std::make_shared<NotingRows>(3);
        for (const int row : {1, 2, 3})
            putField(*rows, row, u"WeaponNo"_s, 10 + row);
        rows->failing = failing;
        const BoundBinding binding{field, WeaponTable};
        QVERIFY_THROWS_EXCEPTION(Error, form.contract().FillControl(&binding, {}, rows));
        rows->failing.clear();
        QCOMPARE(form.control->Count(), 0);
        QCOMPARE(form.entries(), QStringList());
        QVERIFY(!form.remove->isEnabled());
        form.control->SetEnabled(true); // builds the list anew, and finds nothing either
        QCOMPARE(form.entries(), QStringList());
        rows->take();
        const Error refused = raisedBy([&] { form.save(rows); });
        QCOMPARE(
            refused.Description,
            u"Could not persist control values: The values of the record could not be read, so none are written."_s);
        QCOMPARE(refused.Number, 5);
        QCOMPARE(refused.Source, u" -> MultiValue.BoundControl_SetControl [line 1000]"_s);
        QCOMPARE(rows->take(), QStringList()); // not even looked at
        QCOMPARE(weaponsOf(*rows), QVariantList({11, 12, 13}));
        form.contract().SetValue(nullptr, {}, rows); // does nothing, as ever
        form.fill(rows);                             // a fill that succeeds ends it
        QCOMPARE(form.values(), QVariantList({11, 12, 13}));
        QCOMPARE(form.entries(), QStringList({u"Handgun"_s, u"Rifle"_s, u"Knife"_s}));
    }

    void valuesThatWereReadAreKeptWhereTheListCannotBeBuilt_data()
    {
        QTest::addColumn<QString>("failing");
        for (const char* call : {"new TableCodeCache", "GetDescription 302", "ShadeColor"})
            QTest::newRow(call) << QString::fromLatin1(call);
    }
    void valuesThatWereReadAreKeptWhereTheListCannotBeBuilt()
    {
        QFETCH(QString, failing);
        MultiValueForm form;
        form.fill({13}); // of another record
        form.host.state().failures.insert({failing, Error(u"no table"_s, 61, u"cache"_s)});
        const auto rows = rowsOf({11, 12});
        const Error told = raisedBy([&] { form.fill(rows); });
        QCOMPARE(told.Number, 61);
        QCOMPARE(told.Source, u"cache -> MultiValue.BoundControl_FillControl [line 1060]"_s);
        form.host.state().failures.clear();
        QCOMPARE(form.values(), QVariantList({11, 12}));
        form.save(rows);
        QCOMPARE(weaponsOf(*rows), QVariantList({11, 12}));
        form.control->SetEnabled(true); // the list is built anew
        QCOMPARE(form.entries(), QStringList({u"Handgun"_s, u"Rifle"_s}));
    }

    void whicheverCallOfTheRowsFailsInAFillNothingIsShownAndASaveLeavesThemAlone()
    {
        const auto rows = rowsOf({11, 12});
        RecordCalls calls;
        const auto failing = std::make_shared<FailingCollection>(rows, calls);
        int failures = 0;
        for (bool failed = true; failed; ++failures) {
            MultiValueForm form;
            form.fill({13}); // of another record
            calls.heal();
            calls.failing = failures + 1;
            const Error told = raisedBy([&] { form.fill(failing); });
            failed = calls.hasFailed();
            QCOMPARE(told.Number, failed ? RecordCalls::FailureNumber : 0);
            QCOMPARE(form.control->Count(), failed ? 0 : 2);
            QCOMPARE(form.entries().size(), form.control->Count());
            calls.heal();
            if (failed) {
                QVERIFY_THROWS_EXCEPTION(Error, form.save(failing));
                QCOMPARE(calls.made, 0); // it does not even look
            }
            QCOMPARE(weaponsOf(*rows), QVariantList({11, 12}));
        }
        QCOMPARE(failures, 8); // the count; of each row itself, its field and that field's value; none
    }
};

TAVRIN_TEST_MAIN(tst_MultiValueFailures)
#include "tst_MultiValueFailures.moc"
