#include "frame/XmlUtils.h"

namespace tavrin::XmlUtils {

namespace {

/// The most arguments of one call and members of one chain: each adds to the depth of the expression, which
/// the engine limits.
constexpr qsizetype MostArguments = 200;

QString joined(const QStringList& conditions, const QString& joiner)
{
    if (conditions.size() > MostArguments) { // a chain of chains says the same
        QStringList chains;
        for (qsizetype i = 0; i < conditions.size(); i += MostArguments)
            chains << joined(conditions.mid(i, MostArguments), joiner);
        return joined(chains, joiner);
    }
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

/// A `concat` call; of calls, where there are too many pieces for one.
QString concatenation(QStringList pieces)
{
    const QString concat = QStringLiteral("concat");
    while (pieces.size() > MostArguments) {
        QStringList calls;
        for (qsizetype i = 0; i < pieces.size(); i += MostArguments) {
            const QStringList some = pieces.mid(i, MostArguments);
            calls << (some.size() == 1 ? some.first() : call(concat, some));
        }
        pieces = calls;
    }
    return call(concat, pieces);
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
    QStringList pieces;
    for (const QString& piece : text.split(u'\'')) {
        if (!pieces.isEmpty())
            pieces << QStringLiteral("\"'\"");
        pieces << u'\'' + piece + u'\'';
    }
    return concatenation(pieces);
}

XmlNodes NodeListToCollection(XmlNodeList nodes)
{
    return XmlNodes(std::move(nodes));
}

} // namespace tavrin::XmlUtils
