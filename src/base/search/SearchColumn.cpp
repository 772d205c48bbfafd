#include "base/search/SearchColumn.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <unordered_map>

namespace tavrin {

namespace {

/// Where fewer rows than this share are left, they are searched one by one.
constexpr std::size_t FewRows = 8;
/// A column of more different texts has no codes.
constexpr std::size_t MostCodes = 256;

/// The first row whose end lies behind `place`; it is `from` or follows it. Steps that double find it soon
/// where it is near.
std::size_t rowAt(const std::vector<std::size_t>& ends, std::size_t place, std::size_t from)
{
    if (place < ends[from])
        return from;
    if (from + 1 < ends.size() && place < ends[from + 1])
        return from + 1;
    std::size_t step = 1;
    std::size_t below = from;
    while (below + step < ends.size() && ends[below + step] <= place) {
        below += step;
        step *= 2;
    }
    const auto first = ends.begin() + static_cast<std::ptrdiff_t>(below);
    const auto last = ends.begin() + static_cast<std::ptrdiff_t>(std::min(below + step + 1, ends.size()));
    return static_cast<std::size_t>(std::upper_bound(first, last, place) - ends.begin());
}

} // namespace

// Filling

void SearchColumn::append(std::string_view piece, const TextFold& fold)
{
    fold.append(piece, m_texts);
}

void SearchColumn::endRow(bool hasText)
{
    m_ends.push_back(m_texts.size());
    m_texts.push_back('\0');
    m_filledRows.push_back(hasText);
}

void SearchColumn::addFurther(std::string_view text)
{
    m_further.push_back({m_ends.size(), std::string(text)});
}

void SearchColumn::finish()
{
    m_hasText = RowSet(rows());
    for (std::size_t row = 0; row < rows(); ++row) {
        if (m_filledRows[row])
            m_hasText.add(row);
    }
    m_filledRows = {};
    for (const char byte : m_texts)
        ++m_counts[static_cast<unsigned char>(byte)];
    m_texts.append(ByteFinder::Slack, '\0');
    m_texts.shrink_to_fit();
    m_ends.shrink_to_fit();
    m_further.shrink_to_fit();
}

std::string_view SearchColumn::text(std::size_t row) const
{
    return std::string_view(m_texts).substr(start(row), m_ends[row] - start(row));
}

std::size_t SearchColumn::memory() const
{
    std::size_t bytes = sizeof(*this) + m_texts.capacity() + m_ends.capacity() * sizeof(std::size_t) +
                        rows() / 8 + m_numbers.capacity() * sizeof(double) + m_codes.capacity();
    for (const FurtherText& further : m_further)
        bytes += sizeof(further) + further.text.capacity();
    return bytes;
}

const std::vector<double>& SearchColumn::numbers(ToNumber toNumber) const
{
    if (m_numbers.size() < rows()) {
        std::vector<double> numbers;
        numbers.reserve(rows());
        std::string one;
        for (std::size_t row = 0; row < rows(); ++row) {
            one = text(row);
            numbers.push_back(toNumber(one));
        }
        m_numbers = std::move(numbers);
    }
    return m_numbers;
}

// Testing

template <typename Test>
void SearchColumn::testFurther(RowSet& found, const RowSet& among, Test&& test) const
{
    for (const FurtherText& further : m_further) {
        if (among.has(further.row) && test(further.text))
            found.add(further.row);
    }
}

RowSet SearchColumn::scan(std::string_view word, const RowSet& among) const
{
    RowSet found(rows());
    const ByteFinder finder(word, m_counts);
    const std::size_t textBegins = word.front() == '\0' ? 1 : 0; // behind the NUL that stands before it
    const char* const texts = m_texts.data();
    const char* const end = texts + m_ends.back() + 1;
    std::size_t row = 0;
    for (const char* place = finder.next(texts, end); place != end; place = finder.next(place, end)) {
        row = rowAt(m_ends, static_cast<std::size_t>(place - texts) + textBegins, row);
        found.add(row);
        place = texts + m_ends[row];
    }
    return found &= among;
}

RowSet SearchColumn::having(const RowSet& among) const
{
    RowSet found = among;
    return found &= m_hasText;
}

RowSet SearchColumn::containing(std::string_view word, const RowSet& among) const
{
    if (word.empty() || rows() == 0)
        return among;
    if (among.count() >= rows() / FewRows)
        return scan(word, among);
    return among.where([&](std::size_t row) { return text(row).find(word) != std::string_view::npos; });
}

RowSet SearchColumn::beginningWith(std::string_view word, const RowSet& among) const
{
    if (word.empty() || rows() == 0)
        return among;
    if (among.count() >= rows() / FewRows)
        return scan('\0' + std::string(word), among);
    return among.where([&](std::size_t row) { return text(row).starts_with(word); });
}

bool SearchColumn::hasCodes(const RowSet& among) const
{
    if (m_triedCodes || among.count() < rows() / FewRows)
        return !m_codes.empty();
    m_triedCodes = true;
    std::vector<std::uint8_t> codes;
    codes.reserve(rows());
    std::vector<std::size_t> rowOfCode;
    std::unordered_map<std::string_view, std::uint8_t> known;
    for (std::size_t row = 0; row < rows(); ++row) {
        const auto [place, isNew] = known.try_emplace(text(row), static_cast<std::uint8_t>(known.size()));
        if (isNew && known.size() > MostCodes)
            return false;
        if (isNew)
            rowOfCode.push_back(row);
        codes.push_back(place->second);
    }
    m_codes = std::move(codes);
    m_rowOfCode = std::move(rowOfCode);
    return !m_codes.empty();
}

template <typename Test>
RowSet SearchColumn::whereCode(const RowSet& among, Test&& test) const
{
    std::array<bool, MostCodes> holds{};
    for (std::size_t code = 0; code < m_rowOfCode.size(); ++code)
        holds[code] = test(m_rowOfCode[code]);
    return among.where([&](std::size_t row) { return holds[m_codes[row]]; });
}

RowSet SearchColumn::equal(std::string_view wantedText, bool wanted, const RowSet& among) const
{
    if (hasCodes(among))
        return whereCode(among, [&](std::size_t row) { return (text(row) == wantedText) == wanted; });
    std::uint64_t word = 0;
    if (wantedText.size() >= sizeof(word))
        return among.where([&](std::size_t row) { return (text(row) == wantedText) == wanted; });
    // A short text, such as a flag, is compared at one go with the NUL behind it.
    std::memcpy(&word, wantedText.data(), wantedText.size());
    std::uint64_t counted = 0;
    std::memset(&counted, 0xFF, wantedText.size() + 1);
    return among.where([&](std::size_t row) {
        std::uint64_t found = 0;
        std::memcpy(&found, m_texts.data() + start(row), sizeof(found));
        return ((found & counted) == word) == wanted;
    });
}

RowSet SearchColumn::equal(double number, bool wanted, const RowSet& among, ToNumber toNumber) const
{
    if (hasCodes(among))
        return whereCode(
            among, [&](std::size_t row) { return (toNumber(std::string(text(row))) == number) == wanted; });
    const std::vector<double>& all = numbers(toNumber);
    return among.where([&](std::size_t row) { return (all[row] == number) == wanted; });
}

RowSet SearchColumn::anyEqual(std::string_view wantedText, bool wanted, const RowSet& among) const
{
    RowSet found = equal(wantedText, wanted, having(among));
    testFurther(found, among, [&](const std::string& further) { return (further == wantedText) == wanted; });
    return found;
}

RowSet SearchColumn::anyEqual(double number, bool wanted, const RowSet& among, ToNumber toNumber) const
{
    RowSet found = equal(number, wanted, having(among), toNumber);
    testFurther(found, among,
                [&](const std::string& further) { return (toNumber(further) == number) == wanted; });
    return found;
}

} // namespace tavrin
