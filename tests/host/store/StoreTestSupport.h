#pragma once

#include "base/files/FileWriter.h"
#include "host/HostCase.h"
#include "host/store/AttachmentStore.h"
#include "support/ChildProcess.h"

#include <QDir>

#include <functional>
#include <sys/stat.h>
#include <utility>

// What the tests of the attachments folders share.

namespace tavrin::test {

/// The file that most tests store, and where its row finds it.
inline const QString Stored = QStringLiteral("attachments\\2014\\03\\20160201130507_Report.pdf");

// What a child or a second program answers.
inline constexpr int Passed = 0;
inline constexpr int OtherText = 1;
inline constexpr int NotPossible = 2;
inline constexpr int Raised = 3;
inline constexpr int LeftSomething = 4;

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

/// The mode of a file, without its kind; 0 when there is none.
inline mode_t modeOf(const QString& path)
{
    struct stat status = {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 07777 : 0;
}

/// A host on the sample database, whose attachments lie in the folder "attachments" beside it.
class StoreCase : public HostCase
{
protected:
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
    /// Where `Stored` lies.
    QString month() const { return storedPath(QStringLiteral("2014/03")); }
    QString report() const { return month() + QStringLiteral("/20160201130507_Report.pdf"); }
    /// Where copies of downloads lie.
    QString temporary() const { return m_temporary->path(); }

    void upload(const QString& from, const QString& to) { m_host->newUploader()->Upload(from, to, {}); }
    QString download(const QString& from) { return m_host->newDownloader()->Download(from); }

    /// Uploads, and does something when the first buffer has been written.
    void uploadMeeting(const QString& from, const std::function<void()>& event)
    {
        const auto uploader = m_host->newUploader();
        bool met = false;
        const auto progress = uploader->UploadProgress.subscribe([&](const QString&, qint64, qint64) {
            if (!std::exchange(met, true))
                event();
        });
        uploader->Upload(from, Stored, {});
    }

    /// Downloads, and does something when the first buffer has been written.
    void downloadMeeting(const std::function<void()>& event)
    {
        const auto downloader = m_host->newDownloader();
        bool met = false;
        const auto progress = downloader->DownloadProgress.subscribe([&](const QString&, qint64, qint64) {
            if (!std::exchange(met, true))
                event();
        });
        downloader->Download(Stored);
    }

    /// The next start of the program, up to the end of its sweep.
    void startAgain()
    {
        signOn(QStringLiteral("admin"));
        m_host->waitForSweep();
    }

    /// The part of an upload whose program was killed.
    void onlyAPartIsLeft() const
    {
        const QStringList left = filesIn(month());
        QCOMPARE(left.size(), 1);
        QVERIFY2(left.constFirst().startsWith(QLatin1String(TemporaryPrefix)), qPrintable(left.constFirst()));
    }
    void nothingIsLeftAndTheNextUploadWorks(const QString& from)
    {
        QCOMPARE(filesIn(month()), QStringList());
        upload(from, Stored);
        QVERIFY(contentOf(report()) == contentOf(from));
        QCOMPARE(filesIn(month()).size(), 1);
    }

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
