#pragma once

#include "base/xml/XmlDocument.h"

#include <QString>

#include <cstddef>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace pugi {
struct xml_node_struct;
} // namespace pugi

namespace tavrin {

/// A collection of nodes in an order of its own, of one document or of several.
///
/// Holds 8 bytes a node, and keeps each document alive once for all neighbours that belong to it; an
/// `XmlNode` comes into being at access. A node stays the same node whatever happens to its document, as a
/// single `XmlNode` does.
///
///     XmlNodes found(list.selectNodes(QStringLiteral("Employee[ActiveFlag='True']")));
///     found.removeIf([](const XmlNode& employee) { return employee.text().isEmpty(); });
class XmlNodes
{
public:
    using Iterator = XmlNodeIterator<XmlNodes>;

    XmlNodes() = default;
    explicit XmlNodes(const XmlNodeList& list);

    std::size_t size() const { return m_nodes.size(); }
    bool empty() const { return m_nodes.empty(); }
    /// The node at `index`, counted from 0; null outside the collection.
    XmlNode at(std::size_t index) const;
    XmlNode operator[](std::size_t index) const { return at(index); }
    XmlNode front() const { return at(0); }
    Iterator begin() const { return {this, 0}; }
    Iterator end() const { return {this, size()}; }

    void push_back(const XmlNode& node);
    void append(const XmlNodes& others);
    void clear();

    /// For each node the number that is the text of its first child element of this name, where that is up to
    /// nine digits and nothing else, perhaps behind a minus: the usual form. Nothing for any other text,
    /// which may be a number all the same, and for nodes that follow their document into another tree. For a
    /// long list this reads the texts that searches keep, and not node by node.
    std::vector<std::optional<qint32>> childNumbers(const QString& name) const;

    /// Takes out the nodes of which `test` says so. It is asked once for each, in order, and may copy the
    /// node. What it throws leaves the collection as it was.
    template <typename Test>
    void removeIf(Test&& test)
    {
        XmlNodes kept;
        std::size_t index = 0;
        for (const Run& run : m_runs) {
            XmlNode node; // one handle for the whole run: making one costs more than most tests
            for (; index < run.end; ++index) {
                run.lead(node, m_nodes[index]);
                if (!test(std::as_const(node)))
                    kept.add(run, m_nodes[index]);
            }
        }
        *this = std::move(kept);
    }

private:
    /// Neighbours of one tree.
    struct Run
    {
        std::shared_ptr<xml::State> state;
        std::shared_ptr<xml::Tree> tree;
        std::size_t end; // index behind its last node

        /// Makes `node`, which may have followed another node elsewhere, a handle to this one.
        void lead(XmlNode& node, pugi::xml_node_struct* to) const;
    };

    void add(const Run& run, pugi::xml_node_struct* node);

    std::vector<pugi::xml_node_struct*> m_nodes;
    std::vector<Run> m_runs;
};

} // namespace tavrin
