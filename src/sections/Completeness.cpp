#include "sections/Completeness.h"

#include "base/failure/Error.h"
#include "sections/SuspRelList.h"

namespace tavrin {

void checkCompleteness(const Relations& relations, const QString& word)
{
    const qint32 missing = relations.Parties - relations.Found;
    if (relations.Suspects == 0 || relations.Parties == 0 || missing <= 0 || !relations.IsRequired)
        return;
    const QString what = missing == 1 ? QStringLiteral("relationship") : QStringLiteral("more relationships");
    throw Error(QStringLiteral("You must specify the relationship this suspect has to each ") +
                    word.toLower() + QStringLiteral(" before continuing.\r\n\r\nYou need to add ") +
                    QString::number(missing) + u' ' + what + QStringLiteral(" to complete this section."),
                SuspRelList::CompletenessErrorNumber);
}

} // namespace tavrin
