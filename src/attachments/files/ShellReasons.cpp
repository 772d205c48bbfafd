#include "attachments/files/ShellReasons.h"

#include "base/failure/Error.h"
#include "base/values/Variant.h"
#include "frame/desktop/Desktop.h"

#include <algorithm>
#include <array>

namespace tavrin {

namespace {

constexpr qint16 LastFailure = 32;

struct Reason
{
    qint16 result;
    const char* text;
};

constexpr std::array Reasons = {
    Reason{0, "The operating system is out of memory or resources."},
    Reason{2, "The specified file was not found."},
    Reason{3, "The specified path was not found."},
    Reason{5, "The operating system denied access to the specified file."},
    Reason{8, "There was not enough memory to complete the operation."},
    Reason{26, "A sharing violation occurred."},
    Reason{27, "The file name association is incomplete or invalid."},
    Reason{28, "The DDE transaction could not be comlpete because the request timed out."},
    Reason{29, "The DDE transaction failed."},
    Reason{30, "The DDE transaction could not be completed because other DDE transactions were being "
               "processed."},
    Reason{31, "There is no application associated with the given file name extension."},
    Reason{32, "The specified DLL was not found."},
};

} // namespace

QString shellReason(qint16 result)
{
    if (result > LastFailure)
        return {};
    const auto* known = std::find_if(Reasons.begin(), Reasons.end(),
                                     [result](const Reason& reason) { return reason.result == result; });
    return QString::fromLatin1(known == Reasons.end() ? "A general error occurred trying to open the file."
                                                      : known->text);
}

void ShellOpenFile(const QString& path)
{
    const QString reason = shellReason(ToInteger(desktop().shell->execute(path)));
    if (!reason.isEmpty())
        throw Error(QStringLiteral("Could not open file '") + path + QStringLiteral("'. Reason: ") + reason,
                    ShellOpenFileErrorNumber, QStringLiteral("ShellOpenFile"));
}

} // namespace tavrin
