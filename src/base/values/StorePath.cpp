#include "base/values/StorePath.h"

#include <algorithm>

namespace tavrin::StorePath {

namespace {

qsizetype componentEnd(const QString& path, qsizetype from)
{
    while (from < path.size() && !isSeparator(path.at(from)))
        ++from;
    return from;
}

/// Where the path ends when separators at its end are left out, but never inside the drive part.
qsizetype trimmedEnd(const QString& path, qsizetype driveLength)
{
    qsizetype end = path.size();
    while (end > driveLength && isSeparator(path.at(end - 1)))
        --end;
    return end;
}

} // namespace

bool isSeparator(QChar character)
{
    return character == u'\\' || character == u'/';
}

QString drivePart(const QString& path)
{
    if (path.size() >= 2 && path.at(1) == u':') {
        // Not by toUpper: letters of other alphabets have capitals between A and Z.
        const QChar letter = path.at(0);
        const bool isLetter = (letter >= u'A' && letter <= u'Z') || (letter >= u'a' && letter <= u'z');
        return isLetter ? path.left(2) : QString();
    }
    if (path.size() < 3 || !isSeparator(path.at(0)) || !isSeparator(path.at(1)))
        return {};
    const qsizetype serverEnd = componentEnd(path, 2);
    if (serverEnd == 2 || serverEnd == path.size())
        return {}; // no server, or a server without a share
    const qsizetype shareEnd = componentEnd(path, serverEnd + 1);
    return shareEnd == serverEnd + 1 ? QString() : path.left(shareEnd);
}

bool hasDrive(const QString& path)
{
    return !drivePart(path).isEmpty();
}

QString join(const QString& folder, const QString& name)
{
    if (folder.isEmpty())
        return name;
    qsizetype start = 0;
    while (start < name.size() && isSeparator(name.at(start)))
        ++start;
    if (start == name.size())
        return folder;
    qsizetype end = folder.size();
    while (end > 0 && isSeparator(folder.at(end - 1)))
        --end;
    return folder.left(end) + u'\\' + name.mid(start);
}

QString lastComponent(const QString& path)
{
    const qsizetype drive = drivePart(path).size();
    const qsizetype end = trimmedEnd(path, drive);
    qsizetype start = end;
    while (start > drive && !isSeparator(path.at(start - 1)))
        --start;
    return path.mid(start, end - start);
}

QString parentFolder(const QString& path)
{
    const qsizetype drive = drivePart(path).size();
    const qsizetype end = trimmedEnd(path, drive);
    const qsizetype cut = end - lastComponent(path).size();
    if (cut == end) // a drive or a root alone has no parent
        return {};
    const QString folder = path.left(cut);
    const qsizetype folderEnd = trimmedEnd(folder, drive);
    if (folderEnd <= drive) // the root of a drive, or of the platform's own tree
        return folder.left(std::min(folder.size(), drive + 1));
    return folder.left(folderEnd);
}

} // namespace tavrin::StorePath
