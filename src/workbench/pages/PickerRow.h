#pragma once

#include "host/records/Record.h"
#include "lookup/SearchPicker.h"
#include "workbench/bindings/PickedValue.h"

#include <QVariantList>

class QCheckBox;
class QHBoxLayout;
class QPushButton;

namespace tavrin::workbench {

class RowDetails;

/// What a line of pickers shows of a child row.
struct RowFields
{
    QString collection;
    QString value;
    QString flag; ///< a yes or no beside it; "" for none
    QString flagLabel;
    QJsonObject details; ///< for `RowDetails`; the line has none where nothing is wanted
};

/// One child row of a record: a picker, its flag when it has one, and a button that takes the line away. The
/// details below it are there for as long as something is chosen.
class PickerRow final : public QWidget
{
    Q_OBJECT

public:
    /// Takes over the picker.
    PickerRow(SearchPicker* picker, RowFields fields, QWidget* parent);

    SearchPicker& picker() const { return *m_picker; }
    /// Puts the line into the tab order behind `before`; the widget to go on from. To be done again after
    /// each change: where a tag takes the place of a picker's box, the picker itself takes the focus.
    QWidget* chainBehind(QWidget* before) const;

    /// nullptr for a row that the record does not have yet.
    void load(Record& record, const tvTableRowPtr& stored);
    /// The record's row; nullptr while there is none.
    const tvTableRowPtr& stored() const { return m_stored; }
    QVariant value() const { return m_value.value(); }
    /// Nothing is chosen, and nothing stored either that the picker could not show.
    bool isEmpty() const;
    bool differs() const;
    /// Lets go of the record's row when the person has cleared the picker.
    void releaseIfCleared();
    /// Writes into the record's row, which `rows` makes when there is none; not for an empty line.
    void store(Record& record, tvTableCollection& rows);

    /// The values of the other lines, which the picker leaves out of its list.
    void setUsedValues(const QVariantList& values) { *m_usedValues = values; }

    /// Scrolls the page so far that all of the line shows, at the next pass through the event loop.
    void scrollIntoView();

    Event<> Edited;
    /// The text in the picker's box is another one, by the person or because it gave way to the choice.
    Event<> Typed;
    Event<> RemoveAsked;

private:
    void pickerChanged();
    bool flagDiffers() const;
    void addRemoveButton(QHBoxLayout& layout);
    void refreshDetails();

    RowFields m_fields;
    SearchPicker* m_picker;
    QCheckBox* m_flag = nullptr;
    QPushButton* m_remove;
    RowDetails* m_details = nullptr;
    PickedValue m_value;
    tvTableRowPtr m_stored;
    Subscription m_detailsEdited;
    UsedValues m_usedValues = std::make_shared<QVariantList>();
    bool m_loading = false;
};

} // namespace tavrin::workbench
