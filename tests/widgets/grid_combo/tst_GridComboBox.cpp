#include "base/failure/Error.h"
#include "support/TestCase.h"
#include "testing/Unhandled.h"
#include "widgets/grid_combo/GridStage.h"

#include <QAccessible>
#include <QApplication>
#include <QHeaderView>

using namespace Qt::StringLiterals;
using namespace tavrin;
using tavrin::test::GridStage;

/// Rows, the current one, columns, the list's looks and what a screen reader learns.
class tst_GridComboBox : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void atFirstThereIsNoArrayAndNoRow()
    {
        GridComboBox combo;
        QVERIFY(!combo.HasArray());
        QVERIFY_EXCEPTION_THROWN(combo.Array(), Error);
        QVERIFY(IsNull(combo.Bookmark()));
        QVERIFY(IsNull(combo.Columns(0).Value()));
        QVERIFY_EXCEPTION_THROWN(combo.Columns(4), Error);
        QVERIFY_EXCEPTION_THROWN(combo.Columns(-1), Error);
        combo.ResetArray();
        QVERIFY(combo.HasArray());
        QCOMPARE(combo.Array().UpperBound(), 0);
    }

    void theFirstRowsMakeTheFirstOneCurrentAndTellIt()
    {
        GridStage stage;
        stage.combo->ResetArray();
        stage.combo->Rebind();
        QCOMPARE(stage.take(), QStringList());
        stage.fill(3);
        QCOMPARE(stage.take(), QStringList({u"row 1"_s}));
        QCOMPARE(stage.combo->Bookmark(), QVariant(1));
    }

    void aRowThatTheArrayDoesNotHaveYetWaitsForIt()
    {
        GridStage stage;
        stage.combo->ResetArray();
        stage.combo->SetBookmark(2);
        QVERIFY(IsNull(stage.combo->Bookmark()));
        QCOMPARE(stage.take(), QStringList());
        stage.combo->Array().AppendRow({u"a"_s, u"A"_s, 1, 1});
        stage.combo->Array().AppendRow({u"b"_s, u"B"_s, 2, 1});
        stage.combo->Rebind();
        QCOMPARE(stage.take(), QStringList({u"row 2"_s}));
        QCOMPARE(stage.combo->Text(), u"b"_s);
    }

    void aBookmarkTellsARowChangeBeforeItReturnsAndOnlyForAnotherRow()
    {
        GridStage stage;
        stage.fill(3);
        stage.take();
        stage.combo->SetBookmark(3);
        QCOMPARE(stage.take(), QStringList({u"row 3"_s}));
        stage.combo->SetBookmark(3);
        QCOMPARE(stage.take(), QStringList());
        QCOMPARE(stage.combo->Text(), u"entry 2"_s);
        QCOMPARE(stage.combo->Columns(1).Value(), QVariant(u"long entry 2"_s));
        QCOMPARE(stage.combo->Columns(2).Value(), QVariant(20));
        stage.combo->SetBookmark(Null());
        QCOMPARE(stage.take(), QStringList({u"row "_s}));
        QCOMPARE(stage.combo->Text(), QString());
        stage.combo->SetBookmark(Null());
        QCOMPARE(stage.take(), QStringList());
    }

    void fillingAnewTellsNothingAndARowWithTheSameCellsIsTheSameWhereverItStands()
    {
        GridStage stage;
        stage.fill({u"a"_s, u"b"_s});
        stage.combo->SetBookmark(3);
        stage.take();
        stage.combo->ResetArray();
        stage.combo->Array().AppendRow({u"new"_s, u"new"_s, 5, u"1"_s});
        stage.combo->Array().AppendRow({u"b"_s, u"long b"_s, 20, u"1"_s});
        stage.combo->Array().AppendRow({u"b"_s, u"long b"_s, 21, u"1"_s});
        stage.combo->Rebind();
        QCOMPARE(stage.take(), QStringList());
        stage.combo->SetBookmark(2); // it stood in row 3
        QCOMPARE(stage.take(), QStringList());
        QCOMPARE(stage.combo->Text(), u"b"_s);
        stage.combo->Rebind();
        stage.combo->SetBookmark(3); // what the followers know of is another row
        QCOMPARE(stage.take(), QStringList({u"row 3"_s}));
    }

    void theSameNumberWithOtherCellsIsAnotherRowOnceTheArrayIsAnother()
    {
        GridStage stage;
        stage.fill({u"a"_s, u"b"_s});
        stage.combo->SetBookmark(3);
        stage.take();
        stage.fill({u"a"_s, u"c"_s});
        stage.combo->SetBookmark(3);
        QCOMPARE(stage.take(), QStringList({u"row 3"_s}));
    }

    void twoRowsWithTheSameCellsAreTwoRows()
    {
        GridStage stage;
        stage.combo->ResetArray();
        for (int i = 0; i < 2; ++i)
            stage.combo->Array().AppendRow({u"a"_s, u"a"_s, 1, 1});
        stage.combo->Rebind();
        stage.take();
        stage.combo->SetBookmark(2);
        QCOMPARE(stage.take(), QStringList({u"row 2"_s}));
    }

    void withoutItsArrayTheComboHasNoRowAndTellsIt()
    {
        GridStage stage;
        stage.fill(3);
        stage.take();
        stage.combo->RemoveArray();
        QVERIFY(!stage.combo->HasArray());
        QCOMPARE(stage.take(), QStringList({u"row "_s}));
        stage.combo->RemoveArray();
        QCOMPARE(stage.take(), QStringList());
    }

    void anErrorInAHandlerReachesWhoeverSetsTheBookmark()
    {
        GridStage stage;
        stage.fill(3);
        const Subscription failing = stage.combo->RowChange.subscribe([] { throw Error(u"no"_s); });
        QVERIFY_EXCEPTION_THROWN(stage.combo->SetBookmark(2), Error);
        QCOMPARE(stage.combo->Bookmark(), QVariant(2));
        stage.combo->SetBookmark(2); // the row is known by now
    }

    void cellTextIsTheTextOfAnyRow()
    {
        GridStage stage;
        stage.fill(2);
        QCOMPARE(stage.combo->Columns(2).CellText(3), u"20"_s);
        QCOMPARE(stage.combo->Columns(2).CellText(1), QString());
        QCOMPARE(stage.combo->Columns(2).CellText(4), QString());
        QCOMPARE(stage.combo->Columns(2).CellText(0), QString());
        QCOMPARE(stage.combo->Columns(2).CellText(Null()), QString());
    }

    void aSetTextStandsUntilTheNextRow()
    {
        GridStage stage;
        stage.fill(2);
        stage.combo->SetText(u"x"_s);
        QCOMPARE(stage.combo->Text(), u"x"_s);
        stage.combo->SetBookmark(2);
        QCOMPARE(stage.combo->Text(), u"entry 1"_s);
    }

    void theListShowsTheVisibleColumnsUnderTheirCaptionsBelowTheBox()
    {
        GridStage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        stage.combo->OpenList();
        GridTable* table = stage.table();
        QVERIFY(table->isVisible());
        QVERIFY(!table->isColumnHidden(0));
        QVERIFY(!table->isColumnHidden(1));
        QVERIFY(table->isColumnHidden(2));
        QVERIFY(table->isColumnHidden(3));
        QCOMPARE(table->model()->headerData(0, Qt::Horizontal).toString(), u"Id"_s);
        QCOMPARE(table->model()->headerData(1, Qt::Horizontal).toString(), u"Text"_s);
        QCOMPARE(table->model()->index(3, 1).data().toString(), u"long entry 3"_s);
        QCOMPARE(table->window()->y(), stage.combo->mapToGlobal(QPoint(0, stage.combo->height())).y());
        QVERIFY(table->window()->width() >= stage.combo->width());
        QVERIFY(table->columnWidth(1) >= table->fontMetrics().horizontalAdvance(u"long entry 3"_s));
        QVERIFY(stage.combo->hasFocus());
        stage.combo->CloseList();
        QVERIFY(!table->isVisible());
    }

    void aHiddenOrDisabledBoxOpensNoList()
    {
        GridStage stage;
        stage.combo->SetEnabled(false);
        stage.combo->OpenList();
        QVERIFY(!stage.combo->ListIsOpen());
        stage.combo->SetEnabled(true);
        stage.combo->hide();
        stage.combo->OpenList();
        QVERIFY(!stage.combo->ListIsOpen());
    }

    void onlyRowsInViewAreAskedForTheirStyleAndEachOnce()
    {
        GridStage stage;
        stage.fill(10000);
        stage.combo->SetBookmark(5000);
        QHash<int, int> asked;
        const Subscription keep =
            stage.combo->FetchRowStyle.subscribe([&](int row, GridRowStyle&) { ++asked[row]; });
        stage.combo->OpenList();
        asked.clear();
        stage.table()->viewport()->grab();
        QVERIFY(asked.size() >= 12 && asked.size() <= 14);
        QVERIFY(asked.contains(5000));
        for (auto it = asked.begin(); it != asked.end(); ++it)
            QCOMPARE(it.value(), 1);
        stage.combo->CloseList();
    }

    void theStyleOfARowColoursItsTextAndNoOther()
    {
        GridStage stage;
        stage.fill(3);
        const Subscription keep = stage.combo->FetchRowStyle.subscribe([](int row, GridRowStyle& style) {
            if (row == 3)
                style.ForeColor = Color::rgb(255, 0, 0);
        });
        stage.combo->OpenList();
        const QImage image = stage.table()->viewport()->grab().toImage();
        const auto redIn = [&](int row) {
            const QRect place(0, stage.table()->rowViewportPosition(row - 1), image.width(),
                              stage.table()->rowHeight());
            for (int y = place.top(); y <= place.bottom(); ++y) {
                for (int x = 0; x < image.width(); ++x) {
                    const QColor color = image.pixelColor(x, y);
                    if (color.red() > 200 && color.green() < 90 && color.blue() < 90)
                        return true;
                }
            }
            return false;
        };
        QVERIFY(redIn(3));
        QVERIFY(!redIn(2));
        QVERIFY(!redIn(4));
        stage.combo->CloseList();
    }

    void aFailingStyleIsReportedOnceAndTheListPaintsOn()
    {
        tavrin::test::Unhandled unhandled;
        GridStage stage;
        stage.fill(3);
        const Subscription keep =
            stage.combo->FetchRowStyle.subscribe([](int, GridRowStyle&) { throw Error(u"no style"_s); });
        stage.combo->OpenList();
        stage.table()->viewport()->grab();
        stage.table()->viewport()->grab();
        QCOMPARE(unhandled.texts, QStringList({u"GridComboBox_FetchRowStyle: no style"_s}));
        stage.combo->CloseList();
    }

    void rowsThatAreTakenAwayUnderAnOpenListDoNoHarm()
    {
        GridStage stage;
        QVERIFY(stage.isReady());
        stage.fill(5);
        stage.combo->OpenList();
        const QPoint last = stage.middleOfRow(6);
        while (stage.combo->Array().UpperBound() > 2)
            stage.combo->Array().DeleteRow(3);
        stage.take();
        stage.table()->viewport()->grab();
        QTest::mouseClick(stage.table()->viewport(), Qt::LeftButton, {}, last);
        QCOMPARE(stage.take(), QStringList());
        stage.combo->OpenList();
        stage.combo->Array().DeleteRow(2);
        stage.combo->Rebind();
        QCOMPARE(stage.table()->model()->rowCount(), 1);
        QVERIFY(stage.combo->ListIsOpen());
        stage.combo->ResetArray(); // what the list showed is gone
        QVERIFY(!stage.combo->ListIsOpen());
    }

    void theBoxHasTheHeightOfItsFontAndFollowsChangesInside()
    {
        GridStage stage;
        const auto font = std::make_shared<tavrin::Font>();
        stage.combo->SetFont(font);
        QCOMPARE(stage.combo->height(), stage.combo->fontMetrics().height() + 8);
        const int before = stage.combo->height();
        font->SetSize(font->Size() * 2);
        QVERIFY(stage.combo->height() > before);
        stage.fill(2);
        stage.combo->OpenList();
        QCOMPARE(stage.table()->font().pointSizeF(), font->Size());
        stage.combo->CloseList();
    }

    void theBoxPaintsItsColours()
    {
        GridStage stage;
        stage.combo->SetBackColor(Color::rgb(0, 200, 0));
        stage.combo->SetForeColor(Color::rgb(200, 0, 0));
        stage.combo->SetText(u"MMMM"_s);
        const QImage image = stage.combo->grab().toImage();
        QCOMPARE(image.pixelColor(image.width() / 2, 4), QColor(0, 200, 0));
        bool hasRed = false;
        for (int x = 0; x < image.width() / 2; ++x)
            hasRed = hasRed || image.pixelColor(x, image.height() / 2).red() > 150;
        QVERIFY(hasRed);
    }

    void aScreenReaderLearnsOfAComboBoxItsValueAndItsList()
    {
        GridStage stage;
        QVERIFY(stage.isReady());
        stage.combo->setAccessibleName(u"Agency"_s);
        stage.fill(3);
        stage.combo->SetBookmark(3);
        QAccessibleInterface* box = QAccessible::queryAccessibleInterface(stage.combo);
        QCOMPARE(box->role(), QAccessible::ComboBox);
        QCOMPARE(box->text(QAccessible::Name), u"Agency"_s);
        QCOMPARE(box->text(QAccessible::Value), u"entry 2"_s);
        QVERIFY(box->state().collapsed && !box->state().expanded);
        box->actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
        QVERIFY(stage.combo->ListIsOpen());
        QVERIFY(box->state().expanded && !box->state().collapsed);
        QCOMPARE(box->text(QAccessible::Description), u"entry 2, long entry 2, 3 of 4"_s);
        stage.key(Qt::Key_Down);
        QCOMPARE(box->text(QAccessible::Description), u"entry 3, long entry 3, 4 of 4"_s);
        QAccessibleInterface* table = QAccessible::queryAccessibleInterface(stage.table());
        QCOMPARE(table->role(), QAccessible::Table);
        QCOMPARE(table->text(QAccessible::Name), u"Agency"_s);
        QCOMPARE(table->tableInterface()->rowCount(), 4);
        QCOMPARE(table->tableInterface()->cellAt(2, 1)->text(QAccessible::Name), u"long entry 2"_s);
        QCOMPARE(table->tableInterface()->columnDescription(1), u"Text"_s);
        box->actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
        QVERIFY(!stage.combo->ListIsOpen());
        QCOMPARE(box->text(QAccessible::Description), QString());
    }

    void aBoxWithoutANameHasThatOfTheControlAroundIt()
    {
        GridStage stage;
        stage.window->setAccessibleName(u"Around"_s);
        QCOMPARE(QAccessible::queryAccessibleInterface(stage.combo)->text(QAccessible::Name), u"Around"_s);
    }
};

TAVRIN_TEST_MAIN(tst_GridComboBox)
#include "tst_GridComboBox.moc"
