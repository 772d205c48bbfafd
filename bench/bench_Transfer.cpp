// Bringing files into the attachments folder and fetching them again. The rivals are cp with sync, which
// flushes but compares nothing, and also cp alone for what is fetched, which need not be flushed. Both take
// turns, since disks vary from one second to the next.
//
//     bench_Transfer [--mib=SIZE] [--files=NUMBER] [--rounds=NUMBER] [--in=FOLDER]

#include "base/failure/Error.h"
#include "host/samples/SampleData.h"
#include "host/services/ReferenceHost.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

using namespace tavrin;

namespace {

constexpr qint64 MiB = 1 << 20;
constexpr qint64 SmallFile = 100 << 10;

void check(bool done, const char* what)
{
    if (!done)
        throw Error(QStringLiteral("%1 failed").arg(QString::fromLatin1(what)));
}

void shell(const char* script, const QStringList& arguments)
{
    check(QProcess::execute(
              QStringLiteral("sh"),
              QStringList{QStringLiteral("-ec"), QString::fromLatin1(script), QStringLiteral("sh")} +
                  arguments) == 0,
          script);
}

void writeSource(const QString& path, qint64 size)
{
    QByteArray block(MiB, '\0');
    for (qsizetype i = 0; i < block.size(); ++i)
        block[i] = static_cast<char>(i * i >> 7);
    QFile file(path);
    check(file.open(QIODevice::WriteOnly), "writing a source");
    for (qint64 left = size; left > 0; left -= block.size())
        check(file.write(block.constData(), std::min<qint64>(left, block.size())) > 0, "writing a source");
}

double milliseconds(const std::function<void()>& action)
{
    QElapsedTimer timer;
    timer.start();
    action();
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

double median(std::vector<double> times)
{
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

/// Peak of the program's memory since `startPeak`, in KiB.
void startPeak()
{
    QFile file(QStringLiteral("/proc/self/clear_refs"));
    if (file.open(QIODevice::WriteOnly))
        file.write("5");
}

qint64 peak()
{
    QFile file(QStringLiteral("/proc/self/status"));
    check(file.open(QIODevice::ReadOnly), "reading the memory's peak");
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).simplified().split(' ').constFirst().toLongLong();
    }
    return 0;
}

class Bench
{
public:
    Bench(const QString& folder, int rounds)
        : m_folder(folder)
        , m_rounds(rounds)
        , m_database(Database::open(folder + QStringLiteral("/records.db")))
    {
        SampleData().fillOnce(*m_database);
        m_host = std::make_unique<ReferenceHost>(
            *m_database, ReferenceHostOptions{QStringLiteral("admin"), folder, folder});
        qputenv("TMPDIR", QFile::encodeName(folder)); // copies on the same disk
    }

    void large(qint64 size)
    {
        const QString source = m_folder + QStringLiteral("/large");
        const QString copy = m_folder + QStringLiteral("/copy");
        writeSource(source, size);
        const QString name = QStringLiteral("upload of %1 MiB").arg(size / MiB);
        compare(
            name, [&] { upload(source, QStringLiteral("large")); },
            [&] {
                shell("cp \"$1\" \"$2\"; sync \"$2\" \"$3\"", {source, copy, m_folder});
            });
        upload(source, QStringLiteral("large"));
        const auto fetch = [&] { download(QStringLiteral("large")); };
        compare(QStringLiteral("download of %1 MiB, beside cp and sync").arg(size / MiB), fetch, [&] {
            shell("cp \"$1\" \"$2\"; sync \"$2\"", {source, copy});
        });
        compare(QStringLiteral("download of %1 MiB, beside cp alone").arg(size / MiB), fetch, [&] {
            shell("cp \"$1\" \"$2\"", {source, copy});
        });
        clear();
        QFile::remove(source);
    }

    void small(int count)
    {
        const QString sources = m_folder + QStringLiteral("/small");
        const QString copies = m_folder + QStringLiteral("/copies");
        QDir().mkpath(sources);
        for (int i = 0; i < count; ++i)
            writeSource(sources + QStringLiteral("/%1").arg(i), SmallFile);
        const auto uploadAll = [&] {
            for (int i = 0; i < count; ++i)
                upload(sources + QStringLiteral("/%1").arg(i), QString::number(i));
        };
        compare(QStringLiteral("upload of %1 files, beside cp and sync of each").arg(count), uploadAll, [&] {
            QDir().mkpath(copies);
            shell("for file in \"$1\"/*; do cp \"$file\" \"$2\"; sync \"$2/${file##*/}\" \"$2\"; done",
                  {sources, copies});
        });
        compare(QStringLiteral("upload of %1 files, beside one cp and sync of all").arg(count), uploadAll,
                [&] {
                    shell("cp -r \"$1\" \"$2\"; sync -f \"$2\"", {sources, copies});
                });
        uploadAll();
        const auto fetchAll = [&] {
            for (int i = 0; i < count; ++i)
                download(QString::number(i));
        };
        compare(QStringLiteral("download of %1 files, beside one cp and sync of all").arg(count), fetchAll,
                [&] {
                    shell("cp -r \"$1\" \"$2\"; sync -f \"$2\"", {sources, copies});
                });
        compare(QStringLiteral("download of %1 files, beside one cp alone").arg(count), fetchAll, [&] {
            shell("cp -r \"$1\" \"$2\"", {sources, copies});
        });
    }

private:
    void upload(const QString& source, const QString& name)
    {
        m_host->newUploader()->Upload(source, QStringLiteral("attachments\\2014\\03\\") + name, {});
    }
    void download(const QString& name)
    {
        m_host->newDownloader()->Download(QStringLiteral("attachments\\2014\\03\\") + name);
    }

    /// What a round has made, but for what the first one was given.
    void clear(bool keepStored = false) const
    {
        shell("rm -rf \"$1\"/copy \"$1\"/copies \"$1\"/tavrin-download-*", {m_folder});
        if (!keepStored)
            shell("rm -rf \"$1\"/attachments", {m_folder});
        shell("sync -f \"$1\"", {m_folder});
    }

    void compare(const QString& name, const std::function<void()>& own, const std::function<void()>& rival)
    {
        std::vector<double> ownTimes;
        std::vector<double> rivalTimes;
        qint64 growth = 0;
        const bool keepStored = name.startsWith(QStringLiteral("download"));
        for (int round = 0; round < m_rounds; ++round) {
            clear(keepStored);
            rivalTimes.push_back(milliseconds(rival));
            clear(keepStored);
            startPeak();
            const qint64 before = peak();
            ownTimes.push_back(milliseconds(own));
            growth = std::max(growth, peak() - before);
        }
        clear(keepStored);
        const double ownTime = median(ownTimes);
        const double rivalTime = median(rivalTimes);
        std::printf("%-52s %9.1f ms  rival %9.1f ms  ratio %5.2f  throughput %5.2f  memory +%lld KiB\n",
                    qPrintable(name), ownTime, rivalTime, ownTime / rivalTime, rivalTime / ownTime,
                    static_cast<long long>(growth));
        std::fflush(stdout);
    }

    QString m_folder;
    int m_rounds;
    std::unique_ptr<Database> m_database;
    std::unique_ptr<ReferenceHost> m_host;
};

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QCommandLineOption mib(QStringLiteral("mib"), QStringLiteral("Size of the large file (64)."),
                                 QStringLiteral("size"), QStringLiteral("64"));
    const QCommandLineOption files(QStringLiteral("files"), QStringLiteral("Number of small files (100)."),
                                   QStringLiteral("number"), QStringLiteral("100"));
    const QCommandLineOption rounds(QStringLiteral("rounds"),
                                    QStringLiteral("Rounds; the median counts (3)."),
                                    QStringLiteral("number"), QStringLiteral("3"));
    const QCommandLineOption in(QStringLiteral("in"), QStringLiteral("Folder on the disk to be used."),
                                QStringLiteral("folder"), QDir::tempPath());
    QCommandLineParser parser;
    parser.addOptions({mib, files, rounds, in});
    parser.addHelpOption();
    parser.process(application);
    try {
        const QTemporaryDir folder(parser.value(in) + QStringLiteral("/bench-transfer-XXXXXX"));
        check(folder.isValid(), "making a folder");
        Bench bench(folder.path(), std::max(1, parser.value(rounds).toInt()));
        bench.large(std::max<qint64>(1, parser.value(mib).toLongLong()) * MiB);
        bench.small(std::max(1, parser.value(files).toInt()));
        return 0;
    } catch (const Error& error) {
        std::fprintf(stderr, "%s\n", qPrintable(error.Description));
        return 1;
    }
}
