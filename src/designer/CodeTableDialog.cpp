#include "designer/CodeTableDialog.h"

#include <QDialogButtonBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace tavrin::designer {

CodeTableDialog::CodeTableDialog(const QList<CodeTable>& tables, int current, QWidget* parent)
    : QDialog(parent)
    , m_search(new QLineEdit(this))
    , m_list(new QListWidget(this))
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
    for (const CodeTable& table : tables) {
        auto* item = new QListWidgetItem(QStringLiteral("%1   %2").arg(table.number).arg(table.name), m_list);
        item->setData(Qt::UserRole, table.number);
        if (table.number == current)
            m_list->setCurrentItem(item);
    }
    connect(m_search, &QLineEdit::textChanged, this, &CodeTableDialog::showMatches);
    connect(m_list, &QListWidget::itemSelectionChanged, this, &CodeTableDialog::showState);
    connect(m_list, &QListWidget::itemActivated, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    resize(420, 480);
    showState();
}

std::optional<int> CodeTableDialog::chosenTable() const
{
    const QList<QListWidgetItem*> chosen = m_list->selectedItems();
    return chosen.isEmpty() ? std::nullopt : std::optional(chosen.first()->data(Qt::UserRole).toInt());
}

void CodeTableDialog::showMatches()
{
    QListWidgetItem* first = nullptr;
    for (int row = 0; row < m_list->count(); ++row) {
        QListWidgetItem* item = m_list->item(row);
        item->setHidden(!item->text().contains(m_search->text().trimmed(), Qt::CaseInsensitive));
        if (!item->isHidden() && !first)
            first = item;
    }
    // What cannot be seen must not be what OK takes.
    m_list->setCurrentItem(first);
}

void CodeTableDialog::showState()
{
    m_ok->setEnabled(chosenTable().has_value());
}

} // namespace tavrin::designer
