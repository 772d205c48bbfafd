#pragma once

#include <QString>

namespace tavrin {

/// A file that has reached the store.
struct UploadedFile
{
    /// The stored name, below the base folder, the folder of its date included.
    QString Filename;
    /// The name on the person's disk, without folder.
    QString OriginalFilename;
};

} // namespace tavrin
