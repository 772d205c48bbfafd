#include "base/failure/Error.h"
#include "support/Keys.h"
#include "support/Looks.h"
#include "support/TestCase.h"
#include "testing/Unhandled.h"
#include "widgets/lists/ListBox.h"

#include <QAccessible>
#include <QPushButton>
#include <QScrollBar>

using namespace Qt::StringLiterals;
using namespace tavrin::test;
using tavrin::ListBox;
using tavrin::Subscription;

namespace {

/// A window with a list of four entries, of which a note is taken at each click.
class Stage
{
public:
    Stage()
    {
        window.resize(200, 200);
        list = new ListBox(&window);
        list->setGeometry(10, 10, 120, 150);
        other = new QPushButton(&window);
        other->setGeometry(140, 160, 50, 30);
        for (const char* text : {"Alpha", "Bravo", "Charlie", "Delta"})
            list->AddItem(QString::fromLatin1(text), 10 * (list->ListCount() + 1));
        m_keep = list->Click.subscribe([this] { clicks << list->ListIndex(); });
        window.show();
        window.activateWindow();
        list->setFocus();
    }
    bool isReady() { return QTest::qWaitForWindowActive(&window) && list->hasFocus(); }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(window.windowHandle(), key, modifiers);
    }
    void click(int row, Qt::KeyboardModifiers modifiers = {})
    {
        const QPoint place = list->visualRect(list->model()->index(row, 0)).center();
        QTest::mouseClick(window.windowHandle(), Qt::LeftButton, modifiers,
                          list->viewport()->mapTo(&window, place));
    }
    QList<int> selected() const
    {
        QList<int> rows;
        for (int i = 0; i < list->ListCount(); ++i) {
            if (list->Selected(i))
                rows << i;
        }
        return rows;
    }
    QList<int> take() { return std::exchange(clicks, {}); }

    QWidget window;
    ListBox* list;
    QPushButton* other;
    QList<int> clicks;

private:
    Subscription m_keep;
};

} // namespace

class tst_ListBox : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void entriesHaveTextAndData()
    {
        ListBox list;
        QCOMPARE(list.ListCount(), 0);
        list.AddItem(u"One"_s, 7);
        list.AddItem(u"Two"_s);
        QCOMPARE(list.ListCount(), 2);
        QCOMPARE(list.List(0), u"One"_s);
        QCOMPARE(list.ItemData(0), 7);
        QCOMPARE(list.ItemData(1), 0);
        list.SetItemData(1, -5);
        QCOMPARE(list.ItemData(1), -5);
        QCOMPARE(list.ListIndex(), -1);
        QCOMPARE(list.Text(), QString());
    }

    void anIndexOutsideGivesNothingAndChangesNothing_data()
    {
        QTest::addColumn<int>("index");
        QTest::newRow("before") << -1;
        QTest::newRow("behind") << 4;
    }
    void anIndexOutsideGivesNothingAndChangesNothing()
    {
        QFETCH(int, index);
        Stage stage;
        QCOMPARE(stage.list->List(index), QString());
        QCOMPARE(stage.list->ItemData(index), 0);
        QVERIFY(!stage.list->Selected(index));
        stage.list->SetItemData(index, 3);
        stage.list->SetSelected(index, true);
        stage.list->RemoveItem(index);
        QCOMPARE(stage.list->ListCount(), 4);
        QCOMPARE(stage.take(), QList<int>());
        stage.list->SetListIndex(2);
        stage.take();
        stage.list->SetListIndex(index); // selects nothing
        QCOMPARE(stage.list->ListIndex(), -1);
        QCOMPARE(stage.take(), QList<int>({-1}));
    }

    void aChangeOfTheIndexByCodeRaisesClickOnce()
    {
        Stage stage;
        stage.list->SetListIndex(2);
        QCOMPARE(stage.take(), QList<int>({2}));
        QCOMPARE(stage.selected(), QList<int>({2}));
        QCOMPARE(stage.list->Text(), u"Charlie"_s);
        stage.list->SetListIndex(2);
        QCOMPARE(stage.take(), QList<int>());
        stage.list->SetListIndex(0);
        QCOMPARE(stage.take(), QList<int>({0}));
        QCOMPARE(stage.selected(), QList<int>({0}));
        stage.list->SetListIndex(-1);
        stage.list->SetListIndex(-1);
        QCOMPARE(stage.take(), QList<int>({-1}));
    }

    void aFailureOfAHandlerReachesTheCodeThatSelects()
    {
        Stage stage;
        const Unhandled unhandled;
        const Subscription failing = stage.list->Click.subscribe([] { throw tavrin::Error(u"no"_s); });
        QVERIFY_THROWS_EXCEPTION(tavrin::Error, stage.list->SetListIndex(1));
        QCOMPARE(unhandled.texts, QStringList());
        QVERIFY(stage.isReady());
        stage.press(Qt::Key_Down); // of the person: the guard takes it
        QCOMPARE(unhandled.texts, QStringList({u"ListBox_Click: no"_s}));
    }

    void removingTheSelectedEntrySelectsNothingAndRaisesNothing()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.list->SetListIndex(1);
        stage.take();
        stage.list->RemoveItem(1);
        QCOMPARE(stage.list->ListIndex(), -1);
        QCOMPARE(stage.selected(), QList<int>());
        QCOMPARE(stage.list->List(1), u"Charlie"_s);
        QCOMPARE(stage.list->ItemData(1), 30);
        QCOMPARE(stage.take(), QList<int>());
    }

    void removingAnEntryBeforeTheSelectedOneKeepsTheEntrySelected()
    {
        Stage stage;
        stage.list->SetListIndex(2);
        stage.list->RemoveItem(0);
        QCOMPARE(stage.list->ListIndex(), 1);
        QCOMPARE(stage.list->Text(), u"Charlie"_s);
    }

    void clearingRaisesNothing()
    {
        Stage stage;
        stage.list->SetListIndex(2);
        stage.take();
        stage.list->Clear();
        QCOMPARE(stage.list->ListCount(), 0);
        QCOMPARE(stage.list->ListIndex(), -1);
        QCOMPARE(stage.take(), QList<int>());
        stage.list->AddItem(u"New"_s);
        QCOMPARE(stage.list->ListIndex(), -1);
    }

    void theFocusAloneSelectsNothing()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        QCOMPARE(stage.list->ListIndex(), -1);
        QCOMPARE(stage.take(), QList<int>());
    }

    void theFirstKeySelectsTheFirstEntry_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::newRow("Down") << Qt::Key_Down;
        QTest::newRow("Up") << Qt::Key_Up;
        QTest::newRow("Home") << Qt::Key_Home;
        QTest::newRow("Page Down") << Qt::Key_PageDown;
    }
    void theFirstKeySelectsTheFirstEntry()
    {
        QFETCH(Qt::Key, key);
        Stage stage;
        QVERIFY(stage.isReady());
        stage.press(key);
        QCOMPARE(stage.selected(), QList<int>({0}));
        QCOMPARE(stage.take(), QList<int>({0}));
    }

    void keysSelectAndRaiseClickOnce()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.list->SetListIndex(1);
        stage.take();
        stage.press(Qt::Key_Down);
        stage.press(Qt::Key_Up);
        stage.press(Qt::Key_End);
        stage.press(Qt::Key_Down); // there is no more
        stage.press(Qt::Key_Home);
        typeInto(stage.window.windowHandle(), u"c"_s);
        QCOMPARE(stage.take(), QList<int>({2, 1, 3, 0, 2}));
    }

    void eachClickOnAnEntryRaisesClickOnce()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.click(2);
        QCOMPARE(stage.take(), QList<int>({2}));
        stage.click(2); // on the selected one too
        QCOMPARE(stage.take(), QList<int>({2}));
        stage.click(0);
        QCOMPARE(stage.take(), QList<int>({0}));
        QTest::mouseClick(stage.window.windowHandle(), Qt::LeftButton, {},
                          QPoint(60, 140)); // below the entries
        QCOMPARE(stage.take(), QList<int>());
        QCOMPARE(stage.list->ListIndex(), 0);
    }

    void onlyOneEntryCanBeSelectedAtFirst()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        QVERIFY(!stage.list->MultiSelect());
        stage.click(0);
        stage.click(2, Qt::ControlModifier);
        QCOMPARE(stage.selected(), QList<int>({2}));
        stage.list->SetSelected(3, true);
        QCOMPARE(stage.selected(), QList<int>({3}));
        stage.list->SetSelected(1, false); // it is not
        QCOMPARE(stage.selected(), QList<int>({3}));
        stage.list->SetSelected(3, false);
        QCOMPARE(stage.list->ListIndex(), -1);
    }

    void severalEntriesCanBeSelectedWhenAllowed()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.list->SetMultiSelect(true);
        QVERIFY(stage.list->MultiSelect());
        stage.click(0);
        stage.click(2, Qt::ControlModifier);
        QCOMPARE(stage.selected(), QList<int>({0, 2}));
        QCOMPARE(stage.take(), QList<int>({0, 2}));
        stage.click(3, Qt::ShiftModifier);
        QCOMPARE(stage.selected(), QList<int>({0, 2, 3}));
        stage.press(Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(stage.selected(), QList<int>({0, 1, 2, 3}));
        stage.press(Qt::Key_Home);
        QCOMPARE(stage.selected(), QList<int>({0}));
        stage.press(Qt::Key_Down, Qt::ControlModifier);
        stage.press(Qt::Key_Down, Qt::ControlModifier);
        stage.press(Qt::Key_Space, Qt::ControlModifier);
        QCOMPARE(stage.selected(), QList<int>({0, 2}));
        stage.press(Qt::Key_Down, Qt::ShiftModifier);
        QVERIFY(stage.list->Selected(3));
    }

    void codeCanSelectSeveral()
    {
        Stage stage;
        stage.list->SetMultiSelect(true);
        stage.list->SetListIndex(0);
        QCOMPARE(stage.selected(), QList<int>({0}));
        stage.list->SetSelected(3, true);
        QCOMPARE(stage.selected(), QList<int>({0, 3}));
        stage.list->SetSelected(0, false);
        QCOMPARE(stage.selected(), QList<int>({3}));
        QCOMPARE(stage.take().size(), 3);
        stage.list->RemoveItem(1);
        QCOMPARE(stage.selected(), QList<int>({2}));
    }

    void enterAndEscapeAndDeleteGoToWhatIsBehind_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::newRow("Enter") << Qt::Key_Return;
        QTest::newRow("Escape") << Qt::Key_Escape;
        QTest::newRow("Delete") << Qt::Key_Delete;
    }
    void enterAndEscapeAndDeleteGoToWhatIsBehind()
    {
        QFETCH(Qt::Key, key);
        Stage stage;
        stage.list->SetListIndex(1);
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
        press.accept();
        static_cast<QObject*>(stage.list)->event(&press);
        QVERIFY(!press.isAccepted());
        QCOMPARE(stage.list->ListCount(), 4);
    }

    void tabLeavesTheList()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.press(Qt::Key_Tab);
        QVERIFY(stage.other->hasFocus());
    }

    void theSelectedEntryIsBroughtIntoView()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        for (int i = 0; i < 100; ++i)
            stage.list->AddItem(u"Entry %1"_s.arg(i));
        stage.list->SetListIndex(90);
        QTRY_VERIFY(stage.list->viewport()->rect().contains(
            stage.list->visualRect(stage.list->model()->index(90, 0))));
    }

    void aLongEntryIsCutAndStandsWholeInItsToolTip()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        const QString longText = u"A text <b>much</b> too long for the narrow list"_s;
        stage.list->AddItem(longText);
        QVERIFY(!stage.list->horizontalScrollBar()->isVisible());
        const auto tipAt = [&](int row) {
            const QPoint place = stage.list->visualRect(stage.list->model()->index(row, 0)).center();
            QHelpEvent help(QEvent::ToolTip, place, stage.list->viewport()->mapToGlobal(place));
            QCoreApplication::sendEvent(stage.list->viewport(), &help);
            const QString shown = QToolTip::isVisible() ? QToolTip::text() : QString();
            for (QWidget* window : QApplication::topLevelWidgets()) {
                if (window->inherits("QTipLabel"))
                    window->hide();
            }
            QTextDocument document;
            document.setHtml(shown);
            return document.toPlainText();
        };
        QCOMPARE(tipAt(0), QString());
        QCOMPARE(tipAt(4), longText);
    }

    void screenReadersSeeAListAndItsEntries()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.list->SetListIndex(1);
        QAccessibleInterface* told = QAccessible::queryAccessibleInterface(stage.list);
        QVERIFY(told);
        QCOMPARE(told->role(), QAccessible::List);
        QCOMPARE(told->childCount(), 4);
        QAccessibleInterface* entry = told->child(1);
        QVERIFY(entry);
        QCOMPARE(entry->role(), QAccessible::ListItem);
        QCOMPARE(entry->text(QAccessible::Name), u"Bravo"_s);
        QVERIFY(entry->state().selected);
        QVERIFY(!told->child(0)->state().selected);
    }

    void aRingShowsTheFocusAlsoInAnEmptyList()
    {
        Theme theme;
        theme.change(QPalette::Highlight, QColor(1, 99, 7));
        Stage stage;
        QVERIFY(stage.isReady());
        stage.list->Clear();
        const QPoint corner(stage.list->frameWidth(), stage.list->frameWidth());
        QTRY_COMPARE(imageOf(*stage.list).pixelColor(corner), QColor(1, 99, 7));
        stage.other->setFocus();
        QTRY_VERIFY(imageOf(*stage.list).pixelColor(corner) != QColor(1, 99, 7));
    }
};

TAVRIN_TEST_MAIN(tst_ListBox)
#include "tst_ListBox.moc"
