#pragma once

#include <QTest>
#include <QWindow>

namespace tavrin::test {

/// Types where the window system would: into a window, which gives the keys to whatever has its focus.
inline void typeInto(QWindow* window, const QString& text)
{
    for (const QChar character : text)
        QTest::keyClick(window, character.toLatin1());
}

} // namespace tavrin::test
