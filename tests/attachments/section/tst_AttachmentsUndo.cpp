#include "attachments/section/AttachmentsUndoForm.h"

#include <QAccessible>
#include <QApplication>
#include <QShortcut>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

/// Putting removed attachments back: the line that offers it, and the ways to do it.
class tst_AttachmentsUndo : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data() { addHosts(); }

    // The line

    void whatThePersonRemovesIsSaidInTheStripBesideTheLink_data()
    {
        QTest::addColumn<bool>("byKey");
        QTest::newRow("Delete") << true;
        QTest::newRow("menu") << false;
    }
    void whatThePersonRemovesIsSaidInTheStripBesideTheLink()
    {
        QFETCH(bool, byKey);
        AttachmentsForm form;
        QVERIFY(open(form));
        QCOMPARE(said(form), QString());
        QMap<QString, QRect> before;
        for (const QWidget* part : form.section->findChildren<QWidget*>()) {
            const bool isOfLine = part == lineOf(form) || lineOf(form)->isAncestorOf(part);
            if (!isOfLine && !part->isWindow() && !part->objectName().startsWith(u"qt_"))
                before.insert(part->objectName(), part->geometry());
        }
        const QRect name = form.child<Label>("lblFilename")->geometry(); // goes with the name that shows
        if (byKey)
            form.press(Qt::Key_Delete);
        else
            form.choose(0, Qt::Key_R);
        QCOMPARE(said(form), u"report.docx removed. Undo"_s);
        QCOMPARE(form.child<Label>("lblFilename")->pos(), name.topLeft());
        before.remove(u"lblFilename"_s);
        before.remove({}); // parts of the widgets
        for (auto part = before.cbegin(); part != before.cend(); ++part) {
            QVERIFY2(form.section->findChild<QWidget*>(part.key())->geometry() == part.value(),
                     qPrintable(part.key()));
        }
        const QRect strip = form.child<GroupBox>("picToolbar")->rect();
        const QRect line = lineOf(form)->geometry();
        QVERIFY(strip.contains(line));
        const auto* words = form.child<Label>("Label4"); // which the line lies over
        QCOMPARE(line.left(), words->x());
        QCOMPARE(lineOf(form)->y() + form.child<Label>("lblRemoved")->y(), words->y());
        QCOMPARE(lineOf(form)->y() + form.child<TextLink>("lnkUndo")->y(), form.link->y());
        QCOMPARE(line.right(), strip.right());
        QVERIFY(!line.intersects(form.link->geometry()));
        const QRect undoLink = form.child<TextLink>("lnkUndo")->geometry();
        QVERIFY(lineOf(form)->rect().contains(undoLink));
        QVERIFY(undoLink.left() > form.child<Label>("lblRemoved")->geometry().right());
        QCOMPARE(form.boxes.shown().size(), 0);
    }

    void aLongNameLeavesRoomForTheLinkAtAnyWidth_data()
    {
        QTest::addColumn<int>("width");
        QTest::newRow("as it opens") << 600;
        QTest::newRow("as narrow as it may be") << 400;
        QTest::newRow("wide") << 900;
    }
    void aLongNameLeavesRoomForTheLinkAtAnyWidth()
    {
        QFETCH(int, width);
        AttachmentsForm form;
        prepare(form);
        form.addRow(QString(150, u'W') + u".docx"_s);
        QVERIFY(form.open());
        remove(form, 3);
        form.section->resize(width, 420);
        const auto* line = lineOf(form);
        const auto* link = form.child<TextLink>("lnkUndo");
        const auto* label = form.child<Label>("lblRemoved");
        QCOMPARE(line->geometry().right(), form.child<GroupBox>("picToolbar")->rect().right());
        QVERIFY(line->rect().contains(link->geometry()));
        QVERIFY(!label->geometry().intersects(link->geometry()));
        QCOMPARE(label->toolTip(), QString(150, u'W') + u".docx removed."_s);
    }

    void whatTheHostRemovesIsNotSaid()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        form.rows->RemoveCurrent(false);
        QCOMPARE(said(form), QString());
    }

    void aRemovalThatFailsIsNotSaid()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        form.rows->removalFailure = Error(u"the row is locked"_s);
        form.press(Qt::Key_Delete);
        QCOMPARE(form.boxes.take().size(), 1);
        QCOMPARE(said(form), QString());
    }

    void aRemovalBehindWhichAFollowerFailsCanBeUndone()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        Subscription failing = form.rows->ItemRemovedEx.subscribe(
            [](qint32, const tvTableRowPtr&) { throw Error(u"the cover is away"_s); });
        form.press(Qt::Key_Delete);
        QCOMPARE(form.boxes.take().size(), 1);
        QCOMPARE(said(form), u"report.docx removed. Undo"_s);
        undo(form);
        QCOMPARE(form.fileNames(), QStringList({u"door.png"_s, u"lock.png"_s, u"report.docx"_s}));
        QCOMPARE(said(form), QString());
    }

    void aRemovalBehindWhichTheSameRecordIsReadAndAFollowerFailsCanBeUndone()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        Subscription failing = form.rows->ItemRemovedEx.subscribe([&form](qint32, const tvTableRowPtr&) {
            form.read(); // and the next row shows
            throw Error(u"the cover is away"_s);
        });
        form.press(Qt::Key_Delete);
        QCOMPARE(form.boxes.take().size(), 1);
        QCOMPARE(said(form), u"report.docx removed. Undo"_s);
        undo(form);
        QCOMPARE(form.fileNames(), QStringList({u"door.png"_s, u"lock.png"_s, u"report.docx"_s}));
    }

    void aScreenReaderTellsWhatTheLinkDoes()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        form.press(Qt::Key_Delete);
        auto* link = QAccessible::queryAccessibleInterface(form.child<TextLink>("lnkUndo"));
        QCOMPARE(link->text(QAccessible::Name), u"Undo"_s);
        QCOMPARE(link->text(QAccessible::Description), u"Puts report.docx back"_s);
    }

    // Undo

    void everyWayPutsTheRowBackWithItsKeyAndFields_data()
    {
        QTest::addColumn<QString>("way");
        for (const char* way : {"click", "Space", "Enter", "Ctrl+Z"})
            QTest::newRow(way) << QString::fromLatin1(way);
    }
    void everyWayPutsTheRowBackWithItsKeyAndFields()
    {
        QFETCH(QString, way);
        AttachmentsForm form;
        prepare(form);
        AttachmentsForm::set(*form.rows->Item(2), "UserId", u"moss"_s);
        AttachmentsForm::set(*form.rows->Item(2), "FolderNo", 3);
        QVERIFY(form.open());
        const QString fields = fieldsOf(*form.rows->Item(2));
        remove(form, 1);
        QCOMPARE(form.rows->Count(), 2);
        if (way == u"click"_s) {
            form.click(form.child<TextLink>("lnkUndo"));
        } else if (way == u"Ctrl+Z"_s) {
            form.press(Qt::Key_Z, Qt::ControlModifier);
        } else {
            form.press(Qt::Key_Tab);
            QCOMPARE(QApplication::focusWidget(), form.link);
            form.press(Qt::Key_Tab);
            QCOMPARE(QApplication::focusWidget(), form.child<TextLink>("lnkUndo"));
            form.press(way == u"Space"_s ? Qt::Key_Space : Qt::Key_Return);
        }
        // Appending is all that a collection offers.
        QCOMPARE(form.fileNames(), QStringList({u"report.docx"_s, u"lock.png"_s, u"door.png"_s}));
        QCOMPARE(fieldsOf(*form.rows->Item(3)), fields);
        QVERIFY(!form.rows->Item(3)->IsNew());
        QCOMPARE(form.list->Count(), 3);
        QCOMPARE(form.list->Key(2), u"102"_s);
        QCOMPARE(form.selected(), u"102"_s);
        QCOMPARE(form.marked(), u"102"_s);
        QCOMPARE(form.rows->Position(), 3);
        QCOMPARE(form.description->Text(), u"second"_s);
        QCOMPARE(form.child<Label>("lblCount")->Caption(), u"3"_s);
        QCOMPARE(said(form), QString());
        QVERIFY(form.list->hasFocus());
        QCOMPARE(form.boxes.shown().size(), 0);
    }

    void severalRemovalsComeBackTheLastFirst()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        QStringList words;
        for (int i = 0; i < 3; ++i) {
            form.press(Qt::Key_Delete);
            words << said(form);
        }
        QCOMPARE(form.list->Count(), 0);
        QVERIFY(!form.description->isEnabled());
        for (int i = 0; i < 3; ++i) {
            undo(form);
            words << said(form);
        }
        QCOMPARE(words, QStringList({u"report.docx removed. Undo"_s, u"door.png removed. Undo"_s,
                                     u"lock.png removed. Undo"_s, u"door.png removed. Undo"_s,
                                     u"report.docx removed. Undo"_s, QString()}));
        QCOMPARE(form.fileNames(), QStringList({u"lock.png"_s, u"door.png"_s, u"report.docx"_s}));
        QCOMPARE(form.text(1, "SeqNo") + form.text(2, "SeqNo") + form.text(3, "SeqNo"), u"103102101"_s);
        QCOMPARE(form.list->Count(), 3);
        QVERIFY(form.description->isEnabled());
        undo(form); // nothing is left
        QCOMPARE(form.rows->Count(), 3);
    }

    void theLinkKeepsTheFocusWhileThereIsMoreToPutBack()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        form.press(Qt::Key_Delete);
        form.press(Qt::Key_Delete);
        goToUndoLink(form);
        form.press(Qt::Key_Space);
        QVERIFY(form.child<TextLink>("lnkUndo")->hasFocus());
        form.press(Qt::Key_Space);
        QVERIFY(form.list->hasFocus());
        QCOMPARE(form.rows->Count(), 3);
    }

    void keysThatAreHeldDownPutOneRowBack()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        form.press(Qt::Key_Delete);
        form.press(Qt::Key_Delete);
        form.hold(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(form.rows->Count(), 2);
        QCOMPARE(said(form), u"report.docx removed. Undo"_s);
    }

    void keysThatAreStillDownWhenTheLineHidesDoNotReachTheForm()
    {
        AttachmentsForm form;
        form.addRow(u"a.txt"_s);
        QVERIFY(form.open());
        int taken = 0;
        const QShortcut shortcut(QKeySequence::Undo, &form.window, [&taken] { ++taken; });
        form.press(Qt::Key_Delete);
        QTest::keyPress(form.window.windowHandle(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(form.rows->Count(), 1);
        QCOMPARE(said(form), QString());
        for (int repeat = 0; repeat < 3; ++repeat)
            repeatUndoKeys(form);
        QCOMPARE(taken, 0);
        QTest::keyRelease(form.window.windowHandle(), Qt::Key_Z, Qt::ControlModifier);
        QTest::keyPress(form.window.windowHandle(), Qt::Key_Z, Qt::ControlModifier); // the form's from now on
        repeatUndoKeys(form);
        QTest::keyRelease(form.window.windowHandle(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(taken, 2);
    }

    void theKeysAreTheFormsWhileThereIsNothingToPutBack()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        int taken = 0;
        const QShortcut shortcut(QKeySequence::Undo, &form.window, [&taken] { ++taken; });
        undo(form);
        QCOMPARE(taken, 1);
        form.press(Qt::Key_Delete);
        undo(form);
        QCOMPARE(taken, 1);
        QCOMPARE(form.rows->Count(), 3);
        undo(form);
        QCOMPARE(taken, 2);
    }

    void theKeysInATextUndoWhatIsTypedThere()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        form.press(Qt::Key_Delete);
        form.typeComment(u"a"_s);
        form.press(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(form.comment->Text(), u"two"_s);
        QCOMPARE(form.rows->Count(), 2);
        QCOMPARE(said(form), u"report.docx removed. Undo"_s);
    }
};

TAVRIN_TEST_MAIN(tst_AttachmentsUndo)
#include "tst_AttachmentsUndo.moc"
