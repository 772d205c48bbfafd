#pragma once

#include <QStringList>

#include <atomic>
#include <thread>

namespace tavrin {

/// Removes the temporary files that killed programs have left in the attachments folders.
///
/// It works beside the program, which a large store on a share would keep waiting, and goes no deeper than
/// uploads do. Files that a living program is writing stay; see `removeAbandoned`.
class StoreSweep
{
public:
    /// Starts at once. A folder that is not there is left alone.
    explicit StoreSweep(QStringList folders);
    /// Stops it if it is still at work.
    ~StoreSweep();
    StoreSweep(const StoreSweep&) = delete;
    StoreSweep& operator=(const StoreSweep&) = delete;

    /// Returns when all folders have been gone through.
    void wait();

private:
    std::atomic<bool> m_isStopped = false;
    std::thread m_thread;
};

} // namespace tavrin
