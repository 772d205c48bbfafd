#include "base/failure/ByName.h"

namespace tavrin {

namespace {
thread_local bool mayRaise = false;
}

RaiseByName::RaiseByName()
{
    mayRaise = true;
}

RaiseByName::~RaiseByName()
{
    mayRaise = false;
}

bool RaiseByName::take()
{
    return std::exchange(mayRaise, false);
}

} // namespace tavrin
