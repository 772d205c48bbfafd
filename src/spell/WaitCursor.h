#pragma once

#include <QCursor>
#include <QGuiApplication>

namespace tavrin {

/// While it lives the mouse shows that the program works and cannot listen: a long text takes seconds.
/// Nothing that may open a window is to run meanwhile.
class WaitCursor
{
public:
    WaitCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QGuiApplication::restoreOverrideCursor(); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

} // namespace tavrin
