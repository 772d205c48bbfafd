#include "base/failure/Error.h"
#include "base/values/Variant.h"
#include "frame/memory_records/MemoryField.h"
#include "frame/memory_records/MemoryRow.h"
#include "sections/frmSuspRel.h"
#include "support/NextModal.h"
#include "support/TestCase.h"
#include "testing/FakeDesktop.h"
#include "testing/FakeHost.h"
#include "widgets/labels/Label.h"
#include "widgets/lists/FlatDropdown.h"
#include "widgets/panels/GroupBox.h"

#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace tavrin;
using tavrin::MemoryField;
using tavrin::MemoryRow;
using tavrin::test::NextModal;
using tavrin::test::ShownBox;

namespace {

tvTableRowPtr row(const QString& field, const QVariant& value)
{
    return std::make_shared<MemoryRow>(QList<tvFieldPtr>{std::make_shared<MemoryField>(field, value)});
}

/// The dialog over two witnesses and a code table of three relationships, one of them no longer in use.
struct Stage
{
    explicit Stage(const QStringList& names = {u"Ash, Ann"_s, u"Birch, Ben"_s})
        : installation(host)
    {
        host.setTable(Tables::SuspectRelationship,
                      {{u"F"_s, u"Friend"_s, 11}, {u"O"_s, u"Old word"_s, 12}, {u"S"_s, u"Stranger"_s, 13}});
        host.state().inactive[Tables::SuspectRelationship] << 12;
        for (const QString& name : names)
            choices << row(u"WitnessName"_s, name);
        dialog.SetupForm(u"Witness"_s, choices, row(u"SuspectName"_s, u"Moss, Ada"_s));
    }
    template <typename Widget>
    Widget* part(const char* name) const
    {
        return dialog.findChild<Widget*>(QString::fromLatin1(name));
    }
    bool show()
    {
        dialog.show();
        dialog.activateWindow();
        return QTest::qWaitForWindowActive(&dialog);
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(dialog.windowHandle(), key, modifiers);
    }

    test::FakeHost host;
    HostInstallation installation;
    test::FakeMessageBoxes boxes;
    QList<tvTableRowPtr> choices;
    frmSuspRel dialog;
    FlatDropdown* cboName = part<FlatDropdown>("cboName");
    FlatDropdown* cboRelationship = part<FlatDropdown>("cboRelationship");
};

} // namespace

class tst_frmSuspRel : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void thePartsStandAtTheirPlaces_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QPoint>("place");
        QTest::addColumn<QSize>("least");
        QTest::newRow("band") << u"Label8"_s << QPoint(0, 0) << QSize(389, 61);
        QTest::newRow("line") << u"Line1"_s << QPoint(0, 61) << QSize(389, 1);
        QTest::newRow("picture") << u"picHeader"_s << QPoint(8, 4) << QSize(48, 48);
        QTest::newRow("title") << u"lblTitle"_s << QPoint(64, 24) << QSize(156, 13);
        QTest::newRow("name") << u"lblName"_s << QPoint(8, 76) << QSize(57, 13);
        QTest::newRow("names") << u"cboName"_s << QPoint(8, 92) << QSize(265, 21);
        QTest::newRow("relationship") << u"lblRelationship"_s << QPoint(8, 128) << QSize(112, 13);
        QTest::newRow("relationships") << u"cboRelationship"_s << QPoint(8, 144) << QSize(265, 21);
        QTest::newRow("OK") << u"cmdOK"_s << QPoint(112, 180) << QSize(81, 25);
        QTest::newRow("Cancel") << u"cmdCancel"_s << QPoint(204, 180) << QSize(69, 25);
    }
    void thePartsStandAtTheirPlaces()
    {
        QFETCH(QString, name);
        QFETCH(QPoint, place);
        QFETCH(QSize, least);
        const frmSuspRel dialog;
        QCOMPARE(dialog.size(), QSize(281, 216));
        const auto* part = dialog.findChild<QWidget*>(name);
        QVERIFY(part);
        QCOMPARE(part->pos(), place);
        QVERIFY2(part->width() >= least.width() && part->height() >= least.height(),
                 qPrintable(u"%1 x %2"_s.arg(part->width()).arg(part->height())));
        const bool isLabel = qobject_cast<const Label*>(part);
        if (!isLabel) // only a label may grow with its caption
            QCOMPARE(part->width(), least.width());
        QVERIFY(isLabel || part->height() <= least.height() + 6); // a combo box grows with its font
    }

    void beforeItIsSetUpTheCaptionsAreTheDesigned()
    {
        const frmSuspRel dialog;
        QCOMPARE(dialog.windowTitle(), u"Suspect/Other Relationship"_s);
        const auto caption = [&](const char* name) {
            return dialog.findChild<Label*>(QString::fromLatin1(name))->Caption();
        };
        QCOMPARE(caption("lblTitle"), u"Suspect/Other Relationship"_s);
        QCOMPARE(caption("lblName"), u"Other Name"_s);
        QCOMPARE(caption("lblRelationship"), u"Relationship to Suspect"_s);
        QVERIFY(!dialog.Success());
        QCOMPARE(dialog.findChild<QPushButton*>(u"cmdOK"_s)->text(), u"&OK"_s);
        QCOMPARE(dialog.findChild<QPushButton*>(u"cmdCancel"_s)->text(), u"&Cancel"_s);
        const QFont font = dialog.findChild<Label*>(u"lblTitle"_s)->font();
        QVERIFY(font.bold());
        QCOMPARE(font.family(), u"Tahoma"_s);
    }

    void setupNamesThePartyAndTheSuspectAndFillsBothLists()
    {
        const Stage stage;
        QCOMPARE(stage.part<Label>("lblTitle")->Caption(), u"Suspect/Witness Relationship"_s);
        QCOMPARE(stage.part<Label>("lblName")->Caption(), u"Witness Name"_s);
        QCOMPARE(stage.part<Label>("lblRelationship")->Caption(), u"Relationship to Moss, Ada"_s);
        QCOMPARE(stage.dialog.windowTitle(), u"Suspect/Other Relationship"_s); // it stays; it is meant
        QCOMPARE(stage.cboName->ListCount(), 2);
        QCOMPARE(stage.cboName->List(1), u"Birch, Ben"_s);
        QCOMPARE(stage.cboName->ItemData(1), 2);
        QCOMPARE(stage.cboName->ListIndex(), 0);
        QCOMPARE(stage.cboRelationship->ListCount(), 3); // the empty row, and what is in use
        QCOMPARE(stage.cboRelationship->List(0), QString());
        QCOMPARE(stage.cboRelationship->List(2), u"Stranger"_s);
        QVERIFY(stage.cboRelationship->ListIndex() < 1);
        QCOMPARE(stage.cboName->accessibleName(), u"Witness Name"_s);
        QCOMPARE(stage.cboRelationship->accessibleName(), u"Relationship to Moss, Ada"_s);
    }

    void captionsThatAreLongEndAtTheMargin()
    {
        Stage stage;
        stage.dialog.SetupForm(u"Witness"_s, stage.choices,
                               row(u"SuspectName"_s, u"Wellbeloved-Thistlewood, Constance & Ann Marian"_s));
        const auto* label = stage.part<Label>("lblRelationship");
        QCOMPARE(label->geometry().right() + 1, 273);
        QVERIFY(!label->toolTip().isEmpty());
    }

    void withOnePartyLeftItIsTheOneEntryAndSelectedAlready()
    {
        const Stage stage({u"Ash, Ann"_s});
        QCOMPARE(stage.cboName->ListCount(), 1);
        QCOMPARE(stage.cboName->ListIndex(), 0);
        QCOMPARE(stage.dialog.SelectedItem(), stage.choices.first());
    }

    void theSelectedItemIsFoundByItsNumberWhateverTheOrderOfTheNames()
    {
        const Stage stage;
        stage.cboName->SetItemData(0, 2);
        QCOMPARE(stage.dialog.SelectedItem(), stage.choices.at(1));
        stage.cboName->SetListIndex(-1);
        QVERIFY_EXCEPTION_THROWN(stage.dialog.SelectedItem(), Error);
    }

    void theSelectedRelationIsTheCodeAndNullBelowIndexOne()
    {
        const Stage stage;
        for (const int index : {-1, 0}) {
            stage.cboRelationship->SetListIndex(index);
            QVERIFY(IsNull(stage.dialog.SelectedRelation()));
        }
        stage.cboRelationship->SetListIndex(2);
        QCOMPARE(stage.dialog.SelectedRelation(), QVariant(13));
        QCOMPARE(stage.dialog.SelectedRelation().typeId(), static_cast<int>(QMetaType::Int));
    }

    void theTabKeyGoesFromTheNamesToCancel()
    {
        Stage stage;
        QVERIFY(stage.show());
        QVERIFY(stage.cboName->hasFocus());
        for (const char* name : {"cboRelationship", "cmdOK", "cmdCancel", "cboName"}) {
            stage.press(Qt::Key_Tab);
            QCOMPARE(QApplication::focusWidget()->objectName(), QString::fromLatin1(name));
        }
        stage.dialog.hide();
    }

    // OK and Cancel

    void theRelationshipOnItsEmptyRowKeepsTheDialogOpenAndTellsSo_data()
    {
        QTest::addColumn<int>("index");
        QTest::newRow("none") << -1;
        QTest::newRow("empty first row") << 0;
    }
    void theRelationshipOnItsEmptyRowKeepsTheDialogOpenAndTellsSo()
    {
        QFETCH(int, index);
        Stage stage;
        QVERIFY(stage.show());
        stage.cboRelationship->SetListIndex(index);
        stage.press(Qt::Key_Return);
        const QList<ShownBox> shown = stage.boxes.take();
        QCOMPARE(shown.size(), 1);
        QCOMPARE(shown.first().text, u"Please select the relationship this witness has to the suspect."_s);
        QCOMPARE(shown.first().title, u"Error"_s);
        QCOMPARE(shown.first().icon, BoxIcon::Exclamation);
        QCOMPARE(shown.first().parent, &stage.dialog);
        QVERIFY(stage.dialog.isVisible());
        QVERIFY(stage.cboRelationship->hasFocus());
        QVERIFY(!stage.dialog.Success());
        stage.dialog.hide();
    }

    void withoutANameThatIsToldFirst()
    {
        Stage stage;
        QVERIFY(stage.show());
        stage.cboName->SetListIndex(-1);
        stage.cboRelationship->setFocus();
        stage.press(Qt::Key_Return);
        QCOMPARE(stage.boxes.texts(), QStringList{u"Please select a witness first."_s});
        QVERIFY(stage.cboName->hasFocus());
        QVERIFY(stage.dialog.isVisible());
        stage.dialog.hide();
    }

    void whatEndsTheDialog_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::addColumn<bool>("success");
        QTest::newRow("Enter") << Qt::Key_Return << Qt::KeyboardModifiers() << true;
        QTest::newRow("Alt+O") << Qt::Key_O << Qt::KeyboardModifiers(Qt::AltModifier) << true;
        QTest::newRow("Escape") << Qt::Key_Escape << Qt::KeyboardModifiers() << false;
        QTest::newRow("Alt+C") << Qt::Key_C << Qt::KeyboardModifiers(Qt::AltModifier) << false;
    }
    void whatEndsTheDialog()
    {
        QFETCH(Qt::Key, key);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        QFETCH(bool, success);
        Stage stage;
        QVERIFY(stage.show());
        stage.cboRelationship->SetListIndex(1);
        stage.press(key, modifiers);
        QTRY_VERIFY(!stage.dialog.isVisible()); // an access key shows the button pressed for a moment
        QCOMPARE(stage.dialog.Success(), success);
        QCOMPARE(stage.dialog.SelectedRelation(), QVariant(11)); // still to be read
        QCOMPARE(stage.boxes.shown().size(), 0);
    }

    void theFrameOfTheWindowCancels()
    {
        Stage stage;
        QVERIFY(stage.show());
        stage.cboRelationship->SetListIndex(1);
        stage.dialog.close();
        QVERIFY(!stage.dialog.isVisible());
        QVERIFY(!stage.dialog.Success());
    }

    void afterCancelTheRelationIsNullWhenNoneWasPicked()
    {
        Stage stage;
        QVERIFY(stage.show());
        stage.press(Qt::Key_Escape);
        QVERIFY(!stage.dialog.Success());
        QVERIFY(IsNull(stage.dialog.SelectedRelation()));
    }

    void aRejectionBehindOkCancels()
    {
        Stage stage;
        QVERIFY(stage.show());
        stage.cboRelationship->SetListIndex(1);
        stage.press(Qt::Key_Return);
        QVERIFY(stage.dialog.Success());
        stage.dialog.reject();
        QVERIFY(!stage.dialog.Success());
    }

    void enterOnCancelCancels()
    {
        Stage stage;
        QVERIFY(stage.show());
        stage.cboRelationship->SetListIndex(1);
        stage.part<QPushButton>("cmdCancel")->setFocus();
        stage.press(Qt::Key_Return);
        QVERIFY(!stage.dialog.isVisible());
        QVERIFY(!stage.dialog.Success());
        QCOMPARE(stage.boxes.shown().size(), 0);
    }

    void enterAndEscapeCloseAnOpenListOnly()
    {
        Stage stage;
        QVERIFY(stage.show());
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
            stage.press(Qt::Key_F4);
            QVERIFY(stage.cboName->IsOpen());
            stage.press(key);
            QVERIFY(!stage.cboName->IsOpen());
            QVERIFY(stage.dialog.isVisible());
        }
        QCOMPARE(stage.boxes.shown().size(), 0);
        stage.dialog.hide();
    }

    void shownModallyItReturnsWhenItIsHidden()
    {
        Stage stage;
        QWidget owner;
        owner.setGeometry(120, 140, 500, 400);
        owner.show();
        const NextModal next([&](QWidget& window) {
            QCOMPARE(&window, &stage.dialog);
            QCOMPARE(window.windowModality(), Qt::ApplicationModal);
            QCOMPARE(window.parentWidget(), &owner);
            QVERIFY(owner.geometry().contains(window.geometry())); // over whoever asks
            stage.cboRelationship->SetListIndex(1);
            QTest::mouseClick(stage.part<QPushButton>("cmdOK"), Qt::LeftButton);
        });
        stage.dialog.ShowModal(&owner);
        QVERIFY(next.came());
        QVERIFY(stage.dialog.Success());
        stage.dialog.setParent(nullptr);
    }

    void theBandHasTheBackgroundOfTheTheme()
    {
        Stage stage;
        QPalette palette = stage.dialog.palette();
        palette.setColor(QPalette::Base, QColor(20, 30, 40));
        palette.setColor(QPalette::Mid, QColor(90, 80, 70));
        const QPalette before = QApplication::palette();
        QApplication::setPalette(palette);
        QVERIFY(stage.show());
        const QImage picture = stage.dialog.grab().toImage();
        QApplication::setPalette(before);
        QCOMPARE(picture.pixelColor(275, 55), QColor(20, 30, 40));
        QCOMPARE(picture.pixelColor(275, 61), QColor(90, 80, 70));
        stage.dialog.hide();
    }
};

TAVRIN_TEST_MAIN(tst_frmSuspRel)
#include "tst_frmSuspRel.moc"
