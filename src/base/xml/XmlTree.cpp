#include "base/xml/XmlTree.h"

#include "base/failure/Error.h"

#include <QStringView>
#include <QXmlStreamReader>

#include <algorithm>
#include <cstring>

namespace tavrin::xml {

namespace {

/// Deeper documents are refused: working on them recurses.
constexpr int MaxDepth = 1000;

[[noreturn]] void raiseAt(qint64 line, qint64 column, const QString& what)
{
    throw Error(QStringLiteral("XML is not well-formed at line %1, column %2: ")
                    .arg(line)
                    .arg(std::max<qint64>(column, 1)) +
                what);
}

/// Half a character is none; the reader does not see that.
void checkSurrogates(const QString& text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!text.at(i).isSurrogate())
            continue;
        if (text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
            ++i;
            continue;
        }
        const QStringView before = QStringView(text).left(i);
        raiseAt(before.count(u'\n') + 1, i - before.lastIndexOf(u'\n'), QStringLiteral("Half a character."));
    }
}

/// Raises for a text that is not well-formed, with the place where Qt's strict reader stops; the parser of
/// the tree passes over much of that.
void checkWellFormed(const QString& text)
{
    checkSurrogates(text);
    QXmlStreamReader reader(text);
    reader.setNamespaceProcessing(false);
    int depth = 0;
    while (!reader.atEnd()) {
        const QXmlStreamReader::TokenType token = reader.readNext();
        if (token == QXmlStreamReader::StartElement && ++depth > MaxDepth)
            reader.raiseError(QStringLiteral("Elements nest too deep."));
        else if (token == QXmlStreamReader::EndElement)
            --depth;
    }
    if (!reader.hasError())
        return;
    raiseAt(reader.lineNumber(), reader.columnNumber(), reader.errorString());
}

void appendUnit(QByteArray& bytes, char16_t unit)
{
    if (unit == 0) {
        bytes.append("\xC0\x80", 2);
        return;
    }
    bytes.append(static_cast<char>(0xE0 | unit >> 12));
    bytes.append(static_cast<char>(0x80 | (unit >> 6 & 0x3F)));
    bytes.append(static_cast<char>(0x80 | (unit & 0x3F)));
}

} // namespace

State::State(std::shared_ptr<Tree> content)
    : tree(std::move(content))
{
    ++tree->documents;
}

State::~State()
{
    --tree->documents;
}

void State::moveTo(std::shared_ptr<Tree> next)
{
    tree->left = true;
    --tree->documents;
    tree = std::move(next);
    ++tree->documents;
}

const State::Forward* State::forwardFrom(const Tree* from) const
{
    for (const Forward& forward : forwards) {
        if (forward.from.get() == from)
            return &forward;
    }
    return nullptr;
}

NodeMap pairUp(pugi::xml_node from, pugi::xml_node to)
{
    NodeMap map;
    std::vector<std::pair<pugi::xml_node, pugi::xml_node>> open{{from, to}};
    while (!open.empty()) {
        auto [source, copy] = open.back();
        open.pop_back();
        map.emplace(source.internal_object(), copy.internal_object());
        pugi::xml_node copyChild = copy.first_child();
        for (const pugi::xml_node child : source.children()) {
            open.emplace_back(child, copyChild);
            copyChild = copyChild.next_sibling();
        }
    }
    return map;
}

void forgetBelow(pugi::xml_node top, NodeMap& map)
{
    std::erase_if(map, [top](const auto& entry) {
        for (pugi::xml_node above = pugi::xml_node(entry.second).parent(); above; above = above.parent()) {
            if (above == top)
                return true;
        }
        return false;
    });
}

pugi::xml_node samePlace(pugi::xml_node node, const pugi::xml_document& copy)
{
    std::vector<int> path;
    for (; node.parent(); node = node.parent()) {
        int index = 0;
        for (pugi::xml_node before = node.previous_sibling(); before; before = before.previous_sibling())
            ++index;
        path.push_back(index);
    }
    pugi::xml_node place = copy;
    for (auto index = path.rbegin(); index != path.rend(); ++index) {
        place = place.first_child();
        for (int i = 0; i < *index; ++i)
            place = place.next_sibling();
    }
    return place;
}

pugi::xml_node childElement(pugi::xml_node parent, const char* name)
{
    return parent.find_child([name](pugi::xml_node child) {
        return child.type() == pugi::node_element && std::strcmp(child.name(), name) == 0;
    });
}

void collectText(pugi::xml_node top, std::string& text)
{
    for (pugi::xml_node node = top; node;) {
        if (node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata)
            text += node.value();
        if (const pugi::xml_node child = node.first_child()) {
            node = child;
            continue;
        }
        while (node != top && !node.next_sibling())
            node = node.parent();
        if (node == top)
            return;
        node = node.next_sibling();
    }
}

QByteArray toBytes(const QString& text)
{
    const auto special = [](QChar character) { return character.isNull() || character.isSurrogate(); };
    if (std::none_of(text.begin(), text.end(), special))
        return text.toUtf8();
    QByteArray bytes;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar character = text.at(i);
        if (character.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate())
            bytes += QStringView(text).mid(i++, 2).toUtf8();
        else if (special(character))
            appendUnit(bytes, character.unicode());
        else
            bytes += QStringView(text).mid(i, 1).toUtf8();
    }
    return bytes;
}

QString fromBytes(const char* bytes)
{
    const auto length = static_cast<qsizetype>(std::strlen(bytes));
    const auto special = [](char byte) { return byte == '\xC0' || byte == '\xED'; };
    if (std::none_of(bytes, bytes + length, special))
        return QString::fromUtf8(bytes, length);
    QString text;
    qsizetype plainFrom = 0;
    const auto takePlain = [&](qsizetype end) {
        text += QString::fromUtf8(bytes + plainFrom, end - plainFrom);
    };
    for (qsizetype i = 0; i < length; ++i) {
        const auto next = [&](qsizetype ahead) { return static_cast<unsigned char>(bytes[i + ahead]); };
        if (next(0) == 0xC0) {
            takePlain(i);
            text += QChar(0);
            plainFrom = ++i + 1;
        } else if (next(0) == 0xED && next(1) >= 0xA0) {
            takePlain(i);
            text += QChar(static_cast<char16_t>(0xD000 | (next(1) & 0x3F) << 6 | (next(2) & 0x3F)));
            i += 2;
            plainFrom = i + 1;
        }
    }
    takePlain(length);
    return text;
}

void parse(const QString& text, pugi::xml_document& dom)
{
    checkWellFormed(text);
    const QByteArray bytes = text.toUtf8();
    constexpr unsigned int options = pugi::parse_default | pugi::parse_comments | pugi::parse_pi;
    const pugi::xml_parse_result result = dom.load_buffer(
        bytes.constData(), static_cast<std::size_t>(bytes.size()), options, pugi::encoding_utf8);
    if (!result)
        throw Error(QStringLiteral("XML cannot be read: ") + QString::fromLatin1(result.description()));
}

} // namespace tavrin::xml
