#include "frame/words/CustomWords.h"

#include "base/failure/Error.h"

#include <QSet>
#include <QStringDecoder>

namespace tavrin::CustomWords {

namespace {

constexpr char32_t SoftHyphen = 0x00AD;
constexpr char32_t ZeroWidthNonJoiner = 0x200C;
constexpr char32_t ZeroWidthJoiner = 0x200D;
/// Characters of a refused word that its message shows.
constexpr qsizetype ShownLength = 40;

bool isUnfit(char32_t c)
{
    switch (QChar::category(c)) {
    case QChar::Other_Format:
        return c != ZeroWidthNonJoiner && c != ZeroWidthJoiner; // these are part of words of some scripts
    case QChar::Symbol_Other:
        return c == QChar::ReplacementCharacter; // half a surrogate pair, or broken text
    case QChar::Other_Control:
    case QChar::Other_Surrogate:
    case QChar::Other_PrivateUse:
    case QChar::Other_NotAssigned:
        return true;
    default:
        return false;
    }
}

} // namespace

QString normalForm(const QString& word)
{
    QString normal = word.normalized(QString::NormalizationForm_C).trimmed();
    normal.replace(QChar(0x2019), QLatin1Char('\''));
    normal.replace(QChar(0x2010), QLatin1Char('-'));
    normal.replace(QChar(0x2011), QLatin1Char('-'));
    normal.remove(QChar(SoftHyphen));
    return normal;
}

QString flawOf(const QString& word)
{
    if (word.isEmpty())
        return QStringLiteral("it is empty");
    if (word.size() > LongestWord)
        return QStringLiteral("it has more than %1 characters").arg(LongestWord);
    bool hasLetter = false;
    for (const char32_t c : word.toUcs4()) {
        if (c == U'/')
            return QStringLiteral("it holds a slash");
        if (isUnfit(c))
            return QStringLiteral("it holds a character that no word has");
        if (QChar::isSpace(c))
            return QStringLiteral("it holds a blank");
        hasLetter = hasLetter || QChar::isLetter(c);
    }
    return hasLetter ? QString() : QStringLiteral("it holds no letter");
}

QString requireWord(const QString& word)
{
    QString normal = normalForm(word);
    const QString flaw = flawOf(normal);
    if (flaw.isEmpty())
        return normal;
    const QString shown = normal.size() > ShownLength ? normal.left(ShownLength) + QChar(0x2026) : normal;
    throw Error(
        QStringLiteral("The word \"%1\" cannot be added to the custom dictionary: %2.").arg(shown, flaw));
}

void requireText(const QString& path, const QByteArray& content)
{
    if (content.contains('\0'))
        throw Error(QStringLiteral("The file %1 is no text").arg(path));
}

QStringList parse(const QByteArray& content)
{
    QStringList words;
    QSet<QString> seen;
    const QByteArray text = content.startsWith("\xEF\xBB\xBF") ? content.mid(3) : content;
    for (qsizetype start = 0; start < text.size();) {
        qsizetype end = text.indexOf('\n', start);
        end = end < 0 ? text.size() : end;
        const QByteArrayView line = QByteArrayView(text).sliced(start, end - start);
        start = end + 1;
        QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        const QString decoded = decoder.decode(line);
        const QString word = decoder.hasError() ? QString() : normalForm(decoded);
        if (flawOf(word).isEmpty() && !seen.contains(word)) {
            seen.insert(word);
            words.append(word);
        }
    }
    return words;
}

QByteArray format(const QStringList& words)
{
    QByteArray content;
    for (const QString& word : words)
        content += word.toUtf8() + '\n';
    return content;
}

} // namespace tavrin::CustomWords
