#include "attachments/section/AttachmentsForm.h"

#include <QApplication>
#include <QPointer>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

/// Lets whatever the timer of the menu would have done happen.
void waitLongerThanTheTimer()
{
    bool isOver = false;
    QTimer::singleShot(5, [&isOver] { isOver = true; });
    QTRY_VERIFY(isOver);
}

/// What a timer is like, and how often it has fired. Its events are all that is seen of one that nobody else
/// knows.
class TimerWatch : public QObject
{
public:
    TimerWatch() { qApp->installEventFilter(this); }

    QPointer<QTimer> timer;
    int fired = 0;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        auto* source = event->type() == QEvent::Timer ? qobject_cast<QTimer*>(watched) : nullptr;
        if (source && !source->isSingleShot() && source->timerType() == Qt::PreciseTimer) {
            timer = source;
            ++fired;
        }
        return false;
    }
};

/// The pixels of a line of the menu that its text has painted.
qint64 inkOf(PopupMenu& menu, QAction* item)
{
    const QImage image = menu.grab(menu.actionGeometry(item)).toImage();
    const QRgb ground = image.pixel(image.width() - 3, image.height() / 2);
    qint64 ink = 0;
    for (int y = 2; y < image.height() - 2; ++y) {
        for (int x = 2; x < image.width() - 2; ++x)
            ink += image.pixel(x, y) == ground ? 0 : 1;
    }
    return ink;
}

/// The items that are enabled, by their names.
QStringList enabledItems(const AttachmentsForm& form)
{
    QStringList names;
    for (const QAction* action : form.menu->actions()) {
        if (!action->isSeparator() && action->isEnabled())
            names << action->objectName();
    }
    return names;
}

} // namespace

/// The menu of `Attachments`: what is enabled in it, and how it opens.
class tst_AttachmentsMenu : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // What is in it

    void theMenuHasItsItemsAndOpensWithABoldDefault()
    {
        const AttachmentsForm form;
        QCOMPARE(form.menu->title(), u"Attachments"_s);
        QStringList items;
        for (const QAction* action : form.menu->actions()) {
            const auto* item = qobject_cast<const MenuItem*>(action);
            items << action->objectName() + u':' + (item ? item->Caption() : u"-"_s);
        }
        QCOMPARE(items, QStringList({u"mnuOpen:Open"_s, u"mnuSeparator:-"_s, u"mnuAdd:Add Attachment(s)..."_s,
                                     u"mnuRemove:Remove Attachment"_s, u"mnuSeparator2:-"_s,
                                     u"mnuDownloadAll:Download All Attachments..."_s}));
        QCOMPARE(form.menu->defaultAction(), form.item("mnuOpen"));
    }

    void theItemThatADoubleClickStandsForIsBold()
    {
        const AttachmentsForm form;
        const qint64 ink = inkOf(*form.menu, form.item("mnuOpen"));
        form.menu->setDefaultAction(nullptr);
        QVERIFY(inkOf(*form.menu, form.item("mnuOpen")) < ink);
    }

    void whatIsEnabledFollowsTheRightsAndTheRow_data()
    {
        QTest::addColumn<bool>("canAdd");
        QTest::addColumn<bool>("canDelete");
        QTest::addColumn<int>("newLine"); // whose row is new; -1 for none
        QTest::addColumn<int>("line");    // at which the menu opens
        QTest::addColumn<QStringList>("expected");
        const QString open = u"mnuOpen"_s;
        const QString add = u"mnuAdd"_s;
        const QString remove = u"mnuRemove"_s;
        const QString all = u"mnuDownloadAll"_s;
        QTest::newRow("all rights") << true << true << -1 << 0 << QStringList{open, add, remove, all};
        QTest::newRow("no right") << false << false << -1 << 0 << QStringList{open, all};
        QTest::newRow("may add") << true << false << -1 << 0 << QStringList{open, add, all};
        QTest::newRow("may delete") << false << true << -1 << 0 << QStringList{open, remove, all};
        QTest::newRow("a new row") << false << false << 0 << 0 << QStringList{open, remove, all};
        QTest::newRow("a new row behind others")
            << false << false << 2 << 2 << QStringList{open, remove, all};
        QTest::newRow("an old row beside a new first") << false << false << 0 << 1 << QStringList{open, all};
        QTest::newRow("an old row beside a new last") << false << false << 2 << 1 << QStringList{open, all};
    }
    void whatIsEnabledFollowsTheRightsAndTheRow()
    {
        QFETCH(bool, canAdd);
        QFETCH(bool, canDelete);
        QFETCH(int, newLine);
        QFETCH(int, line);
        QFETCH(QStringList, expected);
        AttachmentsForm form;
        form.host.state().permissions.clear();
        if (canAdd)
            form.host.state().permissions << u"Incident/10"_s;
        if (canDelete)
            form.host.state().permissions << u"Incident/20"_s;
        for (int index = 0; index < 3; ++index)
            form.addRow(u"%1.txt"_s.arg(index), Null(), Null(), index == newLine);
        QVERIFY(form.open());
        form.openMenu(form.placeOfLine(line));
        QCOMPARE(enabledItems(form), expected);
        form.menu->close();
    }

    void aRecordThatCannotBeBoundLeavesTheRightsAsTheyWere_data()
    {
        QTest::addColumn<QStringList>("rights");
        QTest::addColumn<QString>("reason");
        for (const char* reason : {"class of another name", "no attachments", "failing host"}) {
            const QString text = QString::fromLatin1(reason);
            QTest::addRow("%s, no right", reason) << QStringList() << text;
            QTest::addRow("%s, may add", reason) << QStringList{u"10"_s} << text;
            QTest::addRow("%s, may delete", reason) << QStringList{u"20"_s} << text;
        }
    }
    void aRecordThatCannotBeBoundLeavesTheRightsAsTheyWere()
    {
        QFETCH(QStringList, rights);
        QFETCH(QString, reason);
        AttachmentsForm form;
        QSet<QString>& permissions = form.host.state().permissions;
        permissions.clear();
        for (const QString& right : rights)
            permissions << u"Incident/"_s + right;
        QVERIFY(form.openThree());
        form.openMenu(form.placeOfLine(0));
        const QStringList before = enabledItems(form);
        form.menu->close();

        // The other record's module has the rights that this one has not.
        for (const QString& right : {u"10"_s, u"20"_s}) {
            if (!rights.contains(right))
                permissions << u"Warrant/"_s + right;
        }
        const auto wrong = std::make_shared<FakeRecord>();
        wrong->SetClassName(reason == u"class of another name"_s ? u"Warrant"_s : u"tvWarrantBO"_s);
        if (reason != u"no attachments"_s)
            wrong->SetItem(u"Attachments"_s, std::make_shared<NumberedRows>());
        if (reason == u"failing host"_s)
            form.host.failWith(Error(u"no session"_s));
        QVERIFY_THROWS_EXCEPTION(Error, static_cast<BoundSection*>(form.section)->ReadData(wrong));
        form.host.failWith({});
        form.openMenu(form.placeOfLine(0));
        QCOMPARE(enabledItems(form), before);
        form.menu->close();
    }

    void beforeTheFirstRecordBothRightsAreThere()
    {
        AttachmentsForm form;
        form.host.state().permissions.clear();
        QVERIFY(form.show());
        const auto made = form.host.state().madeCollection.lock();
        QVERIFY(made);
        const tvTableRowPtr old = NumberedRows::makeRow(false); // so that it is not for being new
        AttachmentsForm::set(*old, "SeqNo", 1);
        AttachmentsForm::set(*old, "FileName", u"old.txt"_s);
        made->Add(old);
        form.dialogs.choose({form.newFile(u"new.txt"_s)});
        form.host.state().transferFailures.insert(form.workplace.filePath(u"new.txt"_s), u"no room"_s);
        const NextModal skip([](QWidget&) {});
        form.section->AddAttachments(); // whose upload is skipped; the list shows what is there
        QCOMPARE(form.boxes.shown().size(), 0);
        QCOMPARE(form.list->Count(), 1);
        form.openMenu(form.placeOfLine(0));
        QCOMPARE(enabledItems(form),
                 QStringList({u"mnuOpen"_s, u"mnuAdd"_s, u"mnuRemove"_s, u"mnuDownloadAll"_s}));
        form.menu->close();
    }

    void inAnEmptyListOpenRemoveAndDownloadAreDisabled()
    {
        AttachmentsForm form;
        QVERIFY(form.open());
        form.openMenu(form.emptyPlace());
        QCOMPARE(enabledItems(form), QStringList{u"mnuAdd"_s});
        form.menu->close();
    }

    void onEmptySpaceWithoutAMarkedLineOpenAndRemoveAreDisabled()
    {
        AttachmentsForm form;
        QVERIFY(form.openThree());
        form.list->SetDropHighlight(std::nullopt);
        form.list->SetSelectedItem(std::nullopt);
        form.openMenu(form.emptyPlace());
        QCOMPARE(enabledItems(form), QStringList({u"mnuAdd"_s, u"mnuDownloadAll"_s}));
        QCOMPARE(form.rows->Position(), 1);
        form.menu->close();
    }

    void aReadBringsTheMenuUpToDate()
    {
        AttachmentsForm form;
        form.host.state().permissions.clear();
        form.addThree();
        form.read();
        QVERIFY(!form.item("mnuAdd")->isEnabled());
        QVERIFY(form.item("mnuDownloadAll")->isEnabled());
    }

    // How it opens

    void aRightPressOpensTheMenuThroughTheTimerOnly()
    {
        AttachmentsForm form;
        QVERIFY(form.openThree());
        const QPoint place = form.placeOfLine(0);
        QTest::mousePress(form.window.windowHandle(), Qt::RightButton, {}, place);
        QVERIFY(!form.menu->isVisible());
        QTRY_VERIFY(form.menu->isVisible());
        QCOMPARE(form.menu->pos(), form.window.mapToGlobal(place));
        form.menu->close();
        QCoreApplication::processEvents(); // a timer that still ran would open it again
        QVERIFY(!form.menu->isVisible());
        QTest::mouseRelease(form.window.windowHandle(), Qt::RightButton, {}, place);
    }

    void theTimerHasAnIntervalOfOneAndStandsBeforeTheMenuOpens()
    {
        AttachmentsForm form;
        QVERIFY(form.openThree());
        const TimerWatch watch;
        bool ranAsItOpened = true;
        QObject::connect(form.menu, &QMenu::aboutToShow, form.menu,
                         [&] { ranAsItOpened = !watch.timer || watch.timer->isActive(); });
        form.openMenu(form.placeOfLine(0));
        QVERIFY(watch.timer);
        QCOMPARE(watch.timer->interval(), 1);
        QVERIFY(!ranAsItOpened);
        form.menu->close();
        waitLongerThanTheTimer();
        QCOMPARE(watch.fired, 1);
        QVERIFY(!form.menu->isVisible());
        form.openMenu(form.placeOfLine(1)); // and again
        QCOMPARE(watch.fired, 2);
        form.menu->close();
    }

    void aRightPressOnAnotherLineSelectsIt()
    {
        AttachmentsForm form;
        QVERIFY(form.openThree());
        form.openMenu(form.placeOfLine(2));
        QCOMPARE(form.rows->Position(), 3);
        QCOMPARE(form.selected(), u"103"_s);
        QCOMPARE(form.marked(), u"103"_s);
        QCOMPARE(form.description->Text(), u"third"_s);
        form.menu->close();
    }

    void aRightPressBesideTheLinesKeepsTheCurrentOne()
    {
        AttachmentsForm form;
        QVERIFY(form.openThree());
        form.openMenu(form.emptyPlace());
        QCOMPARE(form.rows->Position(), 1);
        QCOMPARE(form.marked(), u"101"_s);
        QCOMPARE(enabledItems(form).size(), 4);
        form.menu->close();
    }

    void theOtherButtonsOpenNoMenu()
    {
        AttachmentsForm form;
        QVERIFY(form.openThree());
        form.click(form.placeOfLine(1));
        form.click(form.placeOfLine(1), Qt::MiddleButton);
        waitLongerThanTheTimer();
        QVERIFY(!form.menu->isVisible());
    }

    void theKeysOfTheMenuOpenItAtTheCurrentLine_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::newRow("menu") << Qt::Key_Menu << Qt::KeyboardModifiers();
        QTest::newRow("Shift+F10") << Qt::Key_F10 << Qt::KeyboardModifiers(Qt::ShiftModifier);
    }
    void theKeysOfTheMenuOpenItAtTheCurrentLine()
    {
        QFETCH(Qt::Key, key);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        AttachmentsForm form;
        QVERIFY(form.openThree());
        form.press(Qt::Key_Down);
        QCOMPARE(form.rows->Position(), 2);
        form.press(key, modifiers);
        QTRY_VERIFY(form.menu->isVisible());
        QCOMPARE(form.rows->Position(), 2);
        const QPoint place = form.list->viewport()->mapFromGlobal(form.menu->pos());
        const QRect line = form.list->visualRect(form.list->model()->index(1, 0));
        QVERIFY(place.y() >= line.top() && place.y() <= line.bottom() + 1);
        form.menu->close();
    }

    void aSectionThatGoesTakesItsTimerAlong()
    {
        AttachmentsForm form;
        QVERIFY(form.openThree());
        QTest::mousePress(form.window.windowHandle(), Qt::RightButton, {}, form.placeOfLine(0));
        delete form.section.data();
        waitLongerThanTheTimer();
        QVERIFY(!QApplication::activePopupWidget());
    }
};

TAVRIN_TEST_MAIN(tst_AttachmentsMenu)
#include "tst_AttachmentsMenu.moc"
