#include "workbench/tour/Tour.h"

#include "base/failure/Error.h"
#include "workbench/tour/TourSteps.h"

#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <QTemporaryDir>

#include <cstdio>
#include <functional>

namespace tavrin::workbench {

namespace {

const QString DatabaseName = QStringLiteral("tour.sqlite");
const QString DownloadsName = QStringLiteral("downloads");

/// What the tour works on; its pictures stay.
void removeWorkingFiles(const QDir& folder)
{
    for (const QString& ending :
         {QString(), QStringLiteral("-wal"), QStringLiteral("-shm"), QStringLiteral("-journal")})
        QFile::remove(folder.filePath(DatabaseName + ending));
    for (const QString& name : {DownloadsName, QStringLiteral("attachments"), QStringLiteral("files")})
        QDir(folder.filePath(name)).removeRecursively();
}

/// A database of its own with the built-in data and form, which nobody else has touched.
Options withOwnDatabase(const Options& options)
{
    const QDir folder(options.tourFolder);
    Options own;
    own.theme = options.theme;
    own.tourFolder = options.tourFolder;
    own.database = folder.filePath(DatabaseName);
    own.downloadsFolder = folder.filePath(DownloadsName);
    QDir().mkpath(own.downloadsFolder);
    return own;
}

int walk(const Options& options, const std::function<void(TourSite&)>& subjects)
{
    TourDriver driver(options.tourFolder);
    TourSite site(options, driver);
    try {
        subjects(site);
    } catch (const Error& error) {
        std::printf("not ok - %s\n", qPrintable(error.Description));
        driver.picture(QStringLiteral("failure"));
        return 1;
    }
    std::printf("%d steps; the pictures are in %s\n", driver.steps(), qPrintable(options.tourFolder));
    return 0;
}

} // namespace

int runTour(const Options& options)
{
    const QString& folder = options.tourFolder;
    if (!QDir().mkpath(folder))
        throw Error(QStringLiteral("The folder %1 could not be made. Check that you may write there, or name "
                                   "another one with --tour.")
                        .arg(folder));
    if (options.isTourElsewhere)
        return walk(options, walkSpellingElsewhere);
    removeWorkingFiles(QDir(folder)); // of a tour that was killed
    const auto clean = qScopeGuard([&folder] { removeWorkingFiles(QDir(folder)); });
    const QTemporaryDir workstation; // not the person's own, whose words are none of the tour's business
    Options own = withOwnDatabase(options);
    own.workstationFolder = workstation.path();
    return walk(own, [&](TourSite& site) {
        walkCodes(site);
        walkPeople(site);
        walkOffenses(site);
        walkSuspects(site);
        walkLocation(site);
        walkAttachments(site, folder);
        walkSpelling(site, folder);
        walkSaving(site);
    });
}

} // namespace tavrin::workbench
