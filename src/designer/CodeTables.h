#pragma once

#include <QList>
#include <QString>

namespace tavrin::designer {

struct CodeTable
{
    int number = 0;
    QString name;
};

/// The host's code tables by name, as a host may install them for its form developers: a file
/// "TVBoundControls/tables.csv" in a folder of data of the machine or the person, with the columns TableNo
/// and Name, in UTF-8. Without such a file there are none. Rows that cannot be read are left out, with one
/// warning that names the file and the line of the first.
QList<CodeTable> installedCodeTables();

} // namespace tavrin::designer
