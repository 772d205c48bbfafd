#include "base/files/Descriptor.h"
#include "spell/CustomDictionary.h"
#include "spell/SpellTestSupport.h"
#include "support/FileSizeLimit.h"
#include "support/TestCase.h"

#include <QTemporaryDir>

#include <functional>
#include <optional>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

/// On a busy machine the others may hold the file for longer than its user has patience.
void untilDone(const std::function<void()>& action)
{
    QString failure = u"not tried"_s;
    for (int i = 0; i < 50 && !failure.isEmpty(); ++i)
        failure = failureOf(action);
    if (!failure.isEmpty())
        throw Error(failure);
}

} // namespace

class tst_CustomDictionary : public TestCase
{
    Q_OBJECT

    std::optional<QTemporaryDir> m_folder;
    QString m_path;

    QString notWritten(const char* reason) const
    {
        return u"The file %1 could not be written: %2"_s.arg(m_path, QString::fromUtf8(reason));
    }

private Q_SLOTS:
    void init() override
    {
        TestCase::init();
        m_folder.emplace();
        const QString folder = m_folder->filePath(u"Wörter und Maße"_s);
        QVERIFY(QDir().mkdir(folder));
        m_path = folder + u"/custom.dic"_s;
    }

    void theWordsOfTheFileAreRead()
    {
        putFile(m_path, "\xEF\xBB\xBFMarlow\r\nbad/word\r\nsherriffing");
        const CustomDictionary words(m_path);
        QCOMPARE(words.words(), QSet<QString>({u"Marlow"_s, u"sherriffing"_s}));
    }

    void aWordIsKnownInItsOwnCaseAndInLargerOnes_data()
    {
        QTest::addColumn<QString>("word");
        QTest::addColumn<bool>("known");
        QTest::newRow("own case") << u"Marlow"_s << true;
        QTest::newRow("in capitals") << u"MARLOW"_s << true;
        QTest::newRow("small") << u"marlow"_s << false;
        QTest::newRow("small word") << u"perp"_s << true;
        QTest::newRow("small word at the front of a sentence") << u"Perp"_s << true;
        QTest::newRow("small word in capitals") << u"PERP"_s << true;
        QTest::newRow("mixed") << u"pErp"_s << false;
        QTest::newRow("capital inside") << u"McAllen"_s << true;
        QTest::newRow("capital inside, in capitals") << u"MCALLEN"_s << true;
        QTest::newRow("capital inside left out") << u"Mcallen"_s << false;
        QTest::newRow("other") << u"other"_s << false;
    }
    void aWordIsKnownInItsOwnCaseAndInLargerOnes()
    {
        QFETCH(QString, word);
        putFile(m_path, "Marlow\nperp\nMcAllen\n");
        QTEST(CustomDictionary(m_path).knows(word), "known");
    }

    void anAddedWordIsAppended_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        QTest::newRow("empty file") << QByteArray() << QByteArray("caf\xC3\xA9\n");
        QTest::newRow("behind a line") << QByteArray("one\n") << QByteArray("one\ncaf\xC3\xA9\n");
        QTest::newRow("no end of line at the end") << QByteArray("one") << QByteArray("one\ncaf\xC3\xA9\n");
        QTest::newRow("CR LF") << QByteArray("one\r\n") << QByteArray("one\r\ncaf\xC3\xA9\n");
        QTest::newRow("bad lines stay") << QByteArray("a/b\n") << QByteArray("a/b\ncaf\xC3\xA9\n");
        QTest::newRow("byte order mark")
            << QByteArray("\xEF\xBB\xBFone\n") << QByteArray("\xEF\xBB\xBFone\ncaf\xC3\xA9\n");
        QTest::newRow("there already")
            << QByteArray("caf\xC3\xA9\none\n") << QByteArray("caf\xC3\xA9\none\n");
    }
    void anAddedWordIsAppended()
    {
        QFETCH(QByteArray, before);
        putFile(m_path, before);
        CustomDictionary words(m_path);
        words.add(u"café"_s);
        QTEST(bytesOf(m_path), "after");
        QVERIFY(words.knows(u"café"_s));
        QVERIFY(CustomDictionary(m_path).knows(u"café"_s));
    }

    void aRemovedWordLeavesTheOtherLinesAsTheyWere_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        QTest::newRow("last") << QByteArray("one\ntwo\n") << QByteArray("one\n");
        QTest::newRow("first") << QByteArray("two\r\none\r\n") << QByteArray("one\r\n");
        QTest::newRow("twice") << QByteArray("two\none\ntwo") << QByteArray("one\n");
        QTest::newRow("bad lines stay") << QByteArray("a/b\ntwo\n\xFF\n") << QByteArray("a/b\n\xFF\n");
        QTest::newRow("longer words stay") << QByteArray("twofold\ntwo\n") << QByteArray("twofold\n");
        QTest::newRow("not there") << QByteArray("one") << QByteArray("one");
    }
    void aRemovedWordLeavesTheOtherLinesAsTheyWere()
    {
        QFETCH(QByteArray, before);
        putFile(m_path, before);
        CustomDictionary words(m_path);
        words.remove(u"two"_s);
        QTEST(bytesOf(m_path), "after");
        QVERIFY(!words.knows(u"two"_s));
        QVERIFY(!words.knows(u"TWO"_s));
        QCOMPARE(namesIn(QFileInfo(m_path).absolutePath()), QStringList(u"custom.dic"_s));
    }

    void whatAnotherProgramAddedMeanwhileStays()
    {
        putFile(m_path, "one\n");
        CustomDictionary here(m_path);
        CustomDictionary there(m_path);
        there.add(u"two"_s);
        here.add(u"three"_s);
        QCOMPARE(bytesOf(m_path), QByteArray("one\ntwo\nthree\n"));
        here.remove(u"three"_s);
        QCOMPARE(bytesOf(m_path), QByteArray("one\ntwo\n"));
    }

    void programsThatAddAtTheSameTimeLoseNothing()
    {
        putFile(m_path, {});
        QList<pid_t> children;
        for (int child = 0; child < 4; ++child) {
            const pid_t pid = ::fork();
            if (pid == 0) {
                const QString failure = failureOf([&] {
                    CustomDictionary words(m_path);
                    for (int i = 0; i < 5; ++i) {
                        const QString number = QString(child + 1, u'a') + QString(i + 1, u'b');
                        untilDone([&] { words.add(u"word"_s + number); });
                        // A file that was replaced must not swallow what the others append.
                        untilDone([&] { words.add(u"gone"_s + number); });
                        untilDone([&] { words.remove(u"gone"_s + number); });
                    }
                });
                ::_exit(failure.isEmpty() ? 0 : 1);
            }
            children.append(pid);
        }
        for (const pid_t pid : children) {
            int status = 0;
            QCOMPARE(::waitpid(pid, &status, 0), pid);
            QCOMPARE(status, 0);
        }
        const CustomDictionary words(m_path);
        QCOMPARE(words.words().size(), 20);
        QVERIFY(words.knows(u"wordaaaabbbbb"_s));
    }

    void aFileThatAnotherProgramLocksIsNamed()
    {
        putFile(m_path, "one\n");
        CustomDictionary words(m_path);
        const Descriptor other = openAt(AT_FDCWD, QFile::encodeName(m_path), O_RDWR);
        QCOMPARE(::flock(other.number(), LOCK_EX), 0);
        const QString text = notWritten("another program is using it");
        QCOMPARE(failureOf([&] { words.add(u"two"_s); }), text);
        QCOMPARE(failureOf([&] { words.remove(u"one"_s); }), text);
        QVERIFY(!words.knows(u"two"_s));
        QVERIFY(words.knows(u"one"_s));
        QCOMPARE(bytesOf(m_path), QByteArray("one\n"));
        QCOMPARE(::flock(other.number(), LOCK_UN), 0);
        words.add(u"two"_s);
        QCOMPARE(bytesOf(m_path), QByteArray("one\ntwo\n"));
    }

    void aFileThatIsGoneIsNamedAndNotMadeAnew()
    {
        putFile(m_path, "one\n");
        CustomDictionary words(m_path);
        QVERIFY(QFile::remove(m_path));
        const QString text = notWritten("No such file or directory");
        QCOMPARE(failureOf([&] { words.add(u"two"_s); }), text);
        QCOMPARE(failureOf([&] { words.remove(u"one"_s); }), text);
        QVERIFY(!QFile::exists(m_path));
    }

    void aFolderOrPipeInItsPlaceIsNamed()
    {
        putFile(m_path, "one\n");
        CustomDictionary words(m_path);
        QVERIFY(QFile::remove(m_path));
        QCOMPARE(::mkfifo(QFile::encodeName(m_path).constData(), 0600), 0);
        QCOMPARE(failureOf([&] { words.add(u"two"_s); }), notWritten("it is no regular file"));
        QVERIFY(QFile::remove(m_path));
        QVERIFY(QDir().mkdir(m_path));
        QCOMPARE(failureOf([&] { words.add(u"two"_s); }), notWritten("Is a directory"));
    }

    void aReadOnlyFileOrFolderIsNamed()
    {
        putFile(m_path, "one\ntwo\n");
        QVERIFY(::chmod(QFile::encodeName(m_folder->path()).constData(), 0755) == 0);
        QVERIFY(::chmod(QFile::encodeName(m_path).constData(), 0444) == 0);
        QCOMPARE(asNobody([&] { return failureOf([&] { CustomDictionary(m_path).add(u"x"_s); }); }),
                 notWritten("Permission denied"));
        QVERIFY(::chmod(QFile::encodeName(m_path).constData(), 0666) == 0);
        QVERIFY(::chmod(QFile::encodeName(QFileInfo(m_path).path()).constData(), 0555) == 0);
        QCOMPARE(asNobody([&] { return failureOf([&] { CustomDictionary(m_path).remove(u"one"_s); }); }),
                 notWritten("Permission denied"));
        QCOMPARE(bytesOf(m_path), QByteArray("one\ntwo\n"));
        QCOMPARE(asNobody([&] { return failureOf([&] { CustomDictionary(m_path).add(u"x"_s); }); }),
                 QString());
        QCOMPARE(bytesOf(m_path), QByteArray("one\ntwo\nx\n"));
    }

    void aFullDiskLeavesNoHalfAWord()
    {
        putFile(m_path, "one\n");
        QCOMPARE(::chmod(QFile::encodeName(m_folder->path()).constData(), 0755), 0);
        QCOMPARE(::chmod(QFile::encodeName(m_path).constData(), 0666), 0);
        const QString text = asNobody([&] {
            const FileSizeLimit full(8);
            return failureOf([&] { CustomDictionary(m_path).add(u"longword"_s); });
        });
        QCOMPARE(text, notWritten("File too large"));
        QCOMPARE(bytesOf(m_path), QByteArray("one\n"));
    }
};

TAVRIN_TEST_MAIN(tst_CustomDictionary)
#include "tst_CustomDictionary.moc"
