#pragma once

#include "base/search/SearchColumn.h"
#include "base/search/SearchPlan.h"

#include <functional>
#include <vector>

namespace tavrin {

/// Tests the rows of a list by a condition whose texts stand in columns.
class SearchEvaluation
{
public:
    /// The column of a text that the condition reads.
    using ColumnOf = std::function<const SearchColumn&(const RecordText& text)>;

    explicit SearchEvaluation(ColumnOf columnOf)
        : m_columnOf(std::move(columnOf))
    {
    }

    /// Those of the rows that meet the condition, which names no attributes of the root.
    RowSet run(const SearchCondition& condition, const RowSet& among) const;

    /// Each text that the condition reads, as often as it does.
    static std::vector<RecordText> textsOf(const SearchCondition& condition);

private:
    RowSet allOf(const std::vector<SearchCondition>& members, const RowSet& among) const;
    RowSet anyOf(const std::vector<SearchCondition>& members, const RowSet& among) const;

    ColumnOf m_columnOf;
};

} // namespace tavrin
