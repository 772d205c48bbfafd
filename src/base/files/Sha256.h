#pragma once

#include <QByteArray>

#include <memory>

namespace tavrin {

/// The SHA-256 of data that comes in pieces. It uses the processor's own instructions for it where there are
/// any, which `QCryptographicHash` does not.
class Sha256
{
public:
    /// Raises an `Error` when the platform's library cannot do it.
    Sha256();
    ~Sha256();
    Sha256(const Sha256&) = delete;
    Sha256& operator=(const Sha256&) = delete;

    void add(const char* data, qint64 length);
    /// Of everything added. To be called once, last.
    QByteArray result();

private:
    struct Context;
    std::unique_ptr<Context> m_context;
};

} // namespace tavrin
