#include "base/failure/Error.h"
#include "support/TestCase.h"
#include "testing/Unhandled.h"
#include "widgets/lists/ListView.h"

#include <QAccessible>
#include <QHeaderView>
#include <QLineEdit>
#include <QTest>

using namespace Qt::StringLiterals;
using tavrin::Error;
using tavrin::ListView;
using tavrin::Subscription;
using tavrin::Twips;
using tavrin::test::Unhandled;

namespace {

/// A window with a list of a column that holds texts only and two that show, and another box.
struct Stage
{
    Stage()
    {
        window.resize(420, 240);
        list->setGeometry(10, 10, 400, 180);
        other->setGeometry(10, 200, 400, 24);
        list->AddColumnHeader(u"key"_s, {}, 0);
        list->AddColumnHeader(u"name"_s, u"Name"_s, 3000);
        list->AddColumnHeader(u"word"_s, u"Word"_s, 1500);
        keep = list->MouseDown.subscribe([this](int button, int shift, Twips x, Twips y) {
            downs << u"%1 %2 %3"_s.arg(button).arg(shift).arg(list->SelectedItem().value_or(u"-"_s));
            place = QPoint(tavrin::toPixels(x), tavrin::toPixels(y));
        });
    }
    void add(const QString& key, const QString& name)
    {
        list->AddItem(key, key);
        list->SetSubItem(key, u"name"_s, name);
    }
    bool show()
    {
        window.show();
        window.activateWindow();
        list->setFocus();
        return QTest::qWaitForWindowActive(&window) && list->hasFocus();
    }
    QPoint placeOfRow(int row) const
    {
        const QPoint inView = list->visualRect(list->model()->index(row, 0)).center();
        return list->viewport()->mapTo(&window, inView);
    }
    void click(Qt::MouseButton button, const QPoint& at)
    {
        QTest::mouseClick(window.windowHandle(), button, {}, at);
    }
    QStringList keys() const
    {
        QStringList all;
        for (int i = 0; i < list->Count(); ++i)
            all << list->Key(i);
        return all;
    }

    QWidget window;
    ListView* list = new ListView(&window);
    QLineEdit* other = new QLineEdit(&window);
    QStringList downs;
    QPoint place;
    Subscription keep;
};

int numberOf(const std::function<void()>& work)
{
    try {
        work();
    } catch (const Error& error) {
        return error.Number;
    }
    return 0;
}

} // namespace

class tst_ListView : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void rowsSortAsTextWithoutCaseOnAColumnThatDoesNotShow()
    {
        Stage stage;
        stage.list->SetSortKey(u"key"_s);
        for (const char* key : {"key_2", "key_10", "KEY_1", "key_a", "key_B"})
            stage.add(QString::fromLatin1(key), {});
        QCOMPARE(stage.keys(), QStringList({u"KEY_1"_s, u"key_10"_s, u"key_2"_s, u"key_a"_s, u"key_B"_s}));
        stage.list->Remove(u"key_10"_s);
        QCOMPARE(stage.keys(), QStringList({u"KEY_1"_s, u"key_2"_s, u"key_a"_s, u"key_B"_s}));
    }

    void withoutASortKeyRowsStandInTheOrderInWhichTheyCame()
    {
        Stage stage;
        for (const char* key : {"b", "a", "c"})
            stage.add(QString::fromLatin1(key), {});
        QCOMPARE(stage.keys(), QStringList({u"b"_s, u"a"_s, u"c"_s}));
    }

    void anotherSortKeyAndAChangedTextMoveTheRowsAndTheSelectionWithThem()
    {
        Stage stage;
        stage.add(u"1"_s, u"pear"_s);
        stage.add(u"2"_s, u"fig"_s);
        stage.add(u"3"_s, u"fig"_s);
        stage.list->SetSelectedItem(u"1"_s);
        stage.list->SetSortKey(u"name"_s);
        QCOMPARE(stage.keys(), QStringList({u"2"_s, u"3"_s, u"1"_s})); // equal texts keep their order
        QCOMPARE(stage.list->SelectedItem(), u"1"_s);
        stage.list->SetSubItem(u"1"_s, u"name"_s, u"apple"_s);
        QCOMPARE(stage.keys(), QStringList({u"1"_s, u"2"_s, u"3"_s}));
        QCOMPARE(stage.list->SelectedItem(), u"1"_s);
        stage.list->Remove(u"3"_s);
        QCOMPARE(stage.keys(), QStringList({u"1"_s, u"2"_s}));
    }

    void aRowIsFoundByItsKeyAndAWrongKeyRaisesItsNumber()
    {
        Stage stage;
        stage.add(u"a"_s, u"Ann"_s);
        QVERIFY(stage.list->Contains(u"a"_s));
        QVERIFY(!stage.list->Contains(u"A"_s));
        QCOMPARE(stage.list->SubItem(u"a"_s, u"name"_s), u"Ann"_s);
        QCOMPARE(stage.list->SubItem(u"a"_s, u"key"_s), u"a"_s);
        QCOMPARE(stage.list->SubItem(u"a"_s, u"word"_s), QString());
        ListView& list = *stage.list;
        QCOMPARE(numberOf([&] { list.Remove(u"b"_s); }), ListView::MissingKeyNumber);
        QCOMPARE(numberOf([&] { list.SubItem(u"b"_s, u"name"_s); }), ListView::MissingKeyNumber);
        QCOMPARE(numberOf([&] { list.SetSubItem(u"a"_s, u"none"_s, {}); }), ListView::MissingKeyNumber);
        QCOMPARE(numberOf([&] { list.SetSelectedItem(u"b"_s); }), ListView::MissingKeyNumber);
        QCOMPARE(numberOf([&] { list.Key(1); }), ListView::MissingKeyNumber);
        QCOMPARE(numberOf([&] { list.AddItem(u"a"_s, {}); }), ListView::DuplicateKeyNumber);
        QCOMPARE(list.Count(), 1);
        list.Clear();
        QVERIFY(!list.Contains(u"a"_s));
        list.AddItem(u"a"_s, {});
        QCOMPARE(list.Count(), 1);
    }

    void aColumnOfWidthZeroIsNeverShownAndNotToldToScreenReaders()
    {
        Stage stage;
        stage.add(u"key_1"_s, u"Ann"_s);
        stage.list->SetSubItem(u"key_1"_s, u"word"_s, u"Friend"_s);
        stage.list->SetColumnWidth(u"key"_s, 900);
        QCOMPARE(stage.list->ColumnWidth(u"key"_s), 0.0F);
        QCOMPARE(stage.list->header()->count(), 2);
        QVERIFY(stage.show());
        QAccessibleInterface* told = QAccessible::queryAccessibleInterface(stage.list);
        QVERIFY(told->tableInterface());
        QCOMPARE(told->tableInterface()->columnCount(), 2);
        QCOMPARE(told->tableInterface()->columnDescription(0), u"Name"_s);
        QCOMPARE(told->tableInterface()->cellAt(0, 1)->text(QAccessible::Name), u"Friend"_s);
    }

    void widthsAreInTwipsAndTheLastColumnReachesToTheListsEnd()
    {
        Stage stage;
        stage.list->SetColumnWidth(u"name"_s, 3015);
        stage.list->SetColumnWidth(u"word"_s, 7500);
        QVERIFY(stage.show());
        QCOMPARE(stage.list->header()->sectionSize(0), 201);
        QCOMPARE(stage.list->ColumnWidth(u"word"_s), 7500.0F);
        QCOMPARE(stage.list->header()->length(), stage.list->viewport()->width());
        stage.list->Clear();
        QCOMPARE(stage.list->header()->sectionSize(0), 201);
    }

    void columnsCannotBeDraggedUnlessAllowed()
    {
        Stage stage;
        QVERIFY(!stage.list->header()->sectionsMovable());
        stage.list->SetAllowColumnReorder(true);
        QVERIFY(stage.list->header()->sectionsMovable());
        stage.list->SetAllowColumnReorder(false);
        QVERIFY(!stage.list->header()->sectionsMovable());
    }

    // Mouse and keyboard

    void mouseDownBearsTheButtonBehindTheSelection_data()
    {
        QTest::addColumn<Qt::MouseButton>("button");
        QTest::addColumn<int>("bit");
        QTest::newRow("left") << Qt::LeftButton << 1;
        QTest::newRow("right") << Qt::RightButton << 2;
    }
    void mouseDownBearsTheButtonBehindTheSelection()
    {
        QFETCH(Qt::MouseButton, button);
        QFETCH(int, bit);
        Stage stage;
        stage.add(u"a"_s, u"Ann"_s);
        stage.add(u"b"_s, u"Ben"_s);
        QVERIFY(stage.show());
        const QPoint at = stage.placeOfRow(1);
        stage.click(button, at);
        QCOMPARE(stage.downs, QStringList{u"%1 0 b"_s.arg(bit)});
        QCOMPARE(stage.place, at - stage.list->pos());
    }

    void theMiddleButtonIsBit4()
    {
        Stage stage;
        QVERIFY(stage.show());
        stage.click(Qt::MiddleButton, stage.list->geometry().center());
        QCOMPARE(stage.downs, QStringList{u"4 0 -"_s});
    }

    void aClickBesideTheRowsOrWithControlLeavesTheSelection()
    {
        Stage stage;
        stage.add(u"a"_s, u"Ann"_s);
        QVERIFY(stage.show());
        stage.list->SetSelectedItem(u"a"_s);
        stage.click(Qt::LeftButton, stage.list->geometry().center() + QPoint(0, 60));
        QCOMPARE(stage.list->SelectedItem(), u"a"_s);
        stage.click(Qt::RightButton, stage.list->geometry().center() + QPoint(0, 60));
        QCOMPARE(stage.list->SelectedItem(), u"a"_s);
        QTest::mouseClick(stage.window.windowHandle(), Qt::LeftButton, Qt::ControlModifier,
                          stage.placeOfRow(0));
        QCOMPARE(stage.list->SelectedItem(), u"a"_s);
        QTest::keyClick(stage.list, Qt::Key_Space, Qt::ControlModifier);
        QCOMPARE(stage.list->SelectedItem(), u"a"_s);
    }

    void theMenuKeysActAsTheRightButtonOnTheSelectedRow_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::newRow("menu key") << Qt::Key_Menu << Qt::KeyboardModifiers(Qt::NoModifier);
        QTest::newRow("Shift+F10") << Qt::Key_F10 << Qt::KeyboardModifiers(Qt::ShiftModifier);
    }
    void theMenuKeysActAsTheRightButtonOnTheSelectedRow()
    {
        QFETCH(Qt::Key, key);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        Stage stage;
        stage.add(u"a"_s, u"Ann"_s);
        stage.add(u"b"_s, u"Ben"_s);
        QVERIFY(stage.show());
        stage.list->SetSelectedItem(u"a"_s);
        QTest::keyClick(stage.window.windowHandle(), Qt::Key_Down);
        QTest::keyClick(stage.window.windowHandle(), key, modifiers);
        QCOMPARE(stage.downs, QStringList{u"2 0 b"_s});
        // Not over the row that it is about, but at it.
        const int bottom = stage.placeOfRow(1).y() - stage.list->y();
        QVERIFY(stage.place.y() >= bottom && stage.place.y() < bottom + 30);
        QTest::keyClick(stage.window.windowHandle(), Qt::Key_F10); // without Shift it is another key
        QCOMPARE(stage.downs.size(), 1);
    }

    void theMenuKeyWorksInAnEmptyList()
    {
        Stage stage;
        QVERIFY(stage.show());
        QTest::keyClick(stage.window.windowHandle(), Qt::Key_Menu);
        QCOMPARE(stage.downs, QStringList{u"2 0 -"_s});
        QVERIFY(stage.list->rect().contains(stage.place));
    }

    void aRemovedRowPassesTheSelectionToItsNeighbourAndTheLastOneToNone()
    {
        Stage stage;
        for (const char* key : {"a", "b", "c"})
            stage.add(QString::fromLatin1(key), {});
        stage.list->SetSelectedItem(u"b"_s);
        stage.list->Remove(u"b"_s);
        QVERIFY(stage.list->SelectedItem().has_value());
        stage.list->Remove(u"a"_s);
        QCOMPARE(stage.list->SelectedItem(), u"c"_s);
        stage.list->Remove(u"c"_s);
        QVERIFY(!stage.list->SelectedItem());
    }

    void noRowIsSelectedUntilOneIsAndNothingSelectsNone()
    {
        Stage stage;
        stage.add(u"a"_s, {});
        QVERIFY(!stage.list->SelectedItem());
        stage.list->SetSelectedItem(u"a"_s);
        QCOMPARE(stage.list->SelectedItem(), u"a"_s);
        stage.list->SetSelectedItem(std::nullopt);
        QVERIFY(!stage.list->SelectedItem());
    }

    void tabLeavesTheListAndALetterFindsARow()
    {
        Stage stage;
        stage.add(u"1"_s, u"Ann"_s);
        stage.add(u"2"_s, u"Ben"_s);
        QVERIFY(stage.show());
        stage.list->SetSelectedItem(u"1"_s);
        QTest::keyClick(stage.window.windowHandle(), Qt::Key_B);
        QCOMPARE(stage.list->SelectedItem(), u"2"_s);
        QTest::keyClick(stage.window.windowHandle(), Qt::Key_Tab);
        QVERIFY(stage.other->hasFocus());
    }

    void aFailureOfAFollowerDoesNotCrossQt()
    {
        Stage stage;
        QVERIFY(stage.show());
        const Unhandled unhandled;
        const Subscription failing =
            stage.list->MouseDown.subscribe([](int, int, Twips, Twips) { throw Error(u"no"_s); });
        QTest::keyClick(stage.list, Qt::Key_Menu);
        stage.click(Qt::LeftButton, stage.list->geometry().center());
        QCOMPARE(unhandled.texts, QStringList({u"ListView_MouseDown: no"_s, u"ListView_MouseDown: no"_s}));
    }
};

TAVRIN_TEST_MAIN(tst_ListView)
#include "tst_ListView.moc"
