#include "host/store/StoreFile.h"

#include "host/store/AttachmentStore.h"

#include <fcntl.h>
#include <unistd.h>

namespace tavrin {

StoreFile openStoreFile(const AttachmentStore& store, const QString& path)
{
    const AttachmentStore::Place place = store.placeOf(path);
    const Descriptor opened = store.openFile(path);
    const int own = ::fcntl(opened.number(), F_DUPFD_CLOEXEC, 0); // closed by the QFile
    if (own < 0)
        throw SystemError::last();
    auto file = std::make_unique<QFile>();
    if (!file->open(own, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(own);
        throw StoreProblem(file->errorString());
    }
    return {std::move(file), {place.Spelling, place.Folder}, QFile::decodeName(place.Names.join('/'))};
}

} // namespace tavrin
