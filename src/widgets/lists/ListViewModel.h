#pragma once

#include "widgets/lists/ListView.h"

#include <QAbstractTableModel>
#include <QIcon>

#include <unordered_map>
#include <vector>

namespace tavrin {

/// The rows of a `ListView` in the order in which they show. Columns that hold texts only are no columns of
/// the model.
class ListView::Model final : public QAbstractTableModel
{
public:
    struct Column
    {
        QString key;
        QString caption;
        Twips width;
        bool shown;
    };

    void clearColumns();
    void addColumn(Column column);
    /// Raises an `Error` for a key that no column has.
    int columnOf(const QString& key) const;
    Column& column(int index) { return m_columns[static_cast<std::size_t>(index)]; }
    /// Of the columns, whether they show or not.
    int columnTotal() const { return static_cast<int>(m_columns.size()); }
    /// The model's column of that column; -1 when it is not shown.
    int shownIndex(int column) const;

    void clearRows();
    void add(const QString& key, const QString& text);
    /// Takes neighbours out at one time.
    void remove(const QStringList& keys);
    bool contains(const QString& key) const { return m_byKey.contains(key); }
    int rowOf(const QString& key) const { return rowOf(item(key)); }
    QString keyAt(int row) const { return m_rows[static_cast<std::size_t>(row)]->key; }
    QString text(const QString& key, int column) const { return textOf(item(key), column); }
    void setText(const QString& key, int column, const QString& text);
    void setIcon(const QString& key, int column, const QIcon& icon, const QString& name);
    void setToolTip(const QString& key, int column, const QString& text);
    QString tag(const QString& key) const { return item(key).tag; }
    void setTag(const QString& key, const QString& tag) { item(key).tag = tag; }

    /// -1 for the order in which the rows came.
    void sortBy(int column);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    struct Cell
    {
        QString text;
        QIcon icon;
        QString iconName;
        QString toolTip;
    };
    struct Item
    {
        QString key;
        quint64 number; // in the order in which they came
        QString tag;
        std::vector<Cell> cells; // by column, up to the last one that holds something
    };
    using Rows = std::vector<const Item*>;

    const Item& item(const QString& key) const;
    Item& item(const QString& key);
    static Cell& cellOf(Item& item, int column);
    static const Cell& cellOf(const Item& item, int column);
    static const QString& textOf(const Item& item, int column) { return cellOf(item, column).text; }
    const Cell& cellAt(const QModelIndex& index) const;
    QString spokenText(const QModelIndex& index) const;
    QString spokenNeighbours(const QModelIndex& index) const;
    void noteChanged(const Item& item, int column);
    int rowOf(const Item& item) const;
    bool standsBefore(const Item& a, const Item& b) const;
    Rows::const_iterator placeOf(const Item& item) const;
    void sortRows();

    std::vector<Column> m_columns;
    std::vector<int> m_shown; // columns of the model
    Rows m_rows;
    std::unordered_map<QString, Item> m_byKey; // owns the items
    quint64 m_nextNumber = 0;
    int m_sortColumn = -1;
};

} // namespace tavrin
