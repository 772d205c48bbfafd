#include "widgets/lists/ListStage.h"

#include <QDropEvent>
#include <QMimeData>
#include <QScrollBar>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

const QPoint BesideRows(0, 100);

/// What is dragged over the list, and what comes of it.
class Drag
{
public:
    explicit Drag(ListStage& stage)
        : m_stage(stage)
    {
    }
    Drag& withUrls(const QStringList& urls)
    {
        QList<QUrl> list;
        for (const QString& url : urls)
            list << QUrl(url);
        m_data.setUrls(list);
        return *this;
    }
    Drag& withText(const QString& text)
    {
        m_data.setText(text);
        return *this;
    }
    bool enter()
    {
        QDragEnterEvent event(place(), Qt::CopyAction | Qt::MoveAction, &m_data, Qt::LeftButton, {});
        return accepted(event);
    }
    bool move()
    {
        QDragMoveEvent event(place(), Qt::CopyAction | Qt::MoveAction, &m_data, Qt::LeftButton, {});
        return accepted(event);
    }
    void leave()
    {
        QDragLeaveEvent event;
        QCoreApplication::sendEvent(m_stage.list->viewport(), &event);
    }
    /// What the list does not let in is never dropped.
    bool drop()
    {
        if (!enter())
            return false;
        QDropEvent event(place(), Qt::CopyAction | Qt::MoveAction, &m_data, Qt::LeftButton, {});
        return accepted(event);
    }
    Qt::DropAction action = Qt::IgnoreAction;

private:
    QPoint place() const { return m_stage.list->viewport()->rect().center(); }
    bool accepted(QDropEvent& event)
    {
        event.setDropAction(Qt::MoveAction); // what a file manager proposes
        event.ignore();
        QCoreApplication::sendEvent(m_stage.list->viewport(), &event);
        action = event.dropAction();
        return event.isAccepted();
    }

    ListStage& m_stage;
    QMimeData m_data;
};

} // namespace

/// What a `ListView` makes of mouse, keyboard and dropped files.
class tst_ListViewInput : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Presses

    void itemClickComesBehindTheSelectionAndMouseDown()
    {
        ListStage stage;
        stage.add({u"Ann"_s, u"Ben"_s});
        QVERIFY(stage.show());
        stage.click(stage.placeOfRow(1));
        QCOMPARE(stage.take(), QStringList({u"down 1 b"_s, u"click b b"_s}));
        stage.click(stage.placeOfRow(1));
        QCOMPARE(stage.take(), QStringList({u"down 1 b"_s, u"click b b"_s})); // also on the selected one
    }

    void mouseDownComesFirstWhereItIsToldTo_data()
    {
        QTest::addColumn<Qt::MouseButton>("button");
        QTest::addColumn<int>("bit");
        QTest::newRow("left") << Qt::LeftButton << 1;
        QTest::newRow("right") << Qt::RightButton << 2;
        QTest::newRow("middle") << Qt::MiddleButton << 4;
    }
    void mouseDownComesFirstWhereItIsToldTo()
    {
        QFETCH(Qt::MouseButton, button);
        QFETCH(int, bit);
        ListStage stage;
        stage.add({u"Ann"_s, u"Ben"_s});
        stage.list->SetMouseDownFirst(true);
        stage.list->SetSelectedItem(u"a"_s);
        QVERIFY(stage.show());
        stage.click(stage.placeOfRow(1), button);
        QCOMPARE(stage.take(), QStringList({u"down %1 a"_s.arg(bit), u"click b b"_s}));
    }

    void aPressBesideTheRowsIsNoClickOfARow()
    {
        ListStage stage;
        stage.add({u"Ann"_s});
        stage.list->SetSelectedItem(u"a"_s);
        QVERIFY(stage.show());
        stage.click(stage.placeOfRow(0) + BesideRows);
        stage.click(stage.placeOfRow(0) + BesideRows, Qt::RightButton);
        QCOMPARE(stage.take(), QStringList({u"down 1 a"_s, u"down 2 a"_s}));
    }

    void whatMouseDownDoesToTheRowsDoesNotChangeWhichOneWasPressed()
    {
        ListStage stage;
        stage.add({u"Ann"_s, u"Ben"_s, u"Cy"_s});
        stage.list->SetMouseDownFirst(true);
        QVERIFY(stage.show());
        const Subscription remover =
            stage.list->MouseDown.subscribe([&](int, int, Twips, Twips) { stage.list->Remove(u"a"_s); });
        stage.click(stage.placeOfRow(1)); // below the mouse lies Cy by then
        QCOMPARE(stage.take(), QStringList({u"down 1 -"_s, u"click b b"_s}));
    }

    void aRowThatMouseDownRemovesIsNotClicked()
    {
        ListStage stage;
        stage.add({u"Ann"_s, u"Ben"_s});
        stage.list->SetMouseDownFirst(true);
        QVERIFY(stage.show());
        const Subscription remover =
            stage.list->MouseDown.subscribe([&](int, int, Twips, Twips) { stage.list->Remove(u"b"_s); });
        stage.click(stage.placeOfRow(1));
        QCOMPARE(stage.take(), QStringList({u"down 1 -"_s}));
    }

    void aMouseThatMovesOnWhilePressedTakesNoOtherRow()
    {
        ListStage stage;
        stage.add({u"Ann"_s, u"Ben"_s, u"Cy"_s});
        QVERIFY(stage.show());
        QTest::mousePress(stage.window.windowHandle(), Qt::LeftButton, {}, stage.placeOfRow(0));
        QTest::mouseMove(stage.window.windowHandle(), stage.placeOfRow(1));
        QTest::mouseMove(stage.window.windowHandle(), stage.placeOfRow(2));
        QTest::mouseRelease(stage.window.windowHandle(), Qt::LeftButton, {}, stage.placeOfRow(2));
        QCOMPARE(stage.selected(), u"a"_s);
        QCOMPARE(stage.take(), QStringList({u"down 1 a"_s, u"click a a"_s}));
    }

    void aRowThatIsPressedStaysBelowTheMouseWhenItIsBroughtIntoView()
    {
        ListStage stage;
        for (int i = 0; i < 50; ++i)
            stage.list->AddItem(QString::number(i), {});
        stage.list->SetRowHeight(29); // the last one in view is cut
        QVERIFY(stage.show());
        const int last = stage.list->indexAt(stage.list->viewport()->rect().bottomLeft()).row();
        const QString cut = stage.list->Key(last);
        QVERIFY(!stage.list->viewport()->rect().contains(stage.rectOfRow(last)));
        const Subscription follower = stage.list->ItemClick.subscribe([&](const QString& key) {
            stage.list->EnsureVisible(key);
            stage.list->SetSelectedItem(std::nullopt);
            stage.list->SetSelectedItem(key);
        });
        const QPoint at =
            stage.list->viewport()->mapTo(&stage.window, stage.rectOfRow(last).topLeft()) + QPoint(10, 3);
        stage.click(at);
        QCOMPARE(stage.list->verticalScrollBar()->value(), 0);
        QCOMPARE(stage.selected(), cut);
        stage.list->EnsureVisible(cut); // by code it scrolls again
        QVERIFY(stage.list->verticalScrollBar()->value() > 0);
    }

    void aHandlerMayDeleteTheListAtAnyEvent_data()
    {
        QTest::addColumn<int>("event");
        QTest::addColumn<bool>("mouseDownFirst");
        for (const bool first : {false, true}) {
            QTest::addRow("MouseDown %d", static_cast<int>(first)) << 0 << first;
            QTest::addRow("ItemClick %d", static_cast<int>(first)) << 1 << first;
            QTest::addRow("DblClick %d", static_cast<int>(first)) << 2 << first;
            QTest::addRow("KeyDown %d", static_cast<int>(first)) << 3 << first;
            QTest::addRow("OLEDragDrop %d", static_cast<int>(first)) << 4 << first;
        }
    }
    void aHandlerMayDeleteTheListAtAnyEvent()
    {
        QFETCH(int, event);
        QFETCH(bool, mouseDownFirst);
        ListStage stage;
        stage.add({u"Ann"_s, u"Ben"_s});
        stage.list->SetMouseDownFirst(mouseDownFirst);
        QVERIFY(stage.show());
        // Behind the event, as a list of Qt does not outlive its own mouse events otherwise.
        const auto die = [&] { stage.list->deleteLater(); };
        ListView& list = *stage.list;
        const Subscription killers[] = {
            event == 0 ? list.MouseDown.subscribe([&](int, int, Twips, Twips) { die(); }) : Subscription(),
            event == 1 ? list.ItemClick.subscribe([&](const QString&) { die(); }) : Subscription(),
            event == 2 ? list.DblClick.subscribe(die) : Subscription(),
            event == 3 ? list.KeyDown.subscribe([&](int&, int) { die(); }) : Subscription(),
            event == 4 ? list.OLEDragDrop.subscribe([&](const QStringList&, int&) { die(); })
                       : Subscription()};
        if (event == 3)
            stage.press(Qt::Key_Down);
        else if (event == 4)
            Drag(stage).withUrls({u"file:///tmp/a.txt"_s}).drop();
        else
            QTest::mouseDClick(stage.window.windowHandle(), Qt::LeftButton, {}, stage.placeOfRow(1));
        QTRY_VERIFY(!stage.list);
    }

    // Double clicks

    void aDoubleClickComesBehindTheClick()
    {
        ListStage stage;
        stage.add({u"Ann"_s, u"Ben"_s});
        QVERIFY(stage.show());
        QTest::mouseDClick(stage.window.windowHandle(), Qt::LeftButton, {}, stage.placeOfRow(1));
        QCOMPARE(stage.take(), QStringList({u"down 1 b"_s, u"click b b"_s, u"double b"_s}));
    }

    void aDoubleClickBesideTheRowsIsToldAsWell()
    {
        ListStage stage;
        stage.add({u"Ann"_s});
        QVERIFY(stage.show());
        QTest::mouseDClick(stage.window.windowHandle(), Qt::LeftButton, {}, stage.placeOfRow(0) + BesideRows);
        QCOMPARE(stage.take().last(), u"double -"_s);
    }

    void aDoubleClickOfTheRightButtonIsTwoPresses()
    {
        ListStage stage;
        stage.add({u"Ann"_s});
        QVERIFY(stage.show());
        QTest::mouseDClick(stage.window.windowHandle(), Qt::RightButton, {}, stage.placeOfRow(0));
        QCOMPARE(stage.take(), QStringList({u"down 2 a"_s, u"click a a"_s, u"down 2 a"_s, u"click a a"_s}));
    }

    // Keys

    void arrowKeysAndLettersRaiseItemClickWhereTheSelectionMoves()
    {
        ListStage stage;
        stage.add({u"Ann"_s, u"Ben"_s, u"Cy"_s});
        QVERIFY(stage.show());
        stage.list->SetSelectedItem(u"a"_s);
        QCOMPARE(stage.take(), QStringList()); // code is no click
        stage.press(Qt::Key_Down);
        QCOMPARE(stage.take(), QStringList({u"click b b"_s}));
        stage.press(Qt::Key_End);
        QCOMPARE(stage.take(), QStringList({u"click c c"_s}));
        stage.press(Qt::Key_Down); // the end already
        QCOMPARE(stage.take(), QStringList());
        stage.press(Qt::Key_A);
        QCOMPARE(stage.take(), QStringList({u"click a a"_s}));
    }

    void keyDownComesBeforeTheListTakesTheKeyAndMaySwallowIt()
    {
        ListStage stage;
        stage.add({u"Ann"_s, u"Ben"_s});
        QVERIFY(stage.show());
        stage.list->SetSelectedItem(u"a"_s);
        bool swallow = false;
        const Subscription keys = stage.list->KeyDown.subscribe([&](int& code, int shift) {
            stage.log << u"key %1 %2 %3"_s.arg(code).arg(shift).arg(stage.selected());
            if (swallow)
                code = 0;
        });
        stage.press(Qt::Key_Down);
        QCOMPARE(stage.take(), QStringList({u"key 40 0 a"_s, u"click b b"_s}));
        swallow = true;
        stage.press(Qt::Key_Up);
        stage.press(Qt::Key_Menu);
        stage.press(Qt::Key_Delete, Qt::ShiftModifier);
        stage.press(Qt::Key_Return);
        QCOMPARE(stage.take(),
                 QStringList({u"key 38 0 b"_s, u"key 93 0 b"_s, u"key 46 1 b"_s, u"key 13 0 b"_s}));
        QCOMPARE(stage.selected(), u"b"_s);
    }

    void theMenuKeyBringsTheSelectedRowIntoViewFirst()
    {
        ListStage stage;
        for (int i = 0; i < 50; ++i)
            stage.list->AddItem(QString::number(i), {});
        QVERIFY(stage.show());
        stage.list->SetSelectedItem(u"0"_s);
        stage.list->verticalScrollBar()->setValue(stage.list->verticalScrollBar()->maximum());
        stage.press(Qt::Key_Menu);
        QCOMPARE(stage.take(), QStringList({u"down 2 0"_s}));
        QCOMPARE(stage.list->HitTest(toTwips(stage.place.x()), toTwips(stage.place.y())), u"0"_s);
    }

    void failuresOfFollowersDoNotCrossQt()
    {
        ListStage stage;
        stage.add({u"Ann"_s});
        QVERIFY(stage.show());
        const Unhandled unhandled;
        ListView& list = *stage.list;
        const Subscription failing[] = {
            list.ItemClick.subscribe([](const QString&) { throw Error(u"no click"_s); }),
            list.DblClick.subscribe([] { throw Error(u"no double"_s); }),
            list.KeyDown.subscribe([](int&, int) { throw Error(u"no key"_s); }),
            list.OLEDragDrop.subscribe([](const QStringList&, int&) { throw Error(u"no drop"_s); })};
        QTest::mouseDClick(stage.window.windowHandle(), Qt::LeftButton, {}, stage.placeOfRow(0));
        stage.press(Qt::Key_F5);
        QVERIFY(!Drag(stage).withUrls({u"file:///tmp/a.txt"_s}).drop());
        QCOMPARE(unhandled.texts,
                 QStringList({u"ListView_ItemClick: no click"_s, u"ListView_DblClick: no double"_s,
                              u"ListView_KeyDown: no key"_s, u"ListView_OLEDragDrop: no drop"_s}));
    }

    // Drops

    void whatIsDroppedArrivesAsLocalFilesAndTheEffectAnswers_data()
    {
        QTest::addColumn<QStringList>("urls");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("files");
        QTest::newRow("one file") << QStringList{u"file:///tmp/a.txt"_s} << QString()
                                  << QStringList{u"/tmp/a.txt"_s};
        QTest::newRow("several files, a blank in the name")
            << QStringList{u"file:///tmp/a.txt"_s, u"file:///tmp/b%20c.png"_s} << QString()
            << QStringList{u"/tmp/a.txt"_s, u"/tmp/b c.png"_s};
        QTest::newRow("a file and a network link")
            << QStringList{u"https://example.org/x.png"_s, u"file:///tmp/a.txt"_s} << QString()
            << QStringList{u"/tmp/a.txt"_s};
        QTest::newRow("a network link")
            << QStringList{u"https://example.org/x.png"_s} << QString() << QStringList();
        QTest::newRow("text") << QStringList() << u"/tmp/a.txt"_s << QStringList();
    }
    void whatIsDroppedArrivesAsLocalFilesAndTheEffectAnswers()
    {
        QFETCH(QStringList, urls);
        QFETCH(QString, text);
        QFETCH(QStringList, files);
        ListStage stage;
        QVERIFY(stage.show());
        QList<QStringList> dropped;
        int answer = 1;
        const Subscription taker =
            stage.list->OLEDragDrop.subscribe([&](const QStringList& paths, int& effect) {
                QCOMPARE(effect, 0);
                dropped << paths;
                effect = paths.isEmpty() ? 0 : answer;
            });
        Drag drag(stage);
        if (!urls.isEmpty())
            drag.withUrls(urls);
        if (!text.isEmpty())
            drag.withText(text);
        const bool isTaken = !files.isEmpty();
        QCOMPARE(drag.enter(), isTaken);
        QCOMPARE(drag.move(), isTaken);
        QCOMPARE(drag.drop(), isTaken);
        if (!isTaken) {
            QCOMPARE(dropped.size(), 0);
            return;
        }
        QCOMPARE(dropped, QList<QStringList>{files});
        QCOMPARE(drag.action, Qt::CopyAction); // never a move, which would take the person's file away
        answer = 0;
        QVERIFY(!drag.drop());
        QCOMPARE(drag.action, Qt::IgnoreAction);
    }

    void withoutAListenerNothingCanBeDropped()
    {
        ListStage stage;
        QVERIFY(stage.show());
        Drag drag(stage);
        drag.withUrls({u"file:///tmp/a.txt"_s});
        QVERIFY(!drag.enter());
        QVERIFY(!drag.drop());
    }

    void theListIsFramedWhileFilesAreHeldOverIt()
    {
        ListStage stage;
        QVERIFY(stage.show());
        stage.other->setFocus();
        const Subscription taker =
            stage.list->OLEDragDrop.subscribe([](const QStringList&, int& effect) { effect = 1; });
        const auto frame = [&] { return stage.list->grab().toImage().pixel(0, 90); };
        const QRgb quiet = frame();
        Drag drag(stage);
        drag.withUrls({u"file:///tmp/a.txt"_s});
        drag.enter();
        QCOMPARE(frame(), stage.list->palette().color(QPalette::Highlight).rgb());
        drag.leave();
        QCOMPARE(frame(), quiet);
        drag.enter();
        drag.drop();
        QCOMPARE(frame(), quiet);
    }
};

TAVRIN_TEST_MAIN(tst_ListViewInput)
#include "tst_ListViewInput.moc"
