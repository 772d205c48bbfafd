#pragma once

#include "frame/words/SpellingDictionary.h"
#include "support/TestFiles.h"

namespace tavrin::test {

/// The real dictionary, as a support file holds it.
inline SpellingDictionary installedDictionary()
{
    const QString source = QStringLiteral("/usr/share/hunspell/en_US");
    return {QStringLiteral("en_US"), QDateTime(QDate(2026, 1, 2), QTime(3, 4, 5), Qt::UTC),
            bytesOf(source + QStringLiteral(".aff")), bytesOf(source + QStringLiteral(".dic"))};
}

/// The support file of the real dictionary.
inline const QByteArray& supportFile()
{
    static const QByteArray content = packSpellingDictionary(installedDictionary());
    return content;
}

} // namespace tavrin::test
