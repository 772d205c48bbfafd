#include "host/StoreSweep.h"

#include "base/FileWriter.h"

#include <QFile>
#include <QFileInfo>

#include <dirent.h>
#include <memory>
#include <unistd.h>

namespace tavrin {

namespace {

/// Uploads lie in folders of a year and a month.
constexpr int DeepestFolder = 2;

struct CloseFolder
{
    void operator()(DIR* folder) const { ::closedir(folder); }
};

void sweep(const Descriptor& folder, int depth, const std::atomic<bool>& isStopped)
{
    const int copy = ::fcntl(folder.number(), F_DUPFD_CLOEXEC, 0); // closed with the listing
    const std::unique_ptr<DIR, CloseFolder> listing(::fdopendir(copy));
    if (!listing) {
        ::close(copy);
        return;
    }
    while (!isStopped) {
        const dirent* entry = ::readdir(listing.get());
        if (!entry)
            return;
        const QByteArray name(entry->d_name);
        if (name.startsWith(TemporaryPrefix)) {
            removeAbandoned(folder, name);
        } else if (depth < DeepestFolder && !name.startsWith('.') &&
                   (entry->d_type == DT_DIR || entry->d_type == DT_UNKNOWN)) {
            try {
                sweep(openAt(folder.number(), name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW), depth + 1,
                      isStopped);
            } catch (const SystemError&) {
                continue; // no folder, or not ours to read
            }
        }
    }
}

void sweepAll(const QStringList& folders, const std::atomic<bool>& isStopped)
{
    for (const QString& folder : folders) {
        try {
            sweep(openFolder(QFile::encodeName(folder)), 0, isStopped);
        } catch (const SystemError&) {
            continue; // a share that is not mounted is told at the first transfer
        }
    }
}

} // namespace

StoreSweep::StoreSweep(QStringList folders)
{
    m_thread = std::thread([this, all = std::move(folders)] { sweepAll(all, m_isStopped); });
}

StoreSweep::~StoreSweep()
{
    m_isStopped = true;
    wait();
}

void StoreSweep::wait()
{
    if (m_thread.joinable())
        m_thread.join();
}

} // namespace tavrin
