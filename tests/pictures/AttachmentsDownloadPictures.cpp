// Writes pictures of the dialogs of a download into the folder that is named on the command line; with
// QT_SCALE_FACTOR=2 large ones.

#include "attachments/dialogs/frmDownloadAllTask.h"
#include "attachments/dialogs/frmDownloadFolderPrompt.h"
#include "attachments/dialogs/frmDownloadTask.h"
#include "pictures/Pictures.h"
#include "support/Fakes.h"
#include "testing/FakeHost.h"
#include "widgets/boxes/TextBox.h"
#include "workbench/application/Theme.h"

#include <QPointer>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <functional>

using namespace tavrin;
using namespace Qt::StringLiterals;

namespace {

/// A store with three files of 17 bytes, whose first half is 47 per cent.
struct Stage
{
    explicit Stage(const QString& suffix, const QString& folder)
        : installation(host)
        , m_suffix(suffix)
        , m_folder(folder)
    {
        host.state().settings.insert(u"_Global/Attachments Folder"_s, store.path());
        for (const QString& name : {u"1.pdf"_s, u"2.pdf"_s, u"3.pdf"_s}) {
            QFile file(store.filePath(name));
            if (!file.open(QIODevice::WriteOnly) || file.write(QByteArray(17, 'x')) != 17)
                throw Error(u"%1 cannot be written"_s.arg(file.fileName()));
            fieldOf(*rows->AddNew(), u"FileName"_s)->SetValue(name);
        }
    }
    QString stored(const QString& name) const { return store.path() + u'\\' + name; }
    void write(QWidget& form, const QString& name) const
    {
        test::writePicture(form, m_folder, u"Attachments/download-%1%2"_s.arg(name, m_suffix));
    }
    /// Acts when the person is let act in the middle of this file.
    void inTheMiddleOf(const QString& name, const std::function<void()>& act)
    {
        host.state().duringTransfer = [=, this](const QString& path, qint64 bytes, qint64 total) {
            if (path == stored(name) && bytes < total)
                QTimer::singleShot(0, qApp, act);
        };
    }

    void showOneFile()
    {
        auto* task = new frmDownloadTask;
        task->SetFilename(stored(u"1.pdf"_s));
        inTheMiddleOf(u"1.pdf"_s, [=, this] { write(*task, u"one"_s); });
        task->Start(&owner);
    }
    void showAllFiles()
    {
        auto* task = new frmDownloadAllTask;
        task->SetDownloadPath(store.filePath(u"all"_s));
        task->SetAttachments(rows);
        inTheMiddleOf(u"2.pdf"_s, [=, this] { write(*task, u"all"_s); });
        task->Start(&owner);
    }
    void showCancelling()
    {
        auto* task = new frmDownloadAllTask;
        task->SetDownloadPath(store.filePath(u"cancelled"_s));
        task->SetAttachments(rows);
        inTheMiddleOf(u"2.pdf"_s, [=, this] {
            task->close();
            write(*task, u"cancelling"_s);
        });
        try {
            task->Start(&owner);
        } catch (const Error&) { // NOLINT(bugprone-empty-catch): that it was cancelled
        }
    }
    void showPrompt(const QString& name, const QString& picture)
    {
        frmDownloadFolderPrompt prompt;
        prompt.SetFolderName(name);
        prompt.show();
        prompt.activateWindow();
        if (!QTest::qWaitForWindowActive(&prompt))
            throw Error(u"the prompt did not come up"_s);
        if (picture != u"folder"_s)
            QTest::keyClick(prompt.windowHandle(), Qt::Key_Return);
        write(prompt, picture);
    }

    test::FakeHost host;
    HostInstallation installation;
    QTemporaryDir store;
    std::shared_ptr<test::FakeCollection> rows = std::make_shared<test::FakeCollection>(
        QStringList{u"SeqNo"_s, u"FileName"_s, u"OriginalFileName"_s, u"FolderNo"_s});
    QWidget owner;

private:
    QString m_suffix;
    QString m_folder;
};

} // namespace

TAVRIN_PICTURES(AttachmentsDownload)(int argc, char** argv)
{
    return test::writePictures(argc, argv, [](const QString& folder, bool isLarge) {
        for (const bool dark : {false, true}) {
            workbench::applyTheme(dark);
            Stage stage(QLatin1String(dark ? "-dark" : "") + QLatin1String(isLarge ? "-200" : ""), folder);
            stage.showOneFile();
            stage.showAllFiles();
            stage.showCancelling();
            stage.showPrompt(u"Incident 2014-0031"_s, u"folder"_s);
            stage.showPrompt(u"Incident 2014/0031"_s, u"folder-error"_s);
        }
    });
}
