#pragma once

#include "base/export/Export.h"
#include "frame/control_frame/UserControl.h"
#include "frame/host_contracts/Contracts.h"

#include <memory>

namespace tavrin {

/// The relationships that one suspect has to the parties of one other kind, one row each. The person adds and
/// removes rows through a context menu; nothing reaches the record before the host saves.
///
///     auto* victims = new SuspRelList(page);
///     victims->SetOtherCollectionTag(QStringLiteral("IncidentBO.Victims")); // where the parties live
///     victims->SetOtherItemName(QStringLiteral("Victim")); // builds "VictimName" and "SuspectVictims"
///     victims->SetOtherItemSeqName(QStringLiteral("VictimSeqNo")); // the link row's field
///     victims->ReadData(record); // its child "SuspectBO" is the suspect
///     ...
///     victims->WriteData(record); // raises CompletenessErrorNumber while required ones are missing
///
/// Links are written before completeness is checked; a refused save leaves those that are complete written.
/// A party's removal leaves its row on the screen until the next read, which does no harm. Before the first
/// read, and behind one that has failed, the section is empty and a write raises an `Error` before it changes
/// anything. A read closes the menu and the dialog: both are about the record before. It raises no events.
///
/// A failure of the host inside a read or a write, and at construction, reaches the caller. One inside an
/// action of the person goes to the application's handler of unhandled errors.
class TAVRIN_EXPORT SuspRelList final : public UserControl, public BoundSection
{
    Q_OBJECT
    Q_CLASSINFO("ClassName", "TVBoundControls.SuspRelList")
    Q_CLASSINFO("DefaultInterface", "_SuspRelList")
    Q_PROPERTY(qint32 hWnd READ hWnd STORED false)
    Q_PROPERTY(QString OtherCollectionTag READ OtherCollectionTag WRITE SetOtherCollectionTag)
    Q_PROPERTY(QString OtherItemName READ OtherItemName WRITE SetOtherItemName)
    Q_PROPERTY(QString OtherItemSeqName READ OtherItemSeqName WRITE SetOtherItemSeqName)
    Q_PROPERTY(bool Enabled READ Enabled WRITE SetEnabled)

public:
    /// Number of the error by which a write refuses an incomplete section.
    static constexpr int CompletenessErrorNumber = -1550907422;

    /// Raises what the host raises when it makes the table cache, which the designer does without.
    explicit SuspRelList(QWidget* parent = nullptr, const ControlSite& site = {});
    ~SuspRelList() override;

    /// Path to the parties' collection: its name in the record, or the name of a child record, a point, and
    /// its name there; "" by default. Resolved at each read and write, where a wrong one shows a message and
    /// leaves an empty section. Behind a read with a wrong one a write with a good one raises an `Error`: the
    /// section has no rows of its parties.
    QString OtherCollectionTag() const;
    void SetOtherCollectionTag(const QString& tag);
    /// The word for one party, its first letter in upper case, since it builds the names of records and
    /// fields; "" by default.
    QString OtherItemName() const;
    void SetOtherItemName(const QString& name);
    /// The link row's field that holds the party's "SeqNo"; "" by default.
    QString OtherItemSeqName() const;
    void SetOtherItemSeqName(const QString& name);
    /// The control's own state, whatever its container's; True by default. A disabled one has no menu.
    bool Enabled() const;
    void SetEnabled(bool enabled);

    /// The size that the list asks for.
    QSize sizeHint() const override;
    /// Five lines of text in height, and twelve times the height of a line in width.
    QSize minimumSizeHint() const override;

protected:
    SavedProperties savedProperties() override;
    bool trapsPropertyErrors() const override;
    void UserControl_Resize() override;
    void changeEvent(QEvent* event) override;

private:
    /// Shows the relationships of the suspect `record->Item("SuspectBO")`. Raises error 91 where the record,
    /// the suspect, its incident or the incident's suspects are missing, and what the host raises: the
    /// section is empty then.
    void BoundSection_ReadData(const tvBusinessObjectPtr& record) override;
    /// Writes the link rows. Raises `CompletenessErrorNumber` while required relationships are missing, an
    /// `Error` before the first read and behind one that has failed, error 91 and what the host raises.
    void BoundSection_WriteData(const tvBusinessObjectPtr& record) override;

    class Q_DECL_HIDDEN Private;
    std::unique_ptr<Private> d;
};

} // namespace tavrin
