#include "attachments/FolderNotSet.h"
#include "attachments/section/CoverImage.h"
#include "base/values/Variant.h"
#include "host/store/AttachmentStore.h"
#include "support/TestCase.h"
#include "widgets/boxes/TextArea.h"
#include "widgets/lists/ListView.h"
#include "workbench/Site.h"
#include "workbench/windows/MainWindow.h"

#include <QDir>
#include <QImage>

using namespace tavrin;
using namespace tavrin::workbench;
using namespace tavrin::test;
using namespace Qt::StringLiterals;

namespace {

/// A site whose person chooses files without a dialog.
struct AttachmentsSite : Site
{
    void openPage() { Site::openPage(AttachmentsPageNo); }
    QString makePicture(const QString& name, Qt::GlobalColor color) const
    {
        QImage picture(40, 30, QImage::Format_RGB32);
        picture.fill(color);
        const QString file = folder.filePath(name);
        picture.save(file);
        return file;
    }
    QString makeText(const QString& name) const
    {
        QFile file(folder.filePath(name));
        if (file.open(QIODevice::WriteOnly))
            file.write("seen");
        return file.fileName();
    }
    void add(const QStringList& files)
    {
        dialogs.choose(files);
        QTest::mouseClick(window->findChild<QWidget*>(u"lnkAddAttachments"_s), Qt::LeftButton);
        window->activateWindow();
    }
    ListView* list() const { return window->findChild<ListView*>(u"lvwFiles"_s); }
    TextArea* comment() const { return window->findChild<TextArea*>(u"txtComment"_s); }
    bool hasCover() const { return window->findChild<QWidget*>(u"picNoImage"_s)->isHidden(); }
    RecordCollectionPtr storedRows()
    {
        return workspace->store().load(incidentNo)->collection(u"Attachments"_s);
    }
    void close()
    {
        window->close();
        QTRY_VERIFY(!window);
    }

    FakeFileDialogs dialogs;
};

} // namespace

/// The attachments of an incident and its cover, with the real controls, a real database and a real store.
class tst_AttachmentsPage : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void anAddedFileIsInTheStoreAtOnceAndInTheDatabaseWithTheSave()
    {
        AttachmentsSite site;
        site.openPage();
        QVERIFY(!site.window->isWindowModified());
        site.add({site.makeText(u"notes.txt"_s)});
        QCOMPARE(site.list()->Count(), 1);
        QTRY_VERIFY(site.window->isWindowModified());
        QCOMPARE(site.storedRows()->Count(), 0);
        QVERIFY(site.window->save());
        QCOMPARE(site.storedRows()->Count(), 1);
        const tvTableRowPtr row = site.storedRows()->Item(1);
        QCOMPARE(ToText(fieldOf(*row, u"OriginalFileName"_s)->Value()), u"notes.txt"_s);
        QCOMPARE(ToText(fieldOf(*row, u"UserId"_s)->Value()), u"admin"_s);
        const QString path = site.workspace->host().attachmentFile(
            u"attachments\\"_s + ToText(fieldOf(*row, u"FileName"_s)->Value()));
        QFile stored(path);
        QVERIFY2(stored.open(QIODevice::ReadOnly), qPrintable(path));
        QCOMPARE(stored.readAll(), QByteArray("seen"));
        QVERIFY(!site.window->isWindowModified());
        QCOMPARE(site.boxes.texts(), QStringList());
    }

    void anOpenedFileShowsUnderItsNameAndASecondOpeningReplacesTheCopy()
    {
        const QTemporaryDir temporary;
        const QByteArray before = qgetenv("TMPDIR");
        const auto restore = qScopeGuard([&before] {
            if (before.isNull())
                qunsetenv("TMPDIR");
            else
                qputenv("TMPDIR", before);
        });
        AttachmentsSite site;
        qputenv("TMPDIR", QFile::encodeName(temporary.path()));
        const FakeShell shell;
        site.openPage();
        site.add({site.makeText(u"notes.txt"_s)});
        site.list()->setFocus();
        QTest::keyClick(site.list(), Qt::Key_Return);
        QCOMPARE(shell.opened().size(), 1);
        const QString copy = shell.opened().constFirst();
        QCOMPARE(QFileInfo(copy).fileName(), u"notes.txt"_s);
        QVERIFY(copy.startsWith(temporary.path() + u'/'));
        QFile first(copy); // as a program that shows it
        QVERIFY(first.open(QIODevice::ReadOnly));

        QTest::keyClick(site.list(), Qt::Key_Return);
        QCOMPARE(shell.opened(), QStringList({copy, copy}));
        const QDir folder(QFileInfo(copy).path());
        QCOMPARE(folder.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                 QStringList{u"notes.txt"_s});
        QCOMPARE(first.readAll(), QByteArray("seen"));
        QFile second(copy);
        QVERIFY(second.open(QIODevice::ReadOnly));
        QCOMPARE(second.readAll(), QByteArray("seen"));

        QVERIFY(site.window->save());
        site.close();
        site.workspace.reset(); // the end of the program
        QVERIFY(QDir(temporary.path()).isEmpty());
        QCOMPARE(site.boxes.texts(), QStringList());
    }

    void theCoverBesideTheTitleFollowsTheListOfTheSameRecord()
    {
        AttachmentsSite site;
        site.openPage();
        QVERIFY(!site.hasCover());
        site.add({site.makeText(u"notes.txt"_s)});
        QVERIFY(!site.hasCover());
        site.add({site.makePicture(u"door.png"_s, Qt::red)});
        QVERIFY(site.hasCover());
        site.list()->setFocus();
        QTest::keyClick(site.list(), Qt::Key_Delete);
        QCOMPARE(site.list()->Count(), 1);
        QVERIFY(!site.hasCover());
    }

    void aCommentOfSeveralLinesIsCleanOnceItIsSaved()
    {
        AttachmentsSite site;
        site.openPage();
        site.add({site.makeText(u"notes.txt"_s)});
        QTest::keyClicks(site.comment(), u"one"_s);
        QTest::keyClick(site.comment(), Qt::Key_Return);
        QTest::keyClicks(site.comment(), u"two"_s + QChar(QChar::Nbsp));
        QTRY_VERIFY(site.window->isWindowModified());
        QVERIFY(site.window->save());
        QVERIFY(!site.window->isWindowModified());
        QVERIFY(!site.window->isDirty());
        const QString stored = ToText(fieldOf(*site.storedRows()->Item(1), u"Notes"_s)->Value());
        QCOMPARE(stored, u"one\r\ntwo"_s + QChar(QChar::Nbsp));

        site.close();
        site.openPage();
        QVERIFY(!site.window->isDirty());
        site.close();
        QCOMPARE(site.boxes.texts(), QStringList());
    }

    void aTypedCommentIsAskedForAtTheClose()
    {
        AttachmentsSite site;
        site.openPage();
        site.add({site.makeText(u"notes.txt"_s)});
        QVERIFY(site.window->save());
        QTest::keyClicks(site.comment(), u"one"_s);
        QTRY_VERIFY(site.window->isWindowModified());
        site.boxes.answerWith({BoxAnswer::Cancel});
        site.window->close();
        QVERIFY(site.window);
        QCOMPARE(site.comment()->Text(), u"one"_s);
        QCOMPARE(site.boxes.take().size(), 1);
        site.boxes.answerWith({BoxAnswer::Discard});
        site.close();
    }

    void showingFilesIsNoChange()
    {
        AttachmentsSite site;
        site.openPage();
        site.add({site.makeText(u"a.txt"_s), site.makePicture(u"b.png"_s, Qt::blue)});
        QVERIFY(site.window->save());
        site.close();
        site.openPage();
        QCOMPARE(site.list()->Count(), 2);
        for (const int row : {1, 0}) {
            const QModelIndex cell = site.list()->model()->index(row, 1);
            QTest::mouseClick(site.list()->viewport(), Qt::LeftButton, {},
                              site.list()->visualRect(cell).center());
        }
        QApplication::processEvents();
        QVERIFY(!site.window->isDirty());
        QVERIFY(!site.window->isWindowModified());
    }

    void aUserWithoutTheRightMayNotAdd()
    {
        AttachmentsSite site;
        Options options = site.workspace->options();
        options.user = u"clerk"_s;
        site.workspace.reset();
        site.workspace.emplace(options);
        site.openPage();
        site.add({site.makeText(u"notes.txt"_s)});
        QCOMPARE(site.list()->Count(), 0);
        QCOMPARE(site.boxes.texts(),
                 QStringList{u"You don't have permission to add attachments in this module."_s});
    }

    void theFirstStartExplainsASettingThatIsMissing_data()
    {
        QTest::addColumn<bool>("isSet");
        QTest::newRow("set, as in the sample") << true;
        QTest::newRow("missing") << false;
    }
    void theFirstStartExplainsASettingThatIsMissing()
    {
        QFETCH(bool, isSet);
        QTemporaryDir folder;
        const QString data = folder.filePath(u"data"_s);
        copyFolder(QStringLiteral(":/data"), data);
        if (!isSet) {
            QFile settings(data + u"/sample/settings.csv"_s);
            QVERIFY(settings.open(QIODevice::ReadWrite));
            const QByteArray content =
                settings.readAll().replace("Attachments Folder,attachments", "Attachments Folder,");
            QVERIFY(settings.resize(0) && settings.seek(0) && settings.write(content) == content.size());
        }
        Options options;
        options.database = folder.filePath(u"records.sqlite"_s);
        options.dataFolder = data;
        FakeMessageBoxes boxes;
        for (const bool isFirst : {true, false}) {
            Workspace workspace(options);
            QCOMPARE(workspace.isFirstStart(), isFirst);
            MainWindow window(workspace);
            window.show();
            QCoreApplication::processEvents();
            QCOMPARE(boxes.texts(), isSet || !isFirst ? QStringList() : QStringList{FolderNotSet});
            boxes.take();
        }
    }

private:
    static void copyFolder(const QString& from, const QString& to)
    {
        QVERIFY(QDir().mkpath(to));
        for (const QFileInfo& entry :
             QDir(from).entryInfoList(QDir::Dirs | QDir::Files | QDir::NoDotAndDotDot)) {
            const QString target = to + u'/' + entry.fileName();
            if (entry.isDir()) {
                copyFolder(entry.filePath(), target);
            } else {
                QVERIFY(QFile::copy(entry.filePath(), target));
                QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner);
            }
        }
    }
};

TAVRIN_TEST_MAIN(tst_AttachmentsPage)
#include "tst_AttachmentsPage.moc"
