#include "attachments/dialogs/FileUpload.h"
#include "attachments/dialogs/frmDownloadFolderPrompt.h"
#include "attachments/dialogs/frmUploadTask.h"
#include "attachments/files/StoredName.h"
#include "attachments/section/Attachments.h"
#include "frame/modUtils.h"
#include "host/records/Record.h"
#include "host/records/RecordCollection.h"
#include "host/records/RecordStore.h"
#include "host/store/StoreTestSupport.h"
#include "support/FileSizeLimit.h"
#include "support/TickingClock.h"
#include "testing/FakeDesktop.h"
#include "testing/Unhandled.h"
#include "widgets/labels/WrapLabel.h"
#include "widgets/lists/ListView.h"
#include "widgets/panels/PopupMenu.h"

#include <QApplication>
#include <QProcess>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>

#include <csignal>
#include <optional>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

const QString Changed = u"it was changed by another program meanwhile; try again"_s;

/// Acts once, in the middle of a transfer: as soon as the bar of a dialog of `Form` has moved so often.
class Meanwhile : public QObject
{
public:
    Meanwhile(int moves, std::function<void()> act)
        : m_moves(moves)
        , m_act(std::move(act))
    {
        qApp->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        auto* bar = event->type() == QEvent::Show ? qobject_cast<QProgressBar*>(watched) : nullptr;
        if (bar)
            connect(bar, &QProgressBar::valueChanged, this, [this] {
                if (--m_moves == 0 && m_act)
                    m_act();
            });
        return false;
    }

private:
    int m_moves;
    std::function<void()> m_act;
};

/// The person at the dialogs: answers the question of an upload by turns, and takes the name that a download
/// suggests.
class Person
{
public:
    Person()
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { look(); });
        m_timer.start(1);
    }

    /// What is done at each question of an upload; behind that it is skipped.
    QList<std::function<void()>> atQuestions;
    /// The reasons that stood there, question by question.
    QStringList reasons;

private:
    void look()
    {
        QWidget* modal = QApplication::activeModalWidget();
        if (qobject_cast<frmDownloadFolderPrompt*>(modal) && modal->isVisible())
            QTest::keyClick(modal->windowHandle(), Qt::Key_Return);
        else if (qobject_cast<frmUploadTask*>(modal) &&
                 modal->findChild<QWidget*>(u"picRetry"_s)->isEnabled())
            answer(*modal);
    }
    void answer(QWidget& dialog)
    {
        for (const FileUpload* line : dialog.findChildren<FileUpload*>()) {
            if (line->isVisible() && line->Failed())
                reasons << line->findChild<WrapLabel*>(u"lblStatus"_s)->Caption();
        }
        const bool isRetry = !atQuestions.isEmpty();
        if (isRetry)
            atQuestions.takeFirst()();
        dialog.findChild<QPushButton*>(isRetry ? u"cmdRetry"_s : u"cmdSkip"_s)->click();
    }

    QTimer m_timer;
};

/// The section of a new incident on a form of its own.
struct Page
{
    Page(Host& host, Database& database)
        : installation(host)
        , store(database)
        , record(store.create())
        , section(new Attachments(&window))
    {
        window.setWindowTitle(u"Incident 7"_s);
        window.resize(620, 460);
        window.show();
        static_cast<BoundSection*>(section)->ReadData(record);
        list = section->findChild<ListView*>(u"lvwFiles"_s);
    }
    void add(const QString& file)
    {
        dialogs.choose({file});
        section->AddAttachments();
    }
    void downloadAll() const { section->findChild<MenuItem*>(u"mnuDownloadAll"_s)->Click.raise(); }
    /// "name: content" of each row's file as the store has it.
    QStringList files() const
    {
        QStringList all;
        for (const RecordRowPtr& row : record->collection(u"Attachments"_s)->rows()) {
            const auto text = [&](const QString& field) { return ToText(fieldOf(*row, field)->Value()); };
            const QString copy =
                currentHost().newDownloader()->Download(u"attachments\\"_s + text(u"FileName"_s));
            all << text(u"OriginalFileName"_s) + u": "_s + QString::fromUtf8(contentOf(copy).left(10));
        }
        return all;
    }

    HostInstallation installation;
    FakeMessageBoxes boxes;
    FakeFileDialogs dialogs;
    FakeShell shell;
    Unhandled unhandled;
    RecordStore store;
    RecordPtr record;
    QWidget window;
    Attachments* section;
    ListView* list = nullptr;
};

/// The program of a person who downloads all files and is cut off in the middle of the second.
int downloadUntilKilled(const QString& folder)
{
    const auto database = Database::open(folder + u"/records.db"_s);
    ReferenceHost host(*database,
                       ReferenceHostOptions{u"admin"_s, folder + u"/station/"_s, folder + u"/down"_s});
    host.waitForSweep();
    Page page(host, *database);
    for (const auto& name : {u"a.txt"_s, u"b.txt"_s}) {
        writeFile(folder + u"/from/"_s + name, name.toUtf8());
        page.add(folder + u"/from/"_s + name);
    }
    const Person person;
    const Meanwhile kill(2, [] { ::raise(SIGKILL); }); // the bar counts the second file
    page.downloadAll();
    return 1;
}

} // namespace

/// What goes wrong with the files of `Attachments`, with the real section, the real dialogs and a real store.
class tst_AttachmentsFaults : public StoreCase
{
    Q_OBJECT

private:
    std::unique_ptr<Page> m_page;
    std::optional<FileSizeLimit> m_limit;

    QString from(const QString& name) const { return path("from") + u'/' + name; }
    QString target() const { return path("down") + u"/Incident 7"_s; }
    /// The files in the store, without thumbnails and folders.
    QStringList storedFiles() const
    {
        QStringList files;
        for (const QString& entry : stored()) {
            if (!QFileInfo(storedPath(entry)).isDir())
                files << entry;
        }
        return files;
    }
    /// One file can be added, and opened, as on any other day.
    void verifyUsable(const QStringList& before)
    {
        QVERIFY(m_page->section->isEnabled());
        QCOMPARE(m_page->boxes.take().size(), 0);
        QCOMPARE(m_page->unhandled.texts, QStringList());
        writeFile(from(u"next.txt"_s), "next");
        m_page->add(from(u"next.txt"_s));
        QCOMPARE(m_page->files(), before + QStringList{u"next.txt: next"_s});
        QCOMPARE(m_page->list->Count(), before.size() + 1);
        QCOMPARE(storedFiles().size(), before.size() + 1);
    }

protected:
    void init() override
    {
        StoreCase::init();
        QVERIFY(QDir().mkpath(path("from")));
        QVERIFY(QDir().mkpath(path("down")));
        m_page = std::make_unique<Page>(*m_host, *m_database);
    }
    void cleanup() override
    {
        m_limit.reset();
        m_page.reset();
        StoreCase::cleanup();
    }

private Q_SLOTS:
    void anUploadThatFailsIsToldAndTheRetryBringsTheFile_data()
    {
        QTest::addColumn<QString>("fault");
        for (const char* fault : {"source vanished", "source grown", "source shrunk", "store not there",
                                  "store moved away", "disk full"})
            QTest::newRow(fault) << QString::fromLatin1(fault);
    }
    void anUploadThatFailsIsToldAndTheRetryBringsTheFile()
    {
        QFETCH(QString, fault);
        const QByteArray content(3 << 20, 'x');
        const QString file = from(u"Report.pdf"_s);
        writeFile(file, content);
        const auto problem = [&](const QString& reason) { return uploadProblem(file, reason); };
        QString expected;
        std::function<void()> meanwhile;
        std::function<void()> mend = [] {};
        if (fault == u"source vanished"_s) {
            QVERIFY(QFile::remove(file));
            expected = u"No such file or directory"_s;
            mend = [&] { writeFile(file, content); };
        } else if (fault == u"source grown"_s) {
            expected = problem(Changed);
            meanwhile = [&] { QVERIFY(QFile(file).resize(4 << 20)); };
        } else if (fault == u"source shrunk"_s) {
            expected = problem(Changed);
            meanwhile = [&] { QVERIFY(QFile(file).resize(1 << 20)); };
        } else if (fault == u"store not there"_s) {
            setFolder(path("attachments"));
            expected =
                problem(u"the attachments folder '%1' cannot be opened: No such file or directory"_s.arg(
                    path("attachments")));
            mend = [&] {
                QVERIFY(QDir().mkpath(path("attachments")));
                setFolder(u"attachments"_s);
            };
        } else if (fault == u"store moved away"_s) {
            expected = problem(u"its folder was moved or replaced meanwhile"_s);
            meanwhile = [&] { QVERIFY(QDir().rename(path("attachments"), path("away"))); };
        } else {
            m_limit.emplace(1 << 20);
            expected = problem(u"File too large"_s);
            mend = [&] { m_limit.reset(); };
        }
        QStringList whileAsked;
        Person person;
        person.atQuestions = {[&] {
            whileAsked = storedFiles();
            mend();
        }};
        {
            const Meanwhile act(1, meanwhile);
            m_page->add(file);
        }
        QCOMPARE(person.reasons, QStringList{expected});
        QCOMPARE(whileAsked, QStringList()); // no part of it, under whatever name
        QCOMPARE(m_page->files(), QStringList{u"Report.pdf: xxxxxxxxxx"_s});
        QCOMPARE(storedFiles().size(), 1);
        QCOMPARE(QFileInfo(storedPath(storedFiles().constFirst())).size(), QFileInfo(file).size());
        verifyUsable({u"Report.pdf: xxxxxxxxxx"_s});
    }

    void anIncidentThatIsLoadedAnewDuringAnUploadGetsTheFile()
    {
        m_page->store.save(*m_page->record);
        writeFile(from(u"a.bin"_s), QByteArray(3 << 20, 'x'));
        {
            const Meanwhile load(1, [&] {
                m_page->record = m_page->store.load(m_page->record->key());
                static_cast<BoundSection*>(m_page->section)->ReadData(m_page->record);
            });
            m_page->add(from(u"a.bin"_s));
        }
        QCOMPARE(m_page->files(), QStringList{u"a.bin: xxxxxxxxxx"_s});
        m_page->store.save(*m_page->record);
        QCOMPARE(m_page->store.load(m_page->record->key())->collection(u"Attachments"_s)->Count(), 1);
        verifyUsable({u"a.bin: xxxxxxxxxx"_s});
    }

    void aNameThatCannotBeStoredIsOneFailedLine_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("reason");
        QTest::newRow("255 bytes")
            << QString(251, u'n') + u".txt"_s
            << u"The name of this file is too long: it has 255 bytes and may have 240, because the time "
               u"stamp "
               u"that is put before it needs 15 bytes. Rename the file and add it again."_s;
        QTest::newRow("control character") << u"a\nb.txt"_s << QString();
    }
    void aNameThatCannotBeStoredIsOneFailedLine()
    {
        QFETCH(QString, name);
        QFETCH(QString, reason);
        writeFile(from(name), "content");
        Person person;
        m_page->add(from(name));
        QCOMPARE(person.reasons.size(), 1);
        if (reason.isEmpty())
            QVERIFY2(person.reasons.constFirst().contains(u"could not be copied"_s),
                     qPrintable(person.reasons.constFirst()));
        else
            QCOMPARE(person.reasons.constFirst(), reason);
        QCOMPARE(storedFiles(), QStringList());
        QCOMPARE(m_page->list->Count(), 0);
        verifyUsable({});
    }

    void aFileOfAnOddNameIsAdded_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("kept");
        QTest::newRow("only dots") << u"...."_s << u"...."_s;
        QTest::newRow("240 bytes") << QString(236, u'n') + u".txt"_s << QString(236, u'n') + u".txt"_s;
        for (const QChar character : modUtils::InvalidNameCharacters()) {
            if (character == u'/')
                continue; // which separates folders here
            const QString name = u"ab%1c.txt"_s.arg(character);
            QTest::addRow("with %s", qPrintable(QString(character)))
                << name << (character == u'\\' ? u"ab_c.txt"_s : name);
        }
    }
    void aFileOfAnOddNameIsAdded()
    {
        QFETCH(QString, name);
        QFETCH(QString, kept);
        writeFile(from(name), "content");
        const Person person;
        m_page->add(from(name));
        QCOMPARE(person.reasons, QStringList());
        QCOMPARE(m_page->files(), QStringList{kept + u": content"_s});
        verifyUsable({kept + u": content"_s});
    }

    void twoFilesOfOneNameInOneSecondBothArrive()
    {
        const TickingClock clock;
        writeFile(from(u"one/scan.pdf"_s), "first");
        writeFile(from(u"two/scan.pdf"_s), "second");
        const Person person;
        m_page->dialogs.choose({from(u"one/scan.pdf"_s), from(u"two/scan.pdf"_s)});
        m_page->section->AddAttachments();
        QCOMPARE(person.reasons, QStringList());
        QCOMPARE(m_page->files(), QStringList({u"scan.pdf: first"_s, u"scan.pdf: second"_s}));
    }

    void aNameThatAnotherWorkstationTookInThisSecondIsNotOverwritten()
    {
        FakeClock clock(QDateTime(QDate(2016, 2, 1), QTime(13, 5, 7)));
        writeFile(from(u"scan.pdf"_s), "mine");
        const QString theirs = storedPath(MakeStoredName(from(u"scan.pdf"_s)).replace(u'\\', u'/'));
        writeFile(theirs, "theirs");
        Person person;
        person.atQuestions = {[&] { clock.setNow(QDateTime(QDate(2016, 2, 1), QTime(13, 5, 8))); }};
        m_page->add(from(u"scan.pdf"_s));
        QCOMPARE(person.reasons.size(), 1);
        QVERIFY2(
            person.reasons.constFirst().startsWith(uploadProblem(from(u"scan.pdf"_s), QString()).chopped(1)),
            qPrintable(person.reasons.constFirst()));
        QCOMPARE(contentOf(theirs), QByteArray("theirs"));
        QCOMPARE(m_page->files(), QStringList{u"scan.pdf: mine"_s});
    }

    void aLeftoverFolderOfADownloadComesAlong()
    {
        writeFile(target() + u"_TEMP/left.txt"_s, "left");
        writeFile(from(u"a.txt"_s), "content");
        m_page->add(from(u"a.txt"_s));
        m_page->boxes.answerWith({BoxAnswer::No});
        const Person person;
        m_page->downloadAll();
        QCOMPARE(m_page->boxes.take().size(), 1);
        QCOMPARE(treeOf(path("down")),
                 QStringList({u"Incident 7"_s, u"Incident 7/a.txt"_s, u"Incident 7/left.txt"_s}));
        verifyUsable({u"a.txt: content"_s});
    }

    void aFolderThatCannotGetItsNameIsToldAndTheNextDownloadWorks()
    {
        writeFile(from(u"a.txt"_s), "content");
        m_page->add(from(u"a.txt"_s));
        const Person person;
        {
            const Meanwhile act(1, [&] { writeFile(target() + u"/mine.txt"_s, "mine"); });
            m_page->downloadAll();
        }
        const QList<ShownBox> boxes = m_page->boxes.take();
        QCOMPARE(boxes.size(), 1);
        QVERIFY2(boxes.constFirst().text.startsWith(u"Attachments were not downloaded: "_s) &&
                     boxes.constFirst().text.contains(target()),
                 qPrintable(boxes.constFirst().text));
        QCOMPARE(treeOf(path("down")), QStringList({u"Incident 7"_s, u"Incident 7/mine.txt"_s}));
        m_page->boxes.answerWith({BoxAnswer::No});
        m_page->downloadAll();
        QCOMPARE(m_page->boxes.take().size(), 1);
        QCOMPARE(contentOf(path("down") + u"/Incident 7 (1)/a.txt"_s), QByteArray("content"));
        verifyUsable({u"a.txt: content"_s});
    }

    void aDownloadOfAllThatIsKilledLeavesNothingUnderTheFinalName()
    {
        QProcess program;
        program.setProcessChannelMode(QProcess::ForwardedChannels);
        program.start(QCoreApplication::applicationFilePath(),
                      {test::TestUnit::running(), u"--download-in"_s, m_folder->path()});
        QVERIFY(program.waitForFinished(60'000));
        QCOMPARE(program.exitStatus(), QProcess::CrashExit);
        QCOMPARE(program.exitCode(), SIGKILL);
        QCOMPARE(treeOf(path("down")), QStringList({u"Incident 7_TEMP"_s, u"Incident 7_TEMP/a.txt"_s}));
        QVERIFY(QFile::remove(target() + u"_TEMP/a.txt"_s)); // for the sake of the next name
        writeFile(from(u"c.txt"_s), "content");
        m_page->add(from(u"c.txt"_s));
        m_page->boxes.answerWith({BoxAnswer::No});
        const Person person;
        m_page->downloadAll();
        QCOMPARE(treeOf(path("down")), QStringList({u"Incident 7"_s, u"Incident 7/c.txt"_s}));
    }
};

static int runOrBeStarted(int argc, char** argv)
{
    if (argc == 3 && qstrcmp(argv[1], "--download-in") == 0) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        const QApplication application(argc, argv);
        return downloadUntilKilled(QFile::decodeName(argv[2]));
    }
    tst_AttachmentsFaults testCase;
    return tavrin::test::run(testCase, argc, argv);
}
TAVRIN_TEST_UNIT(tst_AttachmentsFaults, runOrBeStarted)
#include "tst_AttachmentsFaults.moc"
