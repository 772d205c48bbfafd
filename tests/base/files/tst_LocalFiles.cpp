#include "base/files/FileFaults.h"
#include "base/files/FileWriter.h"
#include "base/files/LocalFiles.h"
#include "support/ChildProcess.h"
#include "support/FileSizeLimit.h"
#include "support/OtherFileSystem.h"
#include "support/TestCase.h"
#include "support/TestFiles.h"
#include "support/TracedProgram.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

mode_t modeOf(const QString& path)
{
    struct stat state = {};
    ::lstat(QFile::encodeName(path).constData(), &state);
    return state.st_mode & 07777;
}

constexpr int Moved = 0;
constexpr int Refused = 1;

/// Moves in a program of its own, whose calls of the system fail as `faults` tell; returns its answer.
int moveWith(const QStringList& faults, const QString& from, const QString& to)
{
    return runTraced(injected(faults), {u"--move"_s, from, to});
}

} // namespace

class tst_LocalFiles : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aFileMoves_data()
    {
        QTest::addColumn<bool>("elsewhere");
        QTest::newRow("within a file system") << false;
        QTest::newRow("to another file system") << true;
    }
    void aFileMoves()
    {
        QFETCH(bool, elsewhere);
        if (elsewhere && otherFileSystem().isEmpty())
            QSKIP("there is no second file system");
        const QTemporaryDir here;
        const QTemporaryDir there(elsewhere ? otherFileSystem() : QDir::tempPath() + u"/tst-XXXXXX"_s);
        const QByteArray content(700000, 'x');
        putFile(here.filePath(u"a"_s), content);
        QFile::setPermissions(here.filePath(u"a"_s), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        LocalFiles::moveFile(here.filePath(u"a"_s), there.filePath(u"b"_s));
        QCOMPARE(namesIn(here.path()), QStringList());
        QCOMPARE(namesIn(there.path()), QStringList{u"b"_s});
        QCOMPARE(bytesOf(there.filePath(u"b"_s)), content);
        QCOMPARE(modeOf(there.filePath(u"b"_s)), mode_t(0600)); // nobody may execute it
    }

    void nothingIsReplaced_data() { aFileMoves_data(); }
    void nothingIsReplaced()
    {
        QFETCH(bool, elsewhere);
        if (elsewhere && otherFileSystem().isEmpty())
            QSKIP("there is no second file system");
        const QTemporaryDir here;
        const QTemporaryDir there(elsewhere ? otherFileSystem() : QDir::tempPath() + u"/tst-XXXXXX"_s);
        const QString from = here.filePath(u"a"_s);
        const QString to = there.filePath(u"b"_s);
        putFile(from, "new");
        putFile(to, "old");
        QCOMPARE(failureOf([&] { LocalFiles::moveFile(from, to); }),
                 u"%1 could not be moved to %2: File exists"_s.arg(from, to));
        QCOMPARE(bytesOf(to), QByteArray("old"));
        QCOMPARE(bytesOf(from), QByteArray("new"));
        QCOMPARE(namesIn(there.path()), QStringList{u"b"_s});
        QFile::remove(to);
        QVERIFY(QFile::link(u"/nowhere"_s, to)); // a dangling link bears the name too
        QVERIFY(failureOf([&] { LocalFiles::moveFile(from, to); }).endsWith(u"File exists"_s));
    }

    void aCopyThatIsCutOffLeavesNothing()
    {
        if (otherFileSystem().isEmpty())
            QSKIP("there is no second file system");
        const QTemporaryDir here;
        const QTemporaryDir there(otherFileSystem());
        const QString from = here.filePath(u"a"_s);
        const QString to = there.filePath(u"b"_s);
        const QByteArray content(500000, 'x');
        putFile(from, content);
        QCOMPARE(inChild([&] {
                     const FileSizeLimit full(65536);
                     const QString text = failureOf([&] { LocalFiles::moveFile(from, to); });
                     return text == u"%1 could not be moved to %2: File too large"_s.arg(from, to) ? 0 : 1;
                 }),
                 0);
        QCOMPARE(namesIn(there.path()), QStringList());
        QCOMPARE(bytesOf(from), content);
    }

    void whereRenamingMayReplaceAFileMovesByASecondName()
    {
        if (!traceWorks())
            QSKIP("strace cannot be used here");
        const QTemporaryDir folder;
        const QString from = folder.filePath(u"a"_s);
        const QString to = folder.filePath(u"b"_s);
        putFile(from, "content");
        // The plain renaming, which replaces what came in between, is not tried.
        const QStringList faults{u"renameat2:error=EINVAL"_s, u"?rename,?renameat:error=EIO"_s};
        QCOMPARE(moveWith(faults, from, to), Moved);
        QCOMPARE(namesIn(folder.path()), QStringList{u"b"_s});
        QCOMPARE(bytesOf(to), QByteArray("content"));

        putFile(from, "another");
        QCOMPARE(moveWith(faults, from, to), Refused);
        QCOMPARE(bytesOf(to), QByteArray("content"));
        QCOMPARE(bytesOf(from), QByteArray("another"));

        QFile::remove(to);
        QCOMPARE(moveWith(faults + QStringList{u"?link,?linkat:error=EPERM"_s}, from, to), Refused);
        QCOMPARE(namesIn(folder.path()), QStringList{u"a"_s});
        QCOMPARE(moveWith(faults + QStringList{u"?unlink,?unlinkat:error=EIO:when=1"_s}, from, to), Refused);
        QCOMPARE(namesIn(folder.path()), QStringList{u"a"_s});
        QCOMPARE(bytesOf(from), QByteArray("another"));
    }

    void theOriginalStaysUntilTheCopyAndItsFolderAreOnTheDisk()
    {
        if (otherFileSystem().isEmpty() || !traceWorks())
            QSKIP("there is no second file system, or strace cannot be used here");
        const QTemporaryDir here;
        const QTemporaryDir there(otherFileSystem());
        const QString from = here.filePath(u"a"_s);
        putFile(from, "content");
        for (int call = 1; call <= 2; ++call) { // of the copy, then of its folder
            QCOMPARE(moveWith({u"fsync:error=EIO:when=%1"_s.arg(call)}, from, there.filePath(u"b"_s)),
                     Refused);
            QCOMPARE(bytesOf(from), QByteArray("content"));
            QCOMPARE(namesIn(there.path()), QStringList());
        }
        QCOMPARE(moveWith({u"fsync:error=EIO:when=3"_s}, from, there.filePath(u"b"_s)), Moved);
        QCOMPARE(namesIn(here.path()), QStringList());
        QCOMPARE(bytesOf(there.filePath(u"b"_s)), QByteArray("content"));
    }

    void onlyARegularFileMoves()
    {
        const QTemporaryDir folder;
        putFile(folder.filePath(u"secret"_s), "secret");
        QVERIFY(QFile::link(folder.filePath(u"secret"_s), folder.filePath(u"link"_s)));
        QCOMPARE(::mkfifo(QFile::encodeName(folder.filePath(u"pipe"_s)).constData(), 0600), 0);
        QVERIFY(QDir().mkdir(folder.filePath(u"folder"_s)));
        const QString to = folder.filePath(u"to"_s);
        for (const QString& name : {u"link"_s, u"pipe"_s, u"folder"_s, u"missing"_s}) {
            const QString text = failureOf([&] { LocalFiles::moveFile(folder.filePath(name), to); });
            QVERIFY2(text.startsWith(folder.filePath(name) + u" could not be moved to "_s + to),
                     qPrintable(text));
            QVERIFY(!QFileInfo(to).isSymLink() && !QFileInfo::exists(to));
        }
    }

    void aFileThatStaysWhereItIsCanBeKeptFromBeingExecuted()
    {
        const QTemporaryDir folder;
        const QString file = folder.filePath(u"a"_s);
        putFile(file, "content");
        QCOMPARE(::chmod(QFile::encodeName(file).constData(), 06754), 0);
        LocalFiles::makeUnexecutable(file);
        QCOMPARE(modeOf(file), mode_t(0644));
        QCOMPARE(bytesOf(file), QByteArray("content"));
        // What a link leads to stays as it is.
        QCOMPARE(::chmod(QFile::encodeName(file).constData(), 0755), 0);
        const QString link = folder.filePath(u"link"_s);
        QVERIFY(QFile::link(file, link));
        const QString text = failureOf([&] { LocalFiles::makeUnexecutable(link); });
        QVERIFY2(text.startsWith(link + u" could not be kept from being executed: "_s), qPrintable(text));
        QCOMPARE(modeOf(file), mode_t(0755));
        const QString missing = folder.filePath(u"missing"_s);
        QCOMPARE(failureOf([&] { LocalFiles::makeUnexecutable(missing); }),
                 missing + u" could not be kept from being executed: No such file or directory"_s);
    }

    void aPathWithANulNamesNothing()
    {
        const QTemporaryDir folder;
        putFile(folder.filePath(u"a"_s), "content");
        const QString to = folder.filePath(u"b"_s) + QChar(u'\0') + u"c"_s;
        QVERIFY(failureOf([&] {
                    LocalFiles::moveFile(folder.filePath(u"a"_s), to);
                }).endsWith(u"is no path of a file"_s));
        QCOMPARE(namesIn(folder.path()), QStringList{u"a"_s});
    }

    void aFolderMovesOnlyToANameThatIsFree()
    {
        const QTemporaryDir folder;
        const QString from = folder.filePath(u"from"_s);
        const QString to = folder.filePath(u"to"_s);
        QVERIFY(QDir().mkdir(from));
        putFile(from + u"/a"_s, "content");
        QVERIFY(QDir().mkdir(to)); // an empty folder, which a plain rename would replace
        QCOMPARE(failureOf([&] { LocalFiles::moveFolder(from, to); }),
                 u"%1 could not be moved to %2: File exists"_s.arg(from, to));
        QVERIFY(QDir().rmdir(to));
        LocalFiles::moveFolder(from, to);
        QCOMPARE(namesIn(folder.path()), QStringList{u"to"_s});
        QCOMPARE(bytesOf(to + u"/a"_s), QByteArray("content"));
        QCOMPARE(failureOf([&] { LocalFiles::moveFolder(to + u"/a"_s, from); }),
                 u"%1 could not be moved to %2: it is not a folder"_s.arg(to + u"/a"_s, from));
    }

    void aFolderIsMadeOnlyBelowOneThatIsThere()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"new"_s);
        LocalFiles::makeFolder(path);
        QVERIFY(LocalFiles::isFolder(path));
        QCOMPARE(failureOf([&] { LocalFiles::makeFolder(path); }),
                 u"The folder %1 could not be created: File exists"_s.arg(path));
        const QString deep = folder.filePath(u"missing/new"_s);
        QCOMPARE(failureOf([&] { LocalFiles::makeFolder(deep); }),
                 u"The folder %1 could not be created: No such file or directory"_s.arg(deep));
        QVERIFY(QFile::link(path, folder.filePath(u"link"_s)));
        QVERIFY(!LocalFiles::isFolder(folder.filePath(u"link"_s)));
    }

    void aFolderGoesWithReadOnlyFilesAndFolders()
    {
        const QTemporaryDir folder;
        ::chmod(QFile::encodeName(folder.path()).constData(), 0777);
        const QString path = folder.filePath(u"doomed"_s);
        const int result = inChild([&] {
            if (::geteuid() == 0 && ::setuid(65534) != 0) // modes hold nobody up who is root
                return 2;
            QDir().mkpath(path + u"/deep/closed"_s);
            QFile file(path + u"/deep/a"_s);
            if (!file.open(QIODevice::WriteOnly))
                return 3;
            file.close();
            file.setPermissions(QFile::ReadOwner);
            ::chmod(QFile::encodeName(path + u"/deep/closed"_s).constData(), 0);
            ::chmod(QFile::encodeName(path + u"/deep"_s).constData(), 0500);
            ::chmod(QFile::encodeName(path).constData(), 0500);
            LocalFiles::removeFolder(path);
            return QFileInfo::exists(path) ? 1 : 0;
        });
        QCOMPARE(result, 0);
        QVERIFY(!QFileInfo::exists(path));
    }

    void aLinkInARemovedFolderGoesAndItsTargetStays()
    {
        const QTemporaryDir folder;
        const QString outside = folder.filePath(u"outside"_s);
        QVERIFY(QDir().mkpath(outside));
        putFile(outside + u"/kept"_s, "kept");
        const QString path = folder.filePath(u"doomed"_s);
        QVERIFY(QDir().mkpath(path + u"/deep"_s));
        QVERIFY(QFile::link(outside, path + u"/deep/link"_s));
        QVERIFY(QFile::link(outside + u"/kept"_s, path + u"/file"_s));
        LocalFiles::removeFolder(path);
        QCOMPARE(namesIn(folder.path()), QStringList{u"outside"_s});
        QCOMPARE(bytesOf(outside + u"/kept"_s), QByteArray("kept"));
        QVERIFY(QFile::link(outside, path));
        QCOMPARE(failureOf([&] { LocalFiles::removeFolder(path); }),
                 u"The folder %1 could not be removed: Not a directory"_s.arg(path));
        QCOMPARE(bytesOf(outside + u"/kept"_s), QByteArray("kept"));
    }

    void onlyTemporaryFilesAreSwept()
    {
        const QTemporaryDir folder;
        putFile(folder.filePath(QLatin1String(TemporaryPrefix) + u"abc"_s), "half");
        putFile(folder.filePath(u".hidden"_s), "whole");
        LocalFiles::sweepTemporaries(folder.path());
        QCOMPARE(namesIn(folder.path()), QStringList{u".hidden"_s});
    }

    void aFileWithThePrefixFurtherInItsNameIsNotSwept()
    {
        const QTemporaryDir folder;
        const QStringList names{u"a"_s + QLatin1String(TemporaryPrefix) + u"abc"_s,
                                u"report"_s + QLatin1String(TemporaryPrefix)};
        for (const QString& name : names)
            putFile(folder.filePath(name), "whole");
        LocalFiles::sweepTemporaries(folder.path());
        QCOMPARE(namesIn(folder.path()), names);
    }

    void aNameIsMadeUsable_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("usable");
        const QString euros(100, QChar(0x20AC)); // three bytes each
        const auto same = [](const char* row, const QString& name) { QTest::newRow(row) << name << name; };
        same("plain", u"Report.pdf"_s);
        same("one blank", u" "_s);
        same("trailing blank", u"a.pdf "_s);
        same("leading dash", u"-rf"_s);
        same("three dots", u"..."_s);
        same("a device elsewhere", u"CON"_s);
        same("signs that only others refuse", u"a<b>:c?.pdf"_s);
        same("255 bytes", QString(251, u'x') + u".pdf"_s);
        QTest::newRow("nothing") << QString() << u"_"_s;
        QTest::newRow("the folder itself") << u"."_s << u"_"_s;
        QTest::newRow("the folder above") << u".."_s << u"__"_s;
        QTest::newRow("separator") << u"../a/b"_s << u".._a_b"_s;
        QTest::newRow("control characters")
            << u"a\nb\tc\x7F"_s + QChar(u'\0') + u".pdf"_s << u"a_b_c__.pdf"_s;
        QTest::newRow("256 bytes") << QString(252, u'x') + u".pdf"_s << QString(251, u'x') + u".pdf"_s;
        QTest::newRow("300 bytes in 100 units") << euros + u".pdf"_s << euros.left(83) + u".pdf"_s;
        QTest::newRow("pairs stay whole")
            << u"\U0001F600"_s.repeated(70) + u".pdf"_s << u"\U0001F600"_s.repeated(62) + u".pdf"_s;
        QTest::newRow("no ending but a sentence")
            << u"a."_s + QString(300, u'x') << u"a."_s + QString(253, u'x');
    }
    void aNameIsMadeUsable()
    {
        QFETCH(QString, name);
        QFETCH(QString, usable);
        QCOMPARE(LocalFiles::usableFileName(name), usable);
        const QTemporaryDir folder;
        putFile(folder.filePath(usable), "content"); // the disk takes it
        QCOMPARE(namesIn(folder.path()), QStringList{usable});
    }
};

static int runOrBeStarted(int argc, char** argv)
{
    if (argc == 4 && qstrcmp(argv[1], "--move") == 0) {
        const QCoreApplication application(argc, argv);
        const QString text =
            failureOf([&] { LocalFiles::moveFile(QFile::decodeName(argv[2]), QFile::decodeName(argv[3])); });
        return text.isEmpty() ? Moved : Refused;
    }
    tst_LocalFiles testCase;
    return tavrin::test::run(testCase, argc, argv);
}
TAVRIN_TEST_UNIT(tst_LocalFiles, runOrBeStarted)
#include "tst_LocalFiles.moc"
