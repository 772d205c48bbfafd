#include "attachments/files/TemporaryCopy.h"
#include "base/failure/Error.h"
#include "support/TestCase.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using namespace tavrin;

namespace {

/// A folder with a downloaded file "copy.tmp" that holds "new".
struct Stage
{
    Stage() { write(copy, "new"); }
    static void write(const QString& path, const QByteArray& content)
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    static QByteArray read(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("missing");
    }
    QString path(const QString& name) const { return folder.filePath(name); }
    QStringList names() const
    {
        return QDir(folder.path())
            .entryList(QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    QTemporaryDir folder;
    QString copy = folder.filePath(u"copy.tmp"_s);
};

} // namespace

/// The name that a downloaded file gets.
class tst_TemporaryCopy : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theFileGetsTheNameInItsFolder()
    {
        const Stage stage;
        QCOMPARE(renameTemporaryCopy(stage.copy, u"Report 1.pdf"_s), stage.path(u"Report 1.pdf"_s));
        QCOMPARE(stage.names(), QStringList{u"Report 1.pdf"_s});
        QCOMPARE(Stage::read(stage.path(u"Report 1.pdf"_s)), "new");
    }

    void anOlderCopyIsReplacedAlsoAReadOnlyOne_data()
    {
        QTest::addColumn<bool>("readOnly");
        QTest::newRow("writable") << false;
        QTest::newRow("read-only") << true;
    }
    void anOlderCopyIsReplacedAlsoAReadOnlyOne()
    {
        QFETCH(bool, readOnly);
        const Stage stage;
        const QString target = stage.path(u"Report.pdf"_s);
        Stage::write(target, "old");
        if (readOnly)
            QVERIFY(QFile::setPermissions(target, QFile::ReadOwner));
        QCOMPARE(renameTemporaryCopy(stage.copy, u"Report.pdf"_s), target);
        QCOMPARE(Stage::read(target), "new");
        QCOMPARE(stage.names(), QStringList{u"Report.pdf"_s});
    }

    void aLinkOfTheNameGoesAndWhatItLeadsToStays()
    {
        const Stage stage;
        const QTemporaryDir elsewhere;
        const QString other = elsewhere.filePath(u"other"_s);
        Stage::write(other, "other");
        QVERIFY(QFile::setPermissions(other, QFile::ReadOwner));
        QVERIFY(QFile::link(other, stage.path(u"Report.pdf"_s)));
        renameTemporaryCopy(stage.copy, u"Report.pdf"_s);
        QVERIFY(!QFileInfo(stage.path(u"Report.pdf"_s)).isSymLink());
        QCOMPARE(Stage::read(stage.path(u"Report.pdf"_s)), "new");
        QCOMPARE(Stage::read(other), "other");
        QVERIFY(!QFileInfo(other).permissions().testFlag(QFile::WriteOwner));
    }

    void aFileThatBearsTheNameAlreadyStays()
    {
        const Stage stage;
        QCOMPARE(renameTemporaryCopy(stage.copy, u"copy.tmp"_s), stage.copy);
        QCOMPARE(Stage::read(stage.copy), "new");
    }

    void nobodyMayExecuteTheCopy_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("another name") << u"run.sh"_s;
        QTest::newRow("the name that it bears already") << u"copy.tmp"_s;
    }
    void nobodyMayExecuteTheCopy()
    {
        QFETCH(QString, name);
        const Stage stage;
        constexpr auto executable = QFile::ExeOwner | QFile::ExeUser | QFile::ExeGroup | QFile::ExeOther;
        QVERIFY(QFile::setPermissions(stage.copy, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner |
                                                      QFile::ExeGroup | QFile::ExeOther));
        QVERIFY(QFileInfo(stage.copy).permissions() & executable);
        const QString target = renameTemporaryCopy(stage.copy, name);
        QCOMPARE(QFileInfo(target).permissions() & executable, QFile::Permissions());
        QVERIFY(QFileInfo(target).permissions().testFlag(QFile::WriteOwner));
    }

    void aNameThatTheDiskDoesNotTakeStaysInTheFolder_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("empty") << QString();
        QTest::newRow("folder") << u"."_s;
        QTest::newRow("folder above") << u".."_s;
        QTest::newRow("path") << u"../../x.pdf"_s;
        QTest::newRow("line end") << u"a\nb.pdf"_s;
        QTest::newRow("NUL") << u"a"_s + QChar(u'\0') + u"b.pdf"_s;
        QTest::newRow("too long") << QString(300, u'x') + u".pdf"_s;
        QTest::newRow("too many bytes") << QString(200, QChar(0x6587)) + u".pdf"_s;
        QTest::newRow("option") << u"-rf"_s;
    }
    void aNameThatTheDiskDoesNotTakeStaysInTheFolder()
    {
        QFETCH(QString, name);
        const Stage stage;
        const QString target = renameTemporaryCopy(stage.copy, name);
        QCOMPARE(QFileInfo(target).path(), stage.folder.path());
        QCOMPARE(Stage::read(target), "new");
        QCOMPARE(stage.names(), QStringList{QFileInfo(target).fileName()});
    }

    void aFolderOfTheNameIsNotReplaced()
    {
        const Stage stage;
        QVERIFY(QDir(stage.folder.path()).mkdir(u"Report.pdf"_s));
        QVERIFY_THROWS_EXCEPTION(Error, renameTemporaryCopy(stage.copy, u"Report.pdf"_s));
        QCOMPARE(Stage::read(stage.copy), "new");
        QVERIFY(QFileInfo(stage.path(u"Report.pdf"_s)).isDir());
    }

    void aMissingCopyRaises()
    {
        const Stage stage;
        QVERIFY_THROWS_EXCEPTION(Error, renameTemporaryCopy(stage.path(u"gone"_s), u"Report.pdf"_s));
    }
};

TAVRIN_TEST_MAIN(tst_TemporaryCopy)
#include "tst_TemporaryCopy.moc"
