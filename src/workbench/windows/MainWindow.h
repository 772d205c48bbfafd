#pragma once

#include "host/records/Record.h"

#include <QMainWindow>
#include <QPointer>
#include <QTimer>

class QLabel;
class QLineEdit;
class QTableView;

namespace tavrin::workbench {

class IncidentModel;
class RecordWindow;
class Workspace;

/// The list of incidents with its search line; opens the windows of records.
class MainWindow final : public QMainWindow
{
    Q_OBJECT

public:
    /// `workspace` must outlive the window.
    explicit MainWindow(Workspace& workspace);

    /// Reads the list again and keeps the current incident.
    void refresh();
    /// Shows an incident in a window of its own, or brings the one that it has to the front.
    void openIncident(qint64 incidentNo);
    void newIncident();

protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void tellWhatIsMissing();
    QWidget* makeToolLine();
    void makeList();
    void makeShortcuts();
    void openCurrent();
    RecordWindow* showRecord(const RecordPtr& record);
    void pollChanges();

    Workspace& m_workspace;
    IncidentModel* m_model;
    QLineEdit* m_search;
    QTableView* m_list;
    QLabel* m_count;
    QTimer m_poll;
    bool m_pollHasFailed = false;
    QList<QPointer<RecordWindow>> m_windows;
};

} // namespace tavrin::workbench
