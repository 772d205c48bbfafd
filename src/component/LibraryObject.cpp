#include "base/failure/Guard.h"
#include "component/ClassObjects.h"
#include "component/ClassRegister.h"
#include "component/ControlWindows.h"
#include "component/Handles.h"
#include "component/LateHost.h"
#include "component/RecordText.h"
#include "component/Values.h"

#include <QCoreApplication>

namespace tavrin {

namespace {

// Failures

TvResult lastError(TvError* error)
{
    return borderCall([&] {
        wantPointers(error);
        *error = lastFailure();
        return TV_S_OK;
    });
}

TvResult raiseError(int32_t number, const char* source, const char* description)
{
    return borderCall([&] {
        noteRaised(number, source ? toText(source) : QString(),
                   description ? toText(description) : QString());
        return TV_E_EXCEPTION;
    });
}

TvResult setUnhandled(TvUnhandledCall call, void* context)
{
    return borderCall([&] {
        if (!call) {
            setUnhandledErrorHandler({});
            return TV_S_OK;
        }
        setUnhandledErrorHandler([call, context](const Error& error, const QString& where) {
            const QByteArray source = error.Source.toUtf8();
            const QByteArray description = error.Description.toUtf8();
            const TvError told{TV_E_EXCEPTION, error.Number, source.constData(), description.constData()};
            const CallbackScope scope;
            call(&told, where.toUtf8().constData(), context);
        });
        return TV_S_OK;
    });
}

// Values

TvResult variantClear(TvVariant* variant)
{
    return borderCall([&] {
        wantPointers(variant);
        clearVariant(*variant);
        return TV_S_OK;
    });
}

TvResult setText(TvVariant* variant, const char* text)
{
    return borderCall([&] {
        wantPointers(variant);
        putText(*variant, toText(text));
        return TV_S_OK;
    });
}

TvResult setPicture(TvVariant* variant, const unsigned char* png, uint64_t length)
{
    return borderCall([&] {
        wantPointers(variant);
        if (length > 0)
            wantPointers(png);
        putPicture(*variant, QByteArray(reinterpret_cast<const char*>(png), static_cast<qsizetype>(length)));
        return TV_S_OK;
    });
}

TvResult setFont(TvVariant* variant, const TvFont* font)
{
    return borderCall([&] {
        wantPointers(variant, font);
        putFont(*variant, *font);
        return TV_S_OK;
    });
}

TvResult setList(TvVariant* variant, int32_t count)
{
    return borderCall([&] {
        wantPointers(variant);
        if (count < 0)
            throw CallError(TV_E_INVALIDARG, QStringLiteral("A count is negative"));
        putList(*variant, count);
        return TV_S_OK;
    });
}

// The application

TvResult startApplicationCall()
{
    return borderCall([] { return startApplication() ? TV_S_OK : TV_S_FALSE; });
}

TvResult endApplicationCall()
{
    return borderCall([] { return endApplication() ? TV_S_OK : TV_S_FALSE; });
}

TvResult processEventsCall(int32_t milliseconds)
{
    return borderCall([&] {
        processEvents(milliseconds);
        return TV_S_OK;
    });
}

TvResult runCall()
{
    return borderCall([] {
        runApplication();
        return TV_S_OK;
    });
}

TvResult quitCall()
{
    return borderCall([] {
        wantOwnThread();
        if (QCoreApplication::instance())
            QCoreApplication::quit();
        return TV_S_OK;
    });
}

// The host

TvResult setHost(TvHostCall call, void* context)
{
    return borderCall([&] {
        wantOwnThread();
        installLateHost(call, context);
        return TV_S_OK;
    });
}

TvResult raiseCacheRefreshed()
{
    return borderCall([] {
        wantOwnThread();
        EventHub& events = lateHostEvents();
        raisingException([&] { events.CacheRefreshed.raise({}); });
        return TV_S_OK;
    });
}

// Records

TvResult newRecord(const char* json, TvRecord* record)
{
    return borderCall([&] {
        wantPointers(record);
        *record = 0;
        wantOwnThread();
        *record = handles().add(recordFromText(toText(json)));
        return TV_S_OK;
    });
}

TvResult recordText(TvRecord record, TvVariant* json)
{
    return borderCall([&] {
        wantPointers(json);
        *json = {};
        putText(*json, textOfRecord(handles().record(record)));
        return TV_S_OK;
    });
}

TvResult releaseRecord(TvRecord record)
{
    return borderCall([&] {
        handles().record(record);
        handles().remove(record);
        return TV_S_OK;
    });
}

// Classes

TvResult className(int32_t index, const char** name)
{
    return borderCall([&] {
        wantPointers(name);
        *name = nullptr;
        static const auto* const names = [] {
            auto* all = new QList<QByteArray>; // callers hold them as long as the library is loaded
            for (const PublicClass& one : publicClasses())
                all->append(one.name.toUtf8());
            return all;
        }();
        if (index < 0 || index >= names->size())
            return TV_S_FALSE;
        *name = names->at(index).constData();
        return TV_S_OK;
    });
}

} // namespace

const TvLibrary& libraryObject()
{
    static const TvLibrary library{sizeof(TvLibrary),
                                   1,
                                   lastError,
                                   raiseError,
                                   setUnhandled,
                                   variantClear,
                                   setText,
                                   setPicture,
                                   setFont,
                                   setList,
                                   startApplicationCall,
                                   endApplicationCall,
                                   processEventsCall,
                                   runCall,
                                   quitCall,
                                   setHost,
                                   raiseCacheRefreshed,
                                   newRecord,
                                   recordText,
                                   releaseRecord,
                                   className};
    return library;
}

} // namespace tavrin
