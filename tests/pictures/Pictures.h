#pragma once

#include "base/failure/Error.h"
#include "support/TestCase.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QPainter>
#include <QPixmap>
#include <QWidget>

#include <cstdio>

namespace tavrin::test {

/// The window with the lists that are open over it, at the scale of the screen.
inline QPixmap pictureOf(QWidget& window)
{
    QPixmap picture = window.grab();
    for (QWidget* list : QApplication::topLevelWidgets()) {
        if (list->isVisible() && list != &window) {
            QPainter painter(&picture);
            painter.drawPixmap(window.mapFromGlobal(list->pos()), list->grab());
        }
    }
    return picture;
}

/// Writes the picture below the folder under a name as in "AgencyPicker/chosen"; raises an `Error` when that
/// fails.
inline void writePicture(const QPixmap& picture, const QString& folder, const QString& name)
{
    const QFileInfo file(QDir(folder).filePath(name + QStringLiteral(".png")));
    if (!QDir().mkpath(file.path()) || !picture.save(file.filePath()))
        throw Error(QStringLiteral("%1 cannot be written").arg(file.filePath()));
}

/// Writes the picture of the window.
inline void writePicture(QWidget& window, const QString& folder, const QString& name)
{
    QApplication::processEvents();
    writePicture(pictureOf(window), folder, name);
}

/// What a program does that writes pictures, on a platform without a screen: calls `write` with the folder
/// that is named on the command line and with whether pictures are written at 200 %. A failure is told on the
/// standard error, and the program's answer is then 1.
template <typename Write>
int writePictures(int argc, char** argv, Write write, const QByteArray& platform = "offscreen")
{
    qputenv("QT_QPA_PLATFORM", platform);
    const QApplication application(argc, argv);
    try {
        write(QApplication::arguments().value(1, QStringLiteral(".")), application.devicePixelRatio() > 1);
    } catch (const Error& error) {
        std::fprintf(stderr, "%s\n", qPrintable(error.Description));
        return 1;
    }
    return 0;
}

} // namespace tavrin::test

/// The head of the function that writes one subject's pictures: "tests_pictures AgencyPicker FOLDER" runs it.
#define TAVRIN_PICTURES(Subject)                                                                             \
    static int picturesOf##Subject(int argc, char** argv);                                                   \
    TAVRIN_TEST_UNIT(tst_##Subject, picturesOf##Subject)                                                     \
    static int picturesOf##Subject
