#include "spell/Addresses.h"

#include "spell/WordCharacters.h"

#include <algorithm>
#include <iterator>

namespace tavrin {

namespace {

using namespace WordCharacters;

bool isAlphanumeric(QChar c)
{
    return isAsciiLetter(c.unicode()) || isAsciiDigit(c.unicode());
}

bool isOfHostName(QChar c)
{
    return c.isLetterOrNumber() || c == u'.' || c == u'-';
}

bool isOfMailName(QChar c)
{
    return isOfHostName(c) || c.isMark() || isApostrophe(c.unicode()) || QStringView(u"_+%&=~").contains(c);
}

template <typename Belongs>
qsizetype beginning(QStringView text, qsizetype from, qsizetype anchor, Belongs belongs)
{
    while (anchor > from && belongs(text.at(anchor - 1)))
        --anchor;
    return anchor;
}

template <typename Belongs>
qsizetype ending(QStringView text, qsizetype anchor, qsizetype end, Belongs belongs)
{
    while (anchor < end && belongs(text.at(anchor)))
        ++anchor;
    return anchor;
}

FoundWord between(qsizetype start, qsizetype end)
{
    return {start, end - start};
}

bool startsWith(QStringView text, qsizetype at, qsizetype end, QStringView what)
{
    return end - at >= what.size() && text.sliced(at, what.size()).compare(what, Qt::CaseInsensitive) == 0;
}

/// The "'s" of the genitive behind an address is no word.
qsizetype behindGenitive(QStringView text, qsizetype at, qsizetype end)
{
    const bool isGenitive = at + 1 < end && isApostrophe(text.at(at).unicode()) &&
                            text.at(at + 1).toLower() == u's' &&
                            (at + 2 == end || !text.at(at + 2).isLetterOrNumber());
    return isGenitive ? at + 2 : at;
}

FoundWord mailAddress(QStringView text, qsizetype from, qsizetype at, qsizetype end)
{
    static constexpr QStringView scheme = u"mailto:";
    qsizetype start = beginning(text, from, at, isOfMailName);
    const qsizetype behind = ending(text, at + 1, end, isOfHostName);
    const bool isAddress = start < at && text.at(at - 1) != u'.' &&
                           !isApostrophe(text.at(at - 1).unicode()) && behind > at + 1 &&
                           text.at(at + 1).isLetterOrNumber();
    if (!isAddress)
        return {};
    if (start - from >= scheme.size() && startsWith(text, start - scheme.size(), start, scheme))
        start -= scheme.size();
    return between(start, behindGenitive(text, behind, end));
}

template <std::size_t Count>
bool isOneOf(const QStringView (&names)[Count], QStringView name, Qt::CaseSensitivity sensitivity)
{
    return std::any_of(std::begin(names), std::end(names),
                       [&](QStringView one) { return name.compare(one, sensitivity) == 0; });
}

/// Whether a part of a name behind a dot is a domain that stands at the end of names of the web.
bool isTopDomain(QStringView label, bool isSure)
{
    static constexpr QStringView generic[] = {u"com", u"org", u"net",  u"gov",
                                              u"edu", u"mil", u"info", u"biz"};
    static constexpr QStringView countries[] = {
        u"us", u"uk", u"ca", u"au", u"nz", u"ie", u"eu", u"de", u"fr", u"es", u"nl", u"ch", u"se", u"dk",
        u"fi", u"pl", u"pt", u"jp", u"cn", u"mx", u"br", u"za", u"ru", u"io", u"co", u"tv", u"ai"};
    // Words of a text too: with one dot alone before them they end a name only when a path follows.
    static constexpr QStringView words[] = {u"it", u"in", u"is", u"no",  u"at",  u"be",
                                            u"me", u"to", u"so", u"app", u"dev", u"site"};
    constexpr qsizetype longest = 4;
    if (label.size() < 2 || label.size() > longest)
        return false;
    return isOneOf(generic, label, Qt::CaseInsensitive) || isOneOf(countries, label, Qt::CaseSensitive) ||
           (isSure && isOneOf(words, label, Qt::CaseSensitive));
}

/// Where an address goes on with a port, a path, a question or a place in the page, as far as the end.
qsizetype behindPath(QStringView text, qsizetype at, qsizetype end)
{
    if (at >= end)
        return at;
    const QChar sign = text.at(at);
    const bool hasMore = at + 1 < end;
    const bool goesOn = sign == u'/' ||
                        (sign == u':' && hasMore && isAsciiDigit(text.at(at + 1).unicode())) ||
                        (sign == u'#' && hasMore && isAlphanumeric(text.at(at + 1))) ||
                        (sign == u'?' && text.sliced(at, end - at).contains(u'='));
    return goesOn ? end : behindGenitive(text, at, end);
}

/// The name of the web in a run of letters, digits, dots and hyphens. It is told from a full stop without a
/// blank behind it by its last part alone.
FoundWord hostName(QStringView text, const FoundWord& run, qsizetype end)
{
    qsizetype start = run.Offset;
    while (start < run.end() && !text.at(start).isLetterOrNumber())
        ++start;
    const qsizetype firstDot = text.indexOf(u'.', start);
    qsizetype behind = run.end();
    while (behind > start) {
        const qsizetype dot = text.first(behind).lastIndexOf(u'.');
        if (dot <= start)
            return {};
        const QStringView label = text.sliced(dot + 1, behind - dot - 1);
        const bool hasPath = behind < end && text.at(behind) == u'/';
        const bool isSure = hasPath || firstDot < dot;
        if (text.at(dot - 1).isLetterOrNumber() && isTopDomain(label, isSure))
            return between(start, behindPath(text, behind, end));
        behind = dot;
    }
    return {};
}

FoundWord addressAt(QStringView text, qsizetype from, qsizetype anchor, qsizetype end)
{
    switch (text.at(anchor).unicode()) {
    case u'@':
        return mailAddress(text, from, anchor, end);
    case u':':
        if (startsWith(text, anchor, end, u"://")) {
            const qsizetype start = beginning(text, from, anchor, isAlphanumeric);
            return start < anchor ? between(start, end) : FoundWord{};
        }
        return {};
    case u'w':
    case u'W':
        if (startsWith(text, anchor, end, u"www.") &&
            (anchor == from || !text.at(anchor - 1).isLetterOrNumber()))
            return between(anchor, end);
        return {};
    default:
        return {};
    }
}

} // namespace

FoundWord findAddress(QStringView text, qsizetype from, qsizetype end)
{
    FoundWord run{from, 0}; // what a name of the web may stand in
    FoundWord name;
    for (qsizetype anchor = from; anchor < end; ++anchor) {
        if (name.Length > 0 && anchor >= run.end() && text.at(anchor) != u'@')
            return name;
        if (text.at(anchor) == u'.' && anchor >= run.end()) {
            // Each run is looked at once, or a text of dots takes the square of its length.
            run.Offset = beginning(text, from, anchor, isOfHostName);
            run.Length = ending(text, anchor, end, isOfHostName) - run.Offset;
            name = hostName(text, run, end);
        }
        // A mail address or a scheme that the run belongs to goes before.
        const FoundWord address = addressAt(text, from, anchor, end);
        if (address.Length > 0)
            return address;
    }
    return name.Length > 0 ? name : FoundWord{end, 0};
}

} // namespace tavrin
