#pragma once

#include "attachments/dialogs/DownloadStage.h"
#include "attachments/dialogs/frmDownloadAllTask.h"
#include "base/failure/Error.h"
#include "widgets/labels/Label.h"
#include "widgets/labels/TextLink.h"

#include <QPointer>
#include <QProgressBar>

namespace tavrin::test {

/// Files of a record, "1.pdf" and so on, and the dialog that downloads them all.
struct DownloadAllStage : DownloadStage
{
    explicit DownloadAllStage(int files = 3, const QString& place = {})
        : DownloadStage(place)
    {
        for (int i = 1; i <= files; ++i)
            add(QStringLiteral("%1.pdf").arg(i), QByteArray(17, static_cast<char>('0' + i)));
        task->SetDownloadPath(target);
        task->SetAttachments(rows);
    }
    ~DownloadAllStage() { delete task; }
    Error start()
    {
        return errorOf([this] { task->Start(owner); });
    }

    QPointer<frmDownloadAllTask> task = new frmDownloadAllTask;
    Label* lblStatus = part<Label>(task, "lblStatus");
    Label* lblFilePercent = part<Label>(task, "lblFilePercent");
    QProgressBar* bar = part<QProgressBar>(task, "ProgressBar");
    TextLink* link = part<TextLink>(task, "lnkCancel");
};

} // namespace tavrin::test
