#include "component/ClassRegister.h"
#include "component/ComponentClient.h"
#include "component/Registration.h"
#include "support/TestCase.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>
#include <QSettings>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using tavrin::PublicClass;
using tavrin::publicClasses;
using tavrin::test::lastDescription;

namespace {

const auto OtherLibrary = "; made by hand\n"
                          "\n"
                          "[Other.Thing]\n"
                          "Library=/opt/other/libother.so\n"
                          "Version=3\n"_ba;

} // namespace

class tst_Registration : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init() override
    {
        failOnUnexpectedWarnings();
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_folder->path()));
    }
    void cleanup() override
    {
        qunsetenv("XDG_DATA_HOME");
        TestCase::cleanup();
    }

    void registeringEntersEveryClass()
    {
        QCOMPARE(DllRegisterServer(), TV_S_OK);
        const QSettings file(path(), QSettings::IniFormat);
        QCOMPARE(file.childGroups().size(), 14);
        for (const PublicClass& one : publicClasses()) {
            const auto entry = [&](const QString& key) {
                return file.value(one.name + u'/' + key).toString();
            };
            QCOMPARE(entry(u"Version"_s), u"1.0"_s);
            QCOMPARE(entry(u"TypeLibrary"_s), u"Tavrin Bound User Controls"_s);
            QCOMPARE(entry(u"Interface"_s), one.defaultInterface);
            QCOMPARE(entry(u"Events"_s), one.eventInterface);
            QCOMPARE(entry(u"Contract"_s), one.contract);
            QCOMPARE(entry(u"Library"_s),
                     QCoreApplication::applicationFilePath()); // which the tests stand in
        }
    }

    void registeringAgainChangesNothing()
    {
        QCOMPARE(DllRegisterServer(), TV_S_OK);
        const QByteArray before = content();
        QCOMPARE(DllRegisterServer(), TV_S_OK);
        QCOMPARE(content(), before);
    }

    void registeringBringsEntriesUpToDate()
    {
        QCOMPARE(DllRegisterServer(), TV_S_OK);
        const QByteArray now = content();
        tavrin::registerClasses(u"/opt/elsewhere/libTVBoundControls.so"_s);
        QVERIFY(content() != now);
        write(content().replace("Version=1.0", "Version=0.9"));
        QCOMPARE(DllRegisterServer(), TV_S_OK);
        QCOMPARE(content(), now);
    }

    void aClassThatTheLibraryHasNoLongerGoesWhenItRegisters()
    {
        tavrin::registerClasses(u"/here/lib.so"_s);
        const QByteArray now = content();
        write(now + "\n[TVBoundControls.Old]\nLibrary=/here/lib.so\n");
        tavrin::registerClasses(u"/here/lib.so"_s);
        QCOMPARE(content(), now);
    }

    void entriesOfAnotherLibraryStayAsTheyAre()
    {
        write(OtherLibrary);
        QCOMPARE(DllRegisterServer(), TV_S_OK);
        QVERIFY(content().startsWith(OtherLibrary));
        QVERIFY(content().size() > OtherLibrary.size());
        QCOMPARE(DllUnregisterServer(), TV_S_OK);
        QCOMPARE(content(), OtherLibrary);
    }

    void aCommentBehindAnEntryOfOursStays()
    {
        tavrin::registerClasses(u"/here/lib.so"_s);
        write(content() + "\n# the other one\n[Other.Thing]\nLibrary=/opt/other/libother.so\n");
        tavrin::unregisterClasses(u"/here/lib.so"_s);
        QCOMPARE(content(), "# the other one\n\n[Other.Thing]\nLibrary=/opt/other/libother.so\n"_ba);
    }

    void unregisteringLeavesAnotherCopysEntries()
    {
        tavrin::registerClasses(u"/elsewhere/lib.so"_s);
        const QByteArray before = content();
        QCOMPARE(DllUnregisterServer(), TV_S_OK);
        QCOMPARE(content(), before);
    }

    void entriesUnderAnotherNameOfTheFileAreItsOwn_data()
    {
        QTest::addColumn<QString>("registered"); // both in the folder of the test
        QTest::addColumn<QString>("loaded");
        QTest::newRow("shorter name") << u"/lib/libX.so.1"_s << u"/lib/libX.so"_s;
        QTest::newRow("the file itself") << u"/lib/libX.so"_s << u"/lib/libX.so.1.0.0"_s;
        QTest::newRow("link to the folder") << u"/linked/libX.so.1"_s << u"/lib/libX.so.1"_s;
        QTest::newRow("both") << u"/lib/libX.so.1"_s << u"/linked/libX.so.1.0.0"_s;
    }
    void entriesUnderAnotherNameOfTheFileAreItsOwn()
    {
        QFETCH(QString, registered);
        QFETCH(QString, loaded);
        makeLibrary();
        tavrin::registerClasses(m_folder->path() + registered);
        write(content() + "\n[TVBoundControls.Old]\nLibrary=" + (m_folder->path() + registered).toUtf8() +
              "\n");
        tavrin::registerClasses(m_folder->path() + loaded);
        QVERIFY(!content().contains("Old"));
        tavrin::registerClasses(m_folder->path() + registered);
        tavrin::unregisterClasses(m_folder->path() + loaded);
        QVERIFY(!QFile::exists(path()));
    }

    void whatExistsNoLongerIsComparedByItsText()
    {
        makeLibrary();
        const QString gone = m_folder->path() + u"/lib/libY.so"_s;
        tavrin::registerClasses(gone);
        const QByteArray before = content();
        tavrin::unregisterClasses(m_folder->path() + u"/lib/libZ.so"_s);
        QCOMPARE(content(), before);
        tavrin::unregisterClasses(m_folder->path() + u"/lib/libX.so"_s);
        QCOMPARE(content(), before);
        tavrin::unregisterClasses(gone);
        QVERIFY(!QFile::exists(path()));
    }

    void anEntryWithoutAFolderIsAnotherLibrarys()
    {
        makeLibrary();
        const QString here = QDir::currentPath();
        const auto back = qScopeGuard([&] { QDir::setCurrent(here); });
        QVERIFY(QDir::setCurrent(m_folder->path() + u"/lib"_s));
        const QByteArray other = "[Other.Thing]\nLibrary=libX.so\n"_ba;
        write(other);
        tavrin::unregisterClasses(m_folder->path() + u"/lib/libX.so"_s);
        QCOMPARE(content(), other);
    }

    void unregisteringTheLastRemovesTheFile()
    {
        QCOMPARE(DllRegisterServer(), TV_S_OK);
        QVERIFY(QFile::exists(path()));
        QCOMPARE(DllUnregisterServer(), TV_S_OK);
        QVERIFY(!QFile::exists(path()));
    }

    void unregisteringWhatIsNotRegisteredSucceeds()
    {
        QCOMPARE(DllUnregisterServer(), TV_S_OK);
        QVERIFY(!QFile::exists(path()));
        QVERIFY(QDir(m_folder->path()).isEmpty());
    }

    void aDamagedFileIsRefusedAndStays_data()
    {
        QTest::addColumn<QByteArray>("damaged");
        QTest::addColumn<QString>("where");
        QTest::newRow("no entry") << OtherLibrary + "garbage\n"
                                  << u", line 6: neither a heading nor an entry"_s;
        QTest::newRow("no key") << "[A]\n=x\n"_ba << u", line 2: neither a heading nor an entry"_s;
        QTest::newRow("no heading") << "Library=/a\n"_ba << u", line 1: an entry without a heading"_s;
        QTest::newRow("cut heading") << "[A\n"_ba << u", line 1: a heading without an end"_s;
        QTest::newRow("twice") << "[A]\n[A]\n"_ba << u", line 2: a second group A"_s;
        QTest::newRow("no UTF-8") << "[A]\nLibrary=\xff\n"_ba << u": it is no text"_s;
        QTest::newRow("zeros") << QByteArray(16, '\0') << u": it is no text"_s;
    }
    void aDamagedFileIsRefusedAndStays()
    {
        QFETCH(QByteArray, damaged);
        QFETCH(QString, where);
        write(damaged);
        for (const auto change : {DllRegisterServer, DllUnregisterServer}) {
            QCOMPARE(change(), TV_E_REGISTRATION);
            QCOMPARE(lastDescription(), u"The file of registrations is damaged: "_s + path() + where);
            QCOMPARE(content(), damaged);
        }
    }

    void linesOfAnotherSystemAreRead()
    {
        write("[Other.Thing]\r\nLibrary=C:/other.dll\r\n");
        QCOMPARE(DllRegisterServer(), TV_S_OK);
        QVERIFY(content().startsWith("[Other.Thing]\nLibrary=C:/other.dll\n"));
    }

    void aFolderThatCannotBeMadeIsToldOf()
    {
        qputenv("XDG_DATA_HOME", "/proc/self");
        QCOMPARE(DllRegisterServer(), TV_E_CANNOTWRITE);
        QVERIFY2(lastDescription().contains(u"/proc/self/TVBoundControls/components.ini"_s),
                 qPrintable(lastDescription()));
        QCOMPARE(DllUnregisterServer(), TV_S_OK); // nothing is registered there
    }

    void aFileThatCannotBeReplacedIsToldOfAndStays()
    {
        write({});
        QVERIFY(QFile::remove(path()));
        QVERIFY(QDir().mkpath(path() + u"/inside"_s)); // a folder bears the file's name
        QCOMPARE(DllRegisterServer(), TV_E_REGISTRATION);
        QVERIFY(QDir(path() + u"/inside"_s).exists());
    }

    void nothingButTheFileIsLeftInTheFolder()
    {
        QCOMPARE(DllRegisterServer(), TV_S_OK);
        const QStringList files =
            QDir(QFileInfo(path()).path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
        QCOMPARE(files, QStringList({u"components.ini"_s}));
    }

private:
    /// lib/libX.so.1.0.0, two links to it, and a link to its folder.
    void makeLibrary() const
    {
        const QString folder = m_folder->path() + u"/lib"_s;
        QVERIFY(QDir().mkpath(folder));
        QFile file(folder + u"/libX.so.1.0.0"_s);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(QFile::link(u"libX.so.1.0.0"_s, folder + u"/libX.so.1"_s));
        QVERIFY(QFile::link(u"libX.so.1"_s, folder + u"/libX.so"_s));
        QVERIFY(QFile::link(u"lib"_s, m_folder->path() + u"/linked"_s));
    }

    QString path() const { return m_folder->filePath(u"TVBoundControls/components.ini"_s); }

    QByteArray content() const
    {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    void write(const QByteArray& text) const
    {
        QVERIFY(QDir().mkpath(QFileInfo(path()).path()));
        QFile file(path());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

TAVRIN_TEST_MAIN(tst_Registration)
#include "tst_Registration.moc"
