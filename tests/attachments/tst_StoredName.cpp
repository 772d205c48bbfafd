#include "attachments/StoredName.h"
#include "base/Error.h"
#include "support/FakeDesktop.h"
#include "support/TestCase.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using namespace tavrin;

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

    void aFolderIsRefused()
    {
        const QTemporaryDir folder;
        QCOMPARE(failureOf([&] { MakeStoredName(folder.path()); }),
                 u"This is a folder. Only files can be attached."_s);
    }
};

TAVRIN_TEST_MAIN(tst_StoredName)
#include "tst_StoredName.moc"
