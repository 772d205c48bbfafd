#include "host/words/InstalledDictionary.h"

#include "base/failure/Error.h"
#include "base/files/FileReader.h"
#include "base/files/FileWriter.h"
#include "frame/words/SpellingDictionary.h"

#include <QFileInfo>

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

/// A file of the installed dictionary.
struct Installed
{
    QDateTime changed;
    qint64 size = 0;

    explicit Installed(const QString& path)
    {
        const QFileInfo info(path);
        if (!info.exists())
            throw Error(QStringLiteral("The installed spelling dictionary %1 is missing").arg(path));
        changed = info.lastModified().toUTC();
        size = info.size();
    }
    /// A package that is being installed puts one file there before the other, so each counts for itself.
    bool isNewerThan(const QDateTime& present, qint64 presentSize) const
    {
        return !present.isValid() || changed > present || (changed == present && size != presentSize);
    }
};

bool isUpToDate(const QString& file, const QString& name, const Installed& rules, const Installed& words)
{
    try {
        const SpellingDictionary present = readSpellingDictionary(file);
        return present.Name == name && !rules.isNewerThan(present.RulesChanged, present.AffixRules.size()) &&
               !words.isNewerThan(present.WordsChanged, present.WordList.size());
    } catch (const Error&) {
        return false; // missing or damaged: to be written
    }
}

} // namespace

void refreshSpellingDictionary(const QString& file, const QString& source)
{
    // The times are taken before the content: a file that changes in between is taken again the next time.
    const Installed rules(rulesPath(source));
    const Installed words(wordsPath(source));
    SpellingDictionary installed;
    installed.Name = QFileInfo(rulesPath(source)).completeBaseName();
    installed.RulesChanged = rules.changed;
    installed.WordsChanged = words.changed;
    if (isUpToDate(file, installed.Name, rules, words))
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
