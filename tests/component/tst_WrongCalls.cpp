#include "component/HostedTest.h"
#include "component/Program.h"

#include <QScopeGuard>

#include <cmath>

using namespace Qt::StringLiterals;
using namespace tavrin::test;

Q_DECLARE_METATYPE(TvVariant)

/// Every way in which a call of a class's functions can be wrong, and what goes wrong below it.
class tst_WrongCalls : public tavrin::test::HostedTest
{
    Q_OBJECT

private Q_SLOTS:
    void wrongNamesAreRefused()
    {
        void* object = this;
        QCOMPARE(DllGetClassObject("TVBoundControls.Nothing", TV_CLASS_INTERFACE, &object),
                 TV_E_CLASSNOTAVAILABLE);
        QVERIFY(!object);
        QCOMPARE(lastDescription(), u"The library has no class \"TVBoundControls.Nothing\""_s);
        QCOMPARE(DllGetClassObject("TVBoundControls.LatLong", "IOther", &object), TV_E_NOINTERFACE);
        QCOMPARE(lastDescription(), u"TVBoundControls.LatLong has no interface \"IOther\""_s);
        QCOMPARE(DllGetClassObject(TV_LIBRARY_CLASS, TV_CLASS_INTERFACE, &object), TV_E_NOINTERFACE);
        QCOMPARE(DllGetClassObject("\xff", TV_CLASS_INTERFACE, &object), TV_E_INVALIDARG);

        const Made made("AgencyPicker");
        Answer answer;
        QCOMPARE(made.functions.Get(made.handle, "Nothing", answer.out()), TV_E_MEMBERNOTFOUND);
        QCOMPARE(lastDescription(), u"AgencyPicker has no property \"Nothing\""_s);
        QCOMPARE(made.functions.Get(made.handle, "objectName", answer.out()),
                 TV_E_MEMBERNOTFOUND); // not published
        TvVariant value = of(1);
        QCOMPARE(made.functions.Put(made.handle, "Nothing", &value), TV_E_MEMBERNOTFOUND);
        QCOMPARE(made.functions.Call(made.handle, "Change", nullptr, 0, nullptr), TV_E_MEMBERNOTFOUND);
        QCOMPARE(lastDescription(), u"AgencyPicker has no operation \"Change\""_s);
        QCOMPARE(made.functions.Call(made.handle, "deleteLater", nullptr, 0, nullptr), TV_E_MEMBERNOTFOUND);
    }

    void nullPointersAreRefused()
    {
        const Made made("AgencyPicker");
        const TvClassObject& one = made.functions;
        const TvControl control = made.handle;
        TvVariant variant{};
        TvMember member{};
        TvControl none = 7;
        void* object = nullptr;
        QCOMPARE(DllGetClassObject(nullptr, TV_CLASS_INTERFACE, &object), TV_E_POINTER);
        QCOMPARE(DllGetClassObject(one.className, nullptr, &object), TV_E_POINTER);
        QCOMPARE(DllGetClassObject(one.className, TV_CLASS_INTERFACE, nullptr), TV_E_POINTER);
        QCOMPARE(one.Member(nullptr, 0, &member), TV_E_POINTER);
        QCOMPARE(one.Member(&one, 0, nullptr), TV_E_POINTER);
        QCOMPARE(one.Create(nullptr, nullptr, &none), TV_E_POINTER);
        QCOMPARE(none, TvControl(0));
        QCOMPARE(one.Create(&one, nullptr, nullptr), TV_E_POINTER);
        QCOMPARE(one.SetTitle(control, nullptr), TV_E_POINTER);
        QCOMPARE(one.Get(control, nullptr, &variant), TV_E_POINTER);
        QCOMPARE(one.Get(control, "Value", nullptr), TV_E_POINTER);
        QCOMPARE(one.Put(control, nullptr, &variant), TV_E_POINTER);
        QCOMPARE(one.Put(control, "Value", nullptr), TV_E_POINTER);
        QCOMPARE(one.Call(control, nullptr, nullptr, 0, nullptr), TV_E_POINTER);
        QCOMPARE(one.Call(control, "Anything", nullptr, 1, nullptr), TV_E_POINTER);
        QCOMPARE(one.Subscribe(control, nullptr, nullptr, nullptr, nullptr), TV_E_POINTER);
        QCOMPARE(one.Subscribe(control, "Change", nullptr, nullptr, nullptr), TV_E_POINTER);
        QCOMPARE(one.SavedProperties(control, nullptr), TV_E_POINTER);
        QCOMPARE(one.RestoreProperties(control, nullptr), TV_E_POINTER);
        QCOMPARE(one.Contract(control, nullptr, nullptr, 0, nullptr), TV_E_POINTER);
        QCOMPARE(one.Contract(control, "SetValue", nullptr, 1, nullptr), TV_E_POINTER);
        QCOMPARE(one.QtObject(control, nullptr), TV_E_POINTER);
        QCOMPARE(one.HandleOf(nullptr, &none), TV_E_POINTER);
        QCOMPARE(one.HandleOf(&object, nullptr), TV_E_POINTER);
        TvVariant text = of(static_cast<const char*>(nullptr));
        QCOMPARE(one.Put(control, "Value", &text), TV_E_POINTER);
        for (const int type : {int(TV_FONT), int(TV_LIST)}) {
            TvVariant nothing{};
            nothing.type = type;
            QCOMPARE(one.Put(control, "Font", &nothing), TV_E_POINTER);
        }
        QCOMPARE(lastDescription(), u"A pointer is null"_s);
    }

    void valuesOfAnotherTypeAreRefused_data()
    {
        QTest::addColumn<QByteArray>("control");
        QTest::addColumn<QByteArray>("property");
        QTest::addColumn<TvVariant>("value");
        QTest::addColumn<int>("result");
        TvVariant unknown{};
        unknown.type = 4711;
        QTest::newRow("text for long") << "AutoCompleteField"_ba
                                       << "TableNo"_ba << of("many") << TV_E_TYPEMISMATCH;
        QTest::newRow("null for long") << "AutoCompleteField"_ba
                                       << "TableNo"_ba << null() << TV_E_TYPEMISMATCH;
        QTest::newRow("too much") << "AutoCompleteField"_ba
                                  << "TableNo"_ba << of(1e12) << TV_E_OVERFLOW;
        QTest::newRow("no number") << "AutoCompleteField"_ba
                                   << "TableNo"_ba << of(std::nan("")) << TV_E_OVERFLOW;
        QTest::newRow("text for boolean") << "AgencyPicker"_ba
                                          << "Enabled"_ba << of("maybe") << TV_E_TYPEMISMATCH;
        QTest::newRow("long for font") << "AgencyPicker"_ba
                                       << "Font"_ba << of(1) << TV_E_TYPEMISMATCH;
        QTest::newRow("null for font") << "AgencyPicker"_ba
                                       << "Font"_ba << null() << TV_E_TYPEMISMATCH;
        QTest::newRow("text for colour") << "AgencyPicker"_ba
                                         << "BackColor"_ba << of("red") << TV_E_TYPEMISMATCH;
        QTest::newRow("long for picture") << "TavrinDropdown"_ba
                                          << "Icon"_ba << of(1) << TV_E_TYPEMISMATCH;
        QTest::newRow("null for text") << "SuspRelList"_ba
                                       << "OtherItemName"_ba << null() << TV_E_TYPEMISMATCH;
        QTest::newRow("bad UTF-8") << "SuspRelList"_ba
                                   << "OtherItemName"_ba << of("\xc3") << TV_E_INVALIDARG;
        QTest::newRow("no type") << "AgencyPicker"_ba
                                 << "Value"_ba << unknown << TV_E_TYPEMISMATCH;
        QTest::newRow("dead object") << "AgencyPicker"_ba
                                     << "Value"_ba << objectOf(999999) << TV_E_HANDLE;
        QTest::newRow("read-only") << "AgencyPicker"_ba
                                   << "FullText"_ba << of("x") << TV_E_ACCESSDENIED;
    }
    void valuesOfAnotherTypeAreRefused()
    {
        QFETCH(QByteArray, control);
        QFETCH(QByteArray, property);
        QFETCH(TvVariant, value);
        QFETCH(int, result);
        const Made made(control);
        Answer before;
        QCOMPARE(made.functions.Get(made.handle, property, before.out()), TV_S_OK);
        QCOMPARE(made.functions.Put(made.handle, property, &value), result);
        QVERIFY(!lastDescription().isEmpty());
        Answer after;
        QCOMPARE(made.functions.Get(made.handle, property, after.out()), TV_S_OK);
        QCOMPARE(Program::describe(*after), Program::describe(*before));
    }

    void aWrongNumberOfArgumentsIsRefused()
    {
        const Made made("TavrinSpellcheck");
        TvVariant arguments[] = {null(), null()};
        QCOMPARE(made.functions.Call(made.handle, "CheckSpelling", nullptr, 0, nullptr), TV_E_BADPARAMCOUNT);
        QCOMPARE(lastDescription(), u"\"CheckSpelling\" takes 1 arguments, and not 0"_s);
        QCOMPARE(made.functions.Call(made.handle, "CheckSpelling", arguments, 2, nullptr),
                 TV_E_BADPARAMCOUNT);
        QCOMPARE(made.functions.Call(made.handle, "CheckSpelling", arguments, -1, nullptr), TV_E_INVALIDARG);
        arguments[0] = of("no object");
        QCOMPARE(made.functions.Call(made.handle, "CheckSpelling", arguments, 1, nullptr), TV_E_TYPEMISMATCH);
    }

    void aSiteThatIsWrongIsRefused()
    {
        const TvClassObject& one = classObject("AgencyPicker");
        TvControl control = 0;
        TvSite site{};
        QCOMPARE(one.Create(&one, &site, &control), TV_E_INVALIDARG); // no size
        site.size = sizeof site;
        site.parentKind = 9;
        QCOMPARE(one.Create(&one, &site, &control), TV_E_INVALIDARG);
        site.parentKind = TV_PARENT_NATIVE;
        QCOMPARE(one.Create(&one, &site, &control), TV_E_HANDLE);
        site.parent = 12345;
        QTest::ignoreMessage(QtWarningMsg,
                             "QWindow::fromWinId(): platform plugin does not support foreign windows.");
        QCOMPARE(one.Create(&one, &site, &control), TV_E_NOTIMPL); // not on this platform
        site.parentKind = TV_PARENT_CONTROL;
        QCOMPARE(one.Create(&one, &site, &control), TV_E_HANDLE);
        QCOMPARE(library().NewRecord("{}", &site.parent), TV_S_OK);
        QCOMPARE(one.Create(&one, &site, &control), TV_E_NOINTERFACE); // a record
        QCOMPARE(library().ReleaseRecord(site.parent), TV_S_OK);
        site.parentKind = TV_PARENT_QWIDGET;
        site.parent = 0;
        QCOMPARE(one.Create(&one, &site, &control), TV_E_HANDLE);
        site.parentKind = TV_PARENT_NONE;
        site.saved = "[]";
        QCOMPARE(one.Create(&one, &site, &control), TV_E_INVALIDARG);
        site.saved = nullptr;
        site.name = "\xff";
        QCOMPARE(one.Create(&one, &site, &control), TV_E_INVALIDARG);
        QCOMPARE(control, TvControl(0));
        TvClassObject copy = one;
        QCOMPARE(one.Create(&copy, nullptr, &control), TV_E_HANDLE);
    }

    void whatAControlOrItsHostRaisesIsAnExceptionOfEveryFunction()
    {
        const Made made("AutoCompleteField");
        TvVariant table = of(Races);
        QCOMPARE(made.functions.Put(made.handle, "TableNo", &table), TV_S_OK);
        tavrin::modUtils::ReleaseNibrsModule();
        host().failWith(tavrin::Error(u"No list today"_s, 77, u"the host"_s));
        const TvClassObject& nibrs = classObject("NibrsOffensePicker");
        TvControl control = 0;
        QCOMPARE(nibrs.Create(&nibrs, nullptr, &control), TV_E_EXCEPTION);
        QCOMPARE(control, TvControl(0));
        QCOMPARE(lastDescription(), u"No list today"_s);
        QCOMPARE(lastNumber(), 77);
        host().failWith({});
    }

    void theFailureOfWhoeverHearsOfARefreshIsAnException()
    {
        const auto ask = [](const char*, const char*, const TvVariant*, int32_t, TvVariant*,
                            void*) -> TvResult { return TV_E_MEMBERNOTFOUND; };
        QCOMPARE(library().SetHost(ask, nullptr), TV_S_OK);
        const auto end = qScopeGuard([] { library().SetHost(nullptr, nullptr); });
        const auto kept = tavrin::currentHost().hostServices().Events().CacheRefreshed.subscribe(
            [&](const tavrin::CacheRefreshInfo&) { throw tavrin::Error(u"Not now"_s, 78); });
        QCOMPARE(library().RaiseCacheRefreshed(), TV_E_EXCEPTION);
        QCOMPARE(lastNumber(), 78);
    }

    void anArgumentMayTakeTheResult()
    {
        const Made made("TavrinSpellcheck");
        TvVariant both = of("no object");
        QCOMPARE(made.functions.Call(made.handle, "CheckSpelling", &both, 1, &both), TV_E_TYPEMISMATCH);
        QCOMPARE(lastNumber(), tavrin::Error::TypeMismatchNumber);
        QVERIFY(lastDescription().startsWith(u"CheckSpelling: "_s));
        QCOMPARE(both.type, int(TV_EMPTY));
        both = of("x");
        QCOMPARE(made.functions.Call(made.handle, nullptr, &both, 1, &both), TV_E_POINTER);
        QCOMPARE(both.type, int(TV_EMPTY));
        both.type = 4711;
        QCOMPARE(made.functions.Call(made.handle, "CheckSpelling", &both, 1, &both), TV_E_TYPEMISMATCH);
        QCOMPARE(both.type, int(TV_EMPTY));
    }
};

TAVRIN_TEST_MAIN(tst_WrongCalls)
#include "tst_WrongCalls.moc"
