#pragma once

#include "base/xml/XmlDocument.h"
#include "frame/Timer.h"
#include "lookup/AutoCompleteField.h"

#include <optional>
#include <vector>

namespace tavrin {

class DropDownList;
class TextBox;

class AutoCompleteField::Private
{
    Q_DISABLE_COPY_MOVE(Private)

public:
    explicit Private(AutoCompleteField& field);

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

    AutoCompleteField& q;
    TextBox* txtSearch;
    DropDownList* lstMatches;
    std::unique_ptr<Timer> m_AutoCompleteTimer;

    bool m_enabled = false;
    TableNumber m_tableNo = 0;
    bool m_includeInactive = false;
    QVariant m_value;
    Color m_backColor;
    Color m_foreColor;
    bool m_searching = false;
    bool m_wantsList = false; // since the last key that searches
    std::optional<XmlDocument> m_document;
    std::vector<Subscription> m_subscriptions;
};

} // namespace tavrin
