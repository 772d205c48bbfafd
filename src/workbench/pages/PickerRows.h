#pragma once

#include "frame/control_frame/FormFile.h"
#include "host/records/Record.h"
#include "workbench/bindings/FieldBinding.h"
#include "workbench/pages/PickerRow.h"

#include <optional>
#include <vector>

class QLabel;
class QPushButton;
class QVBoxLayout;

namespace tavrin::workbench {

/// A collection of a record as lines with one picker each, to which the person adds and from which she
/// removes; the details of a row stand below its line. A line without a value is not saved.
class PickerRows final : public QWidget
{
    Q_OBJECT

public:
    /// `form` is the template of every line's picker; its "host" part names the "collection", the "field" of
    /// a row, a "flag" with its "flagLabel", the text of the "add" button, and what `RowDetails` shows.
    /// `heading` leads to the first line by its access key.
    PickerRows(FormFile::Control form, QLabel* heading, QWidget* parent);

    /// Raises an `Error` when the record has no such collection or column.
    void load(Record& record);
    bool differs(Record& record) const;
    void store(Record& record);
    /// A line whose text was typed and not chosen; nothing when there is none.
    std::optional<FieldProblem> firstProblem() const;

    Event<> Edited;

private:
    tvTableCollectionPtr collectionOf(Record& record) const;
    QString hostText(const char* key) const;
    QString heading() const;
    PickerRow* addLine(Record& record, const tvTableRowPtr& stored);
    void removeLine(PickerRow* line);
    void takeAway(PickerRow* line);
    void addByPerson();
    bool keeps(const tvTableRowPtr& stored) const;
    void linesChanged();
    void refreshLines();

    FormFile::Control m_form;
    QLabel* m_heading;
    QVBoxLayout* m_layout;
    QPushButton* m_add;
    std::weak_ptr<Record> m_record;  // that was loaded
    std::vector<PickerRow*> m_lines; // children
    std::vector<Subscription> m_subscriptions;
};

} // namespace tavrin::workbench
