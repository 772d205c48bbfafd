#include "component/CallResult.h"
#include "component/ClassObjects.h"
#include "component/Registration.h"

#include <QDir>
#include <QFile>
#include <QString>

#include <dlfcn.h>

namespace {

/// Where the library was loaded from, found while it is loaded: a relative path would mean another file as
/// soon as the program has changed its folder. Links are kept: the one that the loader follows outlives
/// updates.
const QString& ownPath()
{
    static const QString path = [] {
        static const char within = 0;
        Dl_info info{};
        if (!dladdr(&within, &info) || !info.dli_fname)
            return QString();
        return QDir::cleanPath(QDir::current().absoluteFilePath(QFile::decodeName(info.dli_fname)));
    }();
    return path;
}

[[maybe_unused]] const bool pathIsKnown = !ownPath().isEmpty();

} // namespace

TvResult DllRegisterServer(void)
{
    return tavrin::borderCall([] {
        tavrin::registerClasses(ownPath());
        return TV_S_OK;
    });
}

TvResult DllUnregisterServer(void)
{
    return tavrin::borderCall([] {
        tavrin::unregisterClasses(ownPath());
        return TV_S_OK;
    });
}

TvResult DllGetClassObject(const char* className, const char* interfaceName, void** object)
{
    return tavrin::borderCall([&] { return tavrin::getClassObject(className, interfaceName, object); });
}

TvResult DllCanUnloadNow(void)
{
    return tavrin::LiveObject::count() == 0 ? TV_S_OK : TV_S_FALSE;
}
