#pragma once

#include "designer/CodeTables.h"

#include <QDialog>

#include <optional>

class QLineEdit;
class QPushButton;
class QTreeWidget;

namespace tavrin::designer {

/// Lets a form's developer choose a code table by its name or number. What is typed goes to the search,
/// whichever part has the focus, and the arrows go through what it finds.
class CodeTableDialog : public QDialog
{
    Q_OBJECT

public:
    CodeTableDialog(const QList<CodeTable>& tables, int current, QWidget* parent);

    /// The chosen table's number, once the dialog was accepted; nothing when there is none.
    std::optional<int> chosenTable() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void addTables(const QList<CodeTable>& tables, int current);
    void showMatches();
    void showState();

    QLineEdit* m_search;
    QTreeWidget* m_list;
    QPushButton* m_ok;
};

} // namespace tavrin::designer
