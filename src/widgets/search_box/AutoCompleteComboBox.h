#pragma once

#include "widgets/search_box/SearchBox.h"

namespace tavrin {

class Link;

/// A search box with a border and a button at its right end: the drop-down sign while it is empty, and the
/// clear sign, where that is wanted, while it holds something.
class AutoCompleteComboBox final : public SearchBox
{
    Q_OBJECT

public:
    explicit AutoCompleteComboBox(QWidget* parent = nullptr);

    void SetEnabled(bool enabled) { setEnabled(enabled); }

    /// Whether the button clears a box that holds something. False at first.
    bool ShowClearButton() const { return m_showClearButton; }
    void SetShowClearButton(bool show);

    void SetMinQueryLength(int length);

protected:
    void fontChanged() override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    bool clears() const;
    void refreshButton();
    void lnkButton_Click();

    Link* lnkButton;
    bool m_showClearButton = false;
    std::vector<Subscription> m_subscriptions;
};

} // namespace tavrin
