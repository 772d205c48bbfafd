#include "base/Error.h"
#include "support/TestCase.h"
#include "support/Unhandled.h"
#include "widgets/PopupMenu.h"

#include <QTest>

using namespace Qt::StringLiterals;
using tavrin::Error;
using tavrin::MenuItem;
using tavrin::PopupMenu;
using tavrin::Subscription;
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
            QTest::keyClick(stage.menu, static_cast<Qt::Key>(key));
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
        QCOMPARE(stage.clicks, QStringList());
        stage.menu->close();
    }

    void aClickChoosesOnce()
    {
        Stage stage;
        QVERIFY(stage.open());
        QTest::mouseClick(stage.menu, Qt::LeftButton, {}, stage.menu->actionGeometry(stage.add).center());
        QCOMPARE(stage.clicks, QStringList{u"add"_s});
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
        QTest::keyClick(stage.menu, Qt::Key_A);
        QCOMPARE(unhandled.texts, QStringList{u"MenuItem_Click: no"_s});
    }
};

TAVRIN_TEST_MAIN(tst_PopupMenu)
#include "tst_PopupMenu.moc"
