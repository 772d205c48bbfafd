#include "host/NotOffered.h"

#include "base/Error.h"

namespace tavrin {

namespace {

class MissingThumbnailService : public ThumbnailService
{
public:
    QVariant GetThumbnailPath(const QString& path) override
    {
        Q_UNUSED(path)
        raiseNotOffered(QStringLiteral("thumbnails"));
    }
};

class MissingAttachmentFolders : public AttachmentFolders
{
public:
    QString GetFolderPath(const QVariant& folderNo) override
    {
        Q_UNUSED(folderNo)
        raiseNotOffered(QStringLiteral("attachment folders"));
    }
};

class MissingDownloader : public Downloader
{
public:
    void SetBufferSize(qint32 bytes) override { Q_UNUSED(bytes) }
    QString Download(const QString& path) override
    {
        Q_UNUSED(path)
        raiseNotOffered(QStringLiteral("downloads"));
    }
    // There is never a download to end.
    void Cancel() override {}
};

class MissingUploader : public Uploader
{
public:
    void Upload(const QString& source, const QString& destination, const QVariant& options) override
    {
        Q_UNUSED(source)
        Q_UNUSED(destination)
        Q_UNUSED(options)
        raiseNotOffered(QStringLiteral("uploads"));
    }
};

} // namespace

void raiseNotOffered(const QString& what)
{
    throw Error(QStringLiteral("This host does not offer %1").arg(what), Error::NoSuchComponentNumber);
}

std::unique_ptr<ThumbnailService> makeMissingThumbnailService()
{
    return std::make_unique<MissingThumbnailService>();
}

std::unique_ptr<AttachmentFolders> makeMissingAttachmentFolders()
{
    return std::make_unique<MissingAttachmentFolders>();
}

std::unique_ptr<Downloader> makeMissingDownloader()
{
    return std::make_unique<MissingDownloader>();
}

std::unique_ptr<Uploader> makeMissingUploader()
{
    return std::make_unique<MissingUploader>();
}

} // namespace tavrin
