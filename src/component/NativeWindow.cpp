#include "component/NativeWindow.h"

#include <QGuiApplication>
#include <QLibrary>
#include <QtGlobal>

#include <cstdlib>
#include <limits>

namespace tavrin {

namespace {

#if QT_CONFIG(xcb)

/// As xcb declares it, whose headers are not needed for two functions.
struct XcbCookie
{
    unsigned int sequence;
};
using AskAttributes = XcbCookie (*)(xcb_connection_t*, quint32 window);
using AttributesReply = void* (*)(xcb_connection_t*, XcbCookie, void** error);

bool isX11Window(xcb_connection_t* connection, WId window)
{
    // The platform's plugin has loaded the library; here it is only looked up.
    const QString library = QStringLiteral("xcb");
    static const auto ask =
        reinterpret_cast<AskAttributes>(QLibrary::resolve(library, 1, "xcb_get_window_attributes"));
    static const auto reply =
        reinterpret_cast<AttributesReply>(QLibrary::resolve(library, 1, "xcb_get_window_attributes_reply"));
    if (!ask || !reply)
        return true;
    if (window > std::numeric_limits<quint32>::max())
        return false;
    void* error = nullptr; // asked for, so that Qt does not find it among its events
    void* attributes = reply(connection, ask(connection, static_cast<quint32>(window)), &error);
    const bool isThere = attributes != nullptr;
    std::free(attributes); // NOLINT(cppcoreguidelines-no-malloc): as xcb wants it
    std::free(error);      // NOLINT(cppcoreguidelines-no-malloc)
    return isThere;
}

#endif

} // namespace

bool mayBeWindow(WId window)
{
#if QT_CONFIG(xcb)
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 && x11->connection())
        return isX11Window(x11->connection(), window);
#else
    Q_UNUSED(window)
#endif
    return true;
}

} // namespace tavrin
