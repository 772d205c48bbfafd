#include "base/search/ByteFinder.h"

#include <algorithm>
#include <bit>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace tavrin {

ByteFinder::ByteFinder(std::string_view word, const ByteCounts& counts)
    : m_word(word)
{
    const auto countAt = [&](std::size_t place) { return counts[static_cast<unsigned char>(word[place])]; };
    for (std::size_t place = 0; place < word.size(); ++place) {
        m_occurs = m_occurs && countAt(place) != 0;
        if (countAt(place) < countAt(m_rarest))
            m_rarest = place;
    }
    std::memcpy(m_head.data(), word.data(), std::min(word.size(), m_head.size()));
    m_second = m_rarest == 0 ? word.size() - 1 : 0;
    for (std::size_t place = 0; place < word.size(); ++place) {
        if (place != m_rarest && countAt(place) < countAt(m_second))
            m_second = place;
    }
}

#if defined(__SSE2__)

namespace {

constexpr std::size_t Step = 16;
constexpr std::size_t Stride = 4 * Step;

__m128i load(const char* place)
{
    __m128i bytes;
    std::memcpy(&bytes, place, sizeof(bytes));
    return bytes;
}

/// Tells at which of the 16 places from one on both bytes stand.
struct BothBytes
{
    __m128i operator()(const char* place) const
    {
        return _mm_and_si128(_mm_cmpeq_epi8(load(place + rarest), rarestByte),
                             _mm_cmpeq_epi8(load(place + second), secondByte));
    }
    std::size_t rarest;
    std::size_t second;
    __m128i rarestByte;
    __m128i secondByte;
};

/// Compares the first 16 bytes at one go; a call of `memcmp` takes longer than all the rest.
struct WholeWord
{
    explicit WholeWord(std::string_view whole, const char* head)
        : word(whole)
        , first(load(head))
        , counted(whole.size() >= Step ? 0xFFFFU : (1U << whole.size()) - 1)
    {
    }
    bool operator()(const char* place) const
    {
        const auto equal = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(load(place), first)));
        return (equal & counted) == counted &&
               (word.size() <= Step || std::memcmp(place, word.data(), word.size()) == 0);
    }
    std::string_view word;
    __m128i first;
    unsigned counted;
};

} // namespace

const char* ByteFinder::next(const char* from, const char* end) const
{
    if (!m_occurs || end - from < static_cast<std::ptrdiff_t>(m_word.size()))
        return end;
    const BothBytes both{m_rarest, m_second, _mm_set1_epi8(m_word[m_rarest]),
                         _mm_set1_epi8(m_word[m_second])};
    const WholeWord isWord(m_word, m_head.data());
    const char* const last = end - m_word.size();
    for (const char* place = from; place <= last; place += Step) {
        for (auto found = static_cast<unsigned>(_mm_movemask_epi8(both(place))); found != 0;
             found &= found - 1) {
            const char* const candidate = place + std::countr_zero(found);
            if (candidate > last)
                return end;
            if (isWord(candidate))
                return candidate;
        }
        for (; static_cast<std::size_t>(last - place) >= Step + Stride;
             place += Stride) { // mostly nothing is there
            const char* const ahead = place + Step;
            const __m128i any = _mm_or_si128(_mm_or_si128(both(ahead), both(ahead + Step)),
                                             _mm_or_si128(both(ahead + 2 * Step), both(ahead + 3 * Step)));
            if (_mm_movemask_epi8(any) != 0)
                break;
        }
    }
    return end;
}

#else

const char* ByteFinder::next(const char* from, const char* end) const
{
    if (!m_occurs)
        return end;
    const auto length = static_cast<std::size_t>(end - from);
    const std::size_t place = std::string_view(from, length).find(m_word);
    return place == std::string_view::npos ? end : from + place;
}

#endif

} // namespace tavrin
