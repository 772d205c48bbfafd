#pragma once

#include "workbench/pages/RecordPage.h"

#include <functional>

class QGridLayout;
class QLabel;

namespace tavrin {
class SearchPicker;
class UserControl;
} // namespace tavrin

namespace tavrin::workbench {

class PickerBinding;
class PickerRows;

/// A page of sections and fields, whose controls come from a form file. The "host" part of a control says
/// what it shows: a "field" of the record with its "label", or a "collection" whose rows it repeats for.
class FormPage : public RecordPage
{
    Q_OBJECT

public:
    explicit FormPage(const QString& title);

    /// Decides by the number of an officer.
    using OfficerTest = std::function<bool(qint32 officerNo)>;
    /// Who had left before the incident, for controls whose form asks to leave those out ("filter":
    /// "hadLeft"). The officer that the record holds is offered in any case.
    void setHadLeft(OfficerTest hadLeft) { m_hadLeft = std::move(hadLeft); }

    /// Adds the controls of a form file: that of the folder when there is one, else the built-in one.
    /// `problems` gets one sentence for each thing of the file that could not be made.
    void addForm(const QString& formName, const QString& formsFolder, QStringList& problems,
                 const QString& hint = {});

    void load(Record& record) override;
    bool differs(Record& record) const override;
    void storeRows(Record& record) override;
    std::optional<FieldProblem> firstProblem() const override;

protected:
    QLabel* addSection(const QString& title, const QString& hint = {});
    /// A field over the whole width, or in the left (0) or right (1) half.
    void addField(FieldBinding& binding, int half = -1);

private:
    struct Entry;
    /// Why the record has no place for the control's value, in a sentence; "" when it has.
    static QString placeProblem(const Entry& entry);
    /// False for a control that the page has no use for.
    bool addControl(UserControl* control, const Entry& entry);
    void addPicker(SearchPicker* picker, const Entry& entry);
    void addRows(const Entry& entry);
    void applyFilter(SearchPicker* picker, const PickerBinding& binding);

    QGridLayout* m_grid;
    int m_row = 0;
    std::vector<PickerRows*> m_rows; // children
    std::vector<Subscription> m_rowSubscriptions;
    OfficerTest m_hadLeft;
};

} // namespace tavrin::workbench
