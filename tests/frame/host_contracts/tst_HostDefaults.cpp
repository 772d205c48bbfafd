#include "base/lists/GridCombo.h"
#include "base/values/Variant.h"
#include "frame/host_contracts/Host.h"
#include "support/RaisedError.h"
#include "support/TestCase.h"
#include "testing/FakeDropdown.h"
#include "testing/FakeGridCombo.h"

#include <QLocale>
#include <QScopeGuard>
#include <QStandardPaths>

#include <functional>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

/// Overrides nothing.
class BareHost : public Host
{
};

/// Has code tables, and nothing else.
class TableHost : public Host
{
public:
    HostServices& hostServices() override { return m_services; }
    int asked() const { return m_services.asked; }

private:
    struct Tables : HostServices
    {
        TableValues GetTableValues(TableNumber table, bool includeInactive, const QVariant&, bool) override
        {
            ++asked;
            TableValues values;
            if (table != 302)
                return values;
            values.Items << TableValue{u"H"_s, u"Handgun"_s, 1};
            if (includeInactive)
                values.Items << TableValue{u"R"_s, u"Rifle"_s, 2};
            values.Items << TableValue{u"K"_s, u"Knife"_s, 3};
            if (includeInactive)
                values.Items << TableValue{u"P"_s, u"Poison"_s, 4};
            return values;
        }
        int asked = 0;
    };
    Tables m_services;
};

struct Employees : EmployeeListCache
{
    XmlDocument Document() override
    {
        XmlDocument list;
        list.loadXML(u"<L><Employee><OfficerNo>7</OfficerNo><OfficerId>A7</OfficerId><Name>Ann Lee</Name>"
                     "</Employee></L>"_s);
        return list;
    }
};

struct Offenses : OffenseListCache
{
    XmlDocument Document() override
    {
        XmlDocument list;
        list.loadXML(u"<L><Offense><OffenseNo>9</OffenseNo><OffenseId>12-1</OffenseId>"
                     "<Description>Theft</Description></Offense></L>"_s);
        return list;
    }
};

struct Users : UsersCache
{
    XmlDocument Document() override
    {
        XmlDocument list;
        list.loadXML(u"<L><UserAccount><UserId>alee</UserId><FirstName>Ann</FirstName>"
                     "<LastName>Lee</LastName></UserAccount></L>"_s);
        return list;
    }
};

QStringList columnOf(GridCombo& grid, int column)
{
    QStringList texts;
    for (int row = 1; row <= grid.Array().UpperBound(); ++row)
        texts << ToText(grid.Array().Value(row, column));
    return texts;
}

QStringList entriesOf(const DropdownTarget& combo)
{
    QStringList entries;
    for (int index = 0; index < combo.ListCount(); ++index)
        entries << u"%1=%2"_s.arg(combo.List(index)).arg(combo.ItemData(index));
    return entries;
}

using Call = std::function<void(Host&)>;

} // namespace

Q_DECLARE_METATYPE(Call)

class tst_HostDefaults : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void whatHasNoAnswerWithoutAHostRaisesOneErrorThatNamesIt_data()
    {
        QTest::addColumn<Call>("call");
        const auto row = [](const char* what, Call call) { QTest::newRow(what) << std::move(call); };
        row("HostServices.GetTableValues",
            [](Host& host) { host.hostServices().GetTableValues(Tables::Team, false); });
        row("Session.MakeFieldReference", [](Host& host) { host.session().MakeFieldReference(nullptr); });
        row("Environment.GetDictionaryFolder", [](Host& host) { host.environment().GetDictionaryFolder(); });
        row("Host.newEmployeeListCache", [](Host& host) { host.newEmployeeListCache(); });
        row("Host.newOffenseListCache", [](Host& host) { host.newOffenseListCache(); });
        row("Host.newUsersCache", [](Host& host) { host.newUsersCache(); });
        row("Host.newAttachmentFolders", [](Host& host) { host.newAttachmentFolders(); });
        row("Host.newCustomDictionary", [](Host& host) { host.newCustomDictionary(); });
        row("Host.newDownloader", [](Host& host) { host.newDownloader(); });
        row("Host.newUploader", [](Host& host) { host.newUploader(); });
        row("Host.newTableCollection", [](Host& host) { host.newTableCollection(); });
        row("the component NIBRS.Singletons",
            [](Host& host) { host.createNibrsModule(u"NIBRS.Singletons"_s); });
        row("EmployeeListCache.Document", [](Host&) { EmployeeListCache().Document(); });
        row("OffenseListCache.Document", [](Host&) { OffenseListCache().Document(); });
        row("UsersCache.Document", [](Host&) { UsersCache().Document(); });
        row("AttachmentFolders.GetFolderPath", [](Host&) { AttachmentFolders().GetFolderPath(1); });
        row("tvCustomDictionary.AddWord", [](Host&) { tvCustomDictionary().AddWord(u"word"_s); });
        row("Downloader.Download", [](Host&) { Downloader().Download(u"a"_s); });
        row("Uploader.Upload", [](Host&) { Uploader().Upload(u"a"_s, u"b"_s, {}); });
        row("NibrsModuleService.GetNibrsOffenseCodeList",
            [](Host&) { NibrsModuleService().GetNibrsOffenseCodeList(); });
    }
    void whatHasNoAnswerWithoutAHostRaisesOneErrorThatNamesIt()
    {
        QFETCH(Call, call);
        BareHost host;
        const HostInstallation installed(host);
        const Error error = raisedBy([&] { call(host); });
        QCOMPARE(error.Number, Error::NoSuchComponentNumber);
        QCOMPARE(error.Description,
                 u"The host does not offer %1"_s.arg(QString::fromLatin1(QTest::currentDataTag())));
    }

    void listsOfAHostWithoutTablesNameTheOperationThatIsMissing()
    {
        BareHost host;
        const HostInstallation installed(host);
        const QString expected = u"The host does not offer HostServices.GetTableValues"_s;
        FakeDropdown combo;
        QCOMPARE(raisedBy([&] {
                     host.listFilling().FillTableCombo(228, combo, false, Null(), false);
                 }).Description,
                 expected);
        QCOMPARE(raisedBy([&] { host.newTableCodeCache()->Document(228); }).Description, expected);
        QCOMPARE(raisedBy([] { TableCodeCache().GetDescription(228, 1); }).Description, expected);
    }

    void whatNeedsNoHostIsAnswered()
    {
        BareHost host;
        QVERIFY(host.xmlFactory().CreateDocument().documentElement().isNull());
        QVERIFY(!host.hostServices().GetParentObject(nullptr));
        host.hostServices().SyncCustomDictionaryFile();
        host.hostServices().NotifyFileUploaded();
        host.environment().RefreshSupportFile(u"vssp_ae.dct"_s);
        QCOMPARE(host.environment().GetErrorNumber(5), Environment::FirstErrorNumber + 5);
        QVERIFY(IsEmpty(host.newThumbnailService()->GetThumbnailPath(u"a.png"_s)));
        Downloader downloader;
        downloader.SetBufferSize(4096);
        downloader.Cancel();
    }

    void nobodyHasARightThatNobodyGave()
    {
        BareHost host;
        QVERIFY(!host.session().HasPermission(u"_Global"_s, 1));
        QVERIFY(!host.session().FieldExists(u"Incident"_s, u"Incident"_s, u"CaseNo"_s));
        QVERIFY(!host.session().IsFieldRequired(u"Incident"_s, u"Incident"_s, u"CaseNo"_s, {}));
        QCOMPARE(host.session().CurrentUserId(), QString());
        QCOMPARE(host.session().GetSetting(u"_Global"_s, u"Agency Name"_s), QString());
    }

    void eachHostHasAnEventHubOfItsOwn()
    {
        BareHost one;
        BareHost other;
        QStringList told;
        const Subscription keep = one.hostServices().Events().CacheRefreshed.subscribe(
            [&told](const CacheRefreshInfo& info) { told << info.Changed; });
        other.hostServices().Events().CacheRefreshed.raise({{u"theirs"_s}});
        one.hostServices().Events().CacheRefreshed.raise({{u"ours"_s}});
        QCOMPARE(told, QStringList{u"ours"_s});
    }

    void datesAreShownAsThePersonsLocaleDoes()
    {
        const QLocale before;
        const auto restore = qScopeGuard([&before] { QLocale::setDefault(before); });
        BareHost host;
        for (const auto& [locale, format] : {std::pair(QLocale::Germany, u"dd.MM.yy"_s),
                                             std::pair(QLocale::UnitedKingdom, u"dd/MM/yyyy"_s)}) {
            QLocale::setDefault(
                QLocale(locale == QLocale::Germany ? QLocale::German : QLocale::English, locale));
            QCOMPARE(host.hostServices().DateDisplayFormat(), format);
        }
    }

    void textBoxColoursAreDarkInADarkPalette()
    {
        const QPalette before = QGuiApplication::palette();
        const auto restore = qScopeGuard([&before] { QGuiApplication::setPalette(before); });
        BareHost host;
        QGuiApplication::setPalette(QPalette(Qt::white));
        QVERIFY(host.uiServices().TextBoxColors().Normal.BackColor.isSystem());
        QGuiApplication::setPalette(QPalette(QColor(30, 30, 30)));
        const TextBoxColors dark = host.uiServices().TextBoxColors();
        QVERIFY(dark.Normal.BackColor.resolve({}).lightness() < 128);
        QVERIFY(dark.Normal.ForeColor.resolve({}).lightness() > 128);
    }

    void downloadsGoToThePlatformsFolderWhichIsMade()
    {
        QStandardPaths::setTestModeEnabled(true);
        const auto restore = qScopeGuard([] { QStandardPaths::setTestModeEnabled(false); });
        BareHost host;
        const QString folder = host.environment().GetDownloadsFolder();
        QCOMPARE(folder, QStandardPaths::writableLocation(QStandardPaths::DownloadLocation));
        QVERIFY(QDir(folder).exists());
    }

    void aComboIsFilledFromTheHostsTable_data()
    {
        QTest::addColumn<bool>("includeInactive");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QStringList>("entries");
        QTest::addColumn<int>("current");
        QTest::addColumn<int>("asked");
        const QStringList active{u"=0"_s, u"Handgun=1"_s, u"Knife=3"_s};
        const QStringList all{u"=0"_s, u"Handgun=1"_s, u"Rifle=2"_s, u"Knife=3"_s, u"Poison=4"_s};
        QTest::newRow("no value") << false << Null() << active << -1 << 1;
        QTest::newRow("active value") << false << QVariant(3) << active << 2 << 1;
        QTest::newRow("inactive value")
            << false << QVariant(2) << QStringList{u"=0"_s, u"Handgun=1"_s, u"Rifle=2"_s, u"Knife=3"_s} << 2
            << 2;
        QTest::newRow("value of no row") << false << QVariant(8) << active << -1 << 2;
        QTest::newRow("inactive ones too") << true << Null() << all << -1 << 2;
        QTest::newRow("inactive ones too, and one of them") << true << QVariant(4) << all << 4 << 2;
    }
    void aComboIsFilledFromTheHostsTable()
    {
        QFETCH(bool, includeInactive);
        QFETCH(QVariant, value);
        TableHost host;
        FakeDropdown combo;
        combo.AddItem(u"old"_s, 9);
        host.listFilling().FillTableCombo(302, combo, includeInactive, value, false);
        QTEST(entriesOf(combo), "entries");
        QTEST(combo.ListIndex(), "current");
        QTEST(host.asked(), "asked");
    }

    void aGridIsFilledWithCodesTextsAndActiveFlags()
    {
        TableHost host;
        FakeGridCombo grid;
        host.listFilling().FillTableGrid(302, grid, true, Null(), false);
        host.listFilling().FillTableGrid(302, grid, true, Null(), false); // puts no second list behind
        QCOMPARE(columnOf(grid, 0), QStringList({u""_s, u"H"_s, u"R"_s, u"K"_s, u"P"_s}));
        QCOMPARE(columnOf(grid, 1), QStringList({u""_s, u"Handgun"_s, u"Rifle"_s, u"Knife"_s, u"Poison"_s}));
        QCOMPARE(columnOf(grid, 2), QStringList({u""_s, u"1"_s, u"2"_s, u"3"_s, u"4"_s}));
        QCOMPARE(columnOf(grid, 3), QStringList({u""_s, u"1"_s, u"0"_s, u"1"_s, u"0"_s}));
        QVERIFY(IsNull(grid.Array().Value(1, 2)));
        QCOMPARE(grid.log.last(), u"rebind 5"_s);
    }

    void aListFillingOfNoHostAsksTheInstalledOne()
    {
        TableHost host;
        const HostInstallation installed(host);
        FakeDropdown combo;
        ListFilling().FillTableCombo(302, combo, false, Null(), false);
        QCOMPARE(entriesOf(combo), QStringList({u"=0"_s, u"Handgun=1"_s, u"Knife=3"_s}));
    }

    void theListOfACodeTableComesFromTheHostsTable()
    {
        TableHost host;
        const HostInstallation installed(host);
        const auto cache = host.newTableCodeCache();
        QStringList found;
        for (const XmlNode& code : cache->Document(302).selectNodes(u"TableCodes/TableCode"_s)) {
            found << code.childElement(u"ValueNo"_s).text() + code.childElement(u"ValueCode"_s).text() +
                         code.childElement(u"ValueDesc"_s).text() + code.childElement(u"ActiveFlag"_s).text();
        }
        QCOMPARE(found, QStringList({u"1HHandgun1"_s, u"2RRifle0"_s, u"3KKnife1"_s, u"4PPoison0"_s}));
        QCOMPARE(cache->GetDescription(302, 2), u"Rifle"_s);
    }

    void textsOfAListAreLookedForInItsDocument_data()
    {
        QTest::addColumn<QVariant>("known");
        QTest::addColumn<std::function<QString(const QVariant&)>>("text");
        QTest::addColumn<QString>("expected");
        using Text = std::function<QString(const QVariant&)>;
        QTest::newRow("employee, short")
            << QVariant(7) << Text([](const QVariant& key) { return Employees().ShortText(key); }) << u"A7"_s;
        QTest::newRow("employee, full")
            << QVariant(7.0) << Text([](const QVariant& key) { return Employees().FullText(key); })
            << u"Ann Lee"_s;
        QTest::newRow("offense, short")
            << QVariant(9) << Text([](const QVariant& key) { return Offenses().ShortText(key); })
            << u"12-1"_s;
        QTest::newRow("offense, full")
            << QVariant(u"9"_s) << Text([](const QVariant& key) { return Offenses().FullText(key); })
            << u"Theft"_s;
        QTest::newRow("user") << QVariant(u"ALee"_s) << Text([](const QVariant& key) {
            return Users().UserDisplayName(ToText(key));
        }) << u"Ann Lee"_s;
    }
    void textsOfAListAreLookedForInItsDocument()
    {
        QFETCH(QVariant, known);
        QFETCH(std::function<QString(const QVariant&)>, text);
        QTEST(text(known), "expected");
        QCOMPARE(text(QVariant(8)), QString());
        QCOMPARE(text(Null()), QString());
        QCOMPARE(text(QVariant()), QString());
    }
};

TAVRIN_TEST_MAIN(tst_HostDefaults)
#include "tst_HostDefaults.moc"
