#include "base/values/StorePath.h"
#include "support/TestCase.h"

using namespace Qt::StringLiterals;
namespace StorePath = tavrin::StorePath;

class tst_StorePath : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void thePartsOfAPath_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("drive");
        QTest::addColumn<QString>("parent");
        QTest::addColumn<QString>("last");
        const auto row = [](const char* name, const QString& path, const QString& drive,
                            const QString& parent,
                            const QString& last) { QTest::newRow(name) << path << drive << parent << last; };
        row("empty", u""_s, u""_s, u""_s, u""_s);
        row("name alone", u"a.txt"_s, u""_s, u""_s, u"a.txt"_s);
        row("relative", u"a\\b.txt"_s, u""_s, u"a"_s, u"b.txt"_s);
        row("drive alone", u"C:"_s, u"C:"_s, u""_s, u""_s);
        row("small drive letter", u"c:\\a"_s, u"c:"_s, u"c:\\"_s, u"a"_s);
        row("root of a drive", u"C:\\"_s, u"C:"_s, u""_s, u""_s);
        row("below the root of a drive", u"C:\\a"_s, u"C:"_s, u"C:\\"_s, u"a"_s);
        row("folders on a drive", u"C:\\a\\b\\c.txt"_s, u"C:"_s, u"C:\\a\\b"_s, u"c.txt"_s);
        row("name on a drive without root", u"C:a"_s, u"C:"_s, u"C:"_s, u"a"_s);
        row("slashes", u"C:/a/b"_s, u"C:"_s, u"C:/a"_s, u"b"_s);
        row("both separators", u"C:\\a/b"_s, u"C:"_s, u"C:\\a"_s, u"b"_s);
        row("separator at the end", u"C:\\a\\b\\"_s, u"C:"_s, u"C:\\a"_s, u"b"_s);
        row("separators at the end", u"C:\\a\\b\\/\\"_s, u"C:"_s, u"C:\\a"_s, u"b"_s);
        row("doubled separators within", u"C:\\a\\\\b"_s, u"C:"_s, u"C:\\a"_s, u"b"_s);
        row("doubled separators at the root", u"C:\\\\b"_s, u"C:"_s, u"C:\\"_s, u"b"_s);
        row("digit and colon", u"1:\\a"_s, u""_s, u"1:"_s, u"a"_s);
        row("letter of another alphabet", u"\u00E9:\\a"_s, u""_s, u"\u00E9:"_s, u"a"_s);
        row("letter whose capital is ours", u"\u017F:\\a"_s, u""_s, u"\u017F:"_s, u"a"_s);
        row("share alone", u"\\\\server\\share"_s, u"\\\\server\\share"_s, u""_s, u""_s);
        row("root of a share", u"\\\\server\\share\\"_s, u"\\\\server\\share"_s, u""_s, u""_s);
        row("below a share", u"\\\\server\\share\\a"_s, u"\\\\server\\share"_s, u"\\\\server\\share\\"_s,
            u"a"_s);
        row("folders on a share", u"\\\\server\\share\\a\\b"_s, u"\\\\server\\share"_s,
            u"\\\\server\\share\\a"_s, u"b"_s);
        row("share in slashes", u"//server/share/a"_s, u"//server/share"_s, u"//server/share/"_s, u"a"_s);
        row("server without share", u"\\\\server"_s, u""_s, u"\\"_s, u"server"_s);
        row("server with a separator only", u"\\\\server\\"_s, u""_s, u"\\"_s, u"server"_s);
        row("no server", u"\\\\\\share"_s, u""_s, u"\\"_s, u"share"_s);
        row("separators alone", u"\\\\"_s, u""_s, u""_s, u""_s);
        row("root of the platform", u"/"_s, u""_s, u""_s, u""_s);
        row("below the root of the platform", u"/a"_s, u""_s, u"/"_s, u"a"_s);
        row("dots", u"C:\\a\\.."_s, u"C:"_s, u"C:\\a"_s, u".."_s);
    }
    void thePartsOfAPath()
    {
        QFETCH(QString, path);
        QFETCH(QString, drive);
        QCOMPARE(StorePath::drivePart(path), drive);
        QCOMPARE(StorePath::hasDrive(path), !drive.isEmpty());
        QTEST(StorePath::parentFolder(path), "parent");
        QTEST(StorePath::lastComponent(path), "last");
    }

    void joinPutsExactlyOneSeparatorBetween_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("joined");
        const auto row = [](const char* name, const QString& folder, const QString& last,
                            const QString& joined) { QTest::newRow(name) << folder << last << joined; };
        row("none", u"C:\\a"_s, u"b"_s, u"C:\\a\\b"_s);
        row("behind the folder", u"C:\\a\\"_s, u"b"_s, u"C:\\a\\b"_s);
        row("before the name", u"C:\\a"_s, u"\\b"_s, u"C:\\a\\b"_s);
        row("on both sides", u"C:\\a\\"_s, u"\\b"_s, u"C:\\a\\b"_s);
        row("several on both sides", u"C:\\a\\\\/"_s, u"/\\b"_s, u"C:\\a\\b"_s);
        row("slashes within stay", u"C:/a/"_s, u"b/c"_s, u"C:/a\\b/c"_s);
        row("separator behind the name stays", u"C:\\a"_s, u"b\\"_s, u"C:\\a\\b\\"_s);
        row("drive alone", u"C:"_s, u"a"_s, u"C:\\a"_s);
        row("root of a drive", u"C:\\"_s, u"a"_s, u"C:\\a"_s);
        row("share", u"\\\\server\\share"_s, u"a"_s, u"\\\\server\\share\\a"_s);
        row("root of the platform", u"/"_s, u"a"_s, u"\\a"_s);
        row("empty folder", u""_s, u"a"_s, u"a"_s);
        row("empty name", u"C:\\a"_s, u""_s, u"C:\\a"_s);
        row("empty name behind a separator", u"C:\\a\\"_s, u""_s, u"C:\\a\\"_s);
        row("both empty", u""_s, u""_s, u""_s);
    }
    void joinPutsExactlyOneSeparatorBetween()
    {
        QFETCH(QString, folder);
        QFETCH(QString, name);
        QTEST(StorePath::join(folder, name), "joined");
    }

    void aPathIsItsParentAndItsLastComponentJoined_data()
    {
        QTest::addColumn<QString>("path");
        for (const char* path :
             {"C:\\a", "C:\\a\\b.txt", "\\\\server\\share\\a", "\\\\server\\share\\a\\b", "a\\b"})
            QTest::newRow(path) << QString::fromLatin1(path);
    }
    void aPathIsItsParentAndItsLastComponentJoined()
    {
        QFETCH(QString, path);
        QCOMPARE(StorePath::join(StorePath::parentFolder(path), StorePath::lastComponent(path)), path);
    }

    void backslashAndSlashSeparate()
    {
        QVERIFY(StorePath::isSeparator(u'\\'));
        QVERIFY(StorePath::isSeparator(u'/'));
        QVERIFY(!StorePath::isSeparator(u':'));
        QVERIFY(!StorePath::isSeparator(u'\u2215'));
    }
};

TAVRIN_TEST_MAIN(tst_StorePath)
#include "tst_StorePath.moc"
