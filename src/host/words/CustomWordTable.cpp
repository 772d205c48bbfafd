#include "host/words/CustomWordTable.h"

#include "frame/words/CustomWordFile.h"
#include "frame/words/CustomWords.h"
#include "host/database/Statement.h"

#include <QSet>

namespace tavrin {

void writeCustomWords(Database& database, const QString& path)
{
    rewriteCustomWordFile(path, [&database] {
        QStringList words;
        QSet<QString> seen;
        Statement select(database, QStringLiteral("SELECT word FROM custom_word ORDER BY word"));
        select.run();
        while (select.next()) {
            // Rows may come from elsewhere: one that is no word would make lines that are none.
            const QString word = CustomWords::normalForm(select.text(0));
            if (!CustomWords::flawOf(word).isEmpty() || seen.contains(word))
                continue;
            seen.insert(word);
            words.append(word);
        }
        return CustomWords::format(words);
    });
}

CustomWordTable::CustomWordTable(Database& database)
    : m_database(database)
{
}

void CustomWordTable::AddWord(const QString& word)
{
    const QString normal = CustomWords::requireWord(word);
    Statement insert(m_database,
                     QStringLiteral("INSERT INTO custom_word (word) VALUES (?) ON CONFLICT DO NOTHING"));
    insert.bind(normal).run();
    m_added = insert.affectedRows() > 0 ? normal : QString();
}

void CustomWordTable::TakeBack()
{
    if (m_added.isEmpty())
        return;
    Statement remove(m_database, QStringLiteral("DELETE FROM custom_word WHERE word = ?"));
    remove.bind(m_added).run();
    m_added.clear();
}

} // namespace tavrin
