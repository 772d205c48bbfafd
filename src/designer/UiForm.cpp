#include "designer/UiForm.h"

#include "base/failure/Error.h"
#include "base/values/Color.h"
#include "base/values/Font.h"
#include "component/ClassRegister.h"

#include <QBuffer>
#include <QFile>
#include <QMetaProperty>
#include <QXmlStreamReader>
#include <QtUiTools/QUiLoader>

#include <vector>

namespace tavrin {

namespace {

constexpr QLatin1String Namespace("tavrin::");

/// Notes what is wrong, with the file before it.
class Problems
{
public:
    Problems(const QString& fileName, QStringList& texts)
        : m_fileName(fileName)
        , m_texts(texts)
    {
    }
    void add(const QString& problem) { m_texts << m_fileName + QStringLiteral(": ") + problem; }

private:
    QString m_fileName;
    QStringList& m_texts;
};

class Loader final : public QUiLoader
{
public:
    explicit Loader(Problems& problems)
        : m_problems(problems)
    {
    }

    QWidget* createWidget(const QString& className, QWidget* parent, const QString& name) override
    {
        if (!className.startsWith(Namespace))
            return QUiLoader::createWidget(className, parent, name);
        try {
            const QString control = className.mid(Namespace.size());
            return publicControls().create(QStringLiteral("TVBoundControls.") + control, parent, {name});
        } catch (...) {
            m_problems.add(
                QStringLiteral("control \"%1\": %2.").arg(name, Error::fromCurrentException().Description));
        }
        auto* nothing = new QWidget(parent);
        nothing->setObjectName(name);
        return nothing;
    }

private:
    Problems& m_problems;
};

/// One property of a control in the file, with the element that holds its value.
struct SavedValue
{
    QString control;
    QString property;
    QString element;
};

std::vector<SavedValue> controlValues(const QByteArray& content)
{
    std::vector<SavedValue> values;
    QStringList path; // of elements, a widget with its name
    QXmlStreamReader xml(content);
    QString property;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isEndElement() && !path.isEmpty())
            path.removeLast();
        if (!xml.isStartElement())
            continue;
        const QString above = path.value(path.size() - 1);
        const QString element = xml.name().toString();
        const QXmlStreamAttributes attributes = xml.attributes();
        if (above == QLatin1String("property") && path.value(path.size() - 2).startsWith(Namespace)) {
            const QString control = path.value(path.size() - 2).section(u'/', 1);
            values.push_back({control, property, element});
        }
        if (element == QLatin1String("property"))
            property = attributes.value(QLatin1String("name")).toString();
        const bool isControl = element == QLatin1String("widget") &&
                               attributes.value(QLatin1String("class")).startsWith(Namespace);
        path << (isControl ? QString(Namespace) + u'/' + attributes.value(QLatin1String("name")).toString()
                           : element);
    }
    return values;
}

/// What keeps it from being read at all; "" for nothing. Asked first, since Qt's loader prints it besides.
QString faultOf(const QByteArray& content)
{
    QXmlStreamReader xml(content);
    while (!xml.atEnd())
        xml.readNext();
    return xml.hasError() ? QStringLiteral("line %1, column %2: %3")
                                .arg(xml.lineNumber())
                                .arg(xml.columnNumber())
                                .arg(xml.errorString())
                          : QString();
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

void check(const SavedValue& saved, const QWidget& form, Problems& problems)
{
    const bool isForm = form.objectName() == saved.control;
    const QWidget* widget = isForm ? &form : form.findChild<QWidget*>(saved.control);
    const auto* control = qobject_cast<const UserControl*>(widget);
    if (!control || !saved.property.at(0).isUpper())
        return;
    const QMetaObject& meta = *control->metaObject();
    const int index = meta.indexOfProperty(saved.property.toLatin1().constData());
    const QString place = QStringLiteral("control \"%1\": ").arg(saved.control);
    if (index < 0) {
        problems.add(place +
                     QStringLiteral("%1 has no property %2.").arg(control->typeName(), saved.property));
        return;
    }
    const QMetaProperty property = meta.property(index);
    if (!property.isWritable())
        problems.add(place + QStringLiteral("The property %1 can only be read.").arg(saved.property));
    else if (!elementsOf(property.metaType()).contains(saved.element))
        problems.add(
            place +
            QStringLiteral("The property %1 cannot be read from a <%2>.").arg(saved.property, saved.element));
}

} // namespace

QWidget* loadUiForm(const QString& fileName, QWidget* parent, QStringList& texts)
{
    Problems problems(fileName, texts);
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        problems.add(file.errorString() + u'.');
        return nullptr;
    }
    QByteArray content = file.readAll();
    if (const QString fault = faultOf(content); !fault.isEmpty()) {
        problems.add(fault);
        return nullptr;
    }
    QBuffer device(&content);
    device.open(QIODevice::ReadOnly);
    Loader loader(problems);
    QWidget* form = loader.load(&device, parent);
    if (!form) {
        problems.add(loader.errorString());
        return nullptr;
    }
    for (const SavedValue& saved : controlValues(content)) {
        if (!saved.property.isEmpty())
            check(saved, *form, problems);
    }
    return form;
}

} // namespace tavrin
