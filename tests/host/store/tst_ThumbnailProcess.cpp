#include "host/store/ThumbnailCase.h"

#include <QElapsedTimer>
#include <QProcess>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

/// The process that makes thumbnails, and programs in its place that fail or lie.
class tst_ThumbnailProcess : public ThumbnailCase
{
    Q_OBJECT

private:
    /// A program that runs these lines.
    QString script(const QByteArray& lines) const
    {
        const QString path = m_folder->filePath(u"program"_s);
        writeFile(path, "#!/bin/sh\n" + lines + "\n");
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return path;
    }
    /// One whose starts are counted.
    QString countedScript(const QByteArray& lines) const
    {
        const QString counter = m_folder->filePath(u"count"_s);
        if (!QDir().mkpath(counter))
            qFatal("no folder to count in");
        return script("mkdir \"" + QFile::encodeName(counter) + "/$$\"; " + lines);
    }
    qsizetype starts() const { return filesIn(m_folder->filePath(u"count"_s)).size(); }

private Q_SLOTS:
    void initTestCase() { openDatabase(); }
    void cleanupTestCase() { closeDatabase(); }

    void aFailureThatPassesIsTriedAgain_data()
    {
        QTest::addColumn<QByteArray>("lines");
        QTest::newRow("the program dies") << QByteArray("kill -SEGV $$");
        QTest::newRow("it hangs") << QByteArray("exec sleep 600");
        QTest::newRow("it fails otherwise") << QByteArray("exit 2");
        QTest::newRow("it says nothing") << QByteArray("exit 0");
    }
    void aFailureThatPassesIsTriedAgain()
    {
        QFETCH(QByteArray, lines);
        Thumbnails service = thumbnails(countedScript(lines), 500);
        const QString path = put("a.png", plain({4, 4}, Qt::red));
        QCOMPARE(service.pathFor(path), QString());
        QCOMPARE(service.pathFor(path), QString());
        QCOMPARE(starts(), 2);
    }

    void aPictureThatIsWrittenToMeanwhileHasNoneThisTime()
    {
        const QString path = put("a.png", plain({4, 4}, Qt::red));
        const QByteArray file = QFile::encodeName(platformPath(path));
        const QByteArray good = QFile::encodeName(m_folder->filePath(u"good.jpg"_s));
        writeFile(QFile::decodeName(good), encoded(plain({4, 4}, Qt::red), "jpeg"));
        Thumbnails service = thumbnails(script("cat \"" + good + "\"; touch -d 2001-01-01 \"" + file + "\""));
        QCOMPARE(service.pathFor(path), QString());
        QCOMPARE(kept(), QStringList());
        QVERIFY(!service.pathFor(path).isEmpty()); // of the file as it is now
    }

    void aPictureThatFailedIsNotTriedAgainUntilItHasChanged()
    {
        Thumbnails service = thumbnails(countedScript("exit 1"));
        const QString path = put("a.png", plain({4, 4}, Qt::red));
        QCOMPARE(service.pathFor(path), QString());
        QCOMPARE(service.pathFor(path), QString());
        QCOMPARE(starts(), 1);
        put("a.png", plain({5, 5}, Qt::red));
        QCOMPARE(service.pathFor(path), QString());
        QCOMPARE(starts(), 2);
    }

    void aProgramThatFailsOrLiesGivesNoThumbnail_data()
    {
        QTest::addColumn<QByteArray>("lines");
        QTest::newRow("fails") << QByteArray("exit 1");
        QTest::newRow("says nothing") << QByteArray("exit 0");
        QTest::newRow("dies") << QByteArray("kill -SEGV $$");
        QTest::newRow("writes what is no picture") << QByteArray("echo hello");
        QTest::newRow("gives the picture back as it is") << QByteArray("cat");
        QTest::newRow("never ends its answer") << QByteArray("exec cat /dev/zero");
    }
    void aProgramThatFailsOrLiesGivesNoThumbnail()
    {
        QFETCH(QByteArray, lines);
        const QString path = put("a.png", plain({700, 700}, Qt::red));
        QCOMPARE(thumbnails(script(lines)).pathFor(path), QString());
        QCOMPARE(kept(), QStringList());
    }

    void aProgramThatHangsIsEndedInTime()
    {
        const QString path = put("a.png", plain({4, 4}, Qt::red));
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(thumbnails(script("exec sleep 600"), 200).pathFor(path), QString());
        QVERIFY(clock.elapsed() < 60'000);
        QCOMPARE(kept(), QStringList());
    }

    void theProgramHasBoundsToItsMemoryAndWritesNoFiles()
    {
        const QByteArray seen = QFile::encodeName(m_folder->path());
        const QString path = put("a.png", plain({4, 4}, Qt::red));
        thumbnails(script("mkdir \"" + seen + "/memory-$(ulimit -v)\" \"" + seen + "/files-$(ulimit -f)\""))
            .pathFor(path);
        QVERIFY(QFileInfo::exists(m_folder->filePath(u"files-0"_s)));
#ifndef __SANITIZE_ADDRESS__
        QVERIFY(QFileInfo::exists(m_folder->filePath(u"memory-1048576"_s)));
#endif
    }

    void theProgramReadsThePictureAndNothingElse()
    {
        const QByteArray seen = QFile::encodeName(m_folder->path());
        const QString path = put("a.png", plain({4, 4}, Qt::red));
        thumbnails(script("mkdir \"" + seen + "/$(sha256sum | cut -c1-64)\"")).pathFor(path);
        QVERIFY(QFileInfo::exists(m_folder->filePath(QString::fromLatin1(sha256Of(platformPath(path))))));
    }

    void thePlainProgramFailsWithoutAPicture()
    {
        QProcess program;
        program.start(thumbnailer(), QStringList());
        QVERIFY(program.waitForStarted());
        program.write("not a picture");
        program.closeWriteChannel();
        QVERIFY(program.waitForFinished());
        QCOMPARE(program.exitCode(), 1);
        QCOMPARE(program.readAllStandardOutput(), QByteArray());
    }
};

TAVRIN_TEST_MAIN(tst_ThumbnailProcess)
#include "tst_ThumbnailProcess.moc"
