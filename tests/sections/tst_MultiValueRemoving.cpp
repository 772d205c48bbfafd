#include "base/failure/Error.h"
#include "sections/MultiValueForm.h"
#include "support/TestCase.h"
#include "testing/Unhandled.h"

#include <QAction>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

/// A command of the form that bears the Delete key, and how often it was given.
struct DeleteCommand
{
    explicit DeleteCommand(QWidget& window, QKeyCombination key = Qt::Key_Delete)
    {
        action.setShortcut(key);
        window.addAction(&action);
    }

    QAction action;
    QSignalSpy triggered{&action, &QAction::triggered};
};

} // namespace

/// The minus and the Delete key.
class tst_MultiValueRemoving : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
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

    // The Delete key

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
        const DeleteCommand command(form.window);
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
        QCOMPARE(command.triggered.size(), 0); // nor do the repeats reach the form
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
        const DeleteCommand command(form.window,
                                    QKeyCombination(modifiers & ~Qt::KeypadModifier, Qt::Key_Delete));
        form.press(Qt::Key_Delete, modifiers);
        QCOMPARE(command.triggered.size(), 1);
        QCOMPARE(form.take(), QStringList());
        form.press(Qt::Key_Delete, Qt::KeypadModifier); // the keypad's own Delete is one like the other
        QCOMPARE(form.take(), QStringList({u"ValueRemoved 1"_s}));
    }

    void aShortcutOfTheFormDoesNotTakeTheDeleteKey()
    {
        MultiValueForm form;
        QVERIFY(form.isReady());
        form.fill({11, 12});
        form.list->SetListIndex(0);
        const DeleteCommand command(form.window);
        form.press(Qt::Key_Delete);
        QCOMPARE(form.take(), QStringList({u"ValueRemoved 1"_s}));
        QCOMPARE(command.triggered.size(), 0);
    }
};

TAVRIN_TEST_MAIN(tst_MultiValueRemoving)
#include "tst_MultiValueRemoving.moc"
