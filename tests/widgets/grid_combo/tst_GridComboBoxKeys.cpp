#include "support/TestCase.h"
#include "widgets/grid_combo/GridStage.h"

#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QShortcut>

using namespace Qt::StringLiterals;
using namespace tavrin;
using tavrin::test::GridStage;

namespace {

/// Counts the keys that a box leaves to its window.
class KeyWindow final : public QObject
{
public:
    explicit KeyWindow(QWidget& window) { window.installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() != QEvent::KeyPress)
            return false;
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key != Qt::Key_Control && key != Qt::Key_Shift)
            ++keys;
        return false;
    }
    int keys = 0;
};

} // namespace

/// Choosing a row with keys, and which keys are left to the form.
class tst_GridComboBoxKeys : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // In the closed box

    void keysChooseAnotherRowWhileTheListIsClosed_data()
    {
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("row");
        QTest::newRow("down") << 3 << int(Qt::Key_Down) << 4;
        QTest::newRow("up") << 3 << int(Qt::Key_Up) << 2;
        QTest::newRow("down at the end") << 41 << int(Qt::Key_Down) << 41;
        QTest::newRow("up at the start") << 1 << int(Qt::Key_Up) << 1;
        QTest::newRow("page down") << 3 << int(Qt::Key_PageDown) << 14;
        QTest::newRow("page down near the end") << 35 << int(Qt::Key_PageDown) << 41;
        QTest::newRow("page down at the end") << 41 << int(Qt::Key_PageDown) << 41;
        QTest::newRow("page up") << 20 << int(Qt::Key_PageUp) << 9;
        QTest::newRow("page up near the start") << 3 << int(Qt::Key_PageUp) << 1;
        QTest::newRow("page up at the start") << 1 << int(Qt::Key_PageUp) << 1;
        QTest::newRow("home") << 30 << int(Qt::Key_Home) << 1;
        QTest::newRow("home at the start") << 1 << int(Qt::Key_Home) << 1;
        QTest::newRow("end") << 30 << int(Qt::Key_End) << 41;
        QTest::newRow("end at the end") << 41 << int(Qt::Key_End) << 41;
        constexpr int none = 0;
        QTest::newRow("down from none") << none << int(Qt::Key_Down) << 1;
        QTest::newRow("up from none") << none << int(Qt::Key_Up) << 1;
        QTest::newRow("page down from none") << none << int(Qt::Key_PageDown) << 11;
        QTest::newRow("page up from none") << none << int(Qt::Key_PageUp) << 1;
        QTest::newRow("home from none") << none << int(Qt::Key_Home) << 1;
        QTest::newRow("end from none") << none << int(Qt::Key_End) << 41;
    }
    void keysChooseAnotherRowWhileTheListIsClosed()
    {
        QFETCH(int, from);
        QFETCH(int, key);
        QFETCH(int, row);
        GridStage stage;
        QVERIFY(stage.isReady());
        stage.fill(40);
        stage.combo->SetBookmark(from > 0 ? QVariant(from) : tavrin::Null());
        stage.take();
        stage.key(key);
        QCOMPARE(stage.combo->Bookmark(), QVariant(row));
        QCOMPARE(stage.take(), row == from ? QStringList() : QStringList({u"row %1"_s.arg(row)}));
        QVERIFY(!stage.combo->ListIsOpen());
    }

    void keysDoNothingWithoutRows()
    {
        GridStage stage;
        QVERIFY(stage.isReady());
        for (const int key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_PageDown, Qt::Key_PageUp, Qt::Key_Home,
                              Qt::Key_End, Qt::Key_A})
            stage.key(key);
        stage.combo->OpenList();
        for (const int key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_PageDown, Qt::Key_PageUp, Qt::Key_Home,
                              Qt::Key_End, Qt::Key_A, Qt::Key_Return})
            stage.key(key);
        QCOMPARE(stage.take(), QStringList());
        QVERIFY(!stage.combo->ListIsOpen());
    }

    // In the open list

    void theseKeysOpenAndClose_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::newRow("F4") << int(Qt::Key_F4) << Qt::KeyboardModifiers();
        QTest::newRow("Alt+Down") << int(Qt::Key_Down) << Qt::KeyboardModifiers(Qt::AltModifier);
        QTest::newRow("Alt+Up") << int(Qt::Key_Up) << Qt::KeyboardModifiers(Qt::AltModifier);
    }
    void theseKeysOpenAndClose()
    {
        QFETCH(int, key);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        GridStage stage;
        QVERIFY(stage.isReady());
        stage.fill(5);
        stage.combo->SetBookmark(3);
        stage.take();
        stage.key(key, modifiers);
        QVERIFY(stage.combo->ListIsOpen());
        stage.key(Qt::Key_Down);
        stage.key(key, modifiers);
        QVERIFY(!stage.combo->ListIsOpen());
        QCOMPARE(stage.take(), QStringList());
    }

    void inTheOpenListKeysMarkAndEnterTakes()
    {
        GridStage stage;
        QVERIFY(stage.isReady());
        stage.fill(40);
        stage.combo->SetBookmark(3);
        stage.take();
        stage.key(Qt::Key_F4);
        QCOMPARE(stage.table()->markedRow(), 3);
        stage.key(Qt::Key_Down);
        QCOMPARE(stage.table()->markedRow(), 4);
        stage.key(Qt::Key_PageDown);
        QCOMPARE(stage.table()->markedRow(), 16);
        stage.key(Qt::Key_End);
        QCOMPARE(stage.table()->markedRow(), 41);
        QCOMPARE(stage.take(), QStringList());
        QCOMPARE(stage.combo->Bookmark(), QVariant(3));
        stage.key(Qt::Key_Return);
        QCOMPARE(stage.take(), QStringList({u"row 41"_s})); // not "open"
        QVERIFY(!stage.combo->ListIsOpen());
    }

    void charactersWhoseNumberIsAKeyCodeMoveNothing()
    {
        GridStage stage;
        QVERIFY(stage.isReady());
        stage.fill(40);
        stage.combo->SetBookmark(20);
        stage.take();
        for (const char character : {'!', '"', '#', '$', '&', '('}) // 33 to 40, as the keys that move
            QTest::keyClick(stage.combo, character);
        QCOMPARE(stage.combo->Bookmark(), QVariant(20));
        QCOMPARE(stage.take(), QStringList());
    }

    void escapeClosesAndPutsBack()
    {
        GridStage stage;
        QVERIFY(stage.isReady());
        stage.fill(5);
        stage.combo->SetBookmark(3);
        stage.take();
        stage.key(Qt::Key_Down, Qt::AltModifier);
        stage.key(Qt::Key_Down);
        stage.key(Qt::Key_Escape);
        QVERIFY(!stage.combo->ListIsOpen());
        QCOMPARE(stage.combo->Bookmark(), QVariant(3));
        QCOMPARE(stage.combo->Text(), u"entry 2"_s);
        QCOMPARE(stage.take(), QStringList());
        stage.combo->OpenList();
        QCOMPARE(stage.table()->markedRow(), 3);
        stage.combo->CloseList();
    }

    void tabTakesTheMarkedRowAndGoesOn()
    {
        GridStage stage;
        QVERIFY(stage.isReady());
        stage.fill(5);
        stage.take();
        stage.combo->OpenList();
        stage.key(Qt::Key_Down);
        QTest::keyClick(stage.window->windowHandle(), Qt::Key_Tab);
        QCOMPARE(stage.take(), QStringList({u"row 2"_s}));
        QVERIFY(stage.other->hasFocus());
        QVERIFY(!stage.combo->ListIsOpen());
    }

    void tenThousandRowsOpenAndScrollWithoutDelay()
    {
        GridStage stage;
        QVERIFY(stage.isReady());
        stage.fill(10000);
        QElapsedTimer time;
        time.start();
        stage.combo->OpenList();
        for (int i = 0; i < 20; ++i) {
            stage.key(i % 2 == 0 ? Qt::Key_End : Qt::Key_Home);
            stage.table()->viewport()->repaint();
        }
        QVERIFY2(time.elapsed() < 2000, qPrintable(QString::number(time.elapsed())));
        stage.combo->CloseList();
    }

    // Letters

    void lettersFindTheRowByItsShortText_data()
    {
        QTest::addColumn<QString>("keys");
        QTest::addColumn<bool>("open");
        QTest::addColumn<int>("row");
        for (const bool open : {false, true}) {
            const char* how = open ? "open" : "closed";
            QTest::addRow("one letter, %s", how) << u"m"_s << open << 3;
            QTest::addRow("another case, %s", how) << u"M"_s << open << 3;
            QTest::addRow("two letters, %s", how) << u"mo"_s << open << 4;
            QTest::addRow("with a blank, %s", how) << u"mo x"_s << open << 5;
            QTest::addRow("the same letter again, %s", how) << u"mm"_s << open << 4;
            QTest::addRow("and around, %s", how) << u"mmmm"_s << open << 3;
            QTest::addRow("digits, %s", how) << u"44"_s << open << 6;
            QTest::addRow("not in the long text, %s", how) << u"l"_s << open << 1;
            QTest::addRow("nothing, %s", how) << u"z"_s << open << 1;
        }
    }
    void lettersFindTheRowByItsShortText()
    {
        QFETCH(QString, keys);
        QFETCH(bool, open);
        QFETCH(int, row);
        GridStage stage;
        QVERIFY(stage.isReady());
        stage.fill({u"Abc"_s, u"Mcso"_s, u"Mo"_s, u"Mo x"_s, u"44th"_s});
        if (open)
            stage.combo->OpenList();
        QTest::keyClicks(stage.combo, keys);
        if (open)
            QCOMPARE(stage.table()->markedRow(), row);
        stage.key(Qt::Key_Return);
        QCOMPARE(stage.combo->Bookmark(), QVariant(row));
    }

    void whatWasTypedIsForgottenWhenTheListOpens()
    {
        GridStage stage;
        QVERIFY(stage.isReady());
        stage.fill({u"Adam"_s, u"Bert"_s, u"Gill"_s});
        stage.key(Qt::Key_B);
        QCOMPARE(stage.combo->Bookmark(), QVariant(3));
        stage.key(Qt::Key_F4);
        stage.key(Qt::Key_G); // a first letter again, and not "bg"
        QCOMPARE(stage.table()->markedRow(), 4);
        stage.key(Qt::Key_Return);
        QCOMPARE(stage.combo->Text(), u"Gill"_s);
    }

    void spaceOpensTheListUnlessItBelongsToATypedText()
    {
        GridStage stage;
        QVERIFY(stage.isReady());
        stage.fill(5);
        stage.key(Qt::Key_Space);
        QVERIFY(stage.combo->ListIsOpen());
        stage.combo->CloseList();
        QTest::keyClicks(stage.combo, u"entry 3"_s);
        QVERIFY(!stage.combo->ListIsOpen());
        QCOMPARE(stage.combo->Bookmark(), QVariant(4));
    }

    // Keys of the form

    void enterAndEscapeOfAClosedListAreLeftToTheForm()
    {
        GridStage stage;
        QVERIFY(stage.isReady());
        stage.fill(5);
        const KeyWindow left(*stage.window);
        for (const int key : {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Enter})
            stage.key(key);
        QCOMPARE(left.keys, 3);
        for (const int key : {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Enter}) {
            stage.combo->OpenList();
            stage.key(key);
        }
        QCOMPARE(left.keys, 3);
    }

    void enterAndEscapeMeanTheOpenListWhateverTheShiftState_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        const std::pair<const char*, int> keys[] = {
            {"Escape", Qt::Key_Escape}, {"Enter", Qt::Key_Return}, {"keypad Enter", Qt::Key_Enter}};
        const std::pair<const char*, Qt::KeyboardModifiers> states[] = {
            {"alone", Qt::NoModifier},
            {"Shift", Qt::ShiftModifier},
            {"Ctrl", Qt::ControlModifier},
            {"Ctrl+Shift", Qt::ControlModifier | Qt::ShiftModifier}};
        for (const auto& [name, key] : keys) {
            for (const auto& [state, modifiers] : states)
                QTest::addRow("%s, %s", name, state)
                    << key << (key == Qt::Key_Enter ? modifiers | Qt::KeypadModifier : modifiers);
        }
    }
    void enterAndEscapeMeanTheOpenListWhateverTheShiftState()
    {
        QFETCH(int, key);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        GridStage stage;
        QVERIFY(stage.isReady());
        stage.fill(5);
        stage.take();
        QShortcut shortcut(QKeySequence(key | int(modifiers)), stage.window.get());
        int shortcuts = 0;
        connect(&shortcut, &QShortcut::activated, this, [&] { ++shortcuts; });
        const KeyWindow left(*stage.window);
        stage.combo->OpenList();
        stage.key(Qt::Key_Down);
        stage.key(key, modifiers);
        QVERIFY(!stage.combo->ListIsOpen());
        QCOMPARE(stage.take(), key == Qt::Key_Escape ? QStringList() : QStringList({u"row 2"_s}));
        QCOMPARE(left.keys, 0);
        QCOMPARE(shortcuts, 0);
        stage.key(key, modifiers); // with the list closed it is the window's
        QCOMPARE(shortcuts, 1);
    }

    void theCopyKeyCopiesTheTextAndIsNoShortcutOfTheWindow_data()
    {
        QTest::addColumn<bool>("open");
        QTest::newRow("closed") << false;
        QTest::newRow("open") << true;
    }
    void theCopyKeyCopiesTheTextAndIsNoShortcutOfTheWindow()
    {
        QFETCH(bool, open);
        GridStage stage;
        QVERIFY(stage.isReady());
        stage.fill({u"Adam"_s, u"Bert"_s, u"Cole"_s});
        stage.combo->SetBookmark(3);
        stage.take();
        QShortcut shortcut(QKeySequence(QKeySequence::Copy), stage.window.get());
        int shortcuts = 0;
        connect(&shortcut, &QShortcut::activated, this, [&] { ++shortcuts; });
        QApplication::clipboard()->setText(u"before"_s);
        if (open) {
            stage.combo->OpenList();
            stage.key(Qt::Key_Down); // only marked
        }
        stage.key(Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text(), u"Bert"_s);
        QCOMPARE(stage.combo->ListIsOpen(), open);
        QCOMPARE(stage.take(), QStringList());
        QCOMPARE(shortcuts, 0);
        stage.combo->CloseList();
        stage.combo->SetBookmark(1); // the empty row has nothing to copy
        stage.key(Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text(), u"Bert"_s);
        QCOMPARE(shortcuts, 1);
    }

    void keysWithControlAreLeftToTheForm()
    {
        GridStage stage;
        QVERIFY(stage.isReady());
        stage.fill(5);
        stage.take();
        const KeyWindow left(*stage.window);
        stage.key(Qt::Key_E, Qt::ControlModifier);
        stage.key(Qt::Key_Down, Qt::ControlModifier);
        QCOMPARE(left.keys, 2);
        QCOMPARE(stage.take(), QStringList());
    }
};

TAVRIN_TEST_MAIN(tst_GridComboBoxKeys)
#include "tst_GridComboBoxKeys.moc"
