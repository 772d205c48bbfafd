#pragma once

#include "base/values/Variant.h"
#include "support/Fakes.h"
#include "testing/FakeRecords.h"

#include <QImage>
#include <QTemporaryDir>

// What the tests of attachments share.

namespace tavrin::test {

using Values = QList<std::pair<const char*, QVariant>>;

/// The columns of an attachment, the key first.
inline QStringList attachmentColumns()
{
    return {QStringLiteral("SeqNo"),    QStringLiteral("FileName"),    QStringLiteral("OriginalFileName"),
            QStringLiteral("FolderNo"), QStringLiteral("Description"), QStringLiteral("Notes"),
            QStringLiteral("UserId"),   QStringLiteral("UserDate")};
}

inline void put(tvTableRow& row, const Values& values)
{
    for (const auto& [name, value] : values)
        fieldOf(row, QString::fromLatin1(name))->SetValue(value);
}

/// A row of attachments; what is not given is Null.
inline tvTableRowPtr attachment(const Values& values)
{
    const tvTableRowPtr row = FakeCollection(attachmentColumns()).NewItem();
    put(*row, values);
    return row;
}

/// A picture of one colour in a file of the folder; its path.
inline QString pictureFile(const QTemporaryDir& folder, const char* name, const QColor& color)
{
    const QString path = folder.filePath(QString::fromLatin1(name));
    QImage picture(8, 8, QImage::Format_RGB32);
    picture.fill(color);
    if (!picture.save(path))
        qFatal("cannot write %s", qPrintable(path));
    return path;
}

} // namespace tavrin::test
