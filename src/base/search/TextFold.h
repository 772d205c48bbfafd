#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace tavrin {

/// What becomes of each byte of a text: itself, another byte, or nothing. Texts hold no NUL.
class TextFold
{
public:
    /// Leaves every text as it is.
    TextFold();

    /// Puts the byte of `to` at the same place for each byte of `from`, and nothing where `to` has ended; of
    /// a byte that `from` holds twice the first place counts. Nothing for alphabets that are not ASCII.
    static std::optional<TextFold> translating(std::string_view from, std::string_view to);

    /// This fold, and `next` on what comes of it.
    TextFold then(const TextFold& next) const;

    bool leavesAll() const;
    void append(std::string_view text, std::string& to) const;
    std::string of(std::string_view text) const;

    friend bool operator==(const TextFold&, const TextFold&) = default;

private:
    std::array<unsigned char, 256> m_byte; // 0 for nothing
};

} // namespace tavrin
