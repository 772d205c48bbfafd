#include "XmlUtils.h"

namespace tavrin::XmlUtils {

namespace {

QString joined(const QStringList& conditions, const QString& joiner)
{
    QString all;
    for (const QString& condition : conditions) {
        if (!all.isEmpty())
            all += u' ' + joiner + u' ';
        all += condition;
    }
    return u'(' + all + u')';
}

QString call(const QString& function, const QStringList& arguments)
{
    return function + u'(' + arguments.join(QStringLiteral(", ")) + u')';
}

} // namespace

QString AndExpression(const QStringList& conditions)
{
    return joined(conditions, QStringLiteral("and"));
}

QString OrExpression(const QStringList& conditions)
{
    return joined(conditions, QStringLiteral("or"));
}

QString ContainsExpression(const QString& field, const QString& text)
{
    return call(QStringLiteral("contains"), {field, QuoteLiteral(text)});
}

QString StartsWithExpression(const QString& field, const QString& text)
{
    return call(QStringLiteral("starts-with"), {field, QuoteLiteral(text)});
}

QString TranslateExpression(const QString& field, const QString& from, const QString& to)
{
    return call(QStringLiteral("translate"), {field, QuoteLiteral(from), QuoteLiteral(to)});
}

QString UpperCaseExpression(const QString& field)
{
    return TranslateExpression(field, QString::fromUtf16(LowerCaseAlphabet),
                               QString::fromUtf16(UpperCaseAlphabet));
}

QString QuoteLiteral(const QString& text)
{
    if (!text.contains(u'\''))
        return u'\'' + text + u'\'';
    const QString pieces = text.split(u'\'').join(QStringLiteral("', \"'\", '"));
    return QStringLiteral("concat('") + pieces + QStringLiteral("')");
}

std::vector<XmlNode> NodeListToCollection(const XmlNodeList& nodes)
{
    std::vector<XmlNode> collection;
    collection.reserve(nodes.size());
    for (const XmlNode& node : nodes)
        collection.push_back(node);
    return collection;
}

} // namespace tavrin::XmlUtils
