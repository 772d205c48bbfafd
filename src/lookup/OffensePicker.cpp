#include "lookup/OffensePicker.h"

#include "base/values/Variant.h"
#include "frame/XmlUtils.h"
#include "frame/host_contracts/Host.h"
#include "frame/modUtils.h"
#include "lookup/ComboPickerPrivate.h"
#include "widgets/drawing/PictureSurface.h"
#include "widgets/drawing/Placement.h"
#include "widgets/labels/Label.h"

#include <QFontMetricsF>

namespace tavrin {

namespace {

constexpr int MinimumQueryLength = 2;
constexpr Twips LeastComboWidth = 1695;

NumberedList::Shape offenseShape()
{
    return {QStringLiteral("Offense"),
            QStringLiteral("OffenseNo"),
            QStringLiteral("OffenseId"),
            QStringLiteral("Description"),
            QStringLiteral("ActiveFlag=1"),
            [](const QString& text) {
                using namespace XmlUtils;
                return QStringList{
                    ContainsExpression(UpperCaseExpression(QStringLiteral("OffenseId")), text),
                    ContainsExpression(UpperCaseExpression(QStringLiteral("Description")), text),
                    ContainsExpression(UpperCaseExpression(QStringLiteral("RptCode")), text)};
            }};
}

} // namespace

class OffensePicker::Private final : public ComboPicker::Private
{
public:
    explicit Private(OffensePicker& picker)
        : ComboPicker::Private(picker, m_list)
        , m_list(offenseShape(), [] { return currentHost().newOffenseListCache()->Document(); })
    {
        acComboBox->SetMinQueryLength(MinimumQueryLength);
    }

    void search(const QString& query, Suggestions& results) override;
    void drawRow(PictureSurface& picture, const XmlNode& item, const QString& query, bool selected) override;
    Twips comboWidth() const override;
    Twips listWidth() const override;
    void placeLabel() override;
    Twips textWidth(int letters, char letter) const;

    NumberedList m_list;
    bool m_listAllOffenses = false;
};

OffensePicker::OffensePicker(QWidget* parent, const ControlSite& site)
    : ComboPicker(parent, site)
{
    d = std::make_unique<Private>(*this);
    resize(sizeHint());
    begin();
}

OffensePicker::~OffensePicker() = default;

OffensePicker::Private& OffensePicker::own() const
{
    return static_cast<Private&>(*d);
}

// Properties

bool OffensePicker::ListAllOffenses() const
{
    return own().m_listAllOffenses;
}

void OffensePicker::SetListAllOffenses(bool listAll)
{
    own().m_listAllOffenses = listAll;
    Q_EMIT PropertyChanged(QStringLiteral("ListAllOffenses"));
}

QString OffensePicker::FullText() const
{
    return IsNull(d->m_value) ? QString() : currentHost().newOffenseListCache()->FullText(d->m_value);
}

QString OffensePicker::ShortText() const
{
    return IsNull(d->m_value) ? QString() : currentHost().newOffenseListCache()->ShortText(d->m_value);
}

SavedProperties OffensePicker::savedProperties()
{
    return {d->enabledProperty(),
            d->showNameProperty(),
            Private::flagProperty(QStringLiteral("ListAllOffenses"), own().m_listAllOffenses),
            d->removeUsedValuesProperty(),
            d->fontProperty(),
            d->backColorProperty(),
            d->foreColorProperty()};
}

// The list

void OffensePicker::Private::search(const QString& query, Suggestions& results)
{
    results = m_list.search(query, searchOptions(m_listAllOffenses));
}

void OffensePicker::Private::drawRow(PictureSurface& picture, const XmlNode& item, const QString& query, bool)
{
    applyRowFont(picture);
    modUtils::PrintHighlighted(picture, m_list.shortText(item) + QStringLiteral(": "), query);
    picture.SetFontBold(false);
    modUtils::PrintHighlighted(picture, m_list.longText(item), query);
    picture.EndLine();
    picture.SetHeight(picture.CurrentY()); // as wide as the list
}

// Layout

Twips OffensePicker::Private::textWidth(int letters, char letter) const
{
    return static_cast<Twips>(QFontMetricsF(q.Font()->toQFont(), &q)
                                  .horizontalAdvance(QString(letters, QLatin1Char(letter)))) *
           TwipsPerPixel;
}

Twips OffensePicker::Private::comboWidth() const
{
    return static_cast<Twips>(modUtils::MaxOf(textWidth(10, 'W'), LeastComboWidth));
}

Twips OffensePicker::Private::listWidth() const
{
    return textWidth(80, 'X');
}

void OffensePicker::Private::placeLabel()
{
    if (!q.ShowName())
        return;
    const Twips left = labelLeft();
    moveTo(*lblDescription, left, toTwips(lblDescription->y()), q.ScaleWidth() - left,
           heightOf(*lblDescription));
}

} // namespace tavrin
