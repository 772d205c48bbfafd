#include "XmlNodes.h"

#include <algorithm>

namespace tavrin {

XmlNodes::XmlNodes(const XmlNodeList& list)
    : m_nodes(list.m_nodes)
{
    if (!m_nodes.empty())
        m_runs.push_back({list.m_state, list.m_tree, m_nodes.size()});
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
    if (node.m_tree != tree || node.m_state != state) {
        node.m_state = state;
        node.m_tree = tree;
    }
    node.m_node = to;
}

void XmlNodes::add(const Run& run, pugi::xml_node_struct* node)
{
    m_nodes.push_back(node);
    if (m_runs.empty() || m_runs.back().state != run.state || m_runs.back().tree != run.tree)
        m_runs.push_back(run);
    m_runs.back().end = m_nodes.size();
}

void XmlNodes::push_back(const XmlNode& node)
{
    add({node.m_state, node.m_tree, 0}, node.m_node);
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
