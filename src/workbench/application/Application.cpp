#include "workbench/application/Application.h"

#include "base/failure/Guard.h"
#include "frame/desktop/Desktop.h"

namespace tavrin::workbench {

namespace {

void showUnhandledError(const Error& error, const QString& where)
{
    thread_local bool showing = false;
    if (showing) { // one box at a time; what fails behind it is told on the console
        qWarning("Unhandled error in %s: %s", qPrintable(where), qPrintable(error.Description));
        return;
    }
    showing = true;
    desktop().messageBoxes->tell(
        QApplication::activeWindow(),
        QObject::tr("An unexpected error occurred: %1\n\nNothing that you typed is lost.")
            .arg(error.Description),
        BoxIcon::Critical, QObject::tr("Error"));
    showing = false;
}

} // namespace

Application::Application(int& argc, char** argv)
    : QApplication(argc, argv)
{
    setAttribute(Qt::AA_DontCreateNativeWidgetSiblings);
    setUnhandledErrorHandler(showUnhandledError);
}

bool Application::notify(QObject* receiver, QEvent* event)
{
    try {
        return QApplication::notify(receiver, event);
    } catch (...) { // the last net; every place where Qt calls us has a guard of its own
        reportUnhandledError(QString::fromLatin1(receiver->metaObject()->className()));
        return false;
    }
}

} // namespace tavrin::workbench
