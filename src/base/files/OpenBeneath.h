#pragma once

#include "base/export/Export.h"
#include "base/files/Descriptor.h"

#include <QList>

namespace tavrin {

/// How a path is followed. Both ways give the same.
enum class Walk
{
    Kernel,     ///< in one call, where the kernel has it, else step by step
    StepByStep, ///< folder by folder
};

/// Opens what the names lead to below the folder, and never anything else: no name may be "", "." or ".." or
/// hold a slash (EINVAL), and none may be a symbolic link (ELOOP), wherever that points. Raises a
/// `SystemError`.
TAVRIN_COMPANION_EXPORT Descriptor openBeneath(const Descriptor& folder, const QList<QByteArray>& names,
                                               int flags, Walk walk = Walk::Kernel);

/// Opens the folder that the names lead to under the same rules. Folders that are missing are made and
/// flushed into the ones above them. They get the mode of `folder` whatever the process's mask says, so that
/// whoever may write to it may write to them.
TAVRIN_COMPANION_EXPORT Descriptor makeFoldersBeneath(const Descriptor& folder,
                                                      const QList<QByteArray>& names);

} // namespace tavrin
