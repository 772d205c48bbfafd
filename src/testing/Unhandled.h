#pragma once

#include "base/failure/Guard.h"

#include <QStringList>

namespace tavrin::test {

/// Notes the failures that nobody caught.
class Unhandled
{
public:
    Unhandled()
        : m_before(setUnhandledErrorHandler([this](const Error& error, const QString& where) {
            texts << where + QStringLiteral(": ") + error.Description;
        }))
    {
    }
    Unhandled(const Unhandled&) = delete;
    Unhandled& operator=(const Unhandled&) = delete;
    ~Unhandled() { setUnhandledErrorHandler(m_before); }

    QStringList texts;

private:
    UnhandledErrorHandler m_before;
};

} // namespace tavrin::test
