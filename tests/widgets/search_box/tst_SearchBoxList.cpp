#include "support/TestCase.h"
#include "testing/Unhandled.h"
#include "widgets/search_box/SearchStage.h"

#include <QApplication>
#include <QImage>
#include <QScrollBar>
#include <QShortcut>
#include <QWheelEvent>

using namespace Qt::StringLiterals;
using tavrin::Error;
using tavrin::XmlNode;
using tavrin::test::OpenStage;
using tavrin::test::Unhandled;
using Stage = tavrin::test::SearchStage<>;

namespace {

constexpr int PageRows = 10;
constexpr int Notch = 120;

/// Turns the wheel as the window system would: over a place of a window, which hands it on.
bool wheel(const QWidget& widget, int notches)
{
    const QPoint place = widget.rect().center();
    QWidget* target = widget.window()->childAt(widget.mapTo(widget.window(), place));
    QWheelEvent event(target->mapFromGlobal(widget.mapToGlobal(place)), widget.mapToGlobal(place), {},
                      QPoint(0, notches * Notch), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(target, &event);
    return event.isAccepted();
}

} // namespace

/// What paints the list, the keys and the mouse that it answers.
class tst_SearchBoxList : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init() override
    {
        failOnUnexpectedWarnings();
        QCursor::setPos(5, 5); // out of the way
    }

    // Painting

    void ofALargeResultOnePageIsMeasuredAndPainted()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(100'000);
        stage.drawn = 0;
        stage.type(u"i"_s);
        QCOMPARE(stage.rows(), 100'000);
        QTRY_COMPARE(stage.drawn, 2 * PageRows);
        stage.drawn = 0;
        stage.view()->viewport()->repaint();
        QCOMPARE(stage.drawn, PageRows);
        QStringList drawn;
        stage.onDraw = [&](const XmlNode& item) { drawn << item.text(); };
        stage.view()->verticalScrollBar()->setValue(99'990 * stage.view()->rowHeight());
        QTRY_COMPARE(drawn.size(), PageRows);
        QCOMPARE(drawn.first(), u"item 99990"_s);
        QCOMPARE(drawn.last(), u"item 99999"_s);
    }

    void drawItemGetsTheQueryAndTheHighlight()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        stage.type(u"it"_s);
        stage.key(Qt::Key_Down);
        QStringList rows;
        const tavrin::Subscription keep = stage.box->DrawItem.subscribe(
            [&](tavrin::PictureSurface&, const XmlNode& item, const QString& query, bool highlighted) {
                rows << item.text() + u' ' + query + (highlighted ? u" here"_s : QString());
            });
        stage.view()->viewport()->repaint();
        QCOMPARE(rows, QStringList({u"item 0 it here"_s, u"item 1 it"_s, u"item 2 it"_s}));
    }

    void aResultWithoutRowsIsOneGreyLineThatCannotBeTaken()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.type(u"x"_s);
        QVERIFY(stage.box->ListIsOpen());
        QCOMPARE(stage.view()->rowCount(), 0);
        QCOMPARE(stage.drawn, 0);
        QCOMPARE(stage.view()->pageSize().height(), stage.view()->rowHeight());
        const QImage line = stage.view()->viewport()->grab().toImage();
        const QColor grey = stage.view()->palette().color(QPalette::Disabled, QPalette::Text);
        const QColor ground = stage.view()->palette().color(QPalette::Active, QPalette::Base);
        int greyPixels = 0;
        for (int y = 0; y < line.height(); ++y) {
            for (int x = 0; x < line.width(); ++x)
                greyPixels += line.pixelColor(x, y) == grey ? 1 : 0;
        }
        QVERIFY(greyPixels > 0);
        QCOMPARE(line.pixelColor(1, 1), ground);
        stage.take();
        for (const int key : {Qt::Key_Down, Qt::Key_PageDown, Qt::Key_Up, Qt::Key_PageUp, Qt::Key_Return}) {
            stage.key(key);
            QCOMPARE(stage.highlighted(), -1);
        }
        const QPoint middle = stage.view()->viewport()->rect().center();
        stage.movePointer(stage.view()->viewport()->mapToGlobal(middle));
        QCOMPARE(stage.highlighted(), -1);
        QTest::mouseClick(stage.view()->viewport(), Qt::LeftButton, {}, middle);
        QCOMPARE(stage.take(), QStringList());
        QVERIFY(stage.box->ListIsOpen());
    }

    void anErrorInDrawItemIsReportedOnceAndTheListWorks()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        const Unhandled unhandled;
        stage.onDraw = [](const XmlNode& item) {
            if (item.text() != u"item 2")
                throw Error(u"no"_s);
        };
        stage.type(u"i"_s);
        QCOMPARE(stage.rows(), 3);
        stage.view()->viewport()->repaint();
        QCOMPARE(unhandled.texts, QStringList({u"SuggestionView_DrawItem: no"_s}));
        stage.key(Qt::Key_Down);
        stage.key(Qt::Key_Return);
        QCOMPARE(stage.take(), QStringList({u"search 'i'"_s, u"chosen item 0"_s, u"picked item 0"_s}));
        stage.box->ShowSuggestions(QString()); // another result tells again
        QCOMPARE(unhandled.texts.size(), 2);
        QCOMPARE(stage.rows(), 3);
    }

    // Keys

    void keysWalk_data()
    {
        QTest::addColumn<int>("start");
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("result");
        const auto row = [](const char* name, int start, Qt::Key key, int result) {
            QTest::newRow(name) << start << static_cast<int>(key) << result;
        };
        row("down from none", -1, Qt::Key_Down, 0);
        row("up from none", -1, Qt::Key_Up, 0);
        row("down", 3, Qt::Key_Down, 4);
        row("up", 3, Qt::Key_Up, 2);
        row("down at the end", 39, Qt::Key_Down, 39);
        row("up at the start", 0, Qt::Key_Up, 0);
        row("page down from none", -1, Qt::Key_PageDown, 9);
        row("page up from none", -1, Qt::Key_PageUp, 0);
        row("page down", 3, Qt::Key_PageDown, 13);
        row("page down near the end", 35, Qt::Key_PageDown, 39);
        row("page down at the end", 39, Qt::Key_PageDown, 39);
        row("page up", 20, Qt::Key_PageUp, 10);
        row("page up near the start", 4, Qt::Key_PageUp, 0);
        row("page up at the start", 0, Qt::Key_PageUp, 0);
    }
    void keysWalk()
    {
        QFETCH(int, start);
        QFETCH(int, key);
        QFETCH(int, result);
        OpenStage stage(40);
        QVERIFY(stage.isOpen());
        stage.view()->setHighlightedRow(start);
        stage.key(key);
        QCOMPARE(stage.highlighted(), result);
        QVERIFY(stage.view()->viewport()->rect().contains(stage.view()->rowRect(result)));
        QCOMPARE(stage.take(), QStringList()); // walking chooses nothing
        QCOMPARE(stage.box->Text(), QString());
    }

    void homeAndEndAreTheTexts()
    {
        OpenStage stage(40);
        QVERIFY(stage.isOpen());
        stage.type(u"item"_s);
        for (const int start : {-1, 20}) {
            stage.view()->setHighlightedRow(start);
            stage.key(Qt::Key_Home);
            QCOMPARE(stage.box->cursorPosition(), 0);
            QCOMPARE(stage.highlighted(), start);
            stage.key(Qt::Key_End);
            QCOMPARE(stage.box->cursorPosition(), 4);
            QCOMPARE(stage.highlighted(), start);
        }
    }

    void typingGoesOnWhileTheListIsOpen()
    {
        OpenStage stage;
        QVERIFY(stage.isOpen());
        stage.type(u"itm"_s);
        stage.key(Qt::Key_Left);
        stage.type(u"e"_s);
        QCOMPARE(stage.box->Text(), u"item"_s);
        QCOMPARE(stage.rows(), 3);
        stage.key(Qt::Key_Down);
        stage.type(u" "_s);
        QCOMPARE(stage.highlighted(), -1); // of another result
    }

    void escapeClosesAndLeavesTheTextAndTheNextOneIsTheForms()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        stage.type(u"ite"_s);
        stage.key(Qt::Key_Down);
        stage.take();
        stage.key(Qt::Key_Escape);
        QVERIFY(!stage.box->ListIsOpen());
        QCOMPARE(stage.box->Text(), u"ite"_s);
        QCOMPARE(stage.take(), QStringList());
        QVERIFY(stage.window->isVisible());
        stage.key(Qt::Key_Escape);
        QCOMPARE(stage.take(), QStringList({u"form's escape"_s}));
    }

    void keysOpenAndCloseTheList_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::addColumn<bool>("closes");
        QTest::newRow("F4") << static_cast<int>(Qt::Key_F4) << Qt::KeyboardModifiers() << true;
        QTest::newRow("alt and down")
            << static_cast<int>(Qt::Key_Down) << Qt::KeyboardModifiers(Qt::AltModifier) << true;
        QTest::newRow("down") << static_cast<int>(Qt::Key_Down) << Qt::KeyboardModifiers() << false;
    }
    void keysOpenAndCloseTheList()
    {
        QFETCH(int, key);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        QFETCH(bool, closes);
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill({u"aa"_s, u"ab"_s, u"b"_s});
        stage.key(key, modifiers);
        QCOMPARE(stage.take(), QStringList({u"search ''"_s}));
        QCOMPARE(stage.rows(), 3);
        QCOMPARE(stage.highlighted(), -1);
        stage.key(key, modifiers);
        QCOMPARE(stage.box->ListIsOpen(), !closes);
        QCOMPARE(stage.take(), QStringList());
        // For what was typed ...
        stage.type(u"a"_s);
        stage.box->CloseList();
        stage.take();
        stage.key(key, modifiers);
        QCOMPARE(stage.take(), QStringList({u"search 'a'"_s}));
        QCOMPARE(stage.rows(), 2);
        // ... but everything for the text of the chosen item.
        stage.box->SelectItem(stage.items[1]);
        stage.take();
        stage.key(key, modifiers);
        QCOMPARE(stage.take(), QStringList({u"search ''"_s}));
        QCOMPARE(stage.rows(), 3);
        stage.key(Qt::Key_Down);
        stage.key(Qt::Key_Return); // of the list that was found for this text
        QCOMPARE(stage.take(), QStringList({u"chosen aa"_s, u"picked aa"_s}));
    }

    void keysOpenNoListForATextThatIsTooShort()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill({u"aa"_s, u"ab"_s});
        stage.box->SetMinQueryLength(2);
        stage.key(Qt::Key_Down);
        stage.type(u"a"_s);
        stage.key(Qt::Key_F4);
        QVERIFY(!stage.box->ListIsOpen());
        QCOMPARE(stage.take(), QStringList());
        stage.type(u"a"_s);
        stage.key(Qt::Key_F4);
        stage.key(Qt::Key_F4);
        QCOMPARE(stage.take(), QStringList({u"search 'aa'"_s, u"search 'aa'"_s}));
    }

    void shortcutsOfTheWindowWaitUntilTheListIsClosed_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("escape") << static_cast<int>(Qt::Key_Escape);
        QTest::newRow("return") << static_cast<int>(Qt::Key_Return);
        QTest::newRow("down") << static_cast<int>(Qt::Key_Down);
    }
    void shortcutsOfTheWindowWaitUntilTheListIsClosed()
    {
        QFETCH(int, key);
        OpenStage stage;
        QVERIFY(stage.isOpen());
        const QShortcut shortcut(QKeySequence(key), stage.window.data());
        int fired = 0;
        connect(&shortcut, &QShortcut::activated, this, [&] { ++fired; });
        stage.key(key);
        QCOMPARE(fired, 0);
        QCOMPARE(stage.box->ListIsOpen(), key != Qt::Key_Escape); // the list has had the key
        stage.box->CloseList();
        stage.key(key);
        QCOMPARE(fired, 1);
        QVERIFY(!stage.box->ListIsOpen());
    }

    // Mouse

    void onlyTheLeftButtonTakesARow()
    {
        OpenStage stage;
        QVERIFY(stage.isOpen());
        stage.clickRow(1, Qt::RightButton);
        stage.clickRow(1, Qt::MiddleButton);
        QCOMPARE(stage.take(), QStringList());
        QVERIFY(stage.box->ListIsOpen());
        stage.clickRow(1);
        QCOMPARE(stage.take(), QStringList({u"chosen item 1"_s, u"picked item 1"_s}));
        QVERIFY(!stage.box->ListIsOpen());
        QVERIFY(stage.box->hasFocus());
    }

    void theMouseMovesTheHighlightOnlyWhenItMoves()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(40);
        // The list opens below a resting mouse.
        stage.movePointer(stage.boxOnScreen().bottomLeft() + QPoint(30, 50));
        stage.key(Qt::Key_F4);
        QCoreApplication::processEvents();
        QVERIFY(stage.popup()->geometry().contains(QCursor::pos()));
        QCOMPARE(stage.highlighted(), -1);
        // One that moves highlights.
        stage.movePointer(stage.rowOnScreen(3));
        QCOMPARE(stage.highlighted(), 3);
        QCOMPARE(stage.take(), QStringList({u"search ''"_s}));
        // Rows that scroll below it do not.
        for (int i = 0; i < 12; ++i)
            stage.key(Qt::Key_Down);
        QCOMPARE(stage.highlighted(), 15);
        QVERIFY(stage.view()->verticalScrollBar()->value() > 0);
        stage.movePointer(QCursor::pos()); // the window system tells it again
        QCOMPARE(stage.highlighted(), 15);
        wheel(*stage.view()->viewport(), -1);
        stage.movePointer(QCursor::pos());
        QCOMPARE(stage.highlighted(), 15);
        stage.movePointer(QCursor::pos() + QPoint(1, 0));
        QCOMPARE(stage.highlighted(),
                 stage.view()->rowAt(stage.view()->viewport()->mapFromGlobal(QCursor::pos())));
        QVERIFY(stage.highlighted() != 15);
    }

    void aListThatGrowsBelowARestingMouseHighlightsNothing()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill({u"ab"_s, u"a1"_s, u"a2"_s, u"a3"_s, u"a4"_s});
        stage.type(u"ab"_s);
        QCOMPARE(stage.rows(), 1);
        // The mouse moves while the list is open, but not in it.
        stage.movePointer(stage.popup()->geometry().bottomLeft() + QPoint(30, 30));
        stage.key(Qt::Key_Backspace);
        QCOMPARE(stage.rows(), 5);
        QVERIFY(stage.popup()->geometry().contains(QCursor::pos()));
        stage.movePointer(QCursor::pos()); // enters the list that has come to lie below it
        QCOMPARE(stage.highlighted(), -1);
    }

    void theWheelScrollsOverTheListAndOverTheBox()
    {
        OpenStage stage(40);
        QVERIFY(stage.isOpen());
        const QScrollBar& bar = *stage.view()->verticalScrollBar();
        wheel(*stage.view()->viewport(), -1);
        const int step = bar.value();
        QVERIFY(step > 0);
        QVERIFY(wheel(*stage.box, -1));
        QCOMPARE(bar.value(), 2 * step);
        QVERIFY(wheel(*stage.box, 1));
        QCOMPARE(bar.value(), step);
        QVERIFY(wheel(*stage.box, 10));
        QCOMPARE(bar.value(), 0);
        QVERIFY(wheel(*stage.box, 1)); // at its end it is not the page's either
        QVERIFY(stage.box->ListIsOpen());
        QCOMPARE(stage.highlighted(), -1);
    }

    void theWheelOverABoxWhoseListIsClosedIsThePages_data()
    {
        QTest::addColumn<bool>("withFocus");
        QTest::newRow("with focus") << true;
        QTest::newRow("without focus") << false;
    }
    void theWheelOverABoxWhoseListIsClosedIsThePages()
    {
        QFETCH(bool, withFocus);
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(40);
        stage.box->SelectItem(stage.items[7]);
        if (!withFocus)
            stage.after->setFocus();
        stage.take();
        QVERIFY(!wheel(*stage.box, -1));
        QVERIFY(!stage.box->ListIsOpen());
        QCOMPARE(stage.take(), QStringList());
        QCOMPARE(stage.box->Text(), u"item 7"_s);
    }

    void enterAndEscapeMeanTheOpenListWhateverTheShiftState_data()
    {
        QTest::addColumn<Qt::KeyboardModifiers>("state");
        QTest::newRow("Shift") << Qt::KeyboardModifiers(Qt::ShiftModifier);
        QTest::newRow("Ctrl") << Qt::KeyboardModifiers(Qt::ControlModifier);
        QTest::newRow("Ctrl+Shift") << Qt::KeyboardModifiers(Qt::ControlModifier | Qt::ShiftModifier);
    }
    void enterAndEscapeMeanTheOpenListWhateverTheShiftState()
    {
        QFETCH(Qt::KeyboardModifiers, state);
        for (const int key : {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Enter}) {
            OpenStage stage;
            QVERIFY(stage.isOpen());
            const auto keypad = key == Qt::Key_Enter ? Qt::KeypadModifier : Qt::NoModifier;
            const Qt::KeyboardModifiers modifiers = state | keypad;
            QShortcut shortcut(QKeySequence(key | int(modifiers)), stage.window);
            connect(&shortcut, &QShortcut::activated, this, [&] { stage.told << u"shortcut"_s; });
            stage.key(Qt::Key_Down);
            stage.key(key, modifiers);
            QVERIFY(!stage.box->ListIsOpen());
            QCOMPARE(stage.take(), key == Qt::Key_Escape
                                       ? QStringList()
                                       : QStringList({u"chosen item 0"_s, u"picked item 0"_s}));
            stage.key(key, modifiers); // of the closed list it is the window's
            QCOMPARE(stage.take(), QStringList{u"shortcut"_s});
        }
    }
};

TAVRIN_TEST_MAIN(tst_SearchBoxList)
#include "tst_SearchBoxList.moc"
