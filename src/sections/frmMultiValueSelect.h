#pragma once

#include "base/failure/Event.h"
#include "frame/host_contracts/Contracts.h"
#include "widgets/panels/Form.h"

#include <QList>
#include <QVariantList>

class QLabel;

namespace tavrin {

class ListBox;
class TextLink;

/// The dialog of `MultiValue`, in which the person marks codes of one code table.
///
///     frmMultiValueSelect dialog;
///     dialog.LoadValues(table, alreadyChosen);
///     if (dialog.ChoiceCount() > 0) {
///         dialog.ShowModal(control);
///         if (!dialog.Canceled())
///             add(dialog.SelectedValues());
///     }
class frmMultiValueSelect final : public Form
{
    Q_OBJECT

public:
    explicit frmMultiValueSelect(QWidget* parent = nullptr);
    ~frmMultiValueSelect() override;

    /// Fills the list with the table's active codes but for those in `existing`, and marks the first that is
    /// left. Raises error 6 for an existing code outside the 16-bit range, error 94 for Null, and what the
    /// host raises.
    void LoadValues(TableNumber tableNo, const QVariantList& existing);

    /// Entries that are left.
    qint32 ChoiceCount() const;
    /// True unless the person has clicked "Done" and nobody has rejected the dialog since.
    bool Canceled() const { return !m_confirmed; }
    /// The marked codes, from top to bottom.
    QList<qint32> SelectedValues() const;

    /// Cancels, also what was confirmed before.
    void reject() override;

protected:
    void Form_Resize() override;
    /// Enter means "Done".
    void keyPressEvent(QKeyEvent* event) override;

private:
    void lnkOK_Click();

    QLabel* Label1;
    ListBox* lstChoices;
    TextLink* lnkOK;
    bool m_confirmed = false;
    Subscription m_done;
};

} // namespace tavrin
