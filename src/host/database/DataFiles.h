#pragma once

#include <QByteArray>
#include <QDate>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace tavrin {

/// The folder of plain data files: the one built into the program, or one on disk in its place.
class DataFiles
{
public:
    /// "" takes the files that are built in.
    explicit DataFiles(const QString& folder = {});

    const QString& folder() const { return m_folder; }
    /// Path of a file by its name below the folder, as in "sample/users.csv".
    QString path(const QString& name) const;
    /// Raises an `Error` that names a file which cannot be read.
    QByteArray read(const QString& name) const;
    /// Names of the files in a folder that fit a pattern, as in "84-*.csv".
    QStringList find(const QString& folder, const QString& pattern) const;
    /// The lines of a word list, in their order. Raises an `Error` for a file that cannot be read or has no
    /// entries.
    QStringList words(const QString& name) const;

private:
    QString m_folder;
};

/// A CSV file after RFC 4180 with a header line, whose cells are asked for by column name.
class CsvTable
{
public:
    /// Raises an `Error` with file and line for text that is not UTF-8, a quote in the wrong place, a row
    /// with another number of cells than the header, and a missing column of `columns`.
    CsvTable(const DataFiles& files, const QString& name, const QStringList& columns);

    int rowCount() const { return static_cast<int>(m_rows.size()); }
    QString text(int row, const QString& column) const;
    /// A text that may not be empty.
    QString requiredText(int row, const QString& column) const;
    int number(int row, const QString& column) const;
    /// An empty cell gives none.
    std::optional<int> optionalNumber(int row, const QString& column) const;
    /// "1" or "0".
    bool flag(int row, const QString& column) const;
    /// ISO date; an empty cell gives a null date.
    QDate date(int row, const QString& column) const;
    /// An `Error` about one row: file, line and what is wrong there.
    [[noreturn]] void fail(int row, const QString& what) const;

private:
    struct Row
    {
        int Line = 0;
        QStringList Cells;
    };
    void parse(const QString& text);
    [[noreturn]] void failAtLine(int line, const QString& what) const;

    QString m_path;
    QHash<QString, int> m_columns;
    QList<Row> m_rows;
};

} // namespace tavrin
