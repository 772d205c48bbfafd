#pragma once

#include "lookup/AutoCompleteField.h"
#include "lookup/SearchPicker.h"
#include "support/Fakes.h"
#include "testing/FakeDesktop.h"
#include "workbench/application/Workspace.h"
#include "workbench/windows/RecordWindow.h"

#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QTemporaryDir>
#include <QTest>
#include <QVariantList>

namespace tavrin::test {

using namespace tavrin::workbench;

/// The pages of a record's window, in the order of its list.
enum PageNo
{
    GeneralPageNo,
    OfficersPageNo,
    OffensesPageNo,
    SuspectsPageNo,
    PeoplePageNo,
    NarrativePageNo,
    LocationPageNo,
    AttachmentsPageNo,
};

/// A person's workspace on a database of its own, and the window of one incident.
struct Site
{
    explicit Site(const QByteArray& form = {}, const QString& formName = QStringLiteral("general.json"))
    {
        Options options;
        options.database = folder.filePath(QStringLiteral("records.sqlite"));
        options.workstationFolder = folder.filePath(QStringLiteral("workstation"));
        if (!form.isEmpty()) {
            QFile file(folder.filePath(formName));
            if (file.open(QIODevice::WriteOnly))
                file.write(form);
            options.formsFolder = folder.path();
        }
        workspace.emplace(options);
        incidentNo = workspace->store().list().constFirst().IncidentNo;
    }
    ~Site() { delete window; }

    void open()
    {
        window = new RecordWindow(*workspace, workspace->store().load(incidentNo));
        window->show();
    }
    void openPage(PageNo page)
    {
        open();
        showPage(page);
    }
    void showPage(PageNo page) const
    {
        QVERIFY(QTest::qWaitForWindowActive(window));
        pages()->setCurrentRow(page);
        layOut();
    }
    /// A click finds its widget by its place.
    static void layOut() { QApplication::processEvents(); }
    QListWidget* pages() const { return window->findChild<QListWidget*>(QStringLiteral("pages")); }
    AutoCompleteField* code(const QString& name) const { return window->findChild<AutoCompleteField*>(name); }
    SearchPicker* picker(const QString& name) const { return window->findChild<SearchPicker*>(name); }
    QString status() const { return window->findChild<QLabel*>(QStringLiteral("status"))->text(); }
    QLineEdit* line(const QString& name) const { return window->findChild<QLineEdit*>(name); }
    void editSummary() const { QTest::keyClicks(line(QStringLiteral("Summary")), QStringLiteral("x")); }
    QVariant stored(const QString& field)
    {
        return fieldOf(*workspace->store().load(incidentNo)->mainRow(), field)->Value();
    }
    /// What a field of the rows of a collection holds.
    QVariantList storedRows(const QString& collection, const QString& field)
    {
        QVariantList values;
        const RecordPtr record = workspace->store().load(incidentNo);
        for (const RecordRowPtr& row : record->collection(collection)->rows())
            values << fieldOf(*row, field)->Value();
        return values;
    }
    void store(const QString& field, const QVariant& value)
    {
        const RecordPtr record = workspace->store().load(incidentNo);
        fieldOf(*record->mainRow(), field)->SetValue(value);
        workspace->store().save(*record);
    }

    QTemporaryDir folder;
    std::optional<Workspace> workspace;
    qint64 incidentNo = 0;
    FakeMessageBoxes boxes;
    QPointer<RecordWindow> window;
};

} // namespace tavrin::test
