#include "widgets/lists/ListViewModel.h"

#include "base/failure/Error.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace tavrin {

// Columns

void ListView::Model::clearColumns()
{
    clearRows();
    beginResetModel();
    m_columns.clear();
    m_shown.clear();
    m_sortColumn = -1;
    endResetModel();
}

void ListView::Model::addColumn(Column column)
{
    const int index = static_cast<int>(m_columns.size());
    const int shown = static_cast<int>(m_shown.size());
    if (!column.shown) {
        m_columns.push_back(std::move(column));
        return;
    }
    beginInsertColumns({}, shown, shown);
    m_columns.push_back(std::move(column));
    m_shown.push_back(index);
    endInsertColumns();
}

int ListView::Model::columnOf(const QString& key) const
{
    const auto found = std::find_if(m_columns.begin(), m_columns.end(), [&](const Column& candidate) {
        return candidate.key.compare(key, Qt::CaseInsensitive) == 0;
    });
    if (found == m_columns.end())
        throw Error(QStringLiteral("The list has no column with the key %1").arg(key),
                    ListView::MissingKeyNumber);
    return static_cast<int>(found - m_columns.begin());
}

int ListView::Model::shownIndex(int column) const
{
    const auto found = std::find(m_shown.begin(), m_shown.end(), column);
    return found == m_shown.end() ? -1 : static_cast<int>(found - m_shown.begin());
}

// Rows

const ListView::Model::Item& ListView::Model::item(const QString& key) const
{
    const auto found = m_byKey.find(key);
    if (found == m_byKey.end())
        throw Error(QStringLiteral("The list has no row with the key %1").arg(key),
                    ListView::MissingKeyNumber);
    return found->second;
}

ListView::Model::Item& ListView::Model::item(const QString& key)
{
    return const_cast<Item&>(std::as_const(*this).item(key));
}

const ListView::Model::Cell& ListView::Model::cellOf(const Item& item, int column)
{
    static const Cell none;
    const auto index = static_cast<std::size_t>(column);
    return index < item.cells.size() ? item.cells[index] : none;
}

ListView::Model::Cell& ListView::Model::cellOf(Item& item, int column)
{
    const auto index = static_cast<std::size_t>(column);
    if (index >= item.cells.size())
        item.cells.resize(index + 1);
    return item.cells[index];
}

bool ListView::Model::standsBefore(const Item& a, const Item& b) const
{
    if (m_sortColumn >= 0) {
        const int order = textOf(a, m_sortColumn).compare(textOf(b, m_sortColumn), Qt::CaseInsensitive);
        if (order != 0)
            return order < 0;
    }
    return a.number < b.number;
}

ListView::Model::Rows::const_iterator ListView::Model::placeOf(const Item& item) const
{
    return std::lower_bound(m_rows.begin(), m_rows.end(), item, [this](const Item* row, const Item& wanted) {
        return standsBefore(*row, wanted);
    });
}

int ListView::Model::rowOf(const Item& item) const
{
    return static_cast<int>(placeOf(item) - m_rows.begin());
}

void ListView::Model::clearRows()
{
    if (m_rows.empty())
        return;
    // Not a reset, at which the header would forget its widths.
    beginRemoveRows({}, 0, rowCount() - 1);
    m_rows.clear();
    m_byKey.clear();
    endRemoveRows();
}

void ListView::Model::add(const QString& key, const QString& text)
{
    if (contains(key))
        throw Error(QStringLiteral("The list has a row with the key %1 already").arg(key),
                    ListView::DuplicateKeyNumber);
    const Item& item =
        m_byKey.emplace(key, Item{key, m_nextNumber++, {}, {Cell{text, {}, {}, {}}}}).first->second;
    const int row = rowOf(item);
    beginInsertRows({}, row, row);
    m_rows.insert(m_rows.begin() + row, &item);
    endInsertRows();
}

void ListView::Model::remove(const QStringList& keys)
{
    std::vector<int> rows;
    rows.reserve(static_cast<std::size_t>(keys.size()));
    for (const QString& key : keys)
        rows.push_back(rowOf(key));
    std::sort(rows.begin(), rows.end(), std::greater<>());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    for (auto end = rows.begin(); end != rows.end();) {
        auto first = end;
        while (std::next(first) != rows.end() && *std::next(first) == *first - 1)
            ++first;
        beginRemoveRows({}, *first, *end);
        for (int row = *first; row <= *end; ++row)
            m_byKey.erase(keyAt(row));
        m_rows.erase(m_rows.begin() + *first, m_rows.begin() + *end + 1);
        endRemoveRows();
        end = std::next(first);
    }
}

void ListView::Model::noteChanged(const Item& item, int column)
{
    if (const int shown = shownIndex(column); shown >= 0) {
        const QModelIndex changed = index(rowOf(item), shown);
        Q_EMIT dataChanged(changed, changed);
    }
}

void ListView::Model::setText(const QString& key, int column, const QString& text)
{
    Item& changed = item(key);
    if (textOf(std::as_const(changed), column) == text)
        return;
    cellOf(changed, column).text = text;
    if (column == m_sortColumn)
        sortRows();
    else
        noteChanged(changed, column);
}

void ListView::Model::setIcon(const QString& key, int column, const QIcon& icon, const QString& name)
{
    Item& changed = item(key);
    Cell& cell = cellOf(changed, column);
    if (cell.icon.cacheKey() == icon.cacheKey() && cell.iconName == name)
        return;
    cell.icon = icon;
    cell.iconName = name;
    noteChanged(changed, column);
}

void ListView::Model::setToolTip(const QString& key, int column, const QString& text)
{
    cellOf(item(key), column).toolTip = text;
}

void ListView::Model::sortBy(int column)
{
    m_sortColumn = column;
    sortRows();
}

void ListView::Model::sortRows()
{
    Q_EMIT layoutAboutToBeChanged();
    const QModelIndexList before = persistentIndexList();
    std::vector<const Item*> items;
    items.reserve(static_cast<std::size_t>(before.size()));
    for (const QModelIndex& index : before)
        items.push_back(m_rows[static_cast<std::size_t>(index.row())]);
    std::sort(m_rows.begin(), m_rows.end(),
              [this](const Item* a, const Item* b) { return standsBefore(*a, *b); });
    QModelIndexList after;
    for (qsizetype i = 0; i < before.size(); ++i)
        after << index(rowOf(*items[static_cast<std::size_t>(i)]), before.at(i).column());
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged();
}

// What the view asks for

int ListView::Model::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int ListView::Model::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
}

const ListView::Model::Cell& ListView::Model::cellAt(const QModelIndex& index) const
{
    return cellOf(*m_rows[static_cast<std::size_t>(index.row())],
                  m_shown[static_cast<std::size_t>(index.column())]);
}

QString ListView::Model::spokenText(const QModelIndex& index) const
{
    const Cell& cell = cellAt(index);
    return cell.iconName.isEmpty() ? cell.text : cell.text + QStringLiteral(", ") + cell.iconName;
}

/// The rest of the line: whoever walks through the lines hears each of them whole.
QString ListView::Model::spokenNeighbours(const QModelIndex& index) const
{
    QStringList texts;
    for (int column = 0; column < columnCount(); ++column) {
        const QString text = spokenText(index.siblingAtColumn(column));
        if (column != index.column() && !text.isEmpty())
            texts << m_columns[static_cast<std::size_t>(m_shown[static_cast<std::size_t>(column)])].caption +
                         QStringLiteral(": ") + text;
    }
    return texts.join(QStringLiteral(", "));
}

QVariant ListView::Model::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return cellAt(index).text;
    case Qt::DecorationRole:
        return cellAt(index).icon.isNull() ? QVariant() : QVariant(cellAt(index).icon);
    case Qt::ToolTipRole:
        return cellAt(index).toolTip;
    case Qt::AccessibleTextRole:
        return spokenText(index);
    case Qt::AccessibleDescriptionRole:
        return spokenNeighbours(index);
    default:
        return {};
    }
}

QVariant ListView::Model::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCount())
        return {};
    if (role == Qt::DisplayRole)
        return m_columns[static_cast<std::size_t>(m_shown[static_cast<std::size_t>(section)])].caption;
    if (role == Qt::TextAlignmentRole)
        return QVariant(Qt::AlignLeft | Qt::AlignVCenter);
    return {};
}

} // namespace tavrin
