#include "base/failure/Error.h"
#include "base/files/FileFaults.h"
#include "base/files/FileWriter.h"
#include "support/ChildProcess.h"
#include "support/FileSizeLimit.h"
#include "support/TestCase.h"
#include "support/TestFiles.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using tavrin::Descriptor;
using tavrin::Error;
using tavrin::NewFile;
using tavrin::openFolder;
using tavrin::removeAbandoned;
using tavrin::replaceFile;
using tavrin::TemporaryPrefix;
using tavrin::test::bytesOf;
using tavrin::test::codeOf;
using tavrin::test::FileSizeLimit;
using tavrin::test::inChild;
using tavrin::test::namesIn;
using tavrin::test::putFile;

namespace {

constexpr int Refused = 0;
constexpr int NotRefused = 1;
constexpr int WrongText = 2;

/// What a child does: the write must be refused with an error that names the file.
int expectRefusal(const QString& path, const QByteArray& content)
{
    try {
        replaceFile(path, content);
        return NotRefused;
    } catch (const Error& error) {
        return error.Description.contains(path) && error.Number == Error::OrdinaryNumber ? Refused
                                                                                         : WrongText;
    } catch (...) {
        return WrongText;
    }
}

} // namespace

class tst_FileWriter : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init() override
    {
        failOnUnexpectedWarnings();
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
    }

    void aNewFileIsWrittenAndEverybodyMayReadIt()
    {
        const QString path = m_folder->filePath(u"new file \u00E9.json"_s);
        replaceFile(path, "content");
        QCOMPARE(bytesOf(path), QByteArray("content"));
        QCOMPARE(namesIn(m_folder->path()), QStringList(u"new file \u00E9.json"_s));
        QCOMPARE(QFileInfo(path).permission(QFile::ReadOther), true);
        QCOMPARE(QFileInfo(path).permission(QFile::WriteOther), false);
    }

    void anOldFileIsReplacedWhole_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("shorter") << QByteArray("n");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("longer") << QByteArray(3000000, 'x');
        QTest::newRow("all bytes") << QByteArray("\0\r\n\xFF", 4);
    }
    void anOldFileIsReplacedWhole()
    {
        QFETCH(QByteArray, content);
        const QString path = m_folder->filePath(u"f"_s);
        putFile(path, "old content");
        replaceFile(path, content);
        QVERIFY(bytesOf(path) == content);
        QCOMPARE(namesIn(m_folder->path()), QStringList(u"f"_s));
    }

    void theModeOfTheOldFileStays()
    {
        const QString path = m_folder->filePath(u"f"_s);
        putFile(path, "old");
        QCOMPARE(::chmod(QFile::encodeName(path).constData(), 0640), 0);
        replaceFile(path, "new");
        struct stat after = {};
        QCOMPARE(::stat(QFile::encodeName(path).constData(), &after), 0);
        QCOMPARE(after.st_mode & 07777U, 0640U);
    }

    void whoeverHasTheOldFileOpenGoesOnReadingIt()
    {
        const QString path = m_folder->filePath(u"f"_s);
        putFile(path, "old");
        QFile reader(path);
        QVERIFY(reader.open(QIODevice::ReadOnly));
        replaceFile(path, "new");
        QCOMPARE(reader.readAll(), QByteArray("old"));
    }

    void aSymbolicLinkIsReplacedAndNotFollowed_data()
    {
        QTest::addColumn<bool>("dangling");
        QTest::newRow("to a file") << false;
        QTest::newRow("dangling") << true;
    }
    void aSymbolicLinkIsReplacedAndNotFollowed()
    {
        QFETCH(bool, dangling);
        const QString target = m_folder->filePath(u"target"_s);
        const QString link = m_folder->filePath(u"link"_s);
        if (!dangling)
            putFile(target, "the target's");
        QVERIFY(QFile::link(target, link));
        replaceFile(link, "new");
        QVERIFY(!QFileInfo(link).isSymLink());
        QCOMPARE(bytesOf(link), QByteArray("new"));
        QCOMPARE(QFileInfo::exists(target), !dangling);
        if (!dangling)
            QCOMPARE(bytesOf(target), QByteArray("the target's"));
    }

    void aRelativePathCountsFromTheWorkingFolder()
    {
        const QString before = QDir::currentPath();
        const auto restore = qScopeGuard([&] { QDir::setCurrent(before); });
        QVERIFY(QDir::setCurrent(m_folder->path()));
        replaceFile(u"here"_s, "new");
        QCOMPARE(bytesOf(m_folder->filePath(u"here"_s)), QByteArray("new"));
    }

    void aMissingFolderRaisesWithTheFilesName()
    {
        const QString path = m_folder->filePath(u"missing/f"_s);
        QCOMPARE(expectRefusal(path, "new"), Refused);
        QCOMPARE(namesIn(m_folder->path()), QStringList());
    }

    void aFolderOfThatNameStaysAndNoTemporaryFileIsLeft()
    {
        QVERIFY(QDir(m_folder->path()).mkpath(u"f/inside"_s));
        QCOMPARE(expectRefusal(m_folder->filePath(u"f"_s), "new"), Refused);
        QCOMPARE(namesIn(m_folder->path()), QStringList(u"f"_s));
        QCOMPARE(namesIn(m_folder->filePath(u"f"_s)), QStringList(u"inside"_s));
    }

    void aFolderWithoutWriteRightKeepsTheOldFile()
    {
        const QString path = m_folder->filePath(u"f"_s);
        putFile(path, "old");
        const QByteArray folder = QFile::encodeName(m_folder->path());
        QCOMPARE(::chmod(folder.constData(), 0555), 0);
        const auto restore = qScopeGuard([&] { ::chmod(folder.constData(), 0755); });
        const int result = inChild([&] {
            if (::getuid() == 0 && ::setuid(65534) != 0) // the superuser's writes are never refused
                return WrongText;
            return expectRefusal(path, "new");
        });
        QCOMPARE(result, Refused);
        QCOMPARE(bytesOf(path), QByteArray("old"));
        QCOMPARE(namesIn(m_folder->path()), QStringList(u"f"_s));
    }

    void aWriteThatStopsInTheMiddleKeepsTheOldFile_data()
    {
        QTest::addColumn<int>("limit");
        QTest::newRow("nothing fits") << 0;
        QTest::newRow("a part fits") << 4096;
        QTest::newRow("all but one byte fits") << 99999;
    }
    void aWriteThatStopsInTheMiddleKeepsTheOldFile()
    {
        QFETCH(int, limit);
        const QString path = m_folder->filePath(u"f"_s);
        putFile(path, "old");
        const int result = inChild([&] {
            const FileSizeLimit full(static_cast<rlim_t>(limit));
            return expectRefusal(path, QByteArray(100000, 'n'));
        });
        QCOMPARE(result, Refused);
        QCOMPARE(bytesOf(path), QByteArray("old"));
        QCOMPARE(namesIn(m_folder->path()), QStringList(u"f"_s));
    }

    void whatAKilledProgramLeavesBehindBearsThePrefixThatAStartSweeps()
    {
        const QString path = m_folder->filePath(u"f"_s);
        putFile(path, "old");
        const int result = inChild([&] {
            std::signal(SIGXFSZ, SIG_DFL); // the write that goes beyond the limit kills the process
            const rlimit size = {4096, 4096};
            const rlimit noCore = {0, 0};
            if (::setrlimit(RLIMIT_CORE, &noCore) != 0 || ::setrlimit(RLIMIT_FSIZE, &size) != 0)
                return WrongText;
            return expectRefusal(path, QByteArray(100000, 'n'));
        });
        QCOMPARE(result, 128 + SIGXFSZ);
        QCOMPARE(bytesOf(path), QByteArray("old"));
        const QStringList left = namesIn(m_folder->path());
        QCOMPARE(left.size(), 2);
        QVERIFY2(left.at(0).startsWith(QLatin1String(tavrin::TemporaryPrefix)), qPrintable(left.at(0)));
        QCOMPARE(left.at(1), u"f"_s);
        replaceFile(path, "new"); // the remainder is in nobody's way
        QCOMPARE(bytesOf(path), QByteArray("new"));
    }

    void aNewFileHasNoNameBeforeItIsCommitted()
    {
        const Descriptor folder = openFolder(QFile::encodeName(m_folder->path()));
        {
            NewFile file(folder, "f", 0644);
            file.write("con", 3);
            file.write("tent", 4);
            file.verify();
            QVERIFY(!QFileInfo::exists(m_folder->filePath(u"f"_s)));
            QCOMPARE(namesIn(m_folder->path()).size(), 1);
            file.commit(NewFile::Existing::Keep);
            QCOMPARE(namesIn(m_folder->path()), QStringList(u"f"_s));
        }
        QCOMPARE(bytesOf(m_folder->filePath(u"f"_s)), QByteArray("content"));
        {
            NewFile given(folder, "g", 0644);
            given.write("x", 1);
        }
        QCOMPARE(namesIn(m_folder->path()), QStringList(u"f"_s));
    }

    void aNameThatIsTakenIsKept_data()
    {
        QTest::addColumn<bool>("isLink");
        QTest::newRow("by a file") << false;
        QTest::newRow("by a dangling link") << true;
    }
    void aNameThatIsTakenIsKept()
    {
        QFETCH(bool, isLink);
        const QString path = m_folder->filePath(u"f"_s);
        if (isLink)
            QVERIFY(QFile::link(m_folder->filePath(u"nowhere"_s), path));
        else
            putFile(path, "old");
        const Descriptor folder = openFolder(QFile::encodeName(m_folder->path()));
        {
            NewFile file(folder, "f", 0644);
            file.write("new", 3);
            file.verify();
            QCOMPARE(codeOf([&] { file.commit(NewFile::Existing::Keep); }), EEXIST);
        }
        QCOMPARE(namesIn(m_folder->path()), QStringList(u"f"_s));
        QVERIFY(isLink || bytesOf(path) == QByteArray("old"));
    }

    void whatAnotherProgramWroteIntoTheTemporaryFileIsNoticed_data()
    {
        QTest::addColumn<int>("at");
        QTest::newRow("a changed byte") << 1;
        QTest::newRow("a byte behind the end") << 3;
    }
    void whatAnotherProgramWroteIntoTheTemporaryFileIsNoticed()
    {
        QFETCH(int, at);
        const Descriptor folder = openFolder(QFile::encodeName(m_folder->path()));
        {
            NewFile file(folder, "f", 0644);
            file.write("new", 3);
            QFile other(m_folder->filePath(namesIn(m_folder->path()).constFirst()));
            QVERIFY(other.open(QIODevice::ReadWrite) && other.seek(at) && other.putChar('!'));
            other.close();
            QCOMPARE(codeOf([&] { file.verify(); }), EIO);
        }
        QCOMPARE(namesIn(m_folder->path()), QStringList());
    }

    void whatAnotherProgramWroteIntoALongTemporaryFileIsNoticed_data()
    {
        QTest::addColumn<int>("at"); // megabytes
        QTest::newRow("in what the flush reads") << 9;
        QTest::newRow("behind the end") << 10;
    }
    void whatAnotherProgramWroteIntoALongTemporaryFileIsNoticed()
    {
        QFETCH(int, at);
        const Descriptor folder = openFolder(QFile::encodeName(m_folder->path()));
        const QByteArray megabyte(1 << 20, 'n');
        {
            NewFile file(folder, "f", 0644);
            for (int i = 0; i < 10; ++i) // read in a thread of its own from the eighth on
                file.write(megabyte.constData(), megabyte.size());
            QFile other(m_folder->filePath(namesIn(m_folder->path()).constFirst()));
            QVERIFY(other.open(QIODevice::ReadWrite) && other.seek(qint64(at) << 20) && other.putChar('!'));
            other.close();
            QCOMPARE(codeOf([&] { file.verify(); }), EIO);
        }
        QCOMPARE(namesIn(m_folder->path()), QStringList());
    }

    void aCommittedFileCanBeTakenBackButNotOneThatCameInItsPlace()
    {
        const Descriptor folder = openFolder(QFile::encodeName(m_folder->path()));
        NewFile file(folder, "f", 0644);
        file.verify();
        file.commit(NewFile::Existing::Keep);
        file.takeBack();
        QCOMPARE(namesIn(m_folder->path()), QStringList());
        putFile(m_folder->filePath(u"f"_s), "another's");
        file.takeBack();
        QCOMPARE(bytesOf(m_folder->filePath(u"f"_s)), QByteArray("another's"));
    }

    void onlyTheTemporaryFileOfAGoneProgramIsRemoved()
    {
        const Descriptor folder = openFolder(QFile::encodeName(m_folder->path()));
        QByteArray living;
        {
            NewFile file(folder, "f", 0644);
            living = QFile::encodeName(namesIn(m_folder->path()).constFirst());
            QCOMPARE(inChild([&] { return removeAbandoned(folder, living) ? NotRefused : Refused; }),
                     Refused);
            QVERIFY(QFileInfo::exists(m_folder->filePath(QFile::decodeName(living))));
        }
        putFile(m_folder->filePath(QFile::decodeName(living)), "left behind");
        QVERIFY(removeAbandoned(folder, living));
        putFile(m_folder->filePath(u"ordinary"_s), "x");
        QVERIFY(!removeAbandoned(folder, "ordinary"));
        QCOMPARE(namesIn(m_folder->path()), QStringList(u"ordinary"_s));
    }

    void aTemporaryFileOfAnotherWorkstationMustBeADayOld()
    {
        const Descriptor folder = openFolder(QFile::encodeName(m_folder->path()));
        const QByteArray name = QByteArray(TemporaryPrefix) + "another-1";
        const QString path = m_folder->filePath(QFile::decodeName(name));
        putFile(path, "x");
        QVERIFY(!removeAbandoned(folder, name));
        const auto age = [&](qint64 seconds) {
            QFile file(path);
            QVERIFY(file.open(QIODevice::ReadWrite));
            QVERIFY(file.setFileTime(QDateTime::currentDateTime().addSecs(-seconds),
                                     QFileDevice::FileModificationTime));
        };
        age(qint64(23) * 3600);
        QVERIFY(!removeAbandoned(folder, name));
        age(qint64(25) * 3600);
        QVERIFY(removeAbandoned(folder, name));
        QCOMPARE(namesIn(m_folder->path()), QStringList());
    }

    void whatAnotherPersonsProgramLeftIsRemovedTooButNotWhileThatProgramLives()
    {
        if (::getuid() != 0)
            QSKIP("only the superuser can act for two persons");
        QCOMPARE(::chmod(QFile::encodeName(m_folder->path()).constData(), 0777), 0);
        const Descriptor folder = openFolder(QFile::encodeName(m_folder->path()));
        const auto removedByAnother = [&](const QByteArray& name) {
            return inChild([&] {
                if (::setuid(65534) != 0)
                    return WrongText;
                return removeAbandoned(folder, name) ? NotRefused : Refused;
            });
        };
        QByteArray name;
        {
            const NewFile living(folder, "f", 0644); // which others may read and not write
            name = QFile::encodeName(namesIn(m_folder->path()).constFirst());
            QCOMPARE(removedByAnother(name), Refused);
        }
        putFile(m_folder->filePath(QFile::decodeName(name)), "left behind");
        QCOMPARE(::fchmodat(folder.number(), name.constData(), 0644, 0), 0);
        QCOMPARE(removedByAnother(name), NotRefused);
        QCOMPARE(namesIn(m_folder->path()), QStringList());
    }

    void aLinkOrAPipeOfSuchANameIsLeftAlone()
    {
        const Descriptor folder = openFolder(QFile::encodeName(m_folder->path()));
        const QByteArray pipe = QByteArray(TemporaryPrefix) + "pipe";
        QCOMPARE(::mkfifoat(folder.number(), pipe.constData(), 0600), 0);
        const QByteArray link = QByteArray(TemporaryPrefix) + "link";
        putFile(m_folder->filePath(u"target"_s), "x");
        QVERIFY(QFile::link(u"target"_s, m_folder->filePath(QFile::decodeName(link))));
        QVERIFY(!removeAbandoned(folder, pipe));
        QVERIFY(!removeAbandoned(folder, link));
        QCOMPARE(namesIn(m_folder->path()).size(), 3);
    }

private:
    std::unique_ptr<QTemporaryDir> m_folder;
};

TAVRIN_TEST_MAIN(tst_FileWriter)
#include "tst_FileWriter.moc"
