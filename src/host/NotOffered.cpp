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

class MissingCustomDictionary : public tvCustomDictionary
{
public:
    void AddWord(const QString& word) override
    {
        Q_UNUSED(word)
        raiseNotOffered(QStringLiteral("a custom dictionary"));
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

std::unique_ptr<tvCustomDictionary> makeMissingCustomDictionary()
{
    return std::make_unique<MissingCustomDictionary>();
}

} // namespace tavrin
