#pragma once

#include "attachments/dialogs/FileUpload.h"
#include "attachments/dialogs/UploadStage.h"
#include "attachments/dialogs/frmUploadTask.h"
#include "support/TestCase.h"
#include "testing/Unhandled.h"
#include "widgets/panels/FlowPanel.h"
#include "widgets/panels/ScrollPanel.h"

#include <QApplication>
#include <QPointer>
#include <QTimer>

#include <functional>

namespace tavrin::test {

constexpr int UploadLineHeight = 49; // a line without a reason

/// A window and the dialog above it.
struct UploadTaskStage : UploadStage
{
    UploadTaskStage()
    {
        owner->resize(300, 200);
        owner->show();
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { look(); });
        m_timer.start(1);
    }
    ~UploadTaskStage()
    {
        delete dialog;
        delete owner;
    }

    /// What the person does at each question; one more question than that is closed and counted.
    void answer(QList<std::function<void()>> acts) { m_acts = std::move(acts); }
    void start(const QStringList& paths)
    {
        dialog->SetFiles(paths);
        dialog->Start(owner);
    }
    /// Runs `act` once at each step of the copies, before the step.
    void during(const std::function<void(const QString& path)>& act)
    {
        host.state().duringTransfer = [act](const QString& path, qint64, qint64) { act(path); };
    }
    template <typename Widget>
    Widget* part(const char* name) const
    {
        return dialog->findChild<Widget*>(QString::fromLatin1(name));
    }
    ScrollPanel* scroll() const { return part<ScrollPanel>("ScrollPanel"); }
    FlowPanel* flow() const { return part<FlowPanel>("FlowPanel"); }
    QWidget* strip() const { return part<QWidget>("picRetry"); }
    void click(const char* button) const
    {
        QTest::mouseClick(dialog->windowHandle(), Qt::LeftButton, {}, middleOf(button));
    }
    QPoint middleOf(const char* button) const
    {
        auto* widget = part<QWidget>(button);
        return widget->mapTo(dialog.data(), widget->rect().center());
    }
    QList<FileUpload*> lines() const { return flow()->findChildren<FileUpload*>(); }
    /// The names of the files whose lines show.
    QStringList shown() const
    {
        QStringList names;
        for (const FileUpload* line : lines()) {
            if (!line->isHidden())
                names << QFileInfo(line->Filename()).fileName();
        }
        return names;
    }
    QStringList uploaded() const
    {
        QStringList names;
        for (const UploadedFile& file : dialog->UploadedFiles())
            names << file.OriginalFilename;
        return names;
    }

    QPointer<QWidget> owner = new QWidget;
    QPointer<frmUploadTask> dialog = new frmUploadTask;
    FakeMessageBoxes boxes;
    Unhandled unhandled;
    int unanswered = 0;

private:
    void look()
    {
        if (!dialog || QApplication::activeModalWidget() != dialog || !strip()->isEnabled())
            return;
        if (m_acts.isEmpty()) {
            ++unanswered;
            dialog->close();
            return;
        }
        m_acts.takeFirst()();
    }

    QList<std::function<void()>> m_acts;
    QTimer m_timer;
};

} // namespace tavrin::test
