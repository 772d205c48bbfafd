// Reading and writing the section of a suspect who has a relationship to every party, and to whom every
// second link is new when it is written. The rival is the plain way: QTreeWidget, and a walk over the link
// rows from the first for each party.

#include "Ratios.h"
#include "base/values/Variant.h"
#include "sections/SuspRelList.h"
#include "support/Fakes.h"
#include "testing/FakeHost.h"

#include <QApplication>
#include <QTest>
#include <QTreeWidget>

using namespace tavrin;
using namespace Qt::StringLiterals;
using tavrin::test::FakeCollection;
using tavrin::test::FakeRecord;

namespace {

struct Records
{
    explicit Records(int count)
        : installation(host)
        , count(count)
    {
        QList<TableValue> codes;
        for (int code = 1; code <= 30; ++code)
            codes.append({QString::number(code), u"Relationship %1"_s.arg(code), code});
        host.setTable(Tables::SuspectRelationship, codes);
        page->SetItem(u"SuspectBO"_s, suspectBO);
        page->SetItem(u"Victims"_s, parties);
        incident->SetItem(u"Suspects"_s, suspects);
        host.state().parents.insert(suspectBO.get(), incident);
        fieldOf(*suspects->AddNew(), u"SeqNo"_s)->SetValue(1);
        for (int i = 1; i <= count; ++i) {
            const tvTableRowPtr row = parties->AddNew();
            fieldOf(*row, u"SeqNo"_s)->SetValue(i);
            fieldOf(*row, u"VictimName"_s)->SetValue(u"Somebody %1"_s.arg(i));
        }
        link(1);
    }
    /// Links every `step`th party.
    void link(int step)
    {
        links = std::make_shared<FakeCollection>(
            QStringList{u"LinkNo"_s, u"VictimSeqNo"_s, u"SeqNo"_s, u"RelationNo"_s});
        suspectBO->SetItem(u"SuspectVictims"_s, links);
        for (int i = 1; i <= count; i += step) {
            const tvTableRowPtr row = links->AddNew();
            fieldOf(*row, u"VictimSeqNo"_s)->SetValue(i);
            fieldOf(*row, u"RelationNo"_s)->SetValue(1 + i % 30);
        }
        host.state().log.clear();
    }

    test::FakeHost host;
    HostInstallation installation;
    int count;
    std::shared_ptr<FakeRecord> page = std::make_shared<FakeRecord>();
    std::shared_ptr<FakeRecord> suspectBO = std::make_shared<FakeRecord>();
    std::shared_ptr<FakeRecord> incident = std::make_shared<FakeRecord>();
    std::shared_ptr<FakeCollection> suspects = std::make_shared<FakeCollection>();
    std::shared_ptr<FakeCollection> parties =
        std::make_shared<FakeCollection>(QStringList{u"SeqNo"_s, u"VictimName"_s});
    std::shared_ptr<FakeCollection> links;
};

struct Section
{
    explicit Section(int count)
        : records(count)
    {
        list.SetOtherCollectionTag(u"Victims"_s);
        list.SetOtherItemName(u"Victim"_s);
        list.SetOtherItemSeqName(u"VictimSeqNo"_s);
        list.resize(600, 300);
        list.show();
        section = &list;
        section->ReadData(records.page);
        QApplication::processEvents();
    }
    Records records;
    SuspRelList list;
    BoundSection* section;
};

struct Rival
{
    explicit Rival(int count)
        : records(count)
        , cache(records.host.newTableCodeCache())
    {
        tree.setColumnCount(4);
        tree.setUniformRowHeights(true);
        tree.resize(600, 300);
        tree.show();
        read();
        QApplication::processEvents();
    }
    tvTableRowPtr find(const QVariant& seqNo) const
    {
        for (const tvTableRowPtr& row : *records.links) {
            if (SameValue(fieldOf(*row, u"VictimSeqNo"_s)->Value(), seqNo))
                return row;
        }
        return nullptr;
    }
    void read()
    {
        tree.setSortingEnabled(false);
        tree.clear();
        for (const tvTableRowPtr& party : *records.parties) {
            const QVariant seqNo = fieldOf(*party, u"SeqNo"_s)->Value();
            const tvTableRowPtr link = find(seqNo);
            if (!link)
                continue;
            const QVariant code = fieldOf(*link, u"RelationNo"_s)->Value();
            tree.addTopLevelItem(new QTreeWidgetItem(
                {u"key_"_s + ToText(seqNo), ToText(code), ToText(fieldOf(*party, u"VictimName"_s)->Value()),
                 cache->GetDescription(Tables::SuspectRelationship, code)}));
        }
        tree.sortItems(0, Qt::AscendingOrder);
        tree.setCurrentItem(tree.topLevelItem(0));
    }
    void write()
    {
        Session& session = records.host.session();
        for (const tvTableRowPtr& party : *records.parties) {
            const tvFieldPtr seqNo = fieldOf(*party, u"SeqNo"_s);
            const auto found = tree.findItems(u"key_"_s + ToText(seqNo->Value()), Qt::MatchExactly, 0);
            if (found.isEmpty())
                continue;
            tvTableRowPtr link = find(seqNo->Value());
            if (!link) {
                link = records.links->AddNew();
                fieldOf(*link, u"VictimSeqNo"_s)->SetValue(session.MakeFieldReference(seqNo));
                fieldOf(*link, u"SeqNo"_s)
                    ->SetValue(session.MakeFieldReference(fieldOf(*records.suspects->Item(1), u"SeqNo"_s)));
            }
            fieldOf(*link, u"RelationNo"_s)->SetValue(found.first()->text(1));
        }
    }
    Records records;
    std::unique_ptr<TableCodeCache> cache;
    QTreeWidget tree;
};

void Read(benchmark::State& state)
{
    Section form(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        form.section->ReadData(form.records.page);
        QApplication::processEvents(); // the list is painted
        form.records.host.state().log.clear();
    }
}

void Read_Rival(benchmark::State& state)
{
    Rival form(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        form.read();
        QApplication::processEvents();
        form.records.host.state().log.clear();
    }
}

template <typename Form, typename Write>
void measureWrites(benchmark::State& state, Form& form, Write&& write)
{
    for (auto _ : state) {
        state.PauseTiming();
        form.records.link(2);
        state.ResumeTiming();
        write();
    }
}

void Write(benchmark::State& state)
{
    Section form(static_cast<int>(state.range(0)));
    measureWrites(state, form, [&] { form.section->WriteData(form.records.page); });
}

void Write_Rival(benchmark::State& state)
{
    Rival form(static_cast<int>(state.range(0)));
    measureWrites(state, form, [&] { form.write(); });
}

} // namespace

BENCHMARK(Read)->Arg(10)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(Read_Rival)->Arg(10)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(Write)->Arg(10)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(Write_Rival)->Arg(10)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    return tavrin::bench::run(argc, argv);
}
