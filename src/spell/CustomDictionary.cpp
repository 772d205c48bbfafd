#include "spell/CustomDictionary.h"

#include "base/files/FileReader.h"
#include "frame/words/CustomWordFile.h"
#include "frame/words/CustomWords.h"

#include <QFile>

#include <sys/stat.h>

namespace tavrin {

namespace {

/// The content without the lines that say this word.
QByteArray without(const QByteArray& content, const QString& word)
{
    QByteArray kept;
    for (qsizetype start = 0; start < content.size();) {
        const qsizetype newline = content.indexOf('\n', start);
        const qsizetype end = newline < 0 ? content.size() : newline + 1;
        const QByteArray line = content.mid(start, end - start);
        if (CustomWords::parse(line) != QStringList{word})
            kept += line;
        start = end;
    }
    return kept;
}

} // namespace

CustomDictionary::CustomDictionary(const QString& path)
    : m_path(path)
{
    read();
}

CustomDictionary::Stamp CustomDictionary::Stamp::of(const QString& path)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return {};
    return {status.st_dev, status.st_ino, status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

void CustomDictionary::read()
{
    // The stamp is taken before the content: a file that changes in between is read again the next time.
    m_stamp = Stamp::of(m_path);
    if (m_stamp == Stamp()) {
        setWords({});
        return;
    }
    const QByteArray content = readFile(m_path, CustomWords::LongestFile);
    CustomWords::requireText(m_path, content);
    const QStringList words = CustomWords::parse(content);
    setWords(QSet<QString>(words.begin(), words.end()));
}

bool CustomDictionary::refresh()
{
    if (Stamp::of(m_path) == m_stamp)
        return false;
    read();
    return true;
}

void CustomDictionary::setWords(QSet<QString> words)
{
    m_words = std::move(words);
    m_capitals.clear();
    for (const QString& word : std::as_const(m_words))
        m_capitals.insert(word.toUpper());
}

bool CustomDictionary::knows(const QString& word) const
{
    if (m_words.contains(word))
        return true;
    if (word.toUpper() == word)
        return m_capitals.contains(word);
    return m_words.contains(word.left(1).toLower() + word.mid(1)) && word.at(0).isUpper();
}

bool CustomDictionary::add(const QString& word)
{
    CustomWordFile file(m_path);
    const QByteArray content = file.content();
    const bool isNew = !CustomWords::parse(content).contains(word);
    if (isNew) {
        const bool isOpenLine = !content.isEmpty() && !content.endsWith('\n');
        file.append((isOpenLine ? "\n" : "") + word.toUtf8() + '\n');
    }
    m_words.insert(word);
    m_capitals.insert(word.toUpper());
    return isNew;
}

void CustomDictionary::remove(const QString& word)
{
    CustomWordFile file(m_path); // held until the new file stands
    const QByteArray content = file.content();
    const QByteArray kept = without(content, word);
    if (kept != content)
        file.replace(kept);
    m_words.remove(word);
    setWords(std::move(m_words));
}

} // namespace tavrin
