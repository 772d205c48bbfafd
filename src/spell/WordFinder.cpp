#include "spell/WordFinder.h"

#include "spell/Addresses.h"
#include "spell/WordCharacters.h"

#include <algorithm>
#include <iterator>

namespace tavrin {

using namespace WordCharacters;

namespace {

/// Whether letters behind the digits of a number are its unit, or an ending as in "1990s". Ordinals are words
/// that the dictionary knows.
bool isUnit(QStringView letters)
{
    static constexpr QStringView units[] = {
        u"s",    u"mm",  u"cm",   u"km", u"in",  u"ft",  u"yd",  u"yds", u"mi",  u"oz",  u"lb",  u"lbs",
        u"mg",   u"kg",  u"ml",   u"cc", u"mph", u"kph", u"mpg", u"am",  u"pm",  u"hr",  u"hrs", u"min",
        u"mins", u"sec", u"secs", u"ms", u"wk",  u"wks", u"mo",  u"mos", u"yr",  u"yrs", u"yo",  u"yoa",
        u"ga",   u"cal", u"gal",  u"kb", u"mb",  u"gb",  u"tb",  u"hz",  u"khz", u"mhz", u"ghz", u"wd",
        u"dr",   u"px",  u"ct",   u"pc", u"pk",  u"kw",  u"kv",  u"hp",  u"mw"};
    constexpr qsizetype longest = 4;
    return letters.size() == 1 ||
           (letters.size() <= longest &&
            std::any_of(std::begin(units), std::end(units), [letters](QStringView unit) {
                return letters.compare(unit, Qt::CaseInsensitive) == 0;
            }));
}

/// Digits with a unit or a single letter behind them, or with an x between them as in "4x4".
bool isMeasure(QStringView word)
{
    const auto isDigitHere = [](QChar c) { return isAsciiDigit(c.unicode()); };
    const auto isLetterHere = [](QChar c) { return isAsciiLetter(c.unicode()); };
    const auto letters = std::find_if_not(word.begin(), word.end(), isDigitHere);
    const auto behind = std::find_if_not(letters, word.end(), isLetterHere);
    if (letters == word.begin() || letters == behind)
        return false;
    const QStringView unit(letters, behind);
    if (behind == word.end())
        return isUnit(unit);
    return unit.compare(u"x", Qt::CaseInsensitive) == 0 && std::all_of(behind, word.end(), isDigitHere);
}

/// A Roman number in capitals with the ending of an ordinal, as in "XVIIth".
bool isRomanOrdinal(QStringView word)
{
    constexpr qsizetype ending = 2;
    if (word.size() <= ending)
        return false;
    const QStringView digits = word.chopped(ending);
    const QStringView last = word.last(ending);
    return (last == u"st" || last == u"nd" || last == u"rd" || last == u"th") &&
           std::all_of(digits.begin(), digits.end(),
                       [](QChar c) { return QStringView(u"IVXLCDM").contains(c); });
}

} // namespace

WordFinder::WordFinder(QStringView text, qsizetype from)
    : m_text(text)
    , m_from(from)
    , m_position(std::clamp<qsizetype>(from, 0, text.size()))
{
    // What the first word is shows only from the blank before it.
    while (m_position > 0 && !m_text.at(m_position - 1).isSpace())
        --m_position;
    m_chunkEnd = m_position;
    m_address = {m_position, 0};
}

std::optional<FoundWord> WordFinder::next()
{
    FoundWord word = nextRun();
    while (word.Length > 0 && word.Offset < m_from)
        word = nextRun();
    return word.Length > 0 ? std::optional(word) : std::nullopt;
}

/// The next word with all that hyphens join to it, of length 0 at the end of the text.
FoundWord WordFinder::nextRun()
{
    while (m_position < m_text.size()) {
        if (m_position >= m_chunkEnd) {
            enterChunk();
            continue;
        }
        if (m_position >= m_address.Offset && m_address.Length > 0) {
            m_position = m_address.end();
            m_address = findAddress(m_text, m_position, m_chunkEnd);
            continue;
        }
        const Character character = at(m_text, m_position);
        if (!isLetterOrDigit(character.Code)) {
            m_position += character.Units;
            continue;
        }
        FoundWord run = atomAt(m_position);
        m_position = run.end();
        if (isPassedOver(run))
            continue;
        while (isHyphenated(run.end())) {
            const FoundWord atom = atomAt(run.end() + 1);
            if (isPassedOver(atom))
                break;
            run.Length = atom.end() - run.Offset;
        }
        m_position = run.end();
        return run;
    }
    return {m_text.size(), 0};
}

/// Only from blank to blank can an address reach.
void WordFinder::enterChunk()
{
    while (m_position < m_text.size() && m_text.at(m_position).isSpace())
        ++m_position;
    m_chunkEnd = m_position;
    while (m_chunkEnd < m_text.size() && !m_text.at(m_chunkEnd).isSpace())
        ++m_chunkEnd;
    m_address = findAddress(m_text, m_position, m_chunkEnd);
}

/// Letters, digits and marks with the apostrophes between them; begins with a letter or a digit.
FoundWord WordFinder::atomAt(qsizetype start)
{
    if (start >= m_segmented.Offset && start < m_segmented.end())
        return segmentOf({start, m_segmented.end() - start});
    const qsizetype limit = m_address.Offset;
    bool isUnspaced = false;
    qsizetype end = start;
    qsizetype position = start;
    while (position < limit) {
        const Character character = at(m_text, position);
        position += character.Units;
        if (isLetterOrDigit(character.Code) || isMark(character.Code)) {
            isUnspaced = isUnspaced || isOfUnspacedScript(character.Code);
            end = position;
            continue;
        }
        // What joins must have something to join.
        const bool isJoint = isInvisible(character.Code) ||
                             (isApostrophe(character.Code) && end == position - character.Units);
        if (!isJoint)
            break;
    }
    const FoundWord atom{start, end - start};
    if (!isUnspaced)
        return atom;
    m_segmented = atom;
    m_segments.emplace(QTextBoundaryFinder::Word, m_text.sliced(atom.Offset, atom.Length));
    return segmentOf(atom);
}

FoundWord WordFinder::segmentOf(const FoundWord& atom)
{
    m_segments->setPosition(atom.Offset - m_segmented.Offset);
    const qsizetype cut = m_segments->toNextBoundary();
    return {atom.Offset, cut > 0 ? m_segmented.Offset + cut - atom.Offset : atom.Length};
}

/// Numbers, also with a unit, and words wholly in capitals with a digit; the "'s" behind them does not count.
bool WordFinder::isPassedOver(const FoundWord& atom) const
{
    QStringView word = m_text.sliced(atom.Offset, atom.Length);
    if (word.size() > 2 && (word.last(1) == u"s" || word.last(1) == u"S") &&
        isApostrophe(word.at(word.size() - 2).unicode()))
        word.chop(2);
    if (isMeasure(word) || isRomanOrdinal(word))
        return true;
    bool hasDigit = false;
    for (qsizetype i = 0; i < word.size();) {
        const Character character = at(word, i);
        i += character.Units;
        if (QChar::isLower(character.Code))
            return false;
        hasDigit = hasDigit || isDigit(character.Code);
    }
    return hasDigit;
}

/// Whether one hyphen stands here, with a letter or a digit right behind it.
bool WordFinder::isHyphenated(qsizetype position) const
{
    return position + 1 < m_address.Offset && isHyphen(m_text.at(position).unicode()) &&
           isLetterOrDigit(at(m_text, position + 1).Code);
}

} // namespace tavrin
