#pragma once

#include "base/export/Export.h"
#include "frame/control_frame/UserControl.h"
#include "frame/host_contracts/Contracts.h"

#include <memory>

namespace tavrin {

/// The files that are attached to a record: a list, the details of the current one, and what a person does
/// with them.
///
///     auto* attachments = new Attachments(page);
///     attachments->ReadData(record);  // record->Item("Attachments") holds the rows
///     ...
///     attachments->WriteData(record); // brings the two text boxes home; all else is in the rows already
///
/// A file is in the store as soon as it is added; its row reaches the database with the record. Removing a
/// row leaves the file in the store. What the person has removed can be put back until `ReadData` brings
/// another collection.
///
/// The host may move the collection's position and change its rows while the section shows them: what the
/// person types, ticks, opens and removes is the row that the pane shows, as long as it is in the collection.
/// Rows that the host itself adds, removes or renames come into sight with the next `ReadData`.
///
/// The control has no saved properties and raises no events.
class TAVRIN_EXPORT Attachments final : public UserControl, public BoundSection
{
    Q_OBJECT
    Q_CLASSINFO("ClassName", "TVBoundControls.Attachments")
    Q_CLASSINFO("DefaultInterface", "_Attachments")
    Q_PROPERTY(qint32 hWnd READ hWnd STORED false)
    Q_PROPERTY(QObject* CommentsTextBox READ CommentsTextBox STORED false)

public:
    /// Shows no files until `ReadData`. Raises what the host raises when it makes a collection, which the
    /// designer does without.
    explicit Attachments(QWidget* parent = nullptr, const ControlSite& site = {});
    ~Attachments() override;

    /// The box of the comment, for a spell checker. Never nullptr; it is the control's, and goes with it.
    QObject* CommentsTextBox() const;
    /// Asks for files and adds those that the person picks to the record that is shown; none when the person
    /// cancels. Returns when they are in the store and in the list. Tells what fails in a box of its own,
    /// also that the person has no right to add, and raises nothing. The control may have been deleted by
    /// then.
    Q_INVOKABLE void AddAttachments();

    /// As wide as designed, 533 pixels, or as the columns of the list need; 401 pixels high.
    QSize sizeHint() const override;
    /// Three quarters of the designed width, at the designed height.
    QSize minimumSizeHint() const override;

protected:
    void UserControl_Resize() override;

private:
    /// Shows the rows of `record->Item("Attachments")` and the one at their position, and keeps the
    /// collection; the record stays the host's. Asks for the rights to add and to delete anew. Raises error 5
    /// when the record's class names no module, error 91 without a record or without that collection: all
    /// stays as it was then. Raises what a row or a field raises too; the collection is bound by then.
    void BoundSection_ReadData(const tvBusinessObjectPtr& record) override;
    /// Writes the description and the comment into the row that the pane shows, in the collection that was
    /// read; `record` is not looked at. A failure is told in a box, and nothing is raised.
    void BoundSection_WriteData(const tvBusinessObjectPtr& record) override;

    class Q_DECL_HIDDEN Private;
    std::unique_ptr<Private> d;
};

} // namespace tavrin
