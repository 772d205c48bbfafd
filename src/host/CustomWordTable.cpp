#include "host/CustomWordTable.h"

#include "base/FileWriter.h"
#include "frame/CustomWords.h"
#include "host/Statement.h"

namespace tavrin {

void writeCustomWords(Database& database, const QString& path)
{
    QStringList words;
    Statement select(database, QStringLiteral("SELECT word FROM custom_word ORDER BY word"));
    select.run();
    while (select.next())
        words.append(select.text(0));
    replaceFile(path, CustomWords::format(words));
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
