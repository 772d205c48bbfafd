#pragma once

#include "support/ProbeControl.h"

#include <QLineEdit>
#include <QTest>

#include <utility>

namespace tavrin::test {

/// A window with two probes, each with a line edit in it, and a box that belongs to neither.
struct FocusStage
{
    FocusStage()
        : a(new ProbeControl(&window, {QStringLiteral("a")}, &journal))
        , b(new ProbeControl(&window, {QStringLiteral("b")}, &journal))
        , outside(new QLineEdit(&window))
        , editA(new QLineEdit(a))
        , secondA(new QLineEdit(a))
        , editB(new QLineEdit(b))
    {
        window.resize(300, 200);
        a->setGeometry(0, 0, 100, 60);
        b->setGeometry(0, 70, 100, 60);
        outside->setGeometry(0, 140, 100, 24);
        secondA->move(0, 30);
        window.show();
        window.activateWindow();
        outside->setFocus();
    }
    bool isReady()
    {
        const bool ready = QTest::qWaitForWindowActive(&window) && outside->hasFocus();
        journal.clear();
        return ready;
    }

    /// What happened since the last call.
    QStringList take() { return std::exchange(journal, {}); }
    /// A key where the window system would give it.
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(window.windowHandle(), key, modifiers);
    }

    QStringList journal;
    QWidget window;
    ProbeControl* a;
    ProbeControl* b;
    QLineEdit* outside;
    QLineEdit* editA;
    QLineEdit* secondA;
    QLineEdit* editB;
};

} // namespace tavrin::test
