#pragma once

#include "base/xml/XmlNodes.h"

#include <QString>
#include <QStringList>

namespace tavrin {

/// What a picker asks of a list, as XPath conditions on one record.
struct SearchTerms
{
    /// One of these must hold; none: all do.
    QStringList active;
    /// Each of these must hold.
    QStringList restrictions;
    /// One of these must hold; none: all do.
    QStringList text;

    /// `record[(...)]`; "" when there is no condition.
    QString expression(const QString& record) const;
    /// The records that the conditions leave, in the list's order; without conditions all children of the
    /// list's root.
    XmlNodes select(const XmlDocument& list, const QString& record) const;
};

/// The text with each letter that has one single capital in upper case. Half a character stays as it is, so
/// that no other text is searched for than the typed one.
QString upperCased(QString text);

} // namespace tavrin
