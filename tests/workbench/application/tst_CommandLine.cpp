#include "host/database/Database.h"
#include "host/samples/SampleData.h"
#include "support/TestCase.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

using namespace tavrin;

namespace {

struct Outcome
{
    int exitCode;
    QString out;
    QString err;
};

/// Runs the workbench to its end. It runs offscreen by its own choice, as on a machine without a display.
Outcome start(const QStringList& arguments)
{
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        environment.remove(QString::fromLatin1(name));
    program.setProcessEnvironment(environment);
    program.start(QStringLiteral(TAVRIN_WORKBENCH), arguments);
    if (!program.waitForFinished(60000) || program.exitStatus() != QProcess::NormalExit)
        return {-1, {}, program.errorString()};
    return {program.exitCode(), QString::fromUtf8(program.readAllStandardOutput()),
            QString::fromUtf8(program.readAllStandardError())};
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString& path, const QByteArray& content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

} // namespace

/// What the program says and how it ends before a window can come up.
class tst_CommandLine : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aWrongCommandLineGivesTheUsageOnStandardErrorAndExitCode2_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("names");
        QTest::newRow("unknown option") << QStringList{QStringLiteral("--bogus")} << QStringLiteral("bogus");
        QTest::newRow("unknown theme")
            << QStringList{QStringLiteral("--theme"), QStringLiteral("pink")} << QStringLiteral("pink");
        QTest::newRow("missing value") << QStringList{QStringLiteral("--db")} << QStringLiteral("--db");
        QTest::newRow("stray argument")
            << QStringList{QStringLiteral("file.sqlite")} << QStringLiteral("file.sqlite");
        QTest::newRow("elsewhere of nowhere")
            << QStringList{QStringLiteral("--tour-elsewhere"), QStringLiteral("--tour"),
                           QStringLiteral("pictures")}
            << QStringLiteral("--tour-elsewhere");
        for (const char* option : {"--db", "--tour", "--forms", "--data", "--user", "--workstation"})
            QTest::addRow("empty value of %s", option)
                << QStringList{QString::fromLatin1(option), QString()} << QString::fromLatin1(option);
    }
    void aWrongCommandLineGivesTheUsageOnStandardErrorAndExitCode2()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, names);
        const Outcome outcome = start(arguments);
        QCOMPARE(outcome.exitCode, 2);
        QCOMPARE(outcome.out, QString());
        QVERIFY2(outcome.err.contains(names), qPrintable(outcome.err));
        QVERIFY2(outcome.err.contains(QStringLiteral("Usage:")), qPrintable(outcome.err));
    }

    void helpAndVersionGoToStandardOutputAndExitCode0_data()
    {
        QTest::addColumn<QString>("option");
        QTest::newRow("short") << QStringLiteral("-h");
        QTest::newRow("long") << QStringLiteral("--help");
        QTest::newRow("as the help itself offers") << QStringLiteral("--help-all");
    }
    void helpAndVersionGoToStandardOutputAndExitCode0()
    {
        QFETCH(QString, option);
        const Outcome help = start({option});
        QCOMPARE(help.exitCode, 0);
        QVERIFY(help.out.contains(QStringLiteral("--tour")));
        QVERIFY(!help.out.contains(QStringLiteral("--tour-elsewhere"))); // not for a person
        QVERIFY2(help.out.contains(QStringLiteral("/records.sqlite")), qPrintable(help.out));
        const Outcome version = start({QStringLiteral("--version")});
        QCOMPARE(version.exitCode, 0);
        QVERIFY(version.out.startsWith(QStringLiteral("workbench ")));
    }

    void withoutADisplayItSaysSoAndEndsWith1()
    {
        const QTemporaryDir folder;
        const Outcome outcome = start({QStringLiteral("--db"), folder.filePath(QStringLiteral("a.sqlite"))});
        QCOMPARE(outcome.exitCode, 1);
        QVERIFY2(outcome.err.contains(QStringLiteral("There is no display")), qPrintable(outcome.err));
    }

    void aValueThatCannotBeUsedIsNamedInOneSentenceAndNoDatabaseIsMadeAndExitCode1_data()
    {
        QTest::addColumn<QString>("option");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("says");
        QTest::newRow("no folder of forms") << QStringLiteral("--forms") << QStringLiteral("%1/nowhere")
                                            << QStringLiteral("There is no folder %1/nowhere.");
        QTest::newRow("a file as folder of forms") << QStringLiteral("--forms") << QStringLiteral("%1/file")
                                                   << QStringLiteral("There is no folder %1/file.");
        QTest::newRow("no folder of data") << QStringLiteral("--data") << QStringLiteral("%1/nowhere")
                                           << QStringLiteral("There is no folder %1/nowhere.");
        QTest::newRow("data without files")
            << QStringLiteral("--data") << QStringLiteral("%1")
            << QStringLiteral("The data folder %1 holds no code_tables/tables.csv.");
        QTest::newRow("unknown user") << QStringLiteral("--user") << QStringLiteral("nobody")
                                      << QStringLiteral("%1/records.sqlite has no user \"nobody\".");
        QTest::newRow("tour in a file") << QStringLiteral("--tour") << QStringLiteral("%1/file")
                                        << QStringLiteral("The folder %1/file could not be made.");
    }
    void aValueThatCannotBeUsedIsNamedInOneSentenceAndNoDatabaseIsMadeAndExitCode1()
    {
        QFETCH(QString, option);
        QFETCH(QString, value);
        QFETCH(QString, says);
        const QTemporaryDir folder;
        write(folder.filePath(QStringLiteral("file")), "a file");
        const QString path = folder.filePath(QStringLiteral("records.sqlite"));
        const auto filled = [&](QString text) { return text.replace(QStringLiteral("%1"), folder.path()); };
        const Outcome outcome = start({QStringLiteral("--db"), path, option, filled(value)});
        QCOMPARE(outcome.exitCode, 1);
        QCOMPARE(outcome.out, QString());
        QVERIFY2(outcome.err.contains(filled(says)), qPrintable(outcome.err));
        QVERIFY2(outcome.err.endsWith(QStringLiteral(".\n")), qPrintable(outcome.err));
        QVERIFY2(outcome.err.contains(option), qPrintable(outcome.err)); // what to do
        QCOMPARE(outcome.err.split(u'\n').filter(QStringLiteral("workbench: ")).size(), 1);
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList{QStringLiteral("file")});
    }

    void anUnknownUserLeavesADatabaseThatWasThereAsItWas()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("records.sqlite"));
        SampleData().fillOnce(*Database::open(path));
        const QByteArray before = contentOf(path);
        const Outcome outcome =
            start({QStringLiteral("--db"), path, QStringLiteral("--user"), QStringLiteral("nobody")});
        QCOMPARE(outcome.exitCode, 1);
        QCOMPARE(contentOf(path), before);
    }

    void theTourGoesItsOwnWayAndTellsWhereItsPicturesAre()
    {
        const QTemporaryDir folder;
        const QString pictures = folder.filePath(QStringLiteral("tour"));
        write(folder.filePath(QStringLiteral("general.json")), "{");
        const Outcome outcome = start(
            {QStringLiteral("--tour"), pictures, QStringLiteral("--forms"), folder.path(),
             QStringLiteral("--data"), folder.path(), QStringLiteral("--user"), QStringLiteral("nobody"),
             QStringLiteral("--db"), folder.filePath(QStringLiteral("records.sqlite"))});
        QCOMPARE(outcome.exitCode, 0);
        const auto steps = outcome.out.count(QStringLiteral("ok "));
        QVERIFY(steps > 0);
        QVERIFY2(outcome.out.endsWith(
                     QStringLiteral("\n%1 steps; the pictures are in %2\n").arg(steps).arg(pictures)),
                 qPrintable(outcome.out));
        QVERIFY(!QFile::exists(folder.filePath(QStringLiteral("records.sqlite"))));
    }

    void aDatabaseThatCannotBeUsedIsNamedAndLeftUntouchedAndExitCode1_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("says");
        QTest::newRow("not a database") << QStringLiteral("text") << QStringLiteral("not a");
        QTest::newRow("a newer version's") << QStringLiteral("newer") << QStringLiteral("newer version");
        QTest::newRow("a folder") << QStringLiteral("folder") << QStringLiteral("folder");
        QTest::newRow("in no folder") << QStringLiteral("missing") << QStringLiteral("folder");
        QTest::newRow("locked") << QStringLiteral("locked") << QStringLiteral("locked");
    }
    void aDatabaseThatCannotBeUsedIsNamedAndLeftUntouchedAndExitCode1()
    {
        QFETCH(QString, kind);
        QFETCH(QString, says);
        const QTemporaryDir folder;
        QString path = folder.filePath(QStringLiteral("records.sqlite"));
        std::unique_ptr<Database> other;
        if (kind == QLatin1String("text")) {
            write(path, "These are my notes, and no database.\n");
        } else if (kind == QLatin1String("newer")) {
            Database::open(path)->execute(QStringLiteral("INSERT INTO schema_migration (number, name, "
                                                         "applied_at) VALUES (9999, 'later', '2099-01-01')"));
        } else if (kind == QLatin1String("folder")) {
            path = folder.path();
        } else if (kind == QLatin1String("missing")) {
            path = folder.filePath(QStringLiteral("nowhere/records.sqlite"));
        } else {
            other = Database::open(path);
        }
        const QByteArray before = contentOf(path);
        if (other) // after the look at the file: closing it would take SQLite's lock away
            other->execute(QStringLiteral("BEGIN EXCLUSIVE"));
        const Outcome outcome = start({QStringLiteral("--db"), path});
        QCOMPARE(outcome.exitCode, 1);
        QCOMPARE(outcome.out, QString());
        QVERIFY2(outcome.err.contains(path), qPrintable(outcome.err));
        QVERIFY2(outcome.err.contains(says, Qt::CaseInsensitive), qPrintable(outcome.err));
        other.reset();
        QCOMPARE(contentOf(path), before);
    }
};

TAVRIN_TEST_MAIN(tst_CommandLine)
#include "tst_CommandLine.moc"
