#include "base/values/Variant.h"
#include "lookup/FlatPickerForm.h"
#include "support/Keys.h"
#include "support/TestCase.h"

#include <QAccessible>
#include <QApplication>

using namespace tavrin;
using namespace tavrin::test;
using namespace Qt::StringLiterals;

namespace {

const QVariant Ann = u"user:asmith"_s;

/// Tab goes from the box before the picker over the one stop in it to the box behind, and back the same way.
template <typename Form>
void checkTabStop(Form& form, const QWidget* stop)
{
    form.press(Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), stop);
    form.press(Qt::Key_Tab);
    QVERIFY(form.after->hasFocus());
    form.press(Qt::Key_Backtab, Qt::ShiftModifier);
    QCOMPARE(QApplication::focusWidget(), stop);
    form.press(Qt::Key_Backtab, Qt::ShiftModifier);
    QVERIFY(form.before->hasFocus());
}

QString accessibleName(QWidget* widget)
{
    return QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name);
}

QString accessibleDescription(QWidget* widget)
{
    return QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Description);
}

} // namespace

/// The one tab stop of the flat pickers, the focus that enters them, and what screen readers tell of them.
class tst_FlatPickerFocus : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // One tab stop

    void anEmptyPickerIsOneTabStopWhichIsItsTextBox()
    {
        UserForm form;
        QVERIFY(form.isReady());
        checkTabStop(form, form.box);
    }

    void aTagIsOneTabStopWhichIsTheControlItself()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.picker->SetValue(Ann);
        checkTabStop(form, form.picker);
    }

    void anEmployeesTextBoxIsTheTabStopAlsoBesideATag()
    {
        EmployeeForm form;
        QVERIFY(form.isReady());
        form.picker->SetValue(12);
        checkTabStop(form, form.box);
    }

    void aTabStopIsOneAlsoAfterAValueHasComeAndGone()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.picker->SetValue(Ann);
        form.picker->SetValue(Null());
        checkTabStop(form, form.box);
    }

    void aDisabledPickerIsNoTabStop()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.picker->SetEnabled(false);
        form.press(Qt::Key_Tab);
        QVERIFY(form.after->hasFocus());
    }

    void disablingWhileTheFocusIsInsideLetsItGo()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.type(u"o"_s);
        form.picker->SetEnabled(false);
        QVERIFY(!form.box->ListIsOpen());
        QVERIFY(!form.picker->isAncestorOf(QApplication::focusWidget()));
        form.picker->SetEnabled(true);
        QCOMPARE(form.shape->BackColor(), colorSet(10).BackColor);
    }

    // Entering

    void theFocusThatEntersWithoutATagGoesIntoTheTextBox()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.picker->setFocus();
        QVERIFY(form.box->hasFocus());
        form.picker->SetShowName(false);
        form.picker->SetValue(Ann);
        form.after->setFocus();
        form.picker->setFocus();
        QVERIFY(form.box->hasFocus()); // nor does a value without a name keep it away
    }

    void aClickOnTheTagGivesTheControlTheFocus()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.picker->SetValue(Ann);
        QTest::mouseClick(form.window.windowHandle(), Qt::LeftButton, Qt::NoModifier,
                          form.tag->mapTo(&form.window, QPoint(20, 5)));
        QCOMPARE(QApplication::focusWidget(), form.picker);
    }

    void theAccessKeyOfTheCaptionEntersThePicker()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.picker->SetCaption(u"&Officer"_s);
        form.press(Qt::Key_O, Qt::AltModifier);
        QVERIFY(form.box->hasFocus());
        form.before->setFocus();
        form.picker->SetValue(Ann);
        form.press(Qt::Key_O, Qt::AltModifier);
        QCOMPARE(QApplication::focusWidget(), form.picker);
    }

    void theFocusThatComesBackToTheControlGoesIntoTheTextBoxAgain_data()
    {
        QTest::addColumn<QString>("after");
        QTest::newRow("a choice and its clearing") << u"choice"_s;
        QTest::newRow("Tab and back") << u"tab"_s;
    }
    void theFocusThatComesBackToTheControlGoesIntoTheTextBoxAgain()
    {
        QFETCH(QString, after);
        UserForm form;
        QVERIFY(form.isReady());
        form.type(u"smith"_s);
        if (after == u"choice") {
            form.press(Qt::Key_Return);
            form.press(Qt::Key_Delete);
        } else {
            form.press(Qt::Key_Escape);
            form.press(Qt::Key_Tab);
            QVERIFY(form.after->hasFocus());
            form.press(Qt::Key_Backtab, Qt::ShiftModifier);
        }
        QVERIFY(form.box->hasFocus());
        form.picker->setFocus(); // as a form does for the first field at fault
        QVERIFY(form.box->hasFocus());
        form.press(Qt::Key_J);
        QCOMPARE(form.box->Text(), u"j"_s);
    }

    void aPickerThatTheHostSendsTheFocusBackToKeepsItAndTheOtherNeverHasIt()
    {
        PeopleSite site;
        QWidget window;
        QLineEdit other(&window);
        FlatEmployeePicker* first = nullptr;
        FlatEmployeePicker* second = nullptr;
        int sentBack = 0;
        QObject host;
        // The host listens before there are pickers, and so is told before them: the first is required.
        connect(qApp, &QApplication::focusChanged, &host, [&](const QWidget*, const QWidget* now) {
            if (first && second && now && second->isAncestorOf(now) && IsNull(first->Value())) {
                ++sentBack;
                first->setFocus();
            }
        });
        first = new FlatEmployeePicker(&window);
        second = new FlatEmployeePicker(&window);
        second->move(0, 100);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        const auto colorOf = [](QWidget* picker) { return picker->findChild<BoxShape*>()->BackColor(); };
        const Color normal = colorSet(10).BackColor;
        const Color focused = colorSet(30).BackColor;

        first->setFocus();
        second->setFocus();
        QCOMPARE(sentBack, 1);
        auto* firstBox = first->findChild<AutoCompleteTextBox*>();
        QVERIFY(firstBox->hasFocus());
        QCOMPARE(colorOf(first), focused);
        QCOMPARE(colorOf(second), normal);
        typeInto(window.windowHandle(), u"smith"_s);
        QCOMPARE(first->TypedText(), u"smith"_s);
        QTest::keyClick(window.windowHandle(), Qt::Key_Return);
        QCOMPARE(first->Value(), QVariant(12.0));
        second->setFocus(); // now it may
        QCOMPARE(sentBack, 1);
        QVERIFY(second->findChild<AutoCompleteTextBox*>()->hasFocus());
        QCOMPARE(colorOf(first), normal);
        QCOMPARE(colorOf(second), focused);
        first = nullptr;
    }

    // Screen readers

    void screenReadersTellTheCaptionAsTheNameWithoutItsMarks_data()
    {
        QTest::addColumn<QString>("caption");
        QTest::addColumn<QString>("name");
        QTest::newRow("plain") << u"Officer"_s << u"Officer"_s;
        QTest::newRow("access key") << u"&Officer"_s << u"Officer"_s;
        QTest::newRow("an ampersand") << u"R&&D of&ficer"_s << u"R&D officer"_s;
    }
    void screenReadersTellTheCaptionAsTheNameWithoutItsMarks()
    {
        QFETCH(QString, caption);
        QFETCH(QString, name);
        UserForm form;
        form.picker->SetCaption(caption);
        form.picker->SetRequired(true);
        QCOMPARE(accessibleName(form.picker), name);
        QCOMPARE(accessibleName(form.box), name);
    }

    void aCaptionThatIsTakenAwayIsNoLongerTold()
    {
        UserForm form;
        form.picker->SetCaption(u"Officer"_s);
        form.picker->SetCaption(QString());
        QVERIFY(!accessibleName(form.picker).contains(u"Officer"_s));
        QVERIFY(!accessibleName(form.box).contains(u"Officer"_s));
    }

    void aNameThatTheHostGaveStaysWithoutACaption()
    {
        UserForm form;
        form.picker->setAccessibleName(u"Given"_s);
        form.picker->SetRequired(true);
        form.picker->SetValue(Ann);
        QCOMPARE(accessibleName(form.picker), u"Given"_s);
    }

    void screenReadersTellTheWholeNameThatTheTagShows()
    {
        UserForm form;
        form.host.state().userNames.insert(u"asmith"_s, QString(60, u'n'));
        form.picker->SetCaption(u"Officer"_s);
        form.picker->SetValue(Ann);
        QCOMPARE(accessibleDescription(form.picker), QString(60, u'n') + u" (user)"_s);
        QCOMPARE(accessibleName(form.tag), form.tag->Caption());
        form.picker->SetValue(Null());
        QCOMPARE(accessibleDescription(form.picker), QString());
    }

    void screenReadersTellWhatTheLinkDoes()
    {
        UserForm form;
        QCOMPARE(accessibleName(form.link), u"Open the list"_s);
        form.picker->SetValue(Ann);
        QCOMPARE(accessibleName(form.link), u"Clear"_s);
        QAccessible::queryAccessibleInterface(form.link)->actionInterface()->doAction(
            QAccessibleActionInterface::pressAction()); // which shows the button down for a while
        QTRY_VERIFY(IsNull(form.picker->Value()));
    }
};

TAVRIN_TEST_MAIN(tst_FlatPickerFocus)
#include "tst_FlatPickerFocus.moc"
