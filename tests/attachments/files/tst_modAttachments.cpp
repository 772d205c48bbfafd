#include "attachments/AttachmentRows.h"
#include "attachments/FolderNotSet.h"
#include "attachments/files/modAttachments.h"
#include "support/TestCase.h"
#include "testing/FakeHost.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>

#include <stdexcept>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::modAttachments;
using namespace tavrin::test;

namespace {

const QString FolderSetting = u"_Global/Attachments Folder"_s;

const QString StoredReport = uR"(2014\03\20160201130507_Report.pdf)"_s;
const QString StoredPhoto = uR"(2014\03\20160201130507_Photo.png)"_s;

/// What a call raised.
struct Raised
{
    int number = 0;
    QString description;
};

template <typename Action>
Raised raisedBy(Action action)
{
    try {
        action();
    } catch (const Error& error) {
        return {error.Number, error.Description};
    }
    return {};
}

} // namespace

class tst_modAttachments : public tavrin::test::TestCase
{
    Q_OBJECT

private:
    std::unique_ptr<FakeHost> m_host;
    std::unique_ptr<HostInstallation> m_installation;
    std::unique_ptr<QTemporaryDir> m_folder;

    FakeHostState& state() { return m_host->state(); }
    QStringList takeLog() { return std::exchange(state().log, {}); }
    QStringList takeGiven() { return std::exchange(state().given, {}); }

    /// A row with a picture, whose thumbnail is a red file.
    tvTableRowPtr photo()
    {
        state().settings.insert(FolderSetting, uR"(\\server\share\files)"_s);
        state().thumbnails.insert(uR"(\\server\share\files\)"_s + StoredPhoto,
                                  pictureFile(*m_folder, "thumb.png", Qt::red));
        return attachment({{"FileName", StoredPhoto}});
    }

private Q_SLOTS:
    void init() override
    {
        TestCase::init();
        m_host = std::make_unique<FakeHost>();
        m_installation = std::make_unique<HostInstallation>(*m_host);
        m_folder = std::make_unique<QTemporaryDir>(QDir::tempPath() + u"/pictures-XXXXXX"_s);
    }
    void cleanup() override
    {
        m_installation.reset();
        m_host.reset();
        m_folder.reset();
        TestCase::cleanup();
    }

    // The base folder

    void anEmptySettingRaisesItsWords()
    {
        const Raised raised = raisedBy([] { GetAttachmentsFolder(); });
        QCOMPARE(raised.number, 5);
        QCOMPARE(raised.description, FolderNotSet);
        QCOMPARE(GetAttachmentsFolderSetting(), QString());
    }

    void theFolderIsTheSettingAsItStands()
    {
        for (const QString& value : {uR"(\\server\share\files\)"_s, u"/srv/files/"_s, u" "_s}) {
            state().settings.insert(FolderSetting, value);
            QCOMPARE(GetAttachmentsFolder(), value);
            QCOMPARE(GetAttachmentsFolderSetting(), value);
        }
    }

    void theSettingIsReadAtEachCallAndNothingIsCached()
    {
        state().settings.insert(FolderSetting, u"/one"_s);
        QCOMPARE(GetAttachmentsFolder(), u"/one"_s);
        state().settings.insert(FolderSetting, u"/two"_s);
        QCOMPARE(GetAttachmentsFolder(), u"/two"_s);
        const QString call = u"GetSetting _Global/Attachments Folder"_s;
        QCOMPARE(takeGiven(), QStringList({call, call}));
    }

    // Names and drives

    void theLastComponentOfAPathIsItsName_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("name");
        QTest::newRow("relative") << StoredReport << u"20160201130507_Report.pdf"_s;
        QTest::newRow("drive") << uR"(C:\Scans\a.tif)"_s << u"a.tif"_s;
        QTest::newRow("share") << uR"(\\server\share\a.tif)"_s << u"a.tif"_s;
        QTest::newRow("of another platform") << u"/srv/a.tif"_s << u"a.tif"_s;
        QTest::newRow("name alone") << u"a.tif"_s << u"a.tif"_s;
        QTest::newRow("empty") << u""_s << u""_s;
    }
    void theLastComponentOfAPathIsItsName()
    {
        QFETCH(QString, path);
        QTEST(GetFileNameOnly(path), "name");
    }

    void aDriveIsALetterAndAColonOrTheHeadOfANetworkPath_data()
    {
        QTest::addColumn<QVariant>("path");
        QTest::addColumn<bool>("drive");
        QTest::newRow("letter") << QVariant(uR"(C:\Scans\a.tif)"_s) << true;
        QTest::newRow("letter without separator") << QVariant(u"c:a.tif"_s) << true;
        QTest::newRow("share") << QVariant(uR"(\\server\share\a.tif)"_s) << true;
        QTest::newRow("relative") << QVariant(StoredReport) << false;
        QTest::newRow("server alone") << QVariant(uR"(\\server)"_s) << false;
        QTest::newRow("rooted") << QVariant(uR"(\Scans\a.tif)"_s) << false;
        QTest::newRow("Null") << Null() << false;
    }
    void aDriveIsALetterAndAColonOrTheHeadOfANetworkPath()
    {
        QFETCH(QVariant, path);
        QFETCH(bool, drive);
        QCOMPARE(HasDriveName(ToText(path)), drive);
        QCOMPARE(IsRelativeAttachment(*attachment({{"FileName", path}})), !drive);
    }

    void whetherARowIsAnImageIsTheHostsRuleForTheStoredName()
    {
        QVERIFY(
            IsImageAttachment(*attachment({{"FileName", StoredPhoto}, {"OriginalFileName", u"a.txt"_s}})));
        QVERIFY(
            !IsImageAttachment(*attachment({{"FileName", StoredReport}, {"OriginalFileName", u"a.png"_s}})));
        QVERIFY(!IsImageAttachment(*attachment({})));
        QCOMPARE(takeGiven(), QStringList({u"IsImageFile "_s + StoredPhoto, u"IsImageFile "_s + StoredReport,
                                           u"IsImageFile "_s}));
    }

    // The path of the file

    void aRowWithADriveResolvesToItselfWithTheSettingEmptyWhateverFolderNoHolds_data()
    {
        QTest::addColumn<QString>("fileName");
        QTest::addColumn<QVariant>("folderNo");
        const QString scan = uR"(C:\Scans\a.tif)"_s;
        QTest::newRow("FolderNo Null") << scan << Null();
        QTest::newRow("FolderNo 7") << scan << QVariant(7);
        QTest::newRow("FolderNo a text") << scan << QVariant(u"seven"_s);
        QTest::newRow("share") << uR"(\\server\share\a.tif)"_s << QVariant(7);
    }
    void aRowWithADriveResolvesToItselfWithTheSettingEmptyWhateverFolderNoHolds()
    {
        QFETCH(QString, fileName);
        QFETCH(QVariant, folderNo);
        QCOMPARE(GetAttachmentPath(*attachment({{"FileName", fileName}, {"FolderNo", folderNo}})), fileName);
        QCOMPARE(takeLog(), QStringList()); // the base folders are not touched
    }

    void aRelativeRowWithoutFolderNoAndWithAnEmptySettingRaisesTheMessage()
    {
        const Raised raised = raisedBy([] { GetAttachmentPath(*attachment({{"FileName", StoredReport}})); });
        QCOMPARE(raised.number, 5);
        QCOMPARE(raised.description, FolderNotSet);
    }

    void aRelativeRowLiesBelowTheSettingWithOneSeparatorBetween_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QString>("path");
        QTest::newRow("share") << uR"(\\server\share)"_s << uR"(\\server\share\)"_s + StoredReport;
        QTest::newRow("separator at its end") << uR"(D:\files\)"_s << uR"(D:\files\)"_s + StoredReport;
        QTest::newRow("of this platform") << u"/srv/files"_s << uR"(/srv/files\)"_s + StoredReport;
    }
    void aRelativeRowLiesBelowTheSettingWithOneSeparatorBetween()
    {
        QFETCH(QString, folder);
        state().settings.insert(FolderSetting, folder);
        QTEST(GetAttachmentPath(*attachment({{"FileName", StoredReport}})), "path");
        QCOMPARE(takeLog(), QStringList({u"GetSetting"_s}));
    }

    void aNumberedFolderIsAskedOfANewServiceAtEachCallAndTheSettingIsNotRead()
    {
        state().folders.insert(u"7"_s, uR"(\\archive\old)"_s);
        const tvTableRowPtr row = attachment({{"FileName", StoredReport}, {"FolderNo", 7}});
        for (int i = 0; i < 2; ++i) {
            QCOMPARE(GetAttachmentPath(*row), uR"(\\archive\old\)"_s + StoredReport);
            QCOMPARE(takeLog(), QStringList({u"new AttachmentFolders"_s, u"GetFolderPath"_s}));
            QCOMPARE(takeGiven(), QStringList({u"GetFolderPath 7"_s}));
        }
    }

    void aNumberOfZeroIsAFolderToo()
    {
        state().folders.insert(u"0"_s, u"/zero"_s);
        QCOMPARE(GetAttachmentPath(*attachment({{"FileName", u"a"_s}, {"FolderNo", 0}})), uR"(/zero\a)"_s);
    }

    void aFailingFileServiceRaisesItsOwnErrorThroughGetAttachmentPath()
    {
        m_host->failWith(Error(u"The folder 7 is not known"_s, 1234));
        const Raised raised = raisedBy([] {
            GetAttachmentPath(*attachment({{"FileName", StoredReport}, {"FolderNo", 7}}));
        });
        QCOMPARE(raised.number, 1234);
        QCOMPARE(raised.description, u"The folder 7 is not known"_s);
    }

    // The name to show

    void theDisplayNameIsTheOriginalNameOrTheStoredOne_data()
    {
        QTest::addColumn<QVariant>("original");
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<QString>("shown");
        const QVariant report = StoredReport;
        QTest::newRow("original") << QVariant(u"Report.pdf"_s) << report << u"Report.pdf"_s;
        QTest::newRow("original Null: stored name, stamp included")
            << Null() << report << u"20160201130507_Report.pdf"_s;
        QTest::newRow("original empty") << QVariant(u""_s) << report << u"20160201130507_Report.pdf"_s;
        QTest::newRow("a single blank counts as a name") << QVariant(u" "_s) << report << u" "_s;
        QTest::newRow("original with a folder")
            << QVariant(uR"(C:\My\Report.pdf)"_s) << report << u"Report.pdf"_s;
        QTest::newRow("a number as name") << QVariant(12) << report << u"12"_s;
        QTest::newRow("both Null") << Null() << Null() << u""_s;
    }
    void theDisplayNameIsTheOriginalNameOrTheStoredOne()
    {
        QFETCH(QVariant, original);
        QFETCH(QVariant, stored);
        QTEST(GetAttachmentDisplayName(*attachment({{"OriginalFileName", original}, {"FileName", stored}})),
              "shown");
        QCOMPARE(takeLog(), QStringList());
    }

    // The thumbnail

    void aThumbnailTakesItsStepsInOrderWithNewServicesAtEachCall()
    {
        const tvTableRowPtr row = photo();
        for (int i = 0; i < 2; ++i) {
            const QImage thumbnail = GetAttachmentThumbnail(*row, 1395, 1845);
            QCOMPARE(thumbnail.size(), QSize(93, 123));
            QCOMPARE(thumbnail.pixelColor(46, 61), QColor(Qt::red));
            QCOMPARE(takeLog(), QStringList({u"IsImageFile"_s, u"new ThumbnailService"_s, u"GetSetting"_s,
                                             u"GetThumbnailPath"_s, u"new Downloader"_s,
                                             u"Download "_s + m_folder->filePath(u"thumb.png"_s),
                                             u"LoadPicture"_s, u"FitPicture"_s}));
        }
    }

    void theThumbnailsPathIsAskedForThePathOfTheAttachment()
    {
        GetAttachmentThumbnail(*photo(), 150, 150);
        QCOMPARE(takeGiven().value(2), uR"(GetThumbnailPath \\server\share\files\)"_s + StoredPhoto);
    }

    void thePictureIsFittedWithTheHeightBeforeTheWidthInMode1WithTheFlagAndTheLightColour()
    {
        GetAttachmentThumbnail(*photo(), 1395, 1845);
        QCOMPARE(takeGiven().last(),
                 u"FitPicture height 123 width 93 mode 1 flag -1 colour 80000016 reserved 0"_s);
    }

    void onlyTheThumbnailIsFetchedNeverTheFileItself()
    {
        GetAttachmentThumbnail(*photo(), 150, 150);
        const QStringList downloads = state().log.filter(u"Download "_s);
        QCOMPARE(downloads, QStringList({u"Download "_s + m_folder->filePath(u"thumb.png"_s)}));
    }

    void theTemporaryFileIsLoadedAndThenDeletedWhileTheThumbnailStays()
    {
        const tvTableRowPtr row = photo();
        QVERIFY(!GetAttachmentThumbnail(*row, 150, 150).isNull());
        const QString loaded = state().given.filter(u"LoadPicture "_s).value(0).mid(12);
        QVERIFY2(loaded.endsWith(u"/copy.tmp"_s), qPrintable(loaded));
        QVERIFY(!QFile::exists(loaded));
        QVERIFY(QFile::exists(m_folder->filePath(u"thumb.png"_s)));
        QVERIFY(!QFileInfo::exists(QFileInfo(loaded).path())); // nor the folder that was made for it
    }

    void aFailureOfTheDeleteLeavesTheResultInPlace()
    {
        // Where there is no file the fake downloader names one that is not there; a picture is known for it.
        const tvTableRowPtr row = photo();
        state().thumbnails.insert(uR"(\\server\share\files\)"_s + StoredPhoto, u"/nowhere/thumb.png"_s);
        QImage picture(4, 4, QImage::Format_RGB32);
        picture.fill(Qt::blue);
        state().pictures.insert(u"/nowhere/thumb.png"_s, picture);
        QCOMPARE(GetAttachmentThumbnail(*row, 150, 150).pixelColor(5, 5), QColor(Qt::blue));
    }

    void aNonImageRowNeverReachesTheThumbnailService()
    {
        state().settings.insert(FolderSetting, u"/srv"_s);
        QVERIFY(GetAttachmentThumbnail(*attachment({{"FileName", StoredReport}}), 150, 150).isNull());
        QCOMPARE(takeLog(), QStringList({u"IsImageFile"_s}));
    }

    void aFailingQuestionWhetherItIsAnImageIsNotSilent()
    {
        const tvTableRowPtr row = photo();
        m_host->failWith(Error(u"no rule"_s));
        QCOMPARE(raisedBy([&] { GetAttachmentThumbnail(*row, 150, 150); }).description, u"no rule"_s);
    }

    void aThumbnailThatCannotBeHadIsNoErrorAtWhicheverStepItFails_data()
    {
        QTest::addColumn<QString>("step");
        for (const char* step : {"setting", "none", "download", "load"})
            QTest::newRow(step) << QString::fromLatin1(step);
    }
    void aThumbnailThatCannotBeHadIsNoErrorAtWhicheverStepItFails()
    {
        QFETCH(QString, step);
        const tvTableRowPtr row = photo();
        const QString thumbnail = m_folder->filePath(u"thumb.png"_s);
        QString last;
        if (step == u"setting"_s) {
            state().settings.clear();
            last = u"GetSetting"_s;
        } else if (step == u"none"_s) {
            state().thumbnails.clear();
            last = u"GetThumbnailPath"_s;
        } else if (step == u"download"_s) {
            state().transferFailures.insert(thumbnail, u"gone"_s);
            last = u"Download "_s + thumbnail;
        } else {
            QFile file(thumbnail);
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write("no picture") > 0);
            last = u"LoadPicture"_s;
        }
        QVERIFY(GetAttachmentThumbnail(*row, 150, 150).isNull());
        QCOMPARE(takeLog().last(), last); // nothing comes after the failure
    }

    void aFailureOfTheFittingStaysSilent()
    {
        const tvTableRowPtr row = photo();
        bool asked = false;
        state().fitPicture = [&asked](const QImage&, int, int, Color) -> QImage {
            asked = true;
            throw Error(u"no room"_s);
        };
        QVERIFY(GetAttachmentThumbnail(*row, 150, 150).isNull());
        QVERIFY(asked);
    }

    void whateverKindOfFailureItIsStaysSilent()
    {
        const tvTableRowPtr row = photo();
        state().duringTransfer = [](const QString&, qint64, qint64) { throw std::runtime_error("odd"); };
        QVERIFY(GetAttachmentThumbnail(*row, 150, 150).isNull());
    }

    void theTemporaryFileOfAPictureThatCannotBeLoadedIsDeletedToo()
    {
        const tvTableRowPtr row = photo();
        QFile file(m_folder->filePath(u"thumb.png"_s));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("no picture") > 0);
        file.close();
        QVERIFY(GetAttachmentThumbnail(*row, 150, 150).isNull());
        const QString loaded = state().given.filter(u"LoadPicture "_s).value(0).mid(12);
        QVERIFY2(loaded.endsWith(u"/copy.tmp"_s), qPrintable(loaded));
        QVERIFY(!QFile::exists(loaded));
        QVERIFY(!QFileInfo::exists(QFileInfo(loaded).path())); // nor the folder that was made for it
    }

    void aTemporaryCopyIsDeletedWithTheFolderThatWasMadeForItAlone_data()
    {
        QTest::addColumn<QString>("copy");
        QTest::addColumn<bool>("folderStays");
        QTest::newRow("alone in its folder") << u"alone/copy.tmp"_s << false;
        QTest::newRow("beside another") << u"both/copy.tmp"_s << true;
    }
    void aTemporaryCopyIsDeletedWithTheFolderThatWasMadeForItAlone()
    {
        QFETCH(QString, copy);
        QFETCH(bool, folderStays);
        for (const char* name : {"alone/copy.tmp", "both/copy.tmp", "both/other.tmp"}) {
            const QString path = m_folder->filePath(QString::fromLatin1(name));
            QVERIFY(QDir().mkpath(QFileInfo(path).path()));
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        const QString path = m_folder->filePath(copy);
        RemoveTemporaryCopy(path);
        QVERIFY(!QFile::exists(path));
        QCOMPARE(QFileInfo::exists(QFileInfo(path).path()), folderStays);
        RemoveTemporaryCopy(path); // which is not there any more
        RemoveTemporaryCopy(QString());
        QVERIFY(QFile::exists(m_folder->filePath(u"both/other.tmp"_s)));
    }

    void aFolderElsewhereStaysThoughItIsEmptyNow()
    {
        const QByteArray before = qgetenv("TMPDIR");
        const auto restore = qScopeGuard([&before] {
            if (before.isNull())
                qunsetenv("TMPDIR");
            else
                qputenv("TMPDIR", before);
        });
        const QDir folder(m_folder->path());
        QVERIFY(folder.mkpath(u"temporary"_s) && folder.mkpath(u"elsewhere"_s));
        qputenv("TMPDIR", QFile::encodeName(folder.filePath(u"temporary"_s)));
        QFile file(folder.filePath(u"elsewhere/copy.tmp"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        RemoveTemporaryCopy(file.fileName());
        QVERIFY(!file.exists());
        QVERIFY(folder.exists(u"elsewhere"_s));
    }

    void aBoxWithoutRoomGivesNothing()
    {
        const tvTableRowPtr row = photo();
        QVERIFY(GetAttachmentThumbnail(*row, 0, 0).isNull());
    }
};

TAVRIN_TEST_MAIN(tst_modAttachments)
#include "tst_modAttachments.moc"
