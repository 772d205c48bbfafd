#pragma once

#include "base/export/Export.h"
#include "lookup/FlatPicker.h"
#include "lookup/UserTeamList.h"

namespace tavrin {

/// A flat field for one user or one team, with a caption above it.
///
/// The person types any part of a name, a sign-on name or an officer id, or the start of a badge number;
/// users and teams that match open in a list, and the chosen one shows as a tag. For an employee who need not
/// be a user take `FlatEmployeePicker`.
///
///     auto* assigned = new FlatUserPicker(form);
///     assigned->SetCaption(tr("Assigned to"));
///     assigned->SetRemoveUsedValues(true);
///     static_cast<TavrinControl*>(assigned)->SetValue(record.value("AssignedTo"), othersOfTheRow);
///     ...
///     record.setValue("AssignedTo", assigned->Value()); // "user:jobrien", "team:3", or Null
///
/// The lists are cloned at the first need, and afresh after the host has refreshed its caches.
class TAVRIN_EXPORT FlatUserPicker final : public FlatPicker
{
    Q_OBJECT
    Q_CLASSINFO("ClassName", "TVBoundControls.FlatUserPicker")
    Q_CLASSINFO("DefaultInterface", "_FlatUserPicker")
    Q_CLASSINFO("EventInterface", "__FlatUserPicker")
    Q_PROPERTY(qint32 hWnd READ hWnd STORED false)
    Q_PROPERTY(QString Caption READ Caption WRITE SetCaption)
    Q_PROPERTY(bool Required READ Required WRITE SetRequired)
    Q_PROPERTY(tavrin::Color BackColor READ BackColor WRITE SetBackColor)
    Q_PROPERTY(tavrin::Color ForeColor READ ForeColor WRITE SetForeColor)
    Q_PROPERTY(tavrin::FontPtr Font READ Font WRITE SetFont)
    Q_PROPERTY(QVariant Value READ Value WRITE SetValue)
    Q_PROPERTY(bool Enabled READ Enabled WRITE SetEnabled)
    Q_PROPERTY(bool ShowName READ ShowName WRITE SetShowName)
    Q_PROPERTY(bool IncludeInactive READ IncludeInactive WRITE SetIncludeInactive)
    Q_PROPERTY(bool RemoveUsedValues READ RemoveUsedValues WRITE SetRemoveUsedValues)
    Q_PROPERTY(QString FullText READ FullText STORED false)
    Q_PROPERTY(QString ShortText READ ShortText STORED false)

public:
    explicit FlatUserPicker(QWidget* parent = nullptr, const ControlSite& site = {});
    ~FlatUserPicker() override;

    /// "user:" and a sign-on name, "team:" and the number of the team's code, or Null for nothing. Setting
    /// the value that is there does nothing. Another form raises error 5 and changes nothing. A value that is
    /// in neither list is kept, and shows no name; an inactive one is found. An empty text clears and stays
    /// as it is. A failure of the host's lists leaves the value as it was; but where the host loads a record,
    /// Null, since the value as it was is another record's.
    void SetValue(const QVariant& value) override;
    using SearchPicker::SetValue;

    /// Whether inactive users and teams are listed; False by default. The value that the host has set stays
    /// listed in any case. Read at the next search.
    bool IncludeInactive() const { return m_includeInactive; }
    void SetIncludeInactive(bool include);

protected:
    void loadFailed(const QVariant& value) override;
    SavedProperties savedProperties() override;
    void search(const QString& query, Suggestions& results) override;
    void drawRow(PictureSurface& picture, const XmlNode& item, const QString& query, bool selected) override;
    QString boxText(const XmlNode& item) override;
    QVariant valueOf(const XmlNode& item) override;
    QString longText(const XmlNode& item) override;
    int tagLength() const override;
    void placeTag(Tag& tag, Twips margin) override;
    void showBesideTag() override;
    void showAlone() override;
    void mousePressEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    UserTeamList m_list;
    bool m_includeInactive = false;
    bool m_holdsFocus = false; // the control itself, and not its search box
    int m_puts = 0;
    Subscription m_events; // to the host's refreshed caches
};

} // namespace tavrin
