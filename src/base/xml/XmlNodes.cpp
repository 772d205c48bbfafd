#include "base/xml/XmlNodes.h"

#include "base/xml/XmlTree.h"

#include <algorithm>
#include <span>
#include <string_view>

namespace tavrin {

using xml::Access;

namespace {

/// From so many nodes of one document on, gathering the texts of the whole list pays.
constexpr std::size_t ManyNodes = 1000;

std::optional<qint32> plainNumber(std::string_view text)
{
    constexpr std::size_t MostDigits = 9; // all of them fit
    const bool negative = text.starts_with('-');
    text.remove_prefix(negative ? 1 : 0);
    if (text.empty() || text.size() > MostDigits)
        return std::nullopt;
    qint32 number = 0;
    for (const char digit : text) {
        if (digit < '0' || digit > '9')
            return std::nullopt;
        number = number * 10 + (digit - '0');
    }
    return negative ? -number : number;
}

/// "" for a text of several pieces.
std::string_view plainText(pugi::xml_node element)
{
    const pugi::xml_node text = element.first_child();
    return text.type() == pugi::node_pcdata && !text.next_sibling() ? text.value() : "";
}

} // namespace

XmlNodes::XmlNodes(const XmlNodeList& list)
{
    if (const auto& content = Access::content(list)) {
        m_nodes = content->nodes;
        m_runs.push_back({content->state, content->tree, m_nodes.size()});
    }
}

XmlNode XmlNodes::at(std::size_t index) const
{
    XmlNode node;
    if (index < size()) {
        const auto run = std::upper_bound(m_runs.begin(), m_runs.end(), index,
                                          [](std::size_t place, const Run& one) { return place < one.end; });
        run->lead(node, m_nodes[index]);
    }
    return node;
}

void XmlNodes::Run::lead(XmlNode& node, pugi::xml_node_struct* to) const
{
    if (Access::tree(node) != tree || Access::state(node) != state) {
        Access::state(node) = state;
        Access::tree(node) = tree;
    }
    Access::lead(node, to);
}

void XmlNodes::add(const Run& run, pugi::xml_node_struct* node)
{
    m_nodes.push_back(node);
    if (m_runs.empty() || m_runs.back().state != run.state || m_runs.back().tree != run.tree)
        m_runs.push_back(run);
    m_runs.back().end = m_nodes.size();
}

std::vector<std::optional<qint32>> XmlNodes::childNumbers(const QString& name) const
{
    const std::string key = xml::toBytes(name).toStdString();
    std::vector<std::optional<qint32>> numbers;
    numbers.reserve(size());
    for (const Run& run : m_runs) {
        const std::span nodes(m_nodes.begin() + static_cast<std::ptrdiff_t>(numbers.size()),
                              m_nodes.begin() + static_cast<std::ptrdiff_t>(run.end));
        if (!run.state || run.state->tree != run.tree) {
            numbers.resize(run.end);
            continue;
        }
        const auto texts = nodes.size() >= ManyNodes ? run.tree->search.texts(nodes, key) : std::nullopt;
        for (std::size_t i = 0; i < nodes.size(); ++i) {
            const pugi::xml_node node(nodes[i]);
            numbers.push_back(
                plainNumber(texts ? (*texts)[i] : plainText(xml::childElement(node, key.c_str()))));
        }
    }
    return numbers;
}

void XmlNodes::push_back(const XmlNode& node)
{
    add({Access::state(node), Access::tree(node), 0}, Access::node(node));
}

void XmlNodes::append(const XmlNodes& others)
{
    const XmlNodes added = others; // which may be this collection
    for (Run run : added.m_runs) {
        run.end += m_nodes.size();
        m_runs.push_back(std::move(run));
    }
    m_nodes.insert(m_nodes.end(), added.m_nodes.begin(), added.m_nodes.end());
}

void XmlNodes::clear()
{
    m_nodes.clear();
    m_runs.clear();
}

} // namespace tavrin
