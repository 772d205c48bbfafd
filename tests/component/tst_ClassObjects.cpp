#include "component/ClassMembers.h"
#include "component/ClassRegister.h"
#include "component/ComponentClient.h"
#include "component/SetterRow.h"
#include "support/TestCase.h"

#include <QBuffer>
#include <QImage>

#include <cmath>
#include <memory>
#include <thread>

using namespace Qt::StringLiterals;
using namespace tavrin::test;

Q_DECLARE_METATYPE(TvVariant)

/// Controls by the functions of their classes: members by name, and every way in which a call can be wrong.
class tst_ClassObjects : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init() override
    {
        failOnUnexpectedWarnings();
        m_host = std::make_unique<FakeHost>();
        fillHost(*m_host);
        m_installation = std::make_unique<tavrin::HostInstallation>(*m_host);
    }
    void cleanup() override
    {
        m_installation.reset();
        m_host.reset();
        TestCase::cleanup();
    }

    // What is there

    void everyClassIsThereUnderItsName()
    {
        const char* name = nullptr;
        int index = 0;
        for (const tavrin::PublicClass& one : tavrin::publicClasses()) {
            QCOMPARE(library().ClassName(index++, &name), TV_S_OK);
            QCOMPARE(QString::fromLatin1(name), one.name);
            void* object = nullptr;
            QCOMPARE(DllGetClassObject(name, TV_CLASS_INTERFACE, &object), TV_S_OK);
            const auto& found = *static_cast<const TvClassObject*>(object);
            QCOMPARE(found.size, sizeof(TvClassObject));
            QCOMPARE(found.version, 1U);
            QCOMPARE(QString::fromLatin1(found.className), one.name);
            QCOMPARE(QString::fromLatin1(found.typeLibrary), u"Tavrin Bound User Controls"_s);
            QCOMPARE(QString::fromLatin1(found.typeLibraryVersion), u"1.0"_s);
            QCOMPARE(QString::fromLatin1(found.defaultInterface), one.defaultInterface);
            QCOMPARE(QString::fromLatin1(found.eventInterface), one.eventInterface);
            QCOMPARE(QString::fromLatin1(found.contract), one.contract);
        }
        QCOMPARE(library().ClassName(index, &name), TV_S_FALSE);
        QVERIFY(!name);
        QCOMPARE(library().ClassName(-1, &name), TV_S_FALSE);
    }

    void aClassTellsItsMembersInTheirOrder()
    {
        const TvClassObject& one = classObject("FlatEmployeePicker");
        QStringList names;
        TvMember member{};
        while (one.Member(&one, static_cast<int>(names.size()), &member) == TV_S_OK)
            names << QString::fromLatin1(member.name);
        QCOMPARE(static_cast<int>(names.size()), one.memberCount);
        QStringList expected;
        for (const auto& each :
             tavrin::membersOf(*tavrin::findPublicClass(u"TVBoundControls.FlatEmployeePicker"_s)->meta))
            expected << each.name;
        QCOMPARE(names, expected);
        QCOMPARE(one.Member(&one, one.memberCount - 1, &member), TV_S_OK);
        QCOMPARE(member.kind, int(TV_EVENT));
        QCOMPARE(member.name, "Filter");
        QCOMPARE(member.parameterCount, 2);
        QCOMPARE(member.parameters, "OfficerNo As Long, ByRef Exclude As Boolean");
        QCOMPARE(one.Member(&one, 0, &member), TV_S_OK);
        QCOMPARE(member.kind, int(TV_PROPERTY));
        QCOMPARE(member.readOnly, 1);
        QCOMPARE(member.type, "Long");
        QCOMPARE(one.Member(&one, -1, &member), TV_S_FALSE);
        QVERIFY(!member.name);
    }

    void everyControlCanBeMadeAndEveryPropertyRead()
    {
        for (const tavrin::PublicClass& one : tavrin::publicClasses()) {
            const Made made(one.name.section(u'.', 1).toLatin1());
            TvMember member{};
            for (int i = 0; made.functions.Member(&made.functions, i, &member) == TV_S_OK; ++i) {
                if (member.kind != TV_PROPERTY)
                    continue;
                Answer held;
                QVERIFY2(
                    made.functions.Get(made.handle, member.name, held.out()) == TV_S_OK,
                    qPrintable(one.name + u'.' + QLatin1String(member.name) + u": "_s + lastDescription()));
            }
        }
    }

    // Properties and operations

    void aPropertyIsPutAndReadInItsType_data()
    {
        QTest::addColumn<QByteArray>("control");
        QTest::addColumn<QByteArray>("property");
        QTest::addColumn<TvVariant>("value");
        QTest::addColumn<QString>("held");
        QTest::newRow("boolean") << "AgencyPicker"_ba
                                 << "ShowName"_ba << of(false) << u"false"_s;
        QTest::newRow("number as boolean") << "AgencyPicker"_ba
                                           << "showname"_ba << of(0) << u"false"_s;
        QTest::newRow("long") << "AutoCompleteField"_ba
                              << "TableNo"_ba << of(312) << u"312"_s;
        QTest::newRow("text as long") << "AutoCompleteField"_ba
                                      << "TableNo"_ba << of("312") << u"312"_s;
        QTest::newRow("text") << "SuspRelList"_ba
                              << "OtherItemName"_ba << of("Opfer \xc3\xa4\xf0\x9f\x98\x80") << u"Opfer ä😀"_s;
        QTest::newRow("colour") << "AgencyPicker"_ba
                                << "BackColor"_ba << colored(0x80000008U) << u"colour 80000008"_s;
        QTest::newRow("number as colour") << "AgencyPicker"_ba
                                          << "BackColor"_ba << of(255) << u"colour ff"_s;
        QTest::newRow("value") << "AgencyPicker"_ba
                               << "Value"_ba << null() << u"null"_s;
    }
    void aPropertyIsPutAndReadInItsType()
    {
        QFETCH(QByteArray, control);
        QFETCH(QByteArray, property);
        QFETCH(TvVariant, value);
        QFETCH(QString, held);
        const Made made(control);
        QVERIFY2(made.functions.Put(made.handle, property, &value) == TV_S_OK, qPrintable(lastDescription()));
        Answer answer;
        QCOMPARE(made.functions.Get(made.handle, property, answer.out()), TV_S_OK);
        QCOMPARE(describe(*answer), held);
    }

    void aFontIsPutAndRead()
    {
        const Made made("AgencyPicker");
        TvFont font{"DejaVu Sans", 13.5, 700, 2, 1, 1, 1};
        TvVariant value{};
        value.type = TV_FONT;
        value.value.font = &font;
        QCOMPARE(made.functions.Put(made.handle, "Font", &value), TV_S_OK);
        font.name = "gone"; // it was copied
        Answer answer;
        QCOMPARE(made.functions.Get(made.handle, "Font", answer.out()), TV_S_OK);
        QCOMPARE((*answer).type, int(TV_FONT));
        const TvFont& held = *(*answer).value.font;
        QCOMPARE(held.name, "DejaVu Sans");
        QCOMPARE(held.size, 13.5);
        QCOMPARE(held.weight, 700);
        QCOMPARE(held.charset, 2);
        QCOMPARE(held.italic, 1);
        QCOMPARE(held.underline, 1);
        QCOMPARE(held.strikethrough, 1);
    }

    void aPictureTravelsAsPng()
    {
        const Made made("TavrinDropdown");
        QImage image(3, 2, QImage::Format_ARGB32);
        image.fill(Qt::red);
        QBuffer png;
        QVERIFY(image.save(&png, "PNG"));
        const TvPicture picture{reinterpret_cast<const unsigned char*>(png.data().constData()),
                                static_cast<quint64>(png.size())};
        TvVariant value{};
        value.type = TV_PICTURE;
        value.value.picture = &picture;
        QCOMPARE(made.functions.Put(made.handle, "Icon", &value), TV_S_OK);
        Answer answer;
        QCOMPARE(made.functions.Get(made.handle, "Icon", answer.out()), TV_S_OK);
        QCOMPARE(answer.type(), int(TV_PICTURE));
        const TvPicture& held = *(*answer).value.picture;
        QCOMPARE(QImage::fromData(held.data, static_cast<int>(held.length)).convertToFormat(image.format()),
                 image);
        value.value.picture = nullptr; // none
        QCOMPARE(made.functions.Put(made.handle, "Icon", &value), TV_S_OK);
        Answer none;
        QCOMPARE(made.functions.Get(made.handle, "Icon", none.out()), TV_S_OK);
        QCOMPARE(none.type(), int(TV_PICTURE));
        QVERIFY(!(*none).value.picture);
    }

    void aPropertyGivesAnObjectThatHasMembersItself()
    {
        const Made made("Attachments");
        Answer box;
        QCOMPARE(made.functions.Get(made.handle, "CommentsTextBox", box.out()), TV_S_OK);
        QCOMPARE(box.type(), int(TV_OBJECT));
        const TvHandle handle = (*box).value.object;
        Answer named;
        QCOMPARE(made.functions.Get(handle, "objectName", named.out()), TV_S_OK);
        Answer again;
        QCOMPARE(made.functions.Get(made.handle, "CommentsTextBox", again.out()), TV_S_OK);
        QCOMPARE((*again).value.object, handle);
        QCOMPARE(made.functions.Show(handle, 1), TV_E_NOINTERFACE); // no control
    }

    void anOperationIsCalledByItsName()
    {
        const Made made("AutoCompleteField");
        TvVariant table = of(312);
        QCOMPARE(made.functions.Put(made.handle, "TableNo", &table), TV_S_OK);
        m_host->state().log.clear();
        Answer result;
        QCOMPARE(made.functions.Call(made.handle, "reloadlist", nullptr, 0, result.out()), TV_S_OK);
        QCOMPARE(result.type(), int(TV_EMPTY));
        QVERIFY(m_host->state().log.contains(u"GetTableValues 312"_s));
    }

    void whatAPropertyRaisesReachesTheCaller()
    {
        const Made made("AgencyPicker");
        m_host->failWith(tavrin::Error(u"No list today"_s, 77, u"the host"_s));
        TvVariant value = of(1);
        QCOMPARE(made.functions.Put(made.handle, "Value", &value), TV_E_EXCEPTION);
        TvError error{};
        QCOMPARE(library().LastError(&error), TV_S_OK);
        QCOMPARE(error.result, TV_E_EXCEPTION);
        QCOMPARE(error.number, 77);
        QCOMPARE(error.source, "the host");
        QCOMPARE(error.description, "No list today");
        m_host->failWith({});
    }

    void savedPropertiesTravelAsJson()
    {
        const Made made("SuspRelList");
        TvVariant name = of("Victim");
        QCOMPARE(made.functions.Put(made.handle, "OtherItemName", &name), TV_S_OK);
        Answer json;
        QCOMPARE(made.functions.SavedProperties(made.handle, json.out()), TV_S_OK);
        QCOMPARE(json.text(), u"{\"OtherItemName\":\"Victim\"}"_s);
        const Made other("SuspRelList");
        QCOMPARE(other.functions.RestoreProperties(other.handle, json.text().toUtf8()), TV_S_OK);
        QCOMPARE(other.object()->property("OtherItemName").toString(), u"Victim"_s);
        TvSite site{};
        site.size = sizeof site;
        site.saved = "{\"OtherItemName\": \"Witness\"}";
        site.name = "links";
        TvControl third = 0;
        QCOMPARE(other.functions.Create(&other.functions, &site, &third), TV_S_OK);
        Answer held;
        QCOMPARE(other.functions.Get(third, "OtherItemName", held.out()), TV_S_OK);
        QCOMPARE(held.text(), u"Witness"_s);
        QCOMPARE(other.functions.Destroy(third), TV_S_OK);
    }

    // What is wrong

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
        QCOMPARE(describe(*after), describe(*before));
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
        site.parentKind = TV_PARENT_NONE;
        site.saved = "[]";
        QCOMPARE(one.Create(&one, &site, &control), TV_E_INVALIDARG);
        QCOMPARE(control, TvControl(0));
        TvClassObject copy = one;
        QCOMPARE(one.Create(&copy, nullptr, &control), TV_E_HANDLE);
    }

    void anotherThreadIsRefused()
    {
        const Made made("AgencyPicker");
        TvResult results[4] = {};
        std::thread([&] {
            TvVariant value{};
            TvControl control = 0;
            TvRecord record = 0;
            results[0] = made.functions.Get(made.handle, "Value", &value);
            results[1] = made.functions.Create(&made.functions, nullptr, &control);
            results[2] = library().NewRecord("{}", &record);
            results[3] = made.functions.Destroy(made.handle);
        }).join();
        for (const TvResult result : results)
            QCOMPARE(result, TV_E_WRONGTHREAD);
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
    static QString describe(const TvVariant& value)
    {
        switch (value.type) {
        case TV_EMPTY:
            return u"empty"_s;
        case TV_NULL:
            return u"null"_s;
        case TV_BOOLEAN:
            return value.value.boolean ? u"true"_s : u"false"_s;
        case TV_LONG:
            return QString::number(value.value.integer);
        case TV_TEXT:
            return QString::fromUtf8(value.value.text);
        case TV_COLOR:
            return u"colour "_s + QString::number(value.value.color, 16);
        case TV_FONT:
            return u"font "_s + QString::fromUtf8(value.value.font->name);
        default:
            return u"type %1"_s.arg(value.type);
        }
    }

    std::unique_ptr<FakeHost> m_host;
    std::unique_ptr<tavrin::HostInstallation> m_installation;
};

TAVRIN_TEST_MAIN(tst_ClassObjects)
#include "tst_ClassObjects.moc"
