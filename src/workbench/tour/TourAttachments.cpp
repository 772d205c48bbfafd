#include "attachments/files/modAttachments.h"
#include "base/failure/Error.h"
#include "base/failure/Guard.h"
#include "base/values/StorePath.h"
#include "base/values/Variant.h"
#include "frame/desktop/Desktop.h"
#include "host/store/AttachmentStore.h"
#include "widgets/boxes/TextBox.h"
#include "widgets/lists/ListView.h"
#include "widgets/panels/Form.h"
#include "workbench/tour/LastFileWatch.h"
#include "workbench/tour/TourSteps.h"

#include <QApplication>
#include <QCheckBox>
#include <QDateTime>
#include <QDir>
#include <QDropEvent>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QUrl>
#include <QVariantList>

#include <utility>

namespace tavrin::workbench {

namespace {

constexpr int AttachmentsPageNo = 7;
constexpr qint64 LongFile = 4LL << 20; // fetched in several steps, so that it can be stopped between them

const QString Rows = QStringLiteral("Attachments");
const QString FileName = QStringLiteral("FileName");
const QString OriginalFileName = QStringLiteral("OriginalFileName");
const QString FirstPicture = QStringLiteral("front door.png");
const QString SecondPicture = QStringLiteral("back door.png");
const QString Report = QStringLiteral("report.txt");
const QString Recording = QStringLiteral("recording.wav");

bool isMessage(QWidget* box)
{
    return qobject_cast<QMessageBox*>(box) != nullptr;
}

bool hasStopped(QWidget* box)
{
    const auto* form = qobject_cast<Form*>(box);
    return form && !form->isBusy();
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Chooses these files in place of a person.
struct ChosenFiles final : FileDialogs
{
    QStringList openFiles(QWidget*, const QString&, const QString&, const QString&, bool) override
    {
        return files;
    }
    QStringList files;
};

/// Takes down what it is asked to open.
struct RecordingShell final : Shell
{
    qint64 execute(const QString& path) override
    {
        opened << path;
        return 33;
    }
    QStringList opened;
};

class AttachmentSteps final : public TourSteps
{
public:
    AttachmentSteps(TourSite& site, const QString& folder);
    ~AttachmentSteps();
    void walk();

private:
    void makeFiles();
    void dropFiles();
    void moveTheCover();
    void describe();
    void open();
    void downloadAll();
    void stopADownload();
    void removeOne();
    void saveAndCompare();

    QString source(const QString& name) const { return m_files.filePath(name); }
    ListView& list() const { return *d.find<ListView>(record(), QStringLiteral("lvwFiles")); }
    QCheckBox& coverBox() const { return *d.find<QCheckBox>(record(), QStringLiteral("chkDefault")); }
    bool hasCover() const { return d.find<QWidget>(record(), QStringLiteral("picNoImage"))->isHidden(); }
    void drop(const QStringList& files) const;
    void add(const QStringList& files);
    void goTo(int row) const;
    QString text(int row, const char* column) const
    {
        return list().SubItem(list().Key(row), QLatin1String(column));
    }
    void startDownloadOfAll(const QString& folderName) const;
    QString storedFile(const QString& storedName) const;

    QDir m_files;
    QDir m_downloads;
    std::shared_ptr<ChosenFiles> m_chosen = std::make_shared<ChosenFiles>();
    std::shared_ptr<RecordingShell> m_shell = std::make_shared<RecordingShell>();
    std::shared_ptr<FileDialogs> m_dialogsBefore;
    std::shared_ptr<Shell> m_shellBefore;
};

AttachmentSteps::AttachmentSteps(TourSite& site, const QString& folder)
    : TourSteps(site)
    , m_files(QDir(folder).filePath(QStringLiteral("files")))
    , m_downloads(site.workspace.options().downloadsFolder)
    , m_dialogsBefore(std::exchange(desktop().fileDialogs, m_chosen))
    , m_shellBefore(std::exchange(desktop().shell, m_shell))
{
}

AttachmentSteps::~AttachmentSteps()
{
    desktop().fileDialogs = m_dialogsBefore;
    desktop().shell = m_shellBefore;
    for (const QString& copy : std::as_const(m_shell->opened))
        modAttachments::RemoveTemporaryCopy(copy);
    m_files.removeRecursively();
}

void AttachmentSteps::walk()
{
    makeFiles();
    dropFiles();
    moveTheCover();
    describe();
    open();
    downloadAll();
    stopADownload();
    removeOne();
    saveAndCompare();
}

void AttachmentSteps::makeFiles()
{
    m_files.removeRecursively();
    m_files.mkpath(QStringLiteral("other"));
    const auto draw = [&](const QString& name, const QColor& color, const QSize& size) {
        QImage picture(size, QImage::Format_RGB32);
        picture.fill(color);
        d.check(picture.save(source(name)), QStringLiteral("%1 can be written").arg(name));
    };
    const auto write = [&](const QString& name, const QByteArray& content) {
        QFile file(source(name));
        d.check(file.open(QIODevice::WriteOnly) && file.write(content) == content.size(),
                QStringLiteral("%1 can be written").arg(name));
    };
    draw(FirstPicture, QColor(0x4f, 0x7c, 0xac), QSize(640, 420));
    draw(SecondPicture, QColor(0x9e, 0x6b, 0x4a), QSize(300, 480));
    write(Report, "The door was found open.\n");
    write(QStringLiteral("other/") + Report, "The lock was not damaged.\n");
    QByteArray recording(LongFile, '\0');
    for (qsizetype i = 0; i < recording.size(); i += 4096)
        recording[i] = static_cast<char>(i >> 12);
    write(Recording, recording);
}

void AttachmentSteps::drop(const QStringList& files) const
{
    QMimeData data;
    QList<QUrl> urls;
    for (const QString& file : files)
        urls << QUrl::fromLocalFile(file);
    data.setUrls(urls);
    QWidget* target = list().viewport();
    const QPoint place = target->rect().center();
    QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &enter);
    d.check(enter.isAccepted(), QStringLiteral("the list takes files"));
    QDropEvent event(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &event);
}

void AttachmentSteps::dropFiles()
{
    const QString missing = source(QStringLiteral("gone.txt"));
    d.step(QStringLiteral("The page of the attachments"), [&] {
        showPage(AttachmentsPageNo);
        d.check(list().Count() == 0 && !hasCover(), QStringLiteral("the incident has no files"));
        d.check(!record()->isWindowModified(), QStringLiteral("showing that is no change"));
    });
    d.step(QStringLiteral("Drop three files, of which one cannot be read"), [&] {
        d.withBox(
            [&] {
                drop({source(FirstPicture), missing, source(Report)});
            },
            [&](QWidget* box) {
                d.picture(QStringLiteral("What could not be uploaded"));
                d.click(d.find<QPushButton>(box, QStringLiteral("cmdRetry")));
                d.check(box->isVisible(), QStringLiteral("it still cannot be read"));
                d.click(d.find<QPushButton>(box, QStringLiteral("cmdSkip")));
            },
            hasStopped);
        d.check(list().Count() == 2, QStringLiteral("the other two are there"));
        d.checkEqual(text(0, "Filename"), FirstPicture, QStringLiteral("the first"));
        d.checkEqual(text(1, "Filename"), Report, QStringLiteral("the second"));
        d.check(hasCover(), QStringLiteral("the first image is the cover"));
        d.waitFor([&] { return record()->isWindowModified(); },
                  QStringLiteral("the record is marked as changed"));
        d.check(storedRows(Rows, FileName).isEmpty(), QStringLiteral("nothing is in the database yet"));
    });
}

void AttachmentSteps::add(const QStringList& files)
{
    // A file of a name that was stored in the same second would be refused.
    const qint64 second = QDateTime::currentSecsSinceEpoch();
    d.waitFor([&] { return QDateTime::currentSecsSinceEpoch() != second; },
              QStringLiteral("a second passes"));
    m_chosen->files = files;
    QString reason;
    QTimer look;
    connectGuarded(&look, &QTimer::timeout, &look, "AttachmentSteps_Add", [&] {
        QWidget* box = QApplication::activeModalWidget();
        if (!box || !hasStopped(box) || !reason.isEmpty())
            return;
        reason = QStringLiteral("no reason");
        for (const QLabel* status : box->findChildren<QLabel*>(QStringLiteral("lblStatus"))) {
            if (!status->text().isEmpty())
                reason = status->text();
        }
        d.click(d.find<QPushButton>(box, QStringLiteral("cmdSkip")));
    });
    look.start(10);
    QWidget* window = record();
    d.click(d.find<QWidget>(window, QStringLiteral("lnkAddAttachments")));
    window->activateWindow(); // what a desktop does by itself, the offscreen platform does not
    d.check(reason.isEmpty(), QStringLiteral("all files are uploaded; one was not: %1").arg(reason));
}

void AttachmentSteps::goTo(int row) const
{
    ListView& files = list();
    const QModelIndex cell = files.model()->index(row, 1);
    files.scrollTo(cell);
    d.click(files.viewport(), files.visualRect(cell).center());
}

void AttachmentSteps::moveTheCover()
{
    d.step(QStringLiteral("Add a picture and a report of the same name"), [&] {
        add({source(SecondPicture), source(QStringLiteral("other/") + Report)});
        d.check(list().Count() == 4, QStringLiteral("four files are there"));
        d.checkEqual(text(3, "Filename"), Report, QStringLiteral("the last"));
    });
    d.step(QStringLiteral("Make the other picture the cover"), [&] {
        goTo(2);
        d.check(!coverBox().isChecked(), QStringLiteral("it is not the cover"));
        d.click(&coverBox(), QPoint(8, coverBox().height() / 2));
        goTo(0);
        d.check(!coverBox().isChecked(), QStringLiteral("the first is no longer"));
        goTo(2);
        d.check(coverBox().isChecked() && hasCover(), QStringLiteral("the other is"));
    });
    d.step(QStringLiteral("A document cannot be the cover"), [&] {
        goTo(1);
        d.check(coverBox().isHidden(), QStringLiteral("there is no box for it"));
    });
}

void AttachmentSteps::describe()
{
    d.step(QStringLiteral("Describe the report"), [&] {
        d.click(d.find<QWidget>(record(), QStringLiteral("txtDescription")));
        d.type(QStringLiteral("First look"));
        d.checkEqual(text(1, "Description"), QStringLiteral("First look"), QStringLiteral("the list's line"));
        d.click(d.find<QPlainTextEdit>(record(), QStringLiteral("txtComment"))->viewport());
        d.type(QStringLiteral("Taken at the scene."));
        goTo(3);
        goTo(1);
        d.checkEqual(d.find<QPlainTextEdit>(record(), QStringLiteral("txtComment"))->toPlainText(),
                     QStringLiteral("Taken at the scene."), QStringLiteral("the comment"));
    });
}

void AttachmentSteps::open()
{
    d.step(QStringLiteral("Open the report"), [&] {
        ListView& files = list();
        QWidget* window = record();
        QTest::mouseDClick(files.viewport(), Qt::LeftButton, Qt::NoModifier,
                           files.visualRect(files.model()->index(1, 1)).center());
        window->activateWindow();
        d.check(m_shell->opened.size() == 1, QStringLiteral("one file was handed to the desktop"));
        const QString copy = m_shell->opened.constFirst();
        d.checkEqual(QFileInfo(copy).fileName(), Report, QStringLiteral("its name"));
        d.check(contentOf(copy) == contentOf(source(Report)), QStringLiteral("it is a true copy"));
        d.check(!QFileInfo(copy).isExecutable(), QStringLiteral("nobody can run it"));
    });
}

void AttachmentSteps::startDownloadOfAll(const QString& folderName) const
{
    list().setFocus();
    QTest::keyClick(record()->windowHandle(), Qt::Key_Menu);
    QWidget* menu = nullptr;
    d.waitFor([&] { return (menu = QApplication::activePopupWidget()) != nullptr; },
              QStringLiteral("the menu is open"));
    d.withBox([&] { d.choose(menu, Qt::Key_D); },
              [&](QWidget*) {
                  d.press(Qt::Key_A, Qt::ControlModifier);
                  d.type(folderName);
                  d.picture(QStringLiteral("The folder's name"));
                  d.press(Qt::Key_Return);
              });
}

void AttachmentSteps::downloadAll()
{
    const QString name = QStringLiteral("Case files");
    d.step(QStringLiteral("Download all files"), [&] {
        d.withBox([&] { startDownloadOfAll(name); },
                  [&](QWidget* box) {
                      d.checkEqual(
                          boxText(box),
                          QStringLiteral("All attachments for this record were downloaded to %1.\r\n\r\nDo "
                                         "you want to open this folder now?")
                              .arg(m_downloads.filePath(name)),
                          QStringLiteral("the question"));
                      answer(QMessageBox::No, box);
                  },
                  isMessage);
        const QDir folder(m_downloads.filePath(name));
        const auto isCopy = [&](const QString& copy, const QString& original) {
            d.check(contentOf(folder.filePath(copy)) == contentOf(source(original)),
                    QStringLiteral("%1 is a true copy").arg(copy));
        };
        d.check(folder.entryList(QDir::Files).size() == 4, QStringLiteral("four files are in the folder"));
        isCopy(FirstPicture, FirstPicture);
        isCopy(SecondPicture, SecondPicture);
        isCopy(Report, Report);
        isCopy(QStringLiteral("report (1).txt"), QStringLiteral("other/") + Report);
    });
}

void AttachmentSteps::stopADownload()
{
    d.step(QStringLiteral("Add a long recording"), [&] {
        add({source(Recording)});
        d.check(list().Count() == 5, QStringLiteral("it is there"));
    });
    d.step(QStringLiteral("Stop a download"), [&] {
        const QString name = QStringLiteral("Not wanted");
        const LastFileWatch watch([&](QWidget& dialog) {
            d.picture(QStringLiteral("The download"));
            d.click(d.find<QWidget>(&dialog, QStringLiteral("lnkCancel")));
        });
        d.withBox([&] { startDownloadOfAll(name); },
                  [&](QWidget* box) {
                      d.checkEqual(boxText(box),
                                   QStringLiteral("Attachments were not downloaded: Download was canceled."),
                                   QStringLiteral("the box"));
                      answer(QMessageBox::Ok, box);
                  },
                  isMessage);
        if (watch.failure())
            throw Error(*watch.failure());
        d.check(watch.hasActed(), QStringLiteral("the link was clicked in the middle of the last file"));
        d.check(!m_downloads.exists(name) && !m_downloads.exists(name + QStringLiteral("_TEMP")),
                QStringLiteral("nothing is left of it"));
    });
}

QString AttachmentSteps::storedFile(const QString& storedName) const
{
    return s.workspace.host().attachmentFile(
        StorePath::join(modAttachments::GetAttachmentsFolder(), storedName));
}

void AttachmentSteps::removeOne()
{
    d.step(QStringLiteral("Remove the recording"), [&] {
        goTo(4);
        d.press(Qt::Key_Delete);
        d.check(list().Count() == 4, QStringLiteral("four files are left"));
        d.check(hasCover(), QStringLiteral("the cover stays"));
    });
    d.step(QStringLiteral("Remove a picture"), [&] {
        goTo(0);
        d.press(Qt::Key_Delete);
        d.check(list().Count() == 3, QStringLiteral("three files are left"));
        goTo(1);
        d.check(coverBox().isChecked() && hasCover(), QStringLiteral("the other picture is the cover"));
    });
}

void AttachmentSteps::saveAndCompare()
{
    const QStringList names{Report, SecondPicture, Report};
    const QStringList originals{Report, SecondPicture, QStringLiteral("other/") + Report};
    const auto compare = [&] {
        d.check(storedRows(Rows, OriginalFileName) == QVariantList({names[0], names[1], names[2]}),
                QStringLiteral("the rows are in the database"));
        const QVariantList stored = storedRows(Rows, FileName);
        for (int i = 0; i < names.size(); ++i)
            d.check(contentOf(storedFile(stored[i].toString())) == contentOf(source(originals[i])),
                    QStringLiteral("%1 is in the store").arg(originals[i]));
        d.check(s.otherStore.load(s.incidentNo)->collection(Rows)->PrimaryIndex() == 2,
                QStringLiteral("the cover is the picture"));
        d.checkEqual(ToText(storedRows(Rows, QStringLiteral("Notes")).constFirst()),
                     QStringLiteral("Taken at the scene."), QStringLiteral("the comment"));
    };
    d.step(QStringLiteral("Save the attachments"), [&] {
        save();
        compare();
    });
    d.step(QStringLiteral("Open again and find the attachments"), [&] {
        close();
        reopen();
        showPage(AttachmentsPageNo);
        d.check(list().Count() == 3 && hasCover(), QStringLiteral("three files and the cover are there"));
        for (int row = 0; row < names.size(); ++row)
            d.checkEqual(text(row, "Filename"), names[row], QStringLiteral("a line"));
        d.checkEqual(text(0, "Description"), QStringLiteral("First look"), QStringLiteral("a description"));
        d.check(!record()->isWindowModified(), QStringLiteral("nothing is unsaved"));
        compare();
    });
}

} // namespace

void walkAttachments(TourSite& site, const QString& folder)
{
    AttachmentSteps(site, folder).walk();
}

} // namespace tavrin::workbench
