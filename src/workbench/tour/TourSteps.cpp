#include "workbench/tour/TourSteps.h"

#include "base/values/Variant.h"
#include "lookup/SearchPicker.h"
#include "widgets/search_box/SuggestionView.h"
#include "workbench/pages/PickerRows.h"

#include <QAbstractButton>
#include <QApplication>
#include <QListWidget>
#include <QVariantList>

#include <algorithm>

namespace tavrin::workbench {

namespace {

const QString RecordWindowName = QStringLiteral("recordWindow");
const QString MainWindowName = QStringLiteral("mainWindow");

/// nullptr when there is none.
QWidget* visibleWindow(const QString& name)
{
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->objectName() == name && window->isVisible())
            return window;
    }
    return nullptr;
}

} // namespace

TourSite::TourSite(const Options& options, TourDriver& tourDriver)
    : driver(tourDriver)
    , workspace(options)
    , window(workspace)
    , otherDatabase(Database::open(options.database, OpenMode::ExistingOnly))
    , otherStore(*otherDatabase)
{
    window.show();
    driver.window(MainWindowName);
}

QWidget* TourSteps::record() const
{
    return d.window(RecordWindowName);
}

QVariant TourSteps::stored(const QString& field) const
{
    return fieldOf(*s.otherStore.load(s.incidentNo)->mainRow(), field)->Value();
}

QVariantList TourSteps::storedRows(const QString& collection, const QString& field) const
{
    QVariantList values;
    const RecordPtr record = s.otherStore.load(s.incidentNo);
    for (const RecordRowPtr& row : record->collection(collection)->rows())
        values << fieldOf(*row, field)->Value();
    return values;
}

void TourSteps::showPage(int page) const
{
    auto* pages = d.find<QListWidget>(record(), QStringLiteral("pages"));
    while (pages->currentRow() != page)
        d.press(pages->currentRow() < page ? Qt::Key_PageDown : Qt::Key_PageUp, Qt::ControlModifier);
}

SearchPicker& TourSteps::picker(const QString& name) const
{
    return *d.find<SearchPicker>(record(), name);
}

QList<PickerRow*> TourSteps::lines(const QString& collection) const
{
    QList<PickerRow*> lines = d.find<PickerRows>(record(), collection)->findChildren<PickerRow*>();
    lines.removeIf([](const PickerRow* line) { return line->isHidden(); }); // one that was just removed
    return lines;
}

void TourSteps::addLine(const QString& collection) const
{
    d.press(Qt::Key_A, Qt::AltModifier);
    d.waitFor( // the button stays down for a moment
        [&] {
            const auto all = lines(collection);
            return std::any_of(all.begin(), all.end(), [](const PickerRow* line) {
                return line->isEmpty() && line->picker().isAncestorOf(QApplication::focusWidget());
            });
        },
        QStringLiteral("the keyboard is in an empty line"));
}

void TourSteps::removeLine(const PickerRow& line) const
{
    d.click(d.find<QAbstractButton>(&line, QStringLiteral("remove")));
}

void TourSteps::emptyTheBox() const
{
    d.press(Qt::Key_A, Qt::ControlModifier);
    d.press(Qt::Key_Backspace);
}

SuggestionView& TourSteps::suggestions() const
{
    const QString list = QStringLiteral("suggestionList");
    d.waitFor([&] { return visibleWindow(list) != nullptr; }, QStringLiteral("the list is open"));
    return *d.find<SuggestionView>(visibleWindow(list), QStringLiteral("suggestions"));
}

QStringList TourSteps::found() const
{
    QStringList rows;
    const SuggestionView& list = suggestions();
    for (int row = 0; row < list.rowCount(); ++row)
        rows << list.rowText(row);
    return rows;
}

void TourSteps::clickRow(int row) const
{
    SuggestionView& list = suggestions();
    d.click(list.viewport(), list.rowRect(row).center());
}

void TourSteps::answer(QMessageBox::StandardButton button, QWidget* box) const
{
    d.click(qobject_cast<QMessageBox*>(box)->button(button));
}

void TourSteps::save() const
{
    d.press(Qt::Key_S, Qt::ControlModifier);
    d.check(!record()->isWindowModified(), QStringLiteral("nothing is unsaved"));
}

void TourSteps::saveIsRefusedWithout(const QString& label, const QString& picture) const
{
    d.withBox([&] { d.press(Qt::Key_S, Qt::ControlModifier); },
              [&](QWidget* box) {
                  d.check(boxText(box).startsWith(QStringLiteral("\"%1\" must be filled in.").arg(label)),
                          QStringLiteral("the box names the field"));
                  if (!picture.isEmpty())
                      d.picture(picture);
                  answer(QMessageBox::Ok, box);
              });
}

void TourSteps::waitUntilRecordIsClosed() const
{
    d.waitFor([] { return visibleWindow(RecordWindowName) == nullptr; },
              QStringLiteral("the record's window is closed"));
}

void TourSteps::close() const
{
    d.press(Qt::Key_W, Qt::ControlModifier);
    waitUntilRecordIsClosed();
}

void TourSteps::discard() const
{
    d.withBox([&] { d.press(Qt::Key_W, Qt::ControlModifier); },
              [&](QWidget* box) { answer(QMessageBox::Discard, box); });
    waitUntilRecordIsClosed();
}

void TourSteps::reopen() const
{
    s.window.activateWindow();
    d.window(MainWindowName);
    d.press(Qt::Key_Return);
    record();
}

void TourSteps::searchAndOpen(const QString& text) const
{
    s.window.activateWindow();
    d.window(MainWindowName);
    d.press(Qt::Key_F, Qt::ControlModifier);
    d.type(text);
    d.press(Qt::Key_Return);
    record();
}

} // namespace tavrin::workbench
