#include "geocode/LatLong.h"

#include "base/failure/Error.h"
#include "base/values/Variant.h"
#include "frame/control_frame/FailurePolicy.h"
#include "frame/desktop/Desktop.h"
#include "frame/modUtils.h"
#include "geocode/GeocodeResult.h"
#include "geocode/LatLongPrivate.h"
#include "widgets/boxes/FlatOptionButton.h"
#include "widgets/boxes/TextBox.h"
#include "widgets/drawing/BoxShape.h"
#include "widgets/drawing/IconGlyphs.h"
#include "widgets/drawing/Placement.h"
#include "widgets/labels/FontIconLabel.h"
#include "widgets/labels/Label.h"
#include "widgets/labels/TextLink.h"
#include "widgets/panels/GroupBox.h"

#include <QMenu>
#include <QScopeGuard>
#include <QScopedValueRollback>

namespace tavrin {

namespace {

constexpr int Manual = 0;
constexpr int OnSave = 1;
constexpr double FontPoints = 8.25;

const QString ErrorTitle = QStringLiteral("Error");
const QString DetailsTitle = QStringLiteral("Location Geocoding");

/// The location row of a record.
tvTableRowPtr locationOf(const tvBusinessObjectPtr& bo)
{
    if (!bo)
        throw Error(QStringLiteral("There is no record"));
    auto row = std::dynamic_pointer_cast<tvTableRow>(bo->Item(QStringLiteral("LocationName")));
    if (!row)
        throw Error(QStringLiteral("The record has no row LocationName"));
    return row;
}

/// Null counts as False.
bool geocodesOnSave(tvTableRow& row)
{
    const QVariant value = fieldOf(row, QStringLiteral("GeocodeOnSave"))->Value();
    return !IsNull(value) && ToBoolean(value);
}

} // namespace

LatLong::Private::Private(LatLong& control)
    : q(control)
    , m_font(std::make_shared<Font>())
{
    m_font->SetName(QStringLiteral("Segoe UI"));
    m_font->SetSize(FontPoints);
}

LatLong::LatLong(QWidget* parent, const ControlSite& site)
    : UserControl(parent, site)
    , d(std::make_unique<Private>(*this))
{
    d->makeConstituents();
    d->nameConstituents();
    d->connectConstituents();
    d->buildMenu();
    d->layOut();
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    resize(sizeHint());
    begin();
}

LatLong::~LatLong() = default;

// The constituents

void LatLong::Private::makeConstituents()
{
    // In tab order.
    Label13 = new Label(&q);
    txtLat = new TextBox(&q);
    Label14 = new Label(&q);
    txtLong = new TextBox(&q);
    grpGeocoding = new GroupBox(&q);
    for (const int index : {OnSave, Manual})
        optGeocodeOnSave[index] = new FlatOptionButton(grpGeocoding);
    grpWarning = new GroupBox(grpGeocoding);
    shpWarning = new BoxShape(grpWarning);
    lblWarning = new FontIconLabel(grpWarning);
    lnkViewDetails = new TextLink(grpWarning);

    Label13->SetCaption(QStringLiteral("Latitude"));
    Label14->SetCaption(QStringLiteral("Longitude"));
    optGeocodeOnSave[OnSave]->SetCaption(QStringLiteral("Update coordinates on save"));
    optGeocodeOnSave[Manual]->SetCaption(QStringLiteral("Enter coordinates manually"));
    lnkViewDetails->SetCaption(QStringLiteral("More details"));
    lnkViewDetails->SetForeColor(SystemColor::Highlight);
    lnkViewDetails->SetHoverUnderline(true);
    lblWarning->SetIcon(WarningGlyph);
    lblWarning->SetForeColor(SystemColor::TooltipText);
    grpWarning->SetBackColor(SystemColor::TooltipBackground);
    shpWarning->SetBackColor(SystemColor::TooltipBackground);
    grpWarning->hide(); // until a record says otherwise

    for (const auto& [label, box] : {std::pair(Label13, txtLat), std::pair(Label14, txtLong)}) {
        label->SetAutoSize(false);
        label->SetFont(m_font);
        label->setBuddy(box);
        box->setAccessibleName(label->Caption());
    }
    for (FlatOptionButton* option : optGeocodeOnSave)
        option->SetFont(m_font);
    lblWarning->SetFont(m_font);
    lnkViewDetails->SetFont(m_font);
    q.setFocusProxy(txtLat);
}

void LatLong::Private::nameConstituents()
{
    const std::pair<QWidget*, const char*> names[] = {{Label13, "Label13"},
                                                      {txtLat, "txtLat"},
                                                      {Label14, "Label14"},
                                                      {txtLong, "txtLong"},
                                                      {grpGeocoding, "grpGeocoding"},
                                                      {optGeocodeOnSave[OnSave], "optGeocodeOnSave1"},
                                                      {optGeocodeOnSave[Manual], "optGeocodeOnSave0"},
                                                      {grpWarning, "grpWarning"},
                                                      {shpWarning, "shpWarning"},
                                                      {lblWarning, "lblWarning"},
                                                      {lnkViewDetails, "lnkViewDetails"}};
    for (const auto& [widget, name] : names)
        widget->setObjectName(QString::fromLatin1(name));
    // A host's form framework reads these.
    Label13->setProperty("Tag", QStringLiteral("Buddy=txtLat"));
    Label14->setProperty("Tag", QStringLiteral("Buddy=txtLong"));
    grpGeocoding->setAccessibleName(QStringLiteral("Geocoding"));
    grpWarning->setAccessibleName(QStringLiteral("Geocoding warning"));
}

void LatLong::Private::connectConstituents()
{
    for (const int index : {OnSave, Manual})
        m_subscriptions.push_back(
            optGeocodeOnSave[index]->Click.subscribe([this, index] { optGeocodeOnSave_Click(index); }));
    m_subscriptions.push_back(lnkViewDetails->Click.subscribe([this] { lnkViewDetails_Click(); }));
    m_subscriptions.push_back(m_font->FontChanged.subscribe([this](const QString&) {
        layOut();
        q.UserControl_Resize();
    }));
}

// The record

void LatLong::BoundSection_ReadData(const tvBusinessObjectPtr& bo)
{
    reportInBox(this, d->failurePrefix("BoundSection_ReadData"), ErrorTitle, [&] {
        if (d->m_openMenu)
            d->m_openMenu->close(); // it is about the coordinates before
        d->m_bo = bo;
        d->m_isShown = false;
        const QPointer<LatLong> self(this); // a follower of the record may delete the control
        // What stood there belongs to another record: it must be neither seen in this one nor written to it.
        const auto clear = qScopeGuard([&self] {
            if (self && !self->d->m_isShown)
                self->d->ShowNothing();
        });
        const tvTableRowPtr row = locationOf(bo);
        if (row->IsNew())
            fieldOf(*row, QStringLiteral("GeocodeOnSave"))->SetValue(true);
        if (self)
            d->RefreshDisplay();
    });
}

void LatLong::BoundSection_WriteData(const tvBusinessObjectPtr& bo)
{
    reportInBox(this, d->failurePrefix("BoundSection_WriteData"), ErrorTitle, [&] {
        const QString latitude = d->txtLat->Text(); // a follower of the record may delete the control
        const QString longitude = d->txtLong->Text();
        const tvTableRowPtr row = locationOf(bo);
        if (!d->m_isShown)
            throw Error(QStringLiteral("No coordinates have been read, so none are written."));
        fieldOf(*row, QStringLiteral("GeocodeOnSave"))->SetValue(d->optGeocodeOnSave[OnSave]->Value());
        if (geocodesOnSave(*row)) // the record may have its own mind
            return;
        fieldOf(*row, QStringLiteral("Latitude"))->SetValue(latitude);
        fieldOf(*row, QStringLiteral("Longitude"))->SetValue(longitude);
    });
}

void LatLong::Private::RefreshDisplay()
{
    if (!m_bo)
        return;
    const tvTableRowPtr row = locationOf(m_bo);
    // All of them before the first is shown: a record that cannot be read is not shown in part.
    const QString latitude = ToText(fieldOf(*row, QStringLiteral("Latitude"))->Value());
    const QString longitude = ToText(fieldOf(*row, QStringLiteral("Longitude"))->Value());
    const bool onSave = geocodesOnSave(*row);
    txtLat->SetText(latitude);
    txtLong->SetText(longitude);
    showChoice(onSave ? OnSave : Manual);
    openBoxes();
    grpGeocoding->show();
    m_isShown = true;
    if (onSave)
        refreshWarning(*row);
    else
        showWarning(false);
}

void LatLong::Private::ShowNothing()
{
    continueOnError([this] { txtLat->SetText(QString()); }, [this] { txtLong->SetText(QString()); },
                    [this] { showChoice({}); }, [this] { openBoxes(); }, [this] { showWarning(false); });
}

void LatLong::Private::showChoice(std::optional<int> index)
{
    // Turning an option on raises its click, which must neither write to the record nor refresh again.
    const QScopedValueRollback refreshing(m_refreshing, true);
    if (index) {
        optGeocodeOnSave[*index]->SetValue(true);
        return;
    }
    for (FlatOptionButton* option : optGeocodeOnSave)
        option->SetValue(false);
}

void LatLong::Private::openBoxes()
{
    const bool open = optGeocodeOnSave[Manual]->Value();
    for (TextBox* box : {txtLat, txtLong}) {
        box->setEnabled(open);
        box->SetBackColor(open ? SystemColor::WindowBackground : SystemColor::ButtonFace);
    }
    if (open)
        q.setFocusProxy(txtLat);
    else
        q.setFocusProxy(optGeocodeOnSave[OnSave]);
}

void LatLong::Private::refreshWarning(tvTableRow& row)
{
    bool warns = false; // a failure leaves no warning of what was there before
    const auto show = qScopeGuard([&] { showWarning(warns); });
    const bool isPoor = GeocodeResult::isPoorMatch(row);
    lblWarning->SetCaption(GeocodeResult::warningText(row));
    warns = isPoor;
}

void LatLong::Private::showWarning(bool show)
{
    if (!show && q.window()->focusWidget() == lnkViewDetails) // it would go to whatever is next on the form
        optGeocodeOnSave[optGeocodeOnSave[Manual]->Value() ? Manual : OnSave]->setFocus();
    grpWarning->setVisible(show);
}

// What the person does

void LatLong::Private::optGeocodeOnSave_Click(int index)
{
    reportInBox(&q, failurePrefix("optGeocodeOnSave_Click"), ErrorTitle, [&] {
        if (m_refreshing || !m_bo)
            return;
        const QPointer<LatLong> self(&q); // a follower of the record may delete the control
        // A record that refuses it does not turn the option back: the next write tries it again, with the
        // coordinates that the person has typed until then.
        const auto followOption = qScopeGuard([&self] {
            if (!self || !self->d->m_isShown)
                return;
            self->d->openBoxes();
            if (self->d->optGeocodeOnSave[Manual]->Value())
                self->d->showWarning(false); // there is none of coordinates that are typed
        });
        fieldOf(*locationOf(m_bo), QStringLiteral("GeocodeOnSave"))->SetValue(index == OnSave);
        if (self)
            RefreshDisplay();
    });
}

void LatLong::Private::lnkViewDetails_Click()
{
    reportInBox(&q, failurePrefix("lnkViewDetails_Click"), ErrorTitle, [&] {
        if (m_bo)
            desktop().messageBoxes->tell(&q, GeocodeResult::detailsText(*locationOf(m_bo)),
                                         BoxIcon::Information, DetailsTitle);
    });
}

QString LatLong::Private::failurePrefix(const char* member) const
{
    return QStringLiteral("An unexpected error occurred in %1 in %2: ")
        .arg(q.typeName(), QLatin1String(member));
}

// Layout

void LatLong::Private::layOut()
{
    // What holds a text is larger than designed where its font asks for it; no text is cut.
    const auto place = [](QWidget& widget, Twips left, Twips top, Twips width, Twips height) {
        const QSize needed = widget.sizeHint();
        moveTo(widget, left, top, std::max(width, toTwips(needed.width())),
               std::max(height, toTwips(needed.height())));
    };
    const auto right = [](const QWidget& widget) { return leftOf(widget) + widthOf(widget); };

    place(*Label13, 0, 0, 1095, 195);
    moveTo(*txtLat, 0, 240, 1275, 315);
    place(*Label14, 1380, 0, 705, 195);
    moveTo(*txtLong, 1380, 240, 1275, 315);
    place(*optGeocodeOnSave[OnSave], 0, 0, 2340, 225);
    place(*optGeocodeOnSave[Manual], 0, 300, 2235, 225);
    const QString warning = lblWarning->Caption();
    lblWarning->SetCaption(GeocodeResult::longestWarning()); // so that the group is as wide for each of them
    place(*lblWarning, 120, 120, 2295, 210);
    lblWarning->SetCaption(warning);
    place(*lnkViewDetails, 420, 330, 960, 195);
    constexpr Twips besideWarning = 2715 - 120 - 2295; // and in the group
    moveTo(*grpWarning, 0, 660, std::max<Twips>(2715, right(*lblWarning) + besideWarning), 675);
    shpWarning->resize(grpWarning->size());
    constexpr Twips besideGroup = 2775 - 2715;
    const Twips groupWidth =
        std::max({right(*optGeocodeOnSave[OnSave]), right(*optGeocodeOnSave[Manual]), right(*grpWarning)});
    moveTo(*grpGeocoding, 0, 720, std::max<Twips>(2775, groupWidth + besideGroup), 1395);
}

QSize LatLong::sizeHint() const
{
    double width = 0;
    double height = 0;
    for (const QWidget* child : findChildren<QWidget*>()) {
        if (child->isWindow()) // a menu of a text box has no place here
            continue;
        width = modUtils::MaxOf(width, static_cast<double>(leftOf(*child) + widthOf(*child)));
        height = modUtils::MaxOf(height, static_cast<double>(toTwips(child->y()) + heightOf(*child)));
    }
    return {toPixels(static_cast<Twips>(width)), toPixels(static_cast<Twips>(height))};
}

void LatLong::UserControl_Resize()
{
    QSize size;
    continueOnError([&] { size = sizeHint(); }, [&] { Size(toTwips(size.width()), toTwips(size.height())); },
                    [&] {
                        // The same lengths on a form that counts in other units.
                        modUtils::ResizeTwips(*this, toTwips(size.width()), toTwips(size.height()));
                    });
    updateGeometry();
}

} // namespace tavrin
