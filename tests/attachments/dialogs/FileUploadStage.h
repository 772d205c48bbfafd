#pragma once

#include "attachments/dialogs/FileUpload.h"
#include "attachments/dialogs/TransferBar.h"
#include "attachments/dialogs/UploadIcon.h"
#include "attachments/dialogs/UploadStage.h"
#include "support/TestCase.h"
#include "widgets/labels/Label.h"
#include "widgets/labels/WrapLabel.h"

#include <QPointer>
#include <QTest>

#include <functional>

namespace tavrin::test {

/// A line on a window, and what it tells.
struct FileUploadStage : UploadStage
{
    FileUploadStage()
    {
        window.resize(400, 300);
        line = new FileUpload(&window);
        complete = line->UploadComplete.subscribe([this](const UploadedFile& file) {
            told << QStringLiteral("complete %1 %2").arg(file.Filename, file.OriginalFilename);
        });
        failed = line->UploadFailed.subscribe(
            [this](const QString& path) { told << QStringLiteral("failed %1").arg(path); });
    }
    bool show()
    {
        window.show();
        return QTest::qWaitForWindowExposed(&window);
    }
    /// Notes what `state` says before each step of the copy.
    void watch(const std::function<QString()>& state)
    {
        host.state().duringTransfer = [this, state](const QString&, qint64, qint64) { seen << state(); };
    }
    template <typename Widget>
    Widget* part(const char* name) const
    {
        return line->findChild<Widget*>(QString::fromLatin1(name));
    }
    QString reason() const { return part<WrapLabel>("lblStatus")->Caption(); }
    QString icon() const { return part<UploadIcon>("imgIcon")->Key(); }
    TransferBar* bar() const { return part<TransferBar>("ProgressBar"); }

    QWidget window;
    QPointer<FileUpload> line;
    Subscription complete;
    Subscription failed;
    QStringList told;
    QStringList seen;
};

} // namespace tavrin::test
