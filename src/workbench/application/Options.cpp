#include "workbench/application/Options.h"

#include <QCommandLineParser>
#include <QDir>
#include <QStandardPaths>

#include <cstdio>

namespace tavrin::workbench {

namespace {

constexpr int UsageError = 2;

std::optional<ThemeChoice> themeOf(const QString& name)
{
    if (name == QLatin1String("system"))
        return ThemeChoice::System;
    if (name == QLatin1String("light"))
        return ThemeChoice::Light;
    if (name == QLatin1String("dark"))
        return ThemeChoice::Dark;
    return std::nullopt;
}

void print(std::FILE* stream, const QString& text)
{
    std::fputs(qPrintable(text), stream);
}

/// What is wrong with the values of the command line; "" when nothing is.
QString problemOf(const QCommandLineParser& parser, const QList<QCommandLineOption>& withValue)
{
    if (!parser.positionalArguments().isEmpty())
        return QStringLiteral("Unexpected argument '%1'.").arg(parser.positionalArguments().constFirst());
    for (const QCommandLineOption& option : withValue) {
        if (parser.values(option).contains(QString()))
            return QStringLiteral("The value of '--%1' is empty.").arg(option.names().constFirst());
    }
    return {};
}

} // namespace

QString defaultDatabasePath()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
    return QDir(folder).filePath(QStringLiteral("records.sqlite"));
}

std::optional<Options> parseOptions(const QStringList& arguments, int& exitCode)
{
    const QCommandLineOption database(QStringLiteral("db"), QStringLiteral("Work on this SQLite database."),
                                      QStringLiteral("file"));
    const QCommandLineOption data(QStringLiteral("data"),
                                  QStringLiteral("Fill a new database from this folder."),
                                  QStringLiteral("dir"));
    const QCommandLineOption forms(QStringLiteral("forms"),
                                   QStringLiteral("Take form files from this folder first."),
                                   QStringLiteral("dir"));
    const QCommandLineOption user(QStringLiteral("user"), QStringLiteral("Sign on as this user (admin)."),
                                  QStringLiteral("id"), QStringLiteral("admin"));
    const QCommandLineOption theme(QStringLiteral("theme"), QStringLiteral("system, light or dark."),
                                   QStringLiteral("name"), QStringLiteral("system"));
    const QCommandLineOption workstation(QStringLiteral("workstation"),
                                         QStringLiteral("Keep this workstation's dictionaries here."),
                                         QStringLiteral("dir"));
    const QCommandLineOption tour(
        QStringLiteral("tour"),
        QStringLiteral(
            "Walk through the program on a database of its own, write a picture of each step here, "
            "and end with 1 at the first thing that is not so."),
        QStringLiteral("dir"));
    QCommandLineOption elsewhere(QStringLiteral("tour-elsewhere"));
    elsewhere.setFlags(QCommandLineOption::HiddenFromHelp); // only the tour itself needs it

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Incident records at a workstation."));
    parser.addOptions({database, data, forms, user, theme, workstation, tour, elsewhere});
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption version = parser.addVersionOption();

    const bool parsed = parser.parse(arguments);
    exitCode = 0;
    if (parsed && (parser.isSet(help) || parser.isSet(QStringLiteral("help-all")))) {
        print(stdout, parser.helpText() + QStringLiteral("\nWithout --db the database is %1\n")
                                              .arg(QDir::toNativeSeparators(defaultDatabasePath())));
        return std::nullopt;
    }
    if (parsed && parser.isSet(version)) {
        print(stdout, QStringLiteral("workbench %1\n").arg(QCoreApplication::applicationVersion()));
        return std::nullopt;
    }
    const std::optional<ThemeChoice> chosenTheme = themeOf(parser.value(theme));
    QString problem =
        parsed ? problemOf(parser, {database, data, forms, user, workstation, tour}) : parser.errorText();
    const bool isElsewhere = parser.isSet(elsewhere);
    if (problem.isEmpty() && isElsewhere &&
        !(parser.isSet(tour) && parser.isSet(database) && parser.isSet(workstation)))
        problem = QStringLiteral("'--tour-elsewhere' needs '--tour', '--db' and '--workstation'.");
    if (problem.isEmpty() && !chosenTheme)
        problem = QStringLiteral("Unknown theme '%1'.").arg(parser.value(theme));
    if (!problem.isEmpty()) {
        print(stderr, problem + QStringLiteral("\n\n") + parser.helpText());
        exitCode = UsageError;
        return std::nullopt;
    }
    Options options;
    options.database = parser.value(database);
    options.dataFolder = parser.value(data);
    options.formsFolder = parser.value(forms);
    options.workstationFolder = parser.value(workstation);
    options.tourFolder = parser.value(tour);
    options.isTourElsewhere = isElsewhere;
    options.user = parser.value(user);
    options.theme = *chosenTheme;
    return options;
}

} // namespace tavrin::workbench
