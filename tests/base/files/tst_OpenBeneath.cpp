#include "base/files/FileFaults.h"
#include "base/files/OpenBeneath.h"
#include "support/TestCase.h"

#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <QTemporaryDir>

#include <cerrno>
#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace tavrin;
using tavrin::test::codeOf;

namespace {

using Names = QList<QByteArray>;

} // namespace

Q_DECLARE_METATYPE(tavrin::Walk)

class tst_OpenBeneath : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init() override
    {
        TestCase::init();
        m_folder = std::make_unique<QTemporaryDir>();
        const QDir root(m_folder->path());
        QVERIFY(root.mkpath(u"store/a/b"_s) && root.mkpath(u"outside"_s));
        put(u"store/a/b/file"_s, "inside");
        put(u"outside/secret"_s, "secret");
        link(u"../outside/secret"_s, u"store/link"_s);
        link(u"a"_s, u"store/linked"_s);
        link(m_folder->filePath(u"outside"_s), u"store/a/out"_s);
        m_store = openFolder(QFile::encodeName(m_folder->filePath(u"store"_s)));
    }

    void theSameIsReachedAndRefusedBothWays_data()
    {
        QTest::addColumn<Walk>("walk");
        QTest::addColumn<Names>("names");
        QTest::addColumn<int>("code");
        const auto both = [](const char* name, const Names& names, int code) {
            QTest::addRow("%s, by the kernel", name) << Walk::Kernel << names << code;
            QTest::addRow("%s, step by step", name) << Walk::StepByStep << names << code;
        };
        both("a file", {"a", "b", "file"}, 0);
        both("a folder", {"a", "b"}, 0);
        both("nothing there", {"a", "c"}, ENOENT);
        both("nothing there on the way", {"c", "file"}, ENOENT);
        both("below a file", {"a", "b", "file", "x"}, ENOTDIR);
        both("a link to a file outside", {"link"}, ELOOP);
        both("a link to a folder inside", {"linked", "b", "file"}, ELOOP);
        both("a link to a folder outside", {"a", "out", "secret"}, ELOOP);
        both("upwards", {"..", "outside", "secret"}, EINVAL);
        both("upwards in the middle", {"a", "..", "..", "outside", "secret"}, EINVAL);
        both("here", {".", "a"}, EINVAL);
        both("an empty name", {"", "a"}, EINVAL);
        both("a slash in a name", {"a/b", "file"}, EINVAL);
        both("a NUL in a name", {QByteArray("a\0b", 3)}, EINVAL);
        both("a name that is too long", {QByteArray(256, 'n')}, ENAMETOOLONG);
    }
    void theSameIsReachedAndRefusedBothWays()
    {
        QFETCH(Walk, walk);
        QFETCH(Names, names);
        QFETCH(int, code);
        Descriptor found;
        QCOMPARE(codeOf([&] { found = openBeneath(m_store, names, O_RDONLY, walk); }), code);
        QCOMPARE(found.isOpen(), code == 0);
        if (code != 0)
            return;
        struct stat reached = {};
        struct stat expected = {};
        QCOMPARE(::fstat(found.number(), &reached), 0);
        const QByteArray path = QFile::encodeName(m_folder->filePath(u"store/"_s)) + names.join('/');
        QCOMPARE(::stat(path.constData(), &expected), 0);
        QCOMPARE(reached.st_ino, expected.st_ino);
    }

    void noNamesAreTheFolderItself_data()
    {
        QTest::addColumn<Walk>("walk");
        QTest::newRow("by the kernel") << Walk::Kernel;
        QTest::newRow("step by step") << Walk::StepByStep;
    }
    void noNamesAreTheFolderItself()
    {
        QFETCH(Walk, walk);
        QVERIFY(openBeneath(m_store, {}, O_RDONLY | O_DIRECTORY, walk).isOpen());
    }

    void missingFoldersAreMadeAndThoseThatAreThereAreTaken()
    {
        const Descriptor made = makeFoldersBeneath(m_store, {"a", "2014", "03"});
        put(u"store/a/2014/03/x"_s, "x");
        QVERIFY(openBeneath(made, {"x"}, O_RDONLY).isOpen());
        QVERIFY(openBeneath(makeFoldersBeneath(m_store, {"a", "2014", "03"}), {"x"}, O_RDONLY).isOpen());
    }

    void aNewFolderHasTheModeOfTheBaseFolderWhateverTheMaskSays_data()
    {
        QTest::addColumn<uint>("mode");
        QTest::newRow("everybody's") << 0777U;
        QTest::newRow("a group's, whose members share what they make") << 02770U;
        QTest::newRow("one person's") << 0700U;
    }
    void aNewFolderHasTheModeOfTheBaseFolderWhateverTheMaskSays()
    {
        QFETCH(uint, mode);
        const mode_t before = ::umask(022);
        const auto restore = qScopeGuard([before] { ::umask(before); });
        QCOMPARE(::fchmod(m_store.number(), mode), 0);
        const auto modeOf = [](const Descriptor& folder) {
            struct stat status = {};
            return ::fstat(folder.number(), &status) == 0 ? status.st_mode & 07777U : 0U;
        };
        const Descriptor month = makeFoldersBeneath(m_store, {"2014", "03"});
        QCOMPARE(modeOf(month), mode);
        QCOMPARE(modeOf(openBeneath(m_store, {"2014"}, O_RDONLY)), mode);
        // A folder that is there stays as its owner wants it.
        QCOMPARE(::fchmod(month.number(), 0750), 0);
        QCOMPARE(modeOf(makeFoldersBeneath(m_store, {"2014", "03"})), 0750U);
    }

    void noFolderIsMadeBehindALinkNorInThePlaceOfAFile()
    {
        QCOMPARE(codeOf([this] { makeFoldersBeneath(m_store, {"a", "out", "new"}); }), ELOOP);
        QVERIFY(!QDir(m_folder->filePath(u"outside/new"_s)).exists());
        QCOMPARE(codeOf([this] { makeFoldersBeneath(m_store, {"a", "b", "file", "new"}); }), ENOTDIR);
        QCOMPARE(codeOf([this] { makeFoldersBeneath(m_store, {"..", "new"}); }), EINVAL);
    }

private:
    void put(const QString& name, const QByteArray& content) const
    {
        QFile file(m_folder->filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), content.size());
    }
    void link(const QString& target, const QString& name) const
    {
        QVERIFY(QFile::link(target, m_folder->filePath(name)));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    Descriptor m_store;
};

TAVRIN_TEST_MAIN(tst_OpenBeneath)
#include "tst_OpenBeneath.moc"
