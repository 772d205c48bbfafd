#include "support/TestCase.h"
#include "widgets/grid_combo/GridStage.h"

#include <QApplication>
#include <QHeaderView>
#include <QMouseEvent>
#include <QScrollBar>
#include <QWheelEvent>

using namespace Qt::StringLiterals;
using namespace tavrin;
using tavrin::test::GridStage;

namespace {

/// A move of the mouse as the list sees it, or none when it is there already.
void moveMouse(QWidget* viewport, const QPoint& place)
{
    QMouseEvent event(QEvent::MouseMove, place, viewport->mapToGlobal(place), Qt::NoButton, Qt::NoButton, {});
    QApplication::sendEvent(viewport, &event);
}

void wheel(QWidget* widget, bool* accepted = nullptr)
{
    const QPointF place = widget->rect().center();
    QWheelEvent event(place, widget->mapToGlobal(place), {}, {0, -120}, {}, {}, Qt::NoScrollPhase, false);
    QApplication::sendEvent(widget, &event);
    if (accepted)
        *accepted = event.isAccepted();
}

} // namespace

/// Choosing a row with the mouse.
class tst_GridComboBoxMouse : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aClickOnARowClosesFirstThenTakes()
    {
        GridStage stage;
        QVERIFY(stage.isReady());
        stage.fill(5);
        stage.take();
        QTest::mouseClick(stage.combo, Qt::LeftButton);
        QVERIFY(stage.combo->ListIsOpen());
        stage.clickRow(3);
        QCOMPARE(stage.take(), QStringList({u"row 3"_s})); // not "open"
        QVERIFY(stage.combo->hasFocus());
        QTest::mouseClick(stage.combo, Qt::LeftButton);
        stage.clickRow(3); // the current row
        QCOMPARE(stage.take(), QStringList());
        QVERIFY(!stage.combo->ListIsOpen());
    }

    void aPressOfTheBoxClosesTheListAgain()
    {
        GridStage stage;
        QVERIFY(stage.isReady());
        stage.fill(5);
        QTest::mouseClick(stage.combo, Qt::LeftButton);
        QVERIFY(stage.combo->ListIsOpen());
        QTest::mouseClick(stage.combo, Qt::LeftButton);
        QVERIFY(!stage.combo->ListIsOpen());
        QTest::mouseClick(stage.combo, Qt::RightButton);
        QVERIFY(!stage.combo->ListIsOpen());
    }

    void onlyTheLeftButtonTakesAndTheHeaderDoesNothing()
    {
        GridStage stage;
        QVERIFY(stage.isReady());
        stage.fill(5);
        stage.take();
        stage.combo->OpenList();
        stage.clickRow(3, Qt::RightButton);
        stage.clickRow(3, Qt::MiddleButton);
        QTest::mouseClick(stage.table()->horizontalHeader()->viewport(), Qt::LeftButton);
        QTest::mouseDClick(stage.table()->horizontalHeader()->viewport(), Qt::LeftButton);
        QVERIFY(stage.combo->ListIsOpen());
        QCOMPARE(stage.table()->markedRow(), 1);
        QCOMPARE(stage.take(), QStringList());
        stage.combo->CloseList();
    }

    void theMouseMarksOnlyWhenItMovesItself()
    {
        GridStage stage;
        QVERIFY(stage.isReady());
        stage.fill(100);
        stage.combo->OpenList();
        moveMouse(stage.table()->viewport(), stage.middleOfRow(3));
        QCOMPARE(stage.table()->markedRow(), 3);
        QCOMPARE(stage.combo->Bookmark(), QVariant(1)); // a mark is no choice
        stage.key(Qt::Key_Down);
        moveMouse(stage.table()->viewport(), stage.middleOfRow(3)); // it stayed there
        QCOMPARE(stage.table()->markedRow(), 4);
        wheel(stage.table()->viewport());
        QVERIFY(stage.table()->verticalScrollBar()->value() > 0);
        QCOMPARE(stage.table()->markedRow(), 4);
        stage.combo->CloseList();
    }

    void theWheelDoesNothingToAClosedBoxAndScrollsAnOpenList()
    {
        GridStage stage;
        QVERIFY(stage.isReady());
        stage.fill(100);
        stage.take();
        bool accepted = true;
        wheel(stage.combo, &accepted);
        QVERIFY(!accepted); // the page below scrolls on
        QCOMPARE(stage.take(), QStringList());
        stage.combo->OpenList();
        wheel(stage.combo);
        QVERIFY(stage.table()->verticalScrollBar()->value() > 0);
        QCOMPARE(stage.combo->Bookmark(), QVariant(1));
        stage.combo->CloseList();
    }
};

TAVRIN_TEST_MAIN(tst_GridComboBoxMouse)
#include "tst_GridComboBoxMouse.moc"
