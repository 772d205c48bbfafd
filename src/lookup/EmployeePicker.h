#pragma once

#include "base/export/Export.h"
#include "lookup/ComboPicker.h"
#include "lookup/EmployeeList.h"

namespace tavrin {

/// A combo box for one employee, with the name beside it.
///
/// The person types any part of a name or an officer id, or the start of a badge number. A host strikes out
/// employees through `Filter`. `FlatEmployeePicker` does the same in the flat look with a caption.
///
///     auto* handler = new EmployeePicker(form);
///     handler->SetK9HandlersOnly(true);
///     handler->SetValue(record.value("K9HandlerNo"));
///     ...
///     record.setValue("K9HandlerNo", handler->Value()); // a double, or Null
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
    Q_PROPERTY(QVariant Value READ Value WRITE SetValue)
    Q_PROPERTY(bool Enabled READ Enabled WRITE SetEnabled)
    Q_PROPERTY(bool ShowName READ ShowName WRITE SetShowName)
    Q_PROPERTY(bool K9HandlersOnly READ K9HandlersOnly WRITE SetK9HandlersOnly)
    Q_PROPERTY(bool ListAllEmployees READ ListAllEmployees WRITE SetListAllEmployees)
    Q_PROPERTY(bool RemoveUsedValues READ RemoveUsedValues WRITE SetRemoveUsedValues)
    Q_PROPERTY(QString FullText READ FullText STORED false)
    Q_PROPERTY(QString ShortText READ ShortText STORED false)

public:
    explicit EmployeePicker(QWidget* parent = nullptr, const ControlSite& site = {});
    ~EmployeePicker() override;

    /// Whether only handlers of dogs are listed, the host's value included; False by default. Read at the
    /// next search.
    bool K9HandlersOnly() const { return m_k9HandlersOnly; }
    void SetK9HandlersOnly(bool handlersOnly);

    /// Whether inactive employees are listed; False by default. The value that the host has set stays listed
    /// in any case. Read at the next search.
    bool ListAllEmployees() const { return m_listAllEmployees; }
    void SetListAllEmployees(bool listAll);

    /// What the host's employee list says of the value; "" for Null.
    QString FullText() const;
    QString ShortText() const;

Q_SIGNALS:
    /// Asks for each row of each search whether to leave it out. A slot must not let an exception out;
    /// `connectGuarded` sees to that, and the row then stays.
    void Filter(qint32 OfficerNo, bool& Exclude);

protected:
    SavedProperties savedProperties() override;
    void search(const QString& query, Suggestions& results) override;
    void drawRow(PictureSurface& picture, const XmlNode& item, const QString& query, bool selected) override;
    Twips comboWidth() const override;
    Twips listWidth() const override;
    void placeLabel() override;

private:
    EmployeeList m_list;
    bool m_k9HandlersOnly = false;
    bool m_listAllEmployees = false;
};

} // namespace tavrin
