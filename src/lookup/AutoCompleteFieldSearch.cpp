// The list of the field: how it is loaded, searched, and chosen from.

#include "base/values/Variant.h"
#include "frame/control_frame/Trace.h"
#include "frame/host_contracts/Host.h"
#include "lookup/AutoCompleteFieldPrivate.h"
#include "widgets/boxes/KeyCodes.h"
#include "widgets/boxes/TextBox.h"
#include "widgets/lists/DropDownList.h"

#include <QApplication>
#include <QPointer>
#include <QScopedValueRollback>

namespace tavrin {

namespace {

constexpr int MinimumQueryLength = 3;
constexpr qint32 SearchDelay = 20; // milliseconds; the box takes the character in between

// The person's text travels in the attribute and never in the expression, so none of it needs quoting.
const QString SearchAttribute = QStringLiteral("searchString");
const QString SearchExpression =
    QStringLiteral("List/Item[contains(DisplayText, /*/@searchString) or contains(ID, /*/@searchString)]");

QString showText(const TableValue& value)
{
    return value.ID == value.DisplayText ? value.DisplayText
                                         : value.ID + QStringLiteral(" - ") + value.DisplayText;
}

} // namespace

// The list

void AutoCompleteField::Private::LoadList()
{
    if (m_tableNo == Tables::None || !q.ambient().UserMode()) {
        lstMatches->Clear();
        return;
    }
    Host& host = currentHost();
    const TableValues values = host.hostServices().GetTableValues(m_tableNo, m_includeInactive);
    XmlDocument document = host.xmlFactory().CreateDocument();
    document.loadXML(QStringLiteral("<List />"));
    const XmlNode list = document.documentElement();
    for (const TableValue& value : values.Items) {
        const XmlNode item = list.appendElement(QStringLiteral("Item"));
        item.appendElement(QStringLiteral("ID"), value.ID.toLower());
        item.appendElement(QStringLiteral("DisplayText"), value.DisplayText.toLower());
        item.appendElement(QStringLiteral("Value"), ToText(value.Value));
        item.appendElement(QStringLiteral("ShowText"), showText(value));
    }
    document.setProperty(QStringLiteral("SelectionLanguage"), QStringLiteral("XPath"));
    m_document = document;
}

void AutoCompleteField::Private::m_AutoCompleteTimer_Elapsed()
{
    Search(txtSearch->Text());
}

void AutoCompleteField::Private::Search(const QString& text)
{
    const QPointer<AutoCompleteField> self(&q);
    q.SetValue(Null()); // typing after a choice takes the choice away
    if (!self)
        return;
    if (text.size() < MinimumQueryLength || !m_document) {
        lstMatches->Clear();
        ShowList(false);
        return;
    }
    m_document->documentElement().setAttribute(SearchAttribute, text.toLower());
    const XmlNodeList matches = m_document->selectNodes(SearchExpression);
    if (matches.empty())
        ShowList(false); // the entries of the last match stay
    else
        ShowMatches(matches);
}

void AutoCompleteField::Private::ShowMatches(const XmlNodeList& matches)
{
    lstMatches->Clear();
    for (const XmlNode& item : matches) {
        lstMatches->AddItem(item.childElement(QStringLiteral("ShowText")).text(),
                            ToLong(item.childElement(QStringLiteral("Value")).text()));
    }
    Deselect();
    // Who has gone on, or closed the list, before the answer came wants none.
    if (m_wantsList && q.isAncestorOf(QApplication::focusWidget()))
        ShowList(true);
}

void AutoCompleteField::Private::Deselect()
{
    const QScopedValueRollback searching(m_searching, true);
    lstMatches->SetListIndex(-1);
}

void AutoCompleteField::Private::ShowList(bool open)
{
    if (open && lstMatches->IsOpen())
        return;
    if (open)
        lstMatches->Open();
    else
        lstMatches->Close();
    lstMatches->unsetCursor();
}

bool AutoCompleteField::Private::SelectCurrentItem()
{
    TAVRIN_TRACE_LINE(QStringLiteral("Selecting current item..."));
    if (lstMatches->ListCount() == 0)
        return true;
    if (const int index = lstMatches->ListIndex(); index >= 0) {
        // The text first into a copy: a follower of the value may load another list, or close the form.
        const QString text = lstMatches->List(index);
        const QPointer<AutoCompleteField> self(&q);
        if (m_AutoCompleteTimer)
            m_AutoCompleteTimer->Stop(); // a search for what was typed before would take the choice away
        q.SetValue(lstMatches->ItemData(index));
        if (self)
            q.SetText(text);
        if (!self)
            return false;
    }
    ShowList(false);
    return true;
}

void AutoCompleteField::Private::FocusText()
{
    txtSearch->setFocus();
    txtSearch->SetSelection(0, static_cast<int>(txtSearch->Text().size()));
}

// Keys

void AutoCompleteField::Private::txtSearch_KeyPress(int& keyAscii)
{
    // & (38) and ( (40) never start a search: forms rely on it.
    const bool isText = keyAscii >= 32 && keyAscii <= 128 && keyAscii != 38 && keyAscii != 40;
    if (isText || keyAscii == KeyCode::Backspace) {
        if (!m_AutoCompleteTimer) {
            m_AutoCompleteTimer = std::make_unique<Timer>();
            m_subscriptions.push_back(
                m_AutoCompleteTimer->Elapsed.subscribe([this] { m_AutoCompleteTimer_Elapsed(); }));
        }
        m_AutoCompleteTimer->SetOneShot(true);
        m_AutoCompleteTimer->SetInterval(SearchDelay);
        m_AutoCompleteTimer->Start();
        m_wantsList = true;
    }
    if (keyAscii == KeyCode::Enter) {
        const bool wasOpen = lstMatches->IsOpen();
        if (!wasOpen && IsNull(m_value))
            Deselect(); // it was marked in a list that nobody sees any more
        if (wasOpen) {
            keyAscii = 0; // this Enter answers the list; the form's default button is not meant
            m_wantsList = false;
        }
        SelectCurrentItem();
    }
}

void AutoCompleteField::Private::txtSearch_KeyDown(int& keyCode, int)
{
    if (keyCode == KeyCode::Escape && lstMatches->IsOpen()) {
        keyCode = 0; // the dialog stays
        m_wantsList = false;
        ShowList(false);
        return;
    }
    if (keyCode != KeyCode::Down || !lstMatches->IsOpen() || lstMatches->ListCount() == 0)
        return;
    keyCode = 0; // the page that the field stands on does not scroll
    lstMatches->setFocus();
    const int index = lstMatches->ListIndex();
    if (index < 0)
        lstMatches->SetListIndex(0);
    else if (index < lstMatches->ListCount() - 1)
        lstMatches->SetListIndex(index + 1);
}

void AutoCompleteField::Private::txtSearch_Change()
{
    // A marked entry belongs to the text it was found for. Enter after further typing, or after the form has
    // loaded another record, must not take it.
    if (txtSearch->Text() != lstMatches->Text())
        Deselect();
    if (txtSearch->Text().isEmpty())
        q.SetValue(Null());
}

void AutoCompleteField::Private::lstMatches_KeyDown(int& keyCode, int)
{
    if (keyCode == KeyCode::Enter) {
        keyCode = 0;
        if (SelectCurrentItem())
            FocusText();
    } else if (keyCode == KeyCode::Escape) {
        keyCode = 0;
        m_wantsList = false;
        txtSearch->setFocus();
    }
}

void AutoCompleteField::Private::lstMatches_Click()
{
    if (m_searching || lstMatches->IsOpen())
        return;
    if (SelectCurrentItem())
        FocusText();
}

} // namespace tavrin
