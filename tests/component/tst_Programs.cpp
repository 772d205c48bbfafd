#include "component/ProgramTest.h"
#include "support/OwnDisplay.h"

#include <QDir>

using namespace Qt::StringLiterals;
using namespace tavrin::test;

/// Programs that know the library by nothing but what is registered: those of the examples, and one that
/// calls where no Qt is.
class tst_Programs : public tavrin::test::ProgramTest
{
    Q_OBJECT

private Q_SLOTS:
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
        const QString source = folderPath(u"header.c"_s);
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
        const Outcome made =
            run(u"make"_s,
                {u"-B"_s, u"-f"_s, Root + u"/examples/c/Makefile"_s,
                 u"CFLAGS=-Werror -I"_s + Root + u"/src"_s, u"HEADERS="_s + Root + u"/src/component"_s},
                exampleFolder());
        QVERIFY2(made.code == 0, qPrintable(made.output));
        const Outcome outcome = run(exampleFolder() + u"/agency"_s, {u"--check"_s});
        QVERIFY2(outcome.code == 0, qPrintable(outcome.output));
        QVERIFY2(outcome.output.contains(u"Change: \"South Sheriff's Office\""_s),
                 qPrintable(outcome.output));
    }

    void theExampleInPythonRuns()
    {
        const Outcome outcome = runPython();
        QVERIFY2(outcome.code == 0, qPrintable(outcome.output));
        QVERIFY2(outcome.output.contains(u"Change: \"South Sheriff's Office\""_s),
                 qPrintable(outcome.output));
    }

    void aWindowThatIsNoneIsRefused()
    {
        if (const QString missing = OwnDisplay::missing(); !missing.isEmpty())
            QSKIP(qPrintable(missing));
        OwnDisplay display;
        const QString name = display.start();
        QVERIFY(!name.isEmpty());
        const Outcome outcome = run(program(), {}, {},
                                    {{u"DISPLAY"_s, name},
                                     {u"QT_QPA_PLATFORM"_s, u"xcb"_s},
                                     {u"TV_TEST_WINDOW"_s, QString::number(0x123456)}});
        QVERIFY2(outcome.code == 0, qPrintable(outcome.output));
    }

private:
    QString exampleFolder() const
    {
        const QString folder = folderPath(u"example"_s);
        QDir().mkpath(folder);
        QFile::copy(Root + u"/examples/c/agency.c"_s, folder + u"/agency.c"_s);
        return folder;
    }
};

TAVRIN_TEST_MAIN(tst_Programs)
#include "tst_Programs.moc"
