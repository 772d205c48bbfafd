#include "lookup/FlatEmployeePicker.h"

#include "lookup/EmployeeList.h"
#include "lookup/FlatPickerPrivate.h"
#include "widgets/drawing/PictureSurface.h"
#include "widgets/drawing/Placement.h"
#include "widgets/labels/Tag.h"

namespace tavrin {

class FlatEmployeePicker::Private final : public FlatPicker::Private
{
public:
    explicit Private(FlatEmployeePicker& picker)
        : FlatPicker::Private(picker)
    {
        q.setFocusProxy(acTextBox);
    }

    void search(const QString& query, Suggestions& results) override;
    void drawRow(PictureSurface& picture, const XmlNode& item, const QString& query, bool selected) override;
    QString boxText(const XmlNode& item) override;
    QVariant valueOf(const XmlNode& item) override;
    QString longText(const XmlNode& item) override;
    int tagLength() const override;
    void placeTag(Tag& tag, Twips margin) override;
    void showBesideTag() override {}
    void showAlone() override {}

    EmployeeList m_list;
    bool m_k9HandlersOnly = false;
    bool m_listAllEmployees = false;
};

FlatEmployeePicker::FlatEmployeePicker(QWidget* parent, const ControlSite& site)
    : FlatPicker(parent, site)
{
    d = std::make_unique<Private>(*this);
    begin();
}

FlatEmployeePicker::~FlatEmployeePicker() = default;

FlatEmployeePicker::Private& FlatEmployeePicker::own() const
{
    return static_cast<Private&>(*d);
}

// Properties

void FlatEmployeePicker::SetValue(const QVariant& value)
{
    d->putNumber(value, own().m_list);
}

bool FlatEmployeePicker::K9HandlersOnly() const
{
    return own().m_k9HandlersOnly;
}

void FlatEmployeePicker::SetK9HandlersOnly(bool handlersOnly)
{
    own().m_k9HandlersOnly = handlersOnly;
    Q_EMIT PropertyChanged(QStringLiteral("K9HandlersOnly"));
}

bool FlatEmployeePicker::ListAllEmployees() const
{
    return own().m_listAllEmployees;
}

void FlatEmployeePicker::SetListAllEmployees(bool listAll)
{
    own().m_listAllEmployees = listAll;
    Q_EMIT PropertyChanged(QStringLiteral("ListAllEmployees"));
}

SavedProperties FlatEmployeePicker::savedProperties()
{
    return {d->enabledProperty(),
            d->showNameProperty(),
            d->removeUsedValuesProperty(),
            d->fontProperty(),
            Private::flagProperty(QStringLiteral("K9HandlersOnly"), own().m_k9HandlersOnly),
            Private::flagProperty(QStringLiteral("ListAllEmployees"), own().m_listAllEmployees),
            d->backColorProperty(),
            d->foreColorProperty(),
            own().captionProperty(),
            own().requiredProperty()};
}

// The list

void FlatEmployeePicker::Private::search(const QString& query, Suggestions& results)
{
    results = m_list.search(query, searchOptions(m_listAllEmployees), m_k9HandlersOnly,
                            followersOf(&FlatEmployeePicker::Filter));
}

void FlatEmployeePicker::Private::drawRow(PictureSurface& picture, const XmlNode& item, const QString& query,
                                          bool)
{
    picture.SetFont(*q.Font());
    m_list.drawRow(picture, item, query);
}

QString FlatEmployeePicker::Private::boxText(const XmlNode& item)
{
    return m_list.shortText(item);
}

QVariant FlatEmployeePicker::Private::valueOf(const XmlNode& item)
{
    return m_list.number(item);
}

QString FlatEmployeePicker::Private::longText(const XmlNode& item)
{
    return m_list.longText(item);
}

// Layout

int FlatEmployeePicker::Private::tagLength() const
{
    return 25;
}

void FlatEmployeePicker::Private::placeTag(Tag& tag, Twips margin)
{
    moveTo(tag, margin, captionHeight() + margin); // as wide as its caption
}

} // namespace tavrin
