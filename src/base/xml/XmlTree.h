#pragma once

// Private to XmlDocument.cpp, XmlNodes.cpp, XmlTree.cpp, XmlSearch.cpp: the only ones that name pugixml.

#include "base/xml/XmlDocument.h"
#include "base/xml/XmlSearch.h"

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QVariant>
#include <pugixml.hpp>

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace tavrin::xml {

/// The nodes of one or more documents. A tree that a document has left is never changed again, so that
/// handles that still point into it can be led on.
struct Tree
{
    pugi::xml_document dom;
    XmlSearch search; // of all documents that share the tree
    int documents = 0;
    bool left = false;

    bool mayChange() const { return documents == 1 && !left; }
};

using NodeMap = std::unordered_map<pugi::xml_node_struct*, pugi::xml_node_struct*>;

struct State
{
    /// Where the nodes of a tree went that this document has left.
    struct Forward
    {
        std::shared_ptr<Tree> from;
        std::shared_ptr<State> toState; // nullptr: this document
        std::shared_ptr<Tree> to;       // the same as `from`: the nodes stay the same
        NodeMap nodes;
    };

    explicit State(std::shared_ptr<Tree> content);
    ~State();
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    /// Takes `next` for its tree.
    void moveTo(std::shared_ptr<Tree> next);
    const Forward* forwardFrom(const Tree* tree) const;

    std::shared_ptr<Tree> tree;
    QMap<QString, QVariant> properties;
    std::vector<Forward> forwards;
    bool isDraft = false; // holds one node that was made by createElement and stands in no document yet
};

/// What an `XmlNodeList` holds: nodes of one tree.
struct List
{
    std::shared_ptr<State> state;
    std::shared_ptr<Tree> tree;
    Nodes nodes;
};

/// The way behind the handles, which name nothing of pugixml.
struct Access
{
    static Node* hidden(pugi::xml_node_struct* node) { return reinterpret_cast<Node*>(node); }
    static pugi::xml_node_struct* shown(Node* node) { return reinterpret_cast<pugi::xml_node_struct*>(node); }

    static XmlNode handle(std::shared_ptr<State> state, std::shared_ptr<Tree> tree,
                          pugi::xml_node_struct* node)
    {
        return {std::move(state), std::move(tree), hidden(node)};
    }
    /// Another node of the same tree.
    static XmlNode sibling(const XmlNode& node, pugi::xml_node other)
    {
        return handle(node.m_state, node.m_tree, other.internal_object());
    }
    static XmlNode root(const XmlDocument& document);
    static XmlDocument document(const std::shared_ptr<State>& state) { return XmlDocument(state); }
    static XmlNodeList list(const XmlNode& context, Nodes nodes);
    static const std::shared_ptr<List>& content(const XmlNodeList& list) { return list.m_list; }
    static std::shared_ptr<State>& state(const XmlNode& node) { return node.m_state; }
    static std::shared_ptr<Tree>& tree(const XmlNode& node) { return node.m_tree; }
    static pugi::xml_node_struct* node(const XmlNode& node) { return shown(node.m_node); }
    static void lead(const XmlNode& node, pugi::xml_node_struct* to) { node.m_node = hidden(to); }

    /// The node where it is now, after the handle has followed it.
    static pugi::xml_node resolved(const XmlNode& node);
    /// The same in a tree that may be changed. Raises an `Error` for the null node.
    static pugi::xml_node writable(const XmlNode& node);
    static pugi::xml_node leaveTree(const XmlNode& handle, pugi::xml_node node);
};

/// Pairs each node at and below `from` with the one at the same place at and below `to`, its copy.
NodeMap pairUp(pugi::xml_node from, pugi::xml_node to);

/// Takes out of the map whatever leads to a node below `top`.
void forgetBelow(pugi::xml_node top, NodeMap& map);

/// The node at the same place in a copy of its tree.
pugi::xml_node samePlace(pugi::xml_node node, const pugi::xml_document& copy);

/// The first child that is an element of this name; `pugi::xml_node::child` also takes a processing
/// instruction.
pugi::xml_node childElement(pugi::xml_node parent, const char* name);

/// Appends the texts of the node and of everything below it, in document order.
void collectText(pugi::xml_node top, std::string& text);

/// UTF-8, in which a NUL and a lone surrogate have a form of their own that no parsed text can hold: so
/// they can be searched for, and are found nowhere.
QByteArray toBytes(const QString& text);
QString fromBytes(const char* bytes);

/// Parses one well-formed element into `dom`, or raises an `Error` with line and column.
void parse(const QString& text, pugi::xml_document& dom);

} // namespace tavrin::xml
