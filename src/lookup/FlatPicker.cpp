#include "lookup/FlatPicker.h"

#include "base/failure/Guard.h"
#include "base/values/Variant.h"
#include "frame/control_frame/FailurePolicy.h"
#include "frame/host_contracts/Host.h"
#include "frame/modUtils.h"
#include "widgets/boxes/KeyCodes.h"
#include "widgets/drawing/BoxShape.h"
#include "widgets/drawing/IconGlyphs.h"
#include "widgets/labels/Label.h"
#include "widgets/labels/Link.h"
#include "widgets/labels/Tag.h"
#include "widgets/panels/GroupBox.h"

#include <QApplication>
#include <QClipboard>
#include <QRegularExpression>
#include <QScopedValueRollback>

#include <algorithm>
#include <exception>

namespace tavrin {

namespace {

const QString PlaceholderText = QStringLiteral("Type to search");

/// At most `length` characters, the last three of a longer text being dots.
QString truncated(const QString& text, int length)
{
    return text.size() <= length ? text : text.left(std::max(0, length - 3)) + QStringLiteral("...");
}

/// A caption without the marks of its access key.
QString withoutAccessKey(const QString& caption)
{
    return QString(caption).replace(QRegularExpression(QStringLiteral("&(.)")), QStringLiteral("\\1"));
}

/// The theme's colours; in the designer, which may have no host, the system's.
TextBoxColors themeColors(bool userMode)
{
    return userMode ? currentHost().uiServices().TextBoxColors() : TextBoxColors{};
}

} // namespace

FlatPicker::FlatPicker(QWidget* parent, const ControlSite& site)
    : SearchPicker(parent, site, *new AutoCompleteTextBox)
    , acTextBox(findChild<AutoCompleteTextBox*>())
    , grpDropDownButton(new GroupBox(this))
    , lnkDropDown(new Link(grpDropDownButton))
    , lblCaption(new Label(this))
    , tagName(new Tag(this))
    , shpBorder(new BoxShape(this))
{
    acTextBox->setObjectName(QStringLiteral("acTextBox"));
    grpDropDownButton->setObjectName(QStringLiteral("grpDropDownButton"));
    lnkDropDown->setObjectName(QStringLiteral("lnkDropDown"));
    lblCaption->setObjectName(QStringLiteral("lblCaption"));
    tagName->setObjectName(QStringLiteral("tagName"));
    shpBorder->setObjectName(QStringLiteral("shpBorder"));
    // From the bottom to the top.
    for (QWidget* widget : {static_cast<QWidget*>(tagName), static_cast<QWidget*>(lblCaption),
                            static_cast<QWidget*>(acTextBox), static_cast<QWidget*>(grpDropDownButton)})
        widget->raise();
    acTextBox->SetPlaceholder(PlaceholderText);
    acTextBox->SetListAnchor(this);
    lnkDropDown->SetSymbol(DropDownGlyph);
    lnkDropDown->SetForeColor(SystemColor::GreyText);
    tagName->hide();
    lblCaption->setBuddy(this);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_subscriptions.push_back(lnkDropDown->Click.subscribe([this] { lnkDropDown_Click(); }));
}

// Properties

void FlatPicker::SetCaption(const QString& caption)
{
    if (caption == m_caption)
        return;
    m_caption = caption;
    setAccessibleName(withoutAccessKey(caption));
    acTextBox->setAccessibleName(accessibleName());
    RefreshAppearance();
    LayoutControls();
    Q_EMIT PropertyChanged(QStringLiteral("Caption"));
}

void FlatPicker::SetRequired(bool required)
{
    if (required == m_required)
        return;
    m_required = required;
    RefreshAppearance();
    LayoutControls();
    Q_EMIT PropertyChanged(QStringLiteral("Required"));
}

void FlatPicker::SetEnabled(bool enabled)
{
    setEnabled(enabled);
    RefreshAppearance();
    Q_EMIT PropertyChanged(QStringLiteral("Enabled"));
}

void FlatPicker::SetShowName(bool show)
{
    m_showName = show;
    tagName->setVisible(show);
    LayoutControls();
    Q_EMIT PropertyChanged(QStringLiteral("ShowName"));
}

QString FlatPicker::FullText() const
{
    return IsNull(m_value) ? QString() : currentHost().newEmployeeListCache()->FullText(m_value);
}

QString FlatPicker::ShortText() const
{
    return IsNull(m_value) ? QString() : currentHost().newEmployeeListCache()->ShortText(m_value);
}

SavedProperty FlatPicker::captionProperty()
{
    return {QStringLiteral("Caption"), PropertyKind::Text, QString(), [this] { return Caption(); },
            [this](const QVariant& value) { SetCaption(value.toString()); }};
}

SavedProperty FlatPicker::requiredProperty()
{
    return booleanProperty(
        QStringLiteral("Required"), false, [this] { return Required(); },
        [this](bool required) { SetRequired(required); });
}

// Choosing

void FlatPicker::selectionChanged()
{
    const XmlNode& item = acTextBox->SelectedItem();
    if (item.isNull()) {
        m_value = Null();
        m_fullText.clear();
        acTextBox->SetText(QString());
    } else {
        const QVariant value = valueOf(item);
        m_fullText = longText(item); // a failure of the host leaves the value as it was
        m_value = value;
        tagName->SetCaption(truncated(m_fullText, tagLength()));
        tagName->SetToolTipText(tagName->Caption() == m_fullText ? QString() : m_fullText);
    }
    // The control itself has the focus where the tag has taken the search box's place.
    setAccessibleDescription(m_fullText);
    RefreshAppearance();
    update();
    Q_EMIT Change();
}

void FlatPicker::selectionForgotten()
{
    m_fullText.clear();
    tagName->SetCaption(QString());
    tagName->SetToolTipText(QString());
    setAccessibleDescription(QString());
    continueOnError([this] { RefreshAppearance(); }); // whoever put the value hears of its own failure
}

void FlatPicker::lnkDropDown_Click()
{
    if (!IsNull(m_value))
        clearByLink();
    else if (acTextBox->ListIsOpen() && acTextBox->Query().isEmpty())
        acTextBox->CloseList(); // the second click on the sign
    else
        acTextBox->ShowSuggestions(QString());
}

void FlatPicker::clearByLink()
{
    const QPointer<FlatPicker> self(this); // whatever loses the focus may close the form
    if (!hasFocusInside())
        setFocus(Qt::MouseFocusReason);
    // The control itself has the focus while a tag stands in the text box's place; once it is cleared, the
    // text box takes the focus over.
    if (self && !IsNull(m_value))
        acTextBox->ClearSelection();
}

void FlatPicker::UserControl_KeyDown(int& keyCode, int shift)
{
    if (IsNull(m_value) || !Enabled())
        return;
    if (shift == 0 && (keyCode == KeyCode::Delete || keyCode == KeyCode::Backspace)) {
        keyCode = 0;
        acTextBox->ClearSelection();
    } else if (shift == ShiftState::Control && keyCode == 'C') {
        keyCode = 0;
        QApplication::clipboard()->setText(tagName->ToolTipText().isEmpty() ? tagName->Caption()
                                                                            : tagName->ToolTipText());
    }
}

// Lifecycle

void FlatPicker::UserControl_InitProperties()
{
    SearchPicker::UserControl_InitProperties();
    trapAndGoOn(typeName(), QStringLiteral("InitProperties"), [this] { RefreshAppearance(); });
}

void FlatPicker::UserControl_Show()
{
    RefreshAppearance();
    LayoutControls();
}

void FlatPicker::UserControl_Resize()
{
    LayoutControls();
}

void FlatPicker::applyFont()
{
    RefreshAppearance();
    LayoutControls();
}

void FlatPicker::UserControl_EnterFocus()
{
    const QPointer<FlatPicker> self(this); // whatever loses the focus may close the form
    if (!acTextBox->isHidden() && acTextBox->isEnabled())
        acTextBox->setFocus();
    if (!self)
        return;
    m_hasFocus = true;
    RefreshAppearance();
}

void FlatPicker::UserControl_ExitFocus()
{
    m_hasFocus = false;
    RefreshAppearance();
}

void FlatPicker::UserControl_AmbientChanged(const QString& propertyName)
{
    if (propertyName == QLatin1String("DisplayName"))
        showDisplayName();
    TakeContainerBackColor();
}

void FlatPicker::changeEvent(QEvent* event)
{
    SearchPicker::changeEvent(event);
    // The theme service's colours and the system's change together.
    const bool looksDifferent =
        event->type() == QEvent::EnabledChange || event->type() == QEvent::PaletteChange;
    if (looksDifferent && !m_isRefreshing)
        guard("FlatPicker_Changed", [this] { RefreshAppearance(); });
}

// Appearance

void FlatPicker::RefreshAppearance()
{
    const QScopedValueRollback refreshing(m_isRefreshing, true);
    tagName->setVisible(showsTag());
    applyFonts();
    std::exception_ptr failure;
    try {
        applyColors();
    } catch (...) {
        failure = std::current_exception(); // the colours stay; all else shows what there is now
    }
    refreshLink();
    refreshCaption();
    LayoutControls();
    if (failure)
        std::rethrow_exception(failure);
}

bool FlatPicker::showsTag() const
{
    return !IsNull(m_value) && m_showName;
}

FontPtr FlatPicker::CloneFont(const tavrin::Font& font) const
{
    auto clone = std::make_shared<tavrin::Font>();
    clone->SetBold(font.Bold());
    clone->SetCharset(font.Charset());
    clone->SetItalic(font.Italic());
    clone->SetName(font.Name());
    clone->SetSize(font.Size());
    clone->SetStrikethrough(font.Strikethrough());
    clone->SetUnderline(font.Underline());
    clone->SetWeight(font.Weight());
    return clone;
}

void FlatPicker::applyFonts()
{
    constexpr double TagSize = 0.95;
    acTextBox->SetFont(Font());
    lnkDropDown->Font()->SetSize(Font()->Size());
    const FontPtr tagFont = CloneFont(*Font());
    tagFont->SetBold(true);
    tagFont->SetSize(Font()->Size() * TagSize);
    tagName->SetFont(tagFont);
}

void FlatPicker::applyColors()
{
    const TextBoxColors colors = themeColors(ambient().UserMode());
    const TextBoxColorSet& set = !isEnabled() ? colors.Disabled : m_hasFocus ? colors.Focused : colors.Normal;
    tagName->SetForeColor(set.TagForeColor);
    tagName->SetBackColor(set.TagBackColor);
    shpBorder->SetBorderColor(set.BorderColor);
    acTextBox->SetForeColor(set.ForeColor);
    acTextBox->SetBackColor(set.BackColor);
    acTextBox->SetPlaceholderColor(colors.Disabled.ForeColor);
    grpDropDownButton->SetBackColor(set.BackColor);
    lblCaption->SetForeColor(set.ForeColor);
    shpBorder->SetBackColor(set.BackColor);
    TakeContainerBackColor();
    acTextBox->SetPlaceholder(isEnabled() ? PlaceholderText : QString());
}

void FlatPicker::refreshLink()
{
    const bool clears = isEnabled() && !IsNull(m_value);
    lnkDropDown->SetSymbol(clears ? ClearGlyph : DropDownGlyph);
    lnkDropDown->SetToolTipText(IsNull(m_value) ? QString() : QStringLiteral("Clear"));
    lnkDropDown->SetForeColor(shpBorder->BorderColor());
}

void FlatPicker::refreshCaption()
{
    lblCaption->SetFont(CloneFont(*Font()));
    lblCaption->SetCaption(!m_caption.isEmpty() && m_required ? m_caption + QLatin1Char('*') : m_caption);
    lblCaption->setVisible(!m_caption.isEmpty());
}

} // namespace tavrin
