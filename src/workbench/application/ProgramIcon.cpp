#include "workbench/application/ProgramIcon.h"

#include <QString>

namespace tavrin::workbench {

QIcon programIcon()
{
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128, 256}) // each read when it is first shown
        icon.addFile(QStringLiteral(":/icons/%1.png").arg(size), QSize(size, size));
    return icon;
}

} // namespace tavrin::workbench
