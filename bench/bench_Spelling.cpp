// Spelling with the installed American English. Loading: the support file with its checks, beside Hunspell on
// the installed files. Checking 1 MB of text, and suggestions for 1,000 misspelt words: beside the program
// "hunspell" on the same input; both sides then load the dictionary first, since the program does.
// Times are those of the processor, the other program's included: a busy machine does not blur them.

#include "Ratios.h"
#include "base/files/FileReader.h"
#include "frame/words/SpellingDictionary.h"
#include "spell/HunspellSpeller.h"
#include "spell/WordFinder.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <hunspell.hxx>

#include <sys/resource.h>

using namespace tavrin;
using namespace Qt::StringLiterals;

namespace {

constexpr char Rules[] = "/usr/share/hunspell/en_US.aff";
constexpr char Words[] = "/usr/share/hunspell/en_US.dic";
constexpr qsizetype TextLength = 1 << 20;
constexpr int MisspeltWords = 1000;

QStringList plainWords(const QByteArray& list)
{
    QStringList words;
    for (const QByteArray& line : list.split('\n')) {
        const QByteArray word = line.left(std::max<qsizetype>(line.indexOf('/'), 0));
        if (word.size() > 3 &&
            std::all_of(word.begin(), word.end(), [](char c) { return c >= 'a' && c <= 'z'; }))
            words.append(QString::fromLatin1(word));
    }
    return words;
}

/// Two letters in the middle have changed places.
QString misspelt(QString word)
{
    const qsizetype at = word.size() / 2;
    const QChar letter = word.at(at);
    word[at] = word.at(at - 1);
    word[at - 1] = letter;
    return word;
}

/// What all subjects work on; the same at each run.
struct Input
{
    Input()
    {
        const SpellingDictionary dictionary{u"en_US"_s, QDateTime::fromSecsSinceEpoch(0, Qt::UTC),
                                            readFile(QString::fromLatin1(Rules), LongestDictionaryFile),
                                            readFile(QString::fromLatin1(Words), LongestDictionaryFile)};
        write(main, packSpellingDictionary(dictionary));
        const QStringList words = plainWords(dictionary.WordList);
        QRandomGenerator random(7);
        const auto any = [&](qsizetype from) {
            return words.at(static_cast<qsizetype>(random.bounded(static_cast<quint64>(from))));
        };
        while (text.size() < TextLength) {
            // Four words of five are among a few hundred that everybody uses; one of fifty is misspelt.
            QString word =
                random.bounded(5) == 0 ? any(words.size()) : words.at(qsizetype(random.bounded(400)) * 37);
            text += (random.bounded(50) == 0 ? misspelt(word) : word) +
                    (random.bounded(12) == 0 ? u".\n"_s : u" "_s);
        }
        for (int i = 0; i < MisspeltWords; ++i)
            wrong.append(misspelt(any(words.size())));
        write(textFile, text.toUtf8());
        write(wrongFile, wrong.join(u'\n').toUtf8() + '\n');
    }
    static void write(const QString& path, const QByteArray& content)
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write %s", qPrintable(path));
    }

    QTemporaryDir folder;
    QString main = folder.filePath(u"vssp_ae.dct"_s);
    QString textFile = folder.filePath(u"text"_s);
    QString wrongFile = folder.filePath(u"wrong"_s);
    QString text;
    QStringList wrong;
};

const Input& input()
{
    static const Input one;
    return one;
}

void runProgram(const QString& option, const QString& file)
{
    QProcess program;
    program.setStandardInputFile(file);
    program.setStandardOutputFile(QProcess::nullDevice());
    program.start(u"hunspell"_s, {option, u"-d"_s, u"en_US"_s, u"-i"_s, u"UTF-8"_s});
    if (!program.waitForFinished(-1) || program.exitCode() != 0)
        qFatal("the program hunspell cannot be run");
}

double processorSeconds()
{
    double seconds = 0;
    for (const auto who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
        rusage used = {};
        ::getrusage(who, &used);
        for (const timeval& time : {used.ru_utime, used.ru_stime})
            seconds += static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    }
    return seconds;
}

/// One iteration of a subject.
class Lap
{
public:
    explicit Lap(benchmark::State& state)
        : m_state(state)
        , m_start(processorSeconds())
    {
    }
    ~Lap() { m_state.SetIterationTime(processorSeconds() - m_start); }
    Lap(const Lap&) = delete;
    Lap& operator=(const Lap&) = delete;

private:
    benchmark::State& m_state;
    double m_start;
};

qsizetype wrongWordsIn(HunspellSpeller& speller, const QString& text)
{
    qsizetype wrong = 0;
    WordFinder words(text);
    while (const auto word = words.next())
        wrong += speller.isCorrect(text.mid(word->Offset, word->Length)) ? 0 : 1;
    return wrong;
}

void Load(benchmark::State& state)
{
    input();
    for (auto _ : state) {
        const Lap lap(state);
        HunspellSpeller speller;
        speller.setMainDictionary(input().main);
    }
}

void Load_Rival(benchmark::State& state)
{
    for (auto _ : state) {
        const Lap lap(state);
        Hunspell rival(Rules, Words);
        benchmark::DoNotOptimize(rival.spell(std::string("robbery")));
    }
}

void Check(benchmark::State& state)
{
    input();
    for (auto _ : state) {
        const Lap lap(state);
        HunspellSpeller speller;
        speller.setMainDictionary(input().main);
        benchmark::DoNotOptimize(wrongWordsIn(speller, input().text));
    }
}

void Check_Rival(benchmark::State& state)
{
    input();
    for (auto _ : state) {
        const Lap lap(state);
        runProgram(u"-l"_s, input().textFile);
    }
}

/// A speller at work has its dictionary loaded.
void CheckLoaded(benchmark::State& state)
{
    HunspellSpeller speller;
    speller.setMainDictionary(input().main);
    for (auto _ : state) {
        const Lap lap(state);
        speller.setCustomDictionary({}); // and with that all answers
        benchmark::DoNotOptimize(wrongWordsIn(speller, input().text));
    }
}

void Suggest(benchmark::State& state)
{
    input();
    for (auto _ : state) {
        const Lap lap(state);
        HunspellSpeller speller;
        speller.setMainDictionary(input().main);
        for (const QString& word : input().wrong)
            benchmark::DoNotOptimize(speller.isCorrect(word) ? QStringList() : speller.suggestions(word));
    }
}

void Suggest_Rival(benchmark::State& state)
{
    input();
    for (auto _ : state) {
        const Lap lap(state);
        runProgram(u"-a"_s, input().wrongFile);
    }
}

#define TAVRIN_SUBJECT(Name) BENCHMARK(Name)->Unit(benchmark::kMillisecond)->UseManualTime()
TAVRIN_SUBJECT(Load);
TAVRIN_SUBJECT(Load_Rival);
TAVRIN_SUBJECT(Check);
TAVRIN_SUBJECT(Check_Rival);
TAVRIN_SUBJECT(CheckLoaded);
TAVRIN_SUBJECT(Suggest);
TAVRIN_SUBJECT(Suggest_Rival);

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    return bench::run(argc, argv);
}
