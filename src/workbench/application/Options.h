#pragma once

#include "workbench/application/Theme.h"

#include <QStringList>

#include <optional>

namespace tavrin::workbench {

/// What the person asked for on the command line.
struct Options
{
    /// The database; "" takes the person's own place for the data of applications.
    QString database;
    /// Sample data and code tables for a new database; "" takes the built-in ones.
    QString dataFolder;
    /// Form files that take the place of the built-in ones of the same name; "" for none.
    QString formsFolder;
    /// Where the tour writes its pictures; "" starts the program for a person.
    QString tourFolder;
    /// Where downloads go; "" takes the platform's place.
    QString downloadsFolder;
    /// Where the workstation keeps its dictionaries; "" takes the person's own place for the data of
    /// applications, where each database has its own custom words.
    QString workstationFolder;
    /// The part of the tour that another workstation sees, on `database`; the tour itself starts it.
    bool isTourElsewhere = false;
    QString user = QStringLiteral("admin");
    ThemeChoice theme = ThemeChoice::System;
};

/// The database of a start without `--db`, in the person's own place for the data of applications.
QString defaultDatabasePath();

/// The options, or nothing when the program is to end with `exitCode`: help and version are printed on
/// standard output (0), an unknown option, an unknown or empty value gives the usage on standard error (2).
std::optional<Options> parseOptions(const QStringList& arguments, int& exitCode);

} // namespace tavrin::workbench
