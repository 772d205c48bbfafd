#include "attachments/FolderNotSet.h"
#include "attachments/section/AttachmentsForm.h"

#include <QApplication>
#include <QDialog>
#include <QFileInfo>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

/// Opening an attachment, by the menu of `Attachments`, a double click and the key.
class tst_AttachmentsOpening : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void openingFromTheMenuOpensTheCopyUnderItsOwnName()
    {
        AttachmentsForm form;
        QVERIFY(form.openThree());
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
        QVERIFY(form.openThree());
        if (byKey)
            form.press(Qt::Key_Return);
        else
            form.doubleClick(form.placeOfLine(0));
        QTRY_COMPARE(form.shell.opened().size(), 1);
        QCOMPARE(QFileInfo(form.shell.opened().first()).fileName(), u"report.docx"_s);
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
        QVERIFY(form.openThree());
        form.hold(key);
        QCOMPARE(form.shell.opened().size(), 1);
        QVERIFY(!QApplication::activeModalWidget());
    }

    void withoutAMarkedLineADoubleClickOpensNothing()
    {
        AttachmentsForm form;
        QVERIFY(form.open());
        form.doubleClick(form.emptyPlace());
        form.press(Qt::Key_Return);
        QCOMPARE(form.shell.opened(), QStringList());
        QCOMPARE(form.boxes.shown().size(), 0);
    }

    // Failures

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
        QVERIFY(form.openThree());
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
        QVERIFY(form.openThree());
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
        QVERIFY(form.openThree());
        form.host.state().settings.clear();
        form.doubleClick(form.placeOfLine(0));
        QTRY_COMPARE(form.boxes.shown().size(), 1);
        QCOMPARE(form.boxes.shown().first().text, FolderNotSet);
    }

    // While the copy is made

    void aCancelledDownloadIsSilent()
    {
        AttachmentsForm form;
        QVERIFY(form.openThree());
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
        QVERIFY(form.openThree());
        const Unhandled unhandled;
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

TAVRIN_TEST_MAIN(tst_AttachmentsOpening)
#include "tst_AttachmentsOpening.moc"
