#pragma once

#include "base/export/Export.h"
#include "lookup/ComboPicker.h"

namespace tavrin {

/// A combo box for one offense, with its description beside it.
///
/// The person types at least two characters of the offense's id, description or reporting code.
///
///     auto* offense = new OffensePicker(form);
///     offense->SetRemoveUsedValues(true);
///     offense->SetValue(fieldOf(*row, QStringLiteral("OffenseNo"))->Value(), offensesOfTheOtherRows);
///     ...
///     fieldOf(*row, QStringLiteral("OffenseNo"))->SetValue(offense->Value()); // a double, or Null
///
/// The list is cloned at the first need and stays as it was then for the control's whole life.
class TAVRIN_EXPORT OffensePicker final : public ComboPicker
{
    Q_OBJECT
    Q_CLASSINFO("ClassName", "TVBoundControls.OffensePicker")
    Q_CLASSINFO("DefaultInterface", "_OffensePicker")
    Q_CLASSINFO("EventInterface", "__OffensePicker")
    Q_PROPERTY(qint32 hWnd READ hWnd STORED false)
    Q_PROPERTY(tavrin::Color BackColor READ BackColor WRITE SetBackColor)
    Q_PROPERTY(tavrin::Color ForeColor READ ForeColor WRITE SetForeColor)
    Q_PROPERTY(tavrin::FontPtr Font READ Font WRITE SetFont)
    Q_PROPERTY(QVariant Value READ Value WRITE putValue)
    Q_PROPERTY(bool Enabled READ Enabled WRITE SetEnabled)
    Q_PROPERTY(bool ShowName READ ShowName WRITE SetShowName)
    Q_PROPERTY(bool ListAllOffenses READ ListAllOffenses WRITE SetListAllOffenses)
    Q_PROPERTY(bool RemoveUsedValues READ RemoveUsedValues WRITE SetRemoveUsedValues)
    Q_PROPERTY(QString FullText READ tellFullText STORED false)
    Q_PROPERTY(QString ShortText READ tellShortText STORED false)

public:
    /// Nothing is chosen. Asks nothing of the host before the first search or value.
    explicit OffensePicker(QWidget* parent = nullptr, const ControlSite& site = {});
    ~OffensePicker() override;

    /// Whether offenses that are no longer in use are listed; false by default. The value that the host has
    /// set stays listed in any case. Read at the next search.
    bool ListAllOffenses() const;
    void SetListAllOffenses(bool listAll);

    /// What the host's offense list says of the value; "" for Null. A failure of the host reaches the caller.
    QString FullText() const override;
    QString ShortText() const override;

protected:
    SavedProperties savedProperties() override;

private:
    class Q_DECL_HIDDEN Private;
    Private& own() const;
};

} // namespace tavrin
