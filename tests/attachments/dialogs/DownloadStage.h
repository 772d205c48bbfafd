#pragma once

#include "base/failure/Error.h"
#include "support/TestCase.h"
#include "testing/FakeHost.h"
#include "testing/Unhandled.h"
#include "widgets/labels/Label.h"
#include "widgets/labels/TextLink.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QPointer>
#include <QProgressBar>
#include <QTemporaryDir>
#include <QTimer>

#include <functional>

namespace tavrin::test {

inline QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<cannot be read>");
}

inline void putFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        throw Error(QStringLiteral("%1 cannot be written").arg(path));
}

inline QStringList entriesOf(const QString& folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                                  QDir::Name);
}

/// A store and a Downloads folder on the disk, the rows of a record, and a window to stand above.
struct DownloadStage
{
    /// `place` is where the Downloads folder lies; "" is beside the store.
    explicit DownloadStage(const QString& place = {})
        : installation(host)
    {
        QDir().mkpath(store);
        host.state().settings.insert(QStringLiteral("_Global/Attachments Folder"), store);
        downloads = place.isEmpty() ? folder.filePath(QStringLiteral("Downloads")) : place;
        QDir().mkpath(downloads);
        target = downloads + QStringLiteral("/Incident 7");
        temp = target + QStringLiteral("_TEMP");
        owner->show();
    }
    ~DownloadStage() { delete owner; }

    /// The path in the store, as the downloader is asked for it.
    QString stored(const QString& name) const { return store + u'\\' + name; }
    /// A file of the store with its row; its name on the disk is that of the store when none is given.
    void add(const QString& name, const QByteArray& content, const QString& original = {}) const
    {
        putFile(store + u'/' + name, content);
        const tvTableRowPtr row = rows->AddNew();
        fieldOf(*row, QStringLiteral("FileName"))->SetValue(name);
        fieldOf(*row, QStringLiteral("OriginalFileName"))->SetValue(original.isNull() ? name : original);
    }
    /// Acts when the person is next let act during the transfer of this file, before `bytes` of it are told;
    /// `last` is at its last progress.
    void duringTransferOf(const QString& name, bool last, const std::function<void()>& act)
    {
        host.state().duringTransfer = [=, this](const QString& path, qint64 bytes, qint64 total) {
            if (path == stored(name) && (bytes == total) == last)
                QTimer::singleShot(0, qApp, act);
        };
    }
    /// What was asked of downloaders.
    QStringList transferLog()
    {
        QStringList log;
        for (const QString& line : host.state().log) {
            if (line.startsWith(QLatin1String("Download ")) || line == QLatin1String("Cancel"))
                log << QString(line).remove(store + u'\\');
        }
        return log;
    }
    template <typename Widget = QWidget>
    static Widget* part(const QWidget* form, const char* name)
    {
        return form->findChild<Widget*>(QString::fromLatin1(name));
    }

    QTemporaryDir folder;
    QString store = folder.filePath(QStringLiteral("store"));
    QString downloads;
    QString target;
    QString temp;
    FakeHost host;
    HostInstallation installation;
    Unhandled unhandled;
    std::shared_ptr<FakeCollection> rows = std::make_shared<FakeCollection>(
        QStringList{QStringLiteral("SeqNo"), QStringLiteral("FileName"), QStringLiteral("OriginalFileName"),
                    QStringLiteral("FolderNo")});
    QPointer<QWidget> owner = new QWidget;
};

/// What `step` raises; number 0 when it raises nothing.
inline Error errorOf(const std::function<void()>& step)
{
    try {
        step();
    } catch (const Error& error) {
        return error;
    }
    return Error(QString(), 0);
}

/// Ways in which a person cancels a download that is under way.
inline QMap<QString, std::function<void(QWidget*)>> waysToCancel()
{
    return {
        {QStringLiteral("link"),
         [](QWidget* form) { QTest::mouseClick(DownloadStage::part(form, "lnkCancel"), Qt::LeftButton); }},
        {QStringLiteral("Tab and Enter"),
         [](QWidget* form) {
             QTest::keyClick(form->windowHandle(), Qt::Key_Tab);
             QTest::keyClick(form->windowHandle(), Qt::Key_Return);
         }},
        {QStringLiteral("Escape"),
         [](QWidget* form) { QTest::keyClick(form->windowHandle(), Qt::Key_Escape); }},
        {QStringLiteral("window's frame"), [](QWidget* form) { form->close(); }},
    };
}

} // namespace tavrin::test
