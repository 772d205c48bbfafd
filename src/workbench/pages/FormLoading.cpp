#include "workbench/pages/FormLoading.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

// The resource lies in a static library, which nothing else makes the linker take in.
static void takeInResources()
{
    Q_INIT_RESOURCE(workbench);
}

namespace tavrin::workbench {

namespace {

/// The form file of the given folder when there is one, else the built-in one.
QString formPath(const QString& formName, const QString& folder)
{
    const QString own = QDir(folder).filePath(formName);
    return !folder.isEmpty() && QFileInfo::exists(own) ? own
                                                       : QStringLiteral(":/workbench/forms/") + formName;
}

QString tr(const char* text)
{
    return QCoreApplication::translate("FormLoading", text);
}

} // namespace

LoadedForm loadForm(const QString& formName, const QString& formsFolder, QStringList& problems)
{
    takeInResources();
    QString path = formPath(formName, formsFolder);
    QStringList ownProblems;
    FormFile form = FormFile::load(path, ownProblems);
    problems << ownProblems;
    if (form.controls.empty() && !path.startsWith(u':')) {
        if (ownProblems.isEmpty())
            problems << tr("%1: The form has no controls.").arg(path);
        problems << tr("The built-in form is shown instead.");
        path = formPath(formName, QString());
        form = FormFile::load(path, problems);
    }
    return {std::move(form), path};
}

} // namespace tavrin::workbench
