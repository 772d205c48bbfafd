#pragma once

#include "base/files/FileWriter.h"
#include "host/HostCase.h"
#include "host/store/AttachmentStore.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QThread>

#include <functional>
#include <sys/wait.h>
#include <unistd.h>

// What the tests of the attachments folders share.

namespace tavrin::test {

/// Waits until a thread that has done its work is gone too: one that allocates while this process forks
/// leaves the child with a lock that nobody gives back.
inline void waitForThreadsToEnd()
{
    constexpr int own = 2; // this one, and the one that watches the time of the tests
    const QDir threads(QStringLiteral("/proc/self/task"));
    const QDeadlineTimer patience(1000); // not longer: a test may want a thread that hangs
    while (threads.entryList(QDir::Dirs | QDir::NoDotAndDotDot).size() > own && !patience.hasExpired())
        QThread::yieldCurrentThread();
}

/// Runs `body` in a child process and returns what it returns: a small number; 128 and the signal when it was
/// killed.
inline int inChild(const std::function<int()>& body)
{
    waitForThreadsToEnd();
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(body());
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

/// Gives up the rights of the superuser, to whom file modes mean nothing. For children only.
inline bool dropRights()
{
    return ::getuid() != 0 || (::setgid(65534) == 0 && ::setuid(65534) == 0);
}

/// All entries below a folder, each as its path from there, sorted.
inline QStringList treeOf(const QString& folder)
{
    QStringList entries;
    for (const QString& name : filesIn(folder)) {
        entries << name;
        const QString path = folder + u'/' + name;
        if (QFileInfo(path).isDir() && !QFileInfo(path).isSymLink()) {
            for (const QString& below : treeOf(path))
                entries << name + u'/' + below;
        }
    }
    return entries;
}

/// A host on the sample database, whose attachments lie in the folder "attachments" beside it.
class StoreCase : public HostCase
{
protected:
    const QString Stored = QStringLiteral("attachments\\2014\\03\\20160201130507_Report.pdf");

    void init() override
    {
        HostCase::init();
        m_host->waitForSweep();
        m_temporary.emplace();
        m_temporaryBefore = qgetenv("TMPDIR");
        qputenv("TMPDIR", QFile::encodeName(m_temporary->path()));
    }
    void cleanup() override
    {
        if (m_temporaryBefore.isNull())
            qunsetenv("TMPDIR");
        else
            qputenv("TMPDIR", m_temporaryBefore);
        HostCase::cleanup();
    }

    QString source(const QByteArray& content, const char* name = "Report.pdf") const
    {
        const QString file = path(name);
        writeFile(file, content);
        return file;
    }
    /// The platform's path of a stored file, and the names in the attachments folder.
    QString storedPath(const QString& below = {}) const { return path("attachments") + u'/' + below; }
    QStringList stored() const { return treeOf(path("attachments")); }
    QString report() const { return storedPath(QStringLiteral("2014/03/20160201130507_Report.pdf")); }
    /// Where copies of downloads lie.
    QString temporary() const { return m_temporary->path(); }

    void upload(const QString& from, const QString& to) { m_host->newUploader()->Upload(from, to, {}); }
    QString download(const QString& from) { return m_host->newDownloader()->Download(from); }

    void setSetting(const QString& section, const QString& key, const QString& value)
    {
        Statement(*m_database, QStringLiteral("DELETE FROM setting WHERE section = ? AND key = ?"))
            .run({section, key});
        Statement(*m_database, QStringLiteral("INSERT INTO setting VALUES (?, ?, ?)"))
            .run({section, key, value});
        m_host->refreshCaches();
    }
    void setFolder(const QString& folder)
    {
        setSetting(QStringLiteral("_Global"), QStringLiteral("Attachments Folder"), folder);
    }

    QString uploadProblem(const QString& from, const QString& reason) const
    {
        return QStringLiteral("The file '%1' could not be copied to the attachments folder: %2.")
            .arg(from, reason);
    }
    QString downloadProblem(const QString& from, const QString& reason) const
    {
        return QStringLiteral("The file '%1' could not be copied from the attachments folder: %2.")
            .arg(from, reason);
    }

private:
    std::optional<QTemporaryDir> m_temporary;
    QByteArray m_temporaryBefore;
};

} // namespace tavrin::test
