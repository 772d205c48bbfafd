#pragma once

#include "workbench/application/Workspace.h"
#include "workbench/tour/TourDriver.h"
#include "workbench/windows/MainWindow.h"

#include <QMessageBox>
#include <QVariantList>

namespace tavrin {
class SearchPicker;
class SuggestionView;
} // namespace tavrin

namespace tavrin::workbench {

class PickerRow;

/// What the steps of the tour share: the workspace of the person, and a second look at the database, which
/// sits at another workstation.
struct TourSite
{
    TourSite(const Options& options, TourDriver& tourDriver);

    TourDriver& driver;
    Workspace workspace;
    MainWindow window;
    std::unique_ptr<Database> otherDatabase;
    RecordStore otherStore;
    /// The incident that the tour works on.
    qint64 incidentNo = 0;
};

/// The base of one subject's steps.
class TourSteps
{
public:
    explicit TourSteps(TourSite& site)
        : d(site.driver)
        , s(site)
    {
    }

protected:
    ~TourSteps() = default;

    QWidget* record() const;
    /// From the database.
    QVariant stored(const QString& field) const;
    void emptyTheBox() const;
    /// The values of a column of one of the incident's collections, from the database.
    QVariantList storedRows(const QString& collection, const QString& field) const;
    /// A page of the record, by its place.
    void showPage(int page) const;
    SearchPicker& picker(const QString& name) const;
    /// The lines of a collection on its page.
    QList<PickerRow*> lines(const QString& collection) const;
    /// By the button's access key; the keyboard is then in the empty line.
    void addLine(const QString& collection) const;
    void removeLine(const PickerRow& line) const;
    /// What a search has found, once the list for it is there.
    SuggestionView& suggestions() const;
    /// The texts of its rows.
    QStringList found() const;
    void clickRow(int row) const;
    void answer(QMessageBox::StandardButton button, QWidget* box) const;
    QString boxText(QWidget* box) const { return qobject_cast<QMessageBox*>(box)->text(); }
    void save() const;
    /// Asks for a save, which a box refuses since a field is empty. The box is answered.
    void saveIsRefusedWithout(const QString& label, const QString& picture = {}) const;
    void waitUntilRecordIsClosed() const;
    /// Closes the record, in which nothing is unsaved.
    void close() const;
    /// Closes the record, whose changes are thrown away.
    void discard() const;
    /// Opens the incident that is current in the list.
    void reopen() const;
    /// Opens the first incident that the search finds.
    void searchAndOpen(const QString& text) const;

    TourDriver& d;
    TourSite& s;
};

// The tour, subject by subject. Each leaves the incident's window open for the next, but for the last.
void walkCodes(TourSite& site);
void walkPeople(TourSite& site);
void walkOffenses(TourSite& site);
void walkSuspects(TourSite& site);
void walkLocation(TourSite& site);
/// `folder` takes the files that are attached.
void walkAttachments(TourSite& site, const QString& folder);
/// `folder` takes the pictures of another workstation.
void walkSpelling(TourSite& site, const QString& folder);
/// What another workstation sees behind `walkSpelling`.
void walkSpellingElsewhere(TourSite& site);
void walkSaving(TourSite& site);

} // namespace tavrin::workbench
