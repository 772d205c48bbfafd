#include "base/values/Variant.h"
#include "frame/memory_records/MemoryField.h"
#include "frame/memory_records/MemoryRow.h"
#include "sections/MultiValueForm.h"
#include "sections/NotingRows.h"
#include "support/TestCase.h"

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

class FakeLinkField final : public tvLinkField
{
public:
    QVariant Value() const override { return 5; }
    void SetValue(const QVariant&) override {}
    QString Name() const override { return QStringLiteral("IncidentNo"); }
    bool IsKey() const override { return false; }
    qint32 MaxLength() const override { return 0; }
};

} // namespace

/// What the host's two calls do with the rows.
class tst_MultiValueSaving : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Filling

    void fillingShowsTheDescriptionsInTheOrderOfTheRows()
    {
        MultiValueForm form;
        form.host.state().log.clear();
        form.fill({13, 11, 13, 99});
        QCOMPARE(form.control->Count(), 4);
        QCOMPARE(form.entries(), QStringList({u"Knife"_s, u"Handgun"_s, u"Knife"_s, u""_s}));
        QCOMPARE(form.host.state().log.first(), u"new TableCodeCache"_s);
        QCOMPARE(form.host.state().log.count(u"new TableCodeCache"_s), 1);
        QCOMPARE(form.host.state().log.last(), u"ShadeColor"_s);
        form.fill({12}); // in the place of the others, with another cache
        QCOMPARE(form.entries(), QStringList({u"Rifle"_s}));
        QCOMPARE(form.host.state().log.count(u"new TableCodeCache"_s), 2);
        QCOMPARE(form.take(), QStringList());
    }

    void nullValuesInTheRowsAreLeftOut()
    {
        MultiValueForm form;
        form.fill({Null(), 12, Null(), 11});
        QCOMPARE(form.control->Count(), 2);
        QCOMPARE(form.entries(), QStringList({u"Rifle"_s, u"Handgun"_s}));
    }

    void withoutBindingOrRowsTheCallsDoNothing()
    {
        MultiValueForm form;
        form.fill({11, 12});
        const int calls = form.host.calls();
        const auto rows = rowsOf({13, 13, 13});
        form.contract().FillControl(nullptr, {}, rows);
        form.contract().FillControl(&form.binding, {}, nullptr);
        form.contract().SetValue(nullptr, {}, rows);
        form.contract().SetValue(&form.binding, {}, nullptr);
        QCOMPARE(form.host.calls(), calls);
        QCOMPARE(weaponsOf(*rows), QVariantList({13, 13, 13}));
        QCOMPARE(form.values(), QVariantList({11, 12}));
    }

    void theSelectedPlaceStaysSelectedAfterAFill()
    {
        MultiValueForm form;
        form.fill({11, 12, 13});
        form.list->SetListIndex(1);
        form.fill({13, 12});
        QCOMPARE(form.list->ListIndex(), 1);
        QVERIFY(form.remove->isEnabled());
        form.fill({13}); // there is no such place
        QCOMPARE(form.list->ListIndex(), -1);
        QVERIFY(!form.remove->isEnabled());
        form.fill(QVariantList());
        QVERIFY(!form.remove->isEnabled());
    }

    void theBindingIsCopiedAtTheFill()
    {
        MultiValueForm form;
        {
            const auto binding = std::make_unique<BoundBinding>(form.binding);
            form.contract().FillControl(binding.get(), {}, rowsOf({11}));
        }
        form.control->SetEnabled(true); // builds the list anew
        QCOMPARE(form.entries(), QStringList({u"Handgun"_s}));
    }

    // Saving

    void savingReusesRowsInPlaceAndAddsWhatIsMissing()
    {
        MultiValueForm form;
        form.fill({11, 12, 13});
        const auto rows = std::make_shared<NotingRows>(1);
        form.save(rows);
        QCOMPARE(rows->take(),
                 QStringList({u"AddNew"_s, u"AddNew"_s, u"Item 1"_s, u"Item 2"_s, u"Item 3"_s, u"Item 3"_s}));
        QCOMPARE(weaponsOf(*rows), QVariantList({11, 12, 13}));
    }

    void valuesMayMoveFromRowToRow()
    {
        MultiValueForm form;
        const auto rows = rowsOf({11, 12, 13});
        putField(*rows, 3, u"Remark"_s, u"of the third row"_s);
        form.fill(rows);
        form.list->SetListIndex(0);
        QVERIFY(form.isReady());
        form.press(Qt::Key_Delete);
        QCOMPARE(weaponsOf(*rows), QVariantList({11, 12, 13})); // the record changes with the save only
        form.save(rows);
        QCOMPARE(weaponsOf(*rows), QVariantList({12, 13, Null()}));
        QCOMPARE(fieldsOf(*rows, u"Remark"_s).last(), QVariant(u"of the third row"_s));
        form.fill(rows);
        QCOMPARE(form.values(), QVariantList({12, 13}));
    }

    void savingAfterRemovingTheLastOfThreeDeletesOrClearsRowThree_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("deleted");
        QTest::newRow("nothing else in it") << QString() << true;
        QTest::newRow("other data") << u"Remark"_s << false;
        QTest::newRow("its key") << u"SeqNo"_s << true;
        QTest::newRow("LastUpdated") << u"LastUpdated"_s << true;
        QTest::newRow("DateEntered") << u"DateEntered"_s << true;
        QTest::newRow("a similar name") << u"LastUpdatedBy"_s << false;
    }
    void savingAfterRemovingTheLastOfThreeDeletesOrClearsRowThree()
    {
        QFETCH(QString, name);
        QFETCH(bool, deleted);
        MultiValueForm form;
        const auto rows = std::make_shared<FakeCollection>(QStringList{
            u"SeqNo"_s, u"WeaponNo"_s, u"Remark"_s, u"LastUpdated"_s, u"DateEntered"_s, u"LastUpdatedBy"_s});
        for (const int code : {11, 12, 13})
            fieldOf(*rows->AddNew(), u"WeaponNo"_s)->SetValue(code);
        form.fill(rows);
        QVERIFY(form.isReady());
        form.list->SetListIndex(2);
        form.press(Qt::Key_Delete);
        if (!name.isEmpty())
            putField(*rows, 3, name, u"something"_s);
        form.save(rows);
        if (deleted) {
            QCOMPARE(weaponsOf(*rows), QVariantList({11, 12}));
            QCOMPARE(rows->removedImmediately, QList<bool>({false}));
        } else {
            QCOMPARE(weaponsOf(*rows), QVariantList({11, 12, Null()}));
            QCOMPARE(fieldsOf(*rows, name).last(), QVariant(u"something"_s));
            QCOMPARE(rows->removedImmediately, QList<bool>());
        }
    }

    void aLinkToTheRecordAboveDoesNotKeepARow()
    {
        MultiValueForm form;
        const auto rows = std::make_shared<FakeCollection>(QStringList{u"SeqNo"_s, u"WeaponNo"_s});
        rows->Add(std::make_shared<MemoryRow>(QList<tvFieldPtr>{
            std::make_shared<MemoryField>(u"SeqNo"_s, 1, true), std::make_shared<FakeLinkField>(),
            std::make_shared<MemoryField>(u"WeaponNo"_s)}));
        form.save(rows);
        QCOMPARE(rows->Count(), 0);
    }

    void emptyRowsAreRemovedFromTheEndUpToTheFirstThatIsNot()
    {
        MultiValueForm form;
        form.fill({11});
        const auto rows = std::make_shared<NotingRows>(4);
        putField(*rows, 2, u"Remark"_s, u"kept"_s);
        rows->take();
        form.save(rows);
        QCOMPARE(rows->take(),
                 QStringList({u"Item 1"_s, u"Item 4"_s, u"Position 4"_s, u"RemoveCurrent 0"_s, u"Item 3"_s,
                              u"Position 3"_s, u"RemoveCurrent 0"_s, u"Item 2"_s, u"Item 2"_s}));
    }

    void savingNoValuesIntoEmptyRowsRemovesThemAllAndStops()
    {
        MultiValueForm form;
        const auto rows = std::make_shared<NotingRows>(2);
        form.save(rows);
        QCOMPARE(rows->take(), QStringList({u"Item 2"_s, u"Position 2"_s, u"RemoveCurrent 0"_s, u"Item 1"_s,
                                            u"Position 1"_s, u"RemoveCurrent 0"_s}));
        QCOMPARE(rows->Count(), 0);
    }

    void savingWithNoValuesAndNoRowsAddsAndDeletesNothing()
    {
        MultiValueForm form;
        const auto rows = std::make_shared<NotingRows>(0);
        form.save(rows);
        QCOMPARE(rows->take(), QStringList());
    }

    void rowsOfValuesStayAlsoWhereTheValueIsAKey()
    {
        MultiValueForm form;
        form.fill({11, 12});
        const auto rows = rowsOf({Null(), Null(), Null()});
        const BoundBinding key{u"SeqNo"_s, WeaponTable};
        form.contract().SetValue(&key, {}, rows);
        QCOMPARE(fieldsOf(*rows, u"SeqNo"_s), QVariantList({11, 12}));
    }

    void aSaveBeforeAnyFillRemovesTheRowsWhichIsMeant()
    {
        MultiValueForm form;
        const auto rows = rowsOf({11, 12});
        form.save(rows); // no values: the host has asked for an empty list
        QCOMPARE(rows->Count(), 0);
    }

    void aFollowerOfTheRowsMayDeleteTheControl()
    {
        MultiValueForm form;
        const auto rows = rowsOf({Null(), Null()});
        putField(*rows, 1, u"Remark"_s, u"kept"_s);
        const Subscription closing =
            rows->ItemRemoved.subscribe([&](const QVariant&) { delete form.control.data(); });
        form.save(rows);
        QVERIFY(!form.control);
        QCOMPARE(rows->Count(), 1);
    }
};

TAVRIN_TEST_MAIN(tst_MultiValueSaving)
#include "tst_MultiValueSaving.moc"
