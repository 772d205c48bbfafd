// Writes a picture of each state of the upload dialog into the folder that is named on the command line; with
// QT_SCALE_FACTOR=2 a large picture of each.

#include "attachments/dialogs/frmUploadTask.h"
#include "pictures/Pictures.h"
#include "support/Fakes.h"
#include "testing/FakeHost.h"
#include "workbench/application/Theme.h"

#include <QFile>
#include <QPointer>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>

using namespace tavrin;

namespace {

const QString Working = QStringLiteral("Scans/Interview with Ben Birch.mp3");
const QString Broken = QStringLiteral("Scans/Photographs of the scene, north side.tif");
const QString Refused = QStringLiteral("Scans/Plan.dwg");

/// Four files on the workstation of which two are about to fail, and the dialog above a window.
struct Stage
{
    explicit Stage(bool dark)
        : installation(host)
    {
        workbench::applyTheme(dark);
        QDir::setCurrent(disk.path()); // so that the paths on the picture are a person's
        QDir().mkdir(QStringLiteral("Scans"));
        for (const QString& path : paths) {
            QFile file(path);
            if (!file.open(QIODevice::WriteOnly) || file.write(QByteArray(1000, 'a')) != 1000)
                throw Error(QStringLiteral("%1 cannot be written").arg(path));
        }
        host.state().settings.insert(QStringLiteral("_Global/Attachments Folder"),
                                     disk.filePath(QStringLiteral("store")));
        host.state().transferFailures = {
            {Broken, QStringLiteral("The file could not be copied to the attachments folder, because the "
                                    "server that holds it has not answered: "
                                    "//records.example/departments/attachments/2016/02/20160201130507")},
            {Refused, QStringLiteral("The disk is full.")}};
        window.resize(480, 320);
        window.show();
    }
    ~Stage()
    {
        delete dialog;
        QDir::setCurrent(QDir::rootPath());
    }

    const QStringList paths{QStringLiteral("Scans/Statement of Ann Ash.pdf"), Working, Broken, Refused};
    QTemporaryDir disk;
    test::FakeHost host;
    HostInstallation installation;
    QWidget window;
    QPointer<frmUploadTask> dialog = new frmUploadTask;
};

void writeStates(bool dark, const QString& folder, const QString& ending)
{
    Stage stage(dark);
    const QString theme = (dark ? QStringLiteral("-dark") : QString()) + ending;
    QString failed; // a failure in here would be taken for one of the upload
    const auto write = [&](const char* state) {
        try {
            test::writePicture(stage.dialog->grab(), folder,
                               QStringLiteral("Attachments/upload-%1%2").arg(QLatin1String(state), theme));
        } catch (const Error& error) {
            failed = error.Description;
        }
    };
    stage.host.state().duringTransfer = [&](const QString& path, qint64 bytes, qint64 total) {
        if (path == Working && bytes == total)
            write("working");
    };
    // The question keeps the dialog open until somebody answers it.
    QTimer question;
    QObject::connect(&question, &QTimer::timeout, &question, [&] {
        if (!stage.dialog->findChild<QPushButton*>(QStringLiteral("cmdSkip"))->isEnabled())
            return;
        question.stop();
        write("retry");
        stage.dialog->reject();
    });
    question.start(1);
    stage.dialog->SetFiles(stage.paths);
    stage.dialog->Start(&stage.window);
    if (!failed.isEmpty())
        throw Error(failed);
}

} // namespace

TAVRIN_PICTURES(AttachmentsUpload)(int argc, char** argv)
{
    return test::writePictures(argc, argv, [](const QString& folder, bool isLarge) {
        const QString whole = QDir(folder).absolutePath(); // the current folder changes
        const QString ending = isLarge ? QStringLiteral("-200") : QString();
        for (const bool dark : {false, true})
            writeStates(dark, whole, ending);
    });
}
