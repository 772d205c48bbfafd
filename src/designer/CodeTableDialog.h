#pragma once

#include "designer/CodeTables.h"

#include <QDialog>

#include <optional>

class QLineEdit;
class QListWidget;
class QPushButton;

namespace tavrin::designer {

/// Lets a form's developer choose a code table by its name.
class CodeTableDialog : public QDialog
{
    Q_OBJECT

public:
    CodeTableDialog(const QList<CodeTable>& tables, int current, QWidget* parent);

    /// The chosen table's number, once the dialog was accepted; nothing when there is none.
    std::optional<int> chosenTable() const;

private:
    void showMatches();
    void showState();

    QLineEdit* m_search;
    QListWidget* m_list;
    QPushButton* m_ok;
};

} // namespace tavrin::designer
