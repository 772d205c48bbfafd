#include "base/search/TextFold.h"

#include <algorithm>
#include <numeric>

namespace tavrin {

namespace {

bool isAscii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(),
                       [](char byte) { return static_cast<unsigned char>(byte) < 128; });
}

constexpr std::array<unsigned char, 256> EveryByte = [] {
    std::array<unsigned char, 256> bytes{};
    std::iota(bytes.begin(), bytes.end(), static_cast<unsigned char>(0));
    return bytes;
}();

unsigned char byteOf(char character)
{
    return static_cast<unsigned char>(character);
}

} // namespace

TextFold::TextFold()
    : m_byte(EveryByte)
{
}

std::optional<TextFold> TextFold::translating(std::string_view from, std::string_view to)
{
    if (!isAscii(from) || !isAscii(to))
        return std::nullopt;
    TextFold fold;
    for (std::size_t i = from.size(); i-- > 0;) // backwards, so that the first place is the last one put
        fold.m_byte[byteOf(from[i])] = i < to.size() ? byteOf(to[i]) : 0;
    return fold;
}

TextFold TextFold::then(const TextFold& next) const
{
    TextFold both = *this;
    for (unsigned char& byte : both.m_byte)
        byte = next.m_byte[byte]; // of nothing comes nothing
    return both;
}

bool TextFold::leavesAll() const
{
    return m_byte == EveryByte;
}

void TextFold::append(std::string_view text, std::string& to) const
{
    std::size_t end = to.size();
    to.resize(end + text.size());
    for (const char character : text) {
        const unsigned char byte = m_byte[byteOf(character)];
        to[end] = static_cast<char>(byte);
        end += byte != 0 ? 1 : 0;
    }
    to.resize(end);
}

std::string TextFold::of(std::string_view text) const
{
    std::string folded;
    append(text, folded);
    return folded;
}

} // namespace tavrin
