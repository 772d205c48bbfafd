#include "sections/MultiValue.h"

#include "base/failure/Error.h"
#include "base/failure/Guard.h"
#include "base/values/Variant.h"
#include "frame/control_frame/FailurePolicy.h"
#include "frame/desktop/Desktop.h"
#include "frame/host_contracts/Host.h"
#include "frame/host_contracts/HostObjects.h"
#include "sections/ValueRows.h"
#include "sections/frmMultiValueSelect.h"
#include "widgets/boxes/KeyCodes.h"
#include "widgets/drawing/Placement.h"
#include "widgets/labels/TextLink.h"
#include "widgets/lists/ListBox.h"

#include <QApplication>
#include <QKeyEvent>
#include <QScopeGuard>

#include <algorithm>
#include <utility>

namespace tavrin {

namespace {

constexpr double BackShade = 0.4;
constexpr double LinkFontSize = 18;
constexpr Twips LinkLeft = 120;
constexpr Twips LinkOverList = 30;
constexpr Twips LinkOverEdge = 120;
constexpr Twips DesignWidth = 2475;
constexpr Twips LinkTop = 1620;
constexpr Twips LinkHeight = 435;

void designLink(TextLink& link, const char* name, QLatin1Char sign, const char* told, Twips left, Twips width)
{
    link.setObjectName(QString::fromLatin1(name));
    const auto font = std::make_shared<Font>();
    font->SetName(QStringLiteral("Arial"));
    font->SetSize(LinkFontSize);
    font->SetBold(true);
    link.SetFont(font);
    link.SetCaption(QString(sign));
    link.SetToolTipText(QString::fromLatin1(told));
    link.SetDisabledColor(SystemColor::GreyText);
    link.SetForeColor(SystemColor::ButtonText);
    const int own = link.sizeHint().width(); // the platform may have a wider font
    moveTo(link, left, LinkTop, width, LinkHeight);
    link.resize(std::max(link.width(), own), link.height());
}

} // namespace

MultiValue::MultiValue(QWidget* parent, const ControlSite& site)
    : UserControl(parent, site)
    , lstValues(new ListBox(this))
    , lnkAdd(new TextLink(this))
    , lnkDelete(new TextLink(this))
{
    lstValues->setObjectName(QStringLiteral("lstValues"));
    lstValues->setAccessibleName(QStringLiteral("Values"));
    moveTo(*lstValues, 0, 0, DesignWidth, 1395);
    designLink(*lnkAdd, "lnkAdd", QLatin1Char('+'), "Add values", 0, 210);
    designLink(*lnkDelete, "lnkDelete", QLatin1Char('-'), "Remove the selected value", 420, 120);
    lnkDelete->setEnabled(false);
    for (QWidget* constituent : Controls())
        constituent->installEventFilter(this); // the key preview
    setFocusPolicy(Qt::StrongFocus);
    setFocusProxy(lstValues);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    resize(sizeHint());
    m_subscriptions.push_back(lstValues->Click.subscribe([this] { lstValues_Click(); }));
    m_subscriptions.push_back(lnkAdd->Click.subscribe([this] { lnkAdd_Click(); }));
    m_subscriptions.push_back(lnkDelete->Click.subscribe([this] { lnkDelete_Click(); }));
    begin();
}

MultiValue::~MultiValue()
{
    withdrawDialog();
}

// Properties

SavedProperties MultiValue::savedProperties()
{
    return {booleanProperty(
        QStringLiteral("Enabled"), true, [this] { return Enabled(); },
        [this](bool enabled) { SetEnabled(enabled); })};
}

void MultiValue::UserControl_InitProperties()
{
    RebuildList();
}

void MultiValue::SetEnabled(bool enabled)
{
    setEnabled(enabled);
    if (!ReportChange(QStringLiteral("Enabled")))
        return;
    const auto showState = qScopeGuard([this] { lstValues_Click(); });
    RebuildList();
}

// The record

void MultiValue::BoundControl_FillControl(const BoundBinding* binding, const QVariant&,
                                          const tvTableCollectionPtr& rows)
{
    addContext(typeName(), QStringLiteral("BoundControl_FillControl"),
               QStringLiteral("Could not populate control: "), [&](int& line) {
                   line = 1000;
                   if (!binding || !rows)
                       return;
                   withdrawDialog();
                   const auto showState = qScopeGuard([this] { lstValues_Click(); });
                   // Half a list must not be taken for the whole one: a save would remove the other codes.
                   auto forget = qScopeGuard([this] { forgetRecord(); });
                   line = 1010;
                   m_binding = *binding;
                   line = 1020;
                   m_values.clear();
                   line = 1030;
                   for (const tvTableRowPtr& row : *rows) {
                       line = 1040;
                       const QVariant value = fieldOf(*row, binding->FieldName)->Value();
                       line = 1050;
                       if (!IsNull(value))
                           m_values.append(value);
                       line = 1030;
                   }
                   m_fillFailed = false;
                   forget.dismiss(); // all values are here, also where a description fails
                   line = 1060;
                   RebuildList();
               });
}

void MultiValue::BoundControl_SetValue(const BoundBinding* binding, const QVariant&,
                                       const tvTableCollectionPtr& rows)
{
    // The name in the source is meant: hosts look for it.
    addContext(typeName(), QStringLiteral("BoundControl_SetControl"),
               QStringLiteral("Could not persist control values: "), [&](int& line) {
                   line = 1000;
                   if (!binding || !rows)
                       return;
                   if (m_fillFailed)
                       throw Error(QStringLiteral(
                           "The values of the record could not be read, so none are written."));
                   // With copies: a follower of the rows may close the form.
                   const QVariantList values = m_values;
                   const QString fieldName = binding->FieldName;
                   // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
                   const tvTableCollectionPtr kept = rows;
                   writeValues(values, fieldName, *kept, line);
               });
}

void MultiValue::forgetRecord()
{
    m_fillFailed = true;
    m_binding.reset();
    m_values.clear();
    continueOnError([this] { RebuildList(); });
}

// The list

void MultiValue::RebuildList()
{
    const int index = lstValues->ListIndex();
    lstValues->Clear();
    if (m_binding) {
        const auto descriptions = currentHost().newTableCodeCache();
        for (const QVariant& value : std::as_const(m_values))
            lstValues->AddItem(descriptions->GetDescription(m_binding->TableNo, value));
    }
    if (lstValues->ListCount() > 0)
        lstValues->SetListIndex(index);
    applyBackColor();
}

void MultiValue::applyBackColor()
{
    m_themeKey = QApplication::palette().cacheKey();
    const auto shade = [this] {
        SetFrameBackColor(currentHost().uiServices().ShadeColor(TakeAmbientBackColor(), BackShade));
    };
    if (ambient().UserMode())
        shade();
    else
        continueOnError(shade); // the designer may have no host
}

void MultiValue::lstValues_Click()
{
    const bool hasSelection = lstValues->ListIndex() >= 0;
    if (!hasSelection && lnkDelete->hasFocus())
        lstValues->setFocus(); // it would go to whatever is next on the form
    lnkDelete->setEnabled(hasSelection);
}

// Adding and removing

void MultiValue::lnkAdd_Click()
{
    if (m_dialog)
        return;
    if (!m_binding)
        throw Error(
            QStringLiteral("Nothing can be added to this list yet: it has not been filled from a record."),
            MissingObjectNumber);
    const QPointer<MultiValue> self(this);
    // On the heap: it becomes a child of the control's window, which may be closed under it.
    const QPointer<frmMultiValueSelect> dialog(new frmMultiValueSelect);
    const auto unload = qScopeGuard([&dialog] { delete dialog.data(); });
    dialog->LoadValues(m_binding->TableNo, m_values);
    if (dialog->ChoiceCount() == 0) {
        delete dialog.data();
        desktop().messageBoxes->tell(
            this, QStringLiteral("You have already added all possible choices to this list."),
            BoxIcon::Exclamation, QStringLiteral("Warning"));
        return;
    }
    m_dialog = dialog;
    dialog->ShowModal(this);
    if (self && m_dialog == dialog) // no fill has withdrawn it
        addChosen(dialog);
}

void MultiValue::withdrawDialog()
{
    if (const QPointer<frmMultiValueSelect> dialog = std::exchange(m_dialog, nullptr))
        dialog->reject();
}

void MultiValue::addChosen(const QPointer<frmMultiValueSelect>& dialog)
{
    m_dialog = nullptr;
    if (dialog && !dialog->Canceled()) {
        for (const qint32 code : dialog->SelectedValues())
            m_values.append(code);
    }
    delete dialog.data();
    {
        const auto showState = qScopeGuard([this] { lstValues_Click(); });
        RebuildList();
    }
    Q_EMIT ValueAdded();
}

void MultiValue::lnkDelete_Click()
{
    removeSelected();
}

void MultiValue::removeSelected()
{
    const int index = lstValues->ListIndex();
    if (index < 0 || index >= m_values.size())
        return;
    {
        // At the end only: "-" keeps the focus while there is something left to remove.
        const auto showState = qScopeGuard([this] { lstValues_Click(); });
        m_values.removeAt(index);
        lstValues->RemoveItem(index);
        RebuildList();
        if (lstValues->ListCount() > 0)
            lstValues->SetListIndex(index == 0 ? 0 : index - 1);
    }
    Q_EMIT ValueRemoved();
}

// Keys

void MultiValue::UserControl_KeyDown(int& keyCode, int shift)
{
    if (keyCode != KeyCode::Delete || shift != 0 || lstValues->ListIndex() < 0)
        return;
    keyCode = 0;
    removeSelected();
}

bool MultiValue::previewKey(QKeyEvent& event)
{
    const bool isDelete =
        keyCodeOf(event) == KeyCode::Delete && (event.modifiers() & ~Qt::KeypadModifier) == 0;
    // One that is held down must not do to one value after the other, and then to the form, what was meant
    // for one value.
    if (!isDelete || (lstValues->ListIndex() < 0 && !event.isAutoRepeat()))
        return false;
    event.accept();
    if (event.type() == QEvent::ShortcutOverride || event.isAutoRepeat())
        return true; // a shortcut of the form must not take the key
    int keyCode = KeyCode::Delete;
    guard("UserControl_KeyDown", [&] { UserControl_KeyDown(keyCode, shiftStateOf(event.modifiers())); });
    return true;
}

bool MultiValue::eventFilter(QObject* watched, QEvent* event)
{
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
    if (isKey && watched->parent() == this && previewKey(*static_cast<QKeyEvent*>(event)))
        return true; // touches nothing more: a follower may have deleted the control
    return UserControl::eventFilter(watched, event);
}

// Look

void MultiValue::UserControl_AmbientChanged(const QString& propertyName)
{
    if (propertyName == QLatin1String("BackColor"))
        applyBackColor();
}

void MultiValue::changeEvent(QEvent* event)
{
    UserControl::changeEvent(event);
    const bool isOtherTheme =
        event->type() == QEvent::PaletteChange && m_themeKey != QApplication::palette().cacheKey();
    if (isOtherTheme)
        guard("MultiValue_ThemeChanged", [this] { applyBackColor(); });
}

QSize MultiValue::sizeHint() const
{
    return {toPixels(DesignWidth), toPixels(LinkTop + LinkHeight)};
}

QSize MultiValue::minimumSizeHint() const
{
    const int links = toPixels(LinkLeft) + 3 * lnkAdd->width() + lnkDelete->width();
    return {links, lstValues->minimumSizeHint().height() + lnkAdd->height()};
}

void MultiValue::UserControl_Resize()
{
    continueOnError(
        [this] {
            moveTo(*lstValues, -TwipsPerPixel, -TwipsPerPixel, ScaleWidth() + 2 * TwipsPerPixel,
                   ScaleHeight() - (heightOf(*lnkAdd) - LinkOverEdge));
        },
        [this] {
            const Twips top = toTwips(lstValues->y()) + heightOf(*lstValues) - LinkOverList;
            moveTo(*lnkAdd, LinkLeft, top);
        },
        [this] {
            // The gap between the links is as wide as the first of them.
            moveTo(*lnkDelete, leftOf(*lnkAdd) + 2 * widthOf(*lnkAdd), toTwips(lnkAdd->y()));
        });
}

} // namespace tavrin
