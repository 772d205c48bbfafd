#pragma once

#include "base/export/Export.h"
#include "base/failure/Event.h"
#include "frame/control_frame/UserControl.h"
#include "frame/host_contracts/Contracts.h"

#include <QPointer>
#include <QVariantList>

#include <optional>
#include <vector>

namespace tavrin {

class ListBox;
class TextLink;
class frmMultiValueSelect;

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
///     record->save();
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
    Q_PROPERTY(bool Enabled READ Enabled WRITE SetEnabled)

public:
    explicit MultiValue(QWidget* parent = nullptr, const ControlSite& site = {});
    ~MultiValue() override;

    /// Number of the values; 0 before the first fill and behind one that has failed. Rows whose field is Null
    /// do not count.
    qint32 Count() const { return static_cast<qint32>(m_values.size()); }

    /// Whether the person can select, add and remove; True by default. A host can fill and save a disabled
    /// control. Builds the list anew, and raises what the host raises.
    bool Enabled() const { return isEnabledTo(parentWidget()); }
    void SetEnabled(bool enabled);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// After every pass through the dialog, also one that the person left without "Done", but not one that a
    /// fill has ended. A slot must not let an exception out; it may delete the control.
    void ValueAdded();
    /// After a value was removed. A slot must not let an exception out; it may delete the control.
    void ValueRemoved();

protected:
    SavedProperties savedProperties() override;
    bool trapsPropertyErrors() const override { return false; }
    void UserControl_InitProperties() override;
    void UserControl_Resize() override;
    void UserControl_AmbientChanged(const QString& propertyName) override;
    void UserControl_KeyDown(int& keyCode, int shift) override;
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void BoundControl_FillControl(const BoundBinding* binding, const QVariant& ignored,
                                  const tvTableCollectionPtr& rows) override;
    void BoundControl_SetValue(const BoundBinding* binding, const QVariant& ignored,
                               const tvTableCollectionPtr& rows) override;

    void lstValues_Click();
    void lnkAdd_Click();
    void lnkDelete_Click();
    void addChosen(const QPointer<frmMultiValueSelect>& dialog);
    /// Closes the dialog, whose choices are of the record before, and leaves them out.
    void withdrawDialog();
    void removeSelected();
    /// A record that could not be read leaves no values, and is not written.
    void forgetRecord();
    void RebuildList();
    void applyBackColor();
    bool previewKey(QKeyEvent& event);

    ListBox* lstValues;
    TextLink* lnkAdd;
    TextLink* lnkDelete;

    std::optional<BoundBinding> m_binding;
    QVariantList m_values;
    bool m_fillFailed = false;
    qint64 m_themeKey = 0;                  // of the palette that the background was shaded from
    QPointer<frmMultiValueSelect> m_dialog; // while the person is asked
    std::vector<Subscription> m_subscriptions;
};

} // namespace tavrin
