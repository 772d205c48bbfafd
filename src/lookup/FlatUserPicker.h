#pragma once

#include "base/export/Export.h"
#include "lookup/FlatPicker.h"

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
///     assigned->SetValue(fieldOf(*row, QStringLiteral("AssignedTo"))->Value(), othersOfTheRow);
///     ...
///     // "user:jobrien", "team:3", or Null
///     fieldOf(*row, QStringLiteral("AssignedTo"))->SetValue(assigned->Value());
///
/// The lists are cloned at the first need, and afresh after the host has refreshed its caches.
class TAVRIN_EXPORT FlatUserPicker final : public FlatPicker
{
    Q_OBJECT
    Q_CLASSINFO("ClassName", "TVBoundControls.FlatUserPicker")
    Q_CLASSINFO("DefaultInterface", "_FlatUserPicker")
    Q_CLASSINFO("EventInterface", "__FlatUserPicker")
    Q_PROPERTY(qint32 hWnd READ hWnd STORED false)
    Q_PROPERTY(QString Caption READ Caption WRITE putCaption)
    Q_PROPERTY(bool Required READ Required WRITE putRequired)
    Q_PROPERTY(tavrin::Color BackColor READ BackColor WRITE SetBackColor)
    Q_PROPERTY(tavrin::Color ForeColor READ ForeColor WRITE SetForeColor)
    Q_PROPERTY(tavrin::FontPtr Font READ Font WRITE putFont)
    Q_PROPERTY(QVariant Value READ Value WRITE putValue)
    Q_PROPERTY(bool Enabled READ Enabled WRITE putEnabled)
    Q_PROPERTY(bool ShowName READ ShowName WRITE SetShowName)
    Q_PROPERTY(bool IncludeInactive READ IncludeInactive WRITE SetIncludeInactive)
    Q_PROPERTY(bool RemoveUsedValues READ RemoveUsedValues WRITE SetRemoveUsedValues)
    Q_PROPERTY(QString FullText READ tellFullText STORED false)
    Q_PROPERTY(QString ShortText READ tellShortText STORED false)

public:
    /// Nothing is chosen. Follows the host's refreshed caches from now on, which takes a host: raises an
    /// `Error` where none is installed, but in the designer. Asks the host's theme for its colours; a failure
    /// of it is passed over.
    explicit FlatUserPicker(QWidget* parent = nullptr, const ControlSite& site = {});
    ~FlatUserPicker() override;

    /// "user:" and a sign-on name, "team:" and the number of the team's code, or Null for nothing. Setting
    /// the value that is there does nothing. Another form raises error 5 and changes nothing. A value that is
    /// in neither list is kept, and shows no name; an inactive one is found. An empty text clears and stays
    /// as it is. A failure of the host's lists leaves the value as it was; but where the host loads a record,
    /// Null, since the value as it was is another record's.
    void SetValue(const QVariant& value) override;
    using SearchPicker::SetValue;

    /// Whether inactive users and teams are listed; false by default. The value that the host has set stays
    /// listed in any case. Read at the next search.
    bool IncludeInactive() const;
    void SetIncludeInactive(bool include);

protected:
    SavedProperties savedProperties() override;
    void mousePressEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    class Q_DECL_HIDDEN Private;
    Private& own() const;
};

} // namespace tavrin
