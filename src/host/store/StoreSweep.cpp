#include "host/store/StoreSweep.h"

#include "base/files/FileWriter.h"
#include "host/store/LocalCopies.h"
#include "host/store/Thumbnails.h"

#include <QFile>
#include <QFileInfo>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <dirent.h>
#include <mutex>
#include <thread>
#include <unistd.h>

namespace tavrin {

namespace {

/// Uploads lie in folders of a year and a month, thumbnails below a folder of their own.
constexpr int DeepestFolder = 2;

struct CloseFolder
{
    void operator()(DIR* folder) const { ::closedir(folder); }
};

bool isSwept(const dirent& entry, int depth)
{
    const bool isHidden =
        entry.d_name[0] == '.' && !(depth == 0 && QByteArray(entry.d_name) == ThumbnailFolder);
    return depth < DeepestFolder && !isHidden && (entry.d_type == DT_DIR || entry.d_type == DT_UNKNOWN);
}

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
        } else if (isSwept(*entry, depth)) {
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

struct StoreSweep::State
{
    std::atomic<bool> IsStopped = false;
    std::mutex Mutex;
    std::condition_variable Ended;
    bool HasEnded = false;

    void end()
    {
        {
            const std::lock_guard guard(Mutex);
            HasEnded = true;
        }
        Ended.notify_all();
    }
};

StoreSweep::StoreSweep(QStringList folders, QString temporaryFolder)
    : m_state(std::make_shared<State>())
{
    const auto run = [state = m_state, all = std::move(folders), temporary = std::move(temporaryFolder)] {
        try {
            sweepLocalCopies(temporary);
            sweepAll(all, state->IsStopped);
        } catch (...) { // NOLINT(bugprone-empty-catch): whatever it is, it must not end the program
        }
        state->end();
    };
    try {
        std::thread(run).detach();
    } catch (const std::system_error&) {
        m_state->end(); // no thread is to be had
    }
}

StoreSweep::~StoreSweep()
{
    m_state->IsStopped = true;
    std::unique_lock guard(m_state->Mutex);
    m_state->Ended.wait_for(guard, std::chrono::milliseconds(PatienceMs),
                            [this] { return m_state->HasEnded; });
}

void StoreSweep::wait()
{
    std::unique_lock guard(m_state->Mutex);
    m_state->Ended.wait(guard, [this] { return m_state->HasEnded; });
}

} // namespace tavrin
