#pragma once

#include <QString>

namespace tavrin::test {

/// What a person is told where nobody has set the folder of attachments.
inline const QString FolderNotSet = QStringLiteral(
    "The \"Attachments Folder\" setting is not currently configured under \"<General>\" in Default Values in "
    "Administration. Configure this setting to use attachments.");

} // namespace tavrin::test
