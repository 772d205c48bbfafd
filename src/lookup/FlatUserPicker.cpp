#include "lookup/FlatUserPicker.h"

#include "base/failure/Error.h"
#include "base/values/Variant.h"
#include "frame/control_frame/FailurePolicy.h"
#include "frame/host_contracts/Host.h"
#include "lookup/FlatPickerPrivate.h"
#include "lookup/UserTeamList.h"
#include "widgets/drawing/Placement.h"
#include "widgets/labels/Tag.h"

#include <QFocusEvent>
#include <QPointer>

namespace tavrin {

class FlatUserPicker::Private final : public FlatPicker::Private
{
public:
    explicit Private(FlatUserPicker& picker);

    void search(const QString& query, Suggestions& results) override;
    void drawRow(PictureSurface& picture, const XmlNode& item, const QString& query, bool selected) override;
    QString boxText(const XmlNode& item) override;
    QVariant valueOf(const XmlNode& item) override;
    QString longText(const XmlNode& item) override;
    int tagLength() const override;
    void placeTag(Tag& tag, Twips margin) override;
    void showBesideTag() override;
    void showAlone() override;
    void loadFailed(const QVariant& value) override;

    UserTeamList m_list;
    bool m_includeInactive = false;
    bool m_holdsFocus = false; // the control itself, and not its search box
    int m_puts = 0;
    Subscription m_events; // to the host's refreshed caches
};

FlatUserPicker::Private::Private(FlatUserPicker& picker)
    : FlatPicker::Private(picker)
{
    if (q.ambient().UserMode()) {
        m_events = currentHost().hostServices().Events().CacheRefreshed.subscribe(
            [this](const CacheRefreshInfo&) { m_list.dropDocuments(); });
    }
    acTextBox->setFocusPolicy(Qt::ClickFocus);
    q.setFocusPolicy(Qt::TabFocus); // a press on the link leaves the focus where it is
}

FlatUserPicker::FlatUserPicker(QWidget* parent, const ControlSite& site)
    : FlatPicker(parent, site)
{
    d = std::make_unique<Private>(*this);
    begin();
}

FlatUserPicker::~FlatUserPicker() = default;

FlatUserPicker::Private& FlatUserPicker::own() const
{
    return static_cast<Private&>(*d);
}

// Properties

void FlatUserPicker::SetValue(const QVariant& given)
{
    const QVariant value = IsEmpty(given) ? Null() : given; // nothing is chosen either way
    if (!IsNull(value) && !IsNull(d->m_value) && SameValue(value, d->m_value))
        return;
    const QString text = ToText(value);
    XmlNode item;
    if (UserTeamList::isUser(value) || UserTeamList::isTeam(value))
        item = own().m_list.find(value);
    else if (!text.isEmpty())
        throw Error(QStringLiteral("Unrecognized value format '%1'").arg(text));
    const QPointer<FlatUserPicker> self(this);
    const int put = ++own().m_puts;
    own().acTextBox->SelectItem(item); // none clears
    if (!self)
        return;
    if (put == own().m_puts) // a follower may have put another value, which stands
        d->m_value = value;  // behind the handler, so that a value that is in neither list is kept
    Q_EMIT PropertyChanged(QStringLiteral("Value"));
}

void FlatUserPicker::Private::loadFailed(const QVariant& value)
{
    // What no list is asked for was refused, and has changed nothing, or has cleared; a value that is there
    // already was put before the theme failed. Else the lists failed, and the value of the record before must
    // not be saved with this one.
    const bool isLookedUp = UserTeamList::isUser(value) || UserTeamList::isTeam(value);
    if (!isLookedUp || IsNull(m_value) || SameValue(value, m_value))
        return;
    continueOnError([&] { acTextBox->ClearSelection(); }); // what is told is why the load failed
}

bool FlatUserPicker::IncludeInactive() const
{
    return own().m_includeInactive;
}

void FlatUserPicker::SetIncludeInactive(bool include)
{
    own().m_includeInactive = include;
    Q_EMIT PropertyChanged(QStringLiteral("IncludeInactive"));
}

SavedProperties FlatUserPicker::savedProperties()
{
    SavedProperty includeInactive =
        Private::flagProperty(QStringLiteral("IncludeInactive"), own().m_includeInactive);
    includeInactive.olderKey = QStringLiteral("ListAllUsers");
    return {d->enabledProperty(),   d->showNameProperty(),   d->removeUsedValuesProperty(),
            d->fontProperty(),      includeInactive,         d->backColorProperty(),
            d->foreColorProperty(), own().captionProperty(), own().requiredProperty()};
}

// The list

void FlatUserPicker::Private::search(const QString& query, Suggestions& results)
{
    const SearchOptions options = searchOptions(m_includeInactive);
    results = m_list.SearchUsers(query, options);
    results.append(m_list.SearchTeams(query, options));
}

void FlatUserPicker::Private::drawRow(PictureSurface& picture, const XmlNode& item, const QString& query,
                                      bool selected)
{
    m_list.drawRow(picture, *q.Font(), item, query, selected);
}

QString FlatUserPicker::Private::boxText(const XmlNode& item)
{
    return m_list.shortText(item);
}

QVariant FlatUserPicker::Private::valueOf(const XmlNode& item)
{
    return m_list.value(item);
}

QString FlatUserPicker::Private::longText(const XmlNode& item)
{
    return m_list.longText(item);
}

// Layout

int FlatUserPicker::Private::tagLength() const
{
    return 29;
}

void FlatUserPicker::Private::placeTag(Tag& tag, Twips margin)
{
    moveTo(tag, margin, captionHeight() + margin, q.ScaleWidth() - 2 * margin, heightOf(tag));
}

void FlatUserPicker::Private::showBesideTag()
{
    if (acTextBox->isHidden())
        return;
    const QPointer<SearchPicker> self(&q);
    if (m_hasFocus) { // before the box goes: Qt would give its focus to the next field
        m_holdsFocus = true;
        q.setFocus();
        if (!self)
            return;
        m_holdsFocus = false;
    }
    acTextBox->hide();
}

void FlatUserPicker::Private::showAlone()
{
    acTextBox->show();
    if (q.hasFocus())
        acTextBox->setFocus();
}

// Focus: no proxy, since giving one and taking it away would move the control in the tab order.

void FlatUserPicker::mousePressEvent(QMouseEvent* event)
{
    FlatPicker::mousePressEvent(event);
    if (!own().m_hasFocus)
        setFocus(Qt::MouseFocusReason);
}

void FlatUserPicker::focusInEvent(QFocusEvent* event)
{
    FlatPicker::focusInEvent(event);
    if (!own().m_holdsFocus && !own().acTextBox->isHidden())
        own().acTextBox->setFocus(event->reason());
}

bool FlatUserPicker::focusNextPrevChild(bool next)
{
    // The control is the tab stop, whichever of its parts has the focus.
    const QPointer<FlatUserPicker> self(this);
    if (own().acTextBox->hasFocus()) {
        own().m_holdsFocus = true;
        setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
        if (!self)
            return true;
        own().m_holdsFocus = false;
    }
    const bool moved = FlatPicker::focusNextPrevChild(next);
    if (self && hasFocus() && !own().acTextBox->isHidden())
        own().acTextBox->setFocus(); // there was nowhere else to go
    return moved;
}

} // namespace tavrin
