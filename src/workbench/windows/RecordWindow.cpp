#include "workbench/windows/RecordWindow.h"

#include "attachments/section/CoverImage.h"
#include "base/failure/Error.h"
#include "base/failure/Guard.h"
#include "base/values/Variant.h"
#include "spell/TavrinSpellcheck.h"
#include "workbench/application/Theme.h"
#include "workbench/application/Workspace.h"
#include "workbench/pages/AttachmentsPage.h"
#include "workbench/pages/GeneralPage.h"
#include "workbench/pages/LocationPage.h"
#include "workbench/pages/NarrativePage.h"
#include "workbench/pages/PeoplePage.h"
#include "workbench/pages/SuspectsPage.h"

#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScrollArea>
#include <QShortcut>
#include <QStackedWidget>
#include <QTime>
#include <QTimer>

#include <algorithm>

namespace tavrin::workbench {

namespace {

/// Room for the words that stand there while there is no cover.
constexpr QSize CoverSize(132, 100);

QFrame* makeLine()
{
    auto* line = new QFrame;
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Plain);
    line->setForegroundRole(QPalette::Mid);
    return line;
}

} // namespace

RecordWindow::RecordWindow(Workspace& workspace, RecordPtr record, QWidget* parent)
    : QWidget(parent, Qt::Window)
    , m_workspace(workspace)
    , m_record(std::move(record))
{
    setAttribute(Qt::WA_DeleteOnClose);
    setObjectName(QStringLiteral("recordWindow"));
    m_navigation = new QListWidget(this);
    m_navigation->setObjectName(QStringLiteral("pages"));
    m_navigation->setAccessibleName(tr("Pages"));
    m_navigation->setFixedWidth(184);
    m_navigation->setFrameShape(QFrame::NoFrame);
    m_navigation->setSpacing(2);
    m_navigation->viewport()->setAutoFillBackground(false);
    m_navigation->setStyleSheet(QStringLiteral("QListWidget::item { padding-left: 10px; border-radius: 4px; }"
                                               "QListWidget::item:selected { background: palette(highlight);"
                                               " color: palette(highlighted-text); }"
                                               "QListWidget { outline: none; }"));
    m_stack = new QStackedWidget(this);
    m_spelling = new TavrinSpellcheck(this);
    m_spelling->hide(); // it shows nothing of its own
    QStringList problems;
    addPages(problems); // before the footer, which comes behind them in the tab order

    auto* body = new QHBoxLayout;
    body->setContentsMargins(12, 12, 0, 0);
    body->setSpacing(0);
    body->addWidget(m_navigation);
    body->addWidget(m_stack, 1);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(makeHeader());
    layout->addWidget(makeLine());
    layout->addLayout(body, 1);
    layout->addWidget(makeLine());
    layout->addWidget(makeFooter());

    connectGuarded(m_navigation, &QListWidget::currentRowChanged, this, "RecordWindow_Page",
                   [this](int row) { m_stack->setCurrentIndex(row); });
    const auto shortcut = [this](auto keys, const char* where, auto handler) {
        connectGuarded(new QShortcut(keys, this), &QShortcut::activated, this, where, handler);
    };
    shortcut(QKeySequence::Save, "RecordWindow_Save", [this] { save(); });
    shortcut(QKeySequence::Close, "RecordWindow_Close", [this] { close(); });
    shortcut(QKeySequence(Qt::CTRL | Qt::Key_PageDown), "RecordWindow_NextPage",
             [this] { showPage(m_stack->currentIndex() + 1); });
    shortcut(QKeySequence(Qt::Key_F7), "RecordWindow_Spelling", [this] { checkSpelling(); });
    shortcut(QKeySequence(Qt::CTRL | Qt::Key_PageUp), "RecordWindow_PreviousPage",
             [this] { showPage(m_stack->currentIndex() - 1); });

    resize(960, 680);
    m_navigation->setCurrentRow(0);
    for (RecordPage* page : m_pages)
        page->load(*m_record);
    static_cast<BoundSection*>(m_cover)->ReadData(m_record);
    refreshState();
    if (!problems.isEmpty()) { // after the window is there to be read
        QTimer::singleShot(0, this, [this, text = problems.join(u'\n')] {
            guard("RecordWindow_Form",
                  [&] { desktop().messageBoxes->tell(this, text, BoxIcon::Exclamation, tr("Form")); });
        });
    }
}

QWidget* RecordWindow::makeHeader()
{
    auto* header = new QWidget(this);
    m_title = new QLabel(header);
    m_title->setObjectName(QStringLiteral("title"));
    QFont font = m_title->font();
    font.setPointSizeF(font.pointSizeF() * 1.5);
    m_title->setFont(font);
    m_title->setTextFormat(Qt::PlainText);
    m_subtitle = new QLabel(header);
    m_subtitle->setTextFormat(Qt::PlainText);
    QPalette palette = m_subtitle->palette();
    palette.setColor(QPalette::WindowText, quietText(palette));
    m_subtitle->setPalette(palette);
    m_cover = new CoverImage(header);
    m_cover->setObjectName(QStringLiteral("cover"));
    m_cover->setAccessibleName(tr("Cover image"));
    m_cover->setFixedSize(CoverSize);
    auto* words = new QVBoxLayout;
    words->setSpacing(2);
    words->addStretch(1);
    words->addWidget(m_title);
    words->addWidget(m_subtitle);
    words->addStretch(1);
    auto* layout = new QHBoxLayout(header);
    layout->setContentsMargins(24, 8, 24, 8);
    layout->addLayout(words, 1);
    layout->addWidget(m_cover);
    return header;
}

QWidget* RecordWindow::makeFooter()
{
    auto* footer = new QWidget(this);
    m_status = new QLabel(footer);
    m_status->setObjectName(QStringLiteral("status"));
    m_save = new QPushButton(tr("&Save"), footer);
    m_save->setObjectName(QStringLiteral("save"));
    m_save->setToolTip(tr("Save the incident (%1)").arg(QKeySequence(QKeySequence::Save).toString()));
    auto* close = new QPushButton(tr("Clos&e"), footer);
    close->setObjectName(QStringLiteral("close"));
    connectGuarded(m_save, &QPushButton::clicked, this, "RecordWindow_Save", [this] { save(); });
    connectGuarded(close, &QPushButton::clicked, this, "RecordWindow_Close", [this] { this->close(); });
    auto* layout = new QHBoxLayout(footer);
    layout->setContentsMargins(24, 10, 24, 10);
    layout->addWidget(m_status, 1);
    layout->addWidget(m_save);
    layout->addWidget(close);
    return footer;
}

void RecordWindow::addPages(QStringList& problems)
{
    const QString& forms = m_workspace.options().formsFolder;
    auto* general = new GeneralPage(forms, problems);
    auto* officers = new FormPage(tr("Officers"));
    officers->setHadLeft([this, general](qint32 officerNo) {
        const std::optional<QDate> left = m_workspace.host().employeeLeftOn(officerNo);
        const std::optional<QDate> day = general->incidentDay();
        return left && day && *left < *day;
    });
    officers->addForm(QStringLiteral("officers.json"), forms, problems);
    auto* offenses = new FormPage(tr("Offenses"));
    offenses->addForm(QStringLiteral("offenses.json"), forms, problems);
    addPage(general);
    addPage(officers);
    addPage(offenses);
    auto* suspects = new SuspectsPage(forms, problems);
    auto* people = new PeoplePage;
    m_subscriptions.push_back(people->PeopleChanged.subscribe([suspects] { suspects->peopleChanged(); }));
    addPage(suspects);
    addPage(people);
    addPage(new NarrativePage);
    addPage(new LocationPage);
    addPage(new AttachmentsPage);
}

void RecordWindow::addPage(RecordPage* page)
{
    m_pages.push_back(page);
    m_subscriptions.push_back(page->Edited.subscribe([this] { refreshState(); }));
    m_subscriptions.push_back(page->SpellingAsked.subscribe([this] { checkSpelling(); }));
    auto* scroll = new QScrollArea(m_stack);
    scroll->setWidget(page);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setFocusPolicy(Qt::NoFocus);
    m_stack->addWidget(scroll);
    auto* item = new QListWidgetItem(page->title(), m_navigation);
    item->setSizeHint(QSize(0, 32));
}

void RecordWindow::showPage(int index)
{
    if (index >= 0 && index < m_navigation->count())
        m_navigation->setCurrentRow(index);
}

/// Of the page in front.
void RecordWindow::checkSpelling()
{
    QWidget* text = m_pages.at(static_cast<std::size_t>(m_stack->currentIndex()))->spelledText();
    if (text && text->isEnabled())
        m_spelling->CheckSpelling(text);
}

bool RecordWindow::isDirty() const
{
    return m_record->isChanged() || std::any_of(m_pages.begin(), m_pages.end(), [&](const RecordPage* page) {
               return page->differs(*m_record);
           });
}

void RecordWindow::refreshState()
{
    tvTableRow& row = *m_record->mainRow();
    const QString caseNo = ToText(fieldOf(row, QStringLiteral("CaseNo"))->Value());
    const QString name = caseNo.isEmpty() ? tr("New incident") : caseNo;
    m_title->setText(name);
    m_subtitle->setText(ToText(fieldOf(row, QStringLiteral("Summary"))->Value()));
    const bool dirty = isDirty();
    setWindowTitle(name + QStringLiteral("[*]"));
    setWindowModified(dirty);
    const QString unsaved = tr("Unsaved changes");
    if (dirty)
        tellStatus(unsaved);
    else if (m_status->text() == unsaved)
        tellStatus(QString());
}

void RecordWindow::tellStatus(const QString& text)
{
    m_status->setText(text);
}

void RecordWindow::showProblem(int page, QWidget* field, const QString& text)
{
    showPage(page);
    if (!field->isAncestorOf(
            QApplication::focusWidget())) // a text that is left there gives way to the choice
        field->setFocus(Qt::OtherFocusReason);
    tellNotSaved(text, BoxIcon::Exclamation);
}

void RecordWindow::tellNotSaved(const QString& text, BoxIcon icon)
{
    desktop().messageBoxes->tell(
        this, text + QStringLiteral("\n\n") + tr("What you typed is still in this window."), icon,
        tr("Save"));
}

bool RecordWindow::mayBeSaved()
{
    for (std::size_t i = 0; i < m_pages.size(); ++i) {
        if (const auto problem = m_pages[i]->firstProblem()) {
            showProblem(static_cast<int>(i), problem->field, problem->text);
            return false;
        }
    }
    return true;
}

bool RecordWindow::hasRequiredFields()
{
    const TableSchema& table = m_record->schema().Main;
    for (const ColumnSchema& column : table.Columns) {
        if (!IsNull(m_record->mainRow()->cell(column.Name).value()))
            continue;
        const bool isRule =
            currentHost().session().IsFieldRequired(table.Module, table.Table, column.Name, {});
        for (std::size_t i = 0; i < m_pages.size(); ++i) {
            const FieldBinding* binding = m_pages[i]->bindingOf(column.Name);
            if (binding && (isRule || binding->isRequired())) {
                showProblem(static_cast<int>(i), binding->widget(),
                            tr("\"%1\" must be filled in.").arg(binding->plainLabel()));
                return false;
            }
        }
    }
    return true;
}

bool RecordWindow::save()
{
    if (!mayBeSaved())
        return false;
    try {
        for (RecordPage* page : m_pages)
            page->store(*m_record);
        if (!hasRequiredFields())
            return false; // before rows go: a row that comes again is another one
        for (RecordPage* page : m_pages)
            page->storeRows(*m_record);
        m_workspace.store().save(*m_record);
    } catch (const SectionRefusal& refusal) {
        refreshState();
        const auto page = std::find_if(m_pages.begin(), m_pages.end(), [&](const RecordPage* candidate) {
            return candidate->isAncestorOf(refusal.field);
        });
        showProblem(static_cast<int>(page - m_pages.begin()), refusal.field, refusal.Description);
        return false;
    } catch (const Error& error) {
        refreshState();
        tellNotSaved(error.Description, BoxIcon::Critical);
        return false;
    }
    for (RecordPage* page : m_pages)
        page->showSaved(*m_record);
    refreshState();
    tellStatus(tr("Saved at %1").arg(desktop().clock->now().time().toString(QStringLiteral("HH:mm:ss"))));
    Q_EMIT saved();
    return true;
}

void RecordWindow::closeEvent(QCloseEvent* event)
{
    bool close = true;
    guard("RecordWindow_Close", [&] {
        close = false; // unless all goes well
        if (!isDirty()) {
            close = true;
            return;
        }
        const BoxAnswer answer =
            desktop().messageBoxes->show(this, tr("The incident has changes that are not saved. Save them?"),
                                         BoxIcon::Question, m_title->text(), BoxButtons::SaveDiscardCancel);
        close = answer == BoxAnswer::Discard || (answer == BoxAnswer::Save && save());
    });
    event->setAccepted(close);
}

} // namespace tavrin::workbench
