#include "workbench/pages/SuspectsPage.h"

#include "base/failure/Guard.h"
#include "base/values/Variant.h"
#include "workbench/application/Theme.h"
#include "workbench/pages/FormLoading.h"
#include "workbench/pages/SuspectDetail.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QShowEvent>
#include <QSignalBlocker>

namespace tavrin::workbench {

namespace {

constexpr int ListWidth = 208;

const QString SuspectName = QStringLiteral("SuspectName");

RecordCollection& suspectsOf(const Record& record)
{
    return *record.collection(QStringLiteral("Suspects"));
}

} // namespace

SuspectsPage::SuspectsPage(const QString& formsFolder, QStringList& problems)
    : RecordPage(tr("Suspects"))
    , m_list(new QListWidget(this))
    , m_add(new QPushButton(tr("&Add"), this))
    , m_remove(new QPushButton(tr("Re&move"), this))
    , m_none(new QLabel(tr("No suspect is recorded."), this))
    , m_detail(
          new SuspectDetail(loadForm(QStringLiteral("suspects.json"), formsFolder, problems), problems, this))
{
    build();
    m_edited = m_detail->Edited.subscribe([this] { nameEdited(); });
    connectGuarded(m_list, &QListWidget::currentRowChanged, this, "SuspectsPage_GoTo",
                   [this](int row) { goTo(row); });
    connectGuarded(m_add, &QPushButton::clicked, this, "SuspectsPage_Add", [this] { addSuspect(); });
    connectGuarded(m_remove, &QPushButton::clicked, this, "SuspectsPage_Remove", [this] { removeSuspect(); });
}

void SuspectsPage::build()
{
    auto* heading = new QLabel(tr("S&uspects"), this);
    QFont font = heading->font();
    font.setBold(true);
    heading->setFont(font);
    heading->setBuddy(m_list);
    m_list->setObjectName(QStringLiteral("suspects"));
    m_list->setAccessibleName(title());
    m_list->setFixedWidth(ListWidth);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_add->setObjectName(QStringLiteral("addSuspect"));
    m_remove->setObjectName(QStringLiteral("removeSuspect"));
    m_none->setObjectName(QStringLiteral("noSuspect"));
    QPalette quiet = m_none->palette();
    quiet.setColor(QPalette::WindowText, quietText(quiet));
    m_none->setPalette(quiet);
    m_none->setAlignment(Qt::AlignCenter);

    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(8);
    buttons->addWidget(m_add);
    buttons->addWidget(m_remove);
    auto* left = new QVBoxLayout;
    left->setSpacing(8);
    left->addWidget(heading);
    left->addWidget(m_list, 1);
    left->addLayout(buttons);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(24, 16, 24, 16);
    layout->setSpacing(20);
    layout->addLayout(left);
    layout->addWidget(m_none, 1);
    layout->addWidget(m_detail, 1);
}

// The record

void SuspectsPage::load(Record& record)
{
    m_record = record.shared_from_this();
    m_arePeopleChanged = false;
    const QSignalBlocker quiet(m_list);
    m_list->clear();
    for (const RecordRowPtr& row : suspectsOf(record).rows()) {
        m_list->addItem(QString());
        showName(m_list->count() - 1, ToText(fieldOf(*row, SuspectName)->Value()));
    }
    m_list->setCurrentRow(m_list->count() > 0 ? 0 : -1);
    loadCurrent();
}

void SuspectsPage::showEvent(QShowEvent* event)
{
    RecordPage::showEvent(event);
    if (!std::exchange(m_arePeopleChanged, false))
        return;
    guard("SuspectsPage_Show", [this] {
        storeCurrent();
        loadCurrent();
    });
}

void SuspectsPage::setPosition(Record& record, int row) const
{
    suspectsOf(record).SetPosition(static_cast<qint16>(row + 1));
}

void SuspectsPage::loadCurrent()
{
    m_current = m_list->currentRow();
    const bool isOne = m_current >= 0;
    if (isOne) {
        setPosition(*m_record, m_current);
        m_detail->load(*m_record);
    }
    m_detail->setVisible(isOne);
    m_none->setVisible(!isOne);
    m_remove->setEnabled(isOne);
}

void SuspectsPage::storeCurrent()
{
    if (m_current < 0)
        return;
    setPosition(*m_record, m_current);
    m_detail->store(*m_record);
}

bool SuspectsPage::differs(Record& record) const
{
    if (m_current < 0)
        return false;
    setPosition(record, m_current); // somebody may have gone through the suspects
    return m_detail->differs(record);
}

void SuspectsPage::store(Record&)
{
    storeCurrent();
}

void SuspectsPage::storeRows(Record& record)
{
    if (m_current < 0)
        return;
    const int before = m_current;
    const QSignalBlocker quiet(m_list);
    for (int row = 0; row < m_list->count(); ++row) {
        m_list->setCurrentRow(row);
        if (row != m_current)
            loadCurrent();
        if (m_detail->name().trimmed().isEmpty())
            throw SectionRefusal(Error(tr("\"Name\" must be filled in; \"Unknown\" will do.")),
                                 m_detail->nameField());
        m_detail->check(record);
    }
    m_list->setCurrentRow(before);
    if (before != m_current)
        loadCurrent();
}

// The list

void SuspectsPage::goTo(int row)
{
    if (row == m_current)
        return;
    storeCurrent();
    loadCurrent();
    Edited.raise();
}

void SuspectsPage::addSuspect()
{
    storeCurrent();
    suspectsOf(*m_record).AddNew();
    const QSignalBlocker quiet(m_list);
    m_list->addItem(QString());
    showName(m_list->count() - 1, QString());
    m_list->setCurrentRow(m_list->count() - 1);
    loadCurrent();
    m_detail->nameField()->setFocus(Qt::OtherFocusReason);
    Edited.raise();
}

void SuspectsPage::removeSuspect()
{
    if (m_current < 0)
        return;
    setPosition(*m_record, m_current);
    suspectsOf(*m_record).RemoveCurrent(false); // and the links with it
    const QSignalBlocker quiet(m_list);
    delete m_list->takeItem(m_current);
    loadCurrent();
    (m_current < 0 ? static_cast<QWidget*>(m_add) : m_list)->setFocus(Qt::OtherFocusReason);
    Edited.raise();
}

void SuspectsPage::nameEdited()
{
    if (m_current >= 0)
        showName(m_current, m_detail->name());
    Edited.raise();
}

void SuspectsPage::showName(int row, const QString& name) const
{
    QListWidgetItem* item = m_list->item(row);
    item->setText(name.trimmed().isEmpty() ? tr("(no name)") : name);
    item->setToolTip(name);
    item->setSizeHint(QSize(0, lineHeight(m_list->fontMetrics())));
}

} // namespace tavrin::workbench
