#include "component/ClassMembers.h"
#include "component/ClassRegister.h"
#include "component/HostedTest.h"

#include <QBuffer>
#include <QImage>

using namespace Qt::StringLiterals;
using namespace tavrin::test;

Q_DECLARE_METATYPE(TvVariant)

/// Controls by the functions of their classes: what is there, and its members by name.
class tst_ClassObjects : public tavrin::test::HostedTest
{
    Q_OBJECT

private Q_SLOTS:
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
        host().state().log.clear();
        Answer result;
        QCOMPARE(made.functions.Call(made.handle, "reloadlist", nullptr, 0, result.out()), TV_S_OK);
        QCOMPARE(result.type(), int(TV_EMPTY));
        QVERIFY(host().state().log.contains(u"GetTableValues 312"_s));
    }

    void whatAPropertyRaisesReachesTheCaller()
    {
        const Made made("AgencyPicker");
        host().failWith(tavrin::Error(u"No list today"_s, 77, u"the host"_s));
        TvVariant value = of(1);
        QCOMPARE(made.functions.Put(made.handle, "Value", &value), TV_E_EXCEPTION);
        TvError error{};
        QCOMPARE(library().LastError(&error), TV_S_OK);
        QCOMPARE(error.result, TV_E_EXCEPTION);
        QCOMPARE(error.number, 77);
        QCOMPARE(error.source, "the host");
        QCOMPARE(error.description, "No list today");
        host().failWith({});
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
};

TAVRIN_TEST_MAIN(tst_ClassObjects)
#include "tst_ClassObjects.moc"
