#include "ByteFinder.h"

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
    m_second = m_rarest == 0 ? word.size() - 1 : 0;
    for (std::size_t place = 0; place < word.size(); ++place) {
        if (place != m_rarest && countAt(place) < countAt(m_second))
            m_second = place;
    }
}

bool ByteFinder::isAt(const char* place) const
{
    return std::memcmp(place, m_word.data(), m_word.size()) == 0;
}

#if defined(__SSE2__)

namespace {

constexpr std::ptrdiff_t Step = 16;
constexpr std::ptrdiff_t Stride = 4 * Step;

/// A bit for each of the 16 places from `place` on at whose offsets both bytes stand.
struct BothBytes
{
    __m128i operator()(const char* place) const
    {
        const auto load = [](const char* at) {
            __m128i bytes;
            std::memcpy(&bytes, at, sizeof(bytes));
            return bytes;
        };
        return _mm_and_si128(_mm_cmpeq_epi8(load(place + rarest), rarestByte),
                             _mm_cmpeq_epi8(load(place + second), secondByte));
    }
    std::size_t rarest;
    std::size_t second;
    __m128i rarestByte;
    __m128i secondByte;
};

} // namespace

const char* ByteFinder::next(const char* from, const char* end) const
{
    if (!m_occurs || end - from < static_cast<std::ptrdiff_t>(m_word.size()))
        return end;
    const BothBytes both{m_rarest, m_second, _mm_set1_epi8(m_word[m_rarest]),
                         _mm_set1_epi8(m_word[m_second])};
    const char* const last = end - m_word.size();
    const char* place = from;
    while (place <= last) {
        if (last - place >= Stride) { // mostly nothing is there
            const __m128i any = _mm_or_si128(_mm_or_si128(both(place), both(place + Step)),
                                             _mm_or_si128(both(place + 2 * Step), both(place + 3 * Step)));
            if (_mm_movemask_epi8(any) == 0) {
                place += Stride;
                continue;
            }
        }
        for (auto found = static_cast<unsigned>(_mm_movemask_epi8(both(place))); found != 0;
             found &= found - 1) {
            const char* const candidate = place + std::countr_zero(found);
            if (candidate > last)
                return end;
            if (isAt(candidate))
                return candidate;
        }
        place += Step;
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
