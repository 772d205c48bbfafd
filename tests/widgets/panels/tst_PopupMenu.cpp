#include "base/failure/Error.h"
#include "support/Keys.h"
#include "support/TestCase.h"
#include "testing/Unhandled.h"
#include "widgets/panels/PopupMenu.h"

#include <QPointer>
#include <QTest>

using namespace Qt::StringLiterals;
using tavrin::Error;
using tavrin::MenuItem;
using tavrin::PopupMenu;
using tavrin::Subscription;
using tavrin::test::chooseByKey;
using tavrin::test::letMenusTell;
using tavrin::test::Unhandled;

namespace {

/// A window with a menu of two lines that note their clicks.
struct Stage
{
    Stage()
    {
        window.resize(300, 200);
        keepAdd = add->Click.subscribe([this] { clicks << u"add"_s; });
        keepRemove = remove->Click.subscribe([this] { clicks << u"remove"_s; });
    }
    bool open()
    {
        window.show();
        if (!QTest::qWaitForWindowExposed(&window))
            return false;
        menu->PopUp(window, 600, 450);
        return menu->isVisible();
    }

    QWidget window;
    PopupMenu* menu = new PopupMenu(u"Edit"_s, &window);
    MenuItem* add = menu->AddItem(u"Add Row"_s, u'A');
    MenuItem* remove = menu->AddItem(u"Remove Row"_s, u'R');
    QStringList clicks;
    Subscription keepAdd, keepRemove;
};

} // namespace

class tst_PopupMenu : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void itOpensAtThePlaceInTwips()
    {
        Stage stage;
        QVERIFY(stage.open());
        QCOMPARE(stage.menu->pos(), stage.window.mapToGlobal(QPoint(40, 30)));
        QCOMPARE(stage.menu->title(), u"Edit"_s);
        stage.menu->close();
    }

    void keysChoose_data()
    {
        QTest::addColumn<QList<int>>("keys");
        QTest::addColumn<QString>("chosen");
        QTest::newRow("access key of the first") << QList<int>{Qt::Key_A} << "add";
        QTest::newRow("access key of the second") << QList<int>{Qt::Key_R} << "remove";
        QTest::newRow("arrow and Enter") << QList<int>{Qt::Key_Down, Qt::Key_Return} << "add";
        QTest::newRow("arrows and Enter")
            << QList<int>{Qt::Key_Down, Qt::Key_Down, Qt::Key_Return} << "remove";
        QTest::newRow("Escape") << QList<int>{Qt::Key_Escape} << "";
    }
    void keysChoose()
    {
        QFETCH(QList<int>, keys);
        QFETCH(QString, chosen);
        Stage stage;
        QVERIFY(stage.open());
        for (const int key : keys)
            chooseByKey(stage.menu, static_cast<Qt::Key>(key));
        QCOMPARE(stage.clicks.join(u' '), chosen);
        QVERIFY(!stage.menu->isVisible());
    }

    void aDisabledLineCannotBeChosen()
    {
        Stage stage;
        stage.remove->setEnabled(false);
        QVERIFY(stage.open());
        QTest::keyClick(stage.menu, Qt::Key_R);
        QTest::mouseClick(stage.menu, Qt::LeftButton, {}, stage.menu->actionGeometry(stage.remove).center());
        letMenusTell();
        QCOMPARE(stage.clicks, QStringList());
        stage.menu->close();
    }

    void aClickChoosesOnce()
    {
        Stage stage;
        QVERIFY(stage.open());
        QTest::mouseClick(stage.menu, Qt::LeftButton, {}, stage.menu->actionGeometry(stage.add).center());
        letMenusTell();
        QCOMPARE(stage.clicks, QStringList{u"add"_s});
    }

    void aChoiceIsToldWhenTheMenuIsThroughWithItAndInOrder()
    {
        Stage stage;
        QVERIFY(stage.open());
        QTest::keyClick(stage.menu, Qt::Key_R);
        QVERIFY(!stage.menu->isVisible());
        QCOMPARE(stage.clicks, QStringList()); // the menu may still need itself
        stage.menu->PopUp(stage.window, 600, 450);
        QTest::keyClick(stage.menu, Qt::Key_A);
        QTRY_COMPARE(stage.clicks, QStringList({u"remove"_s, u"add"_s}));
    }

    void aFollowerMayDeleteTheMenu_data()
    {
        QTest::addColumn<bool>("byKey");
        QTest::newRow("key") << true;
        QTest::newRow("mouse") << false;
    }
    void aFollowerMayDeleteTheMenu()
    {
        QFETCH(bool, byKey);
        Stage stage;
        QVERIFY(stage.open());
        const QPointer<PopupMenu> menu = stage.menu;
        const Subscription deleting = stage.remove->Click.subscribe([&menu] { delete menu.data(); });
        if (byKey)
            QTest::keyClick(stage.menu, Qt::Key_R);
        else
            QTest::mouseClick(stage.menu, Qt::LeftButton, {},
                              stage.menu->actionGeometry(stage.remove).center());
        QTRY_VERIFY(menu.isNull());
        QCOMPARE(stage.clicks, QStringList{u"remove"_s});
    }

    void aChoiceInAMenuThatHasGoneSinceIsNotTold()
    {
        Stage stage;
        QVERIFY(stage.open());
        QTest::keyClick(stage.menu, Qt::Key_R);
        delete stage.menu;
        letMenusTell();
        QCOMPARE(stage.clicks, QStringList());
    }

    void aMenuThatIsDismissedClosesAndDropsItsChoice()
    {
        Stage stage;
        QVERIFY(stage.open());
        QTest::keyClick(stage.menu, Qt::Key_R);
        stage.menu->PopUp(stage.window, 600, 450);
        stage.menu->Dismiss();
        QVERIFY(!stage.menu->isVisible());
        letMenusTell();
        QCOMPARE(stage.clicks, QStringList());
    }

    void theCaptionStaysAsItStandsAndAnAmpersandInItIsShown()
    {
        Stage stage;
        stage.remove->SetCaption(u"Remove 'Smith & &Co'"_s);
        QCOMPARE(stage.remove->Caption(), u"Remove 'Smith & &Co'"_s);
        QCOMPARE(stage.remove->text(), u"&Remove 'Smith && &&Co'"_s);
        stage.remove->SetCaption(u"Take away"_s); // without the letter there is no access key
        QCOMPARE(stage.remove->text(), u"Take away"_s);
    }

    void aFailureOfAFollowerDoesNotCrossQt()
    {
        Stage stage;
        const Unhandled unhandled;
        const Subscription failing = stage.add->Click.subscribe([] { throw Error(u"no"_s); });
        QVERIFY(stage.open());
        chooseByKey(stage.menu, Qt::Key_A);
        QCOMPARE(unhandled.texts, QStringList{u"MenuItem_Click: no"_s});
    }
};

TAVRIN_TEST_MAIN(tst_PopupMenu)
#include "tst_PopupMenu.moc"
