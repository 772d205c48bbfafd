#include "attachments/FolderNotSet.h"
#include "attachments/dialogs/frmDownloadFolderPrompt.h"
#include "attachments/section/AttachmentsForm.h"

#include <QDropEvent>
#include <QMimeData>
#include <QPushButton>

using namespace Qt::StringLiterals;
using namespace tavrin;
using tavrin::test::AttachmentsForm;
using tavrin::test::FolderNotSet;
using tavrin::test::NextModal;
using tavrin::test::ShownBox;
using tavrin::test::Unhandled;

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

/// A box's text, title and icon; "" for none.
QString theBox(AttachmentsForm& form)
{
    const QList<ShownBox> shown = form.boxes.take();
    if (shown.isEmpty())
        return {};
    const ShownBox box = shown.first();
    const QString icon = box.icon == BoxIcon::Critical ? u"critical"_s : u"other"_s;
    return shown.size() > 1 ? u"several boxes"_s : box.text + u'|' + box.title + u'|' + icon;
}

/// Takes the name that the prompt for the folder suggests, or the answer of a test. The dialogs that follow
/// are left alone.
class Prompt
{
public:
    explicit Prompt(std::function<void(QWidget&)> answer =
                        [](QWidget& prompt) { QTest::keyClick(prompt.windowHandle(), Qt::Key_Return); })
        : m_answer(std::move(answer))
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] {
            QWidget* modal = QApplication::activeModalWidget();
            if (!qobject_cast<frmDownloadFolderPrompt*>(modal) || !modal->isVisible())
                return;
            if (std::exchange(m_came, true))
                modal->close(); // the answer has left it open
            else
                m_answer(*modal);
        });
        m_timer.start(1);
    }
    bool came() const { return m_came; }

private:
    std::function<void(QWidget&)> m_answer;
    QTimer m_timer;
    bool m_came = false;
};

/// The main row of an incident.
tvTableRowPtr incidentRow(const QVariant& key)
{
    return std::make_shared<tavrin::test::FakeRow>(
        QList<tvFieldPtr>{std::make_shared<tavrin::test::FakeField>(u"Summary"_s, u"the same"_s),
                          std::make_shared<tavrin::test::FakeField>(u"IncidentNo"_s, key, true)});
}

void chooseDownloadAll(AttachmentsForm& form)
{
    form.choose(0, Qt::Key_D);
}

} // namespace

/// What a person does with the files of `Attachments`: adds them, and downloads them all.
class tst_AttachmentsActions : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // The file dialog

    void cancellingTheFileDialogSaysNothing()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        form.click(form.link);
        QCOMPARE(form.dialogs.asked(), QStringList{u"Select Files|All files (*)|1"_s});
        QCOMPARE(theBox(form), QString());
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
        form.addThree();
        form.read();
        QVERIFY(form.show());
        form.dialogs.choose({form.newFile(u"b.txt"_s), form.newFile(u"a c.txt"_s)});
        if (way == u"link")
            form.click(form.link);
        else if (way == u"menu")
            form.choose(0, Qt::Key_A);
        else
            QVERIFY(QMetaObject::invokeMethod(form.section, "AddAttachments"));
        QTRY_COMPARE(form.rows->Count(), 5);
        QCOMPARE(form.fileNames().mid(3), QStringList({u"b.txt"_s, u"a c.txt"_s}));
        QCOMPARE(theBox(form), QString());
    }

    void filesOfSeveralFoldersAreAllAdded()
    {
        AttachmentsForm form;
        form.read();
        QVERIFY(form.show());
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
        form.addThree();
        form.read();
        QVERIFY(form.show());
        QVERIFY(!form.item("mnuAdd")->isEnabled());
        QVERIFY(form.link->isEnabled());
        form.click(form.link);
        QCOMPARE(form.dialogs.asked().size(), 1);
        QCOMPARE(theBox(form), QString()); // the person has cancelled
        form.dialogs.choose({form.newFile(u"a.txt"_s)});
        form.click(form.link);
        QCOMPARE(theBox(form),
                 u"You don't have permission to add attachments in this module.|Attachments|critical"_s);
        QCOMPARE(form.rows->Count(), 3);
        QCOMPARE(form.host.state().log.filter(u"Upload"_s), QStringList());
    }

    void aMissingSettingStopsBeforeAnyUpload()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        form.host.state().settings.clear();
        form.comment->setFocus();
        form.type(u"a "_s);
        form.dialogs.choose({form.newFile(u"a.txt"_s)});
        form.click(form.link);
        QCOMPARE(theBox(form), FolderNotSet + u"|Attachments|critical"_s);
        QCOMPARE(form.host.state().log.filter(u"Uploader"_s), QStringList());
        QCOMPARE(form.text(1, "Notes"), u"one"_s); // the details come behind the setting
        QVERIFY(form.section->isEnabled());
        QCOMPARE(form.comment->Text(), u"a one"_s);
    }

    // What is added

    void anAddedFileIsStoredAndItsRowSaysWhoAndWhen()
    {
        AttachmentsForm form;
        form.read();
        QVERIFY(form.show());
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
        form.addThree();
        form.read();
        QVERIFY(form.show());
        form.comment->setFocus();
        form.type(u"a "_s);
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
        form.comment->setFocus();
        form.type(u"a "_s);
        QStringList notes;
        form.host.state().duringTransfer = [&](const QString&, qint64, qint64) {
            notes << form.text(1, "Notes");
        };
        form.dialogs.choose({form.newFile(u"a.txt"_s)});
        form.click(form.link);
        QVERIFY(!notes.isEmpty());
        QCOMPARE(notes.first(), u"a one"_s);
    }

    void theHostIsToldOfEachFileBeforeItsRowIsAdded()
    {
        AttachmentsForm form;
        form.read();
        QVERIFY(form.show());
        form.dialogs.choose({form.newFile(u"a.txt"_s), form.newFile(u"b.txt"_s)});
        form.click(form.link);
        QTRY_COMPARE(form.rows->Count(), 2);
        QStringList calls;
        for (const QString& call : form.host.state().log) {
            if (call == u"NotifyFileUploaded"_s || call == u"CurrentUserId"_s)
                calls << call;
        }
        QCOMPARE(calls, QStringList({u"NotifyFileUploaded"_s, u"CurrentUserId"_s, u"NotifyFileUploaded"_s,
                                     u"CurrentUserId"_s}));
    }

    void theFirstImageBecomesTheCover()
    {
        AttachmentsForm form;
        form.read();
        QVERIFY(form.show());
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
        form.addThree();
        form.read();
        QVERIFY(form.show());
        form.description->setFocus();
        form.dialogs.choose({form.newFile(u"a.txt"_s)});
        form.section->AddAttachments();
        QCOMPARE(form.rows->Count(), 4);
        QCOMPARE(form.window.focusWidget(), form.description);
    }

    void withAllUploadsSkippedTheRowsStayAndTheLastBecomesCurrent()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        const QString file = form.newFile(u"a.txt"_s);
        form.host.state().transferFailures.insert(file, u"no room"_s);
        form.dialogs.choose({file});
        const NextModal next([](QWidget&) {}); // closes the dialog, which skips
        form.click(form.link);
        QTRY_VERIFY(next.came() && !QApplication::activeModalWidget());
        QCOMPARE(form.fileNames(), QStringList({u"report.docx"_s, u"door.png"_s, u"lock.png"_s}));
        QCOMPARE(form.rows->Position(), 3);
        QCOMPARE(form.marked(), u"103"_s);
        QCOMPARE(theBox(form), QString());
    }

    void aFailurePartWayKeepsTheRowsThatAreThereAndLeavesTheSectionUsable()
    {
        AttachmentsForm form;
        form.read();
        QVERIFY(form.show());
        Subscription failing = form.rows->PrimaryStatusChanged.subscribe([](const QVariant& key) {
            if (!IsNull(key))
                throw Error(u"no cover today"_s, 17, u"CoverImage"_s);
        });
        form.dialogs.choose({form.newFile(u"a.txt"_s), form.newFile(u"b.png"_s), form.newFile(u"c.txt"_s)});
        form.click(form.link);
        QCOMPARE(theBox(form), u"no cover today|Attachments|critical"_s);
        QCOMPARE(form.fileNames(), QStringList({u"a.txt"_s, u"b.png"_s}));
        QVERIFY(form.section->isEnabled());
        QVERIFY(form.child<GroupBox>("picUpdating")->isHidden());
        QCOMPARE(form.list->Count(), 0); // until the next refresh
        failing.cancel();
        form.dialogs.choose({form.newFile(u"d.txt"_s)});
        form.click(form.link);
        QCOMPARE(form.list->Count(), 3);
    }

    // Another record, or the same one anew, while files are uploaded

    void aRecordThatIsReadAnewWhileFilesAreUploadedGetsTheirRows_data()
    {
        QTest::addColumn<bool>("isNewObject");
        QTest::newRow("the same object") << false;
        QTest::newRow("another object of its key") << true;
    }
    void aRecordThatIsReadAnewWhileFilesAreUploadedGetsTheirRows()
    {
        QFETCH(bool, isNewObject);
        AttachmentsForm form;
        form.addThree();
        form.record->setItem(u"Incident"_s, incidentRow(7));
        form.read();
        QVERIFY(form.show());
        const auto former = std::exchange(form.rows, std::make_shared<tavrin::test::NumberedRows>());
        form.addThree();
        form.host.state().duringTransfer = [&](const QString&, qint64, qint64) {
            if (isNewObject) {
                form.record = std::make_shared<tavrin::test::FakeRecord>();
                form.record->setItem(u"Incident"_s, incidentRow(7));
            }
            form.record->setItem(u"Attachments"_s, form.rows);
            form.read();
            form.host.state().duringTransfer = {};
        };
        form.dialogs.choose({form.newFile(u"a.txt"_s), form.newFile(u"b.txt"_s)});
        form.click(form.link);
        QCOMPARE(former->Count(), 3);
        QCOMPARE(form.fileNames().mid(3), QStringList({u"a.txt"_s, u"b.txt"_s}));
        QCOMPARE(form.list->Count(), 5);
        QCOMPARE(form.marked(), u"105"_s);
        QCOMPARE(theBox(form), QString());
        QVERIFY(form.section->isEnabled());
    }

    void aRecordThatIsReadAnewWhileTheRowsAreAddedGetsThemAll()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        const auto former = form.rows;
        const Subscription reading = former->PrimaryStatusChanged.subscribe([&](const QVariant&) {
            form.rows = std::make_shared<tavrin::test::NumberedRows>();
            form.record->setItem(u"Attachments"_s, form.rows);
            form.read();
        });
        form.dialogs.choose({form.newFile(u"a.png"_s), form.newFile(u"b.txt"_s)});
        form.click(form.link); // the first image becomes the cover
        QCOMPARE(former->Count(), 4);
        QCOMPARE(form.fileNames(), QStringList({u"b.txt"_s, u"a.png"_s}));
        QCOMPARE(form.list->Count(), 2);
        QCOMPARE(theBox(form), QString());
    }

    void filesOfARecordDoNotReachAnotherThatIsBoundWhileTheyAreUploadedAndThePersonIsTold_data()
    {
        QTest::addColumn<QVariant>("key");
        QTest::addColumn<QVariant>("otherKey");
        QTest::addColumn<QString>("otherClass");
        QTest::newRow("of another key") << QVariant(7) << QVariant(8) << u"tvIncidentBO"_s;
        QTest::newRow("of another class") << QVariant(7) << QVariant(7) << u"tvWarrantBO"_s;
        QTest::newRow("both new") << Null() << Null() << u"tvIncidentBO"_s;
        QTest::newRow("without main rows") << QVariant() << QVariant() << u"tvIncidentBO"_s;
    }
    void filesOfARecordDoNotReachAnotherThatIsBoundWhileTheyAreUploadedAndThePersonIsTold()
    {
        QFETCH(QVariant, key);
        QFETCH(QVariant, otherKey);
        QFETCH(QString, otherClass);
        AttachmentsForm form;
        form.addThree();
        if (key.isValid())
            form.record->setItem(u"Incident"_s, incidentRow(key));
        form.read();
        QVERIFY(form.show());
        const auto others = std::make_shared<tavrin::test::NumberedRows>();
        const auto other = std::make_shared<tavrin::test::FakeRecord>();
        other->className = otherClass;
        other->setItem(u"Attachments"_s, others);
        if (otherKey.isValid())
            other->setItem(otherClass == u"tvIncidentBO"_s ? u"Incident"_s : u"Warrant"_s,
                           incidentRow(otherKey));
        form.host.state().duringTransfer = [&](const QString&, qint64, qint64) {
            static_cast<BoundSection*>(form.section)->ReadData(other);
            form.window.setWindowTitle(u"Incident 8"_s);
        };
        form.dialogs.choose({form.newFile(u"a.txt"_s), form.newFile(u"b.png"_s)});
        form.click(form.link);
        const QList<ShownBox> shown = form.boxes.take();
        QCOMPARE(shown.size(), 1);
        QCOMPARE(
            shown.first().text,
            u"Another record was opened here while files were uploaded for \"Incident 7\". They are in the "
            u"attachments folder. Open \"Incident 7\" again and add those that it does not list:"
            u"\r\n\r\na.txt\r\nb.png"_s);
        QCOMPARE(shown.first().title, u"Attachments"_s);
        QCOMPARE(shown.first().icon, BoxIcon::Exclamation);
        QCOMPARE(form.fileNames().mid(3), QStringList({u"a.txt"_s, u"b.png"_s}));
        QCOMPARE(others->Count(), 0);
        QCOMPARE(form.list->Count(), 0);
        QVERIFY(form.section->isEnabled());
    }

    void anotherRecordWhileAllFilesFailIsNothingToTell()
    {
        AttachmentsForm form;
        form.read();
        QVERIFY(form.show());
        const QString path = form.newFile(u"a.txt"_s);
        const auto other = std::make_shared<tavrin::test::FakeRecord>();
        other->setItem(u"Attachments"_s, std::make_shared<tavrin::test::NumberedRows>());
        form.host.state().duringTransfer = [&](const QString&, qint64, qint64) {
            static_cast<BoundSection*>(form.section)->ReadData(other);
            throw Error(u"the store is away"_s);
        };
        const NextModal skip([](QWidget&) {});
        form.dialogs.choose({path});
        form.click(form.link);
        QCOMPARE(theBox(form), QString());
        QVERIFY(form.section->isEnabled());
    }

    // Drag and drop

    void droppedFilesAreCopiedAndAdded()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        const QStringList files{form.newFile(u"z.txt"_s), form.newFile(u"a.png"_s)};
        QCOMPARE(dropFiles(form, files), Qt::CopyAction);
        QCOMPARE(form.fileNames().mid(3), QStringList({u"z.txt"_s, u"a.png"_s}));
        QCOMPARE(form.rows->Position(), 5);
        QCOMPARE(theBox(form), QString());
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
        form.addThree();
        form.read();
        QVERIFY(form.show());
        QMimeData data;
        if (isText)
            data.setText(u"/etc/passwd"_s);
        else
            data.setUrls({QUrl(u"https://example.org/a.pdf"_s)});
        QCOMPARE(drop(form, data), Qt::IgnoreAction);
        QCOMPARE(form.rows->Count(), 3);
        QCOMPARE(form.rows->Position(), 1);
        QCOMPARE(theBox(form), QString());
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
        form.addThree();
        form.read();
        QVERIFY(form.show());
        form.host.state().settings.clear();
        QCOMPARE(dropFiles(form, {form.newFile(u"a.txt"_s)}), Qt::CopyAction);
        QCOMPARE(theBox(form), u"Error will dropping file(s): "_s + reason + u"|Error|critical"_s);
        QCOMPARE(form.rows->Count(), 3);
    }

    // Downloading all

    void allFilesComeIntoAFolderNamedAfterTheForm()
    {
        AttachmentsForm form;
        form.window.setWindowTitle(u"Incident 7[*]"_s);
        form.addThree();
        form.read();
        QVERIFY(form.show());
        form.boxes.answerWith({BoxAnswer::No});
        const Prompt prompt;
        chooseDownloadAll(form);
        QTRY_COMPARE(form.boxes.shown().size(), 1);
        const QString path = form.downloads.filePath(u"Incident 7"_s);
        const ShownBox box = form.boxes.shown().first();
        QCOMPARE(box.text, u"All attachments for this record were downloaded to "_s + path +
                               u".\r\n\r\nDo you want to open this folder now?"_s);
        QCOMPARE(box.title, u"Download Complete"_s);
        QCOMPARE(box.icon, BoxIcon::Question);
        QCOMPARE(box.buttons, BoxButtons::YesNo);
        QCOMPARE(box.parent, form.section.data());
        QCOMPARE(QDir(path).entryList(QDir::Files),
                 QStringList({u"door.png"_s, u"lock.png"_s, u"report.docx"_s}));
        QCOMPARE(form.shell.opened(), QStringList());
        QVERIFY(form.window.findChildren<QDialog*>().isEmpty());
    }

    void thePromptStandsAboveTheWindowOfTheSection()
    {
        AttachmentsForm form;
        QVERIFY(form.openThree());
        QWidget other;
        other.show();
        QWidget* owner = nullptr;
        const Prompt prompt([&](QWidget& dialog) {
            owner = dialog.parentWidget();
            dialog.close();
        });
        chooseDownloadAll(form);
        QTRY_VERIFY(prompt.came() && !QApplication::activeModalWidget());
        QCOMPARE(owner, &form.window);
    }

    void yesOpensTheFolder()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        form.boxes.answerWith({BoxAnswer::Yes});
        const Prompt prompt;
        chooseDownloadAll(form);
        QTRY_COMPARE(form.shell.opened(), QStringList{form.downloads.filePath(u"Incident 7"_s)});
    }

    void aFolderThatDoesNotOpenIsToldInTheBoxOfTheDownload()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        form.boxes.answerWith({BoxAnswer::Yes});
        form.shell.answerWith(5);
        const Prompt prompt;
        chooseDownloadAll(form);
        QTRY_COMPARE(form.boxes.shown().size(), 2);
        QCOMPARE(form.boxes.shown().last().text,
                 u"Attachments were not downloaded: Could not open file '"_s +
                     form.downloads.filePath(u"Incident 7"_s) +
                     u"'. Reason: The operating system denied access to the specified file."_s);
        QCOMPARE(form.boxes.shown().last().icon, BoxIcon::Critical);
    }

    void aFolderThatIsThereGetsANumber()
    {
        AttachmentsForm form;
        QVERIFY(form.downloads.mkdir(u"Incident 7"_s));
        form.addThree();
        form.read();
        QVERIFY(form.show());
        form.boxes.answerWith({BoxAnswer::No});
        const Prompt prompt;
        chooseDownloadAll(form);
        QTRY_COMPARE(form.boxes.shown().size(), 1);
        QVERIFY(form.boxes.shown().first().text.contains(form.downloads.filePath(u"Incident 7 (1)"_s)));
        QCOMPARE(QDir(form.downloads.filePath(u"Incident 7 (1)"_s)).entryList(QDir::Files).size(), 3);
        QVERIFY(QDir(form.downloads.filePath(u"Incident 7"_s)).isEmpty());
    }

    void aFolderNameThatTheDiskWouldNotTakeBecomesALikeOneInTheDownloadsFolder_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QStringList>("before");
        QTest::addColumn<QString>("onDisk");
        const QStringList none;
        QTest::newRow("the folder itself") << u"."_s << none << u"_"_s;
        QTest::newRow("the folder above") << u".."_s << none << u"__"_s;
        QTest::newRow("a control character") << u"a\x1B"
                                                u"b"_s
                                             << none << u"a_b"_s;
        QTest::newRow("blanks around it") << u" a "_s << none << u" a "_s;
        const QString longest(237, u'x');
        QTest::newRow("237 bytes") << longest << none << longest;
        QTest::newRow("the longest, once more") << longest << QStringList{longest} << longest + u" (1)"_s;
    }
    void aFolderNameThatTheDiskWouldNotTakeBecomesALikeOneInTheDownloadsFolder()
    {
        QFETCH(QString, name);
        QFETCH(QStringList, before);
        QFETCH(QString, onDisk);
        AttachmentsForm form;
        form.window.setWindowTitle(name);
        form.addThree();
        form.read();
        QVERIFY(form.show());
        for (const QString& folder : before)
            QVERIFY(form.downloads.mkdir(folder));
        form.boxes.answerWith({BoxAnswer::No});
        const Prompt prompt;
        chooseDownloadAll(form);
        QTRY_COMPARE(form.boxes.shown().size(), 1);
        QCOMPARE(form.boxes.shown().first().title, u"Download Complete"_s);
        const auto all = QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot;
        QStringList expected = before + QStringList{onDisk};
        expected.sort();
        QCOMPARE(form.downloads.entryList(all, QDir::Name), expected);
        QCOMPARE(QDir(form.downloads.filePath(onDisk)).entryList(QDir::Files).size(), 3);
    }

    void aFolderNameThatIsTooLongIsToldInThePromptAndNotCut()
    {
        AttachmentsForm form;
        form.window.setWindowTitle(QString(255, u'x'));
        form.addThree();
        form.read();
        QVERIFY(form.show());
        QString told;
        const Prompt prompt([&](QWidget& dialog) {
            QTest::keyClick(dialog.windowHandle(), Qt::Key_Return);
            told = dialog.findChild<QLabel*>(u"lblError"_s)->text();
            QTest::keyClick(dialog.windowHandle(), Qt::Key_Escape);
        });
        chooseDownloadAll(form);
        QTRY_VERIFY(prompt.came() && !QApplication::activeModalWidget());
        QCOMPARE(told, u"Folder name is too long. Please shorten it by 18 characters."_s);
        QCOMPARE(form.boxes.shown().size(), 0);
        QVERIFY(form.downloads.isEmpty());
    }

    void cancellingThePromptDownloadsNothing()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        const Prompt prompt([](QWidget& dialog) { QTest::keyClick(dialog.windowHandle(), Qt::Key_Escape); });
        chooseDownloadAll(form);
        QTRY_VERIFY(prompt.came() && !QApplication::activeModalWidget());
        QCOMPARE(form.boxes.shown().size(), 0);
        QVERIFY(form.downloads.isEmpty());
    }

    void aFileThatFailsStopsAllAndNothingStays()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        form.host.state().transferFailures.insert(form.store.path() + u'\\' + form.text(2, "FileName"),
                                                  u"the store is away"_s);
        const Prompt prompt;
        chooseDownloadAll(form);
        QTRY_COMPARE(form.boxes.shown().size(), 1);
        QCOMPARE(theBox(form),
                 u"Attachments were not downloaded: Error downloading file door.png: the store is away"
                 u"|Attachments|critical"_s);
        QVERIFY(form.downloads.isEmpty());
    }

    void aCancelledDownloadIsToldAndAsksNoQuestion()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        bool isFirst = true;
        form.host.state().duringTransfer = [&](const QString&, qint64, qint64) {
            if (QWidget* task = QApplication::activeModalWidget(); task && std::exchange(isFirst, false))
                task->close(); // counts as Cancel
        };
        const Prompt prompt;
        chooseDownloadAll(form);
        QTRY_COMPARE(form.boxes.shown().size(), 1);
        QCOMPARE(theBox(form),
                 u"Attachments were not downloaded: Download was canceled.|Attachments|critical"_s);
        QVERIFY(form.downloads.isEmpty());
    }

    // A form that goes

    void aFormThatDeletesTheSectionDuringAnUploadEndsTheAddingQuietly()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        const Unhandled unhandled;
        form.dialogs.choose({form.newFile(u"a.txt"_s)});
        form.host.state().duringTransfer = [&](const QString&, qint64, qint64) {
            delete form.section.data();
        };
        form.choose(0, Qt::Key_A);
        QVERIFY(form.section.isNull());
        QVERIFY(!QApplication::activeModalWidget());
        QCOMPARE(unhandled.texts, QStringList());
        QCOMPARE(form.boxes.shown().size(), 0);
        QCOMPARE(form.rows->Count(), 3);
    }

    void aFormThatDeletesTheSectionUnderThePromptEndsTheDownloadQuietly()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        const Unhandled unhandled;
        const Prompt prompt([&](QWidget& dialog) {
            delete form.section.data();
            QTest::keyClick(dialog.windowHandle(), Qt::Key_Return);
        });
        chooseDownloadAll(form);
        QVERIFY(prompt.came());
        QVERIFY(!QApplication::activeModalWidget());
        QVERIFY(form.section.isNull());
        QCOMPARE(unhandled.texts, QStringList());
        QCOMPARE(form.boxes.shown().size(), 0);
        QVERIFY(form.downloads.isEmpty());
    }

    void aFormThatDeletesTheSectionWhileAllIsDownloadedAsksNoQuestion()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        const Unhandled unhandled;
        form.host.state().duringTransfer = [&](const QString&, qint64, qint64) {
            delete form.section.data();
        };
        const Prompt prompt;
        chooseDownloadAll(form);
        QVERIFY(form.section.isNull());
        QVERIFY(!QApplication::activeModalWidget());
        QCOMPARE(unhandled.texts, QStringList());
        QCOMPARE(form.boxes.shown().size(), 0);
    }
};

TAVRIN_TEST_MAIN(tst_AttachmentsActions)
#include "tst_AttachmentsActions.moc"
