#pragma once

#include "base/xml/XmlNodes.h"

#include <QString>
#include <QStringList>

/// Builds XPath 1.0 predicate text. A field expression is XPath and goes in as it is: an element's name, a
/// function call, the result of `UpperCaseExpression`. Only texts are quoted.
namespace tavrin::XmlUtils {

inline constexpr char16_t LowerCaseAlphabet[] = u"abcdefghijklmnopqrstuvwxyzabcdefghijklmnopqrstuvwxyz";
inline constexpr char16_t UpperCaseAlphabet[] = u"ABCDEFGHIJKLMNOPQRSTUVWXYZABCDEFGHIJKLMNOPQRSTUVWXYZ";

/// The conditions joined by "and" in parentheses; `()` for none.
QString AndExpression(const QStringList& conditions);
/// The conditions joined by "or" in parentheses; `()` for none.
QString OrExpression(const QStringList& conditions);
/// `contains(field, 'text')`
QString ContainsExpression(const QString& field, const QString& text);
/// `starts-with(field, 'text')`
QString StartsWithExpression(const QString& field, const QString& text);
/// `translate(field, 'from', 'to')`; both alphabets must be ASCII.
QString TranslateExpression(const QString& field, const QString& from, const QString& to);
/// The field with the letters a to z in upper case. Other letters stay as they are.
QString UpperCaseExpression(const QString& field);
/// The XPath literal for a text: in apostrophes, or a `concat` call when the text holds an apostrophe.
QString QuoteLiteral(const QString& text);
/// A new collection of the same nodes in the same order.
XmlNodes NodeListToCollection(XmlNodeList nodes);

} // namespace tavrin::XmlUtils
