#pragma once

#include "base/export/Export.h"
#include "frame/control_frame/UserControl.h"
#include "frame/host_contracts/Contracts.h"

#include <QImage>

#include <memory>

namespace tavrin {

/// A plain drop-down over one code table, with "(None)" as its first entry and an icon beside the text.
///
/// Use it for a short table that is known by heart; for a long one take `AutoCompleteField`, which searches.
///
///     auto* race = new TavrinDropdown(form);
///     race->SetTableNumber(312);
///     form->show();                      // the list is built when the control shows
///     race->SetValue(fieldOf(*row, QStringLiteral("RaceNo"))->Value());
///     ...
///     fieldOf(*row, QStringLiteral("RaceNo"))->SetValue(race->Value()); // a 32-bit integer, or Null
class TAVRIN_EXPORT TavrinDropdown final : public UserControl
{
    Q_OBJECT
    Q_CLASSINFO("ClassName", "TVBoundControls.TavrinDropdown")
    Q_CLASSINFO("DefaultInterface", "_TavrinDropdown")
    Q_CLASSINFO("EventInterface", "__TavrinDropdown")
    Q_PROPERTY(qint32 hWnd READ hWnd STORED false)
    Q_PROPERTY(tavrin::FontPtr Font READ Font WRITE SetFont)
    Q_PROPERTY(QImage Icon READ Icon WRITE SetIcon)
    Q_PROPERTY(qint32 TableNumber READ TableNumber WRITE SetTableNumber)
    Q_PROPERTY(QVariant Value READ Value WRITE SetValue STORED false)

public:
    /// An empty list until the control shows. Asks nothing of the host.
    explicit TavrinDropdown(QWidget* parent = nullptr, const ControlSite& site = {});
    ~TavrinDropdown() override;

    /// The font, shared by reference; the height follows it, and each change inside it. By default the
    /// container's.
    FontPtr Font() const;
    void SetFont(const FontPtr& font);

    /// The picture before the text, as high as the line; a null image, the default, for none.
    QImage Icon() const;
    void SetIcon(const QImage& icon);

    /// The code table; -1, the default, for none. The list is built the next time the control shows: another
    /// number has no visible effect until then. If the host fails at that, list and value stay as they were,
    /// the failure is that of the showing, and the next showing tries again.
    tavrin::TableNumber TableNumber() const;
    void SetTableNumber(tavrin::TableNumber number);

    /// The chosen entry's numeric value, 32 bits; Null, the default, for "(None)". Setting it before the list
    /// is built does nothing; a value that is not in the list, Null or Empty selects "(None)".
    QVariant Value() const;
    void SetValue(const QVariant& value);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// Another entry is selected, by the person or by `SetValue`.
    void Change();

protected:
    SavedProperties savedProperties() override;
    void UserControl_InitProperties() override;
    void UserControl_ReadProperties(const PropertyBag& bag) override;
    void UserControl_Show() override;
    void UserControl_Resize() override;
    void UserControl_AmbientChanged(const QString& propertyName) override;

private:
    class Q_DECL_HIDDEN Private;
    std::unique_ptr<Private> d;
};

} // namespace tavrin
