#pragma once

#include "base/export/Export.h"

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <memory>

class QWidget;

namespace tavrin {

/// The sign beside the text of a message box.
enum class BoxIcon
{
    None,
    Information,
    Question,
    Exclamation,
    Critical
};
/// The buttons of a message box.
enum class BoxButtons
{
    Ok,
    OkCancel,
    YesNo,
    YesNoCancel,
    SaveDiscardCancel,
    RetryCancel
};
/// The button that ended a message box.
enum class BoxAnswer
{
    Ok,
    Cancel,
    Yes,
    No,
    Save,
    Discard,
    Retry
};

/// Modal message boxes.
class TAVRIN_EXPORT MessageBoxes
{
public:
    virtual ~MessageBoxes() = default;
    /// Waits for the person's answer. Escape and the window's close button answer Cancel, or No, or Ok:
    /// the first of these that the box has, and so does a box that goes with its parent. The text is shown
    /// plain. `parent` may be nullptr.
    virtual BoxAnswer show(QWidget* parent, const QString& text, BoxIcon icon, const QString& title,
                           BoxButtons buttons) = 0;

    /// A box that only tells.
    void tell(QWidget* parent, const QString& text, BoxIcon icon, const QString& title)
    {
        show(parent, text, icon, title, BoxButtons::Ok);
    }
};

/// The dialog that asks for files.
class TAVRIN_EXPORT FileDialogs
{
public:
    virtual ~FileDialogs() = default;
    /// The chosen files as absolute paths; empty when the person cancels. `folder` is where the dialog
    /// starts, "" for where the platform does; `filter` is in Qt's form, as in "Pictures (*.png *.jpg)".
    /// Without `several` one file at most.
    virtual QStringList openFiles(QWidget* parent, const QString& title, const QString& folder,
                                  const QString& filter, bool several) = 0;
};

/// The desktop's own way to open a file.
class TAVRIN_EXPORT Shell
{
public:
    virtual ~Shell() = default;
    /// Hands an absolute local path of a file or a folder to the program that the desktop has for it. Above
    /// 32 when it is under way; else why not, in the numbers that desktops use for it: 2 no such file,
    /// 3 no such folder, 5 access denied, also for what the desktop might run (executable files and
    /// starters), 31 no program for it.
    virtual qint64 execute(const QString& path) = 0;
};

/// The workstation's clock.
class TAVRIN_EXPORT Clock
{
public:
    virtual ~Clock() = default;
    /// Local time.
    virtual QDateTime now() = 0;
};

/// The services of the desktop that the program reaches the person and the machine through, one set a
/// thread. Each has a real default; a test puts its own in place.
struct Desktop
{
    std::shared_ptr<MessageBoxes> messageBoxes; ///< never nullptr, as the others
    std::shared_ptr<FileDialogs> fileDialogs;   ///< Qt's own by default
    std::shared_ptr<Shell> shell;               ///< the desktop's opener by default
    std::shared_ptr<Clock> clock;               ///< the system's by default
};

/// The services of the calling thread. What is put there takes effect with the next call of the library.
TAVRIN_EXPORT Desktop& desktop();

} // namespace tavrin
