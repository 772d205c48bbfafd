#pragma once

#include "base/export/Export.h"
#include "lookup/ComboPicker.h"

namespace tavrin {

/// A combo box for one employee, with the name beside it.
///
/// The person types any part of a name or an officer id, or the start of a badge number. A host strikes out
/// employees through `Filter`. `FlatEmployeePicker` does the same in the flat look with a caption.
///
///     auto* handler = new EmployeePicker(form);
///     handler->SetK9HandlersOnly(true);
///     handler->SetValue(fieldOf(*row, QStringLiteral("K9HandlerNo"))->Value());
///     ...
///     fieldOf(*row, QStringLiteral("K9HandlerNo"))->SetValue(handler->Value()); // a double, or Null
///
/// The list is cloned at the first need and stays as it was then for the control's whole life.
class TAVRIN_EXPORT EmployeePicker final : public ComboPicker
{
    Q_OBJECT
    Q_CLASSINFO("ClassName", "TVBoundControls.EmployeePicker")
    Q_CLASSINFO("DefaultInterface", "_EmployeePicker")
    Q_CLASSINFO("EventInterface", "__EmployeePicker")
    Q_PROPERTY(qint32 hWnd READ hWnd STORED false)
    Q_PROPERTY(tavrin::Color BackColor READ BackColor WRITE SetBackColor)
    Q_PROPERTY(tavrin::Color ForeColor READ ForeColor WRITE SetForeColor)
    Q_PROPERTY(tavrin::FontPtr Font READ Font WRITE SetFont)
    Q_PROPERTY(QVariant Value READ Value WRITE putValue)
    Q_PROPERTY(bool Enabled READ Enabled WRITE SetEnabled)
    Q_PROPERTY(bool ShowName READ ShowName WRITE SetShowName)
    Q_PROPERTY(bool K9HandlersOnly READ K9HandlersOnly WRITE SetK9HandlersOnly)
    Q_PROPERTY(bool ListAllEmployees READ ListAllEmployees WRITE SetListAllEmployees)
    Q_PROPERTY(bool RemoveUsedValues READ RemoveUsedValues WRITE SetRemoveUsedValues)
    Q_PROPERTY(QString FullText READ tellFullText STORED false)
    Q_PROPERTY(QString ShortText READ tellShortText STORED false)

public:
    /// Nothing is chosen. Asks nothing of the host before the first search or value.
    explicit EmployeePicker(QWidget* parent = nullptr, const ControlSite& site = {});
    ~EmployeePicker() override;

    /// Whether only handlers of dogs are listed, the host's value included; false by default. Read at the
    /// next search.
    bool K9HandlersOnly() const;
    void SetK9HandlersOnly(bool handlersOnly);

    /// Whether inactive employees are listed; false by default. The value that the host has set stays listed
    /// in any case. Read at the next search.
    bool ListAllEmployees() const;
    void SetListAllEmployees(bool listAll);

    /// What the host's employee list says of the value; "" for Null. A failure of the host reaches the
    /// caller.
    QString FullText() const override;
    QString ShortText() const override;

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
