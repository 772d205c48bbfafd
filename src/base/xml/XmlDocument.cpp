#include "base/xml/XmlDocument.h"

#include "base/failure/Error.h"
#include "base/xml/XmlTree.h"

namespace tavrin {

using xml::Access;
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

// Access

namespace xml {

XmlNode Access::root(const XmlDocument& document)
{
    const std::shared_ptr<State>& state = document.m_state;
    return handle(state, state->tree, state->tree->dom.internal_object());
}

XmlNodeList Access::list(const XmlNode& context, Nodes nodes)
{
    XmlNodeList list;
    if (!nodes.empty())
        list.m_list = std::make_shared<List>(List{context.m_state, context.m_tree, std::move(nodes)});
    return list;
}

pugi::xml_node Access::resolved(const XmlNode& node)
{
    while (node.m_state && node.m_tree != node.m_state->tree) {
        const State::Forward* forward = node.m_state->forwardFrom(node.m_tree.get());
        pugi::xml_node_struct* const here = shown(node.m_node);
        pugi::xml_node_struct* next = nullptr;
        if (forward && forward->to == forward->from)
            next = here;
        else if (forward && forward->nodes.count(here) != 0)
            next = forward->nodes.at(here);
        const auto state = forward && forward->toState ? forward->toState : node.m_state;
        const auto tree = forward ? forward->to : nullptr;
        node.m_state = next ? state : nullptr;
        node.m_tree = next ? tree : nullptr;
        node.m_node = hidden(next);
    }
    return pugi::xml_node(shown(node.m_node));
}

pugi::xml_node Access::writable(const XmlNode& handle)
{
    const pugi::xml_node node = resolved(handle);
    if (!node)
        throw Error(QStringLiteral("The XML node is null"));
    return handle.m_tree->mayChange() ? node : leaveTree(handle, node);
}

pugi::xml_node Access::leaveTree(const XmlNode& handle, pugi::xml_node node)
{
    // The document leaves the tree that it shares. Other handles into it are led on through a map, which is
    // only made when there can be any.
    auto copy = std::make_shared<Tree>();
    copy->dom.reset(handle.m_tree->dom);
    const pugi::xml_node place = samePlace(node, copy->dom);
    const auto old = handle.m_tree;
    const bool otherHandles = old.use_count() > old->documents + 2; // this handle and `old`
    handle.m_state->moveTo(copy);
    if (otherHandles)
        handle.m_state->forwards.push_back({old, nullptr, copy, pairUp(old->dom, copy->dom)});
    handle.m_tree = copy;
    handle.m_node = hidden(place.internal_object());
    return place;
}

} // namespace xml

// XmlNode

XmlNode::XmlNode(std::shared_ptr<State> state, std::shared_ptr<Tree> tree, xml::Node* node)
    : m_state(node ? std::move(state) : nullptr)
    , m_tree(node ? std::move(tree) : nullptr)
    , m_node(node)
{
}

bool XmlNode::isNull() const
{
    return m_node == nullptr;
}

QString XmlNode::nodeName() const
{
    return fromBytes(Access::resolved(*this).name());
}

QString XmlNode::text() const
{
    const pugi::xml_node node = Access::resolved(*this);
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
    pugi::xml_node node = Access::writable(*this);
    // A handle below the node must not be left without its memory: the old tree stays for it, and it is led
    // nowhere.
    if (node.first_child() && m_tree.use_count() > m_tree->documents + 1) {
        node = Access::leaveTree(*this, node);
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
    return fromBytes(Access::resolved(*this).attribute(toBytes(name).constData()).value());
}

bool XmlNode::hasAttribute(const QString& name) const
{
    return !Access::resolved(*this).attribute(toBytes(name).constData()).empty();
}

void XmlNode::setAttribute(const QString& name, const QString& value)
{
    pugi::xml_node node = Access::writable(*this); // its searches keep no attributes
    const QByteArray key = toBytes(name);
    pugi::xml_attribute attribute = node.attribute(key.constData());
    if (!attribute)
        attribute = node.append_attribute(key.constData());
    attribute.set_value(toBytes(value).constData());
}

XmlNode XmlNode::parentNode() const
{
    const pugi::xml_node parent = Access::resolved(*this).parent();
    return parent.type() == pugi::node_element ? Access::sibling(*this, parent) : XmlNode();
}

XmlNodeList XmlNode::childNodes() const
{
    xml::Nodes children;
    for (const pugi::xml_node child : Access::resolved(*this).children())
        children.push_back(child.internal_object());
    return Access::list(*this, std::move(children));
}

XmlNode XmlNode::childElement(const QString& name) const
{
    return Access::sibling(*this, xml::childElement(Access::resolved(*this), toBytes(name).constData()));
}

XmlNode XmlNode::appendChild(const XmlNode& child) const
{
    const pugi::xml_node childNode = Access::resolved(child);
    if (!childNode)
        throw Error(QStringLiteral("The XML node to append is null"));
    for (pugi::xml_node above = Access::resolved(*this); above; above = above.parent()) {
        if (above == childNode)
            throw Error(QStringLiteral("An XML node cannot be appended below itself"));
    }
    pugi::xml_node parent = Access::writable(*this);
    m_tree->search.drop();
    if (child.m_state == m_state) {
        Access::resolved(child); // the tree may just have been copied
        parent.append_move(pugi::xml_node(Access::node(child)));
        return child;
    }
    if (!child.m_state->isDraft || pugi::xml_node(Access::node(child)).parent().type() == pugi::node_element)
        throw Error(QStringLiteral("The XML node stands in another document"));
    const pugi::xml_node copy = parent.append_copy(pugi::xml_node(Access::node(child)));
    const auto draft = child.m_state;
    const auto old = draft->tree;
    const bool otherHandles = old.use_count() > 3; // the draft, `child` and `old`
    draft->moveTo(std::make_shared<Tree>());
    if (otherHandles)
        draft->forwards.push_back(
            {old, m_state, m_tree, xml::pairUp(pugi::xml_node(Access::node(child)), copy)});
    child.m_state = m_state;
    child.m_tree = m_tree;
    child.m_node = Access::hidden(copy.internal_object());
    return child;
}

XmlNode XmlNode::appendElement(const QString& name, const QString& text) const
{
    pugi::xml_node parent = Access::writable(*this);
    m_tree->search.drop();
    pugi::xml_node element = parent.append_child(toBytes(name).constData());
    if (!text.isEmpty())
        element.append_child(pugi::node_pcdata).set_value(toBytes(text).constData());
    return Access::sibling(*this, element);
}

XmlNode XmlNode::cloneNode(bool deep) const
{
    const pugi::xml_node source = Access::resolved(*this);
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
    return Access::handle(draft, draft->tree, copy.internal_object());
}

XmlNodeList XmlNode::selectNodes(const QString& expression) const
{
    const pugi::xml_node context = Access::resolved(*this);
    // By columns, where the expression is of the family that searches build.
    const auto plan = context ? SearchPlan::parse(toBytes(expression).toStdString()) : std::nullopt;
    if (std::optional<xml::Nodes> found = plan ? m_tree->search.select(*plan, context) : std::nullopt)
        return Access::list(*this, std::move(*found));
    xml::Nodes nodes;
    evaluate(expression, [&](const pugi::xpath_query& query) {
        pugi::xpath_node_set found = query.evaluate_node_set(context);
        found.sort();
        nodes.reserve(found.size());
        for (const pugi::xpath_node& entry : found) {
            if (!entry.node()) // raised as the other failures of an expression are
                throw Error(QStringLiteral("XPath expression selects attributes, not nodes: ") + expression);
            nodes.push_back(entry.node().internal_object());
        }
    });
    return Access::list(*this, std::move(nodes));
}

XmlNode XmlNode::selectSingleNode(const QString& expression) const
{
    const pugi::xml_node context = Access::resolved(*this);
    return evaluate(expression, [&](const pugi::xpath_query& query) {
        return Access::sibling(*this, query.evaluate_node(context).node());
    });
}

XmlDocument XmlNode::ownerDocument() const
{
    Access::resolved(*this);
    return m_state ? Access::document(m_state) : XmlDocument();
}

bool operator==(const XmlNode& a, const XmlNode& b)
{
    return Access::resolved(a) == Access::resolved(b) && a.m_state == b.m_state;
}

// XmlNodeList

std::size_t XmlNodeList::size() const
{
    return m_list ? m_list->nodes.size() : 0;
}

XmlNode XmlNodeList::at(std::size_t index) const
{
    return index < size() ? Access::handle(m_list->state, m_list->tree, m_list->nodes[index]) : XmlNode();
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
    return Access::handle(m_state, m_state->tree, m_state->tree->dom.document_element().internal_object());
}

XmlNode XmlDocument::appendChild(const XmlNode& element)
{
    if (!documentElement().isNull())
        throw Error(QStringLiteral("The XML document has a root element already"));
    return Access::root(*this).appendChild(element);
}

XmlNode XmlDocument::createElement(const QString& name) const
{
    const auto draft = makeDraft();
    const pugi::xml_node element = draft->tree->dom.append_child(toBytes(name).constData());
    return Access::handle(draft, draft->tree, element.internal_object());
}

XmlNodeList XmlDocument::selectNodes(const QString& expression) const
{
    return Access::root(*this).selectNodes(expression);
}

XmlNode XmlDocument::selectSingleNode(const QString& expression) const
{
    return Access::root(*this).selectSingleNode(expression);
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
