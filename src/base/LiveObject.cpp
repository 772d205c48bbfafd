#include "base/LiveObject.h"

#include <atomic>

namespace tavrin {

namespace {
std::atomic<int> living = 0;
}

LiveObject::LiveObject() noexcept
{
    ++living;
}

LiveObject::~LiveObject()
{
    --living;
}

int LiveObject::count() noexcept
{
    return living;
}

} // namespace tavrin
