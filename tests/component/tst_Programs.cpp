#include "component/CallResult.h"
#include "support/SanitizedLibrary.h"
#include "support/TestCase.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

struct Outcome
{
    int code;
    QString output;
};

const QString Root = QStringLiteral(TAVRIN_TESTS "/..");

bool isMissing(const char* program)
{
    return QStandardPaths::findExecutable(QString::fromLatin1(program)).isEmpty();
}

} // namespace

/// Programs that know the library by nothing but what is registered: those of the examples, and one that
/// calls where no Qt is.
class tst_Programs : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        for (const auto* needed : {"cc", "c++", "python3"}) {
            if (isMissing(needed))
                QSKIP(qPrintable(QString::fromLatin1(needed) + u" is not installed"_s));
        }
        QVERIFY(m_folder.isValid());
        const Outcome made =
            run(u"cc"_s, {u"-std=c99"_s, u"-pedantic"_s, u"-Wall"_s, u"-Wextra"_s, u"-Werror"_s,
                          u"-I"_s + Root + u"/src"_s, Root + u"/tests/component/programs.c"_s, u"-o"_s,
                          program(), u"-ldl"_s});
        QVERIFY2(made.code == 0, qPrintable(made.output));
    }
    void init() override
    {
        failOnUnexpectedWarnings();
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_folder.path()));
        const Outcome registered = callEntryPoint(u"DllRegisterServer"_s);
        QVERIFY2(registered.code == 0, qPrintable(registered.output));
    }
    void cleanup() override
    {
        QFile::remove(registrations());
        qunsetenv("XDG_DATA_HOME");
        TestCase::cleanup();
    }

    void theLibraryRegistersItselfWhereItIs()
    {
        QFile file(registrations());
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QString content = QString::fromUtf8(file.readAll());
        QCOMPARE(content.count(u"\nLibrary="_s + libraryPath() + u'\n'), 14);
        QCOMPARE(callEntryPoint(u"DllCanUnloadNow"_s).code, 0);
        QCOMPARE(callEntryPoint(u"DllUnregisterServer"_s).code, 0);
        QVERIFY(!QFile::exists(registrations()));
    }

    void theHeaderIsOneOfCAndOfOldCpp_data()
    {
        QTest::addColumn<QString>("compiler");
        QTest::addColumn<QStringList>("options");
        QTest::newRow("C99") << u"cc"_s << QStringList{u"-std=c99"_s, u"-xc"_s};
        QTest::newRow("C99 without the loader")
            << u"cc"_s << QStringList{u"-std=c99"_s, u"-xc"_s, u"-DTV_NO_LOADER"_s};
        QTest::newRow("C17") << u"cc"_s << QStringList{u"-std=c17"_s, u"-xc"_s};
        QTest::newRow("C++11") << u"c++"_s << QStringList{u"-std=c++11"_s, u"-xc++"_s};
        QTest::newRow("C++20") << u"c++"_s << QStringList{u"-std=c++20"_s, u"-xc++"_s};
    }
    void theHeaderIsOneOfCAndOfOldCpp()
    {
        QFETCH(QString, compiler);
        QFETCH(QStringList, options);
        const QString source = m_folder.filePath(u"header.c"_s);
        QFile file(source);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("#include \"component/TVBoundControls.h\"\n"
                   "int used(void);\nint used(void) { return TV_E_POINTER + (int)sizeof(TvVariant); }\n");
        file.close();
        const Outcome made =
            run(compiler, options + QStringList{u"-pedantic"_s, u"-Wall"_s, u"-Wextra"_s, u"-Werror"_s,
                                                u"-fsyntax-only"_s, u"-I"_s + Root + u"/src"_s, source});
        QVERIFY2(made.code == 0, qPrintable(made.output));
    }

    void aProgramWithoutQtStartsUsesAndEndsIt()
    {
        const Outcome outcome = run(program(), {});
        QVERIFY2(outcome.code == 0, qPrintable(outcome.output));
    }

    void theExampleInCRuns()
    {
        if (isMissing("make"))
            QSKIP("make is not installed");
        const Outcome made = run(u"make"_s,
                                 {u"-B"_s, u"-f"_s, Root + u"/examples/c/Makefile"_s, u"CFLAGS=-Werror"_s,
                                  u"HEADERS="_s + Root + u"/src/component"_s},
                                 exampleFolder());
        QVERIFY2(made.code == 0, qPrintable(made.output));
        const Outcome outcome = run(exampleFolder() + u"/agency"_s, {u"--check"_s});
        QVERIFY2(outcome.code == 0, qPrintable(outcome.output));
        QVERIFY2(outcome.output.contains(u"Change: \"South Sheriff's Office\""_s),
                 qPrintable(outcome.output));
    }

    void theExampleInPythonRuns()
    {
        const Outcome outcome = run(u"python3"_s, {Root + u"/examples/python/agency.py"_s, u"--check"_s});
        QVERIFY2(outcome.code == 0, qPrintable(outcome.output));
        QVERIFY2(outcome.output.contains(u"Change: \"South Sheriff's Office\""_s),
                 qPrintable(outcome.output));
    }

    void loadingTellsWhatIsWrong_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        QTest::addColumn<QString>("className");
        QTest::addColumn<int>("result");
        QTest::addColumn<QString>("text");
        const auto latLong = u"TVBoundControls.LatLong"_s;
        QTest::newRow("unknown class") << ""_ba
                                       << ""_ba << u"TVBoundControls.Nothing"_s << TV_E_CLASSNOTREGISTERED
                                       << u"The class is not registered"_s;
        QTest::newRow("other version")
            << "Version=1.0"_ba
            << "Version=2.0"_ba << latLong << TV_E_VERSION << u"of another version"_s;
        QTest::newRow("library gone") << "Library=/"_ba
                                      << "Library=/gone/"_ba << latLong << TV_E_LIBRARY << u"No such file"_s;
        QTest::newRow("another library")
            << QFile::encodeName(u"Library="_s + libraryPath()) << "Library=libc.so.6"_ba << latLong
            << TV_E_LIBRARY << u"no DllGetClassObject"_s;
        QTest::newRow("class gone") << "[TVBoundControls.LatLong]"_ba
                                    << "[TVBoundControls.Old]"_ba << u"TVBoundControls.Old"_s
                                    << TV_E_CLASSNOTAVAILABLE << u"does not have the class"_s;
    }
    void loadingTellsWhatIsWrong()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        QFETCH(QString, className);
        QFETCH(int, result);
        QFETCH(QString, text);
        QFile file(registrations());
        QVERIFY(file.open(QIODevice::ReadWrite));
        QByteArray content = file.readAll();
        QVERIFY(before.isEmpty() || content.contains(before));
        if (!before.isEmpty())
            content.replace(before, after);
        file.resize(0);
        file.write(content);
        file.close();
        const Outcome outcome = run(program(), {className, QString::number(result)});
        QVERIFY2(outcome.code == 0 && outcome.output.contains(text), qPrintable(outcome.output));
    }

    void withoutRegistrationsLoadingTellsWhere()
    {
        QVERIFY(QFile::remove(registrations()));
        const Outcome outcome =
            run(program(), {u"TVBoundControls.LatLong"_s, QString::number(TV_E_CLASSNOTREGISTERED)});
        QVERIFY2(outcome.code == 0 && outcome.output.contains(registrations()), qPrintable(outcome.output));
    }

private:
    QString program() const { return m_folder.filePath(u"programs"_s); }
    QString registrations() const { return m_folder.filePath(u"TVBoundControls/components.ini"_s); }
    QString exampleFolder() const
    {
        const QString folder = m_folder.filePath(u"example"_s);
        QDir().mkpath(folder);
        QFile::copy(Root + u"/examples/c/agency.c"_s, folder + u"/agency.c"_s);
        return folder;
    }
    static QString libraryPath() { return QStringLiteral(TAVRIN_COMPONENT); }

    /// In a program that knows nothing of it but the path.
    static Outcome callEntryPoint(const QString& name)
    {
        return run(u"python3"_s,
                   {u"-c"_s, u"import ctypes, sys; sys.exit(getattr(ctypes.CDLL('%1'), '%2')())"_s.arg(
                                 libraryPath(), name)});
    }

    /// Runs a program to its end and gives all that it has said.
    static Outcome run(const QString& name, const QStringList& arguments, const QString& folder = {})
    {
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        tavrin::test::letLoadSanitizedLibrary(environment);
        process.setProcessEnvironment(environment);
        if (!folder.isEmpty())
            process.setWorkingDirectory(folder);
        process.start(name, arguments);
        const bool ended = process.waitForFinished(120'000) && process.exitStatus() == QProcess::NormalExit;
        const QString output = QString::fromUtf8(process.readAll());
        return {ended ? process.exitCode() : -1, ended ? output : output + process.errorString()};
    }

    QTemporaryDir m_folder;
};

TAVRIN_TEST_MAIN(tst_Programs)
#include "tst_Programs.moc"
