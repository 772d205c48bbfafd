#include "designer/UiFormContent.h"

#include "base/values/Color.h"
#include "base/values/Font.h"
#include "component/ClassRegister.h"

#include <QFileInfo>
#include <QImageReader>
#include <QMetaProperty>
#include <QStringList>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <algorithm>
#include <vector>

namespace tavrin {

namespace {

bool isElement(const QXmlStreamReader& xml, const char* name)
{
    return xml.isStartElement() && xml.name() == QLatin1String(name);
}

QString attributeOf(const QXmlStreamReader& xml, const char* name)
{
    return xml.attributes().value(QLatin1String(name)).toString();
}

/// The elements that hold a value of a type.
QStringList elementsOf(QMetaType type)
{
    if (type == QMetaType::fromType<Color>())
        return {QStringLiteral("color"), QStringLiteral("number"), QStringLiteral("uInt")};
    if (type == QMetaType::fromType<FontPtr>())
        return {QStringLiteral("font")};
    switch (type.id()) {
    case QMetaType::QImage:
        return {QStringLiteral("pixmap")};
    case QMetaType::Bool:
        return {QStringLiteral("bool")};
    case QMetaType::Int:
        return {QStringLiteral("number")};
    case QMetaType::QString:
        return {QStringLiteral("string")};
    default:
        return {QStringLiteral("string"), QStringLiteral("number"), QStringLiteral("double")};
    }
}

/// Whether the text is what the element is for; Qt takes any other for 0 or no.
bool isRead(const QString& element, const QString& text)
{
    static const QStringList parts{QStringLiteral("red"), QStringLiteral("green"), QStringLiteral("blue")};
    static const QStringList numbers{QStringLiteral("number"), QStringLiteral("pointsize"),
                                     QStringLiteral("weight")};
    bool isNumber = true;
    if (parts.contains(element)) {
        const int part = text.toInt(&isNumber);
        return isNumber && part >= 0 && part <= 255;
    }
    if (numbers.contains(element))
        static_cast<void>(text.toInt(&isNumber));
    else if (element == QLatin1String("uInt"))
        static_cast<void>(text.toUInt(&isNumber));
    else if (element == QLatin1String("double"))
        static_cast<void>(text.toDouble(&isNumber));
    else if (element == QLatin1String("bool"))
        return text == QLatin1String("true") || text == QLatin1String("false");
    return isNumber;
}

} // namespace

/// A property with the element that holds its value, as they were read.
struct UiFormContent::Property
{
    struct Part
    {
        QXmlStreamReader::TokenType type;
        QString text; ///< an element's name, or characters
        QXmlStreamAttributes attributes;
    };

    void write(QXmlStreamWriter& writer) const
    {
        for (const Part& part : parts) {
            if (part.type == QXmlStreamReader::StartElement) {
                writer.writeStartElement(part.text);
                writer.writeAttributes(part.attributes);
            } else if (part.type == QXmlStreamReader::EndElement) {
                writer.writeEndElement();
            } else {
                writer.writeCharacters(part.text);
            }
        }
    }

    /// An element inside it, with its characters.
    struct Value
    {
        QString element;
        QString text;
    };

    QString name;
    /// The first is the one that holds the value; more when that has parts.
    std::vector<Value> values;
    std::vector<Part> parts;
};

UiFormContent::UiFormContent(const QByteArray& content, const QDir& folder)
    : m_content(content)
    , m_folder(folder)
{
    readBases();
}

void UiFormContent::readBases()
{
    QXmlStreamReader xml(m_content);
    QString className;
    bool isInside = false; // a widget of the form has elements "class" too
    while (!xml.atEnd()) {
        xml.readNext();
        if (isElement(xml, "customwidget"))
            isInside = true;
        else if (isInside && isElement(xml, "class"))
            className = xml.readElementText(QXmlStreamReader::SkipChildElements).trimmed();
        else if (isInside && isElement(xml, "extends"))
            m_bases.insert(className, xml.readElementText(QXmlStreamReader::SkipChildElements).trimmed());
        else if (xml.isEndElement() && xml.name() == QLatin1String("customwidget"))
            isInside = false;
    }
}

QString UiFormContent::fault() const
{
    QXmlStreamReader xml(m_content);
    while (!xml.atEnd())
        xml.readNext();
    return xml.hasError() ? QStringLiteral("line %1, column %2: %3")
                                .arg(xml.lineNumber())
                                .arg(xml.columnNumber())
                                .arg(xml.errorString())
                          : QString();
}

QStringList UiFormContent::basesOf(const QString& className) const
{
    QStringList bases;
    QString base = m_bases.value(className);
    while (!base.isEmpty() && base != className && !bases.contains(base)) { // some name each other
        bases << base;
        base = m_bases.value(base);
    }
    return bases;
}

QString UiFormContent::controlOf(const QString& className) const
{
    for (const QString& name : QStringList(className) + basesOf(className)) {
        if (name.startsWith(ControlNamespace))
            return name.mid(ControlNamespace.size());
    }
    return {};
}

UiFormContent::Property UiFormContent::readProperty(QXmlStreamReader& xml) const
{
    Property property;
    property.name = attributeOf(xml, "name");
    property.parts.push_back({xml.tokenType(), xml.name().toString(), xml.attributes()});
    for (int depth = 1; depth > 0 && !xml.atEnd();) {
        xml.readNext();
        if (xml.isStartElement()) {
            ++depth;
            property.values.push_back({xml.name().toString(), {}});
            property.parts.push_back({xml.tokenType(), xml.name().toString(), xml.attributes()});
        } else if (xml.isEndElement()) {
            --depth;
            property.parts.push_back({xml.tokenType(), {}, {}});
        } else if (xml.isCharacters()) {
            if (depth > 1)
                property.values.back().text += xml.text();
            property.parts.push_back({xml.tokenType(), xml.text().toString(), {}});
        }
    }
    if (property.values.empty())
        property.values.emplace_back();
    return property;
}

QString UiFormContent::pictureProblem(const Property& property) const
{
    const auto& [element, file] = property.values.front();
    if (element != QLatin1String("pixmap") || file.isEmpty())
        return {};
    QImageReader reader(QFileInfo(m_folder, file).absoluteFilePath());
    if (!reader.read().isNull())
        return {};
    return QStringLiteral("The picture %1 of the property %2 cannot be read: %3")
        .arg(file, property.name, reader.errorString());
}

QString UiFormContent::problemOf(const QString& control, const Property& property) const
{
    const PublicClass* known = findPublicClass(QStringLiteral("TVBoundControls.") + control);
    if (!known || property.name.isEmpty() || !property.name.at(0).isUpper())
        return pictureProblem(property);
    const int index = known->meta->indexOfProperty(property.name.toLatin1().constData());
    if (index < 0)
        return QStringLiteral("%1 has no property %2").arg(control, property.name);
    const QMetaProperty declared = known->meta->property(index);
    if (!declared.isWritable())
        return QStringLiteral("The property %1 can only be read").arg(property.name);
    const QString element = property.values.front().element;
    const QString words = QStringLiteral("The property %1 cannot be read from ").arg(property.name);
    if (!elementsOf(declared.metaType()).contains(element))
        return words + QStringLiteral("a <%1>").arg(element);
    for (const Property::Value& value : property.values) {
        if (!isRead(value.element, value.text))
            return words + u'"' + value.text + u'"';
    }
    return pictureProblem(property);
}

QByteArray UiFormContent::forLoader(UiFormProblems& problems) const
{
    struct Widget
    {
        bool isWidget = false;
        QString name = {};
        QString control = {};
    };
    QByteArray content;
    QXmlStreamReader xml(m_content);
    QXmlStreamWriter writer(&content);
    std::vector<Widget> path; // of elements
    while (!xml.atEnd()) {
        xml.readNext();
        if (isElement(xml, "property") && !path.empty() && path.back().isWidget) {
            const Property property = readProperty(xml);
            const QString problem = problemOf(path.back().control, property);
            if (problem.isEmpty())
                property.write(writer);
            else if (path.back().control.isEmpty())
                problems.addOfWidget(path.back().name, problem);
            else
                problems.addOfControl(path.back().name, problem);
            continue;
        }
        if (isElement(xml, "widget"))
            path.push_back({true, attributeOf(xml, "name"), controlOf(attributeOf(xml, "class"))});
        else if (xml.isStartElement())
            path.emplace_back();
        else if (xml.isEndElement())
            path.pop_back();
        if (!xml.hasError())
            writer.writeCurrentToken(xml);
    }
    return content;
}

} // namespace tavrin
