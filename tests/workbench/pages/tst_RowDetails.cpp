#include "base/values/Variant.h"
#include "lookup/NibrsOffensePicker.h"
#include "sections/MultiValue.h"
#include "support/NextModal.h"
#include "support/TestCase.h"
#include "widgets/lists/ListBox.h"
#include "workbench/PickerSite.h"
#include "workbench/pages/PickerRows.h"

#include <QPushButton>

using namespace tavrin;
using namespace tavrin::workbench;
using namespace tavrin::test;

namespace {

const QString NibrsCode = QStringLiteral("NibrsCode");
const QString Weapons = QStringLiteral("OffenseWeapons");
const QString WeaponNo = QStringLiteral("WeaponNo");
const QString Biases = QStringLiteral("OffenseBiases");
const QString BiasNo = QStringLiteral("BiasNo");
const QString OffenseSeqNo = QStringLiteral("OffenseSeqNo");

/// A site whose incident has two offenses: the first with two weapons and a bias, the second with a weapon.
struct DetailSite : PickerSite
{
    DetailSite()
    {
        const RecordPtr record = workspace->store().load(incidentNo);
        const RecordCollectionPtr offenses = record->collection(Offenses);
        while (offenses->Count() > 0)
            offenses->RemoveCurrent(false);
        for (const auto& [offense, code] : {std::pair(30, "23H"), std::pair(18, "13B")}) {
            const tvTableRowPtr row = offenses->AddNew();
            fieldOf(*row, QStringLiteral("OffenseNo"))->SetValue(offense);
            fieldOf(*row, NibrsCode)->SetValue(QString::fromLatin1(code));
        }
        const auto add = [&](const QString& collection, int line, const QString& field, int value) {
            const tvTableRowPtr row = record->collection(collection)->AddNew();
            fieldOf(*row, OffenseSeqNo)->SetValue(offenses->rows().at(line)->keyValue());
            fieldOf(*row, field)->SetValue(value);
        };
        add(Weapons, 0, WeaponNo, 13);
        add(Weapons, 0, WeaponNo, 20);
        add(Weapons, 1, WeaponNo, 30);
        add(Biases, 0, BiasNo, 88);
        workspace->store().save(*record);
    }
    /// What the database has, of all offenses: each value behind the number of its offense.
    QVariantList storedDetails(const QString& collection, const QString& field)
    {
        QVariantList values;
        const RecordPtr record = workspace->store().load(incidentNo);
        for (const RecordRowPtr& row : record->collection(collection)->rows()) {
            for (const RecordRowPtr& offense : record->collection(Offenses)->rows()) {
                if (SameValue(offense->keyValue(), row->cell(OffenseSeqNo).value()))
                    values << offense->cell(QStringLiteral("OffenseNo")).value() << row->cell(field).value();
            }
        }
        return values;
    }
    QVariantList storedCodes()
    {
        QVariantList codes;
        const RecordPtr record = workspace->store().load(incidentNo);
        for (const RecordRowPtr& row : record->collection(Offenses)->rows())
            codes << row->cell(NibrsCode).value();
        return codes;
    }
    void openPage() { Site::openPage(OffensesPageNo); }
    QList<PickerRow*> lines() const { return PickerSite::lines(Offenses); }
    NibrsOffensePicker* code(int line) const
    {
        return lines().at(line)->findChild<NibrsOffensePicker*>(NibrsCode);
    }
    QWidget* details(int line) const
    {
        return lines().at(line)->findChild<QWidget*>(QStringLiteral("details"));
    }
    MultiValue* list(int line, const QString& name) const
    {
        return lines().at(line)->findChild<MultiValue*>(name);
    }
    void deleteFirst(int line, const QString& name) const
    {
        auto* box = list(line, name)->findChild<ListBox*>(QStringLiteral("lstValues"));
        box->setFocus();
        QTest::keyClick(box, Qt::Key_Home);
        QTest::keyClick(box, Qt::Key_Delete);
    }
    /// Goes through the dialog with the first choice.
    void addValue(int line, const QString& name, Qt::Key end = Qt::Key_Return) const
    {
        layOut();
        const NextModal dialog([end](QWidget& window) { QTest::keyClick(&window, end); });
        QTest::mouseClick(list(line, name)->findChild<QWidget*>(QStringLiteral("lnkAdd")), Qt::LeftButton);
        QVERIFY(dialog.came());
    }
    void addOffense(const QString& text) const
    {
        choose(add(Offenses), text);
        QVERIFY(!IsNull(lines().constLast()->value()));
    }
};

} // namespace

/// The reporting codes, weapons and bias motivations of an incident's offenses, with the real controls and a
/// real database.
class tst_RowDetails : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void eachOffenseShowsItsOwnAndThatIsNoChange()
    {
        DetailSite site;
        site.open();
        QVERIFY(SameValue(site.code(0)->Value(), QStringLiteral("23H")));
        QVERIFY(SameValue(site.code(1)->Value(), QStringLiteral("13B")));
        QCOMPARE(site.list(0, Weapons)->Count(), 2);
        QCOMPARE(site.list(1, Weapons)->Count(), 1);
        QCOMPARE(site.list(0, Biases)->Count(), 1);
        QCOMPARE(site.list(1, Biases)->Count(), 0);
        QVERIFY(!site.window->isDirty());
    }

    void aReportingCodeIsChosenByItsFirstDigitAndStored()
    {
        DetailSite site;
        site.openPage();
        site.code(1)->setFocus();
        QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("22")); // the second one that begins so
        QVERIFY(site.window->isDirty());
        QVERIFY(site.window->save());
        QCOMPARE(site.storedCodes(), QVariantList({QStringLiteral("23H"), QStringLiteral("210")}));
        QVERIFY(!site.window->isDirty());
    }

    void aCodeThatNoListKnowsSurvivesASave()
    {
        DetailSite site;
        const RecordPtr record = site.workspace->store().load(site.incidentNo);
        record->collection(Offenses)->rows().front()->cell(NibrsCode).setValue(QStringLiteral("ZZZ"));
        site.workspace->store().save(*record);
        site.openPage();
        QVERIFY(!site.window->isDirty());
        site.deleteFirst(0, Biases);
        QVERIFY(site.window->save());
        QCOMPARE(site.storedCodes().constFirst(), QVariant(QStringLiteral("ZZZ")));
    }

    void addedAndRemovedValuesAreThoseOfTheirOffense()
    {
        DetailSite site;
        site.openPage();
        site.deleteFirst(0, Weapons);
        QVERIFY(site.window->isDirty());
        site.addValue(1, Weapons);
        site.addValue(1, Biases);
        QVERIFY(site.window->save());
        const QVariantList weapons = site.storedDetails(Weapons, WeaponNo);
        QCOMPARE(weapons.size(), 6);
        QCOMPARE(weapons.mid(0, 4), QVariantList({30, 20, 18, 30}));
        QCOMPARE(weapons.at(4), QVariant(18));
        const QVariantList biases = site.storedDetails(Biases, BiasNo);
        QCOMPARE(biases.mid(0, 3), QVariantList({30, 88, 18}));
        QVERIFY(!site.window->isDirty());
    }

    void aDialogThatIsLeftWithoutAChoiceIsNoChange()
    {
        DetailSite site;
        site.openPage();
        site.addValue(0, Weapons, Qt::Key_Escape);
        QVERIFY(!site.window->isDirty());
    }

    void theLastValueLeavesNoRowBehind()
    {
        DetailSite site;
        site.openPage();
        site.deleteFirst(1, Weapons);
        QVERIFY(site.window->save());
        QCOMPARE(site.storedDetails(Weapons, WeaponNo), QVariantList({30, 13, 30, 20}));
    }

    void aNewOffenseIsSavedWithItsDetailsInOneGo()
    {
        DetailSite site;
        site.openPage();
        site.addOffense(QStringLiteral("440.10"));
        QVERIFY(site.details(2)->isVisible());
        QVERIFY(IsNull(site.code(2)->Value()));
        QCOMPARE(site.list(2, Weapons)->Count(), 0);
        site.code(2)->setFocus();
        QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("9"));
        site.addValue(2, Weapons);
        QVERIFY(site.window->save());
        QCOMPARE(site.storedCodes().constLast(), QVariant(QStringLiteral("90B")));
        const QVariantList weapons = site.storedDetails(Weapons, WeaponNo);
        QCOMPARE(weapons.size(), 8);
        QCOMPARE(weapons.at(6), QVariant(73));
        QVERIFY(!site.window->isDirty());
        QVERIFY(site.window->save()); // again, and nothing is there twice
        QCOMPARE(site.storedDetails(Weapons, WeaponNo), weapons);
    }

    void aNewOffenseScrollsIntoViewAndSoDoItsDetails()
    {
        DetailSite site;
        site.openPage();
        site.window->resize(820, 400);
        const auto isSeen = [&](QWidget* widget) {
            return widget->visibleRegion().boundingRect() == widget->rect();
        };
        QTRY_VERIFY(!isSeen(site.details(1)));
        QTest::keyClick(site.window, Qt::Key_A, Qt::AltModifier);
        QTRY_COMPARE(site.lines().size(), 3);
        QTRY_VERIFY(isSeen(&site.lines().constLast()->picker()));
        choose(site.lines().constLast()->picker(), QStringLiteral("440.10"));
        QTRY_VERIFY(isSeen(site.details(2)));
        QVERIFY(isSeen(&site.lines().constLast()->picker()));
    }

    void aLineWithoutAnOffenseHasNoDetails()
    {
        DetailSite site;
        site.openPage();
        QVERIFY(site.details(0)->isVisible());
        site.add(Offenses);
        QVERIFY(!site.details(2)->isVisible());
        QVERIFY(!site.window->isDirty());
    }

    void aRemovedOffenseTakesItsDetailsAlong()
    {
        DetailSite site;
        site.openPage();
        site.remove(Offenses, 0);
        QVERIFY(site.window->save());
        QCOMPARE(site.storedDetails(Weapons, WeaponNo), QVariantList({18, 30}));
        QCOMPARE(site.workspace->store().load(site.incidentNo)->collection(Weapons)->Count(), 1);
        QCOMPARE(site.workspace->store().load(site.incidentNo)->collection(Biases)->Count(), 0);
    }

    void aSaveThatFailedAndIsRepeatedWritesTheDetailsOnce()
    {
        DetailSite site;
        site.openPage();
        site.addValue(1, Biases);
        site.deleteFirst(0, Weapons);
        site.workspace->database().execute(QStringLiteral("PRAGMA query_only = 1"));
        QVERIFY(!site.window->save());
        QVERIFY(site.window->isDirty());
        site.workspace->database().execute(QStringLiteral("PRAGMA query_only = 0"));
        QVERIFY(site.window->save());
        QCOMPARE(site.storedDetails(Weapons, WeaponNo), QVariantList({30, 20, 18, 30}));
        QCOMPARE(site.storedDetails(Biases, BiasNo).size(), 4);
        QVERIFY(!site.window->isDirty());
    }

    void aListWithoutAPlaceInTheRecordGivesOneMessage_data()
    {
        QTest::addColumn<QByteArray>("details");
        QTest::addColumn<QString>("problem");
        QTest::newRow("code") << QByteArray(R"("code": "Nothing")")
                              << QStringLiteral("The table IncdOffense has no field Nothing.");
        QTest::newRow("collection") << QByteArray(R"("lists": [{"collection": "Nothing"}])")
                                    << QStringLiteral("The record has no collection Nothing.");
        QTest::newRow("other rows") << QByteArray(R"("lists": [{"collection": "Victims"}])")
                                    << QStringLiteral(
                                           "The rows of Victims do not belong to rows of Offenses.");
        QTest::newRow("field") << QByteArray(
                                      R"("lists": [{"collection": "OffenseWeapons", "field": "BiasNo"}])")
                               << QStringLiteral("The table IncdOffWeapon has no field BiasNo.");
    }
    void aListWithoutAPlaceInTheRecordGivesOneMessage()
    {
        QFETCH(QByteArray, details);
        QFETCH(QString, problem);
        const QByteArray form = R"({"title": "", "controls": [
            {"class": "TVBoundControls.OffensePicker", "name": "Offense",
             "host": {"collection": "Offenses", "field": "OffenseNo", )" +
                                details + "}}]}";
        Site site(form, QStringLiteral("offenses.json"));
        site.open();
        QTRY_COMPARE(site.boxes.shown().size(), 1);
        QVERIFY2(site.boxes.texts().constFirst().endsWith(problem),
                 qPrintable(site.boxes.texts().constFirst()));
        QVERIFY(!site.window->findChild<PickerRows*>(Offenses));
    }

    void tabWalksFromTheOffenseThroughItsDetails()
    {
        DetailSite site;
        site.openPage();
        site.lines().constFirst()->picker().setFocus();
        const auto tab = [] { QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab); };
        tab(); // the flag
        tab();
        QCOMPARE(QApplication::focusWidget(), site.code(0)->focusProxy());
        tab();
        QCOMPARE(QApplication::focusWidget(), site.list(0, Weapons)->focusProxy());
        tab();
        QCOMPARE(QApplication::focusWidget()->objectName(), QStringLiteral("lnkAdd"));
        tab();
        if (QApplication::focusWidget()->objectName() == QLatin1String("lnkDelete"))
            tab(); // there while something is selected
        QCOMPARE(QApplication::focusWidget(), site.list(0, Biases)->focusProxy());
    }
};

TAVRIN_TEST_MAIN(tst_RowDetails)
#include "tst_RowDetails.moc"
