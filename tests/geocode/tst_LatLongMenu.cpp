#include "geocode/LatLongStage.h"
#include "support/Keys.h"
#include "testing/Unhandled.h"
#include "widgets/panels/PopupMenu.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

/// What an open menu does not outlive.
enum class Ending
{
    AnotherRecord,
    FailedRead,
    Disabled
};

/// A location with coordinates, worked out or typed.
std::unique_ptr<LocationRecord> located(bool onSave)
{
    auto location = std::make_unique<LocationRecord>();
    location->put("GeocodeOnSave", onSave);
    location->put("GeocodeStatus", 1);
    location->putCoordinates(u"44.05"_s, -121.25);
    return location;
}

/// The menu that is open; nullptr for none.
QMenu* openMenu()
{
    return qobject_cast<QMenu*>(QApplication::activePopupWidget());
}

/// The last line of the menu that is open; nullptr for none.
QAction* lastLine()
{
    const QMenu* menu = openMenu();
    return menu ? menu->actions().last() : nullptr;
}

/// Its text without the access key; "" for none.
QString lastText()
{
    const QAction* line = lastLine();
    return line ? line->text().remove(u'&') : QString();
}

void rightClick(const LatLongStage& stage, const QWidget* widget, const QPoint& place)
{
    QTest::mouseClick(stage.window.windowHandle(), Qt::RightButton, {}, widget->mapTo(&stage.window, place));
}

QString clipboard()
{
    return QApplication::clipboard()->text();
}

} // namespace

/// The context menu of the coordinates.
class tst_LatLongMenu : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init() override
    {
        TestCase::init();
        QApplication::clipboard()->setText(u"before"_s);
    }
    void cleanup() override
    {
        QVERIFY(!openMenu());
        TestCase::cleanup();
    }

    void aRightClickAnywhereInTheSectionOffersToCopyTheCoordinates_data()
    {
        QTest::addColumn<QByteArray>("name");
        for (const char* name :
             {"Label13", "txtLat", "Label14", "txtLong", "grpGeocoding", "optGeocodeOnSave1",
              "optGeocodeOnSave0", "grpWarning", "lblWarning", "lnkViewDetails"})
            QTest::newRow(name) << QByteArray(name);
        QTest::newRow("bare surface") << QByteArray();
    }
    void aRightClickAnywhereInTheSectionOffersToCopyTheCoordinates()
    {
        QFETCH(QByteArray, name);
        LatLongStage stage;
        QVERIFY(stage.isReady());
        const auto location = located(true);
        stage.read(*location);
        QVERIFY(!stage.lat()->isEnabled()); // they cannot be marked
        if (name.isEmpty())
            rightClick(stage, stage.control, QPoint(stage.control->width() - 2, 30));
        else
            rightClick(stage, stage.child<QWidget>(name), QPoint(4, 4));
        QVERIFY(openMenu());
        QCOMPARE(openMenu()->actions().size(), 1);
        QCOMPARE(lastText(), u"Copy coordinates"_s);
        QVERIFY(lastLine()->isEnabled());
        QCOMPARE(clipboard(), u"before"_s);
        chooseByKey(openMenu(), Qt::Key_O);
        QVERIFY(!openMenu());
        QCOMPARE(clipboard(), u"44.05, -121.25"_s);
        QCOMPARE(location->written, QStringList());
        QVERIFY(stage.boxes.shown().isEmpty());
    }

    void theMenuKeyAndShiftF10OpenItWhereverTheSectionHasTheFocus_data()
    {
        QTest::addColumn<bool>("onSave");
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<Qt::Key>("key");
        for (const Qt::Key key : {Qt::Key_Menu, Qt::Key_F10}) {
            const char* what = key == Qt::Key_Menu ? "menu key" : "Shift+F10";
            QTest::addRow("%s, the section", what) << true << QByteArray() << key;
            QTest::addRow("%s, option", what) << true << QByteArray("optGeocodeOnSave1") << key;
            QTest::addRow("%s, details", what) << true << QByteArray("lnkViewDetails") << key;
            QTest::addRow("%s, manual option", what) << false << QByteArray("optGeocodeOnSave0") << key;
            QTest::addRow("%s, latitude", what) << false << QByteArray("txtLat") << key;
            QTest::addRow("%s, longitude", what) << false << QByteArray("txtLong") << key;
        }
    }
    void theMenuKeyAndShiftF10OpenItWhereverTheSectionHasTheFocus()
    {
        QFETCH(bool, onSave);
        QFETCH(QByteArray, name);
        QFETCH(Qt::Key, key);
        LatLongStage stage;
        QVERIFY(stage.isReady());
        const auto location = located(onSave);
        stage.read(*location);
        auto* widget = name.isEmpty() ? stage.control.data() : stage.child<QWidget>(name);
        widget->setFocus();
        QVERIFY(stage.control->isAncestorOf(QApplication::focusWidget()));
        const Qt::KeyboardModifiers modifiers = key == Qt::Key_F10 ? Qt::ShiftModifier : Qt::NoModifier;
        QTest::keyClick(stage.window.windowHandle(), key, modifiers);
        QCOMPARE(lastText(), u"Copy coordinates"_s);
        const QRect section(stage.control->mapToGlobal(QPoint()), stage.control->size());
        QVERIFY(section.adjusted(-1, -1, 1, 1).contains(openMenu()->pos())); // where the person looks
        chooseByKey(openMenu(), Qt::Key_O);
        QCOMPARE(clipboard(), u"44.05, -121.25"_s);
        QVERIFY(!openMenu());
        QTest::simulateEvent(stage.window.windowHandle(), true, key, modifiers, QString(), true, -1);
        QVERIFY(!openMenu()); // a key that is held down does not open it again
    }

    void whatAPlatformSendsBesideTheMenuKeyOpensNoSecondMenu()
    {
        for (const bool onSave : {true, false}) {
            LatLongStage stage;
            QVERIFY(stage.isReady());
            const auto location = located(onSave);
            stage.read(*location);
            stage.control->setFocus();
            QContextMenuEvent request(QContextMenuEvent::Keyboard, QPoint(4, 4), QPoint(4, 4));
            QApplication::sendEvent(QApplication::focusWidget(), &request);
            QVERIFY(!openMenu());
            QVERIFY(request.isAccepted()); // nor does the form open one
        }
    }

    void f10AloneOpensNothing()
    {
        LatLongStage stage;
        QVERIFY(stage.isReady());
        const auto location = located(true);
        stage.read(*location);
        stage.control->setFocus();
        QTest::keyClick(stage.window.windowHandle(), Qt::Key_F10);
        QVERIFY(!openMenu());
    }

    void aBoxThatCanBeTypedInKeepsItsOwnMenuAndOffersItBehind()
    {
        LatLongStage stage;
        QVERIFY(stage.isReady());
        const auto location = located(false);
        stage.read(*location);
        stage.lat()->setFocus();
        stage.lat()->selectAll();
        QTest::keyClicks(stage.lat(), u"45.5"_s);
        rightClick(stage, stage.lat(), QPoint(4, 4));
        QVERIFY(openMenu());
        QStringList lines;
        for (const QAction* line : openMenu()->actions())
            lines << line->text().section(u'\t', 0, 0).remove(u'&');
        QVERIFY2(lines.contains(u"Paste"_s) && lines.contains(u"Select All"_s), qPrintable(lines.join(u'/')));
        QCOMPARE(lines.last(), u"Copy coordinates"_s);
        const QPointer<QMenu> menu(openMenu());
        chooseByKey(menu, Qt::Key_O);
        QCOMPARE(clipboard(), u"45.5, -121.25"_s); // as it shows, saved or not
        QTRY_VERIFY(!menu);
        QCOMPARE(stage.lat()->Text(), u"45.5"_s);
        QVERIFY(stage.lat()->hasFocus());
        rightClick(stage, stage.lat(), QPoint(4, 4)); // and once more
        QCOMPARE(lastText(), u"Copy coordinates"_s);
        openMenu()->close();
    }

    void itCopiesWhatShowsOrNothing_data()
    {
        QTest::addColumn<QVariant>("latitude");
        QTest::addColumn<QVariant>("longitude");
        QTest::addColumn<QString>("copied");
        QTest::newRow("both") << QVariant(44.05) << QVariant(u"-121.25"_s) << u"44.05, -121.25"_s;
        QTest::newRow("latitude only") << QVariant(44.05) << Null() << u"44.05"_s;
        QTest::newRow("longitude only") << Null() << QVariant(-121.25) << u"-121.25"_s;
        QTest::newRow("none") << Null() << Null() << QString();
    }
    void itCopiesWhatShowsOrNothing()
    {
        QFETCH(QVariant, latitude);
        QFETCH(QVariant, longitude);
        QFETCH(QString, copied);
        LatLongStage stage;
        QVERIFY(stage.isReady());
        LocationRecord location;
        location.put("GeocodeOnSave", true);
        location.putCoordinates(latitude, longitude);
        stage.read(location);
        rightClick(stage, stage.lat(), QPoint(4, 4));
        QCOMPARE(lastText(), u"Copy coordinates"_s);
        QCOMPARE(lastLine()->isEnabled(), !copied.isEmpty());
        chooseByKey(openMenu(), Qt::Key_O);
        QCOMPARE(clipboard(), copied.isEmpty() ? u"before"_s : copied);
        if (openMenu())
            openMenu()->close();
    }

    void thereIsNothingToCopyBeforeTheFirstReadAndBehindOneThatFailed()
    {
        LatLongStage stage;
        QVERIFY(stage.isReady());
        rightClick(stage, stage.child<QWidget>("Label13"), QPoint(4, 4));
        QVERIFY(!lastLine()->isEnabled());
        openMenu()->close();
        const auto location = located(true);
        stage.read(*location);
        location->failing = u"Longitude"_s;
        stage.read(*location);
        rightClick(stage, stage.lat(), QPoint(4, 4));
        QVERIFY(!lastLine()->isEnabled());
        openMenu()->close();
        location->failing.clear();
        stage.read(*location);
        rightClick(stage, stage.lat(), QPoint(4, 4));
        QVERIFY(lastLine()->isEnabled());
        openMenu()->close();
    }

    void theMenuClosesWithWhatItWasOpenedFor_data()
    {
        QTest::addColumn<bool>("onSave");
        QTest::addColumn<Ending>("ending");
        for (const bool onSave : {true, false}) {
            const char* whose = onSave ? "of the section" : "of a box";
            QTest::addRow("%s, another record", whose) << onSave << Ending::AnotherRecord;
            QTest::addRow("%s, a read that fails", whose) << onSave << Ending::FailedRead;
            QTest::addRow("%s, disabled", whose) << onSave << Ending::Disabled;
        }
    }
    void theMenuClosesWithWhatItWasOpenedFor()
    {
        QFETCH(bool, onSave);
        QFETCH(Ending, ending);
        LatLongStage stage;
        QVERIFY(stage.isReady());
        const auto location = located(onSave);
        stage.read(*location);
        rightClick(stage, stage.lat(), QPoint(4, 4));
        QVERIFY(openMenu());
        LocationRecord other;
        other.put("Latitude", 1);
        if (ending == Ending::AnotherRecord)
            stage.read(other);
        else if (ending == Ending::Disabled)
            stage.control->setEnabled(false);
        else {
            location->failing = u"Longitude"_s;
            stage.read(*location);
            QCOMPARE(stage.boxes.take().size(), 1);
        }
        QVERIFY(!openMenu());
        stage.read(LocationRecord()); // the menu is gone by now
        QCOMPARE(clipboard(), u"before"_s);
    }

    void theControlMayDieWhileTheMenuIsOpen_data()
    {
        QTest::addColumn<bool>("onSave");
        QTest::newRow("of the section") << true;
        QTest::newRow("of a box") << false;
    }
    void theControlMayDieWhileTheMenuIsOpen()
    {
        QFETCH(bool, onSave);
        const Unhandled unhandled;
        LatLongStage stage;
        QVERIFY(stage.isReady());
        const auto location = located(onSave);
        stage.read(*location);
        rightClick(stage, stage.lat(), QPoint(4, 4));
        QVERIFY(openMenu());
        delete stage.control.data();
        QVERIFY(!openMenu());
        QCOMPARE(unhandled.texts, QStringList());
    }

    void theMenuTakesNoPlaceInTheSection()
    {
        LatLongStage stage;
        QVERIFY(stage.isReady());
        const auto location = located(false);
        stage.read(*location);
        const QSize size = stage.control->size();
        rightClick(stage, stage.lat(), QPoint(4, 4));
        QCOMPARE(stage.control->sizeHint(), size);
        openMenu()->close();
        rightClick(stage, stage.child<QWidget>("Label13"), QPoint(4, 4));
        QCOMPARE(stage.control->sizeHint(), size);
        openMenu()->close();
    }
};

TAVRIN_TEST_MAIN(tst_LatLongMenu)
#include "tst_LatLongMenu.moc"
