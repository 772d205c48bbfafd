#include "Tour.h"

#include "MainWindow.h"
#include "TourDriver.h"
#include "Workspace.h"
#include "base/Error.h"
#include "base/Variant.h"
#include "lookup/AutoCompleteField.h"
#include "widgets/DropDownList.h"
#include "widgets/TextBox.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QTableView>

#include <cstdio>

namespace tavrin::workbench {

namespace {

const QString RecordWindowName = QStringLiteral("recordWindow");

/// The steps, and what they share: the workspace of the person, and a second one that looks at the database
/// and sits at another workstation.
class Tour
{
public:
    Tour(const Options& options, TourDriver& driver)
        : d(driver)
        , m_workspace(options)
        , m_window(m_workspace)
        , m_otherDatabase(Database::open(options.database, OpenMode::ExistingOnly))
        , m_otherStore(*m_otherDatabase)
    {
        m_window.show();
        d.window(QStringLiteral("mainWindow"));
    }

    void walk();

private:
    void findAndOpen();
    void searchInTheField();
    void chooseByKeyboard();
    void chooseByMouse();
    void refuseWhatWasNotChosen();
    void saveAndCompare();
    void promptForUnsavedChanges();
    void reopenAndCompare();
    void refuseToOverwrite();
    void surviveALockedDatabase();
    void makeANewIncident();

    QWidget* record() const { return d.window(RecordWindowName); }
    AutoCompleteField* code(const QString& name) const { return d.find<AutoCompleteField>(record(), name); }
    QString text(const QString& name) const { return ToText(code(name)->Text()); }
    DropDownList* matches(const QString& name) const
    {
        return d.find<DropDownList>(code(name), QStringLiteral("lstMatches"));
    }
    QVariant stored(const QString& field)
    {
        return fieldOf(*m_otherStore.load(m_incidentNo)->mainRow(), field)->Value();
    }
    void emptyTheBox()
    {
        d.press(Qt::Key_A, Qt::ControlModifier);
        d.press(Qt::Key_Backspace);
    }
    void answer(QMessageBox::StandardButton button, QWidget* box) const
    {
        d.click(qobject_cast<QMessageBox*>(box)->button(button));
    }
    QString boxText(QWidget* box) const { return qobject_cast<QMessageBox*>(box)->text(); }
    void waitUntilRecordIsClosed() const
    {
        d.waitFor(
            [] {
                const auto windows = QApplication::topLevelWidgets();
                return std::none_of(windows.begin(), windows.end(), [](const QWidget* window) {
                    return window->objectName() == RecordWindowName && window->isVisible();
                });
            },
            QStringLiteral("the record's window is closed"));
    }
    void reopen()
    {
        m_window.activateWindow();
        d.window(QStringLiteral("mainWindow"));
        d.press(Qt::Key_Return);
        record();
    }

    TourDriver& d;
    Workspace m_workspace;
    MainWindow m_window;
    std::unique_ptr<Database> m_otherDatabase;
    RecordStore m_otherStore;
    qint64 m_incidentNo = 0;
};

void Tour::walk()
{
    findAndOpen();
    searchInTheField();
    chooseByKeyboard();
    chooseByMouse();
    refuseWhatWasNotChosen();
    saveAndCompare();
    promptForUnsavedChanges();
    reopenAndCompare();
    refuseToOverwrite();
    surviveALockedDatabase();
    makeANewIncident();
}

void Tour::findAndOpen()
{
    auto* list = d.find<QTableView>(&m_window, QStringLiteral("incidents"));
    d.step(QStringLiteral("The list of incidents"), [&] {
        d.check(list->model()->rowCount() == m_otherStore.list().size(),
                QStringLiteral("all incidents are listed"));
        d.check(m_window.focusWidget() == d.find<QLineEdit>(&m_window, QStringLiteral("search")),
                QStringLiteral("the search line has the focus"));
    });
    d.step(QStringLiteral("Search an incident"), [&] {
        d.type(QStringLiteral("bicycle"));
        const auto expected = m_otherStore.list(QStringLiteral("bicycle"));
        d.check(!expected.isEmpty() && list->model()->rowCount() == expected.size(),
                QStringLiteral("the incidents with a bicycle are listed"));
        m_incidentNo = expected.constFirst().IncidentNo;
    });
    d.step(QStringLiteral("Open the record"), [&] {
        d.press(Qt::Key_Return);
        d.checkEqual(d.find<QLabel>(record(), QStringLiteral("title"))->text(),
                     ToText(stored(QStringLiteral("CaseNo"))), QStringLiteral("the window's title"));
        d.check(SameValue(code(QStringLiteral("LocationType"))->Value(),
                          stored(QStringLiteral("LocationTypeNo"))),
                QStringLiteral("the location type is the record's"));
    });
}

void Tour::searchInTheField()
{
    d.step(QStringLiteral("Two characters list nothing"), [&] {
        d.press(Qt::Key_W, Qt::AltModifier);
        emptyTheBox();
        d.type(QStringLiteral("gu"));
        d.waitFor([&] { return IsNull(code(QStringLiteral("Weapon"))->Value()); },
                  QStringLiteral("no weapon is chosen"));
        d.checkEqual(text(QStringLiteral("Weapon")), QStringLiteral("gu"),
                     QStringLiteral("the weapon's text"));
        d.check(!matches(QStringLiteral("Weapon"))->IsOpen(), QStringLiteral("no list is open"));
    });
    d.step(QStringLiteral("Three characters open the list"), [&] {
        emptyTheBox();
        d.type(QStringLiteral("gun"));
        d.waitFor([&] { return matches(QStringLiteral("Weapon"))->IsOpen(); },
                  QStringLiteral("the list is open"));
        d.checkEqual(text(QStringLiteral("Weapon")), QStringLiteral("gun"),
                     QStringLiteral("the weapon's text"));
        d.check(matches(QStringLiteral("Weapon"))->ListCount() >= 2,
                QStringLiteral("handgun and shotgun are found"));
    });
}

void Tour::chooseByKeyboard()
{
    d.step(QStringLiteral("Walk down the list"), [&] {
        d.press(Qt::Key_Down);
        d.press(Qt::Key_Down);
        d.check(matches(QStringLiteral("Weapon"))->ListIndex() == 1,
                QStringLiteral("the second entry is marked"));
        d.check(IsNull(code(QStringLiteral("Weapon"))->Value()), QStringLiteral("nothing is chosen yet"));
    });
    d.step(QStringLiteral("Choose with Enter"), [&] {
        const QString marked = matches(QStringLiteral("Weapon"))->Text();
        d.press(Qt::Key_Return);
        d.checkEqual(text(QStringLiteral("Weapon")), marked, QStringLiteral("the weapon's text"));
        d.check(!IsNull(code(QStringLiteral("Weapon"))->Value()), QStringLiteral("a weapon is chosen"));
        d.check(!matches(QStringLiteral("Weapon"))->IsOpen(), QStringLiteral("the list is closed"));
        d.check(record()->isWindowModified(), QStringLiteral("the record is marked as changed"));
    });
}

void Tour::chooseByMouse()
{
    d.step(QStringLiteral("Search by description"), [&] {
        d.press(Qt::Key_L, Qt::AltModifier);
        emptyTheBox();
        d.type(QStringLiteral("HOME"));
        d.waitFor([&] { return matches(QStringLiteral("LocationType"))->IsOpen(); },
                  QStringLiteral("the list is open"));
    });
    d.step(QStringLiteral("Choose with the mouse"), [&] {
        QListView* open = nullptr;
        for (auto* candidate : record()->findChildren<QListView*>(QStringLiteral("entries"))) {
            if (candidate->isVisible())
                open = candidate;
        }
        d.check(open != nullptr, QStringLiteral("the list can be seen"));
        const QString first = matches(QStringLiteral("LocationType"))->List(0);
        d.click(open->viewport(), open->visualRect(open->model()->index(0, 0)).center());
        d.checkEqual(text(QStringLiteral("LocationType")), first, QStringLiteral("the location type's text"));
        d.check(!matches(QStringLiteral("LocationType"))->IsOpen(), QStringLiteral("the list is closed"));
    });
}

void Tour::refuseWhatWasNotChosen()
{
    d.step(QStringLiteral("A text that is no entry is not saved"), [&] {
        d.press(Qt::Key_B, Qt::AltModifier);
        emptyTheBox();
        d.type(QStringLiteral("martian"));
        d.waitFor([&] { return IsNull(code(QStringLiteral("BiasMotivation"))->Value()); },
                  QStringLiteral("no motivation is chosen"));
        d.withBox([&] { d.press(Qt::Key_S, Qt::ControlModifier); },
                  [&](QWidget* box) {
                      d.check(boxText(box).contains(QStringLiteral("\"martian\" in \"Bias motivation\"")),
                              QStringLiteral("the box names the text and the field"));
                      d.picture(QStringLiteral("The box"));
                      d.press(Qt::Key_Return);
                  });
        record();
        d.check(code(QStringLiteral("BiasMotivation"))->isAncestorOf(QApplication::focusWidget()),
                QStringLiteral("the field at fault has the focus"));
        d.checkEqual(text(QStringLiteral("BiasMotivation")), QStringLiteral("martian"),
                     QStringLiteral("the text"));
    });
    d.step(QStringLiteral("Choose an entry instead"), [&] {
        emptyTheBox();
        d.type(QStringLiteral("anti-b"));
        d.waitFor([&] { return matches(QStringLiteral("BiasMotivation"))->IsOpen(); },
                  QStringLiteral("the list is open"));
        d.press(Qt::Key_Down);
        d.press(Qt::Key_Return);
        d.check(!IsNull(code(QStringLiteral("BiasMotivation"))->Value()),
                QStringLiteral("a motivation is chosen"));
    });
}

void Tour::saveAndCompare()
{
    d.step(QStringLiteral("Save"), [&] {
        const QVariant weapon = code(QStringLiteral("Weapon"))->Value();
        const QVariant location = code(QStringLiteral("LocationType"))->Value();
        const QVariant bias = code(QStringLiteral("BiasMotivation"))->Value();
        d.press(Qt::Key_S, Qt::ControlModifier);
        d.check(!record()->isWindowModified(), QStringLiteral("nothing is unsaved"));
        d.check(
            d.find<QLabel>(record(), QStringLiteral("status"))->text().startsWith(QStringLiteral("Saved")),
            QStringLiteral("the status line says so"));
        d.check(SameValue(stored(QStringLiteral("WeaponNo")), weapon),
                QStringLiteral("the weapon is in the database"));
        d.check(SameValue(stored(QStringLiteral("LocationTypeNo")), location),
                QStringLiteral("the location type is in the database"));
        d.check(SameValue(stored(QStringLiteral("BiasNo")), bias),
                QStringLiteral("the motivation is in the database"));
    });
}

void Tour::promptForUnsavedChanges()
{
    const QString before = ToText(stored(QStringLiteral("Narrative")));
    const QString added = QStringLiteral(" A neighbor's camera was checked.");
    d.step(QStringLiteral("Write on the narrative page"), [&] {
        d.press(Qt::Key_PageDown, Qt::ControlModifier);
        d.picture(QStringLiteral("Offenses and people"));
        d.press(Qt::Key_PageDown, Qt::ControlModifier);
        d.press(Qt::Key_V, Qt::AltModifier);
        d.press(Qt::Key_End, Qt::ControlModifier);
        d.type(added);
        d.check(record()->isWindowModified(), QStringLiteral("the record is marked as changed"));
    });
    d.step(QStringLiteral("Closing asks, and Cancel stays"), [&] {
        d.withBox([&] { d.press(Qt::Key_W, Qt::ControlModifier); },
                  [&](QWidget* box) {
                      d.picture(QStringLiteral("The question"));
                      answer(QMessageBox::Cancel, box);
                  });
        d.check(record()->isVisible(), QStringLiteral("the window is still there"));
        d.check(d.find<QPlainTextEdit>(record(), QStringLiteral("Narrative"))->toPlainText() ==
                    before + added,
                QStringLiteral("what was typed is still there"));
    });
    d.step(QStringLiteral("Closing asks, and Save saves"), [&] {
        d.withBox([&] { d.press(Qt::Key_W, Qt::ControlModifier); },
                  [&](QWidget* box) { answer(QMessageBox::Save, box); });
        waitUntilRecordIsClosed();
        d.checkEqual(ToText(stored(QStringLiteral("Narrative"))), before + added,
                     QStringLiteral("the narrative"));
    });
}

void Tour::reopenAndCompare()
{
    d.step(QStringLiteral("Open again and find the choices"), [&] {
        reopen();
        for (const auto& [name, field] :
             {std::pair(QStringLiteral("Weapon"), QStringLiteral("WeaponNo")),
              std::pair(QStringLiteral("LocationType"), QStringLiteral("LocationTypeNo")),
              std::pair(QStringLiteral("BiasMotivation"), QStringLiteral("BiasNo"))}) {
            d.check(SameValue(code(name)->Value(), stored(field)),
                    QStringLiteral("%1 is the saved one").arg(name));
            d.check(text(name).contains(QStringLiteral(" - ")),
                    QStringLiteral("%1 shows code and text").arg(name));
        }
        d.check(text(QStringLiteral("Weapon")).contains(QStringLiteral("gun"), Qt::CaseInsensitive),
                QStringLiteral("the weapon is the one that was chosen"));
        d.check(!record()->isWindowModified(), QStringLiteral("nothing is unsaved"));
    });
    d.step(QStringLiteral("Discard a change"), [&] {
        const QVariant saved = stored(QStringLiteral("WeaponNo"));
        d.press(Qt::Key_W, Qt::AltModifier);
        emptyTheBox();
        d.check(IsNull(code(QStringLiteral("Weapon"))->Value()),
                QStringLiteral("the emptied box has no value"));
        d.withBox([&] { d.press(Qt::Key_W, Qt::ControlModifier); },
                  [&](QWidget* box) { answer(QMessageBox::Discard, box); });
        waitUntilRecordIsClosed();
        d.check(SameValue(stored(QStringLiteral("WeaponNo")), saved),
                QStringLiteral("the database is unchanged"));
    });
}

void Tour::refuseToOverwrite()
{
    d.step(QStringLiteral("Somebody else has saved meanwhile"), [&] {
        reopen();
        const RecordPtr theirs = m_otherStore.load(m_incidentNo);
        fieldOf(*theirs->mainRow(), QStringLiteral("City"))->SetValue(QStringLiteral("Elsewhere"));
        m_otherStore.save(*theirs);
        d.press(Qt::Key_U, Qt::AltModifier);
        d.press(Qt::Key_End);
        d.type(QStringLiteral(" (mine)"));
        d.withBox([&] { d.press(Qt::Key_S, Qt::ControlModifier); },
                  [&](QWidget* box) {
                      d.picture(QStringLiteral("The refusal"));
                      answer(QMessageBox::Ok, box);
                  });
        d.checkEqual(ToText(stored(QStringLiteral("City"))), QStringLiteral("Elsewhere"),
                     QStringLiteral("the other's city"));
        d.check(!ToText(stored(QStringLiteral("Summary"))).endsWith(QStringLiteral("(mine)")),
                QStringLiteral("nothing was overwritten"));
        d.check(
            d.find<QLineEdit>(record(), QStringLiteral("Summary"))->text().endsWith(QStringLiteral("(mine)")),
            QStringLiteral("what was typed is still there"));
        d.withBox([&] { d.press(Qt::Key_W, Qt::ControlModifier); },
                  [&](QWidget* box) { answer(QMessageBox::Discard, box); });
        waitUntilRecordIsClosed();
    });
}

void Tour::surviveALockedDatabase()
{
    d.step(QStringLiteral("A save that fails loses nothing"), [&] {
        reopen();
        d.press(Qt::Key_U, Qt::AltModifier);
        d.press(Qt::Key_End);
        d.type(QStringLiteral(", corrected"));
        m_otherDatabase->execute(QStringLiteral("BEGIN EXCLUSIVE"));
        d.withBox([&] { d.press(Qt::Key_S, Qt::ControlModifier); },
                  [&](QWidget* box) {
                      d.picture(QStringLiteral("The message"));
                      answer(QMessageBox::Ok, box);
                  });
        m_otherDatabase->execute(QStringLiteral("ROLLBACK"));
        d.check(record()->isWindowModified(), QStringLiteral("the record is still marked as changed"));
        d.press(Qt::Key_S, Qt::ControlModifier);
        d.check(!record()->isWindowModified(), QStringLiteral("the next save works"));
        d.check(ToText(stored(QStringLiteral("Summary"))).endsWith(QStringLiteral(", corrected")),
                QStringLiteral("the summary is in the database"));
        d.press(Qt::Key_W, Qt::ControlModifier);
        waitUntilRecordIsClosed();
    });
}

void Tour::makeANewIncident()
{
    d.step(QStringLiteral("A new incident needs its case number"), [&] {
        m_window.activateWindow();
        d.window(QStringLiteral("mainWindow"));
        d.press(Qt::Key_N, Qt::ControlModifier);
        record();
        d.press(Qt::Key_U, Qt::AltModifier);
        d.type(QStringLiteral("Found property at the station's desk"));
        d.withBox([&] { d.press(Qt::Key_S, Qt::ControlModifier); },
                  [&](QWidget* box) {
                      d.check(boxText(box).startsWith(QStringLiteral("\"Case number\" must be filled in.")),
                              QStringLiteral("the box names the field"));
                      d.picture(QStringLiteral("The refusal"));
                      answer(QMessageBox::Ok, box);
                  });
        d.type(QStringLiteral("2026-009001"));
    });
    d.step(QStringLiteral("Save the new incident"), [&] {
        d.press(Qt::Key_S, Qt::ControlModifier);
        d.check(!record()->isWindowModified(), QStringLiteral("nothing is unsaved"));
        const auto found = m_otherStore.list(QStringLiteral("2026-009001"));
        d.check(found.size() == 1 && found.constFirst().Summary.startsWith(QStringLiteral("Found property")),
                QStringLiteral("the incident is in the database"));
        d.press(Qt::Key_W, Qt::ControlModifier);
        waitUntilRecordIsClosed();
    });
    d.step(QStringLiteral("The new incident is in the list"), [&] {
        m_window.activateWindow();
        d.window(QStringLiteral("mainWindow"));
        d.press(Qt::Key_F, Qt::ControlModifier);
        d.type(QStringLiteral("009001"));
        d.check(d.find<QTableView>(&m_window, QStringLiteral("incidents"))->model()->rowCount() == 1,
                QStringLiteral("the list shows it"));
    });
}

} // namespace

int runTour(const Options& options)
{
    if (!QDir().mkpath(options.tourFolder))
        throw Error(QStringLiteral("The folder %1 could not be made. Check that you may write there, or name "
                                   "another one with --tour.")
                        .arg(options.tourFolder));
    Options own; // its own database with the built-in data and form, which nobody else has touched
    own.theme = options.theme;
    own.database = QDir(options.tourFolder).filePath(QStringLiteral("tour.sqlite"));
    for (const QString& ending :
         {QString(), QStringLiteral("-wal"), QStringLiteral("-shm"), QStringLiteral("-journal")})
        QFile::remove(own.database + ending);
    TourDriver driver(options.tourFolder);
    Tour tour(own, driver);
    try {
        tour.walk();
    } catch (const Error& error) {
        std::printf("not ok - %s\n", qPrintable(error.Description));
        driver.picture(QStringLiteral("failure"));
        return 1;
    }
    std::printf("%d steps; the pictures are in %s\n", driver.steps(), qPrintable(options.tourFolder));
    return 0;
}

} // namespace tavrin::workbench
