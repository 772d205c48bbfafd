#pragma once

#include "base/Error.h"

#include <QApplication>
#include <QDir>
#include <QPainter>
#include <QWidget>

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

/// Writes the picture of the window; raises an `Error` when that fails.
inline void writePicture(QWidget& window, const QString& folder, const QString& name)
{
    QApplication::processEvents();
    const QString path = QDir(folder).filePath(name + QStringLiteral(".png"));
    if (!pictureOf(window).save(path))
        throw Error(QStringLiteral("%1 cannot be written").arg(path));
}

} // namespace tavrin::test
