#include "base/values/Variant.h"
#include "host/HostTestSupport.h"
#include "host/database/Database.h"
#include "host/database/DatabaseFile.h"
#include "host/lists/HostRows.h"

#include <QScopeGuard>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace tavrin;
using namespace tavrin::test;

namespace {

constexpr uid_t NobodyUid = 65534;

/// Runs `action` in a child process of a user without privileges, whom file modes bind, and returns its text.
template <typename Action>
QString asOrdinaryUser(Action action)
{
    int ends[2];
    if (pipe(ends) != 0)
        qFatal("no pipe");
    const pid_t child = fork();
    if (child == 0) {
        if (geteuid() == 0 && setuid(NobodyUid) != 0)
            _exit(1);
        const QByteArray text = action().toUtf8();
        const bool written =
            write(ends[1], text.constData(), static_cast<size_t>(text.size())) == text.size();
        _exit(written ? 0 : 1);
    }
    close(ends[1]);
    QFile answer;
    QByteArray text;
    if (answer.open(ends[0], QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        text = answer.readAll();
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? QString::fromUtf8(text)
                                                         : QStringLiteral("the child failed");
}

QString openError(const QString& path, OpenMode mode = OpenMode::CreateWhenMissing)
{
    return errorOf([&] { Database::open(path, mode, impatient()); });
}

/// A connection past our own classes, as another program has it.
class OtherProgram
{
public:
    explicit OtherProgram(const QString& path)
        : m_name(uniqueConnectionName())
    {
        QSqlDatabase connection = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_name);
        connection.setDatabaseName(path);
        if (!connection.open())
            qFatal("cannot open %s", qPrintable(path));
    }
    ~OtherProgram()
    {
        QSqlDatabase::database(m_name, false).close();
        QSqlDatabase::removeDatabase(m_name);
    }
    OtherProgram(const OtherProgram&) = delete;
    OtherProgram& operator=(const OtherProgram&) = delete;

    void execute(const QString& sql)
    {
        QSqlQuery query(QSqlDatabase::database(m_name, false));
        if (!query.exec(sql))
            qFatal("%s", qPrintable(query.lastError().text()));
    }

private:
    QString m_name;
};

} // namespace

class tst_Database : public TestCase
{
    Q_OBJECT

private:
    std::optional<QTemporaryDir> m_folder;
    QString m_path;

    /// Opening fails with a text that holds `expected` and the file's name, and changes nothing.
    void refusesAndLeavesAlone(const QString& expected)
    {
        const QByteArray before = sha256Of(m_path);
        const QStringList files = filesIn(m_folder->path());
        const QString text = openError(m_path);
        QVERIFY2(text.contains(expected), qPrintable(text));
        QVERIFY2(text.contains(m_path), qPrintable(text));
        QCOMPARE(sha256Of(m_path), before);
        QCOMPARE(filesIn(m_folder->path()), files);
    }

    void makeDatabase() { Database::open(m_path); }

private Q_SLOTS:
    void init() override
    {
        TestCase::init();
        m_folder.emplace();
        m_path = m_folder->filePath(QStringLiteral("records.db"));
    }

    void aMissingFileIsCreatedWithTheNewestSchema()
    {
        const auto database = Database::open(m_path);
        QCOMPARE(database->schemaNumber(), knownMigrations().last().Number);
        QCOMPARE(firstOf(*database, QStringLiteral("PRAGMA foreign_keys")).toInt(), 1);
        QCOMPARE(firstOf(*database, QStringLiteral("PRAGMA synchronous")).toInt(), 2);
    }

    void aDatabaseAtRestIsOneFile()
    {
        makeDatabase();
        QCOMPARE(filesIn(m_folder->path()), QStringList{QStringLiteral("records.db")});
    }

    void openingAgainKeepsWhatWasSaved()
    {
        insertRows(*Database::open(m_path), QList<CodeTableRow>{{1, QStringLiteral("One"), QString()}});
        QCOMPARE(firstOf(*Database::open(m_path), QStringLiteral("SELECT name FROM code_table")).toString(),
                 QStringLiteral("One"));
    }

    void anEmptyFileBecomesADatabase()
    {
        writeFile(m_path, {});
        QCOMPARE(openError(m_path), QString());
    }

    void aMissingFileIsNotCreatedUnlessAsked()
    {
        const QString text = openError(m_path, OpenMode::ExistingOnly);
        QVERIFY2(text.contains(QStringLiteral("does not exist")), qPrintable(text));
        QVERIFY(!QFile::exists(m_path));
    }

    void aMissingFolderIsNamed()
    {
        m_path = m_folder->filePath(QStringLiteral("gone/records.db"));
        refusesAndLeavesAlone(QStringLiteral("folder does not exist"));
    }

    void aFolderIsRefused()
    {
        m_path = m_folder->path();
        refusesAndLeavesAlone(QStringLiteral("it is a folder"));
    }

    void aFileThatIsNoDatabaseIsLeftAlone_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("one byte") << QByteArray("x");
        QTest::newRow("text") << QByteArray("Minutes of the meeting\n").repeated(500);
        QTest::newRow("zeros") << QByteArray(4096, '\0');
        QTest::newRow("nearly the right start") << QByteArray("SQLite format 4").append(4096, '\0');
    }
    void aFileThatIsNoDatabaseIsLeftAlone()
    {
        QFETCH(QByteArray, content);
        writeFile(m_path, content);
        refusesAndLeavesAlone(QStringLiteral("is not a database"));
    }

    void aDamagedDatabaseIsLeftAlone_data()
    {
        QTest::addColumn<int>("keep");
        QTest::addColumn<int>("scratchFrom");
        QTest::newRow("cut inside its header") << 60 << -1;
        QTest::newRow("cut after its header") << 100 << -1;
        QTest::newRow("cut inside its first page") << 2000 << -1;
        QTest::newRow("cut in the middle") << 20480 << -1;
        QTest::newRow("scratched in its first page") << -1 << 100;
        QTest::newRow("scratched in a later page") << -1 << 8192;
    }
    void aDamagedDatabaseIsLeftAlone()
    {
        QFETCH(int, keep);
        QFETCH(int, scratchFrom);
        makeDatabase();
        QByteArray content = contentOf(m_path);
        if (keep >= 0)
            content.truncate(keep);
        if (scratchFrom >= 0)
            content.replace(scratchFrom, 3000, QByteArray(3000, '\x5A'));
        writeFile(m_path, content);
        refusesAndLeavesAlone(QStringLiteral("is damaged"));
    }

    void aDatabaseOfAnotherProgramIsLeftAlone()
    {
        OtherProgram(m_path).execute(QStringLiteral("CREATE TABLE songs (title TEXT)"));
        refusesAndLeavesAlone(QStringLiteral("belongs to another program"));
    }

    void aDatabaseInWriteAheadModeIsCheckedWithoutATrace()
    {
        {
            OtherProgram other(m_path);
            other.execute(QStringLiteral("PRAGMA journal_mode = WAL"));
            other.execute(QStringLiteral("CREATE TABLE songs (title TEXT)"));
        }
        refusesAndLeavesAlone(QStringLiteral("belongs to another program"));
    }

    void aDatabaseOfANewerVersionIsLeftAlone()
    {
        Database::open(m_path)->execute(
            QStringLiteral("INSERT INTO schema_migration VALUES (9999, 'later', '2099-01-01')"));
        refusesAndLeavesAlone(QStringLiteral("newer version"));
    }

    void aDatabaseLockedByAnotherProgramIsLeftAlone()
    {
        makeDatabase();
        OtherProgram other(m_path);
        other.execute(QStringLiteral("BEGIN EXCLUSIVE"));
        refusesAndLeavesAlone(QStringLiteral("locked by another program"));
        other.execute(QStringLiteral("ROLLBACK"));
        QCOMPARE(openError(m_path), QString());
    }

    void anotherProgramThatWritesDoesNotKeepUsFromOpening()
    {
        makeDatabase();
        OtherProgram other(m_path);
        other.execute(QStringLiteral("BEGIN IMMEDIATE"));
        QCOMPARE(openError(m_path), QString());
    }

    void fileModesAreToldApart_data()
    {
        QTest::addColumn<bool>("exists");
        QTest::addColumn<int>("fileMode");
        QTest::addColumn<int>("folderMode");
        QTest::addColumn<QString>("expected");
        QTest::newRow("file not readable") << true << 0000 << 0777 << QStringLiteral("permission to read");
        QTest::newRow("file read-only") << true << 0444 << 0777 << QStringLiteral("is read-only. Ask for");
        QTest::newRow("folder read-only")
            << true << 0666 << 0555 << QStringLiteral("in a folder that is read-only");
        QTest::newRow("new file in a read-only folder")
            << false << 0 << 0555 << QStringLiteral("cannot be made: its folder is read-only");
        QTest::newRow("folder closed") << true << 0666 << 0000 << QStringLiteral("permission to enter");
    }
    void fileModesAreToldApart()
    {
        QFETCH(bool, exists);
        QFETCH(int, fileMode);
        QFETCH(int, folderMode);
        QFETCH(QString, expected);
        if (exists)
            makeDatabase();
        const QByteArray before = sha256Of(m_path);
        const QStringList files = filesIn(m_folder->path());
        const QByteArray folder = QFile::encodeName(m_folder->path());
        const auto reopen = qScopeGuard([&] { chmod(folder.constData(), 0700); });
        if (exists)
            chmod(QFile::encodeName(m_path).constData(), static_cast<mode_t>(fileMode));
        chmod(folder.constData(), static_cast<mode_t>(folderMode));

        const QString text = asOrdinaryUser([this] { return openError(m_path); });
        QVERIFY2(text.contains(expected), qPrintable(text));
        QVERIFY2(text.contains(m_path), qPrintable(text));
        chmod(folder.constData(), 0700);
        chmod(QFile::encodeName(m_path).constData(), 0600);
        QCOMPARE(sha256Of(m_path), before);
        QCOMPARE(filesIn(m_folder->path()), files);
    }

    void networkFileSystemsAreKnown_data()
    {
        QTest::addColumn<QByteArray>("type");
        QTest::addColumn<bool>("network");
        for (const char* name : {"nfs", "nfs4", "cifs", "smb3", "fuse.sshfs", "CIFS"})
            QTest::newRow(name) << QByteArray(name) << true;
        for (const char* name : {"ext4", "btrfs", "tmpfs", "overlay", "fuseblk", "NTFS", ""})
            QTest::addRow("local %s", name) << QByteArray(name) << false;
    }
    void networkFileSystemsAreKnown()
    {
        QFETCH(QByteArray, type);
        QFETCH(bool, network);
        QCOMPARE(isNetworkFileSystem(type), network);
    }

    void aNetworkFileSystemIsRefused()
    {
        DatabaseOptions options = impatient();
        options.FileSystemType = [](const QString&) { return QByteArrayLiteral("nfs4"); };
        const QString text = errorOf([&] { Database::open(m_path, OpenMode::CreateWhenMissing, options); });
        QVERIFY2(text.contains(QStringLiteral("one workstation's file only")), qPrintable(text));
        QVERIFY(filesIn(m_folder->path()).isEmpty());
    }

    void aWriteLeftHalfDoneIsPutBackBeforeChecking()
    {
        makeDatabase();
        const QByteArray before = sha256Of(m_path);
        const pid_t child = fork();
        if (child == 0) {
            OtherProgram other(m_path);
            // With no room for pages in memory the change reaches the file before the commit.
            other.execute(QStringLiteral("PRAGMA cache_size = 1"));
            other.execute(QStringLiteral("BEGIN IMMEDIATE"));
            other.execute(
                QStringLiteral("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE "
                               "i < 3000) INSERT INTO code_table SELECT i, 'half', 'done' FROM n"));
            _exit(0);
        }
        int status = 0;
        waitpid(child, &status, 0);
        QVERIFY(sha256Of(m_path) != before);
        const auto database = Database::open(m_path);
        QCOMPARE(firstOf(*database, QStringLiteral("SELECT COUNT(*) FROM code_table")).toInt(), 0);
    }

    void aTransactionThatIsNotCommittedLeavesNothing()
    {
        const auto database = Database::open(m_path);
        {
            Transaction transaction(*database);
            insertRows(*database, QList<CodeTableRow>{{1, QStringLiteral("One"), QString()}});
        }
        QCOMPARE(firstOf(*database, QStringLiteral("SELECT COUNT(*) FROM code_table")).toInt(), 0);
    }

    void aCommitThatFailsRollsBackAndRaises()
    {
        const auto database = Database::open(m_path, OpenMode::CreateWhenMissing, impatient());
        OtherProgram reader(m_path);
        reader.execute(QStringLiteral("BEGIN"));
        reader.execute(QStringLiteral("SELECT COUNT(*) FROM code_table"));
        const QString text = errorOf([&] {
            Transaction transaction(*database);
            insertRows(*database, QList<CodeTableRow>{{1, QStringLiteral("One"), QString()}});
            transaction.commit();
        });
        QVERIFY2(text.contains(QStringLiteral("locked by another program")), qPrintable(text));
        reader.execute(QStringLiteral("COMMIT"));
        QCOMPARE(firstOf(*database, QStringLiteral("SELECT COUNT(*) FROM code_table")).toInt(), 0);
        Transaction again(*database);
        again.commit();
    }

    void keysAreNeverGivenTwice()
    {
        const auto database = Database::open(m_path);
        QCOMPARE(database->nextKey(QStringLiteral("incident")), 1);
        QCOMPARE(database->nextKey(QStringLiteral("incident")), 2);
        QVERIFY(errorOf([&] {
                    database->nextKey(QStringLiteral("nothing"));
                }).contains(QStringLiteral("nothing")));
    }

    void aLostConnectionHasATextOfItsOwn()
    {
        const auto database = Database::open(m_path);
        database->connection().close();
        const QString text = errorOf([&] { database->execute(QStringLiteral("SELECT 1")); });
        QVERIFY2(text.contains(QStringLiteral("connection was lost")), qPrintable(text));
    }

    void wrongSqlRaisesTheDatabasesOwnWords()
    {
        const auto database = Database::open(m_path);
        const QString text = errorOf([&] { database->execute(QStringLiteral("SELECT a FROM nowhere")); });
        QVERIFY2(text.contains(QStringLiteral("no such table")), qPrintable(text));
    }

    void valuesComeBackAsTheyWereBound_data()
    {
        QTest::addColumn<QVariant>("bound");
        QTest::addColumn<QVariant>("read");
        QTest::newRow("text") << QVariant(QStringLiteral("'; DROP TABLE x; --"))
                              << QVariant(QStringLiteral("'; DROP TABLE x; --"));
        QTest::newRow("empty text") << QVariant(QString()) << QVariant(QStringLiteral(""));
        QTest::newRow("Null") << Null() << Null();
        QTest::newRow("Empty") << QVariant() << Null();
        QTest::newRow("number") << QVariant(42) << QVariant(42);
        QTest::newRow("true") << QVariant(true) << QVariant(1);
        QTest::newRow("date") << QVariant(QDate(2026, 2, 3)) << QVariant(QStringLiteral("2026-02-03"));
        QTest::newRow("no date") << QVariant(QDate()) << Null();
        QTest::newRow("date and time") << QVariant(QDateTime(QDate(2026, 2, 3), QTime(4, 5, 6)))
                                       << QVariant(QStringLiteral("2026-02-03T04:05:06"));
    }
    void valuesComeBackAsTheyWereBound()
    {
        QFETCH(QVariant, bound);
        QFETCH(QVariant, read);
        const auto database = Database::open(m_path);
        QVERIFY(SameValue(firstOf(*database, QStringLiteral("SELECT ?"), {bound}), read));
    }

    void theDataVersionTellsOfOtherConnectionsOnly()
    {
        const auto mine = Database::open(m_path);
        const auto theirs = Database::open(m_path);
        const qint64 before = mine->dataVersion();
        mine->nextKey(QStringLiteral("incident"));
        QCOMPARE(mine->dataVersion(), before);
        theirs->nextKey(QStringLiteral("incident"));
        QVERIFY(mine->dataVersion() != before);
    }
};

TAVRIN_TEST_MAIN(tst_Database)
#include "tst_Database.moc"
