#include "workbench/windows/MainWindow.h"

#include "attachments/files/modAttachments.h"
#include "base/failure/Error.h"
#include "base/failure/Guard.h"
#include "frame/desktop/Desktop.h"
#include "workbench/application/Theme.h"
#include "workbench/application/Workspace.h"
#include "workbench/windows/IncidentModel.h"
#include "workbench/windows/RecordWindow.h"

#include <QCloseEvent>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QStatusBar>
#include <QTableView>

#include <utility>

namespace tavrin::workbench {

namespace {

constexpr int ListLimit = 2000;    // more lines than anybody reads; the search narrows them
constexpr int PollInterval = 2000; // milliseconds
constexpr int Cascade = 48;        // pixels between this window's corner and a record's

} // namespace

MainWindow::MainWindow(Workspace& workspace)
    : m_workspace(workspace)
    , m_model(new IncidentModel(workspace.host().hostServices().DateDisplayFormat(), this))
    , m_search(new QLineEdit(this))
    , m_list(new QTableView(this))
    , m_count(new QLabel(this))
{
    setObjectName(QStringLiteral("mainWindow"));
    setWindowTitle(tr("Incidents"));
    makeList();
    auto* centre = new QWidget(this);
    auto* layout = new QVBoxLayout(centre);
    layout->setContentsMargins(16, 16, 16, 8);
    layout->setSpacing(12);
    layout->addWidget(makeToolLine());
    layout->addWidget(m_list, 1);
    setCentralWidget(centre);

    auto* who = new QLabel(tr("%1 on %2")
                               .arg(workspace.host().session().CurrentUserId(),
                                    QFileInfo(workspace.database().path()).fileName()),
                           this);
    who->setToolTip(workspace.database().path());
    statusBar()->setSizeGripEnabled(false);
    statusBar()->addWidget(m_count, 1);
    statusBar()->addPermanentWidget(who);
    statusBar()->setContentsMargins(10, 2, 10, 2);

    makeShortcuts();
    connectGuarded(&m_poll, &QTimer::timeout, this, "MainWindow_Poll", [this] { pollChanges(); });
    m_poll.start(PollInterval);
    resize(1120, 680);
    refresh();
    m_search->setFocus();
    if (workspace.isFirstStart()) // after the window is there to be read behind
        QTimer::singleShot(0, this,
                           [this] { guard("MainWindow_FirstStart", [this] { tellWhatIsMissing(); }); });
}

/// Who sets up a new database learns at once what the attachments still need.
void MainWindow::tellWhatIsMissing()
{
    try {
        modAttachments::GetAttachmentsFolder();
    } catch (const Error& error) {
        desktop().messageBoxes->tell(this, error.Description, BoxIcon::Information, tr("Attachments"));
    }
}

QWidget* MainWindow::makeToolLine()
{
    auto* line = new QWidget(this);
    m_search->setObjectName(QStringLiteral("search"));
    m_search->setAccessibleName(tr("Search incidents"));
    m_search->setTextMargins(3, 2, 3, 2);
    m_search->setPlaceholderText(tr("Search case number, summary or address"));
    m_search->setClearButtonEnabled(true);
    m_search->installEventFilter(this);
    connectGuarded(m_search, &QLineEdit::textChanged, this, "MainWindow_Search", [this] { refresh(); });
    auto* open = new QPushButton(tr("&Open"), line);
    auto* create = new QPushButton(tr("&New incident"), line);
    create->setObjectName(QStringLiteral("new"));
    connectGuarded(open, &QPushButton::clicked, this, "MainWindow_Open", [this] { openCurrent(); });
    connectGuarded(create, &QPushButton::clicked, this, "MainWindow_New", [this] { newIncident(); });
    auto* layout = new QHBoxLayout(line);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_search, 1);
    layout->addSpacing(8);
    layout->addWidget(open);
    layout->addWidget(create);
    return line;
}

void MainWindow::makeList()
{
    m_list->setObjectName(QStringLiteral("incidents"));
    m_list->setAccessibleName(tr("Incidents"));
    m_list->setModel(m_model);
    m_list->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    m_list->setAlternatingRowColors(true);
    m_list->setShowGrid(false);
    m_list->setTabKeyNavigation(false);
    m_list->setWordWrap(false);
    m_list->verticalHeader()->hide();
    m_list->verticalHeader()->setDefaultSectionSize(lineHeight(m_list->fontMetrics()));
    QHeaderView* header = m_list->horizontalHeader();
    header->setHighlightSections(false);
    header->setMinimumHeight(lineHeight(m_list->fontMetrics()));
    const int character = m_list->fontMetrics().averageCharWidth();
    const int widths[] = {16, 21, 44, 32, 18, 18};
    for (int column = 0; column < IncidentModel::ColumnCount; ++column)
        header->resizeSection(column, widths[column] * character);
    header->setSectionResizeMode(IncidentModel::Summary, QHeaderView::Stretch);
    connectGuarded(m_list, &QTableView::activated, this, "MainWindow_Open", [this] { openCurrent(); });
}

void MainWindow::makeShortcuts()
{
    const auto shortcut = [this](auto keys, const char* where, auto handler) {
        connectGuarded(new QShortcut(keys, this), &QShortcut::activated, this, where, handler);
    };
    shortcut(QKeySequence::New, "MainWindow_New", [this] { newIncident(); });
    shortcut(QKeySequence::Open, "MainWindow_Open", [this] { openCurrent(); });
    shortcut(QKeySequence::Refresh, "MainWindow_Refresh", [this] { refresh(); });
    shortcut(QKeySequence::Find, "MainWindow_Find", [this] {
        m_search->setFocus();
        m_search->selectAll();
    });
    shortcut(QKeySequence::Quit, "MainWindow_Quit", [this] { close(); });
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event)
{
    // From the search line the list is driven without leaving it.
    if (watched == m_search && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        const int row = m_list->currentIndex().row();
        if (key == Qt::Key_Down || key == Qt::Key_Up) {
            const int next = std::clamp(row + (key == Qt::Key_Down ? 1 : -1), 0, m_model->rowCount() - 1);
            if (m_model->rowCount() > 0)
                m_list->selectRow(next);
            return true;
        }
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            guard("MainWindow_Open", [this] { openCurrent(); });
            return true;
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

void MainWindow::refresh()
{
    const qint64 current = m_model->incidentNo(m_list->currentIndex().row());
    m_model->setIncidents(m_workspace.store().list(m_search->text(), ListLimit));
    const int count = m_model->rowCount();
    if (count > 0)
        m_list->selectRow(std::max(m_model->rowOf(current), 0));
    QString text = count == 0   ? tr("No incident matches")
                   : count == 1 ? tr("1 incident")
                                : tr("%1 incidents").arg(count);
    if (m_workspace.isFirstStart())
        text += tr(" \u00B7 sample records, made for the first start");
    m_count->setText(text);
}

void MainWindow::pollChanges()
{
    try {
        if (m_workspace.host().refreshIfChanged() || std::exchange(m_pollHasFailed, false))
            refresh();
    } catch (const Error& error) {
        m_pollHasFailed = true;
        m_count->setText(error.Description); // the lists stay as they were; the next look may succeed
    }
}

void MainWindow::openCurrent()
{
    if (const qint64 incidentNo = m_model->incidentNo(m_list->currentIndex().row()))
        openIncident(incidentNo);
}

void MainWindow::openIncident(qint64 incidentNo)
{
    for (const QPointer<RecordWindow>& window : m_windows) {
        if (window && window->incidentNo() == incidentNo) {
            window->showNormal();
            window->raise();
            window->activateWindow();
            return;
        }
    }
    try {
        showRecord(m_workspace.store().load(incidentNo));
    } catch (const Error& error) {
        desktop().messageBoxes->tell(this, error.Description, BoxIcon::Critical, tr("Open"));
    }
}

void MainWindow::newIncident()
{
    const RecordPtr record = m_workspace.store().create();
    fieldOf(*record->mainRow(), QStringLiteral("ReportedAt"))->SetValue(desktop().clock->now());
    fieldOf(*record->mainRow(), QStringLiteral("Status"))->SetValue(QStringLiteral("Open"));
    showRecord(record);
}

RecordWindow* MainWindow::showRecord(const RecordPtr& record)
{
    auto* window = new RecordWindow(m_workspace, record, this);
    m_windows.removeIf([](const QPointer<RecordWindow>& entry) { return entry.isNull(); });
    m_windows.append(window);
    connectGuarded(window, &RecordWindow::saved, this, "MainWindow_Saved", [this] { refresh(); });
    window->move(pos() + QPoint(Cascade, Cascade)); // so that both are seen
    window->show();
    window->activateWindow();
    return window;
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    const auto windows = m_windows;
    for (const QPointer<RecordWindow>& window : windows) {
        if (window && !window->close()) {
            event->ignore();
            return;
        }
    }
    event->accept();
}

} // namespace tavrin::workbench
