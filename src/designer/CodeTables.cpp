#include "designer/CodeTables.h"

#include <QFile>
#include <QStandardPaths>
#include <QStringList>

namespace tavrin::designer {

namespace {

/// The cells of one line; a quoted one may hold commas, and quotes twice.
QStringList cellsOf(const QString& line)
{
    QStringList cells{QString()};
    bool quoted = false;
    for (qsizetype i = 0; i < line.size(); ++i) {
        const QChar sign = line.at(i);
        const bool isTwice = quoted && sign == u'"' && i + 1 < line.size() && line.at(i + 1) == u'"';
        if (isTwice)
            cells.last() += line.at(i++);
        else if (sign == u'"')
            quoted = !quoted;
        else if (sign == u',' && !quoted)
            cells << QString();
        else
            cells.last() += sign;
    }
    return cells;
}

} // namespace

QList<CodeTable> installedCodeTables()
{
    const QString name = QStandardPaths::locate(QStandardPaths::GenericDataLocation,
                                                QStringLiteral("TVBoundControls/tables.csv"));
    QFile file(name);
    if (name.isEmpty())
        return {};
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning("%s: %s", qPrintable(name), qPrintable(file.errorString()));
        return {};
    }
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
    const QStringList header = cellsOf(lines.first().trimmed());
    const auto numberColumn = header.indexOf(QStringLiteral("TableNo"));
    const auto nameColumn = header.indexOf(QStringLiteral("Name"));
    QList<CodeTable> tables;
    qsizetype wrongLine = numberColumn < 0 || nameColumn < 0 ? 1 : 0;
    for (qsizetype i = 1; i < lines.size() && wrongLine != 1; ++i) {
        const QString line = lines.at(i).trimmed();
        if (line.isEmpty())
            continue;
        const QStringList cells = cellsOf(line);
        bool isNumber = false;
        const int number = cells.value(numberColumn).toInt(&isNumber);
        if (isNumber && !cells.value(nameColumn).isEmpty())
            tables.append({number, cells.value(nameColumn)});
        else if (wrongLine == 0)
            wrongLine = i + 1;
    }
    if (wrongLine != 0) {
        qWarning("%s:%lld: A code table needs a number in the column TableNo and a text in the column Name.",
                 qPrintable(name), static_cast<long long>(wrongLine));
    }
    return tables;
}

} // namespace tavrin::designer
