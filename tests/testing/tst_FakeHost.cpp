#include "base/failure/Error.h"
#include "base/values/Variant.h"
#include "support/TestCase.h"
#include "testing/FakeDropdown.h"
#include "testing/FakeHost.h"
#include "testing/FakeRecords.h"

using namespace tavrin;
using namespace tavrin::test;

/// Where a test could rely on the fake, it answers as a real host does.
class tst_FakeHost : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void anUnknownUnitRaises()
    {
        FakeHost host;
        QCOMPARE(host.uiServices().ScaleModeFromUnits(QStringLiteral("User")), ScaleMode::User);
        QCOMPARE(host.uiServices().ScaleModeFromUnits(QStringLiteral("Pixel")), ScaleMode::Pixels);
        try {
            host.uiServices().ScaleModeFromUnits(QStringLiteral("Furlong"));
            QFAIL("no error");
        } catch (const Error& error) {
            QVERIFY(error.Description.contains(QStringLiteral("Furlong")));
        }
    }

    void aComboIsClearedAndTheRowOfTheValueMadeCurrent()
    {
        FakeHost host;
        host.setTable(Tables::Team, {{QStringLiteral("A"), QStringLiteral("Patrol A"), 1},
                                     {QStringLiteral("B"), QStringLiteral("Patrol B"), 2}});
        FakeDropdown combo;
        combo.AddItem(QStringLiteral("old"), 9);
        host.listFilling().FillTableCombo(Tables::Team, combo, false, Null(), false);
        QCOMPARE(combo.ListCount(), 3);
        QCOMPARE(combo.List(0), QString());
        QCOMPARE(combo.ListIndex(), -1);
        host.listFilling().FillTableCombo(Tables::Team, combo, false, 2, false);
        QCOMPARE(combo.ListCount(), 3);
        QCOMPARE(combo.ItemData(combo.ListIndex()), 2);
    }

    void aCollectionCanMakeAnObjectForARowAtEachCall()
    {
        FakeCollection rows;
        const tvTableRowPtr kept = rows.AddNew();
        QCOMPARE(rows.Item(1), kept);
        rows.makesRowsAnew = true;
        fieldOf(*rows.AddNew(), QStringLiteral("SeqNo"))->SetValue(7);
        const tvTableRowPtr row = rows.Item(2);
        QVERIFY(row != rows.Item(2));
        QCOMPARE(fieldOf(*rows.Item(2), QStringLiteral("SeqNo"))->Value(), QVariant(7));

        rows.SetPosition(1);
        rows.RemoveCurrent(false); // the object stands for its row wherever that stands
        fieldOf(*row, QStringLiteral("SeqNo"))->SetValue(8);
        QCOMPARE(fieldOf(*rows.Item(1), QStringLiteral("SeqNo"))->Value(), QVariant(8));
        rows.RemoveCurrent(false);
        rows.Add(row);
        QCOMPARE(rows.Count(), 1);
        QCOMPARE(fieldOf(*rows.Item(1), QStringLiteral("SeqNo"))->Value(), QVariant(8));
    }

    void theExtraTellsRequiredFieldsApart()
    {
        FakeHost host;
        host.state().requiredFields = {QStringLiteral("M/T/A"), QStringLiteral("M/T/B/x")};
        const auto required = [&host](const char* field, const char* extra) {
            return host.session().IsFieldRequired(QStringLiteral("M"), QStringLiteral("T"),
                                                  QString::fromLatin1(field), QString::fromLatin1(extra));
        };
        QVERIFY(required("A", ""));
        QVERIFY(!required("A", "x"));
        QVERIFY(required("B", "x"));
        QVERIFY(!required("B", ""));
    }
};

TAVRIN_TEST_MAIN(tst_FakeHost)
#include "tst_FakeHost.moc"
