#pragma once

#include "frame/host_contracts/Services.h"
#include "pictures/PictureReading.h"

namespace tavrin {

/// Pictures from files that nobody vouches for.
class HostImages : public Images
{
public:
    /// Longest file that is read.
    static constexpr qint64 MaxFileLength = PictureReading::MaxFileLength;
    /// Most pixels that are decoded.
    static constexpr qint64 MaxPixels = PictureReading::MaxPixels;

    /// True for the endings png, jpg, jpeg, gif and bmp, in any case.
    bool IsImageFile(const QString& fileName) override;
    /// Raises an `Error` that names the file when it is missing, too long, of no known format by its content,
    /// too large in pixels, or damaged. All but the last is found before anything is decoded.
    QImage LoadPicture(const QString& path) override;
};

} // namespace tavrin
