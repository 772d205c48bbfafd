#include "host/StoreFile.h"

#include "host/AttachmentStore.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tavrin {

namespace {

QString withSlashes(QString path)
{
    return path.replace(u'\\', u'/');
}

/// The part of the path below the folder; "" when it is not below it.
QString nameBelow(const QString& folder, const QString& path)
{
    QString head = withSlashes(folder);
    while (head.endsWith(u'/'))
        head.chop(1);
    head += u'/';
    const QString whole = withSlashes(path);
    return whole.startsWith(head) ? whole.mid(head.size()) : QString();
}

bool isName(const QString& component)
{
    return component != QLatin1String(".") && component != QLatin1String("..") &&
           !component.contains(QChar::Null);
}

/// Component by component from the folder on, so that no link that is put there meanwhile is followed.
int openBelow(const QString& folder, const QStringList& components)
{
    int at = ::open(QFile::encodeName(folder).constData(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    for (qsizetype i = 0; i < components.size() && at >= 0; ++i) {
        const int kind = i + 1 < components.size() ? O_PATH | O_DIRECTORY : O_RDONLY | O_NONBLOCK | O_NOCTTY;
        const int next =
            ::openat(at, QFile::encodeName(components.at(i)).constData(), kind | O_NOFOLLOW | O_CLOEXEC);
        ::close(at);
        at = next;
    }
    return at;
}

std::unique_ptr<QFile> regularFile(int descriptor)
{
    auto file = std::make_unique<QFile>();
    struct stat status = {};
    if (descriptor >= 0 && ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) &&
        file->open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        return file;
    if (descriptor >= 0)
        ::close(descriptor);
    return nullptr;
}

} // namespace

std::optional<StoreFile> openStoreFile(const QList<StoreBase>& bases, const QString& path)
{
    for (const StoreBase& base : bases) {
        const QStringList components = nameBelow(base.Given, path).split(u'/', Qt::SkipEmptyParts);
        if (components.isEmpty() || !std::all_of(components.begin(), components.end(), isName))
            continue;
        if (auto file = regularFile(openBelow(base.Folder, components)))
            return StoreFile{std::move(file), base, components.join(u'/')};
    }
    return {};
}

StoreFile openStoreFile(const AttachmentStore& store, const QString& path)
{
    const AttachmentStore::Place place = store.placeOf(path);
    const Descriptor file = store.openFile(path);
    auto opened = regularFile(::fcntl(file.number(), F_DUPFD_CLOEXEC, 0));
    if (!opened)
        throw SystemError::last();
    return {std::move(opened), {place.Spelling, place.Folder}, QFile::decodeName(place.Names.join('/'))};
}

} // namespace tavrin
