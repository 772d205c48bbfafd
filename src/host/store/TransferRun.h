#pragma once

#include "host/store/AttachmentStore.h"

#include <memory>

namespace tavrin {

/// One transfer that is under way, and what the handlers of its events have done to it meanwhile.
struct TransferRun
{
    bool IsCancelled = false;
    /// A handler has destroyed the object whose events these are.
    bool IsOrphaned = false;

    /// To be called behind each event before the object is touched.
    void checkOwner() const
    {
        if (IsOrphaned)
            throw Error(QStringLiteral("The transfer was given up."));
    }
};

/// Runs a part of a transfer. What the store or the system raises comes out as an `Error` that names the file
/// and says why: "The file '<path>' could not be copied <to or from> the attachments folder: <reason>."; what
/// a handler raises stays as it is.
template <typename Part>
void naming(const QString& path, const QString& toOrFrom, Part part)
{
    const auto fail = [&](const Error& error) {
        throw Error(QStringLiteral("The file '%1' could not be copied %2 the attachments folder: %3.")
                        .arg(path, toOrFrom, error.Description));
    };
    try {
        part();
    } catch (const SystemError& error) {
        fail(error);
    } catch (const StoreProblem& problem) {
        fail(problem);
    }
}

/// The run of an uploader or downloader, of which there is one at a time.
class TransferRuns
{
public:
    TransferRuns() = default;
    TransferRuns(const TransferRuns&) = delete;
    TransferRuns& operator=(const TransferRuns&) = delete;
    ~TransferRuns()
    {
        if (const auto run = m_run.lock())
            run->IsOrphaned = true;
    }

    /// The run lasts for as long as the caller keeps it. Raises an `Error` while another lasts.
    std::shared_ptr<TransferRun> begin()
    {
        if (!m_run.expired())
            throw Error(QStringLiteral("A transfer is under way already."));
        auto run = std::make_shared<TransferRun>();
        m_run = run;
        return run;
    }
    /// Nothing when none is under way.
    void cancel()
    {
        if (const auto run = m_run.lock())
            run->IsCancelled = true;
    }

private:
    std::weak_ptr<TransferRun> m_run;
};

} // namespace tavrin
