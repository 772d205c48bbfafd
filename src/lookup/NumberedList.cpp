#include "lookup/NumberedList.h"

#include "base/values/Variant.h"

#include <cmath>

namespace tavrin {

XmlDocument cloneForSearch(const XmlDocument& cached)
{
    XmlDocument clone = cached.cloneNode(true);
    clone.setProperty(QStringLiteral("SelectionLanguage"), QStringLiteral("XPath"));
    return clone;
}

NumberedList::NumberedList(Shape shape, std::function<XmlDocument()> fetch)
    : m_shape(std::move(shape))
    , m_fetch(std::move(fetch))
{
}

const XmlDocument& NumberedList::document()
{
    if (!m_document)
        m_document = cloneForSearch(m_fetch());
    return *m_document;
}

XmlNode NumberedList::find(const QVariant& number)
{
    return document().documentElement().selectSingleNode(
        QStringLiteral("%1[%2=%3]").arg(m_shape.Record, m_shape.Key, ToText(number)));
}

SearchTerms NumberedList::terms(const QString& query, const SearchOptions& options) const
{
    SearchTerms terms;
    if (!options.ListAll) {
        terms.active << m_shape.ActiveTest;
        if (const QString held = ToText(options.hostValue); !held.isEmpty())
            terms.active << m_shape.Key + QLatin1Char('=') + held;
    }
    if (!options.restriction.isEmpty())
        terms.restrictions << options.restriction;
    if (options.RemoveUsedValues) {
        for (const QVariant& value : options.usedValues) {
            if (const QString used = ToText(value); !used.isEmpty())
                terms.restrictions << m_shape.Key + QStringLiteral(" != ") + used;
        }
    }
    if (!query.isEmpty())
        terms.text = m_shape.TextTests(upperCased(query));
    return terms;
}

XmlNodes NumberedList::search(const QString& query, const SearchOptions& options)
{
    return terms(query, options).select(document(), m_shape.Record);
}

QString NumberedList::shortText(const XmlNode& item) const
{
    return item.childElement(m_shape.ShortText).text();
}

QString NumberedList::longText(const XmlNode& item) const
{
    return item.childElement(m_shape.LongText).text();
}

QVariant NumberedList::number(const XmlNode& item) const
{
    const std::optional<double> number = numberIn(item.childElement(m_shape.Key).text());
    return number ? QVariant(*number) : Null();
}

std::optional<double> NumberedList::numberIn(const QString& text)
{
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    return isNumber && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

} // namespace tavrin
