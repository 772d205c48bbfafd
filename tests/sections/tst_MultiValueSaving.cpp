#include "base/failure/Error.h"
#include "base/values/Variant.h"
#include "sections/MultiValueForm.h"
#include "support/FailingRecords.h"
#include "support/TestCase.h"
#include "support/Unhandled.h"

#include <limits>

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

/// A collection that notes what is asked of it, in its order, and fails where it is told to.
class NotingRows final : public tvTableCollection
{
public:
    NotingRows(QStringList columns, qsizetype count)
        : m_rows(std::make_shared<FakeCollection>(std::move(columns)))
    {
        for (qsizetype i = 0; i < count; ++i)
            m_rows->AddNew();
    }

    QString KeyColumn() const override { return m_rows->KeyColumn(); }
    tvTableRowPtr NewItem() override { return m_rows->NewItem(); }
    tvTableRowPtr AddNew() override
    {
        note(u"AddNew"_s);
        return m_rows->AddNew();
    }
    void Add(const tvTableRowPtr& row) override { m_rows->Add(row); }
    void RemoveCurrent(bool immediately) override
    {
        note(u"RemoveCurrent %1"_s.arg(immediately));
        m_rows->RemoveCurrent(immediately);
    }
    qint32 Count() const override { return countTold.value_or(m_rows->Count()); }
    tvTableRowPtr Item(qint32 index) override
    {
        note(u"Item %1"_s.arg(index));
        return m_rows->Item(std::min(index, m_rows->Count()));
    }
    void SetItemClass(const QString&) override {}
    qint16 Position() const override { return m_rows->Position(); }
    void SetPosition(qint16 position) override
    {
        note(u"Position %1"_s.arg(position));
        m_rows->SetPosition(position);
    }
    bool CurrentIsPrimary() const override { return false; }
    void SetPrimaryValue(const QVariant&) override {}
    qint32 PrimaryIndex() const override { return 0; }

    QStringList take() { return std::exchange(m_log, {}); }

    QString failing;
    std::optional<qint32> countTold;

private:
    void note(const QString& call)
    {
        m_log << call;
        if (call == failing)
            throw Error(u"disk full"_s, 61, u"host"_s);
    }

    std::shared_ptr<FakeCollection> m_rows;
    QStringList m_log;
};

const QStringList Columns{QStringLiteral("SeqNo"), QStringLiteral("WeaponNo"), QStringLiteral("Remark")};

template <typename Body>
Error errorOf(Body body)
{
    try {
        body();
    } catch (const Error& error) {
        return error;
    }
    return Error(u"none"_s, 0);
}

void put(tvTableCollection& rows, int row, const QString& name, const QVariant& value)
{
    fieldOf(*rows.Item(row), name)->SetValue(value);
}

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
        NotingRows* rows = new NotingRows(Columns, 1);
        const tvTableCollectionPtr held(rows);
        form.contract().SetValue(&form.binding, {}, held);
        QCOMPARE(rows->take(),
                 QStringList({u"AddNew"_s, u"AddNew"_s, u"Item 1"_s, u"Item 2"_s, u"Item 3"_s, u"Item 3"_s}));
        QCOMPARE(weaponsOf(*held), QVariantList({11, 12, 13}));
    }

    void valuesMayMoveFromRowToRow()
    {
        MultiValueForm form;
        const auto rows = rowsOf({11, 12, 13});
        put(*rows, 3, u"Remark"_s, u"of the third row"_s);
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
            put(*rows, 3, name, u"something"_s);
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
        rows->Add(std::make_shared<FakeRow>(QList<tvFieldPtr>{
            std::make_shared<FakeField>(u"SeqNo"_s, 1, true), std::make_shared<FakeLinkField>(),
            std::make_shared<FakeField>(u"WeaponNo"_s)}));
        form.save(rows);
        QCOMPARE(rows->Count(), 0);
    }

    void emptyRowsAreRemovedFromTheEndUpToTheFirstThatIsNot()
    {
        MultiValueForm form;
        form.fill({11});
        NotingRows* rows = new NotingRows(Columns, 4);
        const tvTableCollectionPtr held(rows);
        put(*held, 2, u"Remark"_s, u"kept"_s);
        rows->take();
        form.contract().SetValue(&form.binding, {}, held);
        QCOMPARE(rows->take(),
                 QStringList({u"Item 1"_s, u"Item 4"_s, u"Position 4"_s, u"RemoveCurrent 0"_s, u"Item 3"_s,
                              u"Position 3"_s, u"RemoveCurrent 0"_s, u"Item 2"_s, u"Item 2"_s}));
    }

    void savingNoValuesIntoEmptyRowsRemovesThemAllAndStops()
    {
        MultiValueForm form;
        NotingRows* rows = new NotingRows(Columns, 2);
        const tvTableCollectionPtr held(rows);
        form.contract().SetValue(&form.binding, {}, held);
        QCOMPARE(rows->take(), QStringList({u"Item 2"_s, u"Position 2"_s, u"RemoveCurrent 0"_s, u"Item 1"_s,
                                            u"Position 1"_s, u"RemoveCurrent 0"_s}));
        QCOMPARE(held->Count(), 0);
    }

    void savingWithNoValuesAndNoRowsAddsAndDeletesNothing()
    {
        MultiValueForm form;
        NotingRows* rows = new NotingRows(Columns, 0);
        const tvTableCollectionPtr held(rows);
        form.contract().SetValue(&form.binding, {}, held);
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

    void aFollowerOfTheRowsMayDeleteTheControl()
    {
        MultiValueForm form;
        const auto rows = rowsOf({Null(), Null()});
        put(*rows, 1, u"Remark"_s, u"kept"_s);
        const Subscription closing =
            rows->ItemRemoved.subscribe([&](const QVariant&) { delete form.control.data(); });
        form.save(rows);
        QVERIFY(!form.control);
        QCOMPARE(rows->Count(), 1);
    }

    // Failures

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
        const auto noting = std::make_shared<NotingRows>(Columns, rows);
        noting->failing = failing;
        const Error error = errorOf([&] { form.contract().SetValue(&form.binding, {}, noting); });
        QCOMPARE(error.Number, 61);
        QCOMPARE(error.Source, u"host -> MultiValue.BoundControl_SetControl [line %1]"_s.arg(line));
        QCOMPARE(error.Description, u"Could not persist control values: disk full"_s);
    }

    void clearingAValueThatFailsBearsItsNumber()
    {
        MultiValueForm form;
        const auto rows = std::make_shared<NotingRows>(Columns, 2);
        put(*rows, 2, u"Remark"_s, u"kept"_s);
        rows->failing = u"Item 1"_s;
        const Error error = errorOf([&] { form.contract().SetValue(&form.binding, {}, rows); });
        QCOMPARE(error.Source, u"host -> MultiValue.BoundControl_SetControl [line 1120]"_s);
    }

    void aPositionBeyond16BitsFailsOnTheConversion()
    {
        MultiValueForm form;
        const auto rows = std::make_shared<NotingRows>(Columns, 1);
        rows->countTold = std::numeric_limits<qint16>::max() + 1;
        const Error error = errorOf([&] { form.contract().SetValue(&form.binding, {}, rows); });
        QCOMPARE(error.Number, Error::OverflowNumber);
        QVERIFY(error.Source.endsWith(u" -> MultiValue.BoundControl_SetControl [line 1070]"_s));
    }

    void aFieldThatTheRowsDoNotHaveIsNamed()
    {
        MultiValueForm form;
        const BoundBinding wrong{u"ToolNo"_s, WeaponTable};
        const Error fill = errorOf([&] { form.contract().FillControl(&wrong, {}, rowsOf({11})); });
        QCOMPARE(fill.Source, u" -> MultiValue.BoundControl_FillControl [line 1040]"_s);
        QVERIFY(fill.Description.startsWith(u"Could not populate control: "_s));
        QVERIFY(fill.Description.contains(u"ToolNo"_s));
    }

    void failuresOfTheFillBearTheNumberOfTheirStatement()
    {
        MultiValueForm form;
        const auto rows = std::make_shared<NotingRows>(Columns, 2);
        rows->failing = u"Item 2"_s;
        const Error row = errorOf([&] { form.contract().FillControl(&form.binding, {}, rows); });
        QCOMPARE(row.Number, 61);
        QCOMPARE(row.Source, u"host -> MultiValue.BoundControl_FillControl [line 1030]"_s);
        QCOMPARE(row.Description, u"Could not populate control: disk full"_s);
        form.host.failWith(Error(u"no table"_s, 7, u"cache"_s));
        const Error list = errorOf([&] { form.fill({11}); });
        QCOMPARE(list.Number, 7);
        QCOMPARE(list.Source, u"cache -> MultiValue.BoundControl_FillControl [line 1060]"_s);
        QCOMPARE(list.Description, u"Could not populate control: no table"_s);
        form.host.failWith({});
        form.fill({12});
        QCOMPARE(form.entries(), QStringList({u"Rifle"_s}));
    }

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
        const auto rows = std::make_shared<NotingRows>(Columns, 3);
        for (const int row : {1, 2, 3})
            put(*rows, row, u"WeaponNo"_s, 10 + row);
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
        const Error refused = errorOf([&] { form.contract().SetValue(&form.binding, {}, rows); });
        QCOMPARE(
            refused.Description,
            u"Could not persist control values: The values of the record could not be read, so none are written."_s);
        QCOMPARE(refused.Number, 5);
        QCOMPARE(refused.Source, u" -> MultiValue.BoundControl_SetControl [line 1000]"_s);
        QCOMPARE(rows->take(), QStringList()); // not even looked at
        QCOMPARE(weaponsOf(*rows), QVariantList({11, 12, 13}));
        form.contract().SetValue(nullptr, {}, rows);          // does nothing, as ever
        form.contract().FillControl(&form.binding, {}, rows); // a fill that succeeds ends it
        QCOMPARE(form.values(), QVariantList({11, 12, 13}));
        QCOMPARE(form.entries(), QStringList({u"Handgun"_s, u"Rifle"_s, u"Knife"_s}));
    }

    void nothingCanBeAddedBehindAFillThatHasFailed()
    {
        const Unhandled unhandled;
        MultiValueForm form;
        QVERIFY(form.isReady());
        form.fill({11});
        const BoundBinding wrong{u"ToolNo"_s, WeaponTable};
        QVERIFY_THROWS_EXCEPTION(Error, form.contract().FillControl(&wrong, {}, rowsOf({11})));
        form.click(form.add);
        QCOMPARE(unhandled.texts,
                 QStringList({u"Link_Click: Nothing can be added to this list yet: it has not been filled "
                              "from a record."_s}));
        QCOMPARE(form.take(), QStringList());
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
        const Error told = errorOf([&] { form.contract().FillControl(&form.binding, {}, rows); });
        QCOMPARE(told.Number, 61);
        QCOMPARE(told.Source, u"cache -> MultiValue.BoundControl_FillControl [line 1060]"_s);
        form.host.state().failures.clear();
        QCOMPARE(form.values(), QVariantList({11, 12}));
        form.contract().SetValue(&form.binding, {}, rows);
        QCOMPARE(weaponsOf(*rows), QVariantList({11, 12}));
        form.control->SetEnabled(true); // the list is built anew
        QCOMPARE(form.entries(), QStringList({u"Handgun"_s, u"Rifle"_s}));
    }

    void aSaveBeforeAnyFillRemovesTheRowsWhichIsMeant()
    {
        MultiValueForm form;
        const auto rows = rowsOf({11, 12});
        form.contract().SetValue(&form.binding, {}, rows); // no values: the host has asked for an empty list
        QCOMPARE(rows->Count(), 0);
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
            const Error told = errorOf([&] { form.contract().FillControl(&form.binding, {}, failing); });
            failed = calls.hasFailed();
            QCOMPARE(told.Number, failed ? RecordCalls::FailureNumber : 0);
            QCOMPARE(form.control->Count(), failed ? 0 : 2);
            QCOMPARE(form.entries().size(), form.control->Count());
            calls.heal();
            if (failed) {
                QVERIFY_THROWS_EXCEPTION(Error, form.contract().SetValue(&form.binding, {}, failing));
                QCOMPARE(calls.made, 0); // it does not even look
            }
            QCOMPARE(weaponsOf(*rows), QVariantList({11, 12}));
        }
        QCOMPARE(failures, 8); // the count; of each row itself, its field and that field's value; none
    }
};

TAVRIN_TEST_MAIN(tst_MultiValueSaving)
#include "tst_MultiValueSaving.moc"
