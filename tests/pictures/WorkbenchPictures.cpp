// Writes pictures of the workbench into the folder that is named on the command line: one incident with the
// list of a code field open, its officers and offenses with a picker's list open, its attachments, light and
// dark, and the list of incidents.

#include "attachments/section/Attachments.h"
#include "base/failure/Error.h"
#include "lookup/AutoCompleteField.h"
#include "pictures/Pictures.h"
#include "support/Fakes.h"
#include "testing/FakeDesktop.h"
#include "widgets/boxes/TextBox.h"
#include "widgets/lists/DropDownList.h"
#include "workbench/application/Theme.h"
#include "workbench/application/Workspace.h"
#include "workbench/windows/MainWindow.h"
#include "workbench/windows/RecordWindow.h"

#include <QApplication>
#include <QFile>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTemporaryFile>
#include <QTest>

#include <algorithm>
#include <tuple>

using namespace tavrin;
using namespace tavrin::workbench;
using tavrin::test::writePicture;

namespace {

void check(bool condition, const QString& what)
{
    if (!condition)
        throw Error(what);
}

void bringUp(QWidget& window)
{
    window.show();
    window.activateWindow();
    check(QTest::qWaitForWindowActive(&window), QStringLiteral("the window did not come up"));
}

void searchGun(RecordWindow& window)
{
    auto* weapon = window.findChild<AutoCompleteField*>(QStringLiteral("Weapon"));
    check(weapon != nullptr, QStringLiteral("there is no field for the weapon"));
    auto* box = weapon->findChild<TextBox*>();
    auto* list = weapon->findChild<DropDownList*>();
    box->setFocus();
    box->selectAll();
    QTest::keyClicks(box, QStringLiteral("gun"));
    check(QTest::qWaitFor([&] { return list->IsOpen(); }), QStringLiteral("the list did not open"));
    QTest::keyClick(box, Qt::Key_Down);
}

void search(QWidget& box, const QString& text)
{
    box.setFocus();
    QTest::keyClicks(&box, text);
    check(QTest::qWaitFor([] {
              const auto windows = QApplication::topLevelWidgets();
              return std::any_of(windows.begin(), windows.end(), [](const QWidget* window) {
                  return window->objectName() == QLatin1String("suggestionList") && window->isVisible();
              });
          }),
          QStringLiteral("the list did not open"));
    QTest::keyClick(&box, Qt::Key_Down);
}

/// The pages of officers and offenses, each with the list of a new line open.
void writePickers(Workspace& workspace, const QString& folder, const QString& ending)
{
    const auto incidents = workspace.store().list(QStringLiteral("Burglary of a dwelling"));
    check(!incidents.isEmpty(), QStringLiteral("there is no burglary of a dwelling"));
    RecordWindow window(workspace, workspace.store().load(incidents.constFirst().IncidentNo));
    window.setAttribute(Qt::WA_DeleteOnClose, false);
    window.resize(820, 680);
    bringUp(window);
    for (const auto& [collection, text, name] :
         {std::tuple(QStringLiteral("Assignments"), QStringLiteral("mar"),
                     QStringLiteral("workbench/officers")),
          std::tuple(QStringLiteral("Offenses"), QStringLiteral("theft"),
                     QStringLiteral("workbench/offenses"))}) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_PageDown, Qt::ControlModifier);
        auto* add = window.findChild<QPushButton*>(QStringLiteral("add") + collection);
        check(add && add->isVisible(), QStringLiteral("there is no way to add to the ") + collection);
        add->click();
        QApplication::processEvents(); // the page scrolls to the new line
        search(*QApplication::focusWidget(), text);
        writePicture(window, folder, name + ending);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    }
}

/// A picture such as a person attaches.
QString makePhoto(const QTemporaryDir& folder)
{
    QImage photo(640, 480, QImage::Format_RGB32);
    QLinearGradient sky(0, 0, 0, 480);
    sky.setColorAt(0, QColor(0x6d, 0x93, 0xb8));
    sky.setColorAt(0.6, QColor(0xe4, 0xd8, 0xc0));
    sky.setColorAt(0.61, QColor(0x6c, 0x7a, 0x58));
    QPainter painter(&photo);
    painter.fillRect(photo.rect(), sky);
    painter.fillRect(QRect(230, 150, 180, 240), QColor(0x8a, 0x4b, 0x3a));
    painter.fillRect(QRect(290, 270, 60, 120), QColor(0x3c, 0x2c, 0x26));
    painter.end();
    const QString path = folder.filePath(QStringLiteral("front porch.png"));
    check(photo.save(path), QStringLiteral("the photo cannot be written"));
    return path;
}

/// The page of the attachments, with a document and a picture, which is the cover.
void writeAttachments(Workspace& workspace, const QString& folder, const QString& ending)
{
    const QTemporaryDir files;
    QFile report(files.filePath(QStringLiteral("statement of the owner.pdf")));
    check(report.open(QIODevice::WriteOnly), QStringLiteral("the report cannot be written"));
    report.close();
    tavrin::test::FakeFileDialogs dialogs;
    dialogs.choose({report.fileName(), makePhoto(files)});
    const auto incidents = workspace.store().list(QStringLiteral("bicycle"));
    RecordWindow window(workspace, workspace.store().load(incidents.constFirst().IncidentNo));
    window.setAttribute(Qt::WA_DeleteOnClose, false);
    window.resize(960, 640);
    bringUp(window);
    for (int page = 0; page < 7; ++page)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_PageDown, Qt::ControlModifier);
    window.findChild<Attachments*>()->AddAttachments();
    bringUp(window);
    writePicture(window, folder, QStringLiteral("workbench/attachments") + ending);
}

void write(const QString& folder, ThemeChoice theme)
{
    const bool dark = isDark(theme);
    const QString ending = dark ? QStringLiteral("-dark") : QString();
    applyTheme(dark);
    const QTemporaryDir data;
    Options options;
    options.database = data.filePath(QStringLiteral("records.sqlite"));
    options.theme = theme;
    Workspace workspace(options);
    const auto incidents = workspace.store().list(QStringLiteral("bicycle"));
    check(!incidents.isEmpty(), QStringLiteral("there is no incident with a bicycle"));
    {
        RecordWindow window(workspace, workspace.store().load(incidents.constFirst().IncidentNo));
        window.setAttribute(Qt::WA_DeleteOnClose, false);
        window.resize(820, 560);
        bringUp(window);
        searchGun(window);
        writePicture(window, folder, QStringLiteral("workbench/record") + ending);
    }
    writePickers(workspace, folder, ending);
    writeAttachments(workspace, folder, ending);
    if (!dark) {
        MainWindow window(workspace);
        bringUp(window);
        writePicture(window, folder, QStringLiteral("workbench/list"));
    }
}

} // namespace

TAVRIN_PICTURES(Workbench)(int argc, char** argv)
{
    QTemporaryFile screen; // larger than the platform's own, so that a list opens at its place
    screen.open();
    screen.write(R"({"screens": [{"name": "screen", "x": 0, "y": 0, "width": 1920, "height": 1080,
                                  "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})");
    screen.flush();
    return test::writePictures(
        argc, argv,
        [](const QString& folder, bool) {
            for (const ThemeChoice theme : {ThemeChoice::Light, ThemeChoice::Dark})
                write(folder, theme);
        },
        "offscreen:configfile=" + QFile::encodeName(screen.fileName()));
}
