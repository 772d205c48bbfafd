#pragma once

#include "base/export/Export.h"

namespace tavrin {

/// Counts as living for as long as it exists. Whatever runs code of the library by itself, such as a control,
/// a dialog or a running timer, holds one, so that the library knows when nothing of it is left.
///
/// What is posted to such an object and its parts, a queued call or a single shot of a timer, ends with it
/// and needs no count of its own.
class TAVRIN_COMPANION_EXPORT LiveObject
{
public:
    LiveObject() noexcept;
    ~LiveObject();
    LiveObject(const LiveObject&) = delete;
    LiveObject& operator=(const LiveObject&) = delete;

    /// How many exist, on all threads.
    static int count() noexcept;
};

} // namespace tavrin
