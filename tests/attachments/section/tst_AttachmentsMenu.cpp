#include "attachments/FolderNotSet.h"
#include "attachments/section/AttachmentsForm.h"

#include <QDialog>
#include <QPointer>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace tavrin;
using tavrin::test::AttachmentsForm;
using tavrin::test::NumberedRows;
using tavrin::test::ShownBox;

namespace {

void openMenu(AttachmentsForm& form, const QPoint& place)
{
    form.click(place, Qt::RightButton);
    QTRY_VERIFY(form.menu->isVisible());
}

void chooseRemove(AttachmentsForm& form, const QString& way)
{
    openMenu(form, form.placeOfLine(0));
    PopupMenu* menu = form.menu;
    if (way == u"key of the menu"_s) {
        QTest::keyClick(menu, Qt::Key_R);
    } else if (way == u"mouse"_s) {
        QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(form.item("mnuRemove")).center());
    } else {
        for (int line = 0; line < 3; ++line)
            QTest::keyClick(menu, Qt::Key_Down);
        QCOMPARE(menu->activeAction(), form.item("mnuRemove"));
        QTest::keyClick(menu, Qt::Key_Return);
    }
    tavrin::test::letMenusTell();
}

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

/// Presses a key and keeps it down for three repeats.
void holdKey(AttachmentsForm& form, Qt::Key key)
{
    form.press(key);
    for (int repeat = 0; repeat < 3; ++repeat) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, QString(), true);
        QApplication::sendEvent(form.list, &event);
    }
}

} // namespace

/// The menu of `Attachments`, and the keys and clicks of its list.
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
        openMenu(form, form.placeOfLine(line));
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
        openMenu(form, form.placeOfLine(0));
        const QStringList before = enabledItems(form);
        form.menu->close();

        // The other record's module has the rights that this one has not.
        for (const QString& right : {u"10"_s, u"20"_s}) {
            if (!rights.contains(right))
                permissions << u"Warrant/"_s + right;
        }
        const auto wrong = std::make_shared<tavrin::test::FakeRecord>();
        wrong->className = reason == u"class of another name"_s ? u"Warrant"_s : u"tvWarrantBO"_s;
        if (reason != u"no attachments"_s)
            wrong->setItem(u"Attachments"_s, std::make_shared<NumberedRows>());
        if (reason == u"failing host"_s)
            form.host.failWith(Error(u"no session"_s));
        QVERIFY_THROWS_EXCEPTION(Error, static_cast<BoundSection*>(form.section)->ReadData(wrong));
        form.host.failWith({});
        openMenu(form, form.placeOfLine(0));
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
        const tavrin::test::NextModal skip([](QWidget&) {});
        form.section->AddAttachments(); // whose upload is skipped; the list shows what is there
        QCOMPARE(form.boxes.shown().size(), 0);
        QCOMPARE(form.list->Count(), 1);
        openMenu(form, form.placeOfLine(0));
        QCOMPARE(enabledItems(form),
                 QStringList({u"mnuOpen"_s, u"mnuAdd"_s, u"mnuRemove"_s, u"mnuDownloadAll"_s}));
        form.menu->close();
    }

    void inAnEmptyListOpenRemoveAndDownloadAreDisabled()
    {
        AttachmentsForm form;
        form.read();
        QVERIFY(form.show());
        openMenu(form, form.emptyPlace());
        QCOMPARE(enabledItems(form), QStringList{u"mnuAdd"_s});
        form.menu->close();
    }

    void onEmptySpaceWithoutAMarkedLineOpenAndRemoveAreDisabled()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        form.list->SetDropHighlight(std::nullopt);
        form.list->SetSelectedItem(std::nullopt);
        openMenu(form, form.emptyPlace());
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
        form.addThree();
        form.read();
        QVERIFY(form.show());
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
        openMenu(form, form.placeOfLine(0));
        QVERIFY(watch.timer);
        QCOMPARE(watch.timer->interval(), 1);
        QVERIFY(!ranAsItOpened);
        form.menu->close();
        waitLongerThanTheTimer();
        QCOMPARE(watch.fired, 1);
        QVERIFY(!form.menu->isVisible());
        openMenu(form, form.placeOfLine(1)); // and again
        QCOMPARE(watch.fired, 2);
        form.menu->close();
    }

    void aRightPressOnAnotherLineSelectsIt()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        openMenu(form, form.placeOfLine(2));
        QCOMPARE(form.rows->Position(), 3);
        QCOMPARE(form.selected(), u"103"_s);
        QCOMPARE(form.marked(), u"103"_s);
        QCOMPARE(form.description->Text(), u"third"_s);
        form.menu->close();
    }

    void aRightPressBesideTheLinesKeepsTheCurrentOne()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        openMenu(form, form.emptyPlace());
        QCOMPARE(form.rows->Position(), 1);
        QCOMPARE(form.marked(), u"101"_s);
        QCOMPARE(enabledItems(form).size(), 4);
        form.menu->close();
    }

    void theOtherButtonsOpenNoMenu()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
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
        form.addThree();
        form.read();
        QVERIFY(form.show());
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
        form.addThree();
        form.read();
        QVERIFY(form.show());
        QTest::mousePress(form.window.windowHandle(), Qt::RightButton, {}, form.placeOfLine(0));
        delete form.section.data();
        waitLongerThanTheTimer();
        QVERIFY(!QApplication::activePopupWidget());
    }

    // Remove

    void removingTakesTheCurrentRowWithoutAQuestionAndLeavesTheFile()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        const QString stored = form.storedPath(form.text(2, "FileName"));
        form.choose(1, Qt::Key_R);
        QCOMPARE(form.fileNames(), QStringList({u"report.docx"_s, u"lock.png"_s}));
        QCOMPARE(form.rows->removedImmediately(), QList<bool>{false});
        QCOMPARE(form.list->Count(), 2);
        QCOMPARE(form.selected(), u"103"_s);
        QCOMPARE(form.marked(), u"103"_s);
        QCOMPARE(form.description->Text(), u"third"_s);
        QCOMPARE(form.boxes.shown().size(), 0);
        QVERIFY(QFile::exists(stored));
    }

    void removingTheLastRowEmptiesThePane()
    {
        AttachmentsForm form;
        form.addRow(u"a.txt"_s, u"first"_s);
        form.read();
        QVERIFY(form.show());
        form.choose(0, Qt::Key_R);
        QCOMPARE(form.list->Count(), 0);
        QCOMPARE(form.marked(), u"none"_s);
        QCOMPARE(form.description->Text(), QString());
        QVERIFY(!form.description->isEnabled());
    }

    void aFailureToRemoveIsToldInABox()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        form.rows->removalFailure = Error(u"the row is locked"_s);
        form.choose(1, Qt::Key_R);
        const QList<ShownBox> shown = form.boxes.take();
        QCOMPARE(shown.size(), 1);
        QCOMPARE(shown.first().text, u"Unexpected error removing attachment: the row is locked"_s);
        QCOMPARE(shown.first().title, u"Attachments"_s);
        QCOMPARE(shown.first().icon, BoxIcon::Critical);
        QCOMPARE(form.rows->Count(), 3);
    }

    void aFollowerThatFailsBehindTheRemovalLeavesListAndPaneInStep()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        const Subscription failing = form.rows->ItemRemovedEx.subscribe(
            [](qint32, const tvTableRowPtr&) { throw Error(u"the cover is away"_s); });
        form.choose(1, Qt::Key_R);
        QCOMPARE(form.boxes.take().first().text,
                 u"Unexpected error removing attachment: the cover is away"_s);
        QCOMPARE(form.rows->Count(), 2);
        QCOMPARE(form.list->Count(), 2);
        QCOMPARE(form.list->Key(1), u"103"_s);
        QCOMPARE(form.marked(), u"103"_s);
        QCOMPARE(form.description->Text(), u"third"_s);
        form.write();
        QCOMPARE(form.text(2, "Description"), u"third"_s);
        QCOMPARE(form.text(2, "Notes"), u"three"_s);
    }

    void aFailureThatLeavesTheRowKeepsTheTypedComment()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        form.comment->setFocus();
        form.type(u"a "_s);
        form.rows->removalFailure = Error(u"the row is locked"_s);
        form.choose(0, Qt::Key_R);
        QCOMPARE(form.boxes.take().size(), 1);
        QCOMPARE(form.comment->Text(), u"a one"_s);
    }

    void aRemovalMayBindAnotherRecord()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        const std::weak_ptr<NumberedRows> before = form.rows;
        const Subscription binding =
            form.rows->ItemRemovedEx.subscribe([&form](qint32, const tvTableRowPtr&) {
                form.rows = std::make_shared<NumberedRows>();
                form.addRow(u"other.txt"_s, u"other"_s);
                form.rows->SetPosition(1);
                form.record->setItem(u"Attachments"_s, form.rows);
                form.read();
            });
        form.choose(1, Qt::Key_R);
        QVERIFY(before.expired());
        QCOMPARE(form.list->Count(), 1);
        QCOMPARE(form.description->Text(), u"other"_s);
        QCOMPARE(form.boxes.shown().size(), 0);
    }

    void aRemovalMayDeleteTheSection_data()
    {
        QTest::addColumn<QString>("way");
        for (const char* way : {"Delete", "key of the menu", "arrows and Return", "mouse"})
            QTest::newRow(way) << QString::fromLatin1(way);
    }
    void aRemovalMayDeleteTheSection()
    {
        QFETCH(QString, way);
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        const tavrin::test::Unhandled unhandled;
        int removed = 0;
        const Subscription deleting = form.rows->ItemRemovedEx.subscribe([&](qint32, const tvTableRowPtr&) {
            ++removed;
            delete form.section.data();
        });
        if (way == u"Delete"_s)
            form.press(Qt::Key_Delete);
        else
            chooseRemove(form, way);
        QVERIFY(form.section.isNull());
        QCOMPARE(removed, 1);
        QCOMPARE(form.rows->Count(), 2);
        QCOMPARE(form.boxes.shown().size(), 0);
        QCOMPARE(unhandled.texts, QStringList());
    }

    void aRemovalWithoutItsRowIsAnError()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY_THROWS_EXCEPTION(Error, form.rows->ItemRemovedEx.raise(1, nullptr));
        QCOMPARE(form.rows->primaries, QStringList());
    }

    void deleteRemovesWhereItIsAllowed_data()
    {
        QTest::addColumn<bool>("canDelete");
        QTest::addColumn<int>("left");
        QTest::newRow("allowed") << true << 2;
        QTest::newRow("not allowed") << false << 3;
    }
    void deleteRemovesWhereItIsAllowed()
    {
        QFETCH(bool, canDelete);
        QFETCH(int, left);
        AttachmentsForm form;
        if (!canDelete)
            form.host.state().permissions.remove(u"Incident/20"_s);
        form.addThree();
        form.read();
        QVERIFY(form.show());
        form.press(Qt::Key_Delete);
        QCOMPARE(form.rows->Count(), left);
        QCOMPARE(form.list->Count(), left);
    }

    void aHeldDeleteRemovesOneRowOnly()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        holdKey(form, Qt::Key_Delete);
        QCOMPARE(form.rows->Count(), 2);
        QCOMPARE(form.list->Count(), 2);
    }

    void aHeldEnterOpensTheFileOnce_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::newRow("Return") << Qt::Key_Return;
        QTest::newRow("Enter of the number pad") << Qt::Key_Enter;
    }
    void aHeldEnterOpensTheFileOnce()
    {
        QFETCH(Qt::Key, key);
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        holdKey(form, key);
        QCOMPARE(form.shell.opened().size(), 1);
        QVERIFY(!QApplication::activeModalWidget());
    }

    void deleteInTheTextsRemovesNoRow()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        form.description->setFocus();
        form.press(Qt::Key_Delete);
        form.comment->setFocus();
        form.press(Qt::Key_Delete);
        QCOMPARE(form.rows->Count(), 3);
    }

    void aChoiceThatAnotherRecordOvertakesIsDropped()
    {
        AttachmentsForm form;
        QVERIFY(form.openThree());
        const auto former = form.rows;
        openMenu(form, form.placeOfLine(1));
        QTest::keyClick(form.menu, Qt::Key_R);
        form.rows = std::make_shared<NumberedRows>();
        form.addThree();
        form.record->setItem(u"Attachments"_s, form.rows);
        form.read();
        tavrin::test::letMenusTell();
        QCOMPARE(former->Count(), 3);
        QCOMPARE(form.rows->Count(), 3);
    }

    void aChoiceIsKeptWhenTheSameRecordIsReadAgain()
    {
        AttachmentsForm form;
        QVERIFY(form.openThree());
        openMenu(form, form.placeOfLine(1));
        QTest::keyClick(form.menu, Qt::Key_R);
        form.read();
        tavrin::test::letMenusTell();
        QCOMPARE(form.fileNames(), QStringList({u"report.docx"_s, u"lock.png"_s}));
    }

    // Open

    void openingFromTheMenuOpensTheCopyUnderItsOwnName()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        form.choose(1, Qt::Key_O);
        QTRY_COMPARE(form.shell.opened().size(), 1);
        const QString opened = form.shell.opened().first();
        QCOMPARE(QFileInfo(opened).fileName(), u"door.png"_s);
        QCOMPARE(AttachmentsForm::readFile(opened), "door.png");
        QVERIFY(!QFileInfo(opened).isExecutable());
        QCOMPARE(form.boxes.shown().size(), 0);
        QVERIFY(form.window.findChildren<QDialog*>().isEmpty());
    }

    void aDoubleClickAndEnterOpenTheCurrentFile_data()
    {
        QTest::addColumn<bool>("byKey");
        QTest::newRow("double click") << false;
        QTest::newRow("Enter") << true;
    }
    void aDoubleClickAndEnterOpenTheCurrentFile()
    {
        QFETCH(bool, byKey);
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        if (byKey)
            form.press(Qt::Key_Return);
        else
            form.doubleClick(form.placeOfLine(0));
        QTRY_COMPARE(form.shell.opened().size(), 1);
        QCOMPARE(QFileInfo(form.shell.opened().first()).fileName(), u"report.docx"_s);
    }

    void withoutAMarkedLineADoubleClickOpensNothing()
    {
        AttachmentsForm form;
        form.read();
        QVERIFY(form.show());
        form.doubleClick(form.emptyPlace());
        form.press(Qt::Key_Return);
        QCOMPARE(form.shell.opened(), QStringList());
        QCOMPARE(form.boxes.shown().size(), 0);
    }

    void aFailureToOpenIsToldInABox_data()
    {
        QTest::addColumn<bool>("fromMenu");
        QTest::addColumn<QString>("prefix");
        QTest::newRow("menu") << true << u"Unexpected error opening attachment: "_s;
        QTest::newRow("double click") << false << QString();
    }
    void aFailureToOpenIsToldInABox()
    {
        QFETCH(bool, fromMenu);
        QFETCH(QString, prefix);
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        form.shell.answerWith(31);
        if (fromMenu)
            form.choose(0, Qt::Key_O);
        else
            form.doubleClick(form.placeOfLine(0));
        QTRY_COMPARE(form.boxes.shown().size(), 1);
        const ShownBox box = form.boxes.shown().first();
        QCOMPARE(box.text, prefix + u"Could not open file '"_s + form.shell.opened().first() +
                               u"'. Reason: There is no application associated with the given file name "
                               u"extension."_s);
        QCOMPARE(box.title, u"Attachments"_s);
        QCOMPARE(box.icon, BoxIcon::Critical);
    }

    void aFailedDownloadNamesTheFileOfTheStore()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        const QString source = form.store.path() + u'\\' + form.text(1, "FileName");
        form.host.state().transferFailures.insert(source, u"the store is away"_s);
        form.choose(0, Qt::Key_O);
        QTRY_COMPARE(form.boxes.shown().size(), 1);
        QCOMPARE(form.boxes.shown().first().text,
                 u"Unexpected error opening attachment: Error downloading file '"_s + source +
                     u"': the store is away"_s);
        QCOMPARE(form.shell.opened(), QStringList());
    }

    void aMissingSettingIsToldWhenAFileIsOpened()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        form.host.state().settings.clear();
        form.doubleClick(form.placeOfLine(0));
        QTRY_COMPARE(form.boxes.shown().size(), 1);
        QCOMPARE(form.boxes.shown().first().text, tavrin::test::FolderNotSet);
    }

    void aCancelledDownloadIsSilent()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        bool cancelled = false;
        form.host.state().duringTransfer = [&](const QString&, qint64, qint64) {
            QTest::keyClick(QApplication::activeModalWidget()->windowHandle(), Qt::Key_Escape);
            cancelled = true;
        };
        form.choose(0, Qt::Key_O);
        QTRY_VERIFY(cancelled && !QApplication::activeModalWidget());
        QCOMPARE(form.shell.opened(), QStringList());
        QCOMPARE(form.boxes.shown().size(), 0);
    }

    void aFormThatDeletesTheSectionDuringADownloadEndsTheOpeningQuietly()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        const tavrin::test::Unhandled unhandled;
        form.host.state().duringTransfer = [&](const QString&, qint64, qint64) {
            delete form.section.data();
        };
        form.choose(0, Qt::Key_O);
        QVERIFY(form.section.isNull());
        QVERIFY(!QApplication::activeModalWidget());
        QCOMPARE(unhandled.texts, QStringList());
        QCOMPARE(form.boxes.shown().size(), 0);
        QCOMPARE(form.shell.opened(), QStringList());
    }
};

TAVRIN_TEST_MAIN(tst_AttachmentsMenu)
#include "tst_AttachmentsMenu.moc"
