#include "base/xml/XmlDocument.h"

#include "base/failure/Error.h"
#include "base/xml/XmlTree.h"

namespace tavrin {

using xml::fromBytes;
using xml::State;
using xml::toBytes;
using xml::Tree;

namespace {

struct StringWriter final : pugi::xml_writer
{
    void write(const void* data, std::size_t size) override
    {
        bytes.append(static_cast<const char*>(data), static_cast<qsizetype>(size));
    }
    QByteArray bytes;
};

[[noreturn]] void raiseExpression(const QString& expression, const char* what)
{
    throw Error(
        QStringLiteral("XPath expression is not valid: %1: %2").arg(QString::fromUtf8(what), expression));
}

template <typename Evaluate>
auto evaluate(const QString& expression, Evaluate&& body)
{
    try {
        const pugi::xpath_query query(toBytes(expression).constData());
        return body(query);
    } catch (const pugi::xpath_exception& error) {
        raiseExpression(expression, error.what());
    }
}

std::shared_ptr<State> makeDraft()
{
    auto state = std::make_shared<State>(std::make_shared<Tree>());
    state->isDraft = true;
    return state;
}

} // namespace

// XmlNode

XmlNode::XmlNode(std::shared_ptr<State> state, std::shared_ptr<Tree> tree, pugi::xml_node_struct* node)
    : m_state(node ? std::move(state) : nullptr)
    , m_tree(node ? std::move(tree) : nullptr)
    , m_node(node)
{
}

XmlNode XmlNode::sibling(pugi::xml_node node) const
{
    return {m_state, m_tree, node.internal_object()};
}

pugi::xml_node XmlNode::resolved() const
{
    while (m_state && m_tree != m_state->tree) {
        const State::Forward* forward = m_state->forwardFrom(m_tree.get());
        pugi::xml_node_struct* next = nullptr;
        if (forward && forward->to == forward->from)
            next = m_node;
        else if (forward && forward->nodes.count(m_node) != 0)
            next = forward->nodes.at(m_node);
        const auto state = forward && forward->toState ? forward->toState : m_state;
        const auto tree = forward ? forward->to : nullptr;
        m_state = next ? state : nullptr;
        m_tree = next ? tree : nullptr;
        m_node = next;
    }
    return pugi::xml_node(m_node);
}

pugi::xml_node XmlNode::writable() const
{
    const pugi::xml_node node = resolved();
    if (!node)
        throw Error(QStringLiteral("The XML node is null"));
    return m_tree->mayChange() ? node : leaveTree(node);
}

pugi::xml_node XmlNode::leaveTree(pugi::xml_node node) const
{
    // The document leaves the tree that it shares. Other handles into it are led on through a map, which is
    // only made when there can be any.
    auto copy = std::make_shared<Tree>();
    copy->dom.reset(m_tree->dom);
    const pugi::xml_node place = xml::samePlace(node, copy->dom);
    const auto old = m_tree;
    const bool otherHandles = old.use_count() > old->documents + 2; // this handle and `old`
    m_state->moveTo(copy);
    if (otherHandles)
        m_state->forwards.push_back({old, nullptr, copy, xml::pairUp(old->dom, copy->dom)});
    m_tree = copy;
    m_node = place.internal_object();
    return place;
}

QString XmlNode::nodeName() const
{
    return fromBytes(resolved().name());
}

QString XmlNode::text() const
{
    const pugi::xml_node node = resolved();
    const pugi::xml_node only = node.first_child();
    if (!only)
        return fromBytes(node.value());
    if (!only.next_sibling() && only.type() == pugi::node_pcdata)
        return fromBytes(only.value());
    std::string bytes;
    xml::collectText(node, bytes);
    return fromBytes(bytes.c_str());
}

void XmlNode::setText(const QString& text)
{
    pugi::xml_node node = writable();
    // A handle below the node must not be left without its memory: the old tree stays for it, and it is led
    // nowhere.
    if (node.first_child() && m_tree.use_count() > m_tree->documents + 1) {
        node = leaveTree(node);
        if (!m_state->forwards.empty())
            xml::forgetBelow(node, m_state->forwards.back().nodes);
    }
    m_tree->search.drop();
    node.remove_children();
    if (!text.isEmpty())
        node.append_child(pugi::node_pcdata).set_value(toBytes(text).constData());
}

QString XmlNode::attribute(const QString& name) const
{
    return fromBytes(resolved().attribute(toBytes(name).constData()).value());
}

bool XmlNode::hasAttribute(const QString& name) const
{
    return !resolved().attribute(toBytes(name).constData()).empty();
}

void XmlNode::setAttribute(const QString& name, const QString& value)
{
    pugi::xml_node node = writable(); // its searches keep no attributes
    const QByteArray key = toBytes(name);
    pugi::xml_attribute attribute = node.attribute(key.constData());
    if (!attribute)
        attribute = node.append_attribute(key.constData());
    attribute.set_value(toBytes(value).constData());
}

XmlNode XmlNode::parentNode() const
{
    const pugi::xml_node parent = resolved().parent();
    return parent.type() == pugi::node_element ? sibling(parent) : XmlNode();
}

XmlNodeList XmlNode::childNodes() const
{
    XmlNodeList list;
    for (const pugi::xml_node child : resolved().children())
        list.m_nodes.push_back(child.internal_object());
    list.m_state = m_state;
    list.m_tree = m_tree;
    return list;
}

XmlNode XmlNode::childElement(const QString& name) const
{
    return sibling(xml::childElement(resolved(), toBytes(name).constData()));
}

XmlNode XmlNode::appendChild(const XmlNode& child) const
{
    const pugi::xml_node childNode = child.resolved();
    if (!childNode)
        throw Error(QStringLiteral("The XML node to append is null"));
    for (pugi::xml_node above = resolved(); above; above = above.parent()) {
        if (above == childNode)
            throw Error(QStringLiteral("An XML node cannot be appended below itself"));
    }
    pugi::xml_node parent = writable();
    m_tree->search.drop();
    if (child.m_state == m_state) {
        child.resolved(); // the tree may just have been copied
        parent.append_move(pugi::xml_node(child.m_node));
        return child;
    }
    if (!child.m_state->isDraft || pugi::xml_node(child.m_node).parent().type() == pugi::node_element)
        throw Error(QStringLiteral("The XML node stands in another document"));
    const pugi::xml_node copy = parent.append_copy(pugi::xml_node(child.m_node));
    const auto draft = child.m_state;
    const auto old = draft->tree;
    const bool otherHandles = old.use_count() > 3; // the draft, `child` and `old`
    draft->moveTo(std::make_shared<Tree>());
    if (otherHandles)
        draft->forwards.push_back({old, m_state, m_tree, xml::pairUp(pugi::xml_node(child.m_node), copy)});
    child.m_state = m_state;
    child.m_tree = m_tree;
    child.m_node = copy.internal_object();
    return child;
}

XmlNode XmlNode::appendElement(const QString& name, const QString& text) const
{
    pugi::xml_node parent = writable();
    m_tree->search.drop();
    pugi::xml_node element = parent.append_child(toBytes(name).constData());
    if (!text.isEmpty())
        element.append_child(pugi::node_pcdata).set_value(toBytes(text).constData());
    return sibling(element);
}

XmlNode XmlNode::cloneNode(bool deep) const
{
    const pugi::xml_node source = resolved();
    const auto draft = makeDraft();
    pugi::xml_node copy;
    if (deep) {
        copy = draft->tree->dom.append_copy(source);
    } else {
        copy = draft->tree->dom.append_child(source.type());
        copy.set_name(source.name());
        for (const pugi::xml_attribute attribute : source.attributes())
            copy.append_copy(attribute);
    }
    return {draft, draft->tree, copy.internal_object()};
}

bool XmlNode::search(const QString& expression, XmlNodeList& list) const
{
    const std::optional<SearchPlan> plan = SearchPlan::parse(toBytes(expression).toStdString());
    std::optional<xml::Nodes> found =
        plan ? m_tree->search.select(*plan, pugi::xml_node(m_node)) : std::nullopt;
    if (found)
        list.m_nodes = std::move(*found);
    return found.has_value();
}

XmlNodeList XmlNode::selectNodes(const QString& expression) const
{
    XmlNodeList list;
    const pugi::xml_node context = resolved();
    list.m_state = m_state;
    list.m_tree = m_tree;
    if (context && search(expression, list))
        return list;
    evaluate(expression, [&](const pugi::xpath_query& query) {
        pugi::xpath_node_set found = query.evaluate_node_set(context);
        found.sort();
        list.m_nodes.reserve(found.size());
        for (const pugi::xpath_node& entry : found) {
            if (!entry.node()) // raised as the other failures of an expression are
                throw Error(QStringLiteral("XPath expression selects attributes, not nodes: ") + expression);
            list.m_nodes.push_back(entry.node().internal_object());
        }
    });
    return list;
}

XmlNode XmlNode::selectSingleNode(const QString& expression) const
{
    const pugi::xml_node context = resolved();
    return evaluate(expression, [&](const pugi::xpath_query& query) {
        return sibling(query.evaluate_node(context).node());
    });
}

XmlDocument XmlNode::ownerDocument() const
{
    resolved();
    return m_state ? XmlDocument(m_state) : XmlDocument();
}

bool operator==(const XmlNode& a, const XmlNode& b)
{
    return a.resolved() == b.resolved() && a.m_state == b.m_state;
}

// XmlNodeList

XmlNode XmlNodeList::at(std::size_t index) const
{
    return index < m_nodes.size() ? XmlNode(m_state, m_tree, m_nodes[index]) : XmlNode();
}

// XmlDocument

XmlDocument::XmlDocument()
    : m_state(std::make_shared<State>(std::make_shared<Tree>()))
{
}

XmlDocument::XmlDocument(std::shared_ptr<State> state)
    : m_state(std::move(state))
{
}

XmlNode XmlDocument::asNode() const
{
    return {m_state, m_state->tree, m_state->tree->dom.internal_object()};
}

void XmlDocument::loadXML(const QString& text)
{
    auto tree = std::make_shared<Tree>();
    xml::parse(text, tree->dom);
    const auto old = m_state->tree;
    const bool handles = old.use_count() > old->documents + 1; // `old`
    m_state->moveTo(std::move(tree));
    if (handles) // they go on reading what the document held before
        m_state->forwards.push_back({old, std::make_shared<State>(old), old, {}});
}

QString XmlDocument::xml() const
{
    StringWriter writer;
    m_state->tree->dom.save(writer, "", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_utf8);
    return QString::fromUtf8(writer.bytes);
}

XmlNode XmlDocument::documentElement() const
{
    return {m_state, m_state->tree, m_state->tree->dom.document_element().internal_object()};
}

XmlNode XmlDocument::appendChild(const XmlNode& element)
{
    if (!documentElement().isNull())
        throw Error(QStringLiteral("The XML document has a root element already"));
    return asNode().appendChild(element);
}

XmlNode XmlDocument::createElement(const QString& name) const
{
    const auto draft = makeDraft();
    const pugi::xml_node element = draft->tree->dom.append_child(toBytes(name).constData());
    return {draft, draft->tree, element.internal_object()};
}

XmlNodeList XmlDocument::selectNodes(const QString& expression) const
{
    return asNode().selectNodes(expression);
}

XmlNode XmlDocument::selectSingleNode(const QString& expression) const
{
    return asNode().selectSingleNode(expression);
}

XmlDocument XmlDocument::cloneNode(bool deep) const
{
    XmlDocument clone(std::make_shared<State>(deep ? m_state->tree : std::make_shared<Tree>()));
    clone.m_state->properties = m_state->properties;
    return clone;
}

void XmlDocument::setProperty(const QString& name, const QVariant& value)
{
    if (name == QLatin1String("SelectionLanguage") && value.toString() != QLatin1String("XPath"))
        throw Error(QStringLiteral("The selection language is XPath, not %1").arg(value.toString()));
    m_state->properties.insert(name, value);
}

QVariant XmlDocument::property(const QString& name) const
{
    return m_state->properties.value(name);
}

std::size_t XmlDocument::searchMemory() const
{
    return m_state->tree->search.memory();
}

bool XmlDocument::sharesTreeWith(const XmlDocument& other) const
{
    return m_state->tree == other.m_state->tree;
}

} // namespace tavrin
