#include "testing/FakeTransfer.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace tavrin::testing {

namespace {

QString localPath(QString path)
{
    return path.replace(u'\\', u'/');
}

void copyFile(const QString& from, const QString& to)
{
    if (!QFile::copy(from, to))
        throw Error(QStringLiteral("Cannot copy '%1' to '%2'.").arg(from, to));
}

class Transfer : protected Recorder
{
protected:
    using Recorder::Recorder;

    /// What a test does at this step, or wants to fail.
    void step(const QString& path, qint64 bytes, qint64 total) const
    {
        if (state()->duringTransfer)
            state()->duringTransfer(path, bytes, total);
        const auto failure = state()->transferFailures.constFind(path);
        if (failure != state()->transferFailures.constEnd())
            throw Error(*failure);
    }
};

class FakeDownloader final : public Downloader, Transfer
{
public:
    explicit FakeDownloader(StatePtr state)
        : Transfer(std::move(state))
    {
    }

    void SetBufferSize(qint32 bytes) override { asked(QStringLiteral("SetBufferSize %1").arg(bytes)); }
    QString Download(const QString& path) override
    {
        m_cancelled = false;
        asked(QStringLiteral("Download ") + path);
        DownloadStarted.raise(path);
        const qint64 total = std::max<qint64>(QFileInfo(localPath(path)).size(), 2);
        for (const qint64 read : {total / 2, total}) {
            if (m_cancelled)
                break;
            step(path, read, total);
            DownloadProgress.raise(path, read, total);
        }
        QString copy = m_cancelled ? QString() : temporaryCopy(path);
        DownloadComplete.raise(path, m_cancelled);
        return copy;
    }
    void Cancel() override
    {
        asked(QStringLiteral("Cancel"));
        m_cancelled = true;
    }

private:
    QString temporaryCopy(const QString& path) const
    {
        const QFileInfo file(localPath(path));
        if (!file.exists())
            return path;
        if (!state()->copies)
            state()->copies = std::make_unique<QTemporaryDir>();
        QTemporaryDir folder(state()->copies->filePath(QStringLiteral("copy")));
        folder.setAutoRemove(false); // it goes with all the others
        QString copy = folder.filePath(QStringLiteral("copy.tmp"));
        copyFile(file.filePath(), copy);
        return copy;
    }

    bool m_cancelled = false;
};

class FakeUploader final : public Uploader, Transfer
{
public:
    explicit FakeUploader(StatePtr state)
        : Transfer(std::move(state))
    {
    }

    void Upload(const QString& source, const QString& destination, const QVariant&) override
    {
        asked(QStringLiteral("Upload %1 -> %2").arg(source, destination));
        const qint64 total = state()->uploadTotal.value_or(std::max<qint64>(QFileInfo(source).size(), 2));
        for (const qint64 written : {total / 2, total}) {
            step(source, written, total);
            if (state()->uploadTellsProgress)
                UploadProgress.raise(source, written, total);
        }
        if (QFileInfo::exists(source)) {
            const QString target = localPath(destination);
            QDir().mkpath(QFileInfo(target).path());
            copyFile(source, target);
        }
        UploadComplete.raise(source, false);
    }
};

} // namespace

std::unique_ptr<Downloader> makeFakeDownloader(StatePtr state)
{
    return std::make_unique<FakeDownloader>(std::move(state));
}

std::unique_ptr<Uploader> makeFakeUploader(StatePtr state)
{
    return std::make_unique<FakeUploader>(std::move(state));
}

} // namespace tavrin::testing
