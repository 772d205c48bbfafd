#include "lookup/SearchTerms.h"

#include "frame/XmlUtils.h"

namespace tavrin {

QString SearchTerms::expression(const QString& record) const
{
    QStringList conditions;
    if (!active.isEmpty())
        conditions << XmlUtils::OrExpression(active);
    conditions << restrictions;
    if (!text.isEmpty())
        conditions << XmlUtils::OrExpression(text);
    return conditions.isEmpty()
               ? QString()
               : record + QLatin1Char('[') + XmlUtils::AndExpression(conditions) + QLatin1Char(']');
}

XmlNodes SearchTerms::select(const XmlDocument& list, const QString& record) const
{
    const QString wanted = expression(record);
    const XmlNode root = list.documentElement();
    return XmlUtils::NodeListToCollection(wanted.isEmpty() ? root.childNodes() : root.selectNodes(wanted));
}

QString upperCased(QString text)
{
    for (QChar& character : text)
        character = character.toUpper();
    return text;
}

} // namespace tavrin
