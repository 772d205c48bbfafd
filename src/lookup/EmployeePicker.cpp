#include "lookup/EmployeePicker.h"

#include "base/values/Variant.h"
#include "frame/host_contracts/Host.h"
#include "lookup/ComboPickerPrivate.h"
#include "lookup/EmployeeList.h"
#include "widgets/drawing/Placement.h"
#include "widgets/labels/Label.h"

namespace tavrin {

class EmployeePicker::Private final : public ComboPicker::Private
{
public:
    explicit Private(EmployeePicker& picker)
        : ComboPicker::Private(picker, m_list)
    {
    }

    void search(const QString& query, Suggestions& results) override;
    void drawRow(PictureSurface& picture, const XmlNode& item, const QString& query, bool selected) override;
    Twips comboWidth() const override;
    Twips listWidth() const override;
    void placeLabel() override;

    EmployeeList m_list;
    bool m_k9HandlersOnly = false;
    bool m_listAllEmployees = false;
};

EmployeePicker::EmployeePicker(QWidget* parent, const ControlSite& site)
    : ComboPicker(parent, site)
{
    d = std::make_unique<Private>(*this);
    resize(sizeHint());
    begin();
}

EmployeePicker::~EmployeePicker() = default;

EmployeePicker::Private& EmployeePicker::own() const
{
    return static_cast<Private&>(*d);
}

// Properties

bool EmployeePicker::K9HandlersOnly() const
{
    return own().m_k9HandlersOnly;
}

void EmployeePicker::SetK9HandlersOnly(bool handlersOnly)
{
    own().m_k9HandlersOnly = handlersOnly;
    Q_EMIT PropertyChanged(QStringLiteral("K9HandlersOnly"));
}

bool EmployeePicker::ListAllEmployees() const
{
    return own().m_listAllEmployees;
}

void EmployeePicker::SetListAllEmployees(bool listAll)
{
    own().m_listAllEmployees = listAll;
    Q_EMIT PropertyChanged(QStringLiteral("ListAllEmployees"));
}

QString EmployeePicker::FullText() const
{
    return IsNull(d->m_value) ? QString() : currentHost().newEmployeeListCache()->FullText(d->m_value);
}

QString EmployeePicker::ShortText() const
{
    return IsNull(d->m_value) ? QString() : currentHost().newEmployeeListCache()->ShortText(d->m_value);
}

SavedProperties EmployeePicker::savedProperties()
{
    return {d->enabledProperty(),
            d->showNameProperty(),
            d->removeUsedValuesProperty(),
            d->fontProperty(),
            Private::flagProperty(QStringLiteral("K9HandlersOnly"), own().m_k9HandlersOnly),
            Private::flagProperty(QStringLiteral("ListAllEmployees"), own().m_listAllEmployees),
            d->backColorProperty(),
            d->foreColorProperty()};
}

// The list

void EmployeePicker::Private::search(const QString& query, Suggestions& results)
{
    results = m_list.search(query, searchOptions(m_listAllEmployees), m_k9HandlersOnly,
                            followersOf(&EmployeePicker::Filter));
}

void EmployeePicker::Private::drawRow(PictureSurface& picture, const XmlNode& item, const QString& query,
                                      bool)
{
    applyRowFont(picture);
    m_list.drawRow(picture, item, query);
}

// Layout

Twips EmployeePicker::Private::comboWidth() const
{
    return 1695;
}

Twips EmployeePicker::Private::listWidth() const
{
    return q.Width();
}

void EmployeePicker::Private::placeLabel()
{
    const Twips left = labelLeft();
    moveTo(*lblDescription, left, toTwips(lblDescription->y()));
    if (left < q.ScaleWidth() && q.ShowName())
        moveTo(*lblDescription, left, toTwips(lblDescription->y()), q.ScaleWidth() - left,
               heightOf(*lblDescription));
}

} // namespace tavrin
