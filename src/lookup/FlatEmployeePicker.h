#pragma once

#include "base/export/Export.h"
#include "lookup/EmployeeList.h"
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
    Q_PROPERTY(QString Caption READ Caption WRITE SetCaption)
    Q_PROPERTY(bool Required READ Required WRITE SetRequired)
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
    explicit FlatEmployeePicker(QWidget* parent = nullptr, const ControlSite& site = {});
    ~FlatEmployeePicker() override;

    /// The officer number as a double, or Null for nothing. A number that is not in the list becomes Null; an
    /// inactive one is found. A value that makes no valid expression raises an `Error`.
    void SetValue(const QVariant& value) override;
    using SearchPicker::SetValue;

    /// Whether only handlers of dogs are listed; False by default. Read at the next search.
    bool K9HandlersOnly() const { return m_k9HandlersOnly; }
    void SetK9HandlersOnly(bool handlersOnly);

    /// Whether inactive employees are listed; False by default. The value that the host has set stays listed
    /// in any case. Read at the next search.
    bool ListAllEmployees() const { return m_listAllEmployees; }
    void SetListAllEmployees(bool listAll);

Q_SIGNALS:
    /// Asks for each row of each search whether to leave it out. A slot must not let an exception out;
    /// `connectGuarded` sees to that, and the row then stays.
    void Filter(qint32 OfficerNo, bool& Exclude);

protected:
    SavedProperties savedProperties() override;
    void search(const QString& query, Suggestions& results) override;
    void drawRow(PictureSurface& picture, const XmlNode& item, const QString& query, bool selected) override;
    QString boxText(const XmlNode& item) override;
    QVariant valueOf(const XmlNode& item) override;
    QString longText(const XmlNode& item) override;
    int tagLength() const override;
    void placeTag(Tag& tag, Twips margin) override;
    void showBesideTag() override {}
    void showAlone() override {}

private:
    EmployeeList m_list;
    bool m_k9HandlersOnly = false;
    bool m_listAllEmployees = false;
};

} // namespace tavrin
