#include "Tour.h"

#include "TourSteps.h"
#include "base/Error.h"

#include <QDir>
#include <QFile>

#include <cstdio>

namespace tavrin::workbench {

int runTour(const Options& options)
{
    if (!QDir().mkpath(options.tourFolder))
        throw Error(QStringLiteral("The folder %1 could not be made. Check that you may write there, or name "
                                   "another one with --tour.")
                        .arg(options.tourFolder));
    Options own; // its own database with the built-in data and form, which nobody else has touched
    own.theme = options.theme;
    own.database = QDir(options.tourFolder).filePath(QStringLiteral("tour.sqlite"));
    for (const QString& ending :
         {QString(), QStringLiteral("-wal"), QStringLiteral("-shm"), QStringLiteral("-journal")})
        QFile::remove(own.database + ending);
    own.downloadsFolder = QDir(options.tourFolder).filePath(QStringLiteral("downloads"));
    for (const QString& folder :
         {own.downloadsFolder, QDir(options.tourFolder).filePath(QStringLiteral("attachments"))})
        QDir(folder).removeRecursively();
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
