#pragma once

#include <QString>
#include <QStringList>

#include <memory>

namespace tavrin {

/// Removes what killed programs have left: temporary files in the attachments folders, and copies of
/// downloads in the folder for temporary files.
///
/// It works beside the program, which a large store on a share would keep waiting, and goes no deeper than
/// uploads and thumbnails do. Files that a living program is writing stay; see `removeAbandoned` and
/// `sweepLocalCopies`. A failure ends it without a word, since the next start tries again.
class StoreSweep
{
public:
    /// Milliseconds that a sweep which is told to stop is waited for.
    static constexpr int PatienceMs = 2'000;

    /// Starts at once. A folder that is not there is left alone.
    StoreSweep(QStringList folders, QString temporaryFolder);
    /// Stops it if it is still at work. One that a hanging share holds up is left behind, and ends
    /// should the share ever answer.
    ~StoreSweep();
    StoreSweep(const StoreSweep&) = delete;
    StoreSweep& operator=(const StoreSweep&) = delete;

    /// Returns when all folders have been gone through.
    void wait();

private:
    struct State;
    std::shared_ptr<State> m_state; // shared with the thread, which may outlive this object
};

} // namespace tavrin
