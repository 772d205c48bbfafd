#include "base/files/Sha256.h"

#include "base/failure/Error.h"

#include <openssl/evp.h>

namespace tavrin {

struct Sha256::Context
{
    EVP_MD_CTX* Digest = EVP_MD_CTX_new();
    Context() = default;
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;
    ~Context() { EVP_MD_CTX_free(Digest); }
};

namespace {

void check(bool done)
{
    if (!done)
        throw Error(QStringLiteral("No SHA-256 can be computed on this machine"));
}

} // namespace

Sha256::Sha256()
    : m_context(std::make_unique<Context>())
{
    check(m_context->Digest && EVP_DigestInit_ex(m_context->Digest, EVP_sha256(), nullptr) == 1);
}

Sha256::~Sha256() = default;

void Sha256::add(const char* data, qint64 length)
{
    check(EVP_DigestUpdate(m_context->Digest, data, static_cast<size_t>(length)) == 1);
}

QByteArray Sha256::result()
{
    QByteArray hash(EVP_MAX_MD_SIZE, Qt::Uninitialized);
    unsigned int length = 0;
    check(EVP_DigestFinal_ex(m_context->Digest, reinterpret_cast<unsigned char*>(hash.data()), &length) == 1);
    hash.truncate(static_cast<qsizetype>(length));
    return hash;
}

} // namespace tavrin
