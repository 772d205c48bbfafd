#include "frame/words/CustomWordFile.h"
#include "support/TestCase.h"
#include "support/TestFiles.h"

#include <QFileInfo>
#include <QTemporaryDir>

#include <optional>
#include <sys/file.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

class tst_CustomWordFile : public TestCase
{
    Q_OBJECT

    std::optional<QTemporaryDir> m_folder;
    QString m_path;

    /// As any other program would try it.
    bool isLocked() const
    {
        const Descriptor other = openAt(AT_FDCWD, QFile::encodeName(m_path), O_RDWR);
        return ::flock(other.number(), LOCK_EX | LOCK_NB) != 0;
    }

private Q_SLOTS:
    void init() override
    {
        TestCase::init();
        m_folder.emplace();
        m_path = m_folder->filePath(u"Wörter.dic"_s);
    }

    void theFileIsLockedForAsLongAsItIsHeld()
    {
        putFile(m_path, "one\n");
        {
            CustomWordFile file(m_path);
            QVERIFY(isLocked());
            file.append("two\n");
            QVERIFY(isLocked());
            QCOMPARE(file.content(), QByteArray("one\ntwo\n"));
        }
        QVERIFY(!isLocked());
        QCOMPARE(bytesOf(m_path), QByteArray("one\ntwo\n"));
    }

    void itIsLockedWhileItsNewContentIsPutTogether()
    {
        putFile(m_path, "one\n");
        bool wasLocked = false;
        rewriteCustomWordFile(m_path, [&] {
            wasLocked = isLocked();
            return QByteArray("two\n");
        });
        QVERIFY(wasLocked);
        QVERIFY(!isLocked());
        QCOMPARE(bytesOf(m_path), QByteArray("two\n"));
    }

    void aContentThatFailsLeavesTheFile()
    {
        putFile(m_path, "one\n");
        QCOMPARE(failureOf([&] {
                     rewriteCustomWordFile(m_path, []() -> QByteArray { throw Error(u"no list"_s); });
                 }),
                 u"no list"_s);
        QCOMPARE(bytesOf(m_path), QByteArray("one\n"));
        QVERIFY(!isLocked());
    }

    void aFileThatIsMissingIsMadeByRewritingAlone()
    {
        QCOMPARE(failureOf([&] { CustomWordFile file(m_path); }),
                 u"The file %1 could not be written: No such file or directory"_s.arg(m_path));
        QVERIFY(!QFile::exists(m_path));
        rewriteCustomWordFile(m_path, [] { return QByteArray("one\n"); });
        QCOMPARE(bytesOf(m_path), QByteArray("one\n"));
    }

    void aFileThatIsNotOpenToWritingCanBeRewritten()
    {
        putFile(m_path, "one\n");
        QCOMPARE(::chmod(QFile::encodeName(m_folder->path()).constData(), 0777), 0);
        QCOMPARE(::chmod(QFile::encodeName(m_path).constData(), 0444), 0);
        QCOMPARE(asNobody([&] {
                     return failureOf(
                         [&] { rewriteCustomWordFile(m_path, [] { return QByteArray("two\n"); }); });
                 }),
                 QString());
        QCOMPARE(bytesOf(m_path), QByteArray("two\n"));
    }

    void aLinkIsFollowedAndStays()
    {
        const QString target = m_folder->filePath(u"shared/words"_s);
        QVERIFY(QDir().mkdir(QFileInfo(target).path()));
        putFile(target, "one\n");
        QVERIFY(QFile::link(target, m_path));
        CustomWordFile(m_path).append("two\n");
        QCOMPARE(bytesOf(target), QByteArray("one\ntwo\n"));
        CustomWordFile(m_path).replace("three\n");
        QCOMPARE(bytesOf(target), QByteArray("three\n"));
        rewriteCustomWordFile(m_path, [] { return QByteArray("four\n"); });
        QCOMPARE(bytesOf(target), QByteArray("four\n"));
        QVERIFY(QFileInfo(m_path).isSymLink());
    }

    void aReplacedFileIsWholeForWhoHasTheOldOneOpen()
    {
        putFile(m_path, "one\n");
        QFile reader(m_path);
        QVERIFY(reader.open(QIODevice::ReadOnly | QIODevice::Unbuffered));
        CustomWordFile(m_path).replace("two\n");
        QCOMPARE(reader.readAll(), QByteArray("one\n"));
        QCOMPARE(bytesOf(m_path), QByteArray("two\n"));
    }

    void aBinaryFileIsNoText_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("isText");
        QTest::newRow("words") << QByteArray("one\r\ntwo\n") << true;
        QTest::newRow("UTF-8") << QByteArray("caf\xC3\xA9\n") << true;
        QTest::newRow("another encoding") << QByteArray("caf\xE9\n") << true;
        QTest::newRow("a line with a control character") << QByteArray("fi\x01ve\n") << true;
        QTest::newRow("zeros") << QByteArray("one\n\0two\n", 9) << false;
        QTest::newRow("UTF-16") << QByteArray("o\0n\0e\0", 6) << false;
        QTest::newRow("picture") << QByteArray("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16) << false;
        QTest::newRow("broken lines") << QByteArray("fi\x01ve\n\xFF\xFE\none\n") << true;
    }
    void aBinaryFileIsNoText()
    {
        QFETCH(QByteArray, content);
        QFETCH(bool, isText);
        putFile(m_path, content);
        QCOMPARE(failureOf([&] { (void)CustomWordFile(m_path).content(); }),
                 isText ? QString() : u"The file %1 is no text"_s.arg(m_path));
        QCOMPARE(bytesOf(m_path), content);
    }
};

TAVRIN_TEST_MAIN(tst_CustomWordFile)
#include "tst_CustomWordFile.moc"
