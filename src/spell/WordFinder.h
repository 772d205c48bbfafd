#pragma once

#include <QString>
#include <QStringView>
#include <QTextBoundaryFinder>

#include <optional>

namespace tavrin {

/// A word of a text: the offset from 0 and the length, both in UTF-16 code units.
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
/// word; accents and combining marks do too. A dot, a slash and an underscore part words. Passed over are
/// numbers, also with a unit or an ending as in "9mm" and "1990s", web and mail addresses, and words wholly
/// in capitals that hold a digit, as those on plates and case numbers; what a hyphen joins to such a word is
/// a word by itself. A word of any length is found: how long a word the dictionaries look at is theirs to
/// say.
///
///     WordFinder words(text);
///     while (const auto word = words.next())
///         check(text.sliced(word->Offset, word->Length));
class WordFinder
{
public:
    /// From the first word that begins at `from` or behind it. The text must outlive the finder, unchanged.
    explicit WordFinder(QStringView text, qsizetype from = 0);

    /// None at the end of the text.
    std::optional<FoundWord> next();

private:
    FoundWord nextRun();
    FoundWord atomAt(qsizetype start);
    FoundWord segmentOf(const FoundWord& atom);
    void enterChunk();
    bool isPassedOver(const FoundWord& atom) const;
    bool isHyphenated(qsizetype at) const;

    QStringView m_text;
    qsizetype m_from;
    qsizetype m_position;
    qsizetype m_chunkEnd; // of the stretch without blanks that the position is in
    FoundWord m_address;  // the next one of that stretch; at its end when there is none
    // Of the last stretch of letters that was long enough to need it: the offset in the text, and its cuts.
    FoundWord m_segmented;
    std::optional<QTextBoundaryFinder> m_segments;
};

} // namespace tavrin
