#include "designer/CodeTableDialog.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace tavrin::designer {

namespace {

enum Column
{
    NumberColumn,
    NameColumn
};

/// How well a table answers what was searched, 0 being best; nothing when it does not.
std::optional<int> rankOf(const QTreeWidgetItem& item, const QString& text)
{
    const QString number = item.text(NumberColumn);
    const QString name = item.text(NameColumn);
    if (number == text)
        return 0;
    if (number.startsWith(text) || name.startsWith(text, Qt::CaseInsensitive))
        return 1;
    if (number.contains(text) || name.contains(text, Qt::CaseInsensitive))
        return 2;
    return {};
}

bool movesInList(int key)
{
    return key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp || key == Qt::Key_PageDown;
}

bool isTyped(const QKeyEvent& key)
{
    return (!key.text().isEmpty() && key.text().at(0).isPrint() &&
            !(key.modifiers() & (Qt::ControlModifier | Qt::AltModifier))) ||
           key.key() == Qt::Key_Backspace;
}

} // namespace

CodeTableDialog::CodeTableDialog(const QList<CodeTable>& tables, int current, QWidget* parent)
    : QDialog(parent)
    , m_search(new QLineEdit(this))
    , m_list(new QTreeWidget(this))
{
    setWindowTitle(QStringLiteral("Choose Code Table"));
    setObjectName(QStringLiteral("CodeTableDialog"));
    m_search->setPlaceholderText(QStringLiteral("Part of the name or number"));
    m_search->setClearButtonEnabled(true);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    m_ok = buttons->button(QDialogButtonBox::Ok);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_search);
    layout->addWidget(m_list);
    layout->addWidget(buttons);
    addTables(tables, current);
    m_search->installEventFilter(this);
    m_list->installEventFilter(this);
    connect(m_search, &QLineEdit::textChanged, this, &CodeTableDialog::showMatches);
    connect(m_list, &QTreeWidget::itemSelectionChanged, this, &CodeTableDialog::showState);
    // Enter is the button's wherever the focus is; an activated row would accept a second time.
    connect(m_list, &QTreeWidget::itemDoubleClicked, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    resize(420, 480);
    showState();
}

void CodeTableDialog::addTables(const QList<CodeTable>& tables, int current)
{
    m_list->setHeaderLabels({QStringLiteral("Number"), QStringLiteral("Name")});
    m_list->headerItem()->setTextAlignment(NumberColumn, Qt::AlignRight | Qt::AlignVCenter);
    m_list->header()->setSectionResizeMode(NumberColumn, QHeaderView::ResizeToContents);
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setAllColumnsShowFocus(true);
    for (const CodeTable& table : tables) {
        auto* item = new QTreeWidgetItem(m_list, {QString::number(table.number), table.name});
        item->setTextAlignment(NumberColumn, Qt::AlignRight | Qt::AlignVCenter);
        item->setData(NumberColumn, Qt::UserRole, table.number);
        if (table.number == current)
            m_list->setCurrentItem(item);
    }
}

std::optional<int> CodeTableDialog::chosenTable() const
{
    const QList<QTreeWidgetItem*> chosen = m_list->selectedItems();
    return chosen.isEmpty() ? std::nullopt
                            : std::optional(chosen.first()->data(NumberColumn, Qt::UserRole).toInt());
}

bool CodeTableDialog::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress)
        return QDialog::eventFilter(watched, event);
    const auto& key = static_cast<const QKeyEvent&>(*event);
    if (watched == m_search && movesInList(key.key())) {
        QCoreApplication::sendEvent(m_list, event);
        return true;
    }
    if (watched == m_list && isTyped(key)) {
        m_search->setFocus();
        QCoreApplication::sendEvent(m_search, event);
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

void CodeTableDialog::showMatches()
{
    const QString text = m_search->text().trimmed();
    QTreeWidgetItem* best = nullptr;
    int bestRank = 0;
    for (int row = 0; row < m_list->topLevelItemCount(); ++row) {
        QTreeWidgetItem* item = m_list->topLevelItem(row);
        const std::optional<int> rank = rankOf(*item, text);
        item->setHidden(!rank);
        if (rank && (!best || *rank < bestRank)) {
            best = item;
            bestRank = *rank;
        }
    }
    // What cannot be seen must not be what OK takes.
    m_list->setCurrentItem(best);
    if (best)
        m_list->scrollToItem(best);
}

void CodeTableDialog::showState()
{
    m_ok->setEnabled(chosenTable().has_value());
}

} // namespace tavrin::designer
