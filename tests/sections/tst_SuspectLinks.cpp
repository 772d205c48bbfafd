#include "base/failure/Error.h"
#include "base/values/Variant.h"
#include "frame/memory_records/MemoryField.h"
#include "frame/memory_records/MemoryRow.h"
#include "sections/SuspectLinks.h"
#include "support/RaisedError.h"
#include "support/TestCase.h"
#include "testing/FakeHost.h"
#include "testing/FakeRecords.h"

#include <QDate>
#include <QVariantList>

#include <random>

using namespace Qt::StringLiterals;
using namespace tavrin;
using tavrin::MemoryField;
using tavrin::test::FakeCollection;
using tavrin::test::FakeRecord;
using tavrin::test::raisedBy;

namespace {

struct Stage
{
    Stage() { suspect->SetItem(u"SuspectVictims"_s, rows); }
    SuspectLinks links() const { return {suspect, u"SuspectVictims"_s, u"VictimSeqNo"_s}; }
    tvTableRowPtr add(const QVariant& value) const
    {
        const tvTableRowPtr row = rows->AddNew();
        fieldOf(*row, u"VictimSeqNo"_s)->SetValue(value);
        return row;
    }
    /// The first row by a walk from the first.
    tvTableRowPtr walked(const QVariant& value) const
    {
        for (const tvTableRowPtr& row : *rows) {
            const QVariant present = fieldOf(*row, u"VictimSeqNo"_s)->Value();
            // Without the conversion of texts into numbers.
            const bool mixes =
                (present.typeId() == QMetaType::QString) != (value.typeId() == QMetaType::QString);
            if (!mixes && SameValue(present, value))
                return row;
        }
        return nullptr;
    }

    std::shared_ptr<FakeRecord> suspect = std::make_shared<FakeRecord>();
    std::shared_ptr<FakeCollection> rows =
        std::make_shared<FakeCollection>(QStringList{u"LinkNo"_s, u"VictimSeqNo"_s});
};

} // namespace

class tst_SuspectLinks : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void everySearchGivesWhatAWalkFromTheFirstRowGives()
    {
        const QVariantList values{1,
                                  2,
                                  1.0,
                                  u"1"_s,
                                  u""_s,
                                  Null(),
                                  QVariant(),
                                  true,
                                  0.5,
                                  -0.0,
                                  0,
                                  0.1F,
                                  u"x"_s,
                                  QDate(2026, 1, 2),
                                  QVariant(QMetaType(QMetaType::Int)),
                                  qint64(1) << 60};
        std::mt19937 random(11);
        const auto pick = [&] { return values.at(static_cast<int>(random() % values.size())); };
        for (int round = 0; round < 40; ++round) {
            const Stage stage;
            SuspectLinks links = stage.links();
            for (int i = 0; i < 12; ++i)
                stage.add(pick());
            for (int step = 0; step < 40; ++step) {
                const QVariant value = pick();
                const tvTableRowPtr expected = stage.walked(value);
                switch (random() % 5) {
                case 0: {
                    const qint32 count = stage.rows->Count();
                    links.remove(value);
                    QCOMPARE(stage.rows->Count(), expected ? count - 1 : count);
                    for (const tvTableRowPtr& row : *stage.rows)
                        QVERIFY(row != expected);
                    break;
                }
                case 1:
                    fieldOf(*links.add(), u"VictimSeqNo"_s)->SetValue(value);
                    break;
                case 2: // somebody else
                    stage.add(value);
                    break;
                default:
                    QCOMPARE(links.find(value), expected);
                }
            }
        }
    }

    void aRowThatReadsAnotherFieldIsFoundByThatFieldsValue()
    {
        const Stage stage;
        const auto field = std::make_shared<MemoryField>(u"SeqNo"_s, 3);
        stage.add(1);
        const tvTableRowPtr row = stage.add(QVariant::fromValue<HostObjectPtr>(field));
        SuspectLinks links = stage.links();
        QCOMPARE(links.find(3), row);
        field->SetValue(4); // meanwhile
        QCOMPARE(links.find(3), nullptr);
        QCOMPARE(links.find(4), row);
    }

    void aTextEqualsNoNumber()
    {
        const Stage stage;
        stage.add(u"2"_s);
        stage.add(u"x"_s);
        SuspectLinks links = stage.links();
        QCOMPARE(links.find(2), nullptr);
        QCOMPARE(links.find(0), nullptr);
        QVERIFY(links.find(u"2"_s));
    }

    void nothingIsAskedForBeforeTheFirstSearch()
    {
        const Stage stage;
        stage.suspect->SetItem(u"SuspectVictims"_s, nullptr);
        SuspectLinks links = stage.links();
        QVERIFY_EXCEPTION_THROWN(links.find(1), Error);
    }

    void theWalkStopsAtTheRowThatItFinds()
    {
        const Stage stage;
        stage.add(1);
        stage.rows->Add(std::make_shared<tavrin::MemoryRow>(QList<tvFieldPtr>{})); // has no field
        SuspectLinks links = stage.links();
        QVERIFY(links.find(1));
        QVERIFY_EXCEPTION_THROWN(links.find(2), Error);
        QVERIFY(links.find(1));
    }

    void aRemovedRowIsTheOneAtItsPositionWithTheNextSave()
    {
        const Stage stage;
        for (const int value : {5, 6, 7})
            stage.add(value);
        SuspectLinks links = stage.links();
        links.remove(6);
        links.remove(7);
        links.remove(8);
        QCOMPARE(stage.rows->Count(), 1);
        QCOMPARE(links.find(5), stage.rows->Item(1));
        QCOMPARE(stage.rows->removedImmediately, QList<bool>({false, false}));
    }

    void aLinkThatCannotBeCompletedIsTakenBack_data()
    {
        QTest::addColumn<bool>("makesRowsAnew");
        QTest::newRow("a host that keeps its rows") << false;
        QTest::newRow("a host that makes rows anew") << true;
    }
    void aLinkThatCannotBeCompletedIsTakenBack()
    {
        QFETCH(bool, makesRowsAnew);
        tavrin::test::FakeHost host;
        const HostInstallation installation(host);
        const Stage stage;
        stage.rows->SetNumbersRows(true);
        stage.rows->makesRowsAnew = makesRowsAnew;
        stage.add(1);
        FakeCollection parties({u"SeqNo"_s});
        const tvTableRowPtr party = parties.AddNew();
        fieldOf(*party, u"SeqNo"_s)->SetValue(2);
        SuspectLinks links = stage.links();
        QVERIFY_THROWS_EXCEPTION(Error, links.relate(*party, nullptr, u"3"_s)); // no suspects
        QCOMPARE(stage.rows->Count(), 1);
        QVERIFY(stage.walked(1));
    }

    void aRowBeyondTheRangeOfAPositionCannotBeRemoved()
    {
        const Stage stage;
        for (int i = 1; i <= 32767; ++i)
            stage.add(i);
        const tvTableRowPtr beyond = stage.rows->NewItem(); // no row there becomes the current one
        fieldOf(*beyond, u"VictimSeqNo"_s)->SetValue(32768);
        stage.rows->Add(beyond);
        SuspectLinks links = stage.links();
        const Error error = raisedBy([&] { links.remove(32768); });
        QCOMPARE(error.Number, Error::OverflowNumber);
        links.remove(32767);
        QCOMPARE(stage.rows->Count(), 32767);
    }
};

TAVRIN_TEST_MAIN(tst_SuspectLinks)
#include "tst_SuspectLinks.moc"
