#pragma once

#include <QCoreApplication>
#include <QTest>
#include <QWidget>
#include <QWindow>

namespace tavrin::test {

/// Types where the window system would: into a window, which gives the keys to whatever has its focus.
inline void typeInto(QWindow* window, const QString& text)
{
    for (const QChar character : text)
        QTest::keyClick(window, character.toLatin1());
}

/// Delivers what menus have to tell behind the event that chose a line.
inline void letMenusTell()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::MetaCall);
}

/// Chooses a line of an open menu by its key; returns when what it does is done.
inline void chooseByKey(QWidget* menu, Qt::Key key)
{
    QTest::keyClick(menu, key);
    letMenusTell();
}

} // namespace tavrin::test
