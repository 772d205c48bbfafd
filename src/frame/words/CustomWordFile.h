#pragma once

#include "base/export/Export.h"
#include "base/files/Descriptor.h"

#include <QByteArray>
#include <QString>

#include <functional>

namespace tavrin {

/// The workstation's file of custom words, held under a lock by one of the programs that write it.
///
/// It is locked for as long as this object lives, so that no line of another program gets lost. A symbolic
/// link is followed, and stays. What fails raises an `Error` that names the file.
class TAVRIN_COMPANION_EXPORT CustomWordFile
{
public:
    /// Waits a moment for another program that has the lock. The file must be there and be open to writing.
    explicit CustomWordFile(const QString& path);

    /// Raises also when it is no text, see `CustomWords::requireText`.
    QByteArray content() const;
    /// Writes behind the content, to the disk. When that fails the file is as it was.
    void append(const QByteArray& lines);
    /// Whole or not at all.
    void replace(const QByteArray& content);

private:
    QString m_path;
    QString m_target;
    Descriptor m_file;
};

/// Writes the file of custom words anew, whole or not at all, with what `content` answers while the file is
/// locked. The file need not be there.
TAVRIN_COMPANION_EXPORT void rewriteCustomWordFile(const QString& path,
                                                   const std::function<QByteArray()>& content);

} // namespace tavrin
