#pragma once

#include "base/export/Export.h"
#include "base/failure/Error.h"
#include "frame/host_contracts/Host.h"
#include "testing/FakeRecords.h"

#include <QHash>
#include <QImage>
#include <QList>
#include <QMap>
#include <QPair>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <functional>
#include <map>
#include <memory>
#include <optional>

namespace tavrin::testing {

/// What a fake host knows and what was asked of it. It gains members from version to version, so a test is
/// compiled with the version that it runs with.
struct TAVRIN_EXPORT FakeHostState
{
    /// Calls of any operation of any service; making a cache object counts as well.
    int calls = 0;
    /// The operations that were called, in their order, such as "GetTableValues 302".
    QStringList log;
    /// What the operations on files and pictures were given, in their order, such as "IsImageFile a.png".
    QStringList given;
    /// While set, each operation raises it instead of answering.
    std::optional<Error> failure;
    /// The operations that raise, by their name in the log, and what they raise.
    std::map<QString, Error> failures;

    /// The values of each code table, in their order.
    QMap<TableNumber, QList<TableValue>> tables;
    /// Numeric codes of each table that count as inactive.
    QMap<TableNumber, QSet<int>> inactive;
    /// The lists of people and offenses, in the form that `EmployeeListCache` and its like tell.
    XmlDocument employees;
    XmlDocument offenses;
    XmlDocument users;
    /// What the caches say of a number, or of a sign-on name, by its text; "" for what is not here.
    QHash<QString, QString> employeeShortTexts;
    QHash<QString, QString> employeeFullTexts;
    QHash<QString, QString> offenseShortTexts;
    QHash<QString, QString> offenseFullTexts;
    QHash<QString, QString> userNames;

    /// `Session::CurrentUserId`.
    QString userId = QStringLiteral("tester");
    /// By "section/key".
    QHash<QString, QString> settings;
    /// By "module/right".
    QSet<QString> permissions;
    /// By "module/table/field".
    QSet<QString> missingFields;
    /// By "module/table/field", or "module/table/field/extra" where the question has an extra.
    QSet<QString> requiredFields;
    /// `UiServices::TextBoxColors`.
    tavrin::TextBoxColors textBoxColors;
    /// `HostServices::DateDisplayFormat`.
    QString dateDisplayFormat = QStringLiteral("MM/dd/yyyy");
    /// The folders of `Environment`.
    QString dictionaryFolder;
    QString downloadsFolder;
    /// The records that own others; one in memory that is not among them is owned as it says itself.
    QHash<HostObject*, tvBusinessObjectPtr> parents;
    /// Paths of thumbnails by the paths of their pictures.
    QHash<QString, QString> thumbnails;
    /// Attachments folders by their numbers.
    QHash<QString, QString> folders;
    /// Pictures by the paths that `Images::LoadPicture` is asked for.
    QHash<QString, QImage> pictures;
    /// How a picture is fitted into a height and a width, on a ground; without it a fitted picture has one
    /// colour.
    std::function<QImage(const QImage&, int, int, Color)> fitPicture;
    /// Why the transfer of a path fails, by the path as the transfer was asked for it.
    QHash<QString, QString> transferFailures;
    /// What an upload claims to be the bytes in all, whatever the file's size.
    std::optional<qint64> uploadTotal;
    /// Called before each step of a transfer: path, bytes so far, bytes in all.
    std::function<void(const QString&, qint64, qint64)> duringTransfer;
    /// Makes the downloaders of a test that needs odd ones; without it they copy real files.
    std::function<std::unique_ptr<Downloader>()> makeDownloader;
    /// Whether uploads tell how far they are.
    bool uploadTellsProgress = true;
    /// The collection that was made last, which a control has before its first record.
    std::weak_ptr<FakeCollection> madeCollection;
    /// Where downloaded copies lie; made with the first.
    std::unique_ptr<QTemporaryDir> copies;
    /// What `tvCustomDictionary::AddWord` was given.
    QStringList addedWords;
    /// Code and description of each offense of NIBRS.
    QList<QPair<QString, QString>> nibrsCodes;
    /// Without it the host has no component of the name "NIBRS.Singletons".
    bool hasNibrs = true;

    /// A test raises its events here.
    EventHub hub;

    /// Counts the call, and raises the failure while one is set.
    void called(const QString& operation);
    /// The values of a table without the inactive ones, unless these are asked for.
    QList<TableValue> valuesOf(TableNumber table, bool includeInactive,
                               const QVariant& alwaysIncluded = {}) const;
    /// Whether the value is not among `inactive`.
    bool isActive(TableNumber table, const TableValue& value) const;
};

/// A host without database and files. A test sets what it answers through `state`, installs it with a
/// `HostInstallation` and reads there what was asked:
///
///     FakeHost host;
///     host.setTable(302, {{u"H"_s, u"Handgun"_s, 11}});
///     const HostInstallation installed(host);
///     ... // the form under test
///     QCOMPARE(host.state().log.count(u"GetTableValues 302"_s), 1);
class TAVRIN_EXPORT FakeHost final : public Host
{
public:
    FakeHost();
    ~FakeHost() override;

    /// What it answers and what it was asked, for a test to read and to change at any time.
    FakeHostState& state();
    /// `FakeHostState::calls`.
    int calls() const;
    /// Gives a code table its values, all of them active.
    void setTable(TableNumber table, const QList<TableValue>& values);
    /// Whatever is called from now on raises this; `{}` ends that.
    void failWith(std::optional<Error> error);

    HostServices& hostServices() override;
    XmlFactory& xmlFactory() override;
    Session& session() override;
    UiServices& uiServices() override;
    ListFilling& listFilling() override;
    Images& images() override;
    Environment& environment() override;

    std::unique_ptr<TableCodeCache> newTableCodeCache() override;
    std::unique_ptr<EmployeeListCache> newEmployeeListCache() override;
    std::unique_ptr<OffenseListCache> newOffenseListCache() override;
    std::unique_ptr<UsersCache> newUsersCache() override;
    std::unique_ptr<ThumbnailService> newThumbnailService() override;
    std::unique_ptr<AttachmentFolders> newAttachmentFolders() override;
    std::unique_ptr<tvCustomDictionary> newCustomDictionary() override;
    std::unique_ptr<Downloader> newDownloader() override;
    std::unique_ptr<Uploader> newUploader() override;
    tvTableCollectionPtr newTableCollection() override;
    std::shared_ptr<NibrsModuleService> createNibrsModule(const QString& className) override;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace tavrin::testing
