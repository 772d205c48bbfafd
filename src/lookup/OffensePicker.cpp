#include "lookup/OffensePicker.h"

#include "base/values/Variant.h"
#include "frame/XmlUtils.h"
#include "frame/host_contracts/Host.h"
#include "frame/modUtils.h"
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

OffensePicker::OffensePicker(QWidget* parent, const ControlSite& site)
    : ComboPicker(parent, site, m_list)
    , m_list(offenseShape(), [] { return currentHost().newOffenseListCache()->Document(); })
{
    acComboBox->SetMinQueryLength(MinimumQueryLength);
    begin();
}

OffensePicker::~OffensePicker() = default;

// Properties

void OffensePicker::SetListAllOffenses(bool listAll)
{
    m_listAllOffenses = listAll;
    Q_EMIT PropertyChanged(QStringLiteral("ListAllOffenses"));
}

QString OffensePicker::FullText() const
{
    return IsNull(m_value) ? QString() : currentHost().newOffenseListCache()->FullText(m_value);
}

QString OffensePicker::ShortText() const
{
    return IsNull(m_value) ? QString() : currentHost().newOffenseListCache()->ShortText(m_value);
}

SavedProperties OffensePicker::savedProperties()
{
    return {enabledProperty(),
            showNameProperty(),
            flagProperty(QStringLiteral("ListAllOffenses"), m_listAllOffenses),
            removeUsedValuesProperty(),
            fontProperty(),
            backColorProperty(),
            foreColorProperty()};
}

// The list

void OffensePicker::search(const QString& query, Suggestions& results)
{
    results = m_list.search(query, searchOptions(m_listAllOffenses));
}

void OffensePicker::drawRow(PictureSurface& picture, const XmlNode& item, const QString& query, bool)
{
    applyRowFont(picture);
    modUtils::PrintHighlighted(picture, m_list.shortText(item) + QStringLiteral(": "), query);
    picture.SetFontBold(false);
    modUtils::PrintHighlighted(picture, m_list.longText(item), query);
    picture.EndLine();
    picture.SetHeight(picture.CurrentY()); // as wide as the list
}

// Layout

Twips OffensePicker::textWidth(int letters, char letter) const
{
    return static_cast<Twips>(QFontMetricsF(Font()->toQFont(), this)
                                  .horizontalAdvance(QString(letters, QLatin1Char(letter)))) *
           TwipsPerPixel;
}

Twips OffensePicker::comboWidth() const
{
    return static_cast<Twips>(modUtils::MaxOf(textWidth(10, 'W'), LeastComboWidth));
}

Twips OffensePicker::listWidth() const
{
    return textWidth(80, 'X');
}

void OffensePicker::placeLabel()
{
    if (!ShowName())
        return;
    const Twips left = labelLeft();
    moveTo(*lblDescription, left, toTwips(lblDescription->y()), ScaleWidth() - left,
           heightOf(*lblDescription));
}

} // namespace tavrin
