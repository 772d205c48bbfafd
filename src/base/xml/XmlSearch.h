#pragma once

// Private to XmlDocument.cpp, XmlTree.cpp and the tests of searches.

#include "base/search/SearchColumn.h"
#include "base/search/SearchPlan.h"

#include <pugixml.hpp>

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tavrin::xml {

using Nodes = std::vector<pugi::xml_node_struct*>;

/// Runs search plans over one tree: for each list of records that is searched, it keeps the texts that the
/// expressions name in columns, which are built at the first use. Whoever changes the tree drops them.
class XmlSearch
{
public:
    /// What the plan selects from `context`, in document order. Nothing where the records lie below several
    /// parents, or the document has several roots, whose attributes a condition may name.
    std::optional<Nodes> select(const SearchPlan& plan, pugi::xml_node context);

    /// For each node the text of its first child element of this name, "" for none; the texts last until the
    /// next call. Nothing unless all are records of one list in its order.
    std::optional<std::vector<std::string_view>> texts(std::span<pugi::xml_node_struct* const> nodes,
                                                       const std::string& child);

    /// The texts or the elements of the tree change.
    void drop() { m_lists.clear(); }
    /// Of all columns, in bytes.
    std::size_t memory() const;

private:
    struct Column
    {
        RecordText text;
        SearchColumn column;
        unsigned lastUse;
    };
    /// The children of one name below one element.
    struct Records
    {
        pugi::xml_node_struct* parent = nullptr;
        std::string name;
        Nodes rows;
        std::vector<Column> columns;
        std::size_t rowsMemory = 0; // an estimate of what the records take in the tree, rather low
        // The last search: a longer text starts where it ended.
        SearchCondition condition;
        RowSet found;
        bool hasFound = false;

        const SearchColumn& column(const RecordText& wanted) const;
    };

    Records& recordsOf(pugi::xml_node parent, const std::string& name);
    void provideColumns(Records& records, const SearchCondition& condition);
    void dropUnused(Records& records) const;

    std::vector<Records> m_lists; // the last used one at the end
    unsigned m_use = 0;
};

} // namespace tavrin::xml
