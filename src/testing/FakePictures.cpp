#include "testing/FakePictures.h"

#include "base/values/Variant.h"

using namespace Qt::StringLiterals;

namespace tavrin::testing {

namespace {

class FakeImages final : public Images, Recorder
{
public:
    using Recorder::Recorder;

    bool IsImageFile(const QString& fileName) override
    {
        asked(u"IsImageFile"_s, fileName);
        return Images::IsImageFile(fileName);
    }
    QImage LoadPicture(const QString& fileName) override
    {
        const QHash<QString, QImage>& pictures = asked(u"LoadPicture"_s, fileName).pictures;
        if (pictures.contains(fileName))
            return pictures.value(fileName);
        return Images::LoadPicture(fileName); // where a test has files
    }
};

class FakeThumbnails final : public ThumbnailService, Recorder
{
public:
    using Recorder::Recorder;

    QVariant GetThumbnailPath(const QString& file) override
    {
        const QHash<QString, QString>& thumbnails = asked(u"GetThumbnailPath"_s, file).thumbnails;
        return thumbnails.contains(file) ? QVariant(thumbnails.value(file)) : QVariant();
    }
};

class FakeFolders final : public AttachmentFolders, Recorder
{
public:
    using Recorder::Recorder;

    QString GetFolderPath(const QVariant& folderNo) override
    {
        const QString number = ToText(folderNo);
        return asked(u"GetFolderPath"_s, number).folders.value(number);
    }
};

} // namespace

std::unique_ptr<Images> makeFakeImages(StatePtr state)
{
    return std::make_unique<FakeImages>(std::move(state));
}

std::unique_ptr<ThumbnailService> makeFakeThumbnailService(StatePtr state)
{
    return std::make_unique<FakeThumbnails>(std::move(state));
}

std::unique_ptr<AttachmentFolders> makeFakeAttachmentFolders(StatePtr state)
{
    return std::make_unique<FakeFolders>(std::move(state));
}

} // namespace tavrin::testing
