#include "base/lists/GridCombo.h"
#include "host/HostCase.h"
#include "host/records/RecordStore.h"
#include "host/samples/SampleData.h"
#include "host/services/ReferenceHost.h"
#include "testing/FakeDropdown.h"

#include <QScopeGuard>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

class GridTarget : public GridCombo
{
public:
    GridArray& Array() override { return m_array; }
    void ResetArray() override { m_array = {}; }
    void Rebind() override { ++Rebinds; }
    QVariant Bookmark() const override { return m_bookmark; }
    void SetBookmark(const QVariant& row) override { m_bookmark = row; }
    void SetText(const QString& text) override { Q_UNUSED(text) }
    int Rebinds = 0;

private:
    GridArray m_array;
    QVariant m_bookmark;
};

} // namespace

class tst_ReferenceHost : public HostCase
{
    Q_OBJECT

private Q_SLOTS:
    void tableValuesComeInTheirOrderInactiveOnesOnlyWhenAskedFor()
    {
        HostServices& services = m_host->hostServices();
        const TableValues active = services.GetTableValues(Tables::Team, false);
        const TableValues all = services.GetTableValues(Tables::Team, true);
        QCOMPARE(
            active.Items.size(),
            firstOf(*m_database,
                    QStringLiteral("SELECT COUNT(*) FROM code_value WHERE table_no = 228 AND active = 1"))
                .toInt());
        QVERIFY(all.Items.size() > active.Items.size());
        QCOMPARE(all.Items.at(0).ID, QStringLiteral("PA"));
        QCOMPARE(all.Items.at(1).ID, QStringLiteral("PB"));
        QCOMPARE(all.Items.at(1).Value, QVariant(2));
        QCOMPARE(active.Items.at(1).DisplayText, QStringLiteral("Patrol C"));
        QVERIFY(services.GetTableValues(Tables::None, true).Items.isEmpty());
    }

    void theDateFormatComesFromTheSettings()
    {
        QCOMPARE(m_host->hostServices().DateDisplayFormat(), QStringLiteral("yyyy-MM-dd"));
        execute("UPDATE setting SET value = 'dd.MM.yyyy' WHERE key = 'Date Display Format'");
        m_host->refreshCaches();
        QCOMPARE(m_host->hostServices().DateDisplayFormat(), QStringLiteral("dd.MM.yyyy"));
        execute("DELETE FROM setting");
        m_host->refreshCaches();
        QCOMPARE(m_host->hostServices().DateDisplayFormat(), QStringLiteral("yyyy-MM-dd"));
    }

    void aRowsParentIsItsRecord()
    {
        RecordStore store(*m_database);
        const RecordPtr record = store.load(1);
        HostServices& services = m_host->hostServices();
        QCOMPARE(services.GetParentObject(record->collection(QStringLiteral("Offenses"))->Item(1)), record);
        QCOMPARE(services.GetParentObject(record->mainRow()), record);
        QVERIFY(!services.GetParentObject(record));
        QVERIFY(!services.GetParentObject(nullptr));
    }

    void theXmlFactoryMakesEmptyDocuments()
    {
        QVERIFY(m_host->xmlFactory().CreateDocument().documentElement().isNull());
    }

    void settingsAreFoundWithoutRegardToCase()
    {
        Session& session = m_host->session();
        QCOMPARE(session.CurrentUserId(), QStringLiteral("admin"));
        QCOMPARE(session.GetSetting(QStringLiteral("_global"), QStringLiteral("agency name")),
                 QStringLiteral("Marlow County Sheriff's Office"));
        QCOMPARE(session.GetSetting(QStringLiteral("_Global"), QStringLiteral("nothing")), QString());
    }

    void rightsBelongToActiveUsers_data()
    {
        QTest::addColumn<QString>("user");
        QTest::addColumn<QString>("module");
        QTest::addColumn<int>("right");
        QTest::addColumn<bool>("granted");
        const QString incident = QStringLiteral("Incident");
        QTest::newRow("granted") << QStringLiteral("admin") << incident << 20 << true;
        QTest::newRow("user in other case") << QStringLiteral("ADMIN") << incident << 20 << true;
        QTest::newRow("other right") << QStringLiteral("jobrien") << incident << 20 << false;
        QTest::newRow("other module")
            << QStringLiteral("jobrien") << QStringLiteral("_Global") << 10 << false;
        QTest::newRow("no rights") << QStringLiteral("clerk") << incident << 10 << false;
        QTest::newRow("unknown user") << QStringLiteral("nobody") << incident << 10 << false;
        QTest::newRow("inactive user") << QStringLiteral("gfairweather") << incident << 10 << false;
    }
    void rightsBelongToActiveUsers()
    {
        QFETCH(QString, user);
        QFETCH(QString, module);
        QFETCH(int, right);
        execute("INSERT INTO user_right VALUES ('gfairweather', 'Incident', 10)");
        signOn(user);
        QTEST(m_host->session().HasPermission(module, right), "granted");
    }

    void theSchemaAnswersWhetherAFieldExists_data()
    {
        QTest::addColumn<QString>("module");
        QTest::addColumn<QString>("table");
        QTest::addColumn<QString>("field");
        QTest::addColumn<bool>("exists");
        const QString incident = QStringLiteral("Incident");
        QTest::newRow("main table") << incident << incident << QStringLiteral("casenO") << true;
        QTest::newRow("child table") << incident << QStringLiteral("IncdSuspect") << QStringLiteral("SeqNo")
                                     << true;
        QTest::newRow("other module")
            << QStringLiteral("Personnel") << incident << QStringLiteral("CaseNo") << false;
        QTest::newRow("no such field")
            << QStringLiteral("Personnel") << QStringLiteral("Employee") << QStringLiteral("TeamNo") << false;
        QTest::newRow("team of an employee") << QStringLiteral("Personnel") << QStringLiteral("Employee")
                                             << QStringLiteral("DeptTeamNo") << true;
        QTest::newRow("reporting officer")
            << incident << incident << QStringLiteral("ReportingOfficerNo") << true;
        QTest::newRow("dog handler") << incident << incident << QStringLiteral("K9HandlerNo") << true;
        QTest::newRow("assignment") << incident << QStringLiteral("IncdAssignment")
                                    << QStringLiteral("AssignedTo") << true;
        QTest::newRow("list table") << QStringLiteral("Personnel") << QStringLiteral("Employee")
                                    << QStringLiteral("OfficerNo") << true;
    }
    void theSchemaAnswersWhetherAFieldExists()
    {
        QFETCH(QString, module);
        QFETCH(QString, table);
        QFETCH(QString, field);
        QTEST(m_host->session().FieldExists(module, table, field), "exists");
    }

    void theDayOnWhichAnEmployeeLeftIsKnown_data()
    {
        QTest::addColumn<int>("officerNo");
        QTest::addColumn<std::optional<QDate>>("leftOn");
        QTest::newRow("has left") << 57 << std::optional(QDate(2026, 3, 31));
        QTest::newRow("is there") << 1 << std::optional<QDate>();
        QTest::newRow("nobody") << 999 << std::optional<QDate>();
    }
    void theDayOnWhichAnEmployeeLeftIsKnown()
    {
        QFETCH(int, officerNo);
        QTEST(m_host->employeeLeftOn(officerNo), "leftOn");
    }

    void theDayOnWhichAnEmployeeLeftComesWithARefresh()
    {
        execute("UPDATE employee SET active = 0, left_on = '2026-07-08' WHERE officer_no = 1");
        QVERIFY(!m_host->employeeLeftOn(1));
        m_host->refreshCaches();
        QCOMPARE(m_host->employeeLeftOn(1), std::optional(QDate(2026, 7, 8)));
    }

    void requiredFieldsComeFromTheirTable()
    {
        Session& session = m_host->session();
        const QString incident = QStringLiteral("Incident");
        QVERIFY(session.IsFieldRequired(incident, incident, QStringLiteral("caseno"), QString()));
        QVERIFY(!session.IsFieldRequired(incident, incident, QStringLiteral("Summary"), QString()));
        QVERIFY(!session.IsFieldRequired(incident, incident, QStringLiteral("CaseNo"), QStringLiteral("x")));
    }

    void aFieldReferenceLinksTwoFieldsAcrossASave()
    {
        RecordStore store(*m_database);
        const RecordPtr record = store.create();
        const auto row = record->collection(QStringLiteral("Suspects"))->AddNew();
        const tvFieldPtr target = fieldOf(*row, QStringLiteral("RaceNo"));
        target->SetValue(
            m_host->session().MakeFieldReference(fieldOf(*record->mainRow(), QStringLiteral("IncidentNo"))));
        store.save(*record);
        QCOMPARE(target->Value().toLongLong(), record->key());
        const auto saved = store.load(record->key())->collection(QStringLiteral("Suspects"))->rows().front();
        QCOMPARE(saved->cell(QStringLiteral("RaceNo")).value().toLongLong(), record->key());
    }

    void shadesDarkenAndLighten_data()
    {
        QTest::addColumn<double>("factor");
        QTest::addColumn<int>("channel");
        QTest::newRow("unchanged") << 1.0 << 100;
        QTest::newRow("darker") << 0.4 << 85;
        QTest::newRow("darkest") << 0.0 << 75;
        QTest::newRow("below the darkest") << -3.0 << 75;
        QTest::newRow("lighter") << 2.0 << 178;
        QTest::newRow("nearly white") << 1e9 << 255;
    }
    void shadesDarkenAndLighten()
    {
        QFETCH(double, factor);
        QFETCH(int, channel);
        QCOMPARE(m_host->uiServices().ShadeColor(Color::rgb(100, 100, 100), factor).value(),
                 Color::rgb(channel, channel, channel).value());
    }

    void systemColoursAreShadedAsTheyShow()
    {
        const QPalette before = QGuiApplication::palette();
        const auto restore = qScopeGuard([&before] { QGuiApplication::setPalette(before); });
        QPalette distinct;
        for (int role = 0; role < QPalette::NColorRoles; ++role) {
            for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
                distinct.setColor(group, static_cast<QPalette::ColorRole>(role),
                                  QColor(10 * (role + 1), 100, 50 * (group + 1)));
        }
        QGuiApplication::setPalette(distinct);
        const Color shade = m_host->uiServices().ShadeColor(SystemColor::ButtonFace, 1);
        QVERIFY(!shade.isSystem());
        QCOMPARE(shade.resolve({}), distinct.color(QPalette::Window));
        QCOMPARE(m_host->uiServices().ShadeColor(SystemColor::GreyText, 1).resolve({}),
                 distinct.color(QPalette::Disabled, QPalette::Text));
        QVERIFY(!errorOf([this] { m_host->uiServices().ShadeColor(Color(), qQNaN()); }).isEmpty());
    }

    void scaleModesAreNamed_data()
    {
        QTest::addColumn<QString>("units");
        QTest::addColumn<int>("mode");
        int mode = 0;
        for (const char* name :
             {"User", "Twip", "Point", "Pixel", "Character", "Inch", "Millimeter", "Centimeter"})
            QTest::newRow(name) << QString::fromLatin1(name) << mode++;
        QTest::newRow("plural in capitals") << QStringLiteral("PIXELS") << 3;
        QTest::newRow("plural of inch") << QStringLiteral("Inches") << 5;
    }
    void scaleModesAreNamed()
    {
        QFETCH(QString, units);
        QFETCH(int, mode);
        QCOMPARE(static_cast<int>(m_host->uiServices().ScaleModeFromUnits(units)), mode);
        QVERIFY(errorOf([this] {
                    m_host->uiServices().ScaleModeFromUnits(QStringLiteral("Furlong"));
                }).contains(QStringLiteral("Furlong")));
    }

    void textBoxColoursFollowTheTheme()
    {
        const TextBoxColors light = m_host->uiServices().TextBoxColors();
        m_host->setTheme(Theme::Dark);
        QCOMPARE(m_host->theme(), Theme::Dark);
        const TextBoxColors dark = m_host->uiServices().TextBoxColors();
        QVERIFY(light.Normal.BackColor != dark.Normal.BackColor);
        QVERIFY(dark.Normal.BackColor.resolve({}).lightness() < 128);
        QVERIFY(dark.Normal.ForeColor.resolve({}).lightness() > 128);
    }

    void aComboGetsAnEmptyRowAndTheTablesValues()
    {
        FakeDropdown combo;
        combo.AddItem(QStringLiteral("old"), 9);
        m_host->listFilling().FillTableCombo(Tables::Team, combo, false, Null(), false);
        QCOMPARE(combo.List(0), QString());
        QCOMPARE(combo.List(1), QStringLiteral("Patrol A"));
        QCOMPARE(combo.ItemData(1), 1);
        QCOMPARE(combo.List(2), QStringLiteral("Patrol C"));
        QCOMPARE(combo.ListIndex(), -1);
    }

    void anInactiveValueStaysInTheListThatHoldsIt()
    {
        FakeDropdown combo;
        m_host->listFilling().FillTableCombo(Tables::Team, combo, false, 2, false);
        QCOMPARE(combo.ItemData(2), 2);
        QCOMPARE(combo.ListIndex(), 2);
        GridTarget grid;
        m_host->listFilling().FillTableGrid(Tables::Team, grid, false, 2, false);
        QVERIFY(grid.Array().Find(1, 2, 2) > 0);
    }

    void aGridGetsShortTextLongTextCodeAndActiveFlag()
    {
        GridTarget grid;
        m_host->listFilling().FillTableGrid(Tables::Team, grid, true, Null(), false);
        GridArray& array = grid.Array();
        QVERIFY(IsNull(array.Value(1, 2)));
        QCOMPARE(array.Value(1, 0).toString(), QString());
        QCOMPARE(array.Value(3, 0), QVariant(QStringLiteral("PB")));
        QCOMPARE(array.Value(3, 1), QVariant(QStringLiteral("Patrol B")));
        QCOMPARE(array.Value(3, 2), QVariant(2));
        QCOMPARE(array.Value(2, 3), QVariant(QStringLiteral("1")));
        QCOMPARE(array.Value(3, 3), QVariant(QStringLiteral("0")));
        QCOMPARE(grid.Rebinds, 1);
        const int rows = array.UpperBound();
        m_host->listFilling().FillTableGrid(Tables::Team, grid, true, Null(), false);
        QCOMPARE(grid.Array().UpperBound(), rows);
    }

    void theEnvironmentNamesItsPlaces()
    {
        Environment& environment = m_host->environment();
        QCOMPARE(environment.GetDictionaryFolder(), path("station"));
        QVERIFY(QDir(path("station")).exists());
        QCOMPARE(environment.GetDownloadsFolder(), path("down"));
        QVERIFY(QDir(path("down")).exists());
        QCOMPARE(environment.GetErrorNumber(5), environment.GetErrorNumber(0) + 5);
    }

    void aDownloadsFolderThatCannotBeMadeIsNamed()
    {
        writeFile(path("down"), "in the way");
        QString text;
        try {
            m_host->environment().GetDownloadsFolder();
        } catch (const Error& error) {
            text = error.Description;
        }
        QCOMPARE(text, QStringLiteral("The Downloads folder %1 cannot be made").arg(path("down")));
    }

    /// The custom words in it are one database's.
    void withoutAFolderNamedEachDatabaseHasOneOfItsOwn()
    {
        const QByteArray before = qgetenv("XDG_DATA_HOME");
        qputenv("XDG_DATA_HOME", path("data").toUtf8());
        const auto restore = qScopeGuard([&] { qputenv("XDG_DATA_HOME", before); });
        const auto otherDatabase = Database::open(path("other.db"));
        const ReferenceHostOptions options{u"admin"_s, {}, path("down")};
        ReferenceHost here(*m_database, options);
        ReferenceHost there(*otherDatabase, options);
        ReferenceHost hereAgain(*m_database, options);
        const QString folder = here.environment().GetDictionaryFolder();
        QVERIFY2(folder.startsWith(path("data")), qPrintable(folder));
        QVERIFY(folder != there.environment().GetDictionaryFolder());
        QCOMPARE(hereAgain.environment().GetDictionaryFolder(), folder);
        here.newCustomDictionary()->AddWord(u"perpwalk"_s);
        here.hostServices().SyncCustomDictionaryFile();
        there.hostServices().SyncCustomDictionaryFile();
        QCOMPARE(contentOf(folder + u"/custom.dic"_s), QByteArray("perpwalk\n"));
    }

    void aWorkstationFolderThatCannotBeMadeIsNamed()
    {
        writeFile(path("station"), "in the way");
        QVERIFY(errorOf([this] { m_host->environment().GetDictionaryFolder(); }).contains(path("station")));
    }

    void thumbnailsAreMadeInTheAttachmentsFolder()
    {
        const QString folder = path("attachments");
        QVERIFY(QDir().mkpath(folder));
        QImage picture(4, 4, QImage::Format_RGB32);
        picture.fill(Qt::red);
        QVERIFY(picture.save(folder + QStringLiteral("/a.png")));
        const QString photo = folder + QStringLiteral("\\a.png");
        const auto thumbnailOf = [&] {
            return m_host->newThumbnailService()->GetThumbnailPath(photo).toString();
        };
        execute("UPDATE setting SET value = '' WHERE key = 'Attachments Folder'");
        m_host->refreshCaches();
        QCOMPARE(thumbnailOf(), QString());
        execute(qPrintable(
            QStringLiteral("UPDATE setting SET value = '%1' WHERE key = 'Attachments Folder'").arg(folder)));
        m_host->refreshCaches();
        QString thumbnail = thumbnailOf();
        QVERIFY2(thumbnail.startsWith(folder + QStringLiteral("\\.thumbnails\\")), qPrintable(thumbnail));
        QVERIFY(QFile::exists(thumbnail.replace(u'\\', u'/')));
    }

    void aFreeCollectionTakesItsClassFromTheCaller()
    {
        const tvTableCollectionPtr rows = m_host->newTableCollection();
        QCOMPARE(rows->Count(), 0);
        rows->SetItemClass(QStringLiteral("Incident.IncdOther"));
        rows->AddNew();
        QCOMPARE(rows->Position(), qint16(1));
    }

    void theHostCanBeInstalled()
    {
        const HostInstallation installation(*m_host);
        QCOMPARE(&currentHost(), m_host.get());
    }
};

TAVRIN_TEST_MAIN(tst_ReferenceHost)
#include "tst_ReferenceHost.moc"
