#include "spell/CustomDictionary.h"

#include "base/Error.h"
#include "base/FileReader.h"
#include "base/FileWriter.h"
#include "frame/CustomWords.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QThread>

#include <cerrno>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tavrin {

namespace {

constexpr qint64 LongestFile = qint64(16) << 20;
/// Another program holds the file for as long as it takes to write a line.
constexpr int PatienceMs = 2000;
constexpr unsigned long PauseMs = 20;

[[noreturn]] void raiseNotWritten(const QString& path, const SystemError& error)
{
    const QString reason = error.Code == EINVAL    ? QStringLiteral("it is no regular file")
                           : error.Code == ETXTBSY ? QStringLiteral("another program is using it")
                                                   : error.Description;
    throw Error(QStringLiteral("The file %1 could not be written: %2").arg(path, reason));
}

bool isStillAt(const Descriptor& file, const QByteArray& path)
{
    struct stat own = {};
    struct stat named = {};
    return ::fstat(file.number(), &own) == 0 && ::stat(path.constData(), &named) == 0 &&
           own.st_dev == named.st_dev && own.st_ino == named.st_ino;
}

/// The file, locked. A program that replaced it meanwhile makes it another file, which is then opened anew.
Descriptor openLocked(const QString& path)
{
    const QByteArray name = QFile::encodeName(path);
    const QDeadlineTimer deadline(PatienceMs);
    do {
        Descriptor file = openAt(AT_FDCWD, name, O_RDWR | O_APPEND | O_NONBLOCK | O_NOCTTY);
        if (::flock(file.number(), LOCK_EX | LOCK_NB) != 0) {
            if (errno != EWOULDBLOCK && errno != EINTR)
                return file; // this file system has no locks
        } else if (isStillAt(file, name)) {
            return file;
        }
        QThread::msleep(PauseMs);
    } while (!deadline.hasExpired());
    throw SystemError(ETXTBSY);
}

void append(const Descriptor& file, qint64 length, const QByteArray& line)
{
    try {
        writeAll(file, line.constData(), line.size());
        flush(file);
    } catch (const SystemError&) {
        // Half a line would join the next word that is added.
        if (::ftruncate(file.number(), length) != 0)
            throw SystemError::last();
        throw;
    }
}

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
    const QStringList words = CustomWords::parse(readFile(path, LongestFile));
    setWords(QSet<QString>(words.begin(), words.end()));
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
    bool isNew = false;
    try {
        const Descriptor file = openLocked(m_path);
        const QByteArray content = readContent(file, LongestFile);
        isNew = !CustomWords::parse(content).contains(word);
        if (isNew) {
            const bool isOpenLine = !content.isEmpty() && !content.endsWith('\n');
            append(file, content.size(), (isOpenLine ? "\n" : "") + word.toUtf8() + '\n');
        }
    } catch (const SystemError& error) {
        raiseNotWritten(m_path, error);
    }
    m_words.insert(word);
    m_capitals.insert(word.toUpper());
    return isNew;
}

void CustomDictionary::remove(const QString& word)
{
    try {
        // Held until the new file stands, so that no line of another program gets lost.
        const Descriptor file = openLocked(m_path);
        const QByteArray content = readContent(file, LongestFile);
        const QByteArray kept = without(content, word);
        if (kept != content)
            replaceFile(m_path, kept);
    } catch (const SystemError& error) {
        raiseNotWritten(m_path, error);
    }
    m_words.remove(word);
    setWords(std::move(m_words));
}

} // namespace tavrin
