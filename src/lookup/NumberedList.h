#pragma once

#include "lookup/SearchTerms.h"

#include <QVariant>
#include <QVariantList>

#include <functional>
#include <optional>

namespace tavrin {

/// What a search heeds besides the typed text.
struct SearchOptions
{
    /// Inactive records too.
    bool ListAll = false;
    bool RemoveUsedValues = false;
    /// Stays offered although inactive; Null or Empty for none.
    QVariant hostValue = {};
    QVariantList usedValues = {};
    /// A further condition on the record; "" for none.
    QString restriction = {};
};

/// A list of the host whose records bear a number that is the value, such as the employees' or the offenses':
/// a private clone, made at the first need and kept.
class NumberedList
{
public:
    /// The records of a list and what their parts are for.
    struct Shape
    {
        QString Record;
        QString Key;        ///< the number
        QString ShortText;  ///< what the person knows the record by; the text in the box
        QString LongText;   ///< what stands beside it
        QString ActiveTest; ///< condition of a record that is in use
        /// Conditions of which one must hold for a typed text, in upper case.
        std::function<QStringList(const QString& text)> TextTests;
    };

    /// `fetch` asks the host for its list.
    NumberedList(Shape shape, std::function<XmlDocument()> fetch);

    const XmlDocument& document();
    /// The record of this number, which goes into the expression as it stands; a null node for none. Raises
    /// an `Error` when that makes no valid expression.
    XmlNode find(const QVariant& number);
    XmlNodes search(const QString& query, const SearchOptions& options);
    /// The conditions of a search. Used values without a text strike out nothing.
    SearchTerms terms(const QString& query, const SearchOptions& options) const;

    QString shortText(const XmlNode& item) const;
    QString longText(const XmlNode& item) const;
    /// The record's number as a double; Null when it has none.
    QVariant number(const XmlNode& item) const;
    /// The number that a record's text is; nothing for a text that is none, and "nan" and "inf" are none.
    static std::optional<double> numberIn(const QString& text);

private:
    Shape m_shape;
    std::function<XmlDocument()> m_fetch;
    std::optional<XmlDocument> m_document;
};

/// A private clone of a list that the host keeps, to be searched by XPath.
XmlDocument cloneForSearch(const XmlDocument& cached);

} // namespace tavrin
