// Selecting through a hundred photographs of a record by the Down key, until each is painted: the first time,
// when their thumbnails are made and kept beside the attachments, and any later time. The rival is the plain
// way: each photograph is read, scaled down by Qt and painted, which keeps nothing.

#include "Ratios.h"
#include "attachments/section/Attachments.h"
#include "base/failure/Error.h"
#include "host/records/RecordStore.h"
#include "host/samples/SampleData.h"
#include "host/services/ReferenceHost.h"
#include "host/store/AttachmentStore.h"
#include "widgets/lists/ListView.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QTemporaryDir>

#include <cstdio>

using namespace tavrin;
using namespace Qt::StringLiterals;

namespace {

constexpr int Photographs = 100;
constexpr QSize PhotographSize(2400, 1800);

void check(bool done, const char* what)
{
    if (!done)
        throw Error(QStringLiteral("%1 failed").arg(QString::fromLatin1(what)));
}

/// A photograph's worth of detail, as a JPEG.
void writePhotograph(const QString& path, int number)
{
    QImage photograph(PhotographSize, QImage::Format_RGB32);
    for (int y = 0; y < photograph.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(photograph.scanLine(y));
        for (int x = 0; x < photograph.width(); ++x)
            line[x] = qRgb((x * 3 + y) & 255, (x ^ y) & 255, (x / 8 + y / 4 + number * 40) & 255);
    }
    check(photograph.save(path, "jpg", 85), "writing a photograph");
}

void press(QWidget& widget, Qt::Key key)
{
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, key, Qt::NoModifier);
        QApplication::sendEvent(&widget, &event);
    }
    QApplication::processEvents();
}

/// A workstation with a record of the photographs, whose files lie in the attachments folder.
class Station
{
public:
    Station()
        : m_database(Database::open(m_folder.filePath(u"records.db"_s)))
    {
        SampleData().fillOnce(*m_database);
        const QString thumbnailer =
            QCoreApplication::applicationDirPath() + QStringLiteral("/../bin/tavrin_thumbnailer");
        check(QFileInfo::exists(thumbnailer), "finding the program that makes thumbnails");
        m_host = std::make_unique<ReferenceHost>(
            *m_database, ReferenceHostOptions{u"admin"_s, m_folder.path(), m_folder.path(), thumbnailer});
        m_installation.emplace(*m_host);
        m_records.emplace(*m_database);
        m_record = m_records->create();
        const QString month = m_host->attachmentFile(u"attachments\\2014\\03"_s);
        check(QDir().mkpath(month), "making the attachments folder");
        const RecordCollectionPtr rows = m_record->collection(u"Attachments"_s);
        for (int i = 0; i < Photographs; ++i) {
            const QString name = u"20160201130507_%1.jpg"_s.arg(i);
            files << month + u'/' + name;
            writePhotograph(files.last(), i);
            const tvTableRowPtr row = rows->NewItem();
            fieldOf(*row, u"FileName"_s)->SetValue(u"2014\\03\\"_s + name);
            fieldOf(*row, u"OriginalFileName"_s)->SetValue(name);
            rows->Add(row);
        }
    }

    /// Shows the record and walks through its lines.
    void walk(Attachments& control)
    {
        static_cast<BoundSection&>(control).ReadData(m_record);
        auto* list = control.findChild<ListView*>();
        check(list != nullptr, "finding the list");
        press(*list, Qt::Key_Home);
        for (int i = 1; i < Photographs; ++i)
            press(*list, Qt::Key_Down);
    }
    void forgetThumbnails() const
    {
        const QDir base(QFileInfo(files.first()).path() + u"/../.."_s);
        check(QDir(base.filePath(u".thumbnails"_s)).removeRecursively(), "removing the thumbnails");
    }

    QStringList files;

private:
    QTemporaryDir m_folder;
    std::unique_ptr<Database> m_database;
    std::unique_ptr<ReferenceHost> m_host;
    std::optional<HostInstallation> m_installation;
    std::optional<RecordStore> m_records;
    RecordPtr m_record;
};

Station& station()
{
    static Station only;
    return only;
}

void measure(benchmark::State& state, bool first)
{
    Station& workstation = station();
    Attachments control;
    control.resize(900, 420);
    control.show();
    workstation.walk(control);
    for (auto _ : state) {
        if (first)
            workstation.forgetThumbnails();
        workstation.walk(control);
    }
}

void measureRival(benchmark::State& state)
{
    QListWidget list;
    QLabel picture;
    for (const QString& file : station().files)
        list.addItem(QFileInfo(file).fileName());
    QObject::connect(&list, &QListWidget::currentRowChanged, &picture, [&](int row) {
        QImageReader reader(station().files.at(row));
        reader.setScaledSize(PhotographSize.scaled(picture.size(), Qt::KeepAspectRatio));
        picture.setPixmap(QPixmap::fromImage(reader.read()));
    });
    picture.resize(90, 120);
    list.show();
    picture.show();
    for (auto _ : state) {
        list.setCurrentRow(0);
        for (int i = 1; i < Photographs; ++i)
            press(list, Qt::Key_Down);
    }
}

void FirstTime(benchmark::State& state)
{
    measure(state, true);
}
void FirstTime_Rival(benchmark::State& state)
{
    measureRival(state);
}
void LaterTime(benchmark::State& state)
{
    measure(state, false);
}
void LaterTime_Rival(benchmark::State& state)
{
    measureRival(state);
}

} // namespace

BENCHMARK(FirstTime)->Arg(Photographs)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(FirstTime_Rival)->Arg(Photographs)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(LaterTime)->Arg(Photographs)->Iterations(5)->Unit(benchmark::kMillisecond);
BENCHMARK(LaterTime_Rival)->Arg(Photographs)->Iterations(5)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    try {
        return tavrin::bench::run(argc, argv);
    } catch (const Error& error) {
        std::fprintf(stderr, "%s\n", qPrintable(error.Description));
        return 1;
    }
}
