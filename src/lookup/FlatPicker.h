#pragma once

#include "base/export/Export.h"
#include "lookup/SearchPicker.h"

namespace tavrin {

/// The frame of both flat pickers: a caption, and below it a box that changes its colours with its state. In
/// the box are the search box, a tag with the chosen name, and one link: the drop-down sign while nothing is
/// chosen, the clear sign otherwise. Either takes the focus into the search box.
///
/// From the keyboard: Down or Alt+Down opens the list. Where the tag has taken the search box's place,
/// Delete or Backspace clears, and Ctrl+C copies the chosen name.
class TAVRIN_EXPORT FlatPicker : public SearchPicker
{
    Q_OBJECT

public:
    /// The line above the box; "", the default, for none. An '&' marks an access key. A failure of the host's
    /// theme reaches the caller; the caption is the new one then.
    QString Caption() const;
    void SetCaption(const QString& caption);

    /// Marks the caption with "*"; false by default. The picker itself refuses nothing. A failure of the
    /// host's theme reaches the caller; the mark is there then.
    bool Required() const;
    void SetRequired(bool required);

    /// Its own state, true by default; in a disabled form it looks disabled all the same. A failure of the
    /// host's theme reaches the caller; the state is the new one then.
    bool Enabled() const final { return isEnabledTo(parentWidget()); }
    void SetEnabled(bool enabled) final;

    /// Whether a tag shows the chosen name; true by default.
    void SetShowName(bool show) final;

    /// What the host's employee list says of the value; "" for Null. A failure of the host reaches the
    /// caller.
    QString FullText() const final;
    QString ShortText() const final;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    // For the two flat pickers.
    FlatPicker(QWidget* parent, const ControlSite& site);

    void UserControl_InitProperties() override;
    void UserControl_Show() override;
    void UserControl_Resize() override;
    void UserControl_EnterFocus() override;
    void UserControl_ExitFocus() override;
    void UserControl_AmbientChanged(const QString& propertyName) override;
    void UserControl_KeyDown(int& keyCode, int shift) override;
    void changeEvent(QEvent* event) override;

    // The ways in by a property's name.
    void putCaption(const QString& caption);
    void putRequired(bool required);
    void putEnabled(bool enabled);
    void putFont(const FontPtr& font);

    class Q_DECL_HIDDEN Private;

private:
    Private& own() const;
};

} // namespace tavrin
