#include "base/xml/XmlSearch.h"

#include "base/search/SearchEvaluation.h"
#include "base/xml/XmlTree.h"

#include <algorithm>
#include <cstring>
#include <numeric>
#include <utility>

namespace tavrin::xml {

namespace {

using Kind = SearchCondition::Kind;

/// Lists of one tree whose columns are kept.
constexpr std::size_t MostLists = 4;

bool isElement(pugi::xml_node node, const char* name)
{
    return node.type() == pugi::node_element && std::strcmp(node.name(), name) == 0;
}

// Where the records lie

/// Nothing for several; a null node for none.
std::optional<pugi::xml_node> onlyParent(const SearchPlan& plan, pugi::xml_node context)
{
    Nodes level{(plan.fromDocument ? context.root() : context).internal_object()};
    for (const std::string& step : plan.parents) {
        Nodes below;
        for (pugi::xml_node_struct* const parent : level) {
            for (const pugi::xml_node child : pugi::xml_node(parent).children()) {
                if (child.type() == pugi::node_element && (step == "*" || step == child.name()))
                    below.push_back(child.internal_object());
            }
        }
        level = std::move(below);
        if (level.size() > 1)
            return std::nullopt;
    }
    return pugi::xml_node(level.empty() ? nullptr : level.front());
}

bool hasSeveralRoots(pugi::xml_node document)
{
    const auto elements = document.children();
    return std::count_if(elements.begin(), elements.end(),
                         [](pugi::xml_node child) { return child.type() == pugi::node_element; }) > 1;
}

pugi::xml_node rootElement(pugi::xml_node document)
{
    return document.find_child([](pugi::xml_node child) { return child.type() == pugi::node_element; });
}

std::optional<std::string> rootAttribute(pugi::xml_node root, const std::string& rootName,
                                         const std::string& name)
{
    if (!rootName.empty() && rootName != root.name())
        return std::nullopt;
    const pugi::xml_attribute attribute = root.attribute(name.c_str());
    return attribute ? std::optional<std::string>(attribute.value()) : std::nullopt;
}

// Reading the records

/// The texts of the records that a plan lacks, filled in one walk over the records.
class ColumnFilling
{
public:
    explicit ColumnFilling(std::vector<RecordText> texts)
        : m_texts(std::move(texts))
        , m_columns(m_texts.size())
    {
        for (const RecordText& text : m_texts) {
            for (const RecordText::Part& part : text.parts) {
                if (!part.child.empty() && indexOf(part.child.c_str()) == m_names.size())
                    m_names.push_back(part.child);
            }
        }
        m_found.resize(m_names.size());
        m_lengths.resize(m_names.size());
    }

    void add(pugi::xml_node record)
    {
        std::fill(m_found.begin(), m_found.end(), pugi::xml_node());
        std::fill(m_lengths.begin(), m_lengths.end(), 0);
        m_memory += NodeMemory;
        for (const pugi::xml_node child : record.children())
            note(child);
        for (std::size_t i = 0; i < m_texts.size(); ++i)
            endRow(m_texts[i], m_columns[i]);
        m_memory = std::accumulate(m_lengths.begin(), m_lengths.end(), m_memory);
    }

    /// Of the records, in the tree: their nodes and those of their texts that were read, each once.
    std::size_t memory() const { return m_memory; }

    std::vector<SearchColumn> columns()
    {
        for (SearchColumn& column : m_columns)
            column.finish();
        return std::move(m_columns);
    }

private:
    static constexpr std::size_t NodeMemory = 64;

    std::size_t indexOf(const char* name) const
    {
        std::size_t i = 0;
        while (i < m_names.size() && (m_names[i].front() != *name || m_names[i] != name))
            ++i;
        return i;
    }

    void note(pugi::xml_node child)
    {
        m_memory += child.first_child() ? 2 * NodeMemory : NodeMemory;
        const std::size_t index = child.type() == pugi::node_element ? indexOf(child.name()) : m_names.size();
        if (index == m_names.size())
            return;
        if (!m_found[index])
            m_found[index] = child;
        else
            addFurther(child);
    }

    /// Only a child that is a text by itself is compared child by child.
    void addFurther(pugi::xml_node child)
    {
        for (std::size_t i = 0; i < m_texts.size(); ++i) {
            const std::vector<RecordText::Part>& parts = m_texts[i].parts;
            if (parts.size() == 1 && parts.front().child == child.name() && parts.front().fold.leavesAll())
                m_columns[i].addFurther(textOf(child));
        }
    }

    void endRow(const RecordText& text, SearchColumn& column)
    {
        bool hasText = false;
        for (const RecordText::Part& part : text.parts) {
            if (part.child.empty()) {
                column.append(part.literal, part.fold);
                continue;
            }
            const std::size_t index = indexOf(part.child.c_str());
            const std::string_view piece = textOf(m_found[index]);
            hasText = hasText || m_found[index];
            m_lengths[index] = piece.size();
            column.append(piece, part.fold);
        }
        column.endRow(hasText);
    }

    /// Until the next call.
    std::string_view textOf(pugi::xml_node node)
    {
        const pugi::xml_node only = node.first_child();
        if (only && !only.next_sibling() && !only.first_child() &&
            (only.type() == pugi::node_pcdata || only.type() == pugi::node_cdata))
            return only.value();
        m_text.clear();
        if (only)
            collectText(node, m_text);
        return m_text;
    }

    std::vector<RecordText> m_texts;
    std::vector<SearchColumn> m_columns;
    std::vector<std::string> m_names;
    std::vector<pugi::xml_node> m_found; // of the record at work, by name
    std::vector<std::size_t> m_lengths;  // of the texts of these that were read
    std::string m_text;
    std::size_t m_memory = 0;
};

} // namespace

XmlSearch::Records& XmlSearch::recordsOf(pugi::xml_node parent, const std::string& name)
{
    const auto known = std::find_if(m_lists.begin(), m_lists.end(), [&](const Records& records) {
        return records.parent == parent.internal_object() && records.name == name;
    });
    if (known != m_lists.end()) {
        std::rotate(known, known + 1, m_lists.end());
        return m_lists.back();
    }
    Records records;
    records.parent = parent.internal_object();
    records.name = name;
    for (const pugi::xml_node child : parent.children()) {
        if (isElement(child, name.c_str()))
            records.rows.push_back(child.internal_object());
    }
    records.rows.shrink_to_fit();
    if (m_lists.size() == MostLists)
        m_lists.erase(m_lists.begin());
    m_lists.push_back(std::move(records));
    return m_lists.back();
}

void XmlSearch::provideColumns(Records& records, const SearchCondition& condition)
{
    ++m_use;
    std::vector<RecordText> missing;
    for (const RecordText& text : SearchEvaluation::textsOf(condition)) {
        const auto known = std::find_if(records.columns.begin(), records.columns.end(),
                                        [&](const Column& column) { return column.text == text; });
        if (known != records.columns.end())
            known->lastUse = m_use;
        else if (std::find(missing.begin(), missing.end(), text) == missing.end())
            missing.push_back(text);
    }
    if (missing.empty())
        return;
    ColumnFilling filling(missing);
    for (pugi::xml_node_struct* const row : records.rows)
        filling.add(pugi::xml_node(row));
    records.rowsMemory = std::max(records.rowsMemory, filling.memory());
    std::vector<SearchColumn> columns = filling.columns();
    for (std::size_t i = 0; i < missing.size(); ++i)
        records.columns.push_back({std::move(missing[i]), std::move(columns[i]), m_use});
    dropUnused(records);
}

void XmlSearch::dropUnused(Records& records) const
{
    std::vector<Column>& columns = records.columns;
    const auto memory = [&] {
        std::size_t bytes = 0;
        for (const Column& column : columns)
            bytes += column.column.memory();
        return bytes;
    };
    while (memory() > records.rowsMemory / 2) {
        const auto oldest =
            std::min_element(columns.begin(), columns.end(),
                             [](const Column& a, const Column& b) { return a.lastUse < b.lastUse; });
        if (oldest->lastUse == m_use)
            return; // all that are left are needed now
        columns.erase(oldest);
    }
}

std::optional<Nodes> XmlSearch::select(const SearchPlan& plan, pugi::xml_node context)
{
    const pugi::xml_node root = context.root();
    const std::optional<pugi::xml_node> parent = onlyParent(plan, context);
    if (!parent || hasSeveralRoots(root))
        return std::nullopt;
    if (!*parent)
        return Nodes();
    const SearchCondition condition =
        withAttributes(plan.condition, [&](const std::string& rootName, const std::string& name) {
            return rootAttribute(rootElement(root), rootName, name);
        });
    Records& records = recordsOf(*parent, plan.record);
    provideColumns(records, condition);
    const SearchEvaluation evaluation(
        [&](const RecordText& text) -> const SearchColumn& { return records.column(text); });
    const bool goesOn = std::exchange(records.hasFound, false) && narrows(records.condition, condition);
    records.found = evaluation.run(condition, goesOn ? records.found : RowSet(records.rows.size(), true));
    records.condition = condition;
    records.hasFound = true;
    Nodes nodes(records.found.count());
    auto node = nodes.begin();
    records.found.forEach([&](std::size_t row) { *node++ = records.rows[row]; });
    return nodes;
}

std::optional<std::vector<std::string_view>> XmlSearch::texts(std::span<pugi::xml_node_struct* const> nodes,
                                                              const std::string& child)
{
    const pugi::xml_node first(nodes.empty() ? nullptr : nodes.front());
    if (!first || !first.parent())
        return std::nullopt;
    Records& records = recordsOf(first.parent(), first.name());
    const SearchCondition hasChild{Kind::HasChild, {}, {{{child, {}, {}}}}, false, {}};
    provideColumns(records, hasChild);
    const SearchColumn& column = records.column(hasChild.text);
    std::vector<std::string_view> texts;
    texts.reserve(nodes.size());
    std::size_t row = 0;
    for (pugi::xml_node_struct* const node : nodes) {
        while (row < records.rows.size() && records.rows[row] != node)
            ++row;
        if (row == records.rows.size())
            return std::nullopt;
        texts.push_back(column.text(row++));
    }
    return texts;
}

const SearchColumn& XmlSearch::Records::column(const RecordText& wanted) const
{
    return std::find_if(columns.begin(), columns.end(), [&](const Column& one) { return one.text == wanted; })
        ->column;
}

std::size_t XmlSearch::memory() const
{
    std::size_t bytes = 0;
    for (const Records& records : m_lists) {
        bytes += records.rows.capacity() * sizeof(void*); // of each row there is a pointer
        for (const Column& column : records.columns)
            bytes += column.column.memory();
    }
    return bytes;
}

} // namespace tavrin::xml
