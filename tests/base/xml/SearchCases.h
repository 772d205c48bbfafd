#pragma once

#include "base/failure/Error.h"
#include "base/search/SearchPlan.h"
#include "base/xml/XmlDocument.h"

#include <QStringList>

#include <functional>

namespace tavrin::test {

/// The engine's own answer: parentheses around an expression change nothing but that no plan knows it.
inline XmlNodeList engineNodes(const XmlNode& context, const QString& expression)
{
    return context.selectNodes(QLatin1Char('(') + expression + QLatin1Char(')'));
}

inline bool isPlanned(const QString& expression)
{
    return SearchPlan::parse(expression.toStdString()).has_value();
}

/// What is wrong with the answer to an expression beside the engine's own; "" for nothing.
inline QString difference(const XmlNode& context, const QString& expression)
{
    const auto told = [&](const QString& what) {
        return what + QStringLiteral("\nexpression: ") + expression + QStringLiteral("\ndocument: ") +
               context.ownerDocument().xml();
    };
    try {
        const XmlNodeList found = context.selectNodes(expression);
        const XmlNodeList expected = engineNodes(context, expression);
        if (found.size() != expected.size())
            return told(QStringLiteral("%1 nodes, not %2").arg(found.size()).arg(expected.size()));
        for (std::size_t i = 0; i < found.size(); ++i) {
            if (found.at(i) != expected.at(i))
                return told(QStringLiteral("another node at %1").arg(i));
        }
        return {};
    } catch (const Error& error) {
        // Whatever is not planned is the engine's in any case.
        return isPlanned(expression) ? told(error.Description) : QString();
    }
}

/// Makes documents and expressions out of choices: `choose(n)` answers with a number below n.
class SearchCases
{
public:
    explicit SearchCases(std::function<unsigned(unsigned)> choose)
        : m_choose(std::move(choose))
    {
    }

    // Documents

    QString document()
    {
        QString text = QStringLiteral("<List typed='%1'>").arg(escaped(anyText()));
        const unsigned records = m_choose(4) == 0 ? m_choose(200) : m_choose(24);
        for (unsigned i = 0; i < records; ++i)
            text += record();
        return oneOf({QString(), QStringLiteral("<!-- before -->")}) + text + QStringLiteral("</List>");
    }

    /// Changes something in the tree, or only an attribute.
    void change(XmlNode root)
    {
        const XmlNodeList records = root.childNodes();
        const XmlNode record = records.at(m_choose(static_cast<unsigned>(records.size()) + 1));
        switch (m_choose(5)) {
        case 0:
            root.setAttribute(QStringLiteral("typed"), anyText());
            break;
        case 1:
            root.appendElement(QStringLiteral("R")).appendElement(childName(), anyText());
            break;
        case 2:
            if (!record.isNull() && record.nodeName() == QLatin1String("R"))
                record.appendElement(childName(), anyText());
            break;
        case 3:
            if (XmlNode child = record.isNull() ? XmlNode() : record.childNodes().at(0);
                !child.isNull() && !child.nodeName().isEmpty())
                child.setText(anyText());
            break;
        default:
            if (!record.isNull() && record.nodeName() == QLatin1String("R"))
                root.appendChild(record); // to the end
        }
    }

    // Expressions

    /// From the document's root element or from the document.
    QString expression(bool fromRoot)
    {
        const QString path = fromRoot
                                 ? oneOf({QStringLiteral("R"), QStringLiteral("R"), QStringLiteral("/List/R"),
                                          QStringLiteral("R/N"), QStringLiteral("None/R")})
                                 : oneOf({QStringLiteral("List/R"), QStringLiteral("/List/R"),
                                          QStringLiteral("/*/R"), QStringLiteral("List")});
        return path + QLatin1Char('[') + condition(3) + QLatin1Char(']');
    }

    /// With one character more, one less, or another one.
    QString damaged(QString expression)
    {
        static const QString characters = QStringLiteral("()[]'\"=!,/@*-. aN1<|+\u00e9");
        const auto place = static_cast<qsizetype>(m_choose(static_cast<unsigned>(expression.size())));
        const QChar character = characters.at(m_choose(static_cast<unsigned>(characters.size())));
        switch (m_choose(3)) {
        case 0:
            return expression.remove(place, 1);
        case 1:
            return expression.insert(place, character);
        default:
            expression[place] = character;
            return expression;
        }
    }

    /// A search as the pickers build it, which differs in the typed text alone.
    QString search(const QString& typed, const QString& restriction) const
    {
        const QString folded = QStringLiteral("translate(%1, 'abcdexy', 'ABCDEXY')");
        const QString text = literal(typed.toUpper());
        return QStringLiteral("R[(%1) and (contains(%2, %4) or contains(%3, %4) or starts-with(%3, %4))]")
            .arg(restriction, folded.arg(QStringLiteral("N")), folded.arg(QStringLiteral("Id")), text);
    }

    QString condition(int depth)
    {
        if (depth == 0 || m_choose(3) == 0)
            return test();
        switch (m_choose(5)) {
        case 0:
            return QLatin1Char('(') + condition(depth - 1) + QLatin1Char(')');
        case 1:
            return QStringLiteral("not(") + condition(depth - 1) + QLatin1Char(')');
        case 2:
            return condition(depth - 1) + QStringLiteral(" and ") + condition(depth - 1);
        case 3:
            return condition(depth - 1) + QStringLiteral(" or ") + condition(depth - 1);
        default:
            return QLatin1Char('(') + condition(depth - 1) + QStringLiteral(") and (") +
                   condition(depth - 1) + QLatin1Char(')');
        }
    }

    QString anyText()
    {
        static const QStringList texts{QString(),
                                       QStringLiteral(" "),
                                       QStringLiteral("ada"),
                                       QStringLiteral("Ada"),
                                       QStringLiteral("O'B"),
                                       QStringLiteral("a\"b"),
                                       QStringLiteral("1"),
                                       QStringLiteral(" 1 "),
                                       QStringLiteral("1.0"),
                                       QStringLiteral("01"),
                                       QStringLiteral("-1"),
                                       QStringLiteral("+1"),
                                       QStringLiteral("- 1"),
                                       QStringLiteral(".5"),
                                       QStringLiteral("1e0"),
                                       QStringLiteral("x"),
                                       QStringLiteral("NaN"),
                                       QStringLiteral("\u00e9a"),
                                       QStringLiteral("\u00c9A"),
                                       QStringLiteral("\u65e5"),
                                       QStringLiteral("True"),
                                       QStringLiteral("9"),
                                       QStringLiteral("a<b&c>"),
                                       QStringLiteral("]]"),
                                       QStringLiteral("\t1\n")};
        if (m_choose(3) != 0)
            return oneOf(texts);
        static const QString letters = QStringLiteral("aAbBxX 1\u00e9\u0142'");
        QString text;
        for (unsigned rest = m_choose(m_choose(20) == 0 ? 80 : 6); rest > 0; --rest)
            text += letters.at(m_choose(static_cast<unsigned>(letters.size())));
        return text;
    }

private:
    QString oneOf(const QStringList& texts)
    {
        return texts.at(m_choose(static_cast<unsigned>(texts.size())));
    }

    static QString escaped(const QString& text)
    {
        return text.toHtmlEscaped().replace(QLatin1Char('\''), QStringLiteral("&#39;"));
    }

    static QString literal(const QString& text)
    {
        if (!text.contains(QLatin1Char('\'')))
            return QLatin1Char('\'') + text + QLatin1Char('\'');
        if (!text.contains(QLatin1Char('"')))
            return QLatin1Char('"') + text + QLatin1Char('"');
        return QStringLiteral("concat('") +
               QString(text).replace(QLatin1Char('\''), QStringLiteral("', \"'\", '")) + QStringLiteral("')");
    }

    QString childName() { return oneOf({QStringLiteral("N"), QStringLiteral("Id"), QStringLiteral("No")}); }

    QString content()
    {
        switch (m_choose(9)) {
        case 0:
            return QStringLiteral("<![CDATA[") + anyText() + QStringLiteral("]]>");
        case 1:
            return escaped(anyText()) + QStringLiteral("<!--c-->") + escaped(anyText());
        case 2:
            return escaped(anyText()) + QStringLiteral("<i>") + escaped(anyText()) +
                   QStringLiteral("<N>a</N></i>") + escaped(anyText());
        case 3:
            return QStringLiteral("<?p 1?><![CDATA[a]]>&#x41;");
        default:
            return escaped(anyText());
        }
    }

    QString record()
    {
        if (m_choose(12) == 0)
            return oneOf({QStringLiteral("<S><N>ada</N></S>"), QStringLiteral("<!--R-->"),
                          QStringLiteral("text"), QStringLiteral("<R/>"), QStringLiteral("<R>ada</R>")});
        QString text = QStringLiteral("<R>");
        for (const QString& name : {QStringLiteral("N"), QStringLiteral("Id"), QStringLiteral("No")}) {
            const unsigned kind = m_choose(10);
            const int times = kind == 0 ? 0 : kind == 1 ? 2 + static_cast<int>(m_choose(2)) : 1;
            for (int i = 0; i < times; ++i)
                text += QLatin1Char('<') + name + QLatin1Char('>') + content() + QStringLiteral("</") + name +
                        QLatin1Char('>');
        }
        return text + QStringLiteral("</R>");
    }

    // What is tested

    QString field()
    {
        return oneOf(
            {QStringLiteral("N"), QStringLiteral("Id"), QStringLiteral("No"), QStringLiteral("None")});
    }

    QString textOfRecord()
    {
        switch (m_choose(6)) {
        case 0:
            return QStringLiteral("translate(%1, 'abxya1b', 'ABXYxx')").arg(field());
        case 1:
            return QStringLiteral("translate(concat(%1, ' ', %2), \"abxy'\", 'AB')").arg(field(), field());
        case 2:
            return QStringLiteral("concat(%1, %2, translate(%3, 'a', 'bb'))")
                .arg(field(), literal(anyText()), field());
        default:
            return field();
        }
    }

    QString constantText()
    {
        switch (m_choose(8)) {
        case 0:
            return oneOf({QStringLiteral("/*/@typed"), QStringLiteral("/List/@typed"),
                          QStringLiteral("/*/@none"), QStringLiteral("/Other/@typed")});
        case 1:
            return QStringLiteral("translate(%1, 'ab', 'A')").arg(literal(anyText()));
        case 2:
            return QStringLiteral("concat(%1, %2)").arg(literal(anyText()), literal(anyText()));
        default:
            return literal(anyText());
        }
    }

    QString number()
    {
        return oneOf({QStringLiteral("1"), QStringLiteral("-1"), QStringLiteral("9"), QStringLiteral("1.0"),
                      QStringLiteral(".5"), QStringLiteral("- 1"), QStringLiteral("01")});
    }

    QString test()
    {
        const QString comparison = oneOf({QStringLiteral("="), QStringLiteral(" != ")});
        switch (m_choose(11)) {
        case 0:
        case 1:
            return QStringLiteral("contains(%1, %2)").arg(textOfRecord(), constantText());
        case 2:
            return QStringLiteral("starts-with(%1,%2)").arg(textOfRecord(), constantText());
        case 3:
            return textOfRecord() + comparison + constantText();
        case 4:
            return constantText() + comparison + textOfRecord();
        case 5:
            return textOfRecord() + comparison + number();
        case 6:
            return number() + comparison + textOfRecord();
        case 7:
            return field() + comparison + oneOf({constantText(), number()});
        case 8:
            return field();
        case 9:
            return oneOf({QStringLiteral("true()"), QStringLiteral("false()"), QStringLiteral("(N)"),
                          QStringLiteral("not(No)")});
        default:
            return m_choose(4) != 0 ? field() + comparison + literal(anyText()) : foreign();
        }
    }

    /// Outside the family.
    QString foreign()
    {
        return oneOf(
            {QStringLiteral("N > 1"), QStringLiteral("position() = 2"), QStringLiteral("N = Id"),
             QStringLiteral("string-length(N) = 3"), QStringLiteral("N/i"), QStringLiteral(". = 'ada'"),
             QStringLiteral("text()"), QStringLiteral("normalize-space(N) = 'a'"), QStringLiteral("@a"),
             QStringLiteral("N[2]"), QStringLiteral("contains('ada', N)"), QStringLiteral("'a' = 'a'"),
             QStringLiteral("translate(N, '\u00e9', 'e') = 'ea'"), QStringLiteral("count(N) = 2")});
    }

    std::function<unsigned(unsigned)> m_choose;
};

} // namespace tavrin::test
