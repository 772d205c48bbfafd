#include "ListViewModel.h"

#include "base/Error.h"

#include <algorithm>

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
    const auto found = std::find_if(m_columns.begin(), m_columns.end(),
                                    [&](const Column& candidate) { return candidate.key == key; });
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

bool ListView::Model::standsBefore(const Item& a, const Item& b) const
{
    if (m_sortColumn >= 0) {
        const int order =
            a.texts.value(m_sortColumn).compare(b.texts.value(m_sortColumn), Qt::CaseInsensitive);
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
    const Item& item = m_byKey.emplace(key, Item{key, {text}, m_nextNumber++}).first->second;
    const int row = rowOf(item);
    beginInsertRows({}, row, row);
    m_rows.insert(m_rows.begin() + row, &item);
    endInsertRows();
}

void ListView::Model::remove(const QString& key)
{
    const int row = rowOf(key);
    beginRemoveRows({}, row, row);
    m_rows.erase(m_rows.begin() + row);
    m_byKey.erase(key);
    endRemoveRows();
}

void ListView::Model::setText(const QString& key, int column, const QString& text)
{
    const int row = rowOf(item(key));
    Item& changed = m_byKey.at(key);
    while (changed.texts.size() <= column)
        changed.texts << QString();
    const QString before = std::exchange(changed.texts[column], text);
    if (column == m_sortColumn && before != text)
        sort();
    else if (const int shown = shownIndex(column); shown >= 0)
        Q_EMIT dataChanged(index(row, shown), index(row, shown));
}

void ListView::Model::sortBy(int column)
{
    m_sortColumn = column;
    sort();
}

void ListView::Model::sort()
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

QVariant ListView::Model::data(const QModelIndex& index, int role) const
{
    if (role != Qt::DisplayRole || !checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    return m_rows[static_cast<std::size_t>(index.row())]->texts.value(
        m_shown[static_cast<std::size_t>(index.column())]);
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
