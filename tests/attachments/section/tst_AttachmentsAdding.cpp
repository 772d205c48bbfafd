#include "attachments/FolderNotSet.h"
#include "attachments/section/AttachmentsForm.h"

#include <QDialog>
#include <QDropEvent>
#include <QMimeData>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

/// Drops onto the list; the action that the list took.
Qt::DropAction drop(AttachmentsForm& form, const QMimeData& data)
{
    QWidget* target = form.list->viewport();
    const QPoint place = target->rect().center();
    QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(target, &enter);
    QDropEvent event(place, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(target, &event);
    return event.isAccepted() ? event.dropAction() : Qt::IgnoreAction;
}

Qt::DropAction dropFiles(AttachmentsForm& form, const QStringList& files)
{
    QMimeData data;
    QList<QUrl> urls;
    for (const QString& file : files)
        urls << QUrl::fromLocalFile(file);
    data.setUrls(urls);
    return drop(form, data);
}

} // namespace

/// Adding files to `Attachments`: through the dialog for files, and by drag and drop.
class tst_AttachmentsAdding : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // The file dialog

    void cancellingTheFileDialogSaysNothing()
    {
        AttachmentsForm form;
        QVERIFY(form.openThree());
        form.click(form.link);
        QCOMPARE(form.dialogs.asked(), QStringList{u"Select Files|All files (*)|1"_s});
        QCOMPARE(form.theBox(), QString());
        QCOMPARE(form.rows->Count(), 3);
        QCOMPARE(form.rows->Position(), 1);
    }

    void eachWayToTheDialogAddsTheChosenFiles_data()
    {
        QTest::addColumn<QString>("way");
        QTest::newRow("link") << u"link"_s;
        QTest::newRow("menu") << u"menu"_s;
        QTest::newRow("method") << u"method"_s;
    }
    void eachWayToTheDialogAddsTheChosenFiles()
    {
        QFETCH(QString, way);
        AttachmentsForm form;
        QVERIFY(form.openThree());
        form.dialogs.choose({form.newFile(u"b.txt"_s), form.newFile(u"a c.txt"_s)});
        if (way == u"link")
            form.click(form.link);
        else if (way == u"menu")
            form.choose(0, Qt::Key_A);
        else
            QVERIFY(QMetaObject::invokeMethod(form.section, "AddAttachments"));
        QTRY_COMPARE(form.rows->Count(), 5);
        QCOMPARE(form.fileNames().mid(3), QStringList({u"b.txt"_s, u"a c.txt"_s}));
        QCOMPARE(form.theBox(), QString());
    }

    void filesOfSeveralFoldersAreAllAdded()
    {
        AttachmentsForm form;
        QVERIFY(form.open());
        QVERIFY(form.workplace.mkdir(u"other"_s));
        form.dialogs.choose(
            {form.newFile(u"a.txt"_s), form.newFile(u"other/b.txt"_s), form.newFile(u"c.txt"_s)});
        form.click(form.link);
        QTRY_COMPARE(form.fileNames(), QStringList({u"a.txt"_s, u"b.txt"_s, u"c.txt"_s}));
    }

    void withoutTheRightTheDialogComesFirstAndTheMessageBehindTheChoice()
    {
        AttachmentsForm form;
        form.host.state().permissions.remove(u"Incident/10"_s);
        QVERIFY(form.openThree());
        QVERIFY(!form.item("mnuAdd")->isEnabled());
        QVERIFY(form.link->isEnabled());
        form.click(form.link);
        QCOMPARE(form.dialogs.asked().size(), 1);
        QCOMPARE(form.theBox(), QString()); // the person has cancelled
        form.dialogs.choose({form.newFile(u"a.txt"_s)});
        form.click(form.link);
        QCOMPARE(form.theBox(),
                 u"You don't have permission to add attachments in this module.|Attachments|critical"_s);
        QCOMPARE(form.rows->Count(), 3);
        QCOMPARE(form.host.state().log.filter(u"Upload"_s), QStringList());
    }

    void aMissingSettingStopsBeforeAnyUpload()
    {
        AttachmentsForm form;
        QVERIFY(form.openThree());
        form.host.state().settings.clear();
        form.typeComment(u"a "_s);
        form.dialogs.choose({form.newFile(u"a.txt"_s)});
        form.click(form.link);
        QCOMPARE(form.theBox(), FolderNotSet + u"|Attachments|critical"_s);
        QCOMPARE(form.host.state().log.filter(u"Uploader"_s), QStringList());
        QCOMPARE(form.text(1, "Notes"), u"one"_s); // the details come behind the setting
        QVERIFY(form.section->isEnabled());
        QCOMPARE(form.comment->Text(), u"a one"_s);
    }

    // What is added

    void anAddedFileIsStoredAndItsRowSaysWhoAndWhen()
    {
        AttachmentsForm form;
        QVERIFY(form.open());
        form.dialogs.choose({form.newFile(u"Report 1.pdf"_s)});
        form.click(form.link);
        QTRY_COMPARE(form.rows->Count(), 1);
        const tvTableRowPtr row = form.rows->Item(1);
        QCOMPARE(AttachmentsForm::text(*row, "OriginalFileName"), u"Report 1.pdf"_s);
        const QString stored = AttachmentsForm::text(*row, "FileName");
        QVERIFY2(stored.endsWith(u"\\20160201130507_Report 1.pdf"_s), qPrintable(stored));
        QCOMPARE(AttachmentsForm::readFile(form.storedPath(stored)), "Report 1.pdf");
        QCOMPARE(AttachmentsForm::text(*row, "UserId"), u"moss"_s);
        QCOMPARE(AttachmentsForm::value(*row, "UserDate"),
                 QVariant(QDateTime(QDate(2016, 2, 1), QTime(13, 5, 7))));
        QVERIFY(IsNull(AttachmentsForm::value(*row, "FolderNo")));
        QVERIFY(IsNull(AttachmentsForm::value(*row, "Description")));
        QVERIFY(IsNull(AttachmentsForm::value(*row, "Notes")));
        QVERIFY(row->IsNew());
        QCOMPARE(form.child<Label>("lblCount")->Caption(), u"1"_s);
    }

    void theLastAddedRowBecomesCurrentAndTheTextsOfTheOneBeforeAreSaved()
    {
        AttachmentsForm form;
        QVERIFY(form.openThree());
        form.typeComment(u"a "_s);
        form.dialogs.choose({form.newFile(u"a.txt"_s), form.newFile(u"b.txt"_s)});
        form.click(form.link);
        QTRY_COMPARE(form.rows->Position(), 5);
        QCOMPARE(form.selected(), form.text(5, "SeqNo"));
        QCOMPARE(form.marked(), form.text(5, "SeqNo"));
        QCOMPARE(form.child<Label>("lblFilename")->Caption(), u"b.txt"_s);
        QCOMPARE(form.text(1, "Notes"), u"a one"_s);
        QVERIFY(form.section->isEnabled());
        QVERIFY(form.child<GroupBox>("picUpdating")->isHidden());
        QVERIFY(form.window.findChildren<QDialog*>().isEmpty());
    }

    void theTextsAreSavedBeforeTheUploadBegins()
    {
        AttachmentsForm form;
        QVERIFY(form.openThree());
        form.typeComment(u"a "_s);
        QStringList notes;
        form.host.state().duringTransfer = [&](const QString&, qint64, qint64) {
            notes << form.text(1, "Notes");
        };
        form.dialogs.choose({form.newFile(u"a.txt"_s)});
        form.click(form.link);
        QVERIFY(!notes.isEmpty());
        QCOMPARE(notes.first(), u"a one"_s);
    }

    void theFirstImageBecomesTheCover()
    {
        AttachmentsForm form;
        QVERIFY(form.open());
        form.dialogs.choose({form.newFile(u"a.txt"_s), form.newFile(u"b.png"_s), form.newFile(u"c.png"_s)});
        form.click(form.link);
        QTRY_COMPARE(form.rows->Count(), 3);
        QCOMPARE(form.rows->PrimaryIndex(), 2);
        QCOMPARE(form.cover->Value(), 0); // of the last image
    }

    void theListIsCoveredAndDisabledWhileRowsAreAdded()
    {
        AttachmentsForm form;
        QVERIFY(form.open());
        bool isCovered = false;
        QStringList seen;
        form.list->raise(); // a dialog or a style may have changed what lies above
        const Subscription looking = form.rows->PrimaryStatusChanged.subscribe([&](const QVariant&) {
            const QWidget* above = form.section->childAt(form.list->geometry().center());
            isCovered = above && form.child<GroupBox>("picUpdating")->isAncestorOf(above);
            seen << u"%1 %2 %3"_s.arg(form.child<GroupBox>("picUpdating")->isVisible())
                        .arg(form.section->isEnabled())
                        .arg(form.section->cursor().shape() == Qt::WaitCursor);
        });
        form.dialogs.choose({form.newFile(u"b.png"_s)});
        form.click(form.link);
        QTRY_COMPARE(form.rows->Count(), 1);
        QVERIFY(!seen.isEmpty());
        QCOMPARE(seen.first(), u"1 0 1"_s);
        QVERIFY(isCovered);
        QCOMPARE(form.child<Label>("lblUpdating")->Caption(), u"Refreshing attachments list..."_s);
        QVERIFY(form.child<GroupBox>("picUpdating")->isHidden());
        QVERIFY(form.section->isEnabled());
        QCOMPARE(form.section->cursor().shape(), Qt::ArrowCursor);
    }

    void theFocusIsWhereItWas()
    {
        AttachmentsForm form;
        QVERIFY(form.openThree());
        form.description->setFocus();
        form.dialogs.choose({form.newFile(u"a.txt"_s)});
        form.section->AddAttachments();
        QCOMPARE(form.rows->Count(), 4);
        QCOMPARE(form.window.focusWidget(), form.description);
    }

    void withAllUploadsSkippedTheRowsStayAndTheLastBecomesCurrent()
    {
        AttachmentsForm form;
        QVERIFY(form.openThree());
        const QString file = form.newFile(u"a.txt"_s);
        form.host.state().transferFailures.insert(file, u"no room"_s);
        form.dialogs.choose({file});
        const NextModal next([](QWidget&) {}); // closes the dialog, which skips
        form.click(form.link);
        QTRY_VERIFY(next.came() && !QApplication::activeModalWidget());
        QCOMPARE(form.fileNames(), QStringList({u"report.docx"_s, u"door.png"_s, u"lock.png"_s}));
        QCOMPARE(form.rows->Position(), 3);
        QCOMPARE(form.marked(), u"103"_s);
        QCOMPARE(form.theBox(), QString());
    }

    // Drag and drop

    void droppedFilesAreCopiedAndAdded()
    {
        AttachmentsForm form;
        QVERIFY(form.openThree());
        const QStringList files{form.newFile(u"z.txt"_s), form.newFile(u"a.png"_s)};
        QCOMPARE(dropFiles(form, files), Qt::CopyAction);
        QCOMPARE(form.fileNames().mid(3), QStringList({u"z.txt"_s, u"a.png"_s}));
        QCOMPARE(form.rows->Position(), 5);
        QCOMPARE(form.theBox(), QString());
        QVERIFY(QFile::exists(files.first()));
    }

    void aDropWithoutFilesDoesNothing_data()
    {
        QTest::addColumn<bool>("isText");
        QTest::newRow("text") << true;
        QTest::newRow("link of the network") << false;
    }
    void aDropWithoutFilesDoesNothing()
    {
        QFETCH(bool, isText);
        AttachmentsForm form;
        QVERIFY(form.openThree());
        QMimeData data;
        if (isText)
            data.setText(u"/etc/passwd"_s);
        else
            data.setUrls({QUrl(u"https://example.org/a.pdf"_s)});
        QCOMPARE(drop(form, data), Qt::IgnoreAction);
        QCOMPARE(form.rows->Count(), 3);
        QCOMPARE(form.rows->Position(), 1);
        QCOMPARE(form.theBox(), QString());
    }

    void aFailingDropIsToldInItsOwnBox_data()
    {
        QTest::addColumn<bool>("mayAdd");
        QTest::addColumn<QString>("reason");
        QTest::newRow("no right") << false
                                  << u"You don't have permission to add attachments in this module."_s;
        QTest::newRow("no setting") << true << FolderNotSet;
    }
    void aFailingDropIsToldInItsOwnBox()
    {
        QFETCH(bool, mayAdd);
        QFETCH(QString, reason);
        AttachmentsForm form;
        if (!mayAdd)
            form.host.state().permissions.remove(u"Incident/10"_s);
        QVERIFY(form.openThree());
        form.host.state().settings.clear();
        QCOMPARE(dropFiles(form, {form.newFile(u"a.txt"_s)}), Qt::CopyAction);
        QCOMPARE(form.theBox(), u"Error will dropping file(s): "_s + reason + u"|Error|critical"_s);
        QCOMPARE(form.rows->Count(), 3);
    }
};

TAVRIN_TEST_MAIN(tst_AttachmentsAdding)
#include "tst_AttachmentsAdding.moc"
