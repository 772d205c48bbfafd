#include "Tour.h"

#include "TourSteps.h"
#include "base/Error.h"

#include <QDir>
#include <QFile>
#include <QScopeGuard>

#include <cstdio>

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

} // namespace

int runTour(const Options& options)
{
    if (!QDir().mkpath(options.tourFolder))
        throw Error(QStringLiteral("The folder %1 could not be made. Check that you may write there, or name "
                                   "another one with --tour.")
                        .arg(options.tourFolder));
    Options own; // its own database with the built-in data and form, which nobody else has touched
    own.theme = options.theme;
    const QDir folder(options.tourFolder);
    own.database = folder.filePath(DatabaseName);
    own.downloadsFolder = folder.filePath(DownloadsName);
    removeWorkingFiles(folder); // of a tour that was killed
    const auto clean = qScopeGuard([&folder] { removeWorkingFiles(folder); });
    QDir().mkpath(own.downloadsFolder);
    TourDriver driver(options.tourFolder);
    TourSite site(own, driver);
    try {
        walkCodes(site);
        walkPeople(site);
        walkOffenses(site);
        walkSuspects(site);
        walkLocation(site);
        walkAttachments(site, options.tourFolder);
        walkSaving(site);
    } catch (const Error& error) {
        std::printf("not ok - %s\n", qPrintable(error.Description));
        driver.picture(QStringLiteral("failure"));
        return 1;
    }
    std::printf("%d steps; the pictures are in %s\n", driver.steps(), qPrintable(options.tourFolder));
    return 0;
}

} // namespace tavrin::workbench
