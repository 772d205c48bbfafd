#include "lookup/FlatUserPicker.h"

#include "base/failure/Error.h"
#include "base/values/Variant.h"
#include "frame/control_frame/FailurePolicy.h"
#include "frame/host_contracts/Host.h"
#include "widgets/drawing/Placement.h"
#include "widgets/labels/Tag.h"

#include <QFocusEvent>
#include <QPointer>

namespace tavrin {

FlatUserPicker::FlatUserPicker(QWidget* parent, const ControlSite& site)
    : FlatPicker(parent, site)
{
    if (ambient().UserMode()) {
        m_events = currentHost().hostServices().Events().CacheRefreshed.subscribe(
            [this](const CacheRefreshInfo&) { m_list.dropDocuments(); });
    }
    acTextBox->setFocusPolicy(Qt::ClickFocus);
    setFocusPolicy(Qt::TabFocus); // a press on the link leaves the focus where it is
    begin();
}

FlatUserPicker::~FlatUserPicker() = default;

// Properties

void FlatUserPicker::SetValue(const QVariant& given)
{
    const QVariant value = IsEmpty(given) ? Null() : given; // nothing is chosen either way
    if (!IsNull(value) && !IsNull(m_value) && SameValue(value, m_value))
        return;
    const QString text = ToText(value);
    XmlNode item;
    if (UserTeamList::isUser(value) || UserTeamList::isTeam(value))
        item = m_list.find(value);
    else if (!text.isEmpty())
        throw Error(QStringLiteral("Unrecognized value format '%1'").arg(text));
    const QPointer<FlatUserPicker> self(this);
    const int put = ++m_puts;
    acTextBox->SelectItem(item); // none clears
    if (!self)
        return;
    if (put == m_puts)   // a follower may have put another value, which stands
        m_value = value; // behind the handler, so that a value that is in neither list is kept
    Q_EMIT PropertyChanged(QStringLiteral("Value"));
}

void FlatUserPicker::loadFailed(const QVariant& value)
{
    // What no list is asked for was refused, and has changed nothing, or has cleared; a value that is there
    // already was put before the theme failed. Else the lists failed, and the value of the record before must
    // not be saved with this one.
    const bool isLookedUp = UserTeamList::isUser(value) || UserTeamList::isTeam(value);
    if (!isLookedUp || IsNull(m_value) || SameValue(value, m_value))
        return;
    continueOnError([&] { acTextBox->ClearSelection(); }); // what is told is why the load failed
}

void FlatUserPicker::SetIncludeInactive(bool include)
{
    m_includeInactive = include;
    Q_EMIT PropertyChanged(QStringLiteral("IncludeInactive"));
}

SavedProperties FlatUserPicker::savedProperties()
{
    SavedProperty includeInactive = flagProperty(QStringLiteral("IncludeInactive"), m_includeInactive);
    includeInactive.olderKey = QStringLiteral("ListAllUsers");
    return {enabledProperty(),   showNameProperty(), removeUsedValuesProperty(),
            fontProperty(),      includeInactive,    backColorProperty(),
            foreColorProperty(), captionProperty(),  requiredProperty()};
}

// The list

void FlatUserPicker::search(const QString& query, Suggestions& results)
{
    const SearchOptions options = searchOptions(m_includeInactive);
    results = m_list.SearchUsers(query, options);
    results.append(m_list.SearchTeams(query, options));
}

void FlatUserPicker::drawRow(PictureSurface& picture, const XmlNode& item, const QString& query,
                             bool selected)
{
    m_list.drawRow(picture, *Font(), item, query, selected);
}

QString FlatUserPicker::boxText(const XmlNode& item)
{
    return m_list.shortText(item);
}

QVariant FlatUserPicker::valueOf(const XmlNode& item)
{
    return m_list.value(item);
}

QString FlatUserPicker::longText(const XmlNode& item)
{
    return m_list.longText(item);
}

// Layout

int FlatUserPicker::tagLength() const
{
    return 29;
}

void FlatUserPicker::placeTag(Tag& tag, Twips margin)
{
    moveTo(tag, margin, captionHeight() + margin, ScaleWidth() - 2 * margin, heightOf(tag));
}

void FlatUserPicker::showBesideTag()
{
    if (acTextBox->isHidden())
        return;
    const QPointer<FlatUserPicker> self(this);
    if (hasFocusInside()) { // before the box goes: Qt would give its focus to the next field
        m_holdsFocus = true;
        setFocus();
        if (!self)
            return;
        m_holdsFocus = false;
    }
    acTextBox->hide();
}

void FlatUserPicker::showAlone()
{
    acTextBox->show();
    if (hasFocus())
        acTextBox->setFocus();
}

// Focus: no proxy, since giving one and taking it away would move the control in the tab order.

void FlatUserPicker::mousePressEvent(QMouseEvent* event)
{
    FlatPicker::mousePressEvent(event);
    if (!hasFocusInside())
        setFocus(Qt::MouseFocusReason);
}

void FlatUserPicker::focusInEvent(QFocusEvent* event)
{
    FlatPicker::focusInEvent(event);
    if (!m_holdsFocus && !acTextBox->isHidden())
        acTextBox->setFocus(event->reason());
}

bool FlatUserPicker::focusNextPrevChild(bool next)
{
    // The control is the tab stop, whichever of its parts has the focus.
    const QPointer<FlatUserPicker> self(this);
    if (acTextBox->hasFocus()) {
        m_holdsFocus = true;
        setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
        if (!self)
            return true;
        m_holdsFocus = false;
    }
    const bool moved = FlatPicker::focusNextPrevChild(next);
    if (self && hasFocus() && !acTextBox->isHidden())
        acTextBox->setFocus(); // there was nowhere else to go
    return moved;
}

} // namespace tavrin
