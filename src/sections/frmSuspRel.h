#pragma once

#include "frame/host_contracts/Records.h"
#include "widgets/panels/Form.h"

#include <QList>

class QPushButton;

namespace tavrin {

class FlatDropdown;
class GroupBox;
class Label;
class RelationPicture;

/// The dialog in which the person picks one party and that party's relationship to the suspect. It writes
/// nothing into a record.
///
///     frmSuspRel dialog;
///     dialog.SetupForm("Victim", choices, suspect);
///     dialog.ShowModal(owner);
///     if (dialog.Success())
///         add(dialog.SelectedItem(), dialog.SelectedRelation());
class frmSuspRel final : public Form
{
    Q_OBJECT

public:
    explicit frmSuspRel(QWidget* parent = nullptr);
    ~frmSuspRel() override;

    /// Fills the dialog; to be called once, before it is shown. `otherItemName` is the word for one party,
    /// `choices` have the field `otherItemName` + "Name", and `suspect` the field "SuspectName".
    void SetupForm(const QString& otherItemName, const QList<tvTableRowPtr>& choices,
                   const tvTableRowPtr& suspect);

    /// True after OK, unless somebody has rejected the dialog since.
    bool Success() const { return m_success; }
    /// The party that is picked. Raises an `Error` when none is.
    tvTableRowPtr SelectedItem() const;
    /// The code that is picked, a 32-bit integer; Null for none.
    QVariant SelectedRelation() const;

    /// Cancels, also what was confirmed before.
    void reject() override;

private:
    void build();
    void validate();
    void cmdOK_Click();
    void cmdCancel_Click();

    bool m_success = false;
    QString m_otherItemName;
    QList<tvTableRowPtr> m_choices;

    GroupBox* Label8;
    QWidget* Line1;
    RelationPicture* picHeader;
    Label* lblTitle;
    Label* lblName;
    FlatDropdown* cboName;
    Label* lblRelationship;
    FlatDropdown* cboRelationship;
    QPushButton* cmdOK;
    QPushButton* cmdCancel;
};

} // namespace tavrin
