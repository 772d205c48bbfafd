#pragma once

#include "base/export/Export.h"
#include "base/values/Twips.h"
#include "frame/control_frame/Ambient.h"
#include "frame/control_frame/Extender.h"
#include "frame/control_frame/PropertyBag.h"
#include "frame/control_frame/SavedProperty.h"

#include <QWidget>

#include <memory>

namespace tavrin {

/// What a container gives a control at its birth.
struct ControlSite
{
    /// The instance's name, `Ambient::DisplayName`.
    QString name = {};
    /// The saved properties; nullptr for a new instance that was never saved. Read during construction only.
    const PropertyBag* saved = nullptr;
};

/// The frame of every control: its life, its saved properties, and its place in twips.
///
/// Construction is `Initialize`; at its end it runs `InitProperties`, or `ReadProperties` when the site has
/// saved ones. `Resize` and `Show` follow when the container shows the control. A derived control calls
/// `begin` as the last statement of its constructor and is final.
///
/// No exception of a handler leaves through Qt; what a control's own policy does not catch goes to the
/// application's handler of unhandled errors.
class TAVRIN_EXPORT UserControl : public QWidget
{
    Q_OBJECT

public:
    ~UserControl() override;

    /// The window handle of the control, or of the window it stands on while it has none of its own; 0 before
    /// there is a window. Its lower 32 bits where handles are longer.
    qint32 hWnd() const;
    /// The class name without namespace.
    QString typeName() const;

    /// What the control learns of its container; valid as long as the control.
    const Ambient& ambient() const;
    /// Its place in the container; valid as long as the control.
    Extender& extender();

    /// Outer size in twips.
    Twips Width() const { return toTwips(width()); }
    void SetWidth(Twips width);
    Twips Height() const { return toTwips(height()); }
    void SetHeight(Twips height);
    void Size(Twips width, Twips height);
    /// Inner size in twips.
    Twips ScaleWidth() const { return toTwips(contentsRect().width()); }
    Twips ScaleHeight() const { return toTwips(contentsRect().height()); }
    /// A length in another unit, across and down: a character is not as wide as high.
    static Twips ScaleX(Twips length, ScaleMode from, ScaleMode to);
    static Twips ScaleY(Twips length, ScaleMode from, ScaleMode to);
    /// The frame's own background, by default the container's. Controls publish a `BackColor` of their own,
    /// which is their main constituent's.
    Color FrameBackColor() const;
    void SetFrameBackColor(Color color);
    /// The container's property "BackColor"; the ambient one when the container has none.
    Color ContainerBackColor() const;
    /// Gives the frame the container's colour; where the container offers none, the container itself is seen.
    void TakeContainerBackColor();
    /// The ambient colour, for a look that is made of it: `AmbientChanged` tells of any other one.
    Color TakeAmbientBackColor();
    /// The constituents, which are the control's own.
    QList<QWidget*> Controls() const;

    /// The saved properties in their order, with which a form designer shows and puts them one by one. Not to
    /// be kept beyond the life of the control.
    virtual SavedProperties savedProperties() { return {}; }

    /// Restores the saved properties, each through its setter.
    void ReadProperties(const PropertyBag& bag) { UserControl_ReadProperties(bag); }
    /// Saves the properties, each through its getter. For the designer.
    void WriteProperties(PropertyBag& bag) { UserControl_WriteProperties(bag); }

Q_SIGNALS:
    /// The design-time value that is saved under `key` has changed, and the form must be saved again. A slot
    /// must not let an exception out; `connectGuarded` sees to that. It may close the form and delete the
    /// control, with `deleteLater` when it answers to an emptied text: a line edit of Qt does not outlive
    /// its own change otherwise.
    void PropertyChanged(const QString& key);

protected:
    /// `parent` owns the control; without one the caller does.
    UserControl(QWidget* parent, const ControlSite& site);

    /// Ends construction: `InitProperties` or `ReadProperties`.
    void begin();

    /// Emits `PropertyChanged`. False when a follower has deleted the control: the caller then returns at
    /// once.
    [[nodiscard]] bool ReportChange(const QString& key);

    /// Whether a property that fails is passed over, the others still restored or saved.
    virtual bool trapsPropertyErrors() const { return true; }

    /// A new instance that was never saved: the properties take their defaults.
    virtual void UserControl_InitProperties() {}
    /// An instance is restored: each of `savedProperties` is put, in their order.
    virtual void UserControl_ReadProperties(const PropertyBag& bag);
    /// The form is saved: each of `savedProperties` that differs from its default goes into the bag.
    virtual void UserControl_WriteProperties(PropertyBag& bag);
    /// The control was shown by the program; not when a window comes back from the task bar.
    virtual void UserControl_Show() {}
    /// The control was hidden by the program, behind `UserControl_ExitFocus` if the focus was in it.
    virtual void UserControl_Hide() {}
    /// The control has another size, or its first one.
    virtual void UserControl_Resize() {}
    /// `propertyName` is "DisplayName", "Font", "BackColor" or "ScaleUnits".
    virtual void UserControl_AmbientChanged(const QString& propertyName);
    /// The focus came into the control or one of its constituents. Another program or a dialog that has the
    /// focus for a while does not count as leaving, and a focus that somebody has sent on meanwhile does not
    /// count as coming. Enter and exit alternate, also when one of them moves the focus.
    virtual void UserControl_EnterFocus() {}
    virtual void UserControl_ExitFocus() {}
    /// The frame itself lost the focus.
    virtual void UserControl_LostFocus() {}
    /// A key on the frame itself; a code of 0 swallows it. `shift`: bit 0 Shift, bit 1 Ctrl, bit 2 Alt.
    virtual void UserControl_KeyDown(int& keyCode, int shift);
    /// A mouse button was released over the bare surface. `button`: bit 0 left, bit 1 right, bit 2 middle;
    /// `shift` as for a key; the place in twips from the upper left corner.
    virtual void UserControl_MouseUp(int button, int shift, Twips x, Twips y);

    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    bool event(QEvent* event) override;

private:
    class Q_DECL_HIDDEN Private;
    std::unique_ptr<Private> d;
};

} // namespace tavrin
