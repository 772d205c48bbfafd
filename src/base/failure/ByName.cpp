#include "base/failure/ByName.h"

namespace tavrin {

namespace {
/// The one that lives and began last.
thread_local RaiseByName* innermost = nullptr;
} // namespace

RaiseByName::RaiseByName(const QObject& object, const QByteArray& property)
    : m_object(&object)
    , m_ending('.' + property)
    , m_outer(std::exchange(innermost, this))
{
}

RaiseByName::~RaiseByName()
{
    innermost = m_outer;
}

bool RaiseByName::take(const QObject& object, const char* where)
{
    if (!innermost || innermost->m_object != &object || !QByteArrayView(where).endsWith(innermost->m_ending))
        return false;
    innermost->m_object = nullptr;
    return true;
}

} // namespace tavrin
