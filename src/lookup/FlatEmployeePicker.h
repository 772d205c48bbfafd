#pragma once

#include "base/export/Export.h"
#include "lookup/FlatPicker.h"

namespace tavrin {

/// A flat field for one employee, with a caption above it.
///
/// The person types any part of a name or an officer id, or the start of a badge number. The chosen employee
/// shows as a tag, and the search box stays in use beside it. A host strikes out employees through `Filter`.
///
///     auto* officer = new FlatEmployeePicker(form);
///     officer->SetCaption(tr("Reporting officer"));
///     connectGuarded(officer, &FlatEmployeePicker::Filter, form, "Form_Filter",
///                    [=](qint32 officerNo, bool& exclude) { exclude = hadLeft(officerNo); });
///     officer->SetValue(12);
///
/// The list is cloned at the first need and stays as it was then for the control's whole life.
class TAVRIN_EXPORT FlatEmployeePicker final : public FlatPicker
{
    Q_OBJECT
    Q_CLASSINFO("ClassName", "TVBoundControls.FlatEmployeePicker")
    Q_CLASSINFO("DefaultInterface", "_FlatEmployeePicker")
    Q_CLASSINFO("EventInterface", "__FlatEmployeePicker")
    Q_PROPERTY(qint32 hWnd READ hWnd STORED false)
    Q_PROPERTY(QString Caption READ Caption WRITE putCaption)
    Q_PROPERTY(bool Required READ Required WRITE putRequired)
    Q_PROPERTY(tavrin::Color BackColor READ BackColor WRITE SetBackColor)
    Q_PROPERTY(tavrin::Color ForeColor READ ForeColor WRITE SetForeColor)
    Q_PROPERTY(tavrin::FontPtr Font READ Font WRITE putFont)
    Q_PROPERTY(QVariant Value READ Value WRITE putValue)
    Q_PROPERTY(bool Enabled READ Enabled WRITE putEnabled)
    Q_PROPERTY(bool ShowName READ ShowName WRITE SetShowName)
    Q_PROPERTY(bool K9HandlersOnly READ K9HandlersOnly WRITE SetK9HandlersOnly)
    Q_PROPERTY(bool ListAllEmployees READ ListAllEmployees WRITE SetListAllEmployees)
    Q_PROPERTY(bool RemoveUsedValues READ RemoveUsedValues WRITE SetRemoveUsedValues)
    Q_PROPERTY(QString FullText READ tellFullText STORED false)
    Q_PROPERTY(QString ShortText READ tellShortText STORED false)

public:
    /// Nothing is chosen. Asks the host's theme for its colours; a failure of it is passed over.
    explicit FlatEmployeePicker(QWidget* parent = nullptr, const ControlSite& site = {});
    ~FlatEmployeePicker() override;

    /// The officer number as a double, or Null for nothing. A number that is not in the list becomes Null; an
    /// inactive one is found. A value that makes no valid expression raises an `Error`, and so does a failure
    /// of the host; the value then stands, and shows no name.
    void SetValue(const QVariant& value) override;
    using SearchPicker::SetValue;

    /// Whether only handlers of dogs are listed; false by default. Read at the next search.
    bool K9HandlersOnly() const;
    void SetK9HandlersOnly(bool handlersOnly);

    /// Whether inactive employees are listed; false by default. The value that the host has set stays listed
    /// in any case. Read at the next search.
    bool ListAllEmployees() const;
    void SetListAllEmployees(bool listAll);

Q_SIGNALS:
    /// Asks for each row of each search whether to leave it out. A slot must not let an exception out;
    /// `connectGuarded` sees to that, and the row then stays.
    void Filter(qint32 OfficerNo, bool& Exclude);

protected:
    SavedProperties savedProperties() override;

private:
    class Q_DECL_HIDDEN Private;
    Private& own() const;
};

} // namespace tavrin
