#include "base/failure/Error.h"
#include "support/Looks.h"
#include "support/TestCase.h"
#include "testing/Unhandled.h"
#include "widgets/lists/FlatDropdown.h"

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QListView>
#include <QPointer>
#include <QShortcut>
#include <QWheelEvent>

#include <functional>
#include <memory>
#include <optional>

using namespace Qt::StringLiterals;
using tavrin::FlatDropdown;
using tavrin::Subscription;

namespace {

class Stage
{
public:
    Stage()
        : window(new QWidget)
    {
        window->setGeometry(100, 100, 300, 200);
        box = new FlatDropdown(window.get());
        box->setGeometry(10, 10, 200, box->sizeHint().height());
        other = new QLineEdit(window.get());
        other->setGeometry(10, 120, 150, 24);
        for (const auto& text : {u"(None)"_s, u"Handgun"_s, u"Rifle"_s, u"Shotgun"_s})
            box->AddItem(text);
        m_keep = box->Click.subscribe([this] { told << u"click %1"_s.arg(box->ListIndex()); });
        window->show();
        window->activateWindow();
        box->setFocus();
    }
    bool isReady() { return QTest::qWaitForWindowActive(window.get()) && box->hasFocus(); }
    QStringList take() { return std::exchange(told, {}); }
    void clickRow(int row) const
    {
        auto* view = window->findChild<QListView*>(u"entries"_s);
        QVERIFY(view && view->isVisible());
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {},
                          view->visualRect(view->model()->index(row, 0)).center());
    }

    std::unique_ptr<QWidget> window;
    FlatDropdown* box;
    QLineEdit* other;
    QStringList told;
    std::optional<tavrin::test::PaintCount> paints; // of the box

private:
    Subscription m_keep;
};

QImage imageOf(QWidget& widget)
{
    return widget.grab().toImage();
}

/// The bounds of the pixels in which two images of one size differ.
QRect differenceOf(const QImage& one, const QImage& other)
{
    QRect bounds;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            if (one.pixel(x, y) != other.pixel(x, y))
                bounds |= QRect(x, y, 1, 1);
        }
    }
    return bounds;
}

} // namespace

class tst_FlatDropdown : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void entriesHaveTextsAndDataAndTheNewestHasAnIndex()
    {
        FlatDropdown box;
        QCOMPARE(box.NewIndex(), -1);
        box.AddItem(u"a"_s);
        QCOMPARE(box.NewIndex(), 0);
        box.SetItemData(0, 77);
        box.SetItemData(5, 1); // outside the list: ignored
        QCOMPARE(box.ItemData(0), 77);
        box.SetList(0, u"b"_s);
        QCOMPARE(box.List(0), u"b"_s);
        QCOMPARE(box.ListIndex(), -1);
    }

    void aSelectionByCodeRaisesClickOnce()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.box->SetListIndex(2);
        stage.box->SetListIndex(2);
        QCOMPARE(stage.take(), QStringList{u"click 2"_s});
        QCOMPARE(stage.box->Text(), u"Rifle"_s);
    }

    void keysSelectWhileItIsClosed()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        QTest::keyClick(stage.box, Qt::Key_Down);
        QTest::keyClick(stage.box, Qt::Key_Down);
        QTest::keyClick(stage.box, Qt::Key_End);
        QTest::keyClicks(stage.box, u"r"_s);
        QCOMPARE(stage.take(), QStringList({u"click 0"_s, u"click 1"_s, u"click 3"_s, u"click 2"_s}));
        QVERIFY(!stage.box->IsOpen());
    }

    void keysOpenAndClose_data()
    {
        QTest::addColumn<int>("opening");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::newRow("F4") << int(Qt::Key_F4) << Qt::KeyboardModifiers(Qt::NoModifier);
        QTest::newRow("Alt+Down") << int(Qt::Key_Down) << Qt::KeyboardModifiers(Qt::AltModifier);
        QTest::newRow("Space") << int(Qt::Key_Space) << Qt::KeyboardModifiers(Qt::NoModifier);
    }
    void keysOpenAndClose()
    {
        QFETCH(int, opening);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        Stage stage;
        QVERIFY(stage.isReady());
        for (const Qt::Key closing : {Qt::Key_Escape, Qt::Key_Return, Qt::Key_F4}) {
            QTest::keyClick(stage.box, Qt::Key(opening), modifiers);
            QVERIFY(stage.box->IsOpen());
            QVERIFY(stage.box->hasFocus());
            QTest::keyClick(stage.box, closing);
            QVERIFY(!stage.box->IsOpen());
        }
        QCOMPARE(stage.take(), QStringList());
    }

    void enterWithAClosedListIsTheForms()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
        QApplication::sendEvent(stage.box, &enter);
        QVERIFY(!enter.isAccepted());
    }

    void aClickOpensAndTheNextOneCloses()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        QTest::mouseClick(stage.box, Qt::LeftButton);
        QVERIFY(stage.box->IsOpen());
        QTest::mouseClick(stage.box, Qt::LeftButton);
        QVERIFY(!stage.box->IsOpen());
        QTest::mouseClick(stage.box, Qt::RightButton);
        QVERIFY(!stage.box->IsOpen());
    }

    void aClickOnARowSelectsItAndCloses()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        QTest::mouseClick(stage.box, Qt::LeftButton);
        stage.clickRow(3);
        QCOMPARE(stage.take(), QStringList{u"click 3"_s});
        QVERIFY(!stage.box->IsOpen());
    }

    void theListClosesWhenTheFocusLeaves()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.box->Open();
        stage.other->setFocus();
        QVERIFY(!stage.box->IsOpen());
    }

    void theWheelChangesNothingAndIsLeftToThePage()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.box->SetListIndex(1);
        stage.take();
        QWheelEvent wheel(QPointF(5, 5), stage.box->mapToGlobal(QPointF(5, 5)), {}, QPoint(0, -120),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(stage.box, &wheel);
        QVERIFY(!wheel.isAccepted());
        QCOMPARE(stage.box->ListIndex(), 1);
        QCOMPARE(stage.take(), QStringList());
    }

    void aDisabledBoxOpensForNothing()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.box->setEnabled(false);
        QTest::mouseClick(stage.box, Qt::LeftButton);
        QVERIFY(!stage.box->IsOpen());
    }

    void whatIsShownFollowsTheSelectionTheTextAndTheIcon()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        constexpr int padding = 6;
        stage.other->setFocus(); // no ring
        const QFontMetrics metrics(stage.box->font());
        const int line = metrics.height();
        const QImage empty = imageOf(*stage.box);
        const QRect textRoom = stage.box->rect().adjusted(padding, 0, -(line + padding), 0);
        /// How wide a text shows, from `left` on, and nothing else.
        const auto showsText = [&](const QImage& image, const QImage& without, int left,
                                   const QString& text) {
            const QRect ink = differenceOf(image, without);
            return textRoom.contains(ink) && ink.left() >= left && ink.left() <= left + 3 &&
                   std::abs(ink.width() - metrics.horizontalAdvance(text)) <= 4;
        };
        stage.box->SetListIndex(1);
        QVERIFY(showsText(imageOf(*stage.box), empty, padding, u"Handgun"_s));
        stage.box->SetList(1, u"Mmmmmmmmmm"_s);
        QVERIFY(showsText(imageOf(*stage.box), empty, padding, u"Mmmmmmmmmm"_s));
        stage.box->SetListIndex(2);
        QVERIFY(showsText(imageOf(*stage.box), empty, padding, u"Rifle"_s));

        QImage icon(16, 8, QImage::Format_ARGB32); // twice as wide as high, and scaled so
        icon.fill(Qt::red);
        stage.box->SetIcon(icon);
        QCOMPARE(stage.box->Icon(), icon);
        const QImage withIcon = imageOf(*stage.box);
        const QRect iconPlace(padding, (stage.box->height() - line) / 2, 2 * line, line);
        QCOMPARE(withIcon.pixelColor(iconPlace.center()), QColor(Qt::red));
        stage.box->Clear();
        const QImage iconAlone = imageOf(*stage.box);
        QCOMPARE(differenceOf(iconAlone, empty), iconPlace);
        QVERIFY(showsText(withIcon, iconAlone, iconPlace.right() + 1 + padding, u"Rifle"_s));
        stage.box->SetIcon(QImage());
        QCOMPARE(imageOf(*stage.box), empty);
    }

    // A picture of the box would paint by itself, whether anything had asked for it or not.
    void whatChangesTheLookOfAShownBoxPaintsIt_data()
    {
        using Act = std::function<void(Stage&)>;
        QTest::addColumn<Act>("change");
        QTest::addColumn<bool>("paints");
        const auto add = [](const char* name, const Act& change, bool paints = true) {
            QTest::newRow(name) << change << paints;
        };
        add(
            "nothing", [](Stage&) {}, false);
        add("the selected entry's text", [](Stage& stage) { stage.box->SetList(1, u"Pistol"_s); });
        add(
            "an entry's data", [](Stage& stage) { stage.box->SetItemData(1, 7); }, false);
        add("a selection by code", [](Stage& stage) { stage.box->SetListIndex(2); });
        add("none by code", [](Stage& stage) { stage.box->SetListIndex(-1); });
        add(
            "the selection that is", [](Stage& stage) { stage.box->SetListIndex(1); }, false);
        add("a selection by key", [](Stage& stage) { QTest::keyClick(stage.box, Qt::Key_Down); });
        add("a selection by the mouse", [](Stage& stage) {
            stage.box->Open();
            stage.clickRow(3);
        });
        add("no entries", [](Stage& stage) { stage.box->Clear(); });
        add("an icon", [](Stage& stage) {
            QImage icon(8, 8, QImage::Format_ARGB32);
            icon.fill(Qt::red);
            stage.box->SetIcon(icon);
        });
        add("the background", [](Stage& stage) { stage.box->SetBackColor(tavrin::Color::rgb(1, 2, 3)); });
        add("the text's colour", [](Stage& stage) { stage.box->SetForeColor(tavrin::Color::rgb(1, 2, 3)); });
        add("the focus goes", [](Stage& stage) { stage.other->setFocus(); });
        add("the focus comes", [](Stage& stage) {
            stage.other->setFocus();
            QCoreApplication::processEvents();
            stage.paints->paints = 0;
            stage.box->setFocus();
        });
        add("disabled", [](Stage& stage) { stage.box->setEnabled(false); });
        add("the theme", [](Stage& stage) {
            QPalette palette = stage.window->palette();
            palette.setColor(QPalette::Window, Qt::red);
            stage.window->setPalette(palette);
        });
    }
    void whatChangesTheLookOfAShownBoxPaintsIt()
    {
        QFETCH(std::function<void(Stage&)>, change);
        QFETCH(bool, paints);
        Stage stage;
        QVERIFY(stage.isReady());
        stage.box->SetListIndex(1);
        QVERIFY(QTest::qWaitForWindowExposed(stage.window.get()));
        QCoreApplication::processEvents(); // what is under way
        stage.paints.emplace(*stage.box);
        change(stage);
        if (paints)
            QTRY_VERIFY(stage.paints->paints > 0);
        QCoreApplication::processEvents();
        QCOMPARE(stage.paints->paints > 0, paints);
    }

    void anOpenListPaintsTheNewTextOfAnEntryAndHasRoomForIt()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.box->Open();
        auto* view = stage.window->findChild<QListView*>(u"entries"_s);
        QVERIFY(QTest::qWaitForWindowExposed(view->window()));
        QCoreApplication::processEvents();
        const int width = view->window()->width();
        const tavrin::test::PaintCount paints(*view->viewport());
        stage.box->SetList(2, u"Pistol"_s); // not the selected one
        QTRY_VERIFY(paints.paints > 0);
        QCOMPARE(view->window()->width(), width);
        stage.box->SetList(2, QString(60, u'W'));
        QTRY_VERIFY(view->window()->width() > width);
        stage.box->Close();
    }

    void theHeightFollowsTheFontAndAChangeInsideIt()
    {
        FlatDropdown box;
        const int before = box.height();
        const auto font = std::make_shared<tavrin::Font>();
        box.SetFont(font);
        font->SetSize(font->Size() * 2);
        QCOMPARE(box.Font(), font);
        QVERIFY(box.height() > before + 5);
        QCOMPARE(box.height(), box.sizeHint().height());
    }

    void aHandlerMayDeleteTheBox_data()
    {
        QTest::addColumn<bool>("byMouse");
        QTest::newRow("key") << false;
        QTest::newRow("click in the open list") << true;
    }
    void aHandlerMayDeleteTheBox()
    {
        QFETCH(bool, byMouse);
        Stage stage;
        QVERIFY(stage.isReady());
        const QPointer<FlatDropdown> box(stage.box);
        const Subscription keep = stage.box->Click.subscribe([&] { delete box.data(); });
        if (byMouse) {
            QTest::mouseClick(stage.box, Qt::LeftButton);
            stage.clickRow(3);
        } else {
            QTest::keyClick(stage.box, Qt::Key_Down);
        }
        QVERIFY(!box);
    }

    void anOpenListHasItsKeysBeforeTheShortcutsOfTheWindow_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::addColumn<bool>("isTheLists");
        const auto add = [](const char* name, Qt::Key key, Qt::KeyboardModifiers modifiers, bool isTheLists) {
            QTest::newRow(name) << int(key) << modifiers << isTheLists;
        };
        add("Escape", Qt::Key_Escape, {}, true);
        add("Enter", Qt::Key_Return, {}, true);
        add("Home", Qt::Key_Home, {}, true);
        add("letter", Qt::Key_R, {}, true);
        add("Down of the number block", Qt::Key_Down, Qt::KeypadModifier, true);
        add("F5", Qt::Key_F5, {}, false);
        add("Ctrl+S", Qt::Key_S, Qt::ControlModifier, false);
    }
    void anOpenListHasItsKeysBeforeTheShortcutsOfTheWindow()
    {
        QFETCH(int, key);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        QFETCH(bool, isTheLists);
        Stage stage;
        QVERIFY(stage.isReady());
        const auto claims = [&] {
            QKeyEvent asks(QEvent::ShortcutOverride, key, modifiers);
            asks.ignore();
            QApplication::sendEvent(stage.box, &asks);
            return asks.isAccepted();
        };
        QVERIFY(!claims()); // closed, it has none
        stage.box->Open();
        QCOMPARE(claims(), isTheLists);
    }

    void aHandlersErrorReachesTheCallerOfASelectionAndNotQt()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        tavrin::test::Unhandled unhandled;
        const Subscription keep = stage.box->Click.subscribe([] { throw tavrin::Error(u"no"_s); });
        QVERIFY_EXCEPTION_THROWN(stage.box->SetListIndex(1), tavrin::Error);
        QTest::keyClick(stage.box, Qt::Key_Down);
        QCOMPARE(unhandled.texts.size(), 1);
        QCOMPARE(stage.box->ListIndex(), 2);
    }

    void theCopyKeyCopiesTheChoiceButNotWhatStandsBeforeTheFirstOne()
    {
        QWidget window;
        FlatDropdown box(&window);
        for (const QString& text : {u"(None)"_s, u"Rifle"_s})
            box.AddItem(text);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        box.setFocus();
        QShortcut shortcut(QKeySequence(QKeySequence::Copy), &window);
        int shortcuts = 0;
        connect(&shortcut, &QShortcut::activated, this, [&] { ++shortcuts; });
        QApplication::clipboard()->setText(u"before"_s);
        QTest::keyClick(&box, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text(), u"before"_s); // nothing is selected
        QCOMPARE(shortcuts, 1);
        for (const bool open : {false, true}) {
            box.SetListIndex(1);
            if (open)
                box.Open();
            QTest::keyClick(&box, Qt::Key_C, Qt::ControlModifier);
            QCOMPARE(QApplication::clipboard()->text(), u"Rifle"_s);
            QCOMPARE(box.IsOpen(), open);
            QCOMPARE(box.ListIndex(), 1);
            QCOMPARE(shortcuts, 1);
            box.Close();
            box.SetListIndex(0);
            QTest::keyClick(&box, Qt::Key_C, Qt::ControlModifier);
            QCOMPARE(QApplication::clipboard()->text(), u"(None)"_s); // a choice like any other
        }
        box.SetFirstChoice(1);
        QApplication::clipboard()->setText(u"before"_s);
        QTest::keyClick(&box, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text(), u"before"_s);
        QCOMPARE(shortcuts, 2);
    }

    void withTheListOpenEnterAndEscapeAreNoShortcutsWhateverTheShiftState()
    {
        QWidget window;
        FlatDropdown box(&window);
        box.AddItem(u"Rifle"_s);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        box.setFocus();
        for (const Qt::KeyboardModifier state : {Qt::ControlModifier, Qt::ShiftModifier}) {
            for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape}) {
                const auto keypad = key == Qt::Key_Enter ? Qt::KeypadModifier : Qt::NoModifier;
                QShortcut shortcut(QKeySequence(QKeyCombination(state | keypad, key)), &window);
                int shortcuts = 0;
                connect(&shortcut, &QShortcut::activated, this, [&] { ++shortcuts; });
                box.Open();
                QTest::keyClick(&box, key, state | keypad);
                QVERIFY(!box.IsOpen());
                QCOMPARE(shortcuts, 0);
                QTest::keyClick(&box, key, state | keypad);
                QCOMPARE(shortcuts, 1);
            }
        }
    }
};

TAVRIN_TEST_MAIN(tst_FlatDropdown)
#include "tst_FlatDropdown.moc"
