#include "FormFile.h"

#include "base/Error.h"
#include "base/FileWriter.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

namespace tavrin {

namespace {

FormFile::Control controlFromJson(const QJsonObject& object, const QString& fileName, QStringList& problems)
{
    FormFile::Control control;
    control.className = object.value(QStringLiteral("class")).toString();
    control.name = object.value(QStringLiteral("name")).toString();
    QStringList bagProblems;
    control.properties =
        PropertyBag::fromJson(object.value(QStringLiteral("properties")).toObject(), &bagProblems);
    control.host = object.value(QStringLiteral("host")).toObject();
    for (const QString& problem : bagProblems)
        problems << QStringLiteral("%1: control \"%2\": %3.").arg(fileName, control.name, problem);
    return control;
}

} // namespace

FormFile FormFile::fromJson(const QByteArray& content, const QString& fileName, QStringList& problems)
{
    FormFile form;
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(content, &error);
    if (error.error != QJsonParseError::NoError) {
        const auto line = content.left(error.offset).count('\n') + 1;
        problems << QStringLiteral("%1: line %2: %3.").arg(fileName).arg(line).arg(error.errorString());
        return form;
    }
    form.title = document.object().value(QStringLiteral("title")).toString();
    for (const QJsonValue& control : document.object().value(QStringLiteral("controls")).toArray())
        form.controls.push_back(controlFromJson(control.toObject(), fileName, problems));
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
