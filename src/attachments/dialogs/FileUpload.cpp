#include "attachments/dialogs/FileUpload.h"

#include "attachments/dialogs/TransferBar.h"
#include "attachments/dialogs/UploadIcon.h"
#include "attachments/files/StoredName.h"
#include "attachments/files/modAttachments.h"
#include "base/values/StorePath.h"
#include "frame/control_frame/FailurePolicy.h"
#include "frame/host_contracts/Host.h"
#include "widgets/drawing/ConstituentLook.h"
#include "widgets/drawing/Placement.h"
#include "widgets/labels/Label.h"
#include "widgets/labels/WrapLabel.h"

#include <QApplication>
#include <QFileInfo>

#include <algorithm>

namespace tavrin {

namespace {

constexpr Twips LineWidth = 4635;
constexpr Twips LineHeight = 735;
constexpr Twips BelowTexts = 120;
constexpr Twips Margin = 120;
constexpr Twips TextLeft = 600;
constexpr Twips FilenameTop = 180;
constexpr Twips BarTop = 480;
constexpr Twips BarWidth = 3435;
constexpr Twips BarHeight = 135;
constexpr qint64 Percent = 100;
constexpr int DivisionByZero = 11; // number of that error

const QString FileIcon = QStringLiteral("file");
const QString SuccessIcon = QStringLiteral("success");
const QString ErrorIcon = QStringLiteral("error");

/// A path with line breaks in it is one line all the same.
QString onOneLine(QString path)
{
    for (const QChar lineBreak :
         {QChar(u'\n'), QChar(u'\r'), QChar(QChar::LineSeparator), QChar(QChar::ParagraphSeparator)})
        path.replace(lineBreak, u' ');
    return path;
}

Twips bottomOf(const QWidget& widget)
{
    return toTwips(widget.y() + widget.height());
}

} // namespace

FileUpload::FileUpload(QWidget* parent, const ControlSite& site)
    : UserControl(parent, site)
    , m_uploader(currentHost().newUploader())
    , imgIcon(new UploadIcon(this))
    , lblFilename(new Label(this))
    , progressBar(new TransferBar(this))
    , lblStatus(new WrapLabel(this))
{
    installAccessibleRole<FileUpload, QAccessible::Grouping>();
    imgIcon->setObjectName(QStringLiteral("imgIcon"));
    moveTo(*imgIcon, Margin, 240, 300, 300);

    lblFilename->setObjectName(QStringLiteral("lblFilename"));
    lblFilename->SetAutoSize(false); // not beyond the line's margin
    lblFilename->SetElideMode(Qt::ElideMiddle);
    lblFilename->SetForeColor(SystemColor::WindowText);
    lblFilename->SetCaption(QStringLiteral("..."));

    progressBar->setObjectName(QStringLiteral("ProgressBar"));
    progressBar->setAccessibleName(QStringLiteral("Progress"));
    moveTo(*progressBar, TextLeft, BarTop, BarWidth, BarHeight);
    lblStatus->setObjectName(QStringLiteral("lblStatus"));
    moveTo(*lblStatus, TextLeft, BarTop, 3420, 225);

    m_progress = m_uploader->UploadProgress.subscribe(
        [this](const QString&, qint64 read, qint64 total) { m_uploader_UploadProgress(read, total); });
    m_complete = m_uploader->UploadComplete.subscribe(
        [this](const QString& path, bool) { m_uploader_UploadComplete(path); });
    lblStatus->SetCaption({});
    setIcon(FileIcon);
    tellStatus(QStringLiteral("Not started"));
    Size(LineWidth, LineHeight + barTop() - BarTop);
    placeFilename();
    moveTo(*progressBar, TextLeft, barTop());
    moveTo(*lblStatus, TextLeft, barTop());
    begin();
}

FileUpload::~FileUpload() = default;

QSize FileUpload::sizeHint() const
{
    return {toPixels(LineWidth), toPixels(LineHeight + barTop() - BarTop)};
}

void FileUpload::SetFile(const QString& sFilename)
{
    m_filename = sFilename;
    lblFilename->SetCaption(onOneLine(sFilename));
    placeFilename();
    setAccessibleName(QFileInfo(sFilename).fileName());
}

void FileUpload::Start()
{
    setIcon(FileIcon);
    progressBar->show();
    lblStatus->SetCaption({});
    if (m_filename.isEmpty())
        throw Error(QStringLiteral("attachment not set. Call SetFile first."));

    // Messages are pumped while the file is copied: what the copy works with must outlive the line.
    const QPointer<FileUpload> self(this);
    const std::shared_ptr<Uploader> uploader = m_uploader;
    const QString path = m_filename;
    try {
        nameInStore();
        uploader->Upload(path, QString(m_destination), {});
    } catch (...) {
        if (self)
            fail(Error::fromCurrentException().Description);
    }
}

/// Files of one name from several folders arrive within a second, and the stamp alone tells them apart.
void FileUpload::nameInStore()
{
    m_storedName = MakeStoredName(m_filename);
    const QString folder = modAttachments::GetAttachmentsFolder();
    m_destination = StorePath::join(folder, m_storedName);
    if (!wasStored(m_destination))
        return;
    awaitNextSecond();
    m_storedName = MakeStoredName(m_filename);
    m_destination = StorePath::join(folder, m_storedName);
}

void FileUpload::fail(const QString& reason)
{
    progressBar->hide();
    lblStatus->SetCaption(reason);
    setIcon(ErrorIcon);
    m_status = HasFailed;
    tellStatus(QStringLiteral("Failed: ") + reason);
    UserControl_Resize();
    UploadFailed.raise(QString(m_filename));
}

void FileUpload::m_uploader_UploadProgress(qint64 bytesRead, qint64 bytesTotal)
{
    if (m_status != Uploading)
        tellStatus(QStringLiteral("Uploading"));
    m_status = Uploading;
    if (bytesTotal == 0)
        throw Error(QStringLiteral("Division by zero"), DivisionByZero);
    progressBar->setValue(static_cast<int>(bytesRead * Percent / bytesTotal));

    const QPointer<FileUpload> self(this);
    QApplication::processEvents();
    if (!self) // nobody is left who would make a row for the file
        throw Error(QStringLiteral("The upload was given up because its window was closed."));
}

void FileUpload::m_uploader_UploadComplete(const QString& path)
{
    rememberStored(m_destination);
    setIcon(SuccessIcon);
    m_status = Finished;
    tellStatus(QStringLiteral("Uploaded"));
    UploadComplete.raise(UploadedFile{m_storedName, uploadedFileName(path)});
}

void FileUpload::setIcon(const QString& key)
{
    imgIcon->SetKey(key);
}

void FileUpload::tellStatus(const QString& words)
{
    setAccessibleDescription(words); // screen readers are told of the change
}

/// Lower than designed where the font of the name needs the room.
Twips FileUpload::barTop() const
{
    return std::max(BarTop, FilenameTop + toTwips(lblFilename->QLabel::sizeHint().height()));
}

void FileUpload::placeFilename()
{
    const QSize wanted = lblFilename->QLabel::sizeHint();
    const Twips room = ScaleWidth() - 2 * TextLeft; // no further than the bar below it
    moveTo(*lblFilename, TextLeft, FilenameTop, std::min(toTwips(wanted.width()), room),
           toTwips(wanted.height()));
}

void FileUpload::UserControl_Resize()
{
    continueOnError([this] { placeFilename(); },
                    [this] {
                        moveTo(*progressBar, leftOf(*progressBar), barTop(),
                               ScaleWidth() - 2 * leftOf(*progressBar), BarHeight);
                    },
                    [this] {
                        moveTo(*lblStatus, TextLeft, barTop());
                        lblStatus->resize(progressBar->width(), lblStatus->height());
                    },
                    [this] {
                        const bool hasStatus = !lblStatus->Caption().isEmpty();
                        SetHeight(BelowTexts + (hasStatus ? bottomOf(*lblStatus) : bottomOf(*progressBar)));
                    });
}

} // namespace tavrin
