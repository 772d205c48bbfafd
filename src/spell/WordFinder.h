#pragma once

#include <QString>
#include <QStringView>

#include <memory>
#include <optional>

namespace tavrin {

/// A word of a text; in UTF-16 code units, the offset from 0.
struct FoundWord
{
    qsizetype Offset = 0;
    qsizetype Length = 0;

    qsizetype end() const { return Offset + Length; }
    bool operator==(const FoundWord&) const = default;
};

/// Walks through the words of a text that spelling is a matter of, in time that grows with the text alone.
///
/// Words are those of Unicode. An apostrophe (' or U+2019) or a hyphen between two letters belongs to the
/// word, accents and combining marks do too. Passed over are numbers, web and mail addresses, and words
/// wholly in capitals that hold a digit, as those on plates and case numbers; what a hyphen joins to such a
/// word is a word by itself. A word of any length is found; how long a word the dictionaries look at is
/// theirs to say.
///
///     WordFinder words(text);
///     while (const auto word = words.next())
///         check(text.sliced(word->Offset, word->Length));
class WordFinder
{
public:
    /// From the first word that begins at `from` or behind it. The text must outlive the finder.
    explicit WordFinder(QStringView text, qsizetype from = 0);
    ~WordFinder();
    WordFinder(const WordFinder&) = delete;
    WordFinder& operator=(const WordFinder&) = delete;

    /// None at the end of the text.
    std::optional<FoundWord> next();

private:
    class Line;
    void takeLine();

    QStringView m_text;
    qsizetype m_from;
    qsizetype m_lineStart = 0;
    qsizetype m_lineEnd = 0;
    std::unique_ptr<Line> m_line;
};

} // namespace tavrin
