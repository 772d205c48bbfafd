#pragma once

#include "base/files/Descriptor.h"

#include <functional>
#include <sys/stat.h>

namespace tavrin {

/// Opens a regular file for reading: `open` opens it with the flags that it is given, and links are its
/// affair. A pipe does not keep it waiting; another program that holds a lease on the file does, until it
/// gives that up or the system takes it away. Raises a `StoreProblem` for what is no file, else what `open`
/// raises.
Descriptor openRegularFile(const std::function<Descriptor(int flags)>& open);

/// A regular file that is copied from its start to its end and must stay as it is meanwhile.
class SourceFile
{
public:
    /// Raises a `SystemError` when the system does not tell what the file is like.
    explicit SourceFile(Descriptor file);

    qint64 size() const { return m_before.st_size; }
    /// Gets one piece after another, and the bytes read so far; returns whether to go on.
    using Sink = std::function<bool(const char* data, qint64 length, qint64 done)>;
    /// Reads in pieces of `bufferSize` bytes; returns false when the sink has stopped it. Raises a
    /// `StoreProblem` when the file has grown, shrunk or been written to since it was opened.
    bool copyTo(qint64 bufferSize, const Sink& sink) const;

private:
    void checkUnchanged(qint64 done, bool atEnd) const;

    Descriptor m_file;
    struct stat m_before = {};
};

/// Raises a `StoreProblem` when the file system of the folder tells that it has less free space than this
/// many bytes.
void checkFreeSpace(const Descriptor& folder, qint64 needed);

} // namespace tavrin
