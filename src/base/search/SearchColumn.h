#pragma once

#include "base/search/ByteFinder.h"
#include "base/search/RowSet.h"
#include "base/search/TextFold.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tavrin {

/// One text of each row of a list, folded once and laid end to end, so that a search runs over memory from
/// one end to the other.
///
/// A row may have no text, which reads as an empty one, and further texts, which count only where each text
/// of a row is compared by itself. The texts are UTF-8 without NUL.
class SearchColumn
{
public:
    /// Reads a number in a text, NaN for none.
    using ToNumber = double (*)(const std::string& text);

    /// Filling, row by row: pieces of the row's text, and then its end.
    void append(std::string_view piece, const TextFold& fold);
    void endRow(bool hasText);
    /// Another text of the row at work, before its end.
    void addFurther(std::string_view text);
    /// After the last row. Gives back the memory that filling needed.
    void finish();

    std::size_t rows() const { return m_ends.size(); }
    std::string_view text(std::size_t row) const;
    bool hasText(std::size_t row) const { return m_hasText.has(row); }
    /// In bytes.
    std::size_t memory() const;

    // Which of the rows `among` ...

    RowSet having(const RowSet& among) const;
    RowSet containing(std::string_view word, const RowSet& among) const;
    RowSet beginningWith(std::string_view word, const RowSet& among) const;
    /// ... have this text, or another one.
    RowSet equal(std::string_view text, bool wanted, const RowSet& among) const;
    RowSet equal(double number, bool wanted, const RowSet& among, ToNumber toNumber) const;
    /// ... have a text, be it a further one, that is this one, or that is not.
    RowSet anyEqual(std::string_view text, bool wanted, const RowSet& among) const;
    RowSet anyEqual(double number, bool wanted, const RowSet& among, ToNumber toNumber) const;

private:
    struct FurtherText
    {
        std::size_t row;
        std::string text;
    };

    std::size_t start(std::size_t row) const { return row == 0 ? 1 : m_ends[row - 1] + 1; }
    const std::vector<double>& numbers(ToNumber toNumber) const;
    bool hasCodes(const RowSet& among) const;
    template <typename Test>
    RowSet whereCode(const RowSet& among, Test&& test) const;
    RowSet scan(std::string_view word, const RowSet& among) const;
    template <typename Test>
    void testFurther(RowSet& found, const RowSet& among, Test&& test) const;

    std::string m_texts{'\0'};       // a NUL before each text, and one behind the last
    std::vector<std::size_t> m_ends; // of the rows' texts, where the NUL stands
    std::vector<bool> m_filledRows;
    RowSet m_hasText;
    std::vector<FurtherText> m_further; // by row
    ByteCounts m_counts{};
    mutable std::vector<double> m_numbers; // at the first comparison with one
    // Of a column of few different texts, such as flags, at the first comparison of many rows: which of them
    // each row has, and for each a row that has it.
    mutable std::vector<std::uint8_t> m_codes;
    mutable std::vector<std::size_t> m_rowOfCode;
    mutable bool m_triedCodes = false;
};

} // namespace tavrin
