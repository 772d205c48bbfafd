#include "sections/MultiValue.h"

#include "base/failure/ByName.h"
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
#include <QPointer>
#include <QScopeGuard>
#include <QVariantList>

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

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

class MultiValue::Private
{
    Q_DISABLE_COPY_MOVE(Private)

public:
    explicit Private(MultiValue& control)
        : q(control)
        , lstValues(new ListBox(&control))
        , lnkAdd(new TextLink(&control))
        , lnkDelete(new TextLink(&control))
    {
    }

    void build();

    void lstValues_Click();
    void lnkAdd_Click();
    void lnkDelete_Click();
    void addChosen(const QPointer<frmMultiValueSelect>& dialog);
    /// Closes the dialog, whose choices are of the record before, and leaves them out.
    void withdrawDialog();
    void removeSelected();
    /// A record that could not be read leaves no values, and is not written.
    void forgetRecord();
    void RebuildList();
    void applyBackColor();
    bool previewKey(QKeyEvent& event);

    MultiValue& q;
    ListBox* lstValues;
    TextLink* lnkAdd;
    TextLink* lnkDelete;

    std::optional<BoundBinding> m_binding;
    QVariantList m_values;
    bool m_fillFailed = false;
    qint64 m_themeKey = 0;                  // of the palette that the background was shaded from
    QPointer<frmMultiValueSelect> m_dialog; // while the person is asked
    std::vector<Subscription> m_subscriptions;
};

void MultiValue::Private::build()
{
    lstValues->setObjectName(QStringLiteral("lstValues"));
    lstValues->setAccessibleName(QStringLiteral("Values"));
    moveTo(*lstValues, 0, 0, DesignWidth, 1395);
    designLink(*lnkAdd, "lnkAdd", QLatin1Char('+'), "Add values", 0, 210);
    designLink(*lnkDelete, "lnkDelete", QLatin1Char('-'), "Remove the selected value", 420, 120);
    lnkDelete->setEnabled(false);
    for (QWidget* constituent : q.Controls())
        constituent->installEventFilter(&q); // the key preview
    q.setFocusPolicy(Qt::StrongFocus);
    q.setFocusProxy(lstValues);
    q.setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    q.resize(q.sizeHint());
    m_subscriptions.push_back(lstValues->Click.subscribe([this] { lstValues_Click(); }));
    m_subscriptions.push_back(lnkAdd->Click.subscribe([this] { lnkAdd_Click(); }));
    m_subscriptions.push_back(lnkDelete->Click.subscribe([this] { lnkDelete_Click(); }));
}

MultiValue::MultiValue(QWidget* parent, const ControlSite& site)
    : UserControl(parent, site)
    , d(std::make_unique<Private>(*this))
{
    d->build();
    begin();
}

MultiValue::~MultiValue()
{
    d->withdrawDialog();
}

// Properties

qint32 MultiValue::Count() const
{
    return static_cast<qint32>(d->m_values.size());
}

bool MultiValue::Enabled() const
{
    return isEnabledTo(parentWidget());
}

void MultiValue::SetEnabled(bool enabled)
{
    setEnabled(enabled);
    if (!ReportChange(QStringLiteral("Enabled")))
        return;
    const auto showState = qScopeGuard([this] { d->lstValues_Click(); });
    d->RebuildList();
}

void MultiValue::putEnabled(bool enabled)
{
    byName(*this, "MultiValue.Enabled", [&] { SetEnabled(enabled); });
}

SavedProperties MultiValue::savedProperties()
{
    return {booleanProperty(
        QStringLiteral("Enabled"), true, [this] { return Enabled(); },
        [this](bool enabled) { SetEnabled(enabled); })};
}

bool MultiValue::trapsPropertyErrors() const
{
    return false;
}

void MultiValue::UserControl_InitProperties()
{
    d->RebuildList();
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
                   d->withdrawDialog();
                   const auto showState = qScopeGuard([this] { d->lstValues_Click(); });
                   // Half a list must not be taken for the whole one: a save would remove the other codes.
                   auto forget = qScopeGuard([this] { d->forgetRecord(); });
                   line = 1010;
                   d->m_binding = *binding;
                   line = 1020;
                   d->m_values.clear();
                   line = 1030;
                   for (const tvTableRowPtr& row : *rows) {
                       line = 1040;
                       const QVariant value = fieldOf(*row, binding->FieldName)->Value();
                       line = 1050;
                       if (!IsNull(value))
                           d->m_values.append(value);
                       line = 1030;
                   }
                   d->m_fillFailed = false;
                   forget.dismiss(); // all values are here, also where a description fails
                   line = 1060;
                   d->RebuildList();
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
                   if (d->m_fillFailed)
                       throw Error(QStringLiteral(
                           "The values of the record could not be read, so none are written."));
                   // With copies: a follower of the rows may close the form.
                   const QVariantList values = d->m_values;
                   const QString fieldName = binding->FieldName;
                   // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
                   const tvTableCollectionPtr kept = rows;
                   writeValues(values, fieldName, *kept, line);
               });
}

void MultiValue::Private::forgetRecord()
{
    m_fillFailed = true;
    m_binding.reset();
    m_values.clear();
    continueOnError([this] { RebuildList(); });
}

// The list

void MultiValue::Private::RebuildList()
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

void MultiValue::Private::applyBackColor()
{
    m_themeKey = QApplication::palette().cacheKey();
    const auto shade = [this] {
        q.SetFrameBackColor(currentHost().uiServices().ShadeColor(q.TakeAmbientBackColor(), BackShade));
    };
    if (q.ambient().UserMode())
        shade();
    else
        continueOnError(shade); // the designer may have no host
}

void MultiValue::Private::lstValues_Click()
{
    const bool hasSelection = lstValues->ListIndex() >= 0;
    if (!hasSelection && lnkDelete->hasFocus())
        lstValues->setFocus(); // it would go to whatever is next on the form
    lnkDelete->setEnabled(hasSelection);
}

// Adding and removing

void MultiValue::Private::lnkAdd_Click()
{
    if (m_dialog)
        return;
    if (!m_binding)
        throw Error(
            QStringLiteral("Nothing can be added to this list yet: it has not been filled from a record."),
            MissingObjectNumber);
    const QPointer<MultiValue> self(&q);
    // On the heap: it becomes a child of the control's window, which may be closed under it.
    const QPointer<frmMultiValueSelect> dialog(new frmMultiValueSelect);
    const auto unload = qScopeGuard([&dialog] { delete dialog.data(); });
    dialog->LoadValues(m_binding->TableNo, m_values);
    if (dialog->ChoiceCount() == 0) {
        delete dialog.data();
        desktop().messageBoxes->tell(
            &q, QStringLiteral("You have already added all possible choices to this list."),
            BoxIcon::Exclamation, QStringLiteral("Warning"));
        return;
    }
    m_dialog = dialog;
    dialog->ShowModal(&q);
    if (self && m_dialog == dialog) // no fill has withdrawn it
        addChosen(dialog);
}

void MultiValue::Private::withdrawDialog()
{
    if (const QPointer<frmMultiValueSelect> dialog = std::exchange(m_dialog, nullptr))
        dialog->reject();
}

void MultiValue::Private::addChosen(const QPointer<frmMultiValueSelect>& dialog)
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
    Q_EMIT q.ValueAdded();
}

void MultiValue::Private::lnkDelete_Click()
{
    removeSelected();
}

void MultiValue::Private::removeSelected()
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
    Q_EMIT q.ValueRemoved();
}

// Keys

void MultiValue::UserControl_KeyDown(int& keyCode, int shift)
{
    if (keyCode != KeyCode::Delete || shift != 0 || d->lstValues->ListIndex() < 0)
        return;
    keyCode = 0;
    d->removeSelected();
}

bool MultiValue::Private::previewKey(QKeyEvent& event)
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
    guard("UserControl_KeyDown", [&] { q.UserControl_KeyDown(keyCode, shiftStateOf(event.modifiers())); });
    return true;
}

bool MultiValue::eventFilter(QObject* watched, QEvent* event)
{
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
    if (isKey && watched->parent() == this && d->previewKey(*static_cast<QKeyEvent*>(event)))
        return true; // touches nothing more: a follower may have deleted the control
    return UserControl::eventFilter(watched, event);
}

// Look

void MultiValue::UserControl_AmbientChanged(const QString& propertyName)
{
    if (propertyName == QLatin1String("BackColor"))
        d->applyBackColor();
}

void MultiValue::changeEvent(QEvent* event)
{
    UserControl::changeEvent(event);
    const bool isOtherTheme =
        event->type() == QEvent::PaletteChange && d->m_themeKey != QApplication::palette().cacheKey();
    if (isOtherTheme)
        guard("MultiValue_ThemeChanged", [this] { d->applyBackColor(); });
}

QSize MultiValue::sizeHint() const
{
    return {toPixels(DesignWidth), toPixels(LinkTop + LinkHeight)};
}

QSize MultiValue::minimumSizeHint() const
{
    const int links = toPixels(LinkLeft) + 3 * d->lnkAdd->width() + d->lnkDelete->width();
    return {links, d->lstValues->minimumSizeHint().height() + d->lnkAdd->height()};
}

void MultiValue::UserControl_Resize()
{
    continueOnError(
        [this] {
            moveTo(*d->lstValues, -TwipsPerPixel, -TwipsPerPixel, ScaleWidth() + 2 * TwipsPerPixel,
                   ScaleHeight() - (heightOf(*d->lnkAdd) - LinkOverEdge));
        },
        [this] {
            const Twips top = toTwips(d->lstValues->y()) + heightOf(*d->lstValues) - LinkOverList;
            moveTo(*d->lnkAdd, LinkLeft, top);
        },
        [this] {
            // The gap between the links is as wide as the first of them.
            moveTo(*d->lnkDelete, leftOf(*d->lnkAdd) + 2 * widthOf(*d->lnkAdd), toTwips(d->lnkAdd->y()));
        });
}

} // namespace tavrin
