#pragma once

#include "workbench/pages/RecordPage.h"

class QLabel;
class QListWidget;
class QPushButton;

namespace tavrin::workbench {

class SuspectDetail;

/// The suspects of an incident: a list, and the one that is current in it with the relationships to the other
/// people. Going to another suspect writes the one before into the record, complete or not.
class SuspectsPage final : public RecordPage
{
    Q_OBJECT

public:
    /// `problems` gets one sentence for each thing of the form file that could not be made.
    SuspectsPage(const QString& formsFolder, QStringList& problems);

    void load(Record& record) override;
    bool differs(Record& record) const override;
    void store(Record& record) override;
    /// Checks every suspect; the one whose section is refused is the current one then.
    void storeRows(Record& record) override;

    /// Somebody else in the incident came, went or has another name: the relationships are shown anew with
    /// the page.
    void peopleChanged() { m_arePeopleChanged = true; }

protected:
    void showEvent(QShowEvent* event) override;

private:
    void build();
    void goTo(int row);
    /// Makes the row's suspect the record's current one.
    void setPosition(Record& record, int row) const;
    void storeCurrent();
    void loadCurrent();
    void addSuspect();
    void removeSuspect();
    void nameEdited();
    void showName(int row, const QString& name) const;

    QListWidget* m_list;
    QPushButton* m_add;
    QPushButton* m_remove;
    QLabel* m_none;
    SuspectDetail* m_detail;
    RecordPtr m_record;
    Subscription m_edited;
    bool m_arePeopleChanged = false;
    int m_current = -1; // the row that the detail shows; -1 for none
};

} // namespace tavrin::workbench
