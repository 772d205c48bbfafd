#pragma once

#include "base/export/Export.h"
#include "base/xml/XmlDocument.h"
#include "frame/Timer.h"
#include "frame/control_frame/UserControl.h"
#include "frame/host_contracts/Contracts.h"

#include <memory>
#include <optional>
#include <vector>

namespace tavrin {

class DropDownList;
class TextBox;

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
///     record.setValue("LocationTypeNo", location->Value()); // Null when nothing is chosen
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
    Q_PROPERTY(qint32 TableNo READ TableNo WRITE SetTableNo)
    Q_PROPERTY(bool IncludeInactiveValues READ IncludeInactiveValues WRITE SetIncludeInactiveValues)
    Q_PROPERTY(QVariant Value READ Value WRITE SetValue)
    Q_PROPERTY(QVariant Text READ Text WRITE SetText)
    Q_PROPERTY(tavrin::Color BackColor READ BackColor WRITE SetBackColor)
    Q_PROPERTY(tavrin::Color ForeColor READ ForeColor WRITE SetForeColor)

public:
    explicit AutoCompleteField(QWidget* parent = nullptr, const ControlSite& site = {});
    ~AutoCompleteField() override;

    /// Whether the field takes input. Disabling closes the list.
    bool Enabled() const { return m_enabled; }
    void SetEnabled(bool enabled);

    /// The code table to search; -1 for none. Setting it loads the table from the host's cache, also when the
    /// number stays the same; a failure of the host reaches the caller. A new field has 0, a restored one
    /// without a saved number -1.
    TableNumber TableNo() const { return m_tableNo; }
    void SetTableNo(TableNumber tableNo);

    /// Whether inactive values are searched too. Setting it loads the table again.
    bool IncludeInactiveValues() const { return m_includeInactive; }
    void SetIncludeInactiveValues(bool include);

    /// The chosen value, a 32-bit integer, or Null when nothing is chosen; Empty counts as Null. Setting it
    /// colours the box, and neither checks it against the table nor changes the text.
    QVariant Value() const { return m_value; }
    void SetValue(const QVariant& value);

    /// The text in the box. An empty text takes the value away; Null counts as empty.
    QVariant Text() const;
    void SetText(const QVariant& text);

    /// The box's colours while nothing is chosen, by default the system's window colours. After a value was
    /// taken away the system's colours show until the next setting.
    Color BackColor() const { return m_backColor; }
    void SetBackColor(Color color);
    Color ForeColor() const { return m_foreColor; }
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
    void txtSearch_KeyDown(int& keyCode, int shift);
    void txtSearch_KeyPress(int& keyAscii);
    void txtSearch_Change();
    void lstMatches_KeyDown(int& keyCode, int shift);
    void lstMatches_Click();
    void m_AutoCompleteTimer_Elapsed();

    void LoadList();
    void Search(const QString& text);
    void ShowMatches(const XmlNodeList& matches);
    void Deselect();
    /// False when a follower of the choice has deleted the field.
    bool SelectCurrentItem();
    void FocusText();
    void ShowList(bool open);

    TextBox* txtSearch;
    DropDownList* lstMatches;
    std::unique_ptr<Timer> m_AutoCompleteTimer;

    bool m_enabled = false;
    TableNumber m_tableNo = 0;
    bool m_includeInactive = false;
    QVariant m_value;
    QString m_text;
    Color m_backColor;
    Color m_foreColor;
    bool m_searching = false;
    bool m_wantsList = false; // since the last key that searches
    std::optional<XmlDocument> m_document;
    std::vector<Subscription> m_subscriptions;
};

} // namespace tavrin
