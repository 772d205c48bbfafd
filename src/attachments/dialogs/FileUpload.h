#pragma once

#include "attachments/files/UploadedFile.h"
#include "base/failure/Event.h"
#include "frame/control_frame/UserControl.h"

#include <memory>

namespace tavrin {

class Label;
class TransferBar;
class Uploader;
class UploadIcon;
class WrapLabel;

/// One line of the upload dialog: one file, how far it is, and its outcome.
///
///     auto* line = new FileUpload(panel);
///     m_done = line->UploadComplete.subscribe([this](const UploadedFile& file) { keep(file); });
///     line->SetFile(path);
///     line->Start();
class FileUpload final : public UserControl
{
    Q_OBJECT

public:
    // The values of `Status`.
    static constexpr int NotStarted = 0;
    static constexpr int Uploading = 1;
    static constexpr int Finished = 2;
    static constexpr int HasFailed = 3;

    explicit FileUpload(QWidget* parent = nullptr, const ControlSite& site = {});
    ~FileUpload() override;

    /// Keeps the path of a file on the workstation and shows it.
    void SetFile(const QString& sFilename);
    QString Filename() const { return m_filename; }

    /// 0 not started, 1 uploading, 2 finished, 3 failed. A further start does not take it back to 0.
    int Status() const { return m_status; }
    bool Failed() const { return m_status == HasFailed; }

    /// Uploads the file under a new stored name and returns when the copy has ended. A failure shows on the
    /// line and is told by `UploadFailed`; only a start without a file raises, error 5. Messages are pumped
    /// meanwhile: the line may be gone afterwards, and then nothing more is told of it.
    void Start();

    /// The file is in the store.
    Event<const UploadedFile&> UploadComplete;
    /// The path of a file whose upload failed; the reason stands on the line.
    Event<const QString&> UploadFailed;

    QSize sizeHint() const override;

protected:
    void UserControl_Resize() override;

private:
    void setIcon(const QString& key);
    void tellStatus(const QString& words);
    Twips barTop() const;
    void placeFilename();
    void nameInStore();
    void fail(const QString& reason);
    void m_uploader_UploadProgress(qint64 bytesRead, qint64 bytesTotal);
    void m_uploader_UploadComplete(const QString& path);

    QString m_filename;
    QString m_storedName;
    QString m_destination; // the stored name below the folder of the store
    int m_status = NotStarted;
    std::shared_ptr<Uploader> m_uploader; // shared with a `Start` that outlives the line
    Subscription m_progress;
    Subscription m_complete;

    UploadIcon* imgIcon;
    Label* lblFilename;
    TransferBar* progressBar;
    WrapLabel* lblStatus;
};

} // namespace tavrin
