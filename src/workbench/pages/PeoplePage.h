#pragma once

#include "workbench/pages/RecordPage.h"

class QLineEdit;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace tavrin::workbench {

/// The people in an incident who are not suspects: victims, witnesses and others. The person adds, names and
/// removes them; all of it is in the record at once, and in the database with the next save.
class PeoplePage final : public RecordPage
{
    Q_OBJECT

public:
    PeoplePage();

    void load(Record& record) override;
    /// Raises a `SectionRefusal` for the first one without a name, who is the current one then.
    void storeRows(Record& record) override;

    /// Somebody came, went or has another name.
    Event<> PeopleChanged;

private:
    void build();
    /// Nobody for a heading.
    RecordRowPtr personOf(const QTreeWidgetItem* item) const;
    void addLine(int kind, const RecordRowPtr& person) const;
    void showNone(int kind) const;
    static void showName(QTreeWidgetItem& item, const QString& name);
    void showCurrent();
    void add(int kind);
    void removeCurrent();
    void nameEdited(const QString& name);
    void changed();

    QTreeWidget* m_list;
    QLineEdit* m_name;
    std::vector<QPushButton*> m_adds; // one a kind
    QPushButton* m_remove;
    RecordPtr m_record;
};

} // namespace tavrin::workbench
