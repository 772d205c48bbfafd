// Expressions over documents, both made out of the bytes that the fuzzer gives: the answer must be the
// engine's.

#include "base/xml/SearchCases.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

using namespace tavrin;
using namespace tavrin::test;

namespace {

class Bytes
{
public:
    Bytes(const std::uint8_t* data, std::size_t size)
        : m_data(reinterpret_cast<const char*>(data))
        , m_left(size)
    {
    }
    /// A number below `count`; 0 behind the end.
    unsigned below(unsigned count)
    {
        unsigned value = 0;
        for (unsigned most = count; most > 0 && m_left > 0; most >>= 8, ++m_data, --m_left)
            value = value << 8 | static_cast<unsigned char>(*m_data);
        return count == 0 ? 0 : value % count;
    }
    /// A text of up to `most` bytes.
    QString text(std::size_t most)
    {
        const std::size_t length = std::min(most, m_left);
        const QString taken = QString::fromUtf8(m_data, static_cast<qsizetype>(length));
        m_data += length;
        m_left -= length;
        return taken;
    }
    bool isEmpty() const { return m_left == 0; }

private:
    const char* m_data;
    std::size_t m_left;
};

void check(const XmlNode& context, const QString& expression)
{
    const QString wrong = difference(context, expression);
    if (wrong.isEmpty())
        return;
    std::fprintf(stderr, "%s\n", qPrintable(wrong));
    std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr std::size_t MostOfExpression = 400;
    Bytes bytes(data, size);
    SearchCases cases([&bytes](unsigned count) { return bytes.below(count); });
    XmlDocument document;
    document.loadXML(cases.document());
    const XmlNode root = document.documentElement();
    const XmlNode top = document.selectSingleNode(QStringLiteral("/"));
    while (!bytes.isEmpty()) {
        switch (bytes.below(6)) {
        case 0:
            cases.change(root);
            break;
        case 1:
            check(root, QStringLiteral("R[") + bytes.text(MostOfExpression) + QLatin1Char(']'));
            break;
        case 2:
            check(top, bytes.text(MostOfExpression));
            break;
        case 3:
            check(root, cases.damaged(cases.expression(true)));
            break;
        case 4:
            check(top, cases.expression(false));
            break;
        default:
            check(root, cases.expression(true));
        }
    }
    return 0;
}
