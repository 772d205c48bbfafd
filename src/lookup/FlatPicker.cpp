#include "lookup/FlatPicker.h"

#include "base/failure/ByName.h"
#include "base/failure/Guard.h"
#include "base/values/Variant.h"
#include "frame/control_frame/FailurePolicy.h"
#include "frame/host_contracts/Host.h"
#include "frame/modUtils.h"
#include "lookup/FlatPickerPrivate.h"
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

FlatPicker::Private::Private(FlatPicker& picker)
    : SearchPicker::Private(picker, *new AutoCompleteTextBox)
    , acTextBox(static_cast<AutoCompleteTextBox*>(&m_box))
    , grpDropDownButton(new GroupBox(&q))
    , lnkDropDown(new Link(grpDropDownButton))
    , lblCaption(new Label(&q))
    , tagName(new Tag(&q))
    , shpBorder(new BoxShape(&q))
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
    acTextBox->SetListAnchor(&q);
    lnkDropDown->SetSymbol(DropDownGlyph);
    lnkDropDown->SetForeColor(SystemColor::GreyText);
    tagName->hide();
    lblCaption->setBuddy(&q);
    q.setFocusPolicy(Qt::StrongFocus);
    q.setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_subscriptions.push_back(lnkDropDown->Click.subscribe([this] { lnkDropDown_Click(); }));
}

FlatPicker::FlatPicker(QWidget* parent, const ControlSite& site)
    : SearchPicker(parent, site)
{
}

FlatPicker::Private& FlatPicker::own() const
{
    return static_cast<Private&>(*d);
}

// Properties

QString FlatPicker::Caption() const
{
    return own().m_caption;
}

void FlatPicker::SetCaption(const QString& caption)
{
    if (caption == own().m_caption)
        return;
    own().m_caption = caption;
    setAccessibleName(withoutAccessKey(caption));
    own().acTextBox->setAccessibleName(accessibleName());
    own().RefreshAppearance();
    own().LayoutControls();
    Q_EMIT PropertyChanged(QStringLiteral("Caption"));
}

bool FlatPicker::Required() const
{
    return own().m_required;
}

void FlatPicker::SetRequired(bool required)
{
    if (required == own().m_required)
        return;
    own().m_required = required;
    own().RefreshAppearance();
    own().LayoutControls();
    Q_EMIT PropertyChanged(QStringLiteral("Required"));
}

void FlatPicker::SetEnabled(bool enabled)
{
    setEnabled(enabled);
    own().RefreshAppearance();
    Q_EMIT PropertyChanged(QStringLiteral("Enabled"));
}

void FlatPicker::SetShowName(bool show)
{
    d->m_showName = show;
    own().tagName->setVisible(show);
    own().LayoutControls();
    Q_EMIT PropertyChanged(QStringLiteral("ShowName"));
}

QString FlatPicker::FullText() const
{
    return IsNull(d->m_value) ? QString() : currentHost().newEmployeeListCache()->FullText(d->m_value);
}

QString FlatPicker::ShortText() const
{
    return IsNull(d->m_value) ? QString() : currentHost().newEmployeeListCache()->ShortText(d->m_value);
}

void FlatPicker::putCaption(const QString& caption)
{
    byName(*this, d->member("Caption").constData(), [&] { SetCaption(caption); });
}

void FlatPicker::putRequired(bool required)
{
    byName(*this, d->member("Required").constData(), [&] { SetRequired(required); });
}

void FlatPicker::putEnabled(bool enabled)
{
    byName(*this, d->member("Enabled").constData(), [&] { SetEnabled(enabled); });
}

void FlatPicker::putFont(const FontPtr& font)
{
    byName(*this, d->member("Font").constData(), [&] { SetFont(font); });
}

SavedProperty FlatPicker::Private::captionProperty()
{
    auto& picker = static_cast<FlatPicker&>(q);
    return {QStringLiteral("Caption"), PropertyKind::Text, QString(), [&picker] { return picker.Caption(); },
            [&picker](const QVariant& value) { picker.SetCaption(value.toString()); }};
}

SavedProperty FlatPicker::Private::requiredProperty()
{
    auto& picker = static_cast<FlatPicker&>(q);
    return booleanProperty(
        QStringLiteral("Required"), false, [&picker] { return picker.Required(); },
        [&picker](bool required) { picker.SetRequired(required); });
}

// Choosing

void FlatPicker::Private::selectionChanged()
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
    q.setAccessibleDescription(m_fullText);
    RefreshAppearance();
    q.update();
    Q_EMIT q.Change();
}

void FlatPicker::Private::selectionForgotten()
{
    m_fullText.clear();
    tagName->SetCaption(QString());
    tagName->SetToolTipText(QString());
    q.setAccessibleDescription(QString());
    continueOnError([this] { RefreshAppearance(); }); // whoever put the value hears of its own failure
}

void FlatPicker::Private::lnkDropDown_Click()
{
    if (!IsNull(m_value))
        clearByLink();
    else if (acTextBox->ListIsOpen() && acTextBox->Query().isEmpty())
        acTextBox->CloseList(); // the second click on the sign
    else
        acTextBox->ShowSuggestions(QString());
}

void FlatPicker::Private::clearByLink()
{
    const QPointer<SearchPicker> self(&q); // whatever loses the focus may close the form
    if (!m_hasFocus)
        q.setFocus(Qt::MouseFocusReason);
    // The control itself has the focus while a tag stands in the text box's place; once it is cleared, the
    // text box takes the focus over.
    if (self && !IsNull(m_value))
        acTextBox->ClearSelection();
}

void FlatPicker::UserControl_KeyDown(int& keyCode, int shift)
{
    if (IsNull(d->m_value) || !Enabled())
        return;
    if (shift == 0 && (keyCode == KeyCode::Delete || keyCode == KeyCode::Backspace)) {
        keyCode = 0;
        own().acTextBox->ClearSelection();
    } else if (shift == ShiftState::Control && keyCode == 'C') {
        keyCode = 0;
        QApplication::clipboard()->setText(
            own().tagName->ToolTipText().isEmpty() ? own().tagName->Caption() : own().tagName->ToolTipText());
    }
}

// Lifecycle

void FlatPicker::UserControl_InitProperties()
{
    SearchPicker::UserControl_InitProperties();
    trapAndGoOn(typeName(), QStringLiteral("InitProperties"), [this] { own().RefreshAppearance(); });
}

void FlatPicker::UserControl_Show()
{
    own().RefreshAppearance();
    own().LayoutControls();
}

void FlatPicker::UserControl_Resize()
{
    own().LayoutControls();
}

void FlatPicker::Private::applyFont()
{
    RefreshAppearance();
    LayoutControls();
}

void FlatPicker::UserControl_EnterFocus()
{
    const QPointer<FlatPicker> self(this); // whatever loses the focus may close the form
    if (!own().acTextBox->isHidden() && own().acTextBox->isEnabled())
        own().acTextBox->setFocus();
    if (!self)
        return;
    own().m_hasFocus = true;
    own().RefreshAppearance();
}

void FlatPicker::UserControl_ExitFocus()
{
    own().m_hasFocus = false;
    own().RefreshAppearance();
}

void FlatPicker::UserControl_AmbientChanged(const QString& propertyName)
{
    if (propertyName == QLatin1String("DisplayName"))
        d->showDisplayName();
    TakeContainerBackColor();
}

void FlatPicker::changeEvent(QEvent* event)
{
    SearchPicker::changeEvent(event);
    // The theme service's colours and the system's change together.
    const bool looksDifferent =
        event->type() == QEvent::EnabledChange || event->type() == QEvent::PaletteChange;
    if (looksDifferent && !own().m_isRefreshing)
        guard("FlatPicker_Changed", [this] { own().RefreshAppearance(); });
}

// Appearance

void FlatPicker::Private::RefreshAppearance()
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

bool FlatPicker::Private::showsTag() const
{
    return !IsNull(m_value) && m_showName;
}

FontPtr FlatPicker::Private::CloneFont(const tavrin::Font& font) const
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

void FlatPicker::Private::applyFonts()
{
    constexpr double TagSize = 0.95;
    acTextBox->SetFont(q.Font());
    lnkDropDown->Font()->SetSize(q.Font()->Size());
    const FontPtr tagFont = CloneFont(*q.Font());
    tagFont->SetBold(true);
    tagFont->SetSize(q.Font()->Size() * TagSize);
    tagName->SetFont(tagFont);
}

void FlatPicker::Private::applyColors()
{
    const TextBoxColors colors = themeColors(q.ambient().UserMode());
    const TextBoxColorSet& set = !q.isEnabled() ? colors.Disabled
                                 : m_hasFocus   ? colors.Focused
                                                : colors.Normal;
    tagName->SetForeColor(set.TagForeColor);
    tagName->SetBackColor(set.TagBackColor);
    shpBorder->SetBorderColor(set.BorderColor);
    acTextBox->SetForeColor(set.ForeColor);
    acTextBox->SetBackColor(set.BackColor);
    acTextBox->SetPlaceholderColor(colors.Disabled.ForeColor);
    grpDropDownButton->SetBackColor(set.BackColor);
    lblCaption->SetForeColor(set.ForeColor);
    shpBorder->SetBackColor(set.BackColor);
    q.TakeContainerBackColor();
    acTextBox->SetPlaceholder(q.isEnabled() ? PlaceholderText : QString());
}

void FlatPicker::Private::refreshLink()
{
    const bool clears = q.isEnabled() && !IsNull(m_value);
    lnkDropDown->SetSymbol(clears ? ClearGlyph : DropDownGlyph);
    lnkDropDown->SetToolTipText(IsNull(m_value) ? QString() : QStringLiteral("Clear"));
    lnkDropDown->SetForeColor(shpBorder->BorderColor());
}

void FlatPicker::Private::refreshCaption()
{
    lblCaption->SetFont(CloneFont(*q.Font()));
    lblCaption->SetCaption(!m_caption.isEmpty() && m_required ? m_caption + QLatin1Char('*') : m_caption);
    lblCaption->setVisible(!m_caption.isEmpty());
}

} // namespace tavrin
