#include "Desktop.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPointer>
#include <QScopeGuard>
#include <QUrl>

namespace tavrin {

namespace {

QMessageBox::Icon iconOf(BoxIcon icon)
{
    switch (icon) {
    case BoxIcon::Information:
        return QMessageBox::Information;
    case BoxIcon::Question:
        return QMessageBox::Question;
    case BoxIcon::Exclamation:
        return QMessageBox::Warning;
    case BoxIcon::Critical:
        return QMessageBox::Critical;
    case BoxIcon::None:
        break;
    }
    return QMessageBox::NoIcon;
}

QMessageBox::StandardButtons buttonsOf(BoxButtons buttons)
{
    switch (buttons) {
    case BoxButtons::OkCancel:
        return QMessageBox::Ok | QMessageBox::Cancel;
    case BoxButtons::YesNo:
        return QMessageBox::Yes | QMessageBox::No;
    case BoxButtons::YesNoCancel:
        return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    case BoxButtons::SaveDiscardCancel:
        return QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel;
    case BoxButtons::RetryCancel:
        return QMessageBox::Retry | QMessageBox::Cancel;
    case BoxButtons::Ok:
        break;
    }
    return QMessageBox::Ok;
}

BoxAnswer answerOf(int button)
{
    switch (button) {
    case QMessageBox::Cancel:
        return BoxAnswer::Cancel;
    case QMessageBox::Yes:
        return BoxAnswer::Yes;
    case QMessageBox::No:
        return BoxAnswer::No;
    case QMessageBox::Save:
        return BoxAnswer::Save;
    case QMessageBox::Discard:
        return BoxAnswer::Discard;
    case QMessageBox::Retry:
        return BoxAnswer::Retry;
    default:
        return BoxAnswer::Ok;
    }
}

/// The answer that changes nothing, of a box that went with its parent.
BoxAnswer answerWhenGone(BoxButtons buttons)
{
    switch (buttons) {
    case BoxButtons::Ok:
        return BoxAnswer::Ok;
    case BoxButtons::YesNo:
        return BoxAnswer::No;
    default:
        return BoxAnswer::Cancel;
    }
}

class RealMessageBoxes final : public MessageBoxes
{
public:
    BoxAnswer show(QWidget* parent, const QString& text, BoxIcon icon, const QString& title,
                   BoxButtons buttons) override
    {
        // On the heap: the parent may die while the box is open, and takes it along.
        auto* box = new QMessageBox(iconOf(icon), title, text, buttonsOf(buttons), parent);
        const QPointer<QMessageBox> alive = box;
        const auto close = qScopeGuard([&alive] { delete alive; });
        box->setTextFormat(Qt::PlainText);
        box->setTextInteractionFlags(Qt::TextSelectableByMouse);
        if (buttons == BoxButtons::YesNo)
            box->setEscapeButton(QMessageBox::No);
        const int answer = box->exec();
        return alive ? answerOf(answer) : answerWhenGone(buttons);
    }
};

class RealFileDialogs final : public FileDialogs
{
public:
    QStringList openFiles(QWidget* parent, const QString& title, const QString& folder, const QString& filter,
                          bool several) override
    {
        if (several)
            return QFileDialog::getOpenFileNames(parent, title, folder, filter);
        const QString file = QFileDialog::getOpenFileName(parent, title, folder, filter);
        return file.isEmpty() ? QStringList() : QStringList(file);
    }
};

class RealShell final : public Shell
{
public:
    qint64 execute(const QString& path) override
    {
        const QFileInfo file(path);
        if (!file.isAbsolute() || !file.dir().exists())
            return NoSuchFolder;
        if (!file.exists())
            return NoSuchFile;
        // A desktop may run what it is asked to open; programs and starters are refused.
        const bool mayRun =
            !file.isDir() && (file.isExecutable() ||
                              file.suffix().compare(QLatin1String("desktop"), Qt::CaseInsensitive) == 0);
        if (mayRun || !file.isReadable() || !(file.isFile() || file.isDir()))
            return AccessDenied;
        return QDesktopServices::openUrl(QUrl::fromLocalFile(path)) ? UnderWay : NoProgram;
    }

private:
    static constexpr qint64 NoSuchFile = 2;
    static constexpr qint64 NoSuchFolder = 3;
    static constexpr qint64 AccessDenied = 5;
    static constexpr qint64 NoProgram = 31;
    static constexpr qint64 UnderWay = 33;
};

class RealClock final : public Clock
{
public:
    QDateTime now() override { return QDateTime::currentDateTime(); }
};

} // namespace

Desktop& desktop()
{
    thread_local Desktop services{std::make_shared<RealMessageBoxes>(), std::make_shared<RealFileDialogs>(),
                                  std::make_shared<RealShell>(), std::make_shared<RealClock>()};
    return services;
}

} // namespace tavrin
