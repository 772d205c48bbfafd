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
    return isAlphanumeric(c) || c == u'.' || c == u'-';
}

bool isOfMailName(QChar c)
{
    return isOfHostName(c) || c == u'_' || c == u'+' || c == u'%';
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

FoundWord mailAddress(QStringView text, qsizetype from, qsizetype at, qsizetype end)
{
    const qsizetype start = beginning(text, from, at, isOfMailName);
    const qsizetype behind = ending(text, at + 1, end, isOfHostName);
    const bool isAddress =
        start < at && text.at(at - 1) != u'.' && behind > at + 1 && isAlphanumeric(text.at(at + 1));
    return isAddress ? between(start, behind) : FoundWord{};
}

/// A name of the web is told from a full stop without a blank behind it by the last part alone.
FoundWord hostName(QStringView text, qsizetype from, qsizetype dot, qsizetype end)
{
    static constexpr QStringView domains[] = {u".com", u".org", u".net", u".gov", u".edu", u".mil"};
    const auto domain = std::find_if(std::begin(domains), std::end(domains),
                                     [&](QStringView name) { return startsWith(text, dot, end, name); });
    if (domain == std::end(domains) || dot == from || !isAlphanumeric(text.at(dot - 1)))
        return {};
    const qsizetype behind = dot + domain->size();
    const bool isWhole = behind == end || !isLetterOrDigit(at(text, behind).Code);
    if (!isWhole)
        return {};
    const qsizetype start = beginning(text, from, dot, isOfHostName);
    return between(start, behind < end && text.at(behind) == u'/' ? end : behind);
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
    case u'.':
        return hostName(text, from, anchor, end);
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
    for (qsizetype anchor = from; anchor < end; ++anchor) {
        const FoundWord address = addressAt(text, from, anchor, end);
        if (address.Length > 0)
            return address;
    }
    return {end, 0};
}

} // namespace tavrin
