#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace tavrin {

/// Some of the rows of a list, which are counted from 0.
class RowSet
{
public:
    explicit RowSet(std::size_t rows = 0, bool all = false)
        : m_rows(rows)
        , m_words((rows + BitsOfWord - 1) / BitsOfWord, all ? ~Word(0) : Word(0))
    {
        if (all && rows % BitsOfWord != 0)
            m_words.back() >>= BitsOfWord - rows % BitsOfWord;
    }

    /// The rows of the whole list.
    std::size_t rows() const { return m_rows; }
    std::size_t count() const
    {
        std::size_t count = 0;
        for (const Word word : m_words)
            count += static_cast<std::size_t>(std::popcount(word));
        return count;
    }
    bool has(std::size_t row) const { return (m_words[row / BitsOfWord] >> row % BitsOfWord & 1) != 0; }
    void add(std::size_t row) { m_words[row / BitsOfWord] |= Word(1) << row % BitsOfWord; }

    RowSet& operator&=(const RowSet& other)
    {
        return combine(other, [](Word a, Word b) { return a & b; });
    }
    RowSet& operator|=(const RowSet& other)
    {
        return combine(other, [](Word a, Word b) { return a | b; });
    }
    RowSet& operator-=(const RowSet& other)
    {
        return combine(other, [](Word a, Word b) { return a & ~b; });
    }

    /// Calls `use` for each row, from the first to the last.
    template <typename Use>
    void forEach(Use&& use) const
    {
        for (std::size_t i = 0; i < m_words.size(); ++i) {
            for (Word word = m_words[i]; word != 0; word &= word - 1)
                use(i * BitsOfWord + static_cast<std::size_t>(std::countr_zero(word)));
        }
    }

    /// Those rows of which `test` says so.
    template <typename Test>
    RowSet where(Test&& test) const
    {
        RowSet found(m_rows);
        for (std::size_t i = 0; i < m_words.size(); ++i) {
            Word word = 0;
            for (Word left = m_words[i]; left != 0; left &= left - 1) {
                const int bit = std::countr_zero(left);
                word |= Word(test(i * BitsOfWord + static_cast<std::size_t>(bit)) ? 1 : 0) << bit;
            }
            found.m_words[i] = word;
        }
        return found;
    }

    friend bool operator==(const RowSet&, const RowSet&) = default;

private:
    using Word = std::uint64_t;
    static constexpr std::size_t BitsOfWord = 64;

    template <typename Combine>
    RowSet& combine(const RowSet& other, Combine&& both)
    {
        for (std::size_t i = 0; i < m_words.size(); ++i)
            m_words[i] = both(m_words[i], other.m_words[i]);
        return *this;
    }

    std::size_t m_rows;
    std::vector<Word> m_words;
};

} // namespace tavrin
