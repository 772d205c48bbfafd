#include "frame/control_frame/FormFile.h"

#include "base/failure/Error.h"
#include "base/files/FileWriter.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

namespace tavrin {

namespace {

/// Reads the parts of one JSON object; one of a wrong type is a problem, a missing one is not.
class Reader
{
public:
    Reader(const QJsonObject& object, QStringList& problems)
        : m_object(object)
        , m_problems(problems)
    {
    }

    QString text(const QString& key) { return part(key, QJsonValue::String, "is not a text").toString(); }
    QJsonArray list(const QString& key) { return part(key, QJsonValue::Array, "are not a list").toArray(); }
    QJsonObject object(const QString& key, const char* complaint)
    {
        return part(key, QJsonValue::Object, complaint).toObject();
    }

private:
    QJsonValue part(const QString& key, QJsonValue::Type type, const char* complaint)
    {
        QJsonValue value = m_object.value(key);
        if (!value.isUndefined() && value.type() != type)
            m_problems << QStringLiteral("The %1 %2").arg(key, QString::fromLatin1(complaint));
        return value;
    }

    const QJsonObject& m_object;
    QStringList& m_problems;
};

FormFile::Control controlFromJson(const QJsonObject& object, const QString& fileName, QStringList& problems)
{
    FormFile::Control control;
    QStringList found;
    Reader reader(object, found);
    control.className = reader.text(QStringLiteral("class"));
    control.name = reader.text(QStringLiteral("name"));
    control.properties =
        PropertyBag::fromJson(reader.object(QStringLiteral("properties"), "are not an object"), &found);
    control.host = reader.object(QStringLiteral("host"), "part is not an object");
    for (const QString& problem : found)
        problems << QStringLiteral("%1: control \"%2\": %3.").arg(fileName, control.name, problem);
    return control;
}

} // namespace

FormFile FormFile::fromJson(const QByteArray& content, const QString& fileName, QStringList& problems)
{
    FormFile form;
    const auto complain = [&](const QString& problem) {
        problems << QStringLiteral("%1: %2.").arg(fileName, problem);
    };
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(content, &error);
    if (error.error != QJsonParseError::NoError) {
        const auto line = content.left(error.offset).count('\n') + 1;
        complain(QStringLiteral("line %1: ").arg(line) + error.errorString());
        return form;
    }
    if (!document.isObject())
        complain(QStringLiteral("The form is not an object"));
    QStringList found;
    const QJsonObject object = document.object();
    Reader reader(object, found);
    form.title = reader.text(QStringLiteral("title"));
    const QJsonArray list = reader.list(QStringLiteral("controls"));
    for (const QString& problem : found)
        complain(problem);
    for (qsizetype i = 0; i < list.size(); ++i) {
        if (list.at(i).isObject())
            form.controls.push_back(controlFromJson(list.at(i).toObject(), fileName, problems));
        else
            complain(QStringLiteral("Control %1 is not an object").arg(i + 1));
    }
    return form;
}

FormFile FormFile::load(const QString& fileName, QStringList& problems)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        problems << QStringLiteral("%1: %2.").arg(fileName, file.errorString());
        return {};
    }
    return fromJson(file.readAll(), fileName, problems);
}

QByteArray FormFile::toJson() const
{
    QJsonArray list;
    for (const Control& control : controls) {
        QJsonObject object{{QStringLiteral("class"), control.className},
                           {QStringLiteral("name"), control.name},
                           {QStringLiteral("properties"), control.properties.toJson()}};
        if (!control.host.isEmpty())
            object.insert(QStringLiteral("host"), control.host);
        list.append(object);
    }
    return QJsonDocument(QJsonObject{{QStringLiteral("title"), title}, {QStringLiteral("controls"), list}})
        .toJson();
}

void FormFile::save(const QString& fileName) const
{
    replaceFile(fileName, toJson());
}

std::vector<UserControl*> FormFile::createControls(const ControlRegister& classes, QWidget* parent,
                                                   const QString& fileName, QStringList& problems) const
{
    std::vector<UserControl*> created;
    for (const Control& control : controls) {
        UserControl* made = nullptr;
        try {
            made = classes.create(control.className, parent, {control.name, &control.properties});
        } catch (const Error& error) {
            problems
                << QStringLiteral("%1: control \"%2\": %3.").arg(fileName, control.name, error.Description);
        }
        created.push_back(made);
    }
    return created;
}

} // namespace tavrin
