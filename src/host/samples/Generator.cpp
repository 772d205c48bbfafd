#include "host/samples/Generator.h"

#include "base/failure/Error.h"

#include <QSet>

#include <algorithm>
#include <limits>
#include <random>

namespace tavrin {

namespace {

// Every kind of row draws from a stream of its own, so that asking for one kind does not change another.
enum class Stream : quint64
{
    Employees = 1,
    Users,
    Offenses,
    CodeValues,
};

/// Draws that are the same on every platform: the standard fixes the engine, but not its distributions.
class Dice
{
public:
    Dice(quint64 seed, Stream stream, quint64 variant = 0)
        : m_engine(seed * 0x9E3779B97F4A7C15ULL + static_cast<quint64>(stream) * 0xBF58476D1CE4E5B9ULL +
                   variant)
    {
    }

    /// 0 to `count` - 1, each as likely as the others.
    int below(int count)
    {
        const auto size = static_cast<quint64>(count);
        const quint64 fair = std::numeric_limits<quint64>::max() - std::numeric_limits<quint64>::max() % size;
        quint64 draw = m_engine();
        while (draw >= fair)
            draw = m_engine();
        return static_cast<int>(draw % size);
    }
    bool oneIn(int count) { return below(count) == 0; }
    const QString& pick(const QStringList& words) { return words.at(below(static_cast<int>(words.size()))); }

private:
    std::mt19937_64 m_engine;
};

void checkCount(int count)
{
    if (count < 0)
        throw Error(QStringLiteral("A generator cannot make %1 rows").arg(count));
}

QString signOnName(const QString& first, const QString& last)
{
    QString name;
    for (const QChar c : (first.left(1) + last).normalized(QString::NormalizationForm_D).toLower()) {
        if (c.unicode() < 0x80 && c.isLetter())
            name += c;
    }
    return name.isEmpty() ? QStringLiteral("user") : name;
}

bool isQualifier(const QString& word)
{
    return word.at(0).isLower();
}

} // namespace

Generator::Generator(quint64 seed, const QString& folder)
    : m_seed(seed)
{
    const DataFiles files(folder);
    m_firstNames = files.words(QStringLiteral("generator/first_names.txt"));
    m_lastNames = files.words(QStringLiteral("generator/last_names.txt"));
    m_streets = files.words(QStringLiteral("generator/streets.txt"));
    m_offenseWords = files.words(QStringLiteral("generator/offense_words.txt"));
}

QList<EmployeeRow> Generator::employees(int count, int firstNumber) const
{
    checkCount(count);
    Dice dice(m_seed, Stream::Employees);
    const QDate firstHire(2000, 1, 1);
    QList<EmployeeRow> rows;
    rows.reserve(count);
    for (int i = 0; i < count; ++i) {
        EmployeeRow row;
        row.OfficerNo = firstNumber + i;
        row.OfficerId = QStringLiteral("GN%1").arg(1000 + row.OfficerNo * 7);
        row.Name = dice.pick(m_lastNames) + QStringLiteral(", ") + dice.pick(m_firstNames);
        row.BadgeNo = QString::number(100 + row.OfficerNo);
        row.Active = !dice.oneIn(10);
        row.K9Handler = dice.oneIn(12);
        row.Hired = firstHire.addDays(dice.below(9000));
        const int daysOfService = 1 + dice.below(3000);
        if (!row.Active)
            row.LeftOn = row.Hired.addDays(daysOfService);
        rows << row;
    }
    return rows;
}

QList<UserRow> Generator::users(const QList<EmployeeRow>& employees) const
{
    QSet<QString> taken;
    QList<UserRow> rows;
    rows.reserve(employees.size());
    for (const EmployeeRow& employee : employees) {
        UserRow row;
        row.LastName = employee.Name.section(QStringLiteral(", "), 0, 0);
        row.FirstName = employee.Name.section(QStringLiteral(", "), 1);
        row.OfficerId = employee.OfficerId;
        row.BadgeNo = employee.BadgeNo;
        row.Active = employee.Active;
        const QString base = signOnName(row.FirstName, row.LastName);
        row.UserId = base;
        if (taken.contains(row.UserId))
            row.UserId = base + QString::number(employee.OfficerNo);
        taken.insert(row.UserId);
        rows << row;
    }
    return rows;
}

QList<OffenseRow> Generator::offenses(int count, int firstNumber) const
{
    checkCount(count);
    static const QStringList reportingCodes{
        QStringLiteral("13A"), QStringLiteral("13B"), QStringLiteral("120"), QStringLiteral("220"),
        QStringLiteral("23C"), QStringLiteral("23H"), QStringLiteral("240"), QStringLiteral("290"),
        QStringLiteral("90C"), QStringLiteral("90Z")};
    const auto split = std::find_if(m_offenseWords.begin(), m_offenseWords.end(), isQualifier);
    const QStringList offenses(m_offenseWords.begin(), split);
    const QStringList qualifiers(split, m_offenseWords.end());
    if (offenses.isEmpty() || qualifiers.isEmpty())
        throw Error(QStringLiteral("The offense words need offenses first and qualifiers after them"));
    Dice dice(m_seed, Stream::Offenses);
    QList<OffenseRow> rows;
    rows.reserve(count);
    for (int i = 0; i < count; ++i) {
        const int number = firstNumber + i;
        OffenseRow row;
        row.OffenseNo = number;
        row.OffenseId =
            QStringLiteral("GC %1.%2").arg(100 + number / 100).arg(number % 100, 2, 10, QLatin1Char('0'));
        row.Description = dice.pick(offenses) + QLatin1Char(' ') + dice.pick(qualifiers);
        row.RptCode = dice.pick(reportingCodes);
        row.Active = !dice.oneIn(10);
        rows << row;
    }
    return rows;
}

QList<CodeValueRow> Generator::codeValues(int tableNo, int count) const
{
    checkCount(count);
    if (count > 32767)
        throw Error(QStringLiteral("A code table takes 32767 values, not %1").arg(count));
    Dice dice(m_seed, Stream::CodeValues, static_cast<quint64>(tableNo));
    QList<CodeValueRow> rows;
    rows.reserve(count);
    for (int number = 1; number <= count; ++number) {
        const QString text = dice.pick(m_streets) + QLatin1Char(' ') + dice.pick(m_lastNames);
        const QString id = QStringLiteral("%1").arg(number, 3, 10, QLatin1Char('0'));
        const bool active = !dice.oneIn(10);
        rows << CodeValueRow{tableNo, number, id, text, active, number};
    }
    return rows;
}

} // namespace tavrin
