#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tavrin {

/// How often each byte stands in a text.
using ByteCounts = std::array<std::size_t, 256>;

/// Finds a word in one long text, as fast as memory is read: it looks for the two bytes of the word that are
/// the rarest in the text, many places at once, and compares the rest only where both stand.
class ByteFinder
{
public:
    /// Bytes that must be readable behind the end of every text.
    static constexpr std::size_t Slack = 16;

    /// `word` is not empty and outlives the finder.
    ByteFinder(std::string_view word, const ByteCounts& counts);

    /// The first place from `from` on where the word stands whole before `end`; `end` for none.
    const char* next(const char* from, const char* end) const;

private:
    std::string_view m_word;
    std::array<char, Slack> m_head{}; // the first bytes of the word
    std::size_t m_rarest = 0;         // places in the word
    std::size_t m_second = 0;
    bool m_occurs = true;
};

} // namespace tavrin
