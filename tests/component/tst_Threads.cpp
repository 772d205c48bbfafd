#include "component/HostedTest.h"
#include "support/RaisedError.h"

#include <QScopeGuard>
#include <QTimer>

#include <thread>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;
using namespace tavrin::test;

/// What may be called on which thread.
class tst_Threads : public tavrin::test::HostedTest
{
    Q_OBJECT

private Q_SLOTS:
    void anotherThreadIsRefused()
    {
        const Made made("AgencyPicker");
        TvRecord record = 0;
        QCOMPARE(library().NewRecord("{}", &record), TV_S_OK);
        std::vector<std::pair<const char*, TvResult>> results;
        std::thread([&] { results = resultsOfAllFunctions(made, record); }).join();
        for (const auto& [name, result] : results)
            QVERIFY2(result == TV_E_WRONGTHREAD, name);
        Answer text;
        QCOMPARE(library().RecordText(record, text.out()), TV_S_OK); // it is still there
        QCOMPARE(library().ReleaseRecord(record), TV_S_OK);
    }

    void anotherThreadChangesNoHost()
    {
        const auto ask = [](const char*, const char*, const TvVariant*, int32_t, TvVariant*,
                            void*) -> TvResult { return TV_E_MEMBERNOTFOUND; };
        QCOMPARE(library().SetHost(ask, nullptr), TV_S_OK);
        const auto end = qScopeGuard([] { library().SetHost(nullptr, nullptr); });
        int refreshed = 0;
        const auto kept = tavrin::currentHost().hostServices().Events().CacheRefreshed.subscribe(
            [&](const tavrin::CacheRefreshInfo&) { ++refreshed; });
        bool hasHost = true;
        std::thread([&] {
            library().SetHost(ask, nullptr);
            hasHost = raisedBy([] { tavrin::currentHost(); }).Number == 0;
            library().SetHost(nullptr, nullptr);
            library().RaiseCacheRefreshed();
        }).join();
        QVERIFY(!hasHost);
        QCOMPARE(refreshed, 0);
        QCOMPARE(library().RaiseCacheRefreshed(), TV_S_OK);
        QCOMPARE(refreshed, 1);
    }

    void anotherThreadDoesNotEndTheLoop()
    {
        TvResult quit = TV_S_OK;
        bool wentOn = false;
        QTimer::singleShot(0, [&] {
            std::thread([&] { quit = library().Quit(); }).join();
            QTimer::singleShot(0, [&] {
                wentOn = true;
                library().Quit();
            });
        });
        QCOMPARE(library().Run(), TV_S_OK);
        QCOMPARE(quit, TV_E_WRONGTHREAD);
        QVERIFY(wentOn);
    }

    void classesAndValuesServeAnyThread()
    {
        const TvClassObject& one = classObject("AgencyPicker");
        std::vector<TvResult> results;
        std::thread([&] {
            TvMember member{};
            TvVariant value{};
            const TvFont font{"Sans", 9, 400, 0, 0, 0, 0};
            const char* name = nullptr;
            void* object = nullptr;
            results = {one.Member(&one, 0, &member),
                       library().ClassName(0, &name),
                       library().SetText(&value, "a"),
                       library().SetPicture(&value, nullptr, 0),
                       library().SetFont(&value, &font),
                       library().SetList(&value, 1),
                       library().VariantClear(&value),
                       DllGetClassObject(one.className, TV_CLASS_INTERFACE, &object)};
        }).join();
        for (const TvResult result : results)
            QCOMPARE(result, TV_S_OK);
    }

    void theLastErrorBelongsToTheThread()
    {
        const Made made("AgencyPicker");
        Answer answer;
        QCOMPARE(made.functions.Get(made.handle, "Nothing", answer.out()), TV_E_MEMBERNOTFOUND);
        QByteArray theirs = "unset";
        std::thread([&] {
            TvError error{};
            library().LastError(&error);
            theirs = error.description;
        }).join();
        QCOMPARE(theirs, ""_ba);
        QCOMPARE(lastDescription(), u"AgencyPicker has no property \"Nothing\""_s);
        QCOMPARE(library().LastError(nullptr), TV_E_POINTER);
    }

private:
    /// What each function that belongs to the controls' thread answers here.
    static std::vector<std::pair<const char*, TvResult>> resultsOfAllFunctions(const Made& made,
                                                                               TvRecord record)
    {
        const TvClassObject& one = made.functions;
        const TvControl control = made.handle;
        const auto hear = [](TvControl, const char*, TvVariant*, int32_t, void*) -> TvResult { return 0; };
        const auto ask = [](const char*, const char*, const TvVariant*, int32_t, TvVariant*,
                            void*) -> TvResult { return TV_E_MEMBERNOTFOUND; };
        TvControl other = 0;
        TvVariant value{};
        void* object = nullptr;
        QObject there;
        return {{"StartApplication", library().StartApplication()},
                {"EndApplication", library().EndApplication()},
                {"ProcessEvents", library().ProcessEvents(0)},
                {"Run", library().Run()},
                {"Quit", library().Quit()},
                {"SetHost", library().SetHost(ask, nullptr)},
                {"SetHost(NULL)", library().SetHost(nullptr, nullptr)},
                {"RaiseCacheRefreshed", library().RaiseCacheRefreshed()},
                {"NewRecord", library().NewRecord("{}", &other)},
                {"RecordText", library().RecordText(record, &value)},
                {"ReleaseRecord", library().ReleaseRecord(record)},
                {"Create", one.Create(&one, nullptr, &other)},
                {"Show", one.Show(control, 1)},
                {"Move", one.Move(control, 0, 0, 1, 1)},
                {"SetTitle", one.SetTitle(control, "")},
                {"Get", one.Get(control, "Value", &value)},
                {"Put", one.Put(control, "Value", &value)},
                {"Call", one.Call(control, "Anything", nullptr, 0, nullptr)},
                {"Subscribe", one.Subscribe(control, "Change", hear, nullptr, nullptr)},
                {"Unsubscribe", one.Unsubscribe(control, 1)},
                {"SavedProperties", one.SavedProperties(control, &value)},
                {"RestoreProperties", one.RestoreProperties(control, "{}")},
                {"Contract", one.Contract(control, "GetValue", nullptr, 0, &value)},
                {"QtObject", one.QtObject(control, &object)},
                {"HandleOf", one.HandleOf(&there, &other)},
                {"Destroy", one.Destroy(control)}};
    }
};

TAVRIN_TEST_MAIN(tst_Threads)
#include "tst_Threads.moc"
