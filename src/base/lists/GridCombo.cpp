#include "base/lists/GridCombo.h"

#include "base/failure/Error.h"
#include "base/values/Variant.h"

#include <QHash>

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

namespace tavrin {

namespace {

constexpr double LargestPlain = 1e15; // up to here equal numbers have equal texts

bool isPlain(double number)
{
    return number == std::trunc(number) && std::fabs(number) < LargestPlain &&
           !(number == 0 && std::signbit(number));
}

/// A value by which rows can be looked up: two plain values are the same to `Find` just when their keys are
/// equal. Nothing for a value that only `Find` itself can compare.
std::optional<QVariant> plainKey(const QVariant& value)
{
    if (IsNull(value))
        return std::nullopt;
    switch (value.typeId()) {
    case QMetaType::Int:
    case QMetaType::Short:
        return value.toInt();
    case QMetaType::Double: {
        const double number = value.toDouble();
        return isPlain(number) ? std::optional<QVariant>(static_cast<qint64>(number)) : std::nullopt;
    }
    case QMetaType::QString: {
        // A text that says a number in another way, such as "07", is the same as the number to `Find`.
        const QString text = value.toString();
        bool isNumber = false;
        const double number = text.toDouble(&isNumber);
        const bool isOwnKey = !isNumber || (isPlain(number) && QString::number(number, 'f', 0) == text);
        return isOwnKey ? std::optional(value) : std::nullopt;
    }
    default:
        return std::nullopt;
    }
}

/// How often each key is wanted. A text and a number with this text are the same key.
class WantedKeys
{
public:
    void add(const QVariant& key) { ++(numberOf(key) ? m_numbers[*numberOf(key)] : m_texts[key.toString()]); }

    /// True when the key is still wanted, which it then is once less.
    bool take(const QVariant& key)
    {
        if (const auto number = numberOf(key))
            return take(m_numbers, *number);
        return take(m_texts, key.toString());
    }

private:
    static std::optional<qint64> numberOf(const QVariant& key)
    {
        if (key.typeId() != QMetaType::QString)
            return key.toLongLong();
        const QString text = key.toString();
        bool ok = false;
        const qint64 number = text.toLongLong(&ok);
        return ok && QString::number(number) == text ? std::optional(number) : std::nullopt;
    }
    template <typename Key>
    static bool take(QHash<Key, int>& wanted, const Key& key)
    {
        const auto found = wanted.find(key);
        if (found == wanted.end() || found.value() == 0)
            return false;
        --found.value();
        return true;
    }

    QHash<qint64, int> m_numbers;
    QHash<QString, int> m_texts;
};

} // namespace

struct GridArray::Private
{
    std::vector<Row> rows;
};

GridArray::GridArray()
    : d(std::make_unique<Private>())
{
}

GridArray::GridArray(const GridArray& other)
    : d(std::make_unique<Private>(*other.d))
{
}

GridArray& GridArray::operator=(const GridArray& other)
{
    *d = Private(*other.d);
    return *this;
}

GridArray::GridArray(GridArray&& other) noexcept
    : d(std::make_unique<Private>(std::move(*other.d)))
{
}

GridArray& GridArray::operator=(GridArray&& other) noexcept
{
    *d = std::move(*other.d);
    return *this;
}

GridArray::~GridArray() = default;

int GridArray::UpperBound() const
{
    return static_cast<int>(d->rows.size());
}

void GridArray::AppendRow(Row row)
{
    d->rows.push_back(std::move(row));
}

const GridArray::Row& GridArray::rowAt(int row) const
{
    if (row < 1 || row > UpperBound())
        throw Error(QStringLiteral("The grid has no row %1").arg(row));
    return d->rows[static_cast<std::size_t>(row - 1)];
}

QVariant GridArray::Value(int row, int column) const
{
    if (column < 0 || column >= ColumnCount)
        throw Error(QStringLiteral("The grid has no column %1").arg(column));
    return rowAt(row).at(static_cast<std::size_t>(column));
}

void GridArray::DeleteRow(int row)
{
    rowAt(row);
    d->rows.erase(d->rows.begin() + (row - 1));
}

bool GridArray::IsSame(const QVariant& a, const QVariant& b)
{
    const auto hasText = [](const QVariant& value) { return !IsNull(value) && !IsEmpty(value); };
    return SameValue(a, b) || (hasText(a) && hasText(b) && ToText(a) == ToText(b));
}

int GridArray::Find(int fromRow, int column, const QVariant& value) const
{
    for (int row = std::max(fromRow, 1); row <= UpperBound(); ++row) {
        if (IsSame(Value(row, column), value))
            return row;
    }
    return 0;
}

void GridArray::DeleteFirstOfEach(int fromRow, int column, const QVariantList& values)
{
    const auto first = d->rows.begin() + std::clamp(fromRow - 1, 0, UpperBound());
    const auto cellOf = [column](const Row& row) -> const QVariant& {
        return row.at(static_cast<std::size_t>(column));
    };
    const auto hasKey = [](const QVariant& value) { return IsNull(value) || plainKey(value).has_value(); };
    const bool arePlain =
        column >= 0 && column < ColumnCount && std::all_of(values.begin(), values.end(), hasKey) &&
        std::none_of(values.begin(), values.end(), IsNull) &&
        std::all_of(first, d->rows.end(), [&](const Row& row) { return hasKey(cellOf(row)); });
    if (!arePlain) {
        for (const QVariant& value : values) {
            if (const int row = Find(fromRow, column, value); row != 0)
                DeleteRow(row);
        }
        return;
    }
    WantedKeys wanted;
    for (const QVariant& value : values)
        wanted.add(*plainKey(value));
    const auto isTaken = [&](const Row& row) {
        const auto key = plainKey(cellOf(row));
        return key && wanted.take(*key);
    };
    d->rows.erase(std::remove_if(first, d->rows.end(), isTaken), d->rows.end());
}

} // namespace tavrin
