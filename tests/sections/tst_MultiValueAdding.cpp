#include "base/failure/Error.h"
#include "sections/MultiValueForm.h"
#include "sections/frmMultiValueSelect.h"
#include "support/Keys.h"
#include "support/NextModal.h"
#include "support/TestCase.h"
#include "testing/FakeDesktop.h"
#include "testing/Unhandled.h"

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

const QString AllChosen = u"You have already added all possible choices to this list."_s;
const QString NotFilled =
    u"Link_Click: Nothing can be added to this list yet: it has not been filled from a record."_s;

} // namespace

/// The plus: the dialog of codes, and what its end brings about.
class tst_MultiValueAdding : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // The dialog

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

    // Nothing to add

    void plusWithAllCodesChosenShowsTheWarningAndRaisesNoEvent()
    {
        FakeMessageBoxes boxes;
        MultiValueForm form;
        QVERIFY(form.isReady());
        form.fill({13, 11, 12});
        form.click(form.add);
        QCOMPARE(boxes.texts(), QStringList{AllChosen});
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
        FakeMessageBoxes boxes;
        qsizetype dialogs = -1;
        boxes.during([&dialogs] { dialogs = dialogCount(); });
        MultiValueForm form;
        QVERIFY(form.isReady());
        form.fill({13, 11, 12});
        form.click(form.add);
        QCOMPARE(boxes.texts(), QStringList{AllChosen});
        QCOMPARE(dialogs, 0);
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

    void clickingPlusBeforeTheFirstFillTellsThePersonOnce()
    {
        const Unhandled unhandled;
        FakeMessageBoxes boxes;
        MultiValueForm form;
        QVERIFY(form.isReady());
        form.click(form.add);
        QCOMPARE(unhandled.texts, QStringList{NotFilled});
        QCOMPARE(boxes.texts(), QStringList());
        QCOMPARE(form.take(), QStringList());
        form.fill({11}); // and it works from then on
        QCOMPARE(form.control->Count(), 1);
    }

    void nothingCanBeAddedBehindAFillThatHasFailed()
    {
        const Unhandled unhandled;
        MultiValueForm form;
        QVERIFY(form.isReady());
        form.fill({11});
        const BoundBinding wrong{u"ToolNo"_s, WeaponTable};
        QVERIFY_THROWS_EXCEPTION(Error, form.contract().FillControl(&wrong, {}, rowsOf({11})));
        form.click(form.add);
        QCOMPARE(unhandled.texts, QStringList{NotFilled});
        QCOMPARE(form.take(), QStringList());
    }

    // While the dialog is open

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
};

TAVRIN_TEST_MAIN(tst_MultiValueAdding)
#include "tst_MultiValueAdding.moc"
