#include "lookup/AutoCompleteField.h"

#include "base/values/Variant.h"
#include "frame/control_frame/FailurePolicy.h"
#include "frame/host_contracts/Host.h"
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
constexpr Color ChosenBackColor = Color::rgb(255, 255, 128);
constexpr Color ChosenForeColor = Color::rgb(0, 0, 0);

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

AutoCompleteField::AutoCompleteField(QWidget* parent, const ControlSite& site)
    : UserControl(parent, site)
    , txtSearch(new TextBox(this))
    , lstMatches(new DropDownList(this))
    , m_value(Null())
{
    txtSearch->setObjectName(QStringLiteral("txtSearch"));
    lstMatches->setObjectName(QStringLiteral("lstMatches"));
    lstMatches->lower(); // the box covers it
    lstMatches->setBox(txtSearch);
    setFocusProxy(txtSearch);
    setFocusPolicy(Qt::StrongFocus); // so that the access key of a label finds the way to the box
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    resize(sizeHint());
    m_subscriptions.push_back(
        txtSearch->KeyDown.subscribe([this](int& key, int shift) { txtSearch_KeyDown(key, shift); }));
    m_subscriptions.push_back(txtSearch->KeyPress.subscribe([this](int& key) { txtSearch_KeyPress(key); }));
    m_subscriptions.push_back(txtSearch->Change.subscribe([this] { txtSearch_Change(); }));
    m_subscriptions.push_back(
        lstMatches->KeyDown.subscribe([this](int& key, int shift) { lstMatches_KeyDown(key, shift); }));
    m_subscriptions.push_back(lstMatches->Click.subscribe([this] { lstMatches_Click(); }));
    begin();
}

AutoCompleteField::~AutoCompleteField() = default;

// Properties

SavedProperties AutoCompleteField::savedProperties()
{
    SavedProperty foreColor = colorProperty(
        QStringLiteral("ForeColor"), SystemColor::WindowText, [this] { return ForeColor(); },
        [this](Color color) { SetForeColor(color); });
    foreColor.writtenKey = QStringLiteral("Forecolor"); // saved forms hold this form of the key
    return {
        booleanProperty(
            QStringLiteral("Enabled"), true, [this] { return Enabled(); },
            [this](bool enabled) { SetEnabled(enabled); }),
        {QStringLiteral("TableNo"), PropertyKind::Long, Tables::None, [this] { return TableNo(); },
         [this](const QVariant& value) { SetTableNo(value.toInt()); }},
        booleanProperty(
            QStringLiteral("IncludeInactiveValues"), false, [this] { return IncludeInactiveValues(); },
            [this](bool include) { SetIncludeInactiveValues(include); }),
        {QStringLiteral("Value"), PropertyKind::Variant, Null(), [this] { return Value(); },
         [this](const QVariant& value) { SetValue(value); }},
        {QStringLiteral("Text"), PropertyKind::Text, QString(), [this] { return Text(); },
         [this](const QVariant& value) { SetText(value); }},
        colorProperty(
            QStringLiteral("BackColor"), SystemColor::WindowBackground, [this] { return BackColor(); },
            [this](Color color) { SetBackColor(color); }),
        foreColor,
    };
}

void AutoCompleteField::UserControl_InitProperties()
{
    trapAndGoOn(
        typeName(), QStringLiteral("InitProperties"), [this] { SetValue(Null()); },
        [this] { SetEnabled(true); }, [this] { SetBackColor(SystemColor::WindowBackground); },
        [this] { SetForeColor(SystemColor::WindowText); });
}

void AutoCompleteField::SetEnabled(bool enabled)
{
    m_enabled = enabled;
    if (!enabled)
        ShowList(false);
    txtSearch->setEnabled(enabled);
    lstMatches->setEnabled(enabled);
    Q_EMIT PropertyChanged(QStringLiteral("Enabled"));
}

void AutoCompleteField::SetTableNo(TableNumber tableNo)
{
    m_tableNo = tableNo;
    if (ReportChange(QStringLiteral("TableNo")))
        LoadList();
}

void AutoCompleteField::SetIncludeInactiveValues(bool include)
{
    m_includeInactive = include;
    if (ReportChange(QStringLiteral("IncludeInactiveValues")))
        LoadList();
}

void AutoCompleteField::SetValue(const QVariant& value)
{
    m_value = IsEmpty(value) ? Null() : value;
    if (!ReportChange(QStringLiteral("Value")))
        return;
    const bool chosen = !IsNull(m_value); // a follower may have set another one
    // The system's colours, and not the stored ones, when the value goes: this is meant.
    txtSearch->SetBackColor(chosen ? ChosenBackColor : SystemColor::WindowBackground);
    txtSearch->SetForeColor(chosen ? ChosenForeColor : SystemColor::WindowText);
}

QVariant AutoCompleteField::Text() const
{
    return txtSearch->Text();
}

void AutoCompleteField::SetText(const QVariant& text)
{
    const QPointer<AutoCompleteField> self(this); // an empty text drops the value, which has followers
    m_text = ToText(text);
    txtSearch->SetText(m_text);
    if (self)
        Q_EMIT PropertyChanged(QStringLiteral("Text"));
}

void AutoCompleteField::SetBackColor(Color color)
{
    m_backColor = color;
    if (IsNull(m_value))
        txtSearch->SetBackColor(color);
    Q_EMIT PropertyChanged(QStringLiteral("BackColor"));
}

void AutoCompleteField::SetForeColor(Color color)
{
    m_foreColor = color;
    if (IsNull(m_value))
        txtSearch->SetForeColor(color);
    Q_EMIT PropertyChanged(QStringLiteral("ForeColor"));
}

// The list

void AutoCompleteField::ReloadList()
{
    LoadList();
}

void AutoCompleteField::LoadList()
{
    if (m_tableNo == Tables::None || !ambient().UserMode()) {
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

void AutoCompleteField::m_AutoCompleteTimer_Elapsed()
{
    Search(txtSearch->Text());
}

void AutoCompleteField::Search(const QString& text)
{
    const QPointer<AutoCompleteField> self(this);
    SetValue(Null()); // typing after a choice takes the choice away
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

void AutoCompleteField::ShowMatches(const XmlNodeList& matches)
{
    lstMatches->Clear();
    for (const XmlNode& item : matches) {
        lstMatches->AddItem(item.childElement(QStringLiteral("ShowText")).text(),
                            ToLong(item.childElement(QStringLiteral("Value")).text()));
    }
    Deselect();
    // Who has gone on, or closed the list, before the answer came wants none.
    if (m_wantsList && isAncestorOf(QApplication::focusWidget()))
        ShowList(true);
}

void AutoCompleteField::Deselect()
{
    const QScopedValueRollback searching(m_searching, true);
    lstMatches->SetListIndex(-1);
}

void AutoCompleteField::ShowList(bool open)
{
    if (open && lstMatches->IsOpen())
        return;
    if (open)
        lstMatches->Open();
    else
        lstMatches->Close();
    lstMatches->unsetCursor();
}

bool AutoCompleteField::SelectCurrentItem()
{
    TAVRIN_TRACE_LINE(QStringLiteral("Selecting current item..."));
    if (lstMatches->ListCount() == 0)
        return true;
    if (const int index = lstMatches->ListIndex(); index >= 0) {
        // The text first into a copy: a follower of the value may load another list, or close the form.
        const QString text = lstMatches->List(index);
        const QPointer<AutoCompleteField> self(this);
        if (m_AutoCompleteTimer)
            m_AutoCompleteTimer->Stop(); // a search for what was typed before would take the choice away
        SetValue(lstMatches->ItemData(index));
        if (self)
            SetText(text);
        if (!self)
            return false;
    }
    ShowList(false);
    return true;
}

void AutoCompleteField::FocusText()
{
    txtSearch->setFocus();
    txtSearch->SetSelection(0, static_cast<int>(txtSearch->Text().size()));
}

// Keys, mouse and focus

void AutoCompleteField::txtSearch_KeyPress(int& keyAscii)
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

void AutoCompleteField::txtSearch_KeyDown(int& keyCode, int)
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

void AutoCompleteField::txtSearch_Change()
{
    // A marked entry belongs to the text it was found for. Enter after further typing, or after the form has
    // loaded another record, must not take it.
    if (txtSearch->Text() != lstMatches->Text())
        Deselect();
    if (txtSearch->Text().isEmpty())
        SetValue(Null());
}

void AutoCompleteField::lstMatches_KeyDown(int& keyCode, int)
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

void AutoCompleteField::lstMatches_Click()
{
    if (m_searching || lstMatches->IsOpen())
        return;
    if (SelectCurrentItem())
        FocusText();
}

void AutoCompleteField::UserControl_ExitFocus()
{
    ShowList(false);
}

void AutoCompleteField::UserControl_LostFocus()
{
    ShowList(false);
}

void AutoCompleteField::UserControl_MouseUp(int button, int, Twips, Twips)
{
    if ((button & 1) != 0)
        ShowList(false);
}

// Layout

QSize AutoCompleteField::sizeHint() const
{
    return txtSearch->sizeHint();
}

QSize AutoCompleteField::minimumSizeHint() const
{
    return txtSearch->minimumSizeHint();
}

void AutoCompleteField::UserControl_Resize()
{
    continueOnError([&] { txtSearch->resize(toPixels(ScaleWidth()), txtSearch->sizeHint().height()); },
                    [&] {
                        if (!ambient().UserMode() && height() > txtSearch->height())
                            SetHeight(toTwips(txtSearch->height()));
                    },
                    [&] {
                        if (!ambient().UserMode() && width() > txtSearch->width())
                            SetWidth(toTwips(txtSearch->width()));
                    },
                    [&] { lstMatches->setGeometry(txtSearch->geometry()); });
}

void AutoCompleteField::changeEvent(QEvent* event)
{
    UserControl::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        updateGeometry();
        UserControl_Resize(); // the box's height follows its font
    }
}

} // namespace tavrin
