#include "HostTestSupport.h"
#include "host/HostImages.h"
#include "host/RecordStore.h"
#include "host/ReferenceHost.h"
#include "host/SampleData.h"
#include "widgets/DropdownTarget.h"
#include "widgets/GridCombo.h"

#include <QBuffer>
#include <QImageWriter>
#include <QtEndian>

using namespace tavrin;
using namespace tavrin::test;

namespace {

constexpr TableNumber Weapons = 302;

class ListTarget : public DropdownTarget
{
public:
    void Clear() override
    {
        m_rows.clear();
        m_index = -1;
    }
    void AddItem(const QString& text, qint32 itemData) override { m_rows.append({text, itemData}); }
    int ListCount() const override { return static_cast<int>(m_rows.size()); }
    QString List(int index) const override { return m_rows.value(index).first; }
    qint32 ItemData(int index) const override { return m_rows.value(index).second; }
    int ListIndex() const override { return m_index; }
    void SetListIndex(int index) override { m_index = index; }

private:
    QList<QPair<QString, qint32>> m_rows;
    int m_index = -1;
};

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

/// A PNG that says it has this many pixels, and holds none.
QByteArray hollowPng(quint32 width, quint32 height)
{
    QImage image(1, 1, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "png");
    qToBigEndian(width, bytes.data() + 16);
    qToBigEndian(height, bytes.data() + 20);
    // The checksum of the header chunk, CRC-32 of type and content.
    quint32 crc = 0xFFFFFFFFU;
    for (int i = 12; i < 29; ++i) {
        crc ^= static_cast<quint8>(bytes.at(i));
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1U) ? (crc >> 1) ^ 0xEDB88320U : crc >> 1;
    }
    qToBigEndian(~crc, bytes.data() + 29);
    return bytes;
}

} // namespace

class tst_ReferenceHost : public TestCase
{
    Q_OBJECT

private:
    std::optional<QTemporaryDir> m_folder;
    std::unique_ptr<Database> m_database;
    std::unique_ptr<ReferenceHost> m_host;

    void signOn(const QString& userId)
    {
        m_host = std::make_unique<ReferenceHost>(
            *m_database, ReferenceHostOptions{userId, m_folder->filePath(QStringLiteral("station/")),
                                              m_folder->filePath(QStringLiteral("down"))});
    }
    void execute(const char* sql) { m_database->execute(QString::fromLatin1(sql)); }
    QString path(const char* name) const { return m_folder->filePath(QString::fromLatin1(name)); }

private Q_SLOTS:
    void init() override
    {
        TestCase::init();
        m_folder.emplace();
        m_database = Database::open(path("records.db"), OpenMode::CreateWhenMissing, impatient());
        SampleData().fillOnce(*m_database);
        execute("UPDATE code_value SET active = 0 WHERE table_no = 228 AND value_no = 2");
        signOn(QStringLiteral("admin"));
    }
    void cleanup() override
    {
        m_host.reset();
        m_database.reset();
        TestCase::cleanup();
    }

    void tableValuesComeInTheirOrderInactiveOnesOnlyWhenAskedFor()
    {
        HostServices& services = m_host->hostServices();
        const TableValues active = services.GetTableValues(Tables::Team, false);
        const TableValues all = services.GetTableValues(Tables::Team, true);
        QCOMPARE(all.Items.size(), active.Items.size() + 1);
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
        QTest::newRow("no such field") << QStringLiteral("Personnel") << QStringLiteral("Employee")
                                       << QStringLiteral("DeptTeamNo") << false;
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
        QTest::newRow("darker") << 0.4 << 40;
        QTest::newRow("black") << 0.0 << 0;
        QTest::newRow("below black") << -3.0 << 0;
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
        const Color shade = m_host->uiServices().ShadeColor(SystemColor::ButtonFace, 1);
        QVERIFY(!shade.isSystem());
        QCOMPARE(shade.resolve({}), QGuiApplication::palette().color(QPalette::Button));
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
        const TextBoxColors light = m_host->uiServices().GetTextBoxColors();
        m_host->setTheme(Theme::Dark);
        QCOMPARE(m_host->theme(), Theme::Dark);
        const TextBoxColors dark = m_host->uiServices().GetTextBoxColors();
        QVERIFY(light.Normal.BackColor != dark.Normal.BackColor);
        QVERIFY(dark.Normal.BackColor.resolve({}).lightness() < 128);
        QVERIFY(dark.Normal.ForeColor.resolve({}).lightness() > 128);
    }

    void aComboGetsAnEmptyRowAndTheTablesValues()
    {
        ListTarget combo;
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
        ListTarget combo;
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
        QCOMPARE(array.Value(3, 3), QVariant(false));
        QCOMPARE(grid.Rebinds, 1);
        const int rows = array.UpperBound();
        m_host->listFilling().FillTableGrid(Tables::Team, grid, true, Null(), false);
        QCOMPARE(grid.Array().UpperBound(), rows);
    }

    void picturesAreFittedWithTheirProportions_data()
    {
        QTest::addColumn<QSize>("picture");
        QTest::addColumn<bool>("enlarge");
        QTest::addColumn<QRect>("filled");
        QTest::newRow("wide") << QSize(400, 200) << true << QRect(0, 25, 100, 50);
        QTest::newRow("tall") << QSize(200, 400) << true << QRect(25, 0, 50, 100);
        QTest::newRow("small, enlarged") << QSize(10, 10) << true << QRect(0, 0, 100, 100);
        QTest::newRow("small, as it is") << QSize(10, 10) << false << QRect(45, 45, 10, 10);
        QTest::newRow("thin as a thread") << QSize(5000, 1) << true << QRect(0, 49, 100, 1);
    }
    void picturesAreFittedWithTheirProportions()
    {
        QFETCH(QSize, picture);
        QFETCH(bool, enlarge);
        QFETCH(QRect, filled);
        QImage image(picture, QImage::Format_RGB32);
        image.fill(Qt::red);
        const QImage fitted =
            m_host->listFilling().FitPicture(image, 100, 100, 1, enlarge, Color::rgb(0, 0, 255), false);
        QCOMPARE(fitted.size(), QSize(100, 100));
        for (int y = 0; y < 100; ++y) {
            for (int x = 0; x < 100; ++x)
                QCOMPARE(fitted.pixelColor(x, y), QColor(filled.contains(x, y) ? Qt::red : Qt::blue));
        }
    }

    void nothingFitsIntoNothing()
    {
        QVERIFY(m_host->listFilling().FitPicture({}, 10, 10, 1, true, {}, false).isNull());
        const QImage image(1, 1, QImage::Format_RGB32);
        QVERIFY(m_host->listFilling().FitPicture(image, 0, 10, 1, true, {}, false).isNull());
    }

    void imagesAreKnownByTheirEndings_data()
    {
        QTest::addColumn<bool>("image");
        for (const char* name : {"a.png", "a.JPG", "a.b.jpeg", "a.gif", "A.Bmp"})
            QTest::newRow(name) << true;
        for (const char* name : {"a.svg", "png", "a.png.exe", "a.", "", "a.tif"})
            QTest::newRow(*name ? name : "(empty)") << false;
    }
    void imagesAreKnownByTheirEndings()
    {
        const QString name = QString::fromLatin1(QTest::currentDataTag());
        QTEST(m_host->images().IsImageFile(name == QStringLiteral("(empty)") ? QString() : name), "image");
    }

    void aPictureIsLoadedByItsContent()
    {
        QImage image(3, 2, QImage::Format_RGB32);
        image.fill(Qt::green);
        QVERIFY(image.save(path("really.png"), "png"));
        QVERIFY(QFile::rename(path("really.png"), path("named.jpg")));
        QCOMPARE(m_host->images().LoadPicture(path("named.jpg")).size(), QSize(3, 2));
    }

    void picturesThatCannotBeShownAreNamed_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("expected");
        QTest::newRow("text") << QByteArray("not a picture")
                              << QStringLiteral("no picture of a known format");
        QTest::newRow("empty") << QByteArray("") << QStringLiteral("no picture of a known format");
        QTest::newRow("format not in the list")
            << QByteArray("P1\n1 1\n1\n") << QStringLiteral("no picture of a known format");
        QTest::newRow("too many pixels")
            << hollowPng(30000, 30000) << QStringLiteral("too large (30000 by 30000 pixels)");
    }
    void picturesThatCannotBeShownAreNamed()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, expected);
        writeFile(path("bad.png"), content);
        const QString text = errorOf([this] { m_host->images().LoadPicture(path("bad.png")); });
        QVERIFY2(text.contains(expected), qPrintable(text));
        QVERIFY2(text.contains(QStringLiteral("bad.png")), qPrintable(text));
    }

    void aMissingOrVeryLongPictureFileIsRefused()
    {
        QVERIFY(errorOf([this] {
                    m_host->images().LoadPicture(path("none.png"));
                }).contains(QStringLiteral("not there")));
        QFile file(path("long.png"));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.resize(HostImages::MaxFileLength + 1));
        QVERIFY(errorOf([this] {
                    m_host->images().LoadPicture(path("long.png"));
                }).contains(QStringLiteral("too long")));
    }

    void theEnvironmentNamesItsPlaces()
    {
        Environment& environment = m_host->environment();
        QCOMPARE(environment.GetDictionaryFolder(), path("station"));
        QVERIFY(QDir(path("station")).exists());
        QCOMPARE(environment.GetDownloadsFolder(), path("down"));
        QCOMPARE(environment.GetErrorNumber(5), environment.GetErrorNumber(0) + 5);
    }

    void aWorkstationFolderThatCannotBeMadeIsNamed()
    {
        writeFile(path("station"), "in the way");
        QVERIFY(errorOf([this] { m_host->environment().GetDictionaryFolder(); }).contains(path("station")));
    }

    void nibrsCodesAreTheActiveOnesOfTheirTable()
    {
        const auto module = m_host->createNibrsModule(QStringLiteral("NIBRS.Singletons"));
        const auto codes = module->GetNibrsOffenseCodeList();
        QCOMPARE(codes.first().first, QStringLiteral("09A"));
        QCOMPARE(codes.first().second, QStringLiteral("Murder and Nonnegligent Manslaughter"));
        for (const auto& code : codes)
            QVERIFY(code.first != QStringLiteral("90A"));
        QCOMPARE(module->GetNibrsOffenseCodeList(), codes);
        QCOMPARE(errorNumberOf([this] { m_host->createNibrsModule(QStringLiteral("NIBRS.Other")); }), 429);
    }

    void theListsHaveTheShapesThatThePickersRead()
    {
        const XmlNode employee =
            m_host->newEmployeeListCache()->Document().documentElement().selectSingleNode(
                QStringLiteral("Employee[OfficerNo=7]"));
        QCOMPARE(employee.childElement(QStringLiteral("OfficerId")).text(), QStringLiteral("MC1049"));
        QCOMPARE(employee.childElement(QStringLiteral("Name")).text(), QStringLiteral("D'Amberley, Luc"));
        QCOMPARE(employee.childElement(QStringLiteral("BadgeNo")).text(), QStringLiteral("196"));
        QCOMPARE(employee.childElement(QStringLiteral("ActiveFlag")).text(), QStringLiteral("True"));
        QCOMPARE(employee.childElement(QStringLiteral("IsK9Handler")).text(), QStringLiteral("True"));
        const XmlNode offense = m_host->newOffenseListCache()->Document().documentElement().selectSingleNode(
            QStringLiteral("Offense[OffenseNo=33]"));
        QCOMPARE(offense.childElement(QStringLiteral("OffenseId")).text(), QStringLiteral("PC 220.60"));
        QCOMPARE(offense.childElement(QStringLiteral("RptCode")).text(), QStringLiteral("23H"));
        QCOMPARE(offense.childElement(QStringLiteral("ActiveFlag")).text(), QStringLiteral("0"));
        const XmlNode user = m_host->newUsersCache()->Document().documentElement().selectSingleNode(
            QStringLiteral("UserAccount[UserId='gfairweather']"));
        QCOMPARE(user.childElement(QStringLiteral("IsActive")).text(), QStringLiteral("False"));
        QCOMPARE(user.childElement(QStringLiteral("LastName")).text(), QStringLiteral("Fairweather"));
        const XmlNode team = m_host->newTableCodeCache()
                                 ->Document(Tables::Team)
                                 .documentElement()
                                 .selectSingleNode(QStringLiteral("TableCode[ValueCode='PB']"));
        QCOMPARE(team.childElement(QStringLiteral("ValueNo")).text(), QStringLiteral("2"));
        QCOMPARE(team.childElement(QStringLiteral("ValueDesc")).text(), QStringLiteral("Patrol B"));
        QCOMPARE(team.childElement(QStringLiteral("ActiveFlag")).text(), QStringLiteral("0"));
    }

    void textsOfTheCaches_data()
    {
        QTest::addColumn<QVariant>("number");
        QTest::addColumn<QString>("officer");
        QTest::addColumn<QString>("offense");
        QTest::addColumn<QString>("weapon");
        QTest::newRow("number") << QVariant(12) << QStringLiteral("MC1084/Oakenfold, Theodora")
                                << QStringLiteral("PC 140.10/Robbery in the First Degree")
                                << QStringLiteral("Handgun");
        QTest::newRow("text") << QVariant(QStringLiteral("12"))
                              << QStringLiteral("MC1084/Oakenfold, Theodora")
                              << QStringLiteral("PC 140.10/Robbery in the First Degree")
                              << QStringLiteral("Handgun");
        for (const QVariant& none : {Null(), QVariant(), QVariant(99999), QVariant(QStringLiteral("twelve"))})
            QTest::addRow("none: %s",
                          qPrintable(none.isValid() ? QStringLiteral("'") + none.toString() : QString()))
                << none << QStringLiteral("/") << QStringLiteral("/") << QString();
    }
    void textsOfTheCaches()
    {
        QFETCH(QVariant, number);
        const auto employees = m_host->newEmployeeListCache();
        const auto offenses = m_host->newOffenseListCache();
        QTEST(employees->ShortText(number) + QLatin1Char('/') + employees->FullText(number), "officer");
        QTEST(offenses->ShortText(number) + QLatin1Char('/') + offenses->FullText(number), "offense");
        QTEST(m_host->newTableCodeCache()->GetDescription(Weapons, number), "weapon");
    }

    void usersAreShownByFirstAndLastName()
    {
        QCOMPARE(m_host->newUsersCache()->UserDisplayName(QStringLiteral("JOBrien")),
                 QStringLiteral("Jack O'Brien"));
        QCOMPARE(m_host->newUsersCache()->UserDisplayName(QStringLiteral("nobody")), QString());
    }

    void documentsShareOneTreeAndAChangeStaysWithItsClone()
    {
        const XmlDocument one = m_host->newEmployeeListCache()->Document();
        const XmlDocument two = m_host->newEmployeeListCache()->Document();
        QVERIFY(one.sharesTreeWith(two));
        one.documentElement().setAttribute(QStringLiteral("mine"), QStringLiteral("1"));
        QVERIFY(!m_host->newEmployeeListCache()->Document().documentElement().hasAttribute(
            QStringLiteral("mine")));
    }

    void charactersThatXmlCannotHoldAreLeftOut()
    {
        Statement update(*m_database, QStringLiteral("UPDATE employee SET name = ? WHERE officer_no = 1"));
        update.run({QStringLiteral("Odd\u0001, <N>") + QChar(0xD800)});
        m_host->refreshCaches();
        QCOMPARE(m_host->newEmployeeListCache()
                     ->Document()
                     .documentElement()
                     .selectSingleNode(QStringLiteral("Employee[OfficerNo=1]/Name"))
                     .text(),
                 QStringLiteral("Odd, <N>"));
    }

    void aRefreshBringsChangesAndTellsOfThem()
    {
        const auto kept = m_host->newEmployeeListCache();
        QStringList changed;
        int raised = 0;
        const Subscription keep =
            m_host->hostServices().Events().CacheRefreshed.subscribe([&](const CacheRefreshInfo& info) {
                ++raised;
                changed = info.Changed;
            });
        execute("UPDATE employee SET name = 'New, Name' WHERE officer_no = 1");
        QCOMPARE(kept->FullText(1), QStringLiteral("O'Brien, Jack"));
        m_host->refreshCaches();
        QCOMPARE(raised, 1);
        QCOMPARE(changed, QStringList{QStringLiteral("Employee")});
        QCOMPARE(kept->FullText(1), QStringLiteral("New, Name"));
        QVERIFY(kept->Document().xml().contains(QStringLiteral("New, Name")));
    }

    void aRefreshThatFailsKeepsTheLastGoodLists()
    {
        const XmlDocument before = m_host->newEmployeeListCache()->Document();
        bool raised = false;
        const Subscription keep = m_host->hostServices().Events().CacheRefreshed.subscribe(
            [&raised](const CacheRefreshInfo&) { raised = true; });
        execute("UPDATE code_value SET display_text = 'other' WHERE table_no = 228");
        execute("ALTER TABLE employee RENAME TO staff");
        QVERIFY(!errorOf([this] { m_host->refreshCaches(); }).isEmpty());
        QVERIFY(!raised);
        QVERIFY(m_host->newEmployeeListCache()->Document().sharesTreeWith(before));
        QCOMPARE(m_host->newTableCodeCache()->GetDescription(Tables::Team, 1), QStringLiteral("Patrol A"));
        execute("ALTER TABLE staff RENAME TO employee");
        m_host->refreshCaches();
        QVERIFY(raised);
        QCOMPARE(m_host->newTableCodeCache()->GetDescription(Tables::Team, 1), QStringLiteral("other"));
    }

    void aChangeByAnotherProgramIsNoticed()
    {
        QVERIFY(!m_host->refreshIfChanged());
        Database::open(path("records.db"))
            ->execute(QStringLiteral("UPDATE employee SET name = 'x' WHERE officer_no = 1"));
        QVERIFY(m_host->refreshIfChanged());
        QCOMPARE(m_host->newEmployeeListCache()->FullText(1), QStringLiteral("x"));
        QVERIFY(!m_host->refreshIfChanged());
    }

    void whatTheHostDoesNotOfferRaisesWhenItIsCalled_data()
    {
        QTest::addColumn<std::function<void(ReferenceHost&)>>("call");
        const auto row = [](const char* name, std::function<void(ReferenceHost&)> call) {
            QTest::newRow(name) << std::move(call);
        };
        row("download", [](ReferenceHost& host) {
            const auto downloader = host.newDownloader();
            downloader->SetBufferSize(1);
            downloader->Cancel();
            downloader->Download(QStringLiteral("a"));
        });
        row("upload", [](ReferenceHost& host) {
            host.newUploader()->Upload(QStringLiteral("a"), QStringLiteral("b"), Null());
        });
        row("thumbnail",
            [](ReferenceHost& host) { host.newThumbnailService()->GetThumbnailPath(QStringLiteral("a")); });
        row("folder", [](ReferenceHost& host) { host.newAttachmentFolders()->GetFolderPath(1); });
        row("word", [](ReferenceHost& host) { host.newCustomDictionary()->AddWord(QStringLiteral("a")); });
        row("support file",
            [](ReferenceHost& host) { host.environment().RefreshSupportFile(QStringLiteral("a")); });
        row("dictionary file", [](ReferenceHost& host) { host.hostServices().SyncCustomDictionaryFile(); });
    }
    void whatTheHostDoesNotOfferRaisesWhenItIsCalled()
    {
        QFETCH(std::function<void(ReferenceHost&)>, call);
        QCOMPARE(errorNumberOf([&] { call(*m_host); }), Error::NoSuchComponentNumber + 0);
        QVERIFY(errorOf([&] { call(*m_host); }).startsWith(QStringLiteral("This host does not offer ")));
    }

    void aFreeCollectionTakesItsClassFromTheCaller()
    {
        const tvTableCollectionPtr rows = m_host->newTableCollection();
        QCOMPARE(rows->Count(), 0);
        rows->SetItemClass(QStringLiteral("Incident.IncdOther"));
        rows->AddNew();
        QCOMPARE(rows->Position(), qint16(1));
    }

    void aCacheOutlivesTheHost()
    {
        const auto cache = m_host->newEmployeeListCache();
        m_host.reset();
        QCOMPARE(cache->ShortText(1), QStringLiteral("MC1007"));
    }

    void theHostCanBeInstalled()
    {
        const HostInstallation installation(*m_host);
        QCOMPARE(&currentHost(), m_host.get());
    }
};

TAVRIN_TEST_MAIN(tst_ReferenceHost)
#include "tst_ReferenceHost.moc"
