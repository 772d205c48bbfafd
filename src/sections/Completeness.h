#pragma once

#include <QString>

namespace tavrin {

/// What a save knows of the relationships of one suspect.
struct Relations
{
    qint32 Suspects = 0;
    qint32 Parties = 0;
    /// Parties with a relationship.
    qint32 Found = 0;
    bool IsRequired = false;
};

/// Raises `SuspRelList::CompletenessErrorNumber` with a text for the person while required relationships are
/// missing. `word` stands for one party.
void checkCompleteness(const Relations& relations, const QString& word);

} // namespace tavrin
