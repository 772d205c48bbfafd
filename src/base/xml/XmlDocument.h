#pragma once

#include "base/export/Export.h"

#include <QString>
#include <QVariant>

#include <cstddef>
#include <iterator>
#include <memory>

namespace tavrin {

namespace xml {
struct State; // one document: its tree, which it may share with clones, and its properties
struct Tree;  // the nodes
struct Node;  // one of them
struct List;  // some of them
struct Access;
} // namespace xml

class XmlDocument;
class XmlNodeList;
class XmlNodes;

/// One node of an XML document, shared by reference: copies name the same node.
///
/// A node keeps its document alive. It stays the same node when its document stops sharing its tree with a
/// clone, and when it was made by `createElement` and is appended. A default-constructed node is null;
/// reading from it gives nothing, writing to it raises an `Error`.
class TAVRIN_EXPORT XmlNode
{
public:
    XmlNode() = default;

    /// Whether it names no node: made so, not found, or gone with what stood around it.
    bool isNull() const;
    /// The element's name; "" for a text and for a null node.
    QString nodeName() const;

    /// The texts of the node and of everything below it, in document order.
    QString text() const;
    /// Replaces everything below the node by one text. Handles to what was there become null.
    void setText(const QString& text);

    /// "" when there is none.
    QString attribute(const QString& name) const;
    /// Tells an empty attribute from a missing one.
    bool hasAttribute(const QString& name) const;
    /// Adds the attribute, or replaces its value.
    void setAttribute(const QString& name, const QString& value);

    /// The element that holds this node; null for a root and for a node that stands in no document.
    XmlNode parentNode() const;
    /// Elements and texts in their order, as they are at the call.
    XmlNodeList childNodes() const;
    /// The first child element of this name; null when there is none.
    XmlNode childElement(const QString& name) const;

    /// Appends `child` and returns it. A node that stands in this document moves; one made by
    /// `createElement` or `cloneNode`, of whichever document, arrives. Raises an `Error` for a node that
    /// stands in another document and for one that holds this node.
    XmlNode appendChild(const XmlNode& child) const;
    /// Makes an element with a text and appends it: `createElement`, `setText`, `appendChild` in one step.
    XmlNode appendElement(const QString& name, const QString& text = {}) const;
    /// A copy that stands in no document yet; with everything below it when `deep`.
    XmlNode cloneNode(bool deep) const;

    /// The nodes that an XPath 1.0 expression selects from here, in document order. An expression that is
    /// not valid, or that does not select nodes (attributes do not count), raises an `Error` that quotes it.
    /// Texts are compared as they stand; `translate`, `substring` and `string-length` count bytes of UTF-8,
    /// so their alphabets must be ASCII.
    ///
    /// Expressions of one element name and one condition, as searches build them, are evaluated over the
    /// records' texts laid end to end, which the first such search of a tree gathers and the next change of
    /// its elements or texts drops. What they select is the same.
    XmlNodeList selectNodes(const QString& expression) const;
    /// The first of them in document order; null when there is none.
    XmlNode selectSingleNode(const QString& expression) const;

    /// The document that the node stands in or was made by; an empty one of its own for a null node.
    XmlDocument ownerDocument() const;

    // Equal when they name the same node.
    friend bool operator==(const XmlNode& a, const XmlNode& b);
    friend bool operator!=(const XmlNode& a, const XmlNode& b) { return !(a == b); }

private:
    friend struct xml::Access;

    XmlNode(std::shared_ptr<xml::State> state, std::shared_ptr<xml::Tree> tree, xml::Node* node);

    // Mutable: a handle follows its node into another tree when it is next used.
    mutable std::shared_ptr<xml::State> m_state;
    mutable std::shared_ptr<xml::Tree> m_tree;
    mutable xml::Node* m_node = nullptr;
};

/// Goes through a list of nodes by their index.
template <typename Nodes>
class XmlNodeIterator
{
public:
    // What loops and the standard's algorithms ask of an iterator.
    using iterator_category = std::input_iterator_tag;
    using value_type = XmlNode;
    using difference_type = std::ptrdiff_t;
    using pointer = void;
    using reference = XmlNode;

    XmlNode operator*() const { return m_nodes->at(m_index); }
    XmlNodeIterator& operator++()
    {
        ++m_index;
        return *this;
    }
    XmlNodeIterator operator++(int) { return {m_nodes, m_index++}; }
    friend bool operator==(const XmlNodeIterator& a, const XmlNodeIterator& b)
    {
        return a.m_index == b.m_index;
    }

private:
    friend Nodes;
    XmlNodeIterator(const Nodes* nodes, std::size_t index)
        : m_nodes(nodes)
        , m_index(index)
    {
    }

    const Nodes* m_nodes;
    std::size_t m_index;
};

/// Nodes in a fixed order; copies share them. Holds 8 bytes a node; an `XmlNode` comes into being at access.
class TAVRIN_EXPORT XmlNodeList
{
public:
    using Iterator = XmlNodeIterator<XmlNodeList>; ///< goes through the nodes in their order

    /// Number of the nodes, and whether there are none.
    std::size_t size() const;
    bool empty() const { return size() == 0; }
    /// The node at `index`, counted from 0; null outside the list.
    XmlNode at(std::size_t index) const;
    /// For range-based loops, in which `node` is an `XmlNode`.
    Iterator begin() const { return {this, 0}; }
    Iterator end() const { return {this, size()}; }

private:
    friend struct xml::Access;

    std::shared_ptr<xml::List> m_list; // nullptr for none
};

/// An XML document, shared by reference: copies of the object name the same document.
///
/// `cloneNode` gives a document of its own that shares the tree until one of the two is changed; so a
/// dozen clones of a large list cost one tree.
///
///     XmlDocument document;
///     document.loadXML(QStringLiteral("<List><Item>a</Item></List>"));
///     for (const XmlNode& item : document.selectNodes(QStringLiteral("List/Item")))
///         qInfo() << item.text();
class TAVRIN_EXPORT XmlDocument
{
public:
    XmlDocument();

    /// Replaces the content. A text that is not one well-formed element raises an `Error` with line and
    /// column, and the document stays as it was. White space between elements is dropped.
    void loadXML(const QString& text);
    /// The document as text, without declaration and indentation.
    QString xml() const;

    /// The root element; null while the document is empty.
    XmlNode documentElement() const;
    /// Makes `element` the root. Raises an `Error` when there is one already.
    XmlNode appendChild(const XmlNode& element);
    /// An element that stands in no document until it is appended.
    XmlNode createElement(const QString& name) const;

    /// As `XmlNode::selectNodes`, from the document itself: paths begin with the root element's name.
    XmlNodeList selectNodes(const QString& expression) const;
    /// The first of them in document order; null when there is none.
    XmlNode selectSingleNode(const QString& expression) const;

    /// A document of its own with the same properties; with the same content when `deep`, else empty.
    XmlDocument cloneNode(bool deep) const;

    /// Properties are kept and travel with clones. "SelectionLanguage" is the one that callers set, always
    /// to "XPath", which is the only language there is; any other raises an `Error`.
    void setProperty(const QString& name, const QVariant& value);
    /// What was set last; Empty for a property that was not.
    QVariant property(const QString& name) const;

    /// What searches keep beside the tree to be fast, in bytes; all documents that share the tree share it.
    /// For tests and figures.
    std::size_t searchMemory() const;
    /// True while both read the same tree in memory. For tests and figures about memory.
    bool sharesTreeWith(const XmlDocument& other) const;

private:
    friend struct xml::Access;
    explicit XmlDocument(std::shared_ptr<xml::State> state);

    std::shared_ptr<xml::State> m_state;
};

} // namespace tavrin
