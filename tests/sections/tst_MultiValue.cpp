#include "base/failure/Error.h"
#include "base/values/Variant.h"
#include "sections/MultiValueForm.h"
#include "sections/frmMultiValueSelect.h"
#include "support/FakeDesktop.h"
#include "support/Keys.h"
#include "support/NextModal.h"
#include "support/TestCase.h"
#include "support/Unhandled.h"

#include <QAccessible>
#include <QAction>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

/// Goes through the dialog: marks these entries, and answers "Done" or leaves.
void answer(QWidget& window, const QList<int>& marked, bool done)
{
    auto* choices = window.findChild<ListBox*>(u"lstChoices"_s);
    choices->SetListIndex(-1);
    for (const int row : marked)
        choices->SetSelected(row, true);
    QTest::keyClick(&window, done ? Qt::Key_Return : Qt::Key_Escape);
}

/// The selection dialogs that there are, shown or not, wherever they stand.
qsizetype dialogCount()
{
    const QWidgetList all = QApplication::allWidgets();
    return std::count_if(all.begin(), all.end(),
                         [](QWidget* widget) { return qobject_cast<frmMultiValueSelect*>(widget); });
}

/// Message boxes that look at what is there while they are shown.
struct LookingBoxes final : MessageBoxes
{
    BoxAnswer show(QWidget*, const QString& text, BoxIcon, const QString&, BoxButtons) override
    {
        seen << u"%1 dialogs: %2"_s.arg(dialogCount()).arg(text);
        return BoxAnswer::Ok;
    }
    QStringList seen;
};

} // namespace

/// The person's side: the list, the two links, the dialog and the keys; properties and layout.
class tst_MultiValue : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // The members

    void theMembersStandInThePublishedOrder()
    {
        const QMetaObject& meta = MultiValue::staticMetaObject;
        QStringList names;
        for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i)
            names << QString::fromLatin1(meta.property(i).name());
        QCOMPARE(names, QStringList({u"Count"_s, u"Enabled"_s}));
        QVERIFY(!meta.property(meta.indexOfProperty("Count")).isWritable());
        const auto info = [&meta](const char* key) {
            return QString::fromLatin1(meta.classInfo(meta.indexOfClassInfo(key)).value());
        };
        QCOMPARE(info("ClassName"), u"TVBoundControls.MultiValue"_s);
        QCOMPARE(info("DefaultInterface"), u"_MultiValue"_s);
        QCOMPARE(info("EventInterface"), u"__MultiValue"_s);
        QVERIFY(meta.indexOfSignal("ValueAdded()") >= 0);
        QVERIFY(meta.indexOfSignal("ValueRemoved()") >= 0);
    }

    void enabledIsSavedAndTrueByDefault()
    {
        MultiValueForm form;
        PropertyBag bag;
        form.control->WriteProperties(bag);
        QVERIFY(bag.entries().empty()); // the default need not be saved
        form.control->SetEnabled(false);
        form.control->WriteProperties(bag);
        QCOMPARE(bag.entries().size(), 1U);
        QCOMPARE(bag.entries().front().key, u"Enabled"_s);
        QCOMPARE(bag.ReadProperty(u"Enabled"_s, {}), QVariant(false));
        const MultiValue restored(nullptr, {u"Other"_s, &bag});
        QVERIFY(!restored.Enabled());
        const PropertyBag empty;
        const MultiValue plain(nullptr, {u"Other"_s, &empty});
        QVERIFY(plain.Enabled());
    }

    void settingEnabledReportsTheChangeAndThenRebuildsTheList()
    {
        MultiValueForm form;
        form.fill({11, 12});
        form.host.state().log.clear();
        QStringList order;
        connect(form.control, &UserControl::PropertyChanged, &form.window,
                [&](const QString& key) { order << key << form.host.state().log; });
        form.control->SetEnabled(false);
        QCOMPARE(order, QStringList({u"Enabled"_s}));
        QCOMPARE(form.host.state().log, QStringList({u"new TableCodeCache"_s, u"GetDescription 302"_s,
                                                     u"GetDescription 302"_s, u"ShadeColor"_s}));
        QVERIFY(!form.control->Enabled());
        QVERIFY(!form.add->isEnabled());
        QVERIFY(!form.list->isEnabled());
        form.control->SetEnabled(true);
        QVERIFY(form.add->isEnabled());
    }

    void enabledIsItsOwnAndNotItsWindows()
    {
        MultiValueForm form;
        form.window.setEnabled(false);
        QVERIFY(form.control->Enabled());
    }

    void aFollowerOfEnabledMayDeleteTheControl()
    {
        MultiValueForm form;
        connect(form.control, &UserControl::PropertyChanged, &form.window,
                [&](const QString&) { delete form.control.data(); });
        form.control->SetEnabled(false);
        QVERIFY(!form.control);
    }

    // Birth

    void aNewControlIsEmptyAndAsksForNoTable()
    {
        MultiValueForm form;
        QCOMPARE(form.control->Count(), 0);
        QCOMPARE(form.entries(), QStringList());
        QCOMPARE(form.host.state().log, QStringList({u"ShadeColor"_s}));
        QVERIFY(!form.remove->isEnabled());
        QVERIFY(form.add->isEnabled());
    }

    void aFailingHostAtBirthReachesWhoeverMakesTheControl()
    {
        FakeHost host;
        const HostInstallation installation(host);
        host.failWith(Error(u"no colours"_s, 61));
        QVERIFY_THROWS_EXCEPTION(Error, MultiValue());
        PropertyBag bag;
        bag.WriteProperty(u"Enabled"_s, false, true);
        QVERIFY_THROWS_EXCEPTION(Error, MultiValue(nullptr, {u"Restored"_s, &bag}));
    }

    void itLivesInADesignerWithoutAHost()
    {
        const DesignTime design;
        const MultiValue control;
        QCOMPARE(control.Count(), 0);
    }

    void itsBackgroundIsTheHostsShadeOfTheContainers()
    {
        FakeHost host;
        const HostInstallation installation(host);
        QWidget container;
        container.setProperty("BackColor", QVariant::fromValue(Color::rgb(200, 100, 50)));
        const MultiValue control(&container);
        QCOMPARE(control.FrameBackColor(), Color::rgb(80, 40, 20)); // the factor is 0.4
    }

    void aChangeOfTheThemeShadesAnew()
    {
        MultiValueForm form;
        QVERIFY(form.isReady());
        form.host.state().log.clear();
        const QPalette before = QApplication::palette();
        const auto restore = qScopeGuard([&before] { QApplication::setPalette(before); });
        QApplication::setPalette(QPalette(QColor(40, 50, 60)));
        QTRY_COMPARE(form.host.state().log, QStringList({u"ShadeColor"_s}));
        QCoreApplication::processEvents();
        QCOMPARE(form.host.state().log.size(), 1); // once
    }

    void aContainerOfAnotherColourShadesAnew()
    {
        FakeHost host;
        const HostInstallation installation(host);
        QWidget window;
        auto* container = new QWidget(&window);
        const auto* control = new MultiValue(container);
        QPalette palette;
        palette.setColor(QPalette::Window, QColor(200, 100, 50));
        window.setPalette(palette);
        QCOMPARE(control->FrameBackColor(), Color::rgb(80, 40, 20));
        container->setProperty("BackColor", QColor(100, 50, 200));
        QCOMPARE(control->FrameBackColor(), Color::rgb(40, 20, 80));
    }

    void aContainersColourThatNobodyTellsOfShadesAnew_data()
    {
        QTest::addColumn<std::function<void(QWidget&)>>("color");
        using Coloring = std::function<void(QWidget&)>;
        QTest::newRow("a style sheet")
            << Coloring([](QWidget& page) { page.setStyleSheet(u"background: rgb(200, 100, 50)"_s); });
        QTest::newRow("a filled background") << Coloring([](QWidget& page) {
            page.setPalette(QPalette(QColor(200, 100, 50)));
            page.setAutoFillBackground(true);
        });
    }
    void aContainersColourThatNobodyTellsOfShadesAnew()
    {
        QFETCH(std::function<void(QWidget&)>, color);
        FakeHost host;
        const HostInstallation installation(host);
        for (const bool isShownFirst : {false, true}) {
            QWidget window;
            window.resize(400, 300);
            auto* page = new QWidget(&window);
            page->resize(400, 300);
            const auto* control = new MultiValue(page);
            if (isShownFirst)
                window.show();
            color(*page);
            window.show();
            QTRY_COMPARE(control->FrameBackColor(), Color::rgb(80, 40, 20));
        }
    }

    void aFillTakesTheColourAsItIsThen()
    {
        MultiValueForm form;
        form.window.hide();
        const Color before = form.control->FrameBackColor();
        QWidget page(&form.window);
        form.control->setParent(&page);
        page.setPalette(QPalette(QColor(200, 100, 50)));
        page.setAutoFillBackground(true);
        form.fill({11});
        QCOMPARE(form.control->FrameBackColor(), Color::rgb(80, 40, 20));
        page.setAutoFillBackground(false);
        form.control->show();
        form.window.show();
        QCOMPARE(form.control->FrameBackColor(), before);
    }

    void clickingPlusBeforeTheFirstFillTellsThePersonOnce()
    {
        const Unhandled unhandled;
        FakeMessageBoxes boxes;
        MultiValueForm form;
        QVERIFY(form.isReady());
        form.click(form.add);
        QCOMPARE(unhandled.texts,
                 QStringList({u"Link_Click: Nothing can be added to this list yet: it has not been filled "
                              "from a record."_s}));
        QCOMPARE(boxes.texts(), QStringList());
        QCOMPARE(form.take(), QStringList());
        form.fill({11}); // and it works from then on
        QCOMPARE(form.control->Count(), 1);
    }

    // Adding

    void doneAppendsTheMarkedCodesAndRaisesValueAdded()
    {
        MultiValueForm form;
        QVERIFY(form.isReady());
        form.fill({12});
        const NextModal modal([&](QWidget& window) {
            QCOMPARE(window.windowTitle(), u"Select one or more items"_s);
            QCOMPARE(window.windowModality(), Qt::ApplicationModal);
            QCOMPARE(window.parentWidget(), &form.window);
            QCOMPARE(entriesOf(*window.findChild<ListBox*>()), QStringList({u"Handgun"_s, u"Knife"_s}));
            answer(window, {0, 1}, true);
        });
        form.click(form.add);
        QVERIFY(modal.came());
        QCOMPARE(form.take(), QStringList({u"ValueAdded 3"_s}));
        QCOMPARE(form.values(), QVariantList({12, 11, 13}));
        QCOMPARE(form.entries(), QStringList({u"Rifle"_s, u"Handgun"_s, u"Knife"_s}));
    }

    void theDialogIsUnloadedThenTheListIsBuiltThenTheEventIsRaised_data()
    {
        QTest::addColumn<bool>("done");
        QTest::newRow("Done") << true;
        QTest::newRow("Escape") << false;
    }
    void theDialogIsUnloadedThenTheListIsBuiltThenTheEventIsRaised()
    {
        QFETCH(bool, done);
        MultiValueForm form;
        QVERIFY(form.isReady());
        form.fill({12});
        QStringList order;
        const auto note = [&](const QString& what) {
            order << what;
            order << std::exchange(form.host.state().log, {});
        };
        connect(form.control, &MultiValue::ValueAdded, &form.window, [&] { note(u"event"_s); });
        const NextModal modal([&](QWidget& window) {
            connect(&window, &QObject::destroyed, &form.window, [&] { note(u"unloaded"_s); });
            form.host.state().log.clear();
            answer(window, {1}, done);
        });
        form.click(form.add);
        QVERIFY(modal.came());
        QStringList expected{u"unloaded"_s, u"event"_s, u"new TableCodeCache"_s, u"GetDescription 302"_s};
        if (done)
            expected << u"GetDescription 302"_s;
        QCOMPARE(order, expected << u"ShadeColor"_s); // the list is built between the two
        QCOMPARE(dialogCount(), 0);
    }

    void theOwnerIsBlockedAndTheDialogStandsOverIt()
    {
        MultiValueForm form;
        form.window.move(150, 120);
        QVERIFY(form.isReady());
        form.fill({12});
        const NextModal modal([&](QWidget& window) {
            QVERIFY(form.window.frameGeometry().contains(window.frameGeometry().center()));
            form.click(form.other);
            typeInto(form.window.windowHandle(), u"x"_s);
            QVERIFY(form.other->text().isEmpty());
            QCOMPARE(form.list->ListIndex(), -1);
            answer(window, {}, true);
        });
        form.click(form.add);
        QVERIFY(modal.came());
        QCOMPARE(form.values(), QVariantList({12})); // nothing was marked
        QCOMPARE(form.take(), QStringList({u"ValueAdded 1"_s}));
    }

    void closingTheDialogWithoutDoneStillRaisesValueAdded_data()
    {
        QTest::addColumn<bool>("byFrame");
        QTest::newRow("Escape") << false;
        QTest::newRow("the window's frame") << true;
    }
    void closingTheDialogWithoutDoneStillRaisesValueAdded()
    {
        QFETCH(bool, byFrame);
        MultiValueForm form;
        QVERIFY(form.isReady());
        form.fill({12});
        const NextModal modal([&](QWidget& window) {
            if (byFrame)
                window.close();
            else
                answer(window, {0, 1}, false);
        });
        form.click(form.add);
        QVERIFY(modal.came());
        QCOMPARE(form.take(), QStringList({u"ValueAdded 1"_s}));
        QCOMPARE(form.values(), QVariantList({12}));
        QCOMPARE(dialogCount(), 0);
    }

    void plusWithAllCodesChosenShowsTheWarningAndRaisesNoEvent()
    {
        FakeMessageBoxes boxes;
        MultiValueForm form;
        QVERIFY(form.isReady());
        form.fill({13, 11, 12});
        form.click(form.add);
        QCOMPARE(boxes.texts(),
                 QStringList({u"You have already added all possible choices to this list."_s}));
        const ShownBox box = boxes.take().first();
        QCOMPARE(box.title, u"Warning"_s);
        QCOMPARE(box.icon, BoxIcon::Exclamation);
        QCOMPARE(box.buttons, BoxButtons::Ok);
        QCOMPARE(box.parent, form.control.data());
        QCOMPARE(form.take(), QStringList());
        QCOMPARE(form.control->Count(), 3);
    }

    void theDialogIsUnloadedBeforeTheWarningShows()
    {
        const auto boxes = std::make_shared<LookingBoxes>();
        const auto before = std::exchange(desktop().messageBoxes, boxes);
        const auto restore = qScopeGuard([&] { desktop().messageBoxes = before; });
        MultiValueForm form;
        QVERIFY(form.isReady());
        form.fill({13, 11, 12});
        form.click(form.add);
        QCOMPARE(boxes->seen,
                 QStringList({u"0 dialogs: You have already added all possible choices to this list."_s}));
    }

    void aFailureWhileTheDialogLoadsIsToldOnceAndLeavesTheValues()
    {
        const Unhandled unhandled;
        MultiValueForm form;
        QVERIFY(form.isReady());
        form.fill({12, 70000}); // beyond 16 bits: it cannot be looked for among the choices
        form.click(form.add);
        QCOMPARE(unhandled.texts, QStringList({u"Link_Click: Overflow"_s}));
        QCOMPARE(form.values(), QVariantList({12, 70000}));
        form.fill({12});
        form.host.failWith(Error(u"no table"_s));
        form.click(form.add);
        form.host.failWith({});
        QCOMPARE(unhandled.texts, QStringList({u"Link_Click: Overflow"_s, u"Link_Click: no table"_s}));
        QCOMPARE(form.values(), QVariantList({12}));
        QCOMPARE(form.entries(), QStringList({u"Rifle"_s}));
        QCOMPARE(form.take(), QStringList());
        QCOMPARE(dialogCount(), 0);
    }

    void aFillWhileTheDialogIsOpenClosesItAndRaisesNoEvent_data()
    {
        QTest::addColumn<bool>("confirmed");
        QTest::newRow("still asking") << false;
        QTest::newRow("confirmed already") << true;
    }
    void aFillWhileTheDialogIsOpenClosesItAndRaisesNoEvent()
    {
        QFETCH(bool, confirmed);
        MultiValueForm form;
        QVERIFY(form.isReady());
        form.fill({12});
        {
            const NextModal modal([&](QWidget& window) {
                if (confirmed)
                    answer(window, {0, 1}, true);
                form.fill({13}); // the record before is gone
                QVERIFY(!window.isVisible());
                form.host.state().log.clear();
            });
            form.click(form.add);
            QVERIFY(modal.came());
        }
        QCOMPARE(form.values(), QVariantList({13}));
        QCOMPARE(form.entries(), QStringList({u"Knife"_s}));
        QCOMPARE(form.take(), QStringList()); // nobody has added anything to this record
        QCOMPARE(form.host.state().log, QStringList());
        QCOMPARE(dialogCount(), 0);
        const NextModal again([](QWidget& window) { answer(window, {0}, true); });
        form.click(form.add); // and the next pass counts
        QVERIFY(again.came());
        QCOMPARE(form.take(), QStringList({u"ValueAdded 2"_s}));
        QCOMPARE(form.values(), QVariantList({13, 11}));
    }

    void aFillThatFailsWhileTheDialogIsOpenClosesItToo()
    {
        MultiValueForm form;
        QVERIFY(form.isReady());
        form.fill({12});
        const NextModal modal([&](QWidget& window) {
            form.host.failWith(Error(u"no table"_s));
            QVERIFY_THROWS_EXCEPTION(Error, form.fill({13}));
            form.host.failWith({});
            QVERIFY(!window.isVisible());
        });
        form.click(form.add);
        QVERIFY(modal.came());
        QCOMPARE(form.values(), QVariantList({13})); // which were read; only the list could not be built
        QCOMPARE(form.take(), QStringList());
    }

    void aFillWithoutRowsOrBindingLeavesTheDialogOpen()
    {
        MultiValueForm form;
        QVERIFY(form.isReady());
        form.fill({12});
        const NextModal modal([&](QWidget& window) {
            form.contract().FillControl(&form.binding, {}, nullptr);
            QVERIFY(window.isVisible());
            form.contract().FillControl(nullptr, {}, rowsOf({13}));
            QVERIFY(window.isVisible());
            answer(window, {0}, true);
        });
        form.click(form.add);
        QVERIFY(modal.came());
        QCOMPARE(form.take(), QStringList({u"ValueAdded 2"_s}));
    }

    void aPassThatAFillHasEndedLeavesTheOneBehindItAlone()
    {
        MultiValueForm form;
        QVERIFY(form.isReady());
        form.fill({12});
        std::optional<NextModal> second;
        const NextModal first([&](QWidget&) {
            form.fill({13});
            second.emplace([](QWidget& window) { answer(window, {1}, true); });
            form.add->click(); // before the call that has shown the first one is over
        });
        form.click(form.add);
        QVERIFY(first.came());
        QVERIFY(second && second->came());
        QCOMPARE(form.take(), QStringList({u"ValueAdded 2"_s})); // once
        QCOMPARE(form.values(), QVariantList({13, 12}));
        QCOMPARE(dialogCount(), 0);
    }

    void theControlOrItsWindowMayDieWhileTheDialogIsOpen_data()
    {
        QTest::addColumn<bool>("window");
        QTest::newRow("control") << false;
        QTest::newRow("window") << true;
    }
    void theControlOrItsWindowMayDieWhileTheDialogIsOpen()
    {
        QFETCH(bool, window);
        const Unhandled unhandled;
        FakeHost host;
        const HostInstallation installation(host);
        host.setTable(WeaponTable, weapons());
        const QPointer<QWidget> parent(new QWidget);
        const QPointer<MultiValue> control(new MultiValue(parent));
        parent->show();
        const BoundBinding binding{u"WeaponNo"_s, WeaponTable};
        static_cast<BoundControl*>(control)->FillControl(&binding, {}, rowsOf({11}));
        const QSignalSpy added(control, &MultiValue::ValueAdded);
        const NextModal modal([&](QWidget& dialog) {
            const QPointer<QWidget> shown(&dialog);
            delete (window ? parent.data() : control.data());
            QVERIFY(!shown || !shown->isVisible()); // at once: nobody is left to take its answer
        });
        control->findChild<TextLink*>(u"lnkAdd"_s)->click();
        QVERIFY(modal.came());
        QVERIFY(!control);
        QVERIFY(!QApplication::activeModalWidget());
        QCOMPARE(dialogCount(), 0);
        QCOMPARE(added.size(), 0);
        QCOMPARE(unhandled.texts, QStringList());
        delete parent.data();
    }

    void aFollowerOfTheEventsMayDeleteTheControl_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::addColumn<QString>("link");
        QTest::newRow("Delete") << Qt::Key_Delete << QString();
        QTest::newRow("minus") << Qt::Key_Space << u"lnkDelete"_s;
        QTest::newRow("plus") << Qt::Key_Space << u"lnkAdd"_s;
    }
    void aFollowerOfTheEventsMayDeleteTheControl()
    {
        QFETCH(Qt::Key, key);
        QFETCH(QString, link);
        MultiValueForm form;
        QVERIFY(form.isReady());
        form.fill({11, 12});
        form.list->SetListIndex(0);
        const auto remove = [&] { delete form.control.data(); };
        connect(form.control, &MultiValue::ValueAdded, &form.window, remove);
        connect(form.control, &MultiValue::ValueRemoved, &form.window, remove);
        if (!link.isEmpty())
            form.control->findChild<TextLink*>(link)->setFocus();
        const NextModal modal([](QWidget& window) { window.close(); });
        form.press(key);
        QVERIFY(!form.control);
    }

    // Removing

    void removingSelectsTheEntryAboveOrTheNewFirst_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QVariantList>("left");
        QTest::addColumn<int>("selected");
        QTest::newRow("first") << 0 << QVariantList({12, 13}) << 0;
        QTest::newRow("middle") << 1 << QVariantList({11, 13}) << 0;
        QTest::newRow("last") << 2 << QVariantList({11, 12}) << 1;
    }
    void removingSelectsTheEntryAboveOrTheNewFirst()
    {
        QFETCH(int, index);
        for (const bool byKey : {true, false}) {
            MultiValueForm form;
            QVERIFY(form.isReady());
            form.fill({11, 12, 13});
            form.clickRow(index);
            if (byKey)
                form.press(Qt::Key_Delete);
            else
                form.click(form.remove);
            QCOMPARE(form.take(), QStringList({u"ValueRemoved 2"_s}));
            QTEST(form.values(), "left");
            QTEST(form.list->ListIndex(), "selected");
            QVERIFY(form.remove->isEnabled());
            QVERIFY(form.list->hasFocus());
        }
    }

    void ofEqualValuesTheSelectedOneIsRemoved()
    {
        MultiValueForm form;
        form.fill({11, 12, 11});
        form.list->SetListIndex(2);
        form.press(Qt::Key_Delete);
        QCOMPARE(form.values(), QVariantList({11, 12}));
    }

    void removingTheOnlyValueLeavesNothingToRemove()
    {
        MultiValueForm form;
        QVERIFY(form.isReady());
        form.fill({11});
        form.clickRow(0);
        form.press(Qt::Key_Delete);
        QCOMPARE(form.take(), QStringList({u"ValueRemoved 0"_s}));
        QVERIFY(!form.remove->isEnabled());
        form.press(Qt::Key_Delete);
        QCOMPARE(form.take(), QStringList());
    }

    void withNothingSelectedDeleteDoesNothingAndRaisesNoEvent()
    {
        MultiValueForm form;
        QVERIFY(form.isReady());
        form.fill({11, 12});
        form.press(Qt::Key_Delete);
        QCOMPARE(form.take(), QStringList());
        QCOMPARE(form.control->Count(), 2);
        QVERIFY(!form.remove->isEnabled());
    }

    void deleteReachesTheControlFromItsLinksToo()
    {
        MultiValueForm form;
        QVERIFY(form.isReady());
        form.fill({11, 12});
        form.list->SetListIndex(1);
        form.press(Qt::Key_Tab);
        QVERIFY(form.add->hasFocus());
        form.press(Qt::Key_Delete);
        QCOMPARE(form.values(), QVariantList({11}));
    }

    void aDeleteThatIsHeldDownRemovesOneValueOnly()
    {
        MultiValueForm form;
        QVERIFY(form.isReady());
        form.fill({11, 12, 13});
        form.list->SetListIndex(2);
        QAction deleteRecord;
        deleteRecord.setShortcut(QKeySequence(Qt::Key_Delete));
        form.window.addAction(&deleteRecord);
        const QSignalSpy triggered(&deleteRecord, &QAction::triggered);
        form.press(Qt::Key_Delete);
        for (int i = 0; i < 4; ++i)
            form.repeat(Qt::Key_Delete);
        QCOMPARE(form.take(), QStringList({u"ValueRemoved 2"_s}));
        QCOMPARE(form.values(), QVariantList({11, 12}));
        form.fill({11});
        form.list->SetListIndex(0);
        form.press(Qt::Key_Delete); // the last one goes
        form.repeat(Qt::Key_Delete);
        QCOMPARE(form.take(), QStringList({u"ValueRemoved 0"_s}));
        QCOMPARE(triggered.size(), 0); // nor do the repeats reach the form
        form.fill({11, 12});
        form.list->SetListIndex(0);
        form.press(Qt::Key_Delete); // each press of its own counts
        form.press(Qt::Key_Delete);
        QCOMPARE(form.take(), QStringList({u"ValueRemoved 1"_s, u"ValueRemoved 0"_s}));
    }

    void aDeleteThatIsHeldDownOnALinkRemovesOneValueOnly()
    {
        MultiValueForm form;
        QVERIFY(form.isReady());
        form.fill({11, 12, 13});
        form.list->SetListIndex(0);
        form.press(Qt::Key_Tab);
        QVERIFY(form.add->hasFocus());
        form.press(Qt::Key_Delete);
        form.repeat(Qt::Key_Delete);
        QCOMPARE(form.values(), QVariantList({12, 13}));
    }

    void deleteWithAnotherKeyRemovesNothingAndIsTheForms_data()
    {
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::newRow("Ctrl") << Qt::KeyboardModifiers(Qt::ControlModifier);
        QTest::newRow("Shift") << Qt::KeyboardModifiers(Qt::ShiftModifier);
        QTest::newRow("Alt") << Qt::KeyboardModifiers(Qt::AltModifier);
        QTest::newRow("Meta") << Qt::KeyboardModifiers(Qt::MetaModifier);
        QTest::newRow("Ctrl and Shift") << (Qt::ControlModifier | Qt::ShiftModifier);
        QTest::newRow("Ctrl, of the keypad") << (Qt::ControlModifier | Qt::KeypadModifier);
    }
    void deleteWithAnotherKeyRemovesNothingAndIsTheForms()
    {
        QFETCH(Qt::KeyboardModifiers, modifiers);
        MultiValueForm form;
        QVERIFY(form.isReady());
        form.fill({11, 12});
        form.list->SetListIndex(0);
        form.press(Qt::Key_Delete, modifiers);
        QCOMPARE(form.take(), QStringList());
        QCOMPARE(form.values(), QVariantList({11, 12}));
        QAction deleteRecord;
        deleteRecord.setShortcut(QKeyCombination(modifiers & ~Qt::KeypadModifier, Qt::Key_Delete));
        form.window.addAction(&deleteRecord);
        const QSignalSpy triggered(&deleteRecord, &QAction::triggered);
        form.press(Qt::Key_Delete, modifiers);
        QCOMPARE(triggered.size(), 1);
        QCOMPARE(form.take(), QStringList());
        form.press(Qt::Key_Delete, Qt::KeypadModifier); // the keypad's own Delete is one like the other
        QCOMPARE(form.take(), QStringList({u"ValueRemoved 1"_s}));
    }

    void theListIsBuiltAndTheNextValueSelectedBeforeValueRemovedIsRaised()
    {
        MultiValueForm form;
        QVERIFY(form.isReady());
        form.fill({11, 12, 13});
        form.list->SetListIndex(1);
        form.host.state().log.clear();
        QStringList seen;
        connect(form.control, &MultiValue::ValueRemoved, &form.window, [&] {
            seen << form.host.state().log << form.entries() << QString::number(form.list->ListIndex())
                 << (form.remove->isEnabled() ? u"minus"_s : u"no minus"_s);
        });
        form.press(Qt::Key_Delete);
        QCOMPARE(seen, QStringList({u"new TableCodeCache"_s, u"GetDescription 302"_s, u"GetDescription 302"_s,
                                    u"ShadeColor"_s, u"Handgun"_s, u"Knife"_s, u"0"_s, u"minus"_s}));
    }

    void aShortcutOfTheFormDoesNotTakeTheDeleteKey()
    {
        MultiValueForm form;
        QVERIFY(form.isReady());
        form.fill({11, 12});
        form.list->SetListIndex(0);
        QAction deleteRecord;
        deleteRecord.setShortcut(QKeySequence(Qt::Key_Delete));
        form.window.addAction(&deleteRecord);
        const QSignalSpy triggered(&deleteRecord, &QAction::triggered);
        form.press(Qt::Key_Delete);
        QCOMPARE(form.take(), QStringList({u"ValueRemoved 1"_s}));
        QCOMPARE(triggered.size(), 0);
    }

    void aFailureOfTheHostWhileRemovingIsTold()
    {
        const Unhandled unhandled;
        MultiValueForm form;
        QVERIFY(form.isReady());
        form.fill({11, 12});
        form.list->SetListIndex(0);
        form.host.failWith(Error(u"no colours"_s));
        form.press(Qt::Key_Delete);
        QCOMPARE(unhandled.texts, QStringList({u"UserControl_KeyDown: no colours"_s}));
        QCOMPARE(form.take(), QStringList());
        form.host.failWith({});
        QCOMPARE(form.values(), QVariantList({12}));
        form.control->SetEnabled(true);
        QCOMPARE(form.entries(), QStringList({u"Rifle"_s}));
    }

    // Keyboard and screen readers

    void minusKeepsTheFocusWhileThereIsSomethingToRemove()
    {
        QList<QWidget*> path; // the form moves the focus until it is gone
        MultiValueForm form;
        QVERIFY(form.isReady());
        form.fill({11, 12});
        form.list->SetListIndex(0);
        form.press(Qt::Key_Tab);
        form.press(Qt::Key_Tab);
        QVERIFY(form.remove->hasFocus());
        connect(qApp, &QApplication::focusChanged, &form.window,
                [&](QWidget*, QWidget* now) { path << now; });
        form.press(Qt::Key_Return);
        QVERIFY(form.remove->hasFocus());
        QCOMPARE(path, QList<QWidget*>()); // nor did it go away and come back
        form.press(Qt::Key_Return);
        QCOMPARE(form.take(), QStringList({u"ValueRemoved 1"_s, u"ValueRemoved 0"_s}));
        QCOMPARE(path, QList<QWidget*>({form.list}));
    }

    void tabGoesThroughListAndLinksAndOut()
    {
        MultiValueForm form;
        QVERIFY(form.isReady());
        form.fill({11});
        form.press(Qt::Key_Down);
        QCOMPARE(form.list->ListIndex(), 0);
        QList<QWidget*> path;
        for (int i = 0; i < 3; ++i) {
            form.press(Qt::Key_Tab);
            path << QApplication::focusWidget();
        }
        QCOMPARE(path, QList<QWidget*>({form.add, form.remove, form.other}));
    }

    void screenReadersKnowTheParts()
    {
        MultiValueForm form;
        const auto nameOf = [](QWidget* widget) {
            return QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name);
        };
        QCOMPARE(nameOf(form.list), u"Values"_s);
        QCOMPARE(nameOf(form.add), u"Add values"_s);
        QCOMPARE(nameOf(form.remove), u"Remove the selected value"_s);
        QCOMPARE(form.add->Caption(), u"+"_s);
        QCOMPARE(form.remove->Caption(), u"-"_s);
    }

    void theLinksLookAsDesigned()
    {
        MultiValueForm form;
        for (const TextLink* link : {form.add, form.remove}) {
            QCOMPARE(link->Font()->Name(), u"Arial"_s);
            QCOMPARE(link->Font()->Size(), 18.0);
            QVERIFY(link->Font()->Bold());
            QCOMPARE(link->DisabledColor().value(), 0x80000011U);
            QCOMPARE(link->ForeColor().value(), 0x80000012U);
        }
    }

    // Layout

    void resizingPlacesTheParts_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("as designed") << QSize(165, 137);
        QTest::newRow("large") << QSize(400, 300);
        QTest::newRow("odd") << QSize(201, 99);
    }
    void resizingPlacesTheParts()
    {
        QFETCH(QSize, size);
        MultiValueForm form;
        form.control->resize(size);
        const int overEdge = 8; // 120 twips
        QCOMPARE(form.list->geometry(),
                 QRect(-1, -1, size.width() + 2, size.height() - (form.add->height() - overEdge)));
        QCOMPARE(form.add->pos(), QPoint(8, -1 + form.list->height() - 2));
        QCOMPARE(form.remove->pos(), QPoint(8 + 2 * form.add->width(), form.add->y()));
        QCOMPARE(form.add->height(), 29);
        QVERIFY(form.add->width() >= 14);
        QVERIFY(form.remove->width() >= 8);
    }

    void aControlWithoutRoomLaysOutWithoutFailure()
    {
        const Unhandled unhandled;
        MultiValueForm form;
        form.control->resize(3, 3);
        QCOMPARE(form.list->height(), 0);
        QCOMPARE(unhandled.texts, QStringList());
    }
};

TAVRIN_TEST_MAIN(tst_MultiValue)
#include "tst_MultiValue.moc"
