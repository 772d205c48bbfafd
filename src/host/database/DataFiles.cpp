#include "host/database/DataFiles.h"

#include "base/failure/Error.h"

#include <QDir>
#include <QFile>
#include <QStringDecoder>

static void initDataResources()
{
    Q_INIT_RESOURCE(tavrin_data);
}

namespace tavrin {

namespace {

QString decoded(const QByteArray& bytes, const QString& path)
{
    QStringDecoder decoder(QStringDecoder::Utf8);
    QString text = decoder(bytes);
    if (decoder.hasError())
        throw Error(QStringLiteral("%1: the file is not UTF-8 text").arg(path));
    return text;
}

/// Cuts a CSV text into rows, minding quoted cells.
class CsvScanner
{
public:
    explicit CsvScanner(const QString& text)
        : m_text(text)
    {
    }
    bool atEnd() const { return m_at >= m_text.size(); }
    int line() const { return m_line; }
    const QString& problem() const { return m_problem; }

    /// The next row; stops with a problem at a quote in the wrong place.
    QStringList row()
    {
        QStringList cells;
        do
            cells << cell();
        while (m_problem.isEmpty() && take(QLatin1Char(',')));
        take(QLatin1Char('\r'));
        if (m_problem.isEmpty() && !atEnd() && !take(QLatin1Char('\n')))
            m_problem = QStringLiteral("there is text behind a closing quote");
        return cells;
    }

private:
    bool take(QChar wanted)
    {
        if (atEnd() || m_text.at(m_at) != wanted)
            return false;
        if (wanted == QLatin1Char('\n'))
            ++m_line;
        ++m_at;
        return true;
    }

    QString cell() { return take(QLatin1Char('"')) ? quotedCell() : plainCell(); }

    QString plainCell()
    {
        const qsizetype start = m_at;
        for (; !atEnd(); ++m_at) {
            const QChar c = m_text.at(m_at);
            if (c == QLatin1Char(',') || c == QLatin1Char('\n') || c == QLatin1Char('\r'))
                break;
            if (c == QLatin1Char('"'))
                m_problem = QStringLiteral("there is a quote inside a cell that does not start with one");
        }
        return m_text.mid(start, m_at - start);
    }

    QString quotedCell()
    {
        QString cell;
        while (!atEnd()) {
            if (take(QLatin1Char('"'))) {
                if (!take(QLatin1Char('"')))
                    return cell;
                cell += QLatin1Char('"');
            } else if (take(QLatin1Char('\n'))) {
                cell += QLatin1Char('\n');
            } else {
                cell += m_text.at(m_at++);
            }
        }
        m_problem = QStringLiteral("a quote is not closed");
        return cell;
    }

    const QString& m_text;
    qsizetype m_at = 0;
    int m_line = 1;
    QString m_problem;
};

} // namespace

DataFiles::DataFiles(const QString& folder)
    : m_folder(folder.isEmpty() ? QStringLiteral(":/data") : folder)
{
    initDataResources();
}

QString DataFiles::path(const QString& name) const
{
    return m_folder + QLatin1Char('/') + name;
}

QByteArray DataFiles::read(const QString& name) const
{
    QFile file(path(name));
    if (!file.open(QIODevice::ReadOnly))
        throw Error(QStringLiteral("%1: the file cannot be read (%2)").arg(path(name), file.errorString()));
    return file.readAll();
}

QStringList DataFiles::find(const QString& folder, const QString& pattern) const
{
    return QDir(path(folder)).entryList({pattern}, QDir::Files, QDir::Name);
}

QStringList DataFiles::words(const QString& name) const
{
    QStringList words = decoded(read(name), path(name)).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    if (words.isEmpty())
        throw Error(QStringLiteral("%1: the file has no entries").arg(path(name)));
    return words;
}

CsvTable::CsvTable(const DataFiles& files, const QString& name, const QStringList& columns)
    : m_path(files.path(name))
{
    parse(decoded(files.read(name), m_path));
    if (m_rows.isEmpty())
        failAtLine(1, QStringLiteral("the header line is missing"));
    const Row header = m_rows.takeFirst();
    for (int i = 0; i < header.Cells.size(); ++i)
        m_columns.insert(header.Cells.at(i), i);
    for (const QString& column : columns) {
        if (!m_columns.contains(column))
            failAtLine(1, QStringLiteral("the column %1 is missing").arg(column));
    }
    for (const Row& row : std::as_const(m_rows)) {
        if (row.Cells.size() != header.Cells.size())
            failAtLine(row.Line, QStringLiteral("the row has %1 cells, the header has %2")
                                     .arg(row.Cells.size())
                                     .arg(header.Cells.size()));
    }
}

void CsvTable::parse(const QString& text)
{
    CsvScanner scanner(text);
    while (!scanner.atEnd()) {
        Row row;
        row.Line = scanner.line();
        row.Cells = scanner.row();
        if (!scanner.problem().isEmpty())
            failAtLine(row.Line, scanner.problem());
        m_rows << row;
    }
}

QString CsvTable::text(int row, const QString& column) const
{
    return m_rows.at(row).Cells.at(m_columns.value(column));
}

QString CsvTable::requiredText(int row, const QString& column) const
{
    QString cell = text(row, column);
    if (cell.isEmpty())
        fail(row, QStringLiteral("%1 is empty").arg(column));
    return cell;
}

int CsvTable::number(int row, const QString& column) const
{
    bool ok = false;
    const int number = text(row, column).toInt(&ok);
    if (!ok)
        fail(row, QStringLiteral("%1 is not a number: \"%2\"").arg(column, text(row, column)));
    return number;
}

std::optional<int> CsvTable::optionalNumber(int row, const QString& column) const
{
    return text(row, column).isEmpty() ? std::nullopt : std::optional(number(row, column));
}

bool CsvTable::flag(int row, const QString& column) const
{
    const QString cell = text(row, column);
    if (cell != QStringLiteral("0") && cell != QStringLiteral("1"))
        fail(row, QStringLiteral("%1 is neither 1 nor 0: \"%2\"").arg(column, cell));
    return cell == QStringLiteral("1");
}

QDate CsvTable::date(int row, const QString& column) const
{
    const QString cell = text(row, column);
    const QDate date = QDate::fromString(cell, Qt::ISODate);
    if (!cell.isEmpty() && !date.isValid())
        fail(row, QStringLiteral("%1 is not a date: \"%2\"").arg(column, cell));
    return date;
}

void CsvTable::fail(int row, const QString& what) const
{
    failAtLine(m_rows.at(row).Line, what);
}

void CsvTable::failAtLine(int line, const QString& what) const
{
    throw Error(QStringLiteral("%1, line %2: %3").arg(m_path, QString::number(line), what));
}

} // namespace tavrin
