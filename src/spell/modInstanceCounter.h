#pragma once

#include <QtGlobal>

/// How many spell-check controls of the thread have been used.
namespace tavrin::modInstanceCounter {

/// Goes up at the first check of each control, and never down. The first control to be used brings the custom
/// dictionary up to date for all.
inline thread_local qint32 InstanceCount = 0;

} // namespace tavrin::modInstanceCounter
