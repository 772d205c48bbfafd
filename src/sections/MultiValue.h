#pragma once

#include "base/export/Export.h"
#include "frame/control_frame/UserControl.h"
#include "frame/host_contracts/Contracts.h"

#include <memory>

namespace tavrin {

/// Several codes of one code table, such as all the weapons of an offense: a list of their descriptions, and
/// below it "+" and "-".
///
/// In the record each code is a row of a child table. The control works on a copy of the codes; the rows
/// change only when the host calls `BoundControl::SetValue`.
///
///     auto* weapons = new MultiValue(form);
///     BoundControl& contract = *weapons;
///     const BoundBinding binding{QStringLiteral("WeaponNo"), 302};
///     contract.FillControl(&binding, {}, rows); // the list shows the codes of the rows
///     QObject::connect(weapons, &MultiValue::ValueAdded, form, [form] { form->setWindowModified(true); });
///     QObject::connect(weapons, &MultiValue::ValueRemoved, form, [form] { form->setWindowModified(true); });
///     ...
///     contract.SetValue(&binding, {}, rows); // existing rows are used again in their order
///
/// A failure of the host inside a contract call, and at construction, reaches the caller. One inside an
/// action of the person goes to the application's handler of unhandled errors. A fill that cannot read all
/// rows leaves an empty list, to which nothing can be added and which a save refuses to write, so that no
/// code of the record is lost; the next fill ends that. Before the first fill there are no values, and a save
/// removes the rows.
class TAVRIN_EXPORT MultiValue final : public UserControl, public BoundControl
{
    Q_OBJECT
    Q_CLASSINFO("ClassName", "TVBoundControls.MultiValue")
    Q_CLASSINFO("DefaultInterface", "_MultiValue")
    Q_CLASSINFO("EventInterface", "__MultiValue")
    Q_PROPERTY(qint32 Count READ Count STORED false)
    Q_PROPERTY(bool Enabled READ Enabled WRITE putEnabled)

public:
    /// An empty list. Raises what the host raises when it shades the background; the designer may have no
    /// host.
    explicit MultiValue(QWidget* parent = nullptr, const ControlSite& site = {});
    ~MultiValue() override;

    /// Number of the values; 0 before the first fill and behind one that has failed. Rows whose field is Null
    /// do not count.
    qint32 Count() const;

    /// Whether the person can select, add and remove; True by default. A host can fill and save a disabled
    /// control. Setting it builds the list anew, and raises what the host raises.
    bool Enabled() const;
    void SetEnabled(bool enabled);

    /// The size that the control is designed for.
    QSize sizeHint() const override;
    /// Room for both links and for the list's own smallest height.
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// After every pass through the dialog, also one that the person left without "Done", but not one that a
    /// fill has ended. A slot must not let an exception out; it may delete the control.
    void ValueAdded();
    /// After a value was removed. A slot must not let an exception out; it may delete the control.
    void ValueRemoved();

protected:
    SavedProperties savedProperties() override;
    bool trapsPropertyErrors() const override;
    void UserControl_InitProperties() override;
    void UserControl_Resize() override;
    void UserControl_AmbientChanged(const QString& propertyName) override;
    void UserControl_KeyDown(int& keyCode, int shift) override;
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    /// Shows the codes in the field of each row, in their order; Null is left out. Nothing without a binding
    /// or rows. Keeps neither the binding nor the rows. Raises what the host raises.
    void BoundControl_FillControl(const BoundBinding* binding, const QVariant& ignored,
                                  const tvTableCollectionPtr& rows) override;
    /// Writes the codes into the rows, in their order; adds rows where there are too few and removes those
    /// that are left. Nothing without a binding or rows. Raises an `Error` behind a fill that has failed, and
    /// what the host raises.
    void BoundControl_SetValue(const BoundBinding* binding, const QVariant& ignored,
                               const tvTableCollectionPtr& rows) override;

    void putEnabled(bool enabled);

    class Q_DECL_HIDDEN Private;
    std::unique_ptr<Private> d;
};

} // namespace tavrin
