#include "attachments/files/StoredName.h"
#include "base/failure/Error.h"
#include "support/TestCase.h"
#include "support/TickingClock.h"
#include "testing/FakeDesktop.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>
#include <QTemporaryDir>

#include <ctime>

using namespace Qt::StringLiterals;
using namespace tavrin;
using test::TickingClock;

namespace {

QDateTime at(const char* iso)
{
    return QDateTime::fromString(QString::fromLatin1(iso), Qt::ISODate);
}

QString writeFile(const QTemporaryDir& folder, const QString& name)
{
    const QString path = folder.filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write("text") != 4)
        return {};
    return path;
}

/// What the call raises; "" when it raises nothing.
QString failureOf(const std::function<void()>& call)
{
    try {
        call();
        return {};
    } catch (const Error& error) {
        return error.Description;
    }
}

} // namespace

class tst_StoredName : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theNameHoldsTheFolderOfTheCreationTheStampOfTheUploadAndTheName_data()
    {
        QTest::addColumn<QDateTime>("created");
        QTest::addColumn<QDateTime>("now");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("stored");
        QTest::newRow("years between the two dates: it is meant")
            << at("2014-03-09T23:00:00") << at("2016-02-01T13:05:07") << u"Report.pdf"_s
            << uR"(2014\03\20160201130507_Report.pdf)"_s;
        QTest::newRow("all zero-padded, by 24 hours")
            << at("0987-01-02T03:04:05") << at("2026-01-02T03:04:05") << u"a"_s
            << uR"(0987\01\20260102030405_a)"_s;
        QTest::newRow("the last second of a year") << at("1999-12-31T23:59:59") << at("1999-12-31T23:59:59")
                                                   << u"b.tif"_s << uR"(1999\12\19991231235959_b.tif)"_s;
        QTest::newRow("the name stays as it is")
            << at("2014-03-09T00:00:00") << at("2016-02-01T00:00:00") << u" two  words.Ä.PDF"_s
            << uR"(2014\03\20160201000000_ two  words.Ä.PDF)"_s;
    }
    void theNameHoldsTheFolderOfTheCreationTheStampOfTheUploadAndTheName()
    {
        QFETCH(QDateTime, created);
        QFETCH(QDateTime, now);
        QFETCH(QString, name);
        QTEST(storedName(created, now, name), "stored");
    }

    void theStampIsTheWorkstationsClockAndTheNameIsWithoutFolder()
    {
        const QTemporaryDir folder;
        const QString path = writeFile(folder, u"Report.pdf"_s);
        const test::FakeClock clock(at("2016-02-01T13:05:07"));
        const QString month = creationDateOf(path).toString(uR"(yyyy\MM)"_s);
        QCOMPARE(MakeStoredName(path), month + uR"(\20160201130507_Report.pdf)"_s);
    }

    void theCreationDateIsTheBirthOfTheFileWhereTheFileSystemTellsIt()
    {
        const QTemporaryDir folder;
        const QString path = writeFile(folder, u"a.txt"_s);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        const QDateTime changed = at("2014-03-09T12:00:00");
        QVERIFY(file.setFileTime(changed, QFileDevice::FileModificationTime));
        file.close();
        const QDateTime birth = QFileInfo(path).birthTime();
        if (!birth.isValid())
            QSKIP("this file system keeps no birth of files");
        QCOMPARE(creationDateOf(path), birth);
        QVERIFY(creationDateOf(path) > changed.addYears(1));
    }

    void theCreationDateIsTheLastChangeWhereTheFileSystemTellsNoBirth()
    {
        const QString path = u"/proc/self/status"_s;
        if (!QFileInfo::exists(path) || QFileInfo(path).birthTime().isValid())
            QSKIP("this system has no file without a birth");
        const QDateTime before = QFileInfo(path).lastModified();
        QCOMPARE(creationDateOf(path), before);
        QVERIFY(before.isValid());
    }

    void aFileThatDoesNotExistFailsWithTheSystemsOwnWords()
    {
        const QTemporaryDir folder;
        QCOMPARE(failureOf([&] { MakeStoredName(folder.filePath(u"gone.pdf"_s)); }),
                 u"No such file or directory"_s);
        const QString file = writeFile(folder, u"a.txt"_s);
        QCOMPARE(failureOf([&] { MakeStoredName(file + u"/below"_s); }), u"Not a directory"_s);
    }

    void aFileOfTheEpochHasAFolderToo()
    {
        const QDateTime epoch = QDateTime::fromMSecsSinceEpoch(0);
        QCOMPARE(creationDate({}, {}), epoch); // which is no date to Qt
        QCOMPARE(creationDate({}, at("2014-03-09T00:00:00")), at("2014-03-09T00:00:00"));
        QCOMPARE(creationDate(at("2013-03-09T00:00:00"), at("2014-03-09T00:00:00")),
                 at("2013-03-09T00:00:00"));
        QCOMPARE(storedName(creationDate({}, {}), at("2016-02-01T13:05:07"), u"a"_s),
                 epoch.toString(u"yyyy"_s) + epoch.toString(uR"(\MM)"_s) + uR"(\20160201130507_a)"_s);
    }

    void aFileNameIsTakenByThePlatformsRuleAndCanStandInAStoredPath_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("name");
        QTest::newRow("plain") << u"Report.pdf"_s << u"Report.pdf"_s;
        QTest::newRow("backslash") << uR"(AC\DC.mp3)"_s << u"AC_DC.mp3"_s;
        QTest::newRow("backslash at the end") << uR"(song\)"_s << u"song_"_s;
        QTest::newRow("like a drive") << u"C:x.pdf"_s << u"C_x.pdf"_s;
        QTest::newRow("like a share") << uR"(\\server\share)"_s << u"__server_share"_s;
        QTest::newRow("a colon elsewhere") << u"12:30.txt"_s << u"12:30.txt"_s;
    }
    void aFileNameIsTakenByThePlatformsRuleAndCanStandInAStoredPath()
    {
#ifdef Q_OS_WIN
        QSKIP("no such names there");
#endif
        QFETCH(QString, file);
        QFETCH(QString, name);
        const QTemporaryDir folder;
        const QString path = writeFile(folder, file);
        QVERIFY(!path.isEmpty());
        const test::FakeClock clock(at("2016-02-01T13:05:07"));
        QCOMPARE(uploadedFileName(path), name);
        QVERIFY2(MakeStoredName(path).endsWith(uR"(\20160201130507_)"_s + name),
                 qPrintable(MakeStoredName(path)));
    }

    void aPathThatNoFileSystemHoldsIsRefusedInClearWords_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("half a character") << u"a"_s + QChar(0xD800) + u"b"_s;
        QTest::newRow("NUL") << u"a.txt"_s + QChar(QChar::Null) + u"b"_s;
    }
    void aPathThatNoFileSystemHoldsIsRefusedInClearWords()
    {
        QFETCH(QString, name);
        const QTemporaryDir folder;
        QVERIFY(!writeFile(folder, u"a.txt"_s).isEmpty());
        QCOMPARE(failureOf([&] { MakeStoredName(folder.path() + u'/' + name); }),
                 u"The name of this file holds a character that cannot be used. Rename the file and add it "
                 "again."_s);
    }

    void aNameThatLeavesNoRoomForTheStampIsRefusedAndTheReasonSaysSo_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("bytes");
        QTest::newRow("240") << QString(240, u'a') << 0;
        QTest::newRow("241") << QString(241, u'a') << 241;
        QTest::newRow("255") << QString(255, u'a') << 255;
        QTest::newRow("120 letters of two bytes") << QString(120, QChar(0xC4)) << 0;
        QTest::newRow("121 letters of two bytes") << QString(121, QChar(0xC4)) << 242;
    }
    void aNameThatLeavesNoRoomForTheStampIsRefusedAndTheReasonSaysSo()
    {
        QFETCH(QString, name);
        QFETCH(int, bytes);
        const QTemporaryDir folder;
        const QString path = writeFile(folder, name);
        QVERIFY(!path.isEmpty());
        const QString reason =
            u"The name of this file is too long: it has %1 bytes and may have 240, because "
            "the time stamp that is put before it needs 15 bytes. Rename the file and add "
            "it again."_s;
        QCOMPARE(failureOf([&] { MakeStoredName(path); }), bytes == 0 ? QString() : reason.arg(bytes));
    }

    void theWaitForTheNextSecondEndsWithTheSecond()
    {
        const TickingClock clock;
        const qint64 before = desktop().clock->now().toSecsSinceEpoch();
        awaitNextSecond();
        QCOMPARE(desktop().clock->now().toSecsSinceEpoch(), before + 1);
    }

    void theWaitForTheNextSecondEndsThoughTheClockStands()
    {
        const test::FakeClock clock(at("2016-02-01T13:05:07"));
        QElapsedTimer timer;
        timer.start();
        awaitNextSecond();
        QVERIFY(timer.elapsed() >= 1000);
    }

    void whatArrivedIsKnownUntilTheNextArrivalInAnotherSecondWhateverItsCapitals()
    {
        test::FakeClock clock(at("2016-02-01T13:05:07"));
        rememberStored(uR"(S:\2014\03\1_a.txt)"_s);
        rememberStored(uR"(S:\2014\03\1_b.txt)"_s);
        QVERIFY(wasStored(uR"(S:\2014\03\1_A.TXT)"_s));
        QVERIFY(wasStored(uR"(S:\2014\03\1_b.txt)"_s));
        QVERIFY(!wasStored(uR"(S:\2014\03\1_c.txt)"_s));
        clock.setNow(at("2016-02-01T13:05:08"));
        rememberStored(uR"(S:\2014\03\1_c.txt)"_s);
        QVERIFY(!wasStored(uR"(S:\2014\03\1_a.txt)"_s)); // kept no longer than it can matter
    }

    void theStampAndTheFolderAreOfTheLocalTime()
    {
        const QByteArray before = qgetenv("TZ");
        const auto restore = qScopeGuard([&before] {
            if (before.isNull())
                qunsetenv("TZ");
            else
                qputenv("TZ", before);
            tzset();
        });
        qputenv("TZ", "XYZ-10"); // ten hours before UTC
        tzset();
        const QDateTime now = QDateTime::fromSecsSinceEpoch(1454335507);     // 14:05:07 UTC
        const QDateTime created = QDateTime::fromSecsSinceEpoch(1396303200); // 22:00 UTC, 31 March 2014
        QCOMPARE(storedName(created, now, u"a"_s), uR"(2014\04\20160202000507_a)"_s);
        const QTemporaryDir folder;
        const QString path = writeFile(folder, u"a.txt"_s);
        const QDateTime earliest = QDateTime::currentDateTimeUtc().addSecs(qint64(10) * 3600);
        const QString stamp = MakeStoredName(path).section(u'\\', -1).left(14);
        const QDateTime latest = QDateTime::currentDateTimeUtc().addSecs(qint64(10) * 3600);
        QVERIFY2(stamp >= earliest.toString(u"yyyyMMddHHmmss"_s), qPrintable(stamp));
        QVERIFY2(stamp <= latest.toString(u"yyyyMMddHHmmss"_s), qPrintable(stamp));
    }

    void aFolderIsRefused()
    {
        const QTemporaryDir folder;
        QCOMPARE(failureOf([&] { MakeStoredName(folder.path()); }),
                 u"This is a folder. Only files can be attached."_s);
    }
};

TAVRIN_TEST_MAIN(tst_StoredName)
#include "tst_StoredName.moc"
