#pragma once

#include "base/export/Export.h"
#include "frame/control_frame/UserControl.h"
#include "frame/host_contracts/Contracts.h"

#include <memory>

namespace tavrin {

/// A free search field over one code table of the host.
///
/// The person types at least three characters; the entries whose code or description holds them open in a
/// list below the box, and choosing one stores its numeric value and colours the box. Use it for one code
/// of a long table; for a short table that is known by heart a plain drop-down serves better.
///
///     auto* location = new AutoCompleteField(form);
///     location->SetTableNo(301);
///     location->SetText(QStringLiteral("13 - Highway/Road/Alley/Street/Sidewalk"));
///     location->SetValue(13);
///     ...
///     fieldOf(*row, QStringLiteral("LocationTypeNo"))->SetValue(location->Value()); // Null for nothing
///
/// The text and the value are two things: typing that searches takes the value away, and a text without a
/// value is what the person typed and never chose. Delete, cutting, pasting, undoing, &, ( and characters
/// beyond 128 search nothing: they change the text and leave the value, which is another text's then. The
/// field has no events; the form reads both when it saves, or follows `PropertyChanged`. With the key "Text"
/// that tells of a choice and of a text set by code, never of typing, so that a text which is another one
/// since was typed and not chosen.
class TAVRIN_EXPORT AutoCompleteField final : public UserControl
{
    Q_OBJECT
    Q_CLASSINFO("ClassName", "TVBoundControls.AutoCompleteField")
    Q_CLASSINFO("DefaultInterface", "_AutoCompleteField")
    Q_PROPERTY(qint32 hWnd READ hWnd STORED false)
    Q_PROPERTY(bool Enabled READ Enabled WRITE SetEnabled)
    Q_PROPERTY(qint32 TableNo READ TableNo WRITE putTableNo)
    Q_PROPERTY(bool IncludeInactiveValues READ IncludeInactiveValues WRITE putIncludeInactiveValues)
    Q_PROPERTY(QVariant Value READ Value WRITE SetValue)
    Q_PROPERTY(QVariant Text READ Text WRITE putText)
    Q_PROPERTY(tavrin::Color BackColor READ BackColor WRITE SetBackColor)
    Q_PROPERTY(tavrin::Color ForeColor READ ForeColor WRITE SetForeColor)

public:
    /// An empty field. Asks nothing of the host, unless saved properties name a table: what the host fails
    /// with at that is passed over.
    explicit AutoCompleteField(QWidget* parent = nullptr, const ControlSite& site = {});
    ~AutoCompleteField() override;

    /// Whether the field takes input; true by default. Disabling closes the list.
    bool Enabled() const;
    void SetEnabled(bool enabled);

    /// The code table to search; -1 for none. Setting it loads the table from the host's cache, also when the
    /// number stays the same; a failure of the host reaches the caller. A new field has 0, a restored one
    /// without a saved number -1.
    TableNumber TableNo() const;
    void SetTableNo(TableNumber tableNo);

    /// Whether inactive values are searched too; false by default. Setting it loads the table again; a
    /// failure of the host reaches the caller.
    bool IncludeInactiveValues() const;
    void SetIncludeInactiveValues(bool include);

    /// The chosen value, a 32-bit integer, or Null, the default, when nothing is chosen; Empty counts as
    /// Null. Setting it colours the box, and neither checks it against the table nor changes the text.
    QVariant Value() const;
    void SetValue(const QVariant& value);

    /// The text in the box, "" by default. An empty text takes the value away; Null counts as empty. What is
    /// no text, such as a list, raises an `Error` and changes nothing.
    QVariant Text() const;
    void SetText(const QVariant& text);

    /// The box's colours while nothing is chosen, by default the system's window colours. After a value was
    /// taken away the system's colours show until the next setting.
    Color BackColor() const;
    void SetBackColor(Color color);
    Color ForeColor() const;
    void SetForeColor(Color color);

    /// Loads the table from the host's cache again. A failure of the host reaches the caller.
    Q_INVOKABLE void ReloadList();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    SavedProperties savedProperties() override;
    void UserControl_InitProperties() override;
    void UserControl_Resize() override;
    void UserControl_ExitFocus() override;
    void UserControl_LostFocus() override;
    void UserControl_MouseUp(int button, int shift, Twips x, Twips y) override;
    void changeEvent(QEvent* event) override;

private:
    // The ways in by a property's name.
    void putTableNo(TableNumber tableNo);
    void putIncludeInactiveValues(bool include);
    void putText(const QVariant& text);

    class Q_DECL_HIDDEN Private;
    std::unique_ptr<Private> d;
};

} // namespace tavrin
