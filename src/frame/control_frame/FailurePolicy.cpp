#include "frame/control_frame/FailurePolicy.h"

#include "frame/desktop/Desktop.h"

#ifdef TAVRIN_TRACE
Q_LOGGING_CATEGORY(tavrinTrace, "tavrin.trace")
#endif

namespace tavrin {

QString trapText(const QString& typeName, const QString& routine, const Error& error)
{
    return QStringLiteral("Unexpected error in %1.%2: %3, %4, %5")
        .arg(typeName, routine)
        .arg(error.Number)
        .arg(error.Source, error.Description);
}

void showFailure(QWidget* parent, const QString& prefix, const QString& title)
{
    const Error error = Error::fromCurrentException();
    desktop().messageBoxes->tell(parent, prefix + error.Description, BoxIcon::Critical, title);
}

} // namespace tavrin
