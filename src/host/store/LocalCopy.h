#pragma once

#include "host/store/LocalCopies.h"

#include <memory>

namespace tavrin {

/// The copy of a stored file that a download writes, for the person alone. It goes again unless it is kept.
///
/// It bears another name until it is whole, by which `sweepLocalCopies` knows it from a copy that was handed
/// out.
class LocalCopy
{
public:
    /// Raises a `StoreProblem` or a `SystemError`.
    explicit LocalCopy(std::shared_ptr<LocalCopies> copies);
    ~LocalCopy();
    LocalCopy(const LocalCopy&) = delete;
    LocalCopy& operator=(const LocalCopy&) = delete;

    const Descriptor& file() const { return m_file; }
    /// Gives the copy its name. Raises a `StoreProblem` when it is of another length, or a `SystemError`.
    void finish(qint64 expectedLength);
    /// Gives the copy to the caller. Returns its path.
    QString keep();

private:
    std::shared_ptr<LocalCopies> m_copies;
    QByteArray m_name; // "" once it is not this object's any more
    Descriptor m_file;
};

} // namespace tavrin
