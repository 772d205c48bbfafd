// Bringing the list of the attachments in step with a record, until it is painted: for a record of which no
// line is there yet, and for one that has not changed. The rival is the plain way: a QTreeWidget that is
// emptied and filled with the same rows.

#include "Ratios.h"
#include "attachments/files/FileKindIcons.h"
#include "attachments/files/modAttachments.h"
#include "attachments/section/Attachments.h"
#include "base/values/Variant.h"
#include "support/Fakes.h"
#include "testing/FakeHost.h"

#include <QApplication>
#include <QDateTime>
#include <QTreeWidget>

using namespace tavrin;
using namespace Qt::StringLiterals;
using tavrin::test::FakeCollection;
using tavrin::test::FakeRecord;

namespace {

/// Two records of as many files, whose numbers differ.
struct Records
{
    explicit Records(int count)
        : installation(host)
    {
        for (int i = 0; i < 2; ++i) {
            records[i] = std::make_shared<FakeRecord>();
            rows[i] = fill(1 + i * 100000, count);
            records[i]->SetItem(u"Attachments"_s, rows[i]);
        }
        host.state().log.clear();
    }
    static std::shared_ptr<FakeCollection> fill(int first, int count)
    {
        auto files = std::make_shared<FakeCollection>(
            QStringList{u"SeqNo"_s, u"FileName"_s, u"OriginalFileName"_s, u"FolderNo"_s, u"Description"_s,
                        u"Notes"_s, u"UserId"_s, u"UserDate"_s});
        for (int key = first; key < first + count; ++key) {
            const tvTableRowPtr row = files->NewItem();
            const QString suffix = key % 2 == 0 ? u"png"_s : u"docx"_s;
            const auto put = [&](const QString& field, const QVariant& value) {
                fieldOf(*row, field)->SetValue(value);
            };
            put(u"SeqNo"_s, key);
            put(u"FileName"_s, u"2014\\03\\20160201130507_File %1.%2"_s.arg(key).arg(suffix));
            put(u"OriginalFileName"_s, u"File %1.%2"_s.arg(key).arg(suffix));
            put(u"Description"_s, u"What file %1 shows"_s.arg(key));
            put(u"UserId"_s, u"user%1"_s.arg(key % 20));
            put(u"UserDate"_s, QDateTime({2016, 2, 1}, {13, 5, 7}).addSecs(key));
            files->Add(row);
        }
        files->SetPosition(1);
        return files;
    }

    test::FakeHost host;
    HostInstallation installation;
    std::shared_ptr<FakeRecord> records[2];
    std::shared_ptr<FakeCollection> rows[2];
};

struct Section
{
    explicit Section(int count)
        : records(count)
    {
        control.resize(900, 420);
        control.show();
        read(0);
    }
    void read(int record)
    {
        static_cast<BoundSection&>(control).ReadData(records.records[record]);
        QApplication::processEvents(); // the list is painted
        records.host.state().log.clear();
    }
    Records records;
    Attachments control;
};

struct Rival
{
    explicit Rival(int count)
        : records(count)
        , file(FileKindIcons::padded(FileKindIcons::file(), 32, 32))
        , image(FileKindIcons::padded(FileKindIcons::image(), 32, 32))
    {
        tree.setColumnCount(5);
        tree.setUniformRowHeights(true);
        tree.setIconSize({32, 32});
        tree.resize(900, 170);
        tree.show();
        read(0);
    }
    void read(int record)
    {
        tree.clear();
        for (const tvTableRowPtr& row : *records.rows[record]) {
            const auto text = [&](const QString& field) { return ToText(fieldOf(*row, field)->Value()); };
            const QString name = modAttachments::GetAttachmentDisplayName(*row);
            const QString date = fieldOf(*row, u"UserDate"_s)
                                     ->Value()
                                     .toDateTime()
                                     .toString(records.host.hostServices().DateDisplayFormat());
            auto* item = new QTreeWidgetItem(
                {text(u"SeqNo"_s), name, text(u"Description"_s), text(u"UserId"_s), date});
            item->setIcon(1, modAttachments::IsImageAttachment(*row) ? image : file);
            item->setToolTip(1, name);
            item->setToolTip(2, text(u"Description"_s));
            tree.addTopLevelItem(item);
        }
        tree.setCurrentItem(tree.topLevelItem(0));
        QApplication::processEvents();
        records.host.state().log.clear();
    }
    Records records;
    QIcon file;
    QIcon image;
    QTreeWidget tree;
};

template <typename Form>
void measure(benchmark::State& state, bool changes)
{
    Form form(static_cast<int>(state.range(0)));
    int record = 0;
    for (auto _ : state) {
        record = changes ? 1 - record : record;
        form.read(record);
    }
}

void AnotherRecord(benchmark::State& state)
{
    measure<Section>(state, true);
}

void AnotherRecord_Rival(benchmark::State& state)
{
    measure<Rival>(state, true);
}

void SameRecord(benchmark::State& state)
{
    measure<Section>(state, false);
}

void SameRecord_Rival(benchmark::State& state)
{
    measure<Rival>(state, false);
}

} // namespace

BENCHMARK(AnotherRecord)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(AnotherRecord_Rival)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(SameRecord)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(SameRecord_Rival)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    return tavrin::bench::run(argc, argv);
}
