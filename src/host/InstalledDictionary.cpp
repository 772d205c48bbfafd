#include "host/InstalledDictionary.h"

#include "base/Error.h"
#include "base/FileReader.h"
#include "base/FileWriter.h"
#include "frame/SpellingDictionary.h"

#include <QFileInfo>

#include <algorithm>

namespace tavrin {

namespace {

QString rulesPath(const QString& source)
{
    return source + QStringLiteral(".aff");
}

QString wordsPath(const QString& source)
{
    return source + QStringLiteral(".dic");
}

QDateTime changeOf(const QString& path)
{
    const QFileInfo info(path);
    if (!info.exists())
        throw Error(QStringLiteral("The installed spelling dictionary %1 is missing").arg(path));
    return info.lastModified().toUTC();
}

/// Without the files' content.
SpellingDictionary describe(const QString& source)
{
    SpellingDictionary dictionary;
    dictionary.Name = QFileInfo(rulesPath(source)).completeBaseName();
    dictionary.Changed = std::max(changeOf(rulesPath(source)), changeOf(wordsPath(source)));
    return dictionary;
}

bool isUpToDate(const QString& file, const SpellingDictionary& installed)
{
    try {
        const SpellingDictionary present = readSpellingDictionary(file);
        return present.Name == installed.Name && present.Changed >= installed.Changed;
    } catch (const Error&) {
        return false; // missing or damaged: to be written
    }
}

} // namespace

void refreshSpellingDictionary(const QString& file, const QString& source)
{
    // The time is taken before the content: a file that changes in between is taken again the next time.
    SpellingDictionary installed = describe(source);
    if (isUpToDate(file, installed))
        return;
    installed.AffixRules = readFile(rulesPath(source), LongestDictionaryFile);
    installed.WordList = readFile(wordsPath(source), LongestDictionaryFile);
    try {
        checkSpellingDictionary(installed);
    } catch (const Error& error) {
        throw Error(QStringLiteral("The installed spelling dictionary %1 cannot be used: %2")
                        .arg(source, error.Description));
    }
    replaceFile(file, packSpellingDictionary(installed));
}

} // namespace tavrin
