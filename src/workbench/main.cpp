#include "base/failure/Error.h"
#include "frame/desktop/Desktop.h"
#include "workbench/application/Application.h"
#include "workbench/application/Options.h"
#include "workbench/application/ProgramIcon.h"
#include "workbench/application/Theme.h"
#include "workbench/application/Workspace.h"
#include "workbench/tour/Tour.h"
#include "workbench/windows/MainWindow.h"

#include <QTemporaryFile>

#include <cstdio>

using namespace tavrin;
using namespace tavrin::workbench;

namespace {

bool isWithoutDisplay = false;
QtMessageHandler printMessage = nullptr;

/// The offscreen platform tells at each window what it cannot do; nobody can do anything about it.
void printUsefulMessage(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (!text.startsWith(QLatin1String("This plugin does not support")))
        printMessage(type, context, text);
}

/// Without a display nothing can be shown; help, the tour and error texts work all the same.
void chooseDisplay()
{
    const bool display = qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
    if (display && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        return;
    if (!display && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        isWithoutDisplay = true;
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    if (qgetenv("QT_QPA_PLATFORM") != "offscreen")
        return;
    printMessage = qInstallMessageHandler(printUsefulMessage);
    // The size of a workstation's screen, not the platform's own 800 x 800.
    static QTemporaryFile screen;
    if (screen.open()) {
        screen.write(R"({"screens": [{"name": "screen", "x": 0, "y": 0, "width": 3840, "height": 2160,
                                      "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})");
        screen.flush();
        qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + QFile::encodeName(screen.fileName()));
    }
}

bool hasDisplay()
{
    return QGuiApplication::platformName() != QLatin1String("offscreen");
}

int work(const Options& options)
{
    Workspace workspace(options);
    if (isWithoutDisplay)
        throw Error(QStringLiteral("There is no display. --tour DIR walks through the program without one."));
    MainWindow window(workspace);
    window.show();
    return QApplication::exec();
}

} // namespace

int main(int argc, char** argv)
{
    chooseDisplay();
    Application application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("tavrin-workbench"));
    QApplication::setApplicationDisplayName(QStringLiteral("Incident records"));
    QApplication::setApplicationVersion(QStringLiteral("1.0"));
    QApplication::setWindowIcon(programIcon());
    QApplication::setDesktopFileName(QStringLiteral("org.tavrin.workbench"));

    int exitCode = 0;
    const std::optional<Options> options = parseOptions(QApplication::arguments(), exitCode);
    if (!options)
        return exitCode;
    applyTheme(isDark(options->theme));
    try {
        return options->tourFolder.isEmpty() ? work(*options) : runTour(*options);
    } catch (const Error& error) {
        std::fprintf(stderr, "workbench: %s\n", qPrintable(error.Description));
        if (hasDisplay() && options->tourFolder.isEmpty()) {
            desktop().messageBoxes->tell(nullptr, error.Description, BoxIcon::Critical,
                                         QApplication::applicationDisplayName());
        }
        return 1;
    }
}
