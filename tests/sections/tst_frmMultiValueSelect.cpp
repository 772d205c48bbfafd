#include "base/failure/Error.h"
#include "base/values/Variant.h"
#include "sections/MultiValueForm.h"
#include "sections/frmMultiValueSelect.h"
#include "support/NextModal.h"
#include "support/RaisedError.h"
#include "support/TestCase.h"

#include <QLabel>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

/// The dialog over the table of weapons.
struct Dialog
{
    Dialog()
        : installation(host)
    {
        host.setTable(WeaponTable, weapons());
    }
    bool show()
    {
        form.show();
        form.activateWindow();
        return QTest::qWaitForWindowActive(&form);
    }
    QList<qint32> codes() const
    {
        QList<qint32> data;
        for (int i = 0; i < list->ListCount(); ++i)
            data << list->ItemData(i);
        return data;
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(form.windowHandle(), key, modifiers);
    }

    FakeHost host;
    HostInstallation installation;
    frmMultiValueSelect form;
    ListBox* list = form.findChild<ListBox*>(u"lstChoices"_s);
    TextLink* done = form.findChild<TextLink*>(u"lnkOK"_s);
};

} // namespace

class tst_frmMultiValueSelect : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void itsTextsAreTheTold()
    {
        Dialog dialog;
        QCOMPARE(dialog.form.windowTitle(), u"Select one or more items"_s);
        QCOMPARE(dialog.form.findChild<QLabel*>(u"Label1"_s)->text(),
                 u"Select one or more choices from the list below, and click \"Done\" when finished:"_s);
        QCOMPARE(dialog.done->Caption(), u"Done"_s);
        QCOMPARE(dialog.done->Font()->Name(), u"Segoe UI"_s);
        QCOMPARE(dialog.done->Font()->Size(), 9.75);
        QVERIFY(dialog.done->Font()->Bold());
        QCOMPARE(dialog.done->ForeColor(), SystemColor::Highlight);
        QVERIFY(dialog.done->HoverUnderline());
    }

    void valuesAreLoadedInTheirOrderWithTheFirstMarked()
    {
        Dialog dialog;
        dialog.form.LoadValues(WeaponTable, {});
        QCOMPARE(entriesOf(*dialog.list), QStringList({u"Handgun"_s, u"Rifle"_s, u"Knife"_s}));
        QCOMPARE(dialog.codes(), QList<qint32>({11, 12, 13}));
        QCOMPARE(dialog.form.ChoiceCount(), 3);
        QCOMPARE(dialog.list->ListIndex(), 0);
        QCOMPARE(dialog.form.SelectedValues(), QList<qint32>({11}));
        QCOMPARE(dialog.host.state().log, QStringList({u"GetTableValues 302"_s}));
        dialog.form.LoadValues(WeaponTable, {11}); // anew, and not behind the others
        QCOMPARE(dialog.codes(), QList<qint32>({12, 13}));
        QCOMPARE(dialog.form.SelectedValues(), QList<qint32>({12}));
    }

    void inactiveValuesAreNotOffered()
    {
        Dialog dialog;
        dialog.host.state().inactive[WeaponTable] = {12};
        dialog.form.LoadValues(WeaponTable, {});
        QCOMPARE(dialog.codes(), QList<qint32>({11, 13}));
    }

    void whatIsChosenAlreadyIsLeftOut_data()
    {
        QTest::addColumn<QVariantList>("existing");
        QTest::addColumn<QList<qint32>>("left");
        QTest::newRow("numbers") << QVariantList({12}) << QList<qint32>({11, 13});
        QTest::newRow("twice the same") << QVariantList({12, 12}) << QList<qint32>({11, 13});
        QTest::newRow("doubles and texts") << QVariantList({12.0, u"13"_s}) << QList<qint32>({11});
        QTest::newRow("not in the table") << QVariantList({99}) << QList<qint32>({11, 12, 13});
        QTest::newRow("all") << QVariantList({13, 12, 11}) << QList<qint32>();
    }
    void whatIsChosenAlreadyIsLeftOut()
    {
        QFETCH(QVariantList, existing);
        Dialog dialog;
        dialog.form.LoadValues(WeaponTable, existing);
        QTEST(dialog.codes(), "left");
        QCOMPARE(dialog.list->ListIndex(), dialog.codes().isEmpty() ? -1 : 0);
    }

    void everyEntryOfAChosenCodeIsLeftOut()
    {
        Dialog dialog;
        dialog.host.setTable(WeaponTable, {{u"A"_s, u"A"_s, 12}, {u"B"_s, u"B"_s, 12}, {u"C"_s, u"C"_s, 13}});
        dialog.form.LoadValues(WeaponTable, {12});
        QCOMPARE(dialog.codes(), QList<qint32>({13}));
    }

    void anExistingCodeOutsideThe16BitRangeFailsOnTheConversion_data()
    {
        QTest::addColumn<QVariant>("code");
        QTest::addColumn<int>("number");
        QTest::newRow("just inside") << QVariant(32767) << 0;
        QTest::newRow("above") << QVariant(32768) << Error::OverflowNumber;
        QTest::newRow("below") << QVariant(-32769) << Error::OverflowNumber;
        QTest::newRow("text") << QVariant(u"many"_s) << Error::TypeMismatchNumber;
    }
    void anExistingCodeOutsideThe16BitRangeFailsOnTheConversion()
    {
        QFETCH(QVariant, code);
        Dialog dialog;
        dialog.host.setTable(WeaponTable, {{u"A"_s, u"Large"_s, 32768}, {u"B"_s, u"Largest"_s, 70000}});
        const Error error = raisedBy([&] {
            dialog.form.LoadValues(WeaponTable, {code});
            QCOMPARE(dialog.codes(), QList<qint32>({32768, 70000})); // choices may be larger
        });
        QTEST(error.Number, "number");
    }

    void theMarkedCodesComeFromTopToBottom()
    {
        Dialog dialog;
        dialog.form.LoadValues(WeaponTable, {});
        dialog.list->SetListIndex(2);
        dialog.list->SetSelected(0, true);
        QCOMPARE(dialog.form.SelectedValues(), QList<qint32>({11, 13}));
        dialog.list->SetListIndex(-1);
        QCOMPARE(dialog.form.SelectedValues(), QList<qint32>());
    }

    void doneIsTheOnlyWayNotToCancel_data()
    {
        QTest::addColumn<QString>("way");
        QTest::addColumn<bool>("canceled");
        QTest::newRow("Enter in the list") << u"Enter"_s << false;
        QTest::newRow("click on Done") << u"click"_s << false;
        QTest::newRow("Space on Done") << u"Space"_s << false;
        QTest::newRow("Escape") << u"Escape"_s << true;
        QTest::newRow("frame") << u"frame"_s << true;
    }
    void doneIsTheOnlyWayNotToCancel()
    {
        QFETCH(QString, way);
        Dialog dialog;
        dialog.form.LoadValues(WeaponTable, {});
        QVERIFY(dialog.show());
        QVERIFY(dialog.form.Canceled());
        QVERIFY(dialog.list->hasFocus());
        if (way == u"Enter"_s) {
            dialog.press(Qt::Key_Return);
        } else if (way == u"click"_s) {
            QTest::mouseClick(dialog.form.windowHandle(), Qt::LeftButton, {},
                              dialog.done->geometry().center());
        } else if (way == u"Space"_s) {
            dialog.press(Qt::Key_Tab);
            dialog.press(Qt::Key_Space);
        } else if (way == u"Escape"_s) {
            dialog.press(Qt::Key_Escape);
        } else {
            dialog.form.close();
        }
        QVERIFY(!dialog.form.isVisible());
        QTEST(dialog.form.Canceled(), "canceled");
        QCOMPARE(dialog.form.SelectedValues(), QList<qint32>({11})); // it keeps what was marked
    }

    void aRejectionBehindDoneCancels()
    {
        Dialog dialog;
        dialog.form.LoadValues(WeaponTable, {});
        QVERIFY(dialog.show());
        dialog.press(Qt::Key_Return);
        QVERIFY(!dialog.form.Canceled());
        dialog.form.reject();
        QVERIFY(dialog.form.Canceled());
    }

    void aDialogThatIsShownAgainAndLeftIsCanceled()
    {
        Dialog dialog;
        dialog.form.LoadValues(WeaponTable, {});
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
            QVERIFY(dialog.show());
            dialog.press(key);
            QVERIFY(!dialog.form.isVisible());
        }
        QVERIFY(dialog.form.Canceled());
    }

    void enterThatIsStillHeldDownDoesNotAnswerTheDialog()
    {
        Dialog dialog;
        dialog.form.LoadValues(WeaponTable, {});
        QVERIFY(dialog.show());
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, u"\r"_s, true);
        QCoreApplication::sendEvent(dialog.list, &held);
        QVERIFY(dialog.form.isVisible());
        dialog.form.close();
    }

    void severalAreMarkedFromTheKeyboard()
    {
        Dialog dialog;
        dialog.form.LoadValues(WeaponTable, {});
        QVERIFY(dialog.show());
        dialog.press(Qt::Key_Down, Qt::ShiftModifier);
        dialog.press(Qt::Key_Return);
        QCOMPARE(dialog.form.SelectedValues(), QList<qint32>({11, 12}));
    }

    void resizingPlacesTheParts_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("as designed") << QSize(252, 273);
        QTest::newRow("large") << QSize(500, 480);
    }
    void resizingPlacesTheParts()
    {
        QFETCH(QSize, size);
        Dialog dialog;
        QCOMPARE(dialog.form.size(), QSize(252, 273));
        QVERIFY(dialog.show());
        dialog.form.resize(size);
        QCOMPARE(dialog.form.findChild<QLabel*>(u"Label1"_s)->geometry(), QRect(8, 12, 233, 25));
        const int link = dialog.done->height();
        QVERIFY(link >= 17);
        QVERIFY(dialog.done->width() >= 33);
        QCOMPARE(dialog.list->geometry(), QRect(8, 48, size.width() - 16, size.height() - 48 - (link + 2)));
        QCOMPARE(dialog.done->pos(),
                 QPoint(size.width() - dialog.done->width() - 8, 48 + dialog.list->height() + 2));
        dialog.form.close();
    }

    void itBlocksItsOwnersWindow()
    {
        Dialog dialog;
        QWidget window;
        QWidget owner(&window);
        window.show();
        dialog.form.LoadValues(WeaponTable, {});
        const NextModal modal([&](QWidget& shown) {
            QCOMPARE(&shown, &dialog.form);
            QCOMPARE(shown.windowModality(), Qt::ApplicationModal);
            QCOMPARE(shown.parentWidget(), &window);
            shown.close();
        });
        dialog.form.ShowModal(&owner);
        QVERIFY(modal.came());
        dialog.form.setParent(nullptr);
    }
};

TAVRIN_TEST_MAIN(tst_frmMultiValueSelect)
#include "tst_frmMultiValueSelect.moc"
