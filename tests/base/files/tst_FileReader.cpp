#include "base/files/FileReader.h"
#include "support/TestCase.h"
#include "support/TestFiles.h"

#include <QTemporaryDir>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

class tst_FileReader : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theWholeContentIsRead()
    {
        const QTemporaryDir folder;
        const QByteArray content = QByteArray("a\0b\n", 4).repeated(100'000);
        putFile(folder.filePath(u"Größe und Maß"_s), content);
        QCOMPARE(readFile(folder.filePath(u"Größe und Maß"_s), content.size()), content);
        putFile(folder.filePath(u"empty"_s), {});
        QCOMPARE(readFile(folder.filePath(u"empty"_s), 0), QByteArray());
    }

    void whatCannotBeReadIsNamedWithItsReason_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("reason");
        QTest::newRow("missing") << u"none"_s << u"No such file or directory"_s;
        QTest::newRow("too long") << u"long"_s << u"File too large"_s;
        QTest::newRow("folder") << u"sub"_s << u"it is no regular file"_s;
        QTest::newRow("pipe that nobody writes to") << u"pipe"_s << u"it is no regular file"_s;
    }
    void whatCannotBeReadIsNamedWithItsReason()
    {
        QFETCH(QString, name);
        QFETCH(QString, reason);
        const QTemporaryDir folder;
        putFile(folder.filePath(u"long"_s), QByteArray(11, 'x'));
        QVERIFY(QDir(folder.path()).mkdir(u"sub"_s));
        QCOMPARE(::mkfifo(QFile::encodeName(folder.filePath(u"pipe"_s)).constData(), 0600), 0);
        const QString path = folder.filePath(name);
        QCOMPARE(failureOf([&] { readFile(path, 10); }),
                 u"The file %1 could not be read: %2"_s.arg(path, reason));
    }

    void aFileThatMayNotBeReadIsNamed()
    {
        QTemporaryDir folder;
        QVERIFY(QFile::setPermissions(folder.path(), QFile::Permissions(0x7755)));
        const QString path = folder.filePath(u"secret"_s);
        putFile(path, "x");
        QVERIFY(QFile::setPermissions(path, {}));
        QCOMPARE(asNobody([&] { return failureOf([&] { readFile(path, 10); }); }),
                 u"The file %1 could not be read: Permission denied"_s.arg(path));
    }
};

TAVRIN_TEST_MAIN(tst_FileReader)
#include "tst_FileReader.moc"
