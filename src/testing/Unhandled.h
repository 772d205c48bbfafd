#pragma once

#include "base/export/Export.h"
#include "base/failure/Guard.h"

#include <QStringList>

namespace tavrin::testing {

/// Notes the failures that nobody caught, in the place of the application's handler of unhandled errors.
class TAVRIN_EXPORT Unhandled
{
public:
    Unhandled();
    Unhandled(const Unhandled&) = delete;
    Unhandled& operator=(const Unhandled&) = delete;
    ~Unhandled();

    /// "place: description" of each.
    QStringList texts;

private:
    UnhandledErrorHandler m_before;
};

} // namespace tavrin::testing
