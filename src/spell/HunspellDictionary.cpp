#include "spell/HunspellDictionary.h"

#include "base/failure/Error.h"
#include "base/files/Descriptor.h"
#include "frame/words/SpellingDictionary.h"

#include <QStringDecoder>
#include <QStringEncoder>
#include <hunspell.hxx>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <string>
#include <sys/mman.h>
#include <vector>

namespace tavrin {

namespace {

/// Words of the list that are asked for after loading.
constexpr qsizetype ProbedWords = 50;
/// A word of no language.
constexpr char16_t NoWord[] = u"xqzvkjwqxz";

/// Hunspell opens its files by name. Content that lives in memory only leaves nothing behind, however the
/// program ends, and nobody else can change it; its name is short and plain ASCII.
class MemoryFile
{
public:
    explicit MemoryFile(const QByteArray& content)
        : m_file(::memfd_create("spelling", MFD_CLOEXEC))
    {
        if (!m_file.isOpen())
            throw SystemError::last();
        writeAll(m_file, content.constData(), content.size());
    }

    std::string path() const { return "/proc/self/fd/" + std::to_string(m_file.number()); }

private:
    Descriptor m_file;
};

/// Words without signs and capitals, spread evenly over the list.
QList<QByteArray> sampleOf(const QByteArray& wordList)
{
    QList<QByteArray> words;
    const qsizetype step = std::max<qsizetype>(wordList.size() / ProbedWords, 1);
    qsizetype lineEnd = wordList.indexOf('\n'); // behind the count
    while (lineEnd >= 0 && words.size() < ProbedWords) {
        const qsizetype start = lineEnd + 1;
        lineEnd = wordList.indexOf('\n', start);
        QByteArray word = wordList.mid(start, lineEnd - start).trimmed();
        if (const qsizetype flags = word.indexOf('/'); flags >= 0)
            word.truncate(flags);
        const bool isPlain =
            std::none_of(word.begin(), word.end(), [](char c) { return c >= 0 && (c < 'a' || c > 'z'); });
        if (isPlain && word.size() > 1) {
            words.append(word);
            lineEnd = wordList.indexOf('\n', start + step);
        }
    }
    return words;
}

} // namespace

class HunspellDictionary::Library
{
public:
    explicit Library(const SpellingDictionary& dictionary)
        : m_rules(dictionary.AffixRules)
        , m_words(dictionary.WordList)
        , m_encoding(encodingOf(dictionary.AffixRules) == "UTF-8" ? QStringConverter::Utf8
                                                                  : QStringConverter::Latin1)
    {
        load();
    }

    /// Hunspell can forget a word only by forbidding it, in all its forms; loading anew leaves no trace.
    void load()
    {
        m_hunspell.reset();
        m_hunspell.emplace(m_rules.path().c_str(), m_words.path().c_str());
    }

    Hunspell& hunspell() { return *m_hunspell; }

    /// None for a word that the dictionary's encoding cannot hold.
    std::optional<std::string> encode(const QString& word) const
    {
        // Hunspell works with single UTF-16 code units inside, and with texts that a NUL ends.
        if (std::any_of(word.begin(), word.end(), [](QChar c) { return c.isSurrogate() || c.isNull(); }))
            return std::nullopt;
        QStringEncoder encoder(m_encoding, QStringEncoder::Flag::Stateless);
        const QByteArray bytes = encoder.encode(word);
        return encoder.hasError() ? std::nullopt : std::optional(bytes.toStdString());
    }

    QString decode(const std::string& bytes) const
    {
        QStringDecoder decoder(m_encoding, QStringDecoder::Flag::Stateless);
        return decoder.decode(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
    }

    bool hasAdded = false;

private:
    MemoryFile m_rules;
    MemoryFile m_words;
    QStringConverter::Encoding m_encoding;
    std::optional<Hunspell> m_hunspell;
};

HunspellDictionary::HunspellDictionary(const SpellingDictionary& dictionary)
    : m_library(std::make_unique<Library>(dictionary))
{
    // A list may hold forms that are no words by themselves, but not for the greater part.
    const QList<QByteArray> sample = sampleOf(dictionary.WordList);
    const auto known = std::count_if(sample.begin(), sample.end(), [this](const QByteArray& word) {
        return m_library->hunspell().spell(word.toStdString());
    });
    if (2 * known <= sample.size())
        throw Error(QStringLiteral("it does not know its own words"));
    if (knows(QString::fromUtf16(NoWord)))
        throw Error(QStringLiteral("it takes anything for a word"));
}

HunspellDictionary::~HunspellDictionary() = default;

void HunspellDictionary::setAddedWords(const QSet<QString>& words)
{
    if (m_library->hasAdded) {
        m_library->load();
        m_library->hasAdded = false;
    }
    for (const QString& word : words)
        addWord(word);
}

void HunspellDictionary::addWord(const QString& word)
{
    if (const auto bytes = m_library->encode(word)) {
        m_library->hunspell().add(*bytes);
        m_library->hasAdded = true;
    }
}

bool HunspellDictionary::knows(const QString& word) const
{
    const auto bytes = m_library->encode(word);
    return bytes && m_library->hunspell().spell(*bytes);
}

QStringList HunspellDictionary::suggestions(const QString& word) const
{
    QStringList found;
    if (const auto bytes = m_library->encode(word)) {
        for (const std::string& suggestion : m_library->hunspell().suggest(*bytes))
            found.append(m_library->decode(suggestion));
    }
    return found;
}

} // namespace tavrin
