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

/// A call with too many arguments is refused as one that nests too deep, so a long one becomes a call of
/// calls.
QString concatCall(QStringList arguments)
{
    constexpr qsizetype MostArguments = 200;
    const QString concat = QStringLiteral("concat");
    while (arguments.size() > MostArguments) {
        QStringList calls;
        for (qsizetype from = 0; from < arguments.size(); from += MostArguments) {
            const QStringList some = arguments.mid(from, MostArguments);
            calls << (some.size() == 1 ? some.first() : call(concat, some));
        }
        arguments = calls;
    }
    return call(concat, arguments);
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
    QStringList arguments;
    for (const QString& piece : text.split(u'\'')) {
        if (!arguments.isEmpty())
            arguments << QStringLiteral("\"'\"");
        arguments << u'\'' + piece + u'\'';
    }
    return concatCall(arguments);
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
