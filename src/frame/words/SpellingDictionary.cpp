#include "frame/words/SpellingDictionary.h"

#include "base/failure/Error.h"
#include "base/files/FileReader.h"

#include <QCryptographicHash>
#include <QList>
#include <QStringDecoder>

#include <algorithm>

namespace tavrin {

namespace {

constexpr char Mark[] = "TVBoundControls spelling dictionary 2";
/// Lines of the header, its empty last one left out.
constexpr qsizetype HeaderLines = 7;
/// A list may hold more words than it states, but not so many that the count means nothing.
constexpr qint64 MostWordsPerStated = 2;

[[noreturn]] void fail(const QString& reason)
{
    throw Error(reason);
}

void checkText(const QByteArray& text, const QString& what, bool isUtf8)
{
    if (text.isEmpty())
        fail(QStringLiteral("%1 are empty").arg(what));
    const bool isBinary = std::any_of(text.begin(), text.end(), [](char c) {
        return (c >= 0 && c < ' ' && c != '\t' && c != '\r' && c != '\n') || c == 0x7F;
    });
    if (isBinary)
        fail(QStringLiteral("%1 are no text").arg(what));
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString decoded = isUtf8 ? QString(decoder.decode(text)) : QString();
    if (decoder.hasError()) // told by what it has decoded
        fail(QStringLiteral("%1 are not in the encoding that they state").arg(what));
    if (!text.endsWith('\n'))
        fail(QStringLiteral("%1 end in the middle of a line").arg(what));
}

QList<QByteArray> fieldsOf(const QByteArray& line)
{
    const QByteArray simple = line.simplified();
    return simple.isEmpty() || simple.startsWith('#') ? QList<QByteArray>() : simple.split(' ');
}

/// Tables whose first line states how many lines follow.
bool isTable(const QByteArray& keyword)
{
    static const QList<QByteArray> tables = {"REP",   "MAP", "BREAK", "ICONV",        "OCONV",
                                             "PHONE", "AF",  "AM",    "COMPOUNDRULE", "CHECKCOMPOUNDPATTERN"};
    return tables.contains(keyword);
}

/// How many lines the first line of a table announces; -1 when it states no number.
int linesAnnounced(const QList<QByteArray>& fields, bool isAffix)
{
    const qsizetype place = isAffix ? 3 : 1;
    bool ok = false;
    const int count = fields.size() > place ? fields.at(place).toInt(&ok) : 0;
    return ok && count >= 0 ? count : -1;
}

/// A file that was cut between two lines shows by a table that lacks some.
void checkTables(const QByteArray& affixRules)
{
    int missing = 0;
    QByteArray keyword;
    QByteArray flag;
    for (const QByteArray& line : affixRules.split('\n')) {
        const QList<QByteArray> fields = fieldsOf(line);
        if (fields.isEmpty())
            continue;
        const bool isAffix = fields.first() == "PFX" || fields.first() == "SFX";
        const QByteArray lineFlag = isAffix && fields.size() > 1 ? fields.at(1) : QByteArray();
        if (missing > 0) {
            if (fields.first() != keyword || lineFlag != flag)
                break;
            --missing;
        } else if (isAffix || isTable(fields.first())) {
            keyword = fields.first();
            flag = lineFlag;
            missing = linesAnnounced(fields, isAffix);
            if (missing < 0)
                fail(QStringLiteral("the affix rules have a table %1 without a count")
                         .arg(QString::fromLatin1(keyword)));
        }
    }
    if (missing > 0)
        fail(QStringLiteral("the affix rules lack lines of the table %1").arg(QString::fromLatin1(keyword)));
}

void checkWordCount(const QByteArray& wordList)
{
    const QByteArray first = wordList.left(wordList.indexOf('\n')).trimmed();
    const QByteArray digits = first.startsWith("\xEF\xBB\xBF") ? first.mid(3) : first;
    bool ok = false;
    const qint64 stated = digits.toLongLong(&ok);
    if (!ok || stated <= 0)
        fail(QStringLiteral("the words do not begin with their count"));
    qint64 held = -1; // the first line is none
    for (qsizetype start = 0; start < wordList.size();) {
        const qsizetype end = wordList.indexOf('\n', start); // the last character is one
        held += QByteArrayView(wordList).sliced(start, end - start).trimmed().isEmpty() ? 0 : 1;
        start = end + 1;
    }
    if (held < stated || held / MostWordsPerStated > stated)
        fail(QStringLiteral("the words are %1 by their count and %2 by their lines").arg(stated).arg(held));
}

QByteArray timeText(const QDateTime& time)
{
    return time.toUTC().toString(Qt::ISODateWithMs).toLatin1();
}

QByteArray headerOf(const SpellingDictionary& dictionary)
{
    QByteArray header = QByteArray(Mark) + '\n';
    header += "name " + dictionary.Name.toUtf8() + '\n';
    header += "rules-changed " + timeText(dictionary.RulesChanged) + '\n';
    header += "words-changed " + timeText(dictionary.WordsChanged) + '\n';
    header += "affix " + QByteArray::number(dictionary.AffixRules.size()) + '\n';
    header += "words " + QByteArray::number(dictionary.WordList.size()) + '\n';
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(header);
    hash.addData(dictionary.AffixRules);
    hash.addData(dictionary.WordList);
    return header + "sha256 " + hash.result().toHex() + "\n\n";
}

/// What stands behind the keyword of a header's line.
QByteArray valueOf(const QByteArray& line, const char* keyword)
{
    const QByteArray beginning = QByteArray(keyword) + ' ';
    if (!line.startsWith(beginning))
        fail(QStringLiteral("it is damaged"));
    return line.mid(beginning.size());
}

QDateTime timeOf(const QByteArray& line, const char* keyword)
{
    return QDateTime::fromString(QString::fromLatin1(valueOf(line, keyword)), Qt::ISODateWithMs);
}

qint64 lengthOf(const QByteArray& line, const char* keyword)
{
    bool ok = false;
    const qint64 length = valueOf(line, keyword).toLongLong(&ok);
    if (!ok || length < 0 || length > LongestDictionaryFile)
        fail(QStringLiteral("it is damaged"));
    return length;
}

} // namespace

QByteArray encodingOf(const QByteArray& affixRules)
{
    for (const QByteArray& line : affixRules.split('\n')) {
        const QList<QByteArray> fields = fieldsOf(line);
        if (fields.size() > 1 && (fields.first() == "SET" || fields.first() == "\xEF\xBB\xBFSET"))
            return fields.at(1);
    }
    return "ISO8859-1";
}

void checkSpellingDictionary(const SpellingDictionary& dictionary)
{
    const QByteArray encoding = encodingOf(dictionary.AffixRules);
    const bool isUtf8 = encoding == "UTF-8";
    checkText(dictionary.AffixRules, QStringLiteral("the affix rules"), isUtf8);
    if (!isUtf8 && encoding != "ISO8859-1")
        fail(QStringLiteral("the encoding %1 is none of UTF-8 and ISO8859-1")
                 .arg(QString::fromLatin1(encoding)));
    checkTables(dictionary.AffixRules);
    checkText(dictionary.WordList, QStringLiteral("the words"), isUtf8);
    checkWordCount(dictionary.WordList);
}

QByteArray packSpellingDictionary(const SpellingDictionary& dictionary)
{
    return headerOf(dictionary) + dictionary.AffixRules + dictionary.WordList;
}

SpellingDictionary unpackSpellingDictionary(const QByteArray& content)
{
    if (content.isEmpty())
        fail(QStringLiteral("it is empty"));
    if (!content.startsWith(QByteArray(Mark) + '\n'))
        fail(QStringLiteral("it is no spelling dictionary"));
    const qsizetype headerLength = content.indexOf("\n\n") + 2;
    const QList<QByteArray> lines = content.left(std::max<qsizetype>(headerLength - 2, 0)).split('\n');
    if (lines.size() != HeaderLines)
        fail(QStringLiteral("it is damaged"));
    SpellingDictionary dictionary;
    dictionary.Name = QString::fromUtf8(valueOf(lines.at(1), "name"));
    dictionary.RulesChanged = timeOf(lines.at(2), "rules-changed");
    dictionary.WordsChanged = timeOf(lines.at(3), "words-changed");
    const qint64 affixLength = lengthOf(lines.at(4), "affix");
    const qint64 wordsLength = lengthOf(lines.at(5), "words");
    if (content.size() < headerLength + affixLength + wordsLength)
        fail(QStringLiteral("its end is missing"));
    dictionary.AffixRules = content.mid(headerLength, affixLength);
    dictionary.WordList = content.mid(headerLength + affixLength, wordsLength);
    // The checksum is part of the header; a file that says the same in another way was not written here.
    if (packSpellingDictionary(dictionary) != content)
        fail(QStringLiteral("it is damaged"));
    return dictionary;
}

SpellingDictionary readSpellingDictionary(const QString& path)
{
    const QByteArray content = readFile(path, LongestDictionaryFile);
    try {
        SpellingDictionary dictionary = unpackSpellingDictionary(content);
        checkSpellingDictionary(dictionary);
        return dictionary;
    } catch (const Error& error) {
        throw Error(
            QStringLiteral("The spelling dictionary %1 cannot be used: %2").arg(path, error.Description));
    }
}

} // namespace tavrin
