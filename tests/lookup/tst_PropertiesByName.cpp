#include "base/failure/ByName.h"
#include "base/failure/Error.h"
#include "base/values/Variant.h"
#include "component/ClassRegister.h"
#include "frame/modUtils.h"
#include "lookup/AgencyForm.h"
#include "lookup/FlatPickerForm.h"
#include "support/RaisedError.h"
#include "support/TestCase.h"
#include "testing/Unhandled.h"

#include <QMetaProperty>

#include <array>
#include <memory>
#include <vector>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

constexpr TableNumber Weapons = 301;

/// One control on a host that knows something of everything.
struct Site
{
    explicit Site(const QString& control)
        : name(control)
        , installation(host)
    {
        fillPeople(host);
        setAgencies(host);
        host.setTable(Weapons, {{u"12"_s, u"Handgun"_s, 12}});
        host.state().nibrsCodes = {{u"13A"_s, u"Aggravated Assault"_s}, {u"09A"_s, u"Murder"_s}};
        host.state().offenses = xmlOf(u"<Offenses><Offense><OffenseNo>31</OffenseNo></Offense></Offenses>"_s);
        modUtils::ReleaseNibrsModule();
        m_control = publicControls().create(u"TVBoundControls."_s + name, &window, {u"control"_s});
    }
    ~Site() { modUtils::ReleaseNibrsModule(); }
    Site(const Site&) = delete;
    Site& operator=(const Site&) = delete;

    UserControl& control() const { return *m_control; }
    QString member(const char* property) const { return name + u'.' + QLatin1String(property); }

    const QString name;
    FakeHost host;
    HostInstallation installation;
    QWidget window;

private:
    UserControl* m_control;
};

/// Puts or reads without Qt's own code in between, as a caller may who lets failures pass to itself.
void call(QObject& object, QMetaObject::Call kind, const char* name, QVariant& value)
{
    const QMetaObject& meta = *object.metaObject();
    const int index = meta.indexOfProperty(name);
    const QMetaType type = meta.property(index).metaType();
    int status = -1;
    int flags = 0;
    void* const data = type == QMetaType::fromType<QVariant>() ? &value : value.data();
    std::array<void*, 4> arguments{data, &value, &status, &flags};
    const RaiseByName raise(object, name);
    object.qt_metacall(kind, index, arguments.data());
}

QVariant fontOf(double size)
{
    const auto font = std::make_shared<Font>();
    font->SetSize(size);
    return QVariant::fromValue(FontPtr(font));
}

const Error away(u"the host is away"_s, 17);

/// A put that fails: by the host, or by the value itself.
struct Put
{
    const char* control;
    const char* property;
    QVariant value;
    QVariant next; ///< which is put once the host is there again
    bool isHostAway = true;
};

const std::vector<Put>& puts()
{
    static const std::vector<Put> all{
        {"AgencyPicker", "Value", 10, 30},
        {"AgencyPicker", "ListAllAgencies", true, false},
        {"AutoCompleteField", "TableNo", Weapons, Weapons + 1},
        {"AutoCompleteField", "IncludeInactiveValues", true, false},
        {"AutoCompleteField", "Text", QVariantList{1}, u"gun"_s, false},
        {"NibrsOffensePicker", "Value", u"13A"_s, u"09A"_s},
        {"EmployeePicker", "Value", u"'"_s, 12.0, false},
        {"OffensePicker", "Value", u"'"_s, 31.0, false},
        {"FlatEmployeePicker", "Value", u"'"_s, 12.0, false},
        {"FlatEmployeePicker", "Caption", u"Officer"_s, u"Handler"_s},
        {"FlatEmployeePicker", "Required", true, false},
        {"FlatEmployeePicker", "Enabled", false, true},
        {"FlatEmployeePicker", "Font", fontOf(12), fontOf(14)},
        {"FlatUserPicker", "Value", u"nobody"_s, u"user:asmith"_s, false},
        {"FlatUserPicker", "Caption", u"Assigned"_s, u"Assigned to"_s},
        {"FlatUserPicker", "Required", true, false},
        {"FlatUserPicker", "Enabled", false, true},
        {"FlatUserPicker", "Font", fontOf(12), fontOf(14)},
    };
    return all;
}

/// A reading that fails for the host, or for what it has filled in.
struct Reading
{
    const char* control;
    const char* property;
    QVariant value; ///< of the control
    QVariant none;  ///< what a reading that failed answers
    bool isHostAway = true;
};

const std::vector<Reading>& readings()
{
    static const std::vector<Reading> all{
        {"AgencyPicker", "FullText", 30, QString(), false},
        {"AgencyPicker", "ShortText", 30, QString(), false},
        {"NibrsOffensePicker", "Value", u"13A"_s, QVariant()},
        {"NibrsOffensePicker", "ValueIsNull", u"13A"_s, false},
        {"EmployeePicker", "FullText", 12, QString()},
        {"EmployeePicker", "ShortText", 12, QString()},
        {"OffensePicker", "FullText", 31, QString()},
        {"OffensePicker", "ShortText", 31, QString()},
        {"FlatEmployeePicker", "FullText", 12, QString()},
        {"FlatEmployeePicker", "ShortText", 12, QString()},
        {"FlatUserPicker", "FullText", u"user:asmith"_s, QString()},
        {"FlatUserPicker", "ShortText", u"user:asmith"_s, QString()},
    };
    return all;
}

template <typename Row>
void addRows(const std::vector<Row>& rows)
{
    QTest::addColumn<int>("row");
    for (int i = 0; const Row& row : rows)
        QTest::addRow("%s.%s", row.control, row.property) << i++;
}

/// Makes the reading fail.
void spoil(Site& site, const Reading& reading)
{
    site.control().setProperty("Value", reading.value);
    if (reading.isHostAway) {
        site.host.failWith(away);
        return;
    }
    auto& combo = *site.control().findChild<GridComboBox*>();
    combo.Array().AppendRow({QVariantList{1}, QVariantList{1}, 99, u"1"_s});
    combo.Rebind();
    raisedBy([&] { combo.SetBookmark(combo.Array().UpperBound()); });
}

} // namespace

/// What the lookup controls do with failures of properties that Qt's property system puts or reads.
class tst_PropertiesByName : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aPutThatFailsGoesToTheHandlerOfUnhandledErrorsAndTheControlTakesTheNextOne_data()
    {
        addRows(puts());
    }
    void aPutThatFailsGoesToTheHandlerOfUnhandledErrorsAndTheControlTakesTheNextOne()
    {
        QFETCH(int, row);
        const Put& put = puts().at(static_cast<std::size_t>(row));
        Site site(QString::fromLatin1(put.control));
        Unhandled unhandled;
        if (put.isHostAway)
            site.host.failWith(away);
        site.control().setProperty(put.property, put.value);
        site.host.failWith({});
        QVERIFY2(!unhandled.texts.isEmpty(), "nothing has failed");
        QVERIFY2(unhandled.texts.constLast().startsWith(site.member(put.property) + u": "_s),
                 qPrintable(unhandled.texts.join(u'\n')));
        unhandled.texts.clear();
        site.control().setProperty(put.property, put.next);
        QCOMPARE(site.control().property(put.property), put.next);
        QCOMPARE(unhandled.texts, QStringList());
    }

    void aPutThatFailsRaisesForACallerWhoAskedForIt_data() { addRows(puts()); }
    void aPutThatFailsRaisesForACallerWhoAskedForIt()
    {
        QFETCH(int, row);
        const Put& put = puts().at(static_cast<std::size_t>(row));
        Site site(QString::fromLatin1(put.control));
        Unhandled unhandled;
        if (put.isHostAway)
            site.host.failWith(away);
        QVariant value = put.value;
        const Error error =
            raisedBy([&] { call(site.control(), QMetaObject::WriteProperty, put.property, value); });
        QVERIFY(error.Number != 0);
        if (put.isHostAway)
            QCOMPARE(error.Description, away.Description);
        QVERIFY2(!unhandled.texts.join(u'\n').contains(site.member(put.property)),
                 qPrintable(unhandled.texts.join(u'\n')));
    }

    void aReadingThatFailsGoesToTheHandlerOfUnhandledErrorsAndAnswersNothing_data() { addRows(readings()); }
    void aReadingThatFailsGoesToTheHandlerOfUnhandledErrorsAndAnswersNothing()
    {
        QFETCH(int, row);
        const Reading& reading = readings().at(static_cast<std::size_t>(row));
        Site site(QString::fromLatin1(reading.control));
        Unhandled unhandled;
        spoil(site, reading);
        QCOMPARE(unhandled.texts, QStringList());
        QCOMPARE(site.control().property(reading.property), reading.none);
        QCOMPARE(unhandled.texts.size(), 1);
        QVERIFY2(unhandled.texts.constFirst().startsWith(site.member(reading.property) + u": "_s),
                 qPrintable(unhandled.texts.constFirst()));
    }

    void aReadingThatFailsRaisesForACallerWhoAskedForIt_data() { addRows(readings()); }
    void aReadingThatFailsRaisesForACallerWhoAskedForIt()
    {
        QFETCH(int, row);
        const Reading& reading = readings().at(static_cast<std::size_t>(row));
        Site site(QString::fromLatin1(reading.control));
        Unhandled unhandled;
        spoil(site, reading);
        QVariant answer = reading.none;
        QVERIFY(raisedBy([&] {
                    call(site.control(), QMetaObject::ReadProperty, reading.property, answer);
                }).Number != 0);
        QCOMPARE(unhandled.texts, QStringList());
    }
};

TAVRIN_TEST_MAIN(tst_PropertiesByName)
#include "tst_PropertiesByName.moc"
