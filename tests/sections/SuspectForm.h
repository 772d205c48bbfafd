#pragma once

#include "base/values/Variant.h"
#include "sections/SuspRelList.h"
#include "support/FailingRecords.h"
#include "support/RaisedError.h"
#include "support/TestCase.h"
#include "testing/FakeDesktop.h"
#include "testing/FakeHost.h"
#include "testing/Unhandled.h"
#include "widgets/lists/ListView.h"
#include "widgets/panels/PopupMenu.h"
#include "widgets/panels/TipPanel.h"

#include <QLineEdit>
#include <QTest>

namespace tavrin::test {

/// Why a save is refused; %1 tells how many relationships are missing.
inline const QString Incomplete =
    QStringLiteral("You must specify the relationship this suspect has to each victim before "
                   "continuing.\r\n\r\nYou need to add %1 to complete this section.");

/// Why a write is refused behind a read that has failed.
inline const QString NotRead =
    QStringLiteral("The relationships of the record could not be read, so none are written.");

/// Removes a row with the next save; rows count from 1.
inline void removeAt(tvTableCollection& rows, qint16 position)
{
    rows.SetPosition(position);
    rows.RemoveCurrent(false);
}

/// An incident with one suspect, Moss, and no victims, and the section of that suspect's relationships to the
/// victims on a form.
struct SuspectForm
{
    explicit SuspectForm(const QString& tag = QStringLiteral("IncidentBO.Victims"))
        : installation(host)
    {
        host.setTable(Tables::SuspectRelationship, {{QStringLiteral("F"), QStringLiteral("Friend"), 1},
                                                    {QStringLiteral("N"), QStringLiteral("Neighbor"), 2},
                                                    {QStringLiteral("S"), QStringLiteral("Stranger"), 3}});
        page->SetItem(QStringLiteral("SuspectBO"), suspectBO);
        page->SetItem(QStringLiteral("IncidentBO"), incident);
        page->SetItem(QStringLiteral("Victims"), victims);
        suspectBO->SetItem(QStringLiteral("SuspectVictims"), links);
        incident->SetItem(QStringLiteral("Suspects"), suspects);
        incident->SetItem(QStringLiteral("Victims"), victims);
        host.state().parents.insert(suspectBO.get(), incident);
        addSuspect(7, QStringLiteral("Moss, Ada"));

        section = new SuspRelList(&window, {QStringLiteral("ctlVictims"), nullptr});
        section->SetOtherCollectionTag(tag);
        section->SetOtherItemName(QStringLiteral("Victim"));
        section->SetOtherItemSeqName(QStringLiteral("VictimSeqNo"));
        window.resize(640, 300);
        section->setGeometry(20, 20, 600, 200);
        other->setGeometry(20, 240, 600, 24);
        list = section->findChild<ListView*>(QStringLiteral("lvwRows"));
        tip = section->findChild<TipPanel*>(QStringLiteral("picEmpty"));
        menu = section->findChild<PopupMenu*>(QStringLiteral("mnuEdit"));
        add = menu->findChild<MenuItem*>(QStringLiteral("mnuAddRelationship"));
        remove = menu->findChild<MenuItem*>(QStringLiteral("mnuRemoveRelationship"));
    }

    bool show()
    {
        window.show();
        window.activateWindow();
        section->setFocus();
        return QTest::qWaitForWindowActive(&window) && list->hasFocus();
    }

    void addSuspect(const QVariant& seqNo, const QString& name) const
    {
        const tvTableRowPtr row = suspects->AddNew();
        fieldOf(*row, QStringLiteral("SeqNo"))->SetValue(seqNo);
        fieldOf(*row, QStringLiteral("SuspectName"))->SetValue(name);
    }
    tvTableRowPtr addVictim(const QVariant& seqNo, const QString& name) const
    {
        const tvTableRowPtr row = victims->AddNew();
        fieldOf(*row, QStringLiteral("SeqNo"))->SetValue(seqNo);
        fieldOf(*row, QStringLiteral("VictimName"))->SetValue(name);
        return row;
    }
    void addLink(const QVariant& victimSeqNo, const QVariant& relation) const
    {
        const tvTableRowPtr row = links->AddNew();
        fieldOf(*row, QStringLiteral("VictimSeqNo"))->SetValue(victimSeqNo);
        fieldOf(*row, QStringLiteral("RelationNo"))->SetValue(relation);
    }
    /// Three victims, of whom the first two are linked.
    void addThreeVictimsOfWhomTwoAreLinked() const
    {
        addVictim(1, QStringLiteral("Ash, Ann"));
        addVictim(2, QStringLiteral("Birch, Ben"));
        addVictim(3, QStringLiteral("Cedar, Cy"));
        addLink(1, 1);
        addLink(2, 2);
    }
    /// A row of a victim, as the dialog adds it, with the code of a relationship.
    void addRow(int victim, const QString& relation = {}) const
    {
        const QString key = QStringLiteral("key_%1").arg(victim);
        list->AddItem(key, key);
        if (!relation.isNull())
            setRelation(victim, relation);
    }
    void setRelation(int victim, const QString& relation) const
    {
        list->SetSubItem(QStringLiteral("key_%1").arg(victim), QStringLiteral("relationship_value"),
                         relation);
    }
    void requireRelations()
    {
        host.state().requiredFields << QStringLiteral("Incident/IncdSuspVictim/RelationNo");
    }

    void read() { static_cast<BoundSection*>(section)->ReadData(page); }
    void write() { static_cast<BoundSection*>(section)->WriteData(page); }
    /// The error that a write raises; its number is 0 when it raises none.
    Error writeError()
    {
        return raisedBy([this] { write(); });
    }

    /// The rows as they show, with their two hidden texts: "key_1/1/Ash, Ann/Friend".
    QStringList rows() const
    {
        QStringList texts;
        for (int i = 0; i < list->Count(); ++i) {
            QStringList row;
            for (const char* column : {"key", "relationship_value", "name", "relationship"})
                row << list->SubItem(list->Key(i), QString::fromLatin1(column));
            texts << row.join(u'/');
        }
        return texts;
    }
    /// The link rows: "victim suspect relation", with the relation's type when it is a text.
    QStringList linkTexts() const
    {
        QStringList texts;
        for (const tvTableRowPtr& row : *links) {
            const QVariant relation = fieldOf(*row, QStringLiteral("RelationNo"))->Value();
            const bool isText = relation.typeId() == QMetaType::QString;
            texts << QStringLiteral("%1 %2 ").arg(
                         ToText(fieldOf(*row, QStringLiteral("VictimSeqNo"))->Value()),
                         ToText(fieldOf(*row, QStringLiteral("SeqNo"))->Value())) +
                         (isText ? u'"' + relation.toString() + u'"' : ToText(relation));
        }
        return texts;
    }

    void rightClick(const QPoint& inSection)
    {
        QTest::mouseClick(window.windowHandle(), Qt::RightButton, {}, section->mapTo(&window, inSection));
    }
    QPoint placeOfRow(int row) const
    {
        return list->viewport()->mapTo(section, list->visualRect(list->model()->index(row, 0)).center());
    }

    FakeHost host;
    HostInstallation installation;
    FakeMessageBoxes boxes;
    std::shared_ptr<FakeRecord> page = std::make_shared<FakeRecord>();
    std::shared_ptr<FakeRecord> suspectBO = std::make_shared<FakeRecord>();
    std::shared_ptr<FakeRecord> incident = std::make_shared<FakeRecord>();
    std::shared_ptr<FakeCollection> suspects =
        std::make_shared<FakeCollection>(QStringList{QStringLiteral("SeqNo"), QStringLiteral("SuspectName")});
    std::shared_ptr<FakeCollection> victims =
        std::make_shared<FakeCollection>(QStringList{QStringLiteral("SeqNo"), QStringLiteral("VictimName")});
    std::shared_ptr<FakeCollection> links =
        std::make_shared<FakeCollection>(QStringList{QStringLiteral("LinkNo"), QStringLiteral("VictimSeqNo"),
                                                     QStringLiteral("SeqNo"), QStringLiteral("RelationNo")});
    QWidget window;
    QPointer<SuspRelList> section;
    QLineEdit* other = new QLineEdit(&window);
    ListView* list;
    TipPanel* tip;
    PopupMenu* menu;
    MenuItem* add;
    MenuItem* remove;
};

/// The record of a form behind one whose calls may fail.
struct FailingSuspectPage
{
    FailingSuspectPage(SuspectForm& form, RecordCalls& calls)
        : section(form.section)
        , record(std::make_shared<FailingRecord>(form.page, calls))
    {
        const HostObjectPtr suspect = record->Item(QStringLiteral("SuspectBO"));
        form.host.state().parents.insert(suspect.get(),
                                         std::make_shared<FailingRecord>(form.incident, calls));
    }
    BoundSection& contract() const { return *section; }

    SuspRelList* section;
    std::shared_ptr<FailingRecord> record;
};

} // namespace tavrin::test
