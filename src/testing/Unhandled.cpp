#include "testing/Unhandled.h"

namespace tavrin::testing {

Unhandled::Unhandled()
    : m_before(setUnhandledErrorHandler([this](const Error& error, const QString& where) {
        texts << where + QStringLiteral(": ") + error.Description;
    }))
{
}

Unhandled::~Unhandled()
{
    setUnhandledErrorHandler(m_before);
}

} // namespace tavrin::testing
