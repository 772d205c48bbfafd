#include "frame/desktop/Desktop.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPointer>
#include <QScopeGuard>
#include <QUrl>

#include <filesystem>
#include <system_error>

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

constexpr qint64 NoSuchFile = 2;
constexpr qint64 NoSuchFolder = 3;
constexpr qint64 AccessDenied = 5;
constexpr qint64 NoProgram = 31;
constexpr qint64 UnderWay = 33;

/// Whether a desktop may run such a file instead of showing it, be it its own kind of program or one that a
/// layer for another platform runs.
bool mayRun(const QFileInfo& file)
{
    static const QStringList endings{
        QStringLiteral("appimage"), QStringLiteral("bat"), QStringLiteral("cmd"), QStringLiteral("com"),
        QStringLiteral("desktop"),  QStringLiteral("exe"), QStringLiteral("jar"), QStringLiteral("lnk"),
        QStringLiteral("msi"),      QStringLiteral("pif"), QStringLiteral("scr")};
    if (file.isExecutable() || endings.contains(file.suffix().toLower()))
        return true;
    // A desktop knows a starter without an ending by its first bytes.
    QFile content(file.filePath());
    constexpr qint64 Enough = 64;
    return content.open(QIODevice::ReadOnly) && content.read(Enough).contains("[Desktop Entry]");
}

/// Why the path cannot be handed over; 0 when it can be.
qint64 refusalOf(const QString& path)
{
    if (!QDir::isAbsolutePath(path) || path.contains(QChar::Null))
        return NoSuchFolder;
    std::error_code error;
    const std::filesystem::file_status status =
        std::filesystem::status(QFile::encodeName(path).toStdString(), error);
    if (status.type() == std::filesystem::file_type::not_found)
        return QFileInfo(path).dir().exists() ? NoSuchFile : NoSuchFolder;
    const bool isFolder = std::filesystem::is_directory(status);
    if (!isFolder && !std::filesystem::is_regular_file(status))
        return AccessDenied; // as what may not be looked at, and what is no file
    const QFileInfo file(path);
    const QFileInfo target(file.canonicalFilePath()); // what a link stands for decides
    if (!target.isReadable() || (!isFolder && (mayRun(file) || mayRun(target))))
        return AccessDenied;
    return 0;
}

class RealShell final : public Shell
{
public:
    qint64 execute(const QString& path) override
    {
        if (const qint64 refusal = refusalOf(path))
            return refusal;
        // Starts the desktop's opener with the path as one argument; there is no shell in between.
        return QDesktopServices::openUrl(QUrl::fromLocalFile(path)) ? UnderWay : NoProgram;
    }
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
