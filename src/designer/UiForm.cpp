#include "designer/UiForm.h"

#include "base/failure/Error.h"
#include "base/failure/Guard.h"
#include "component/ClassRegister.h"
#include "designer/UiFormContent.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QSet>
#include <QtUiTools/QUiLoader>

namespace tavrin {

namespace {

class Loader final : public QUiLoader
{
public:
    Loader(const UiFormContent& content, UiFormProblems& problems)
        : m_content(content)
        , m_problems(problems)
    {
        const QStringList known = availableWidgets();
        m_known = {known.begin(), known.end()};
        m_known.insert(QStringLiteral("Line")); // Qt's loader makes it and does not name it
    }

    QWidget* createWidget(const QString& className, QWidget* parent, const QString& name) override
    {
        m_current = name;
        QWidget* made = nullptr;
        if (className.startsWith(ControlNamespace))
            made = createControl(className.mid(ControlNamespace.size()), parent, name);
        else if (m_known.contains(className))
            made = QUiLoader::createWidget(className, parent, name);
        else
            made = createInItsPlace(className, parent, name);
        m_made = made;
        return made;
    }

    /// A failure that nobody caught while the form is made: the loader puts the properties of a widget once
    /// it has made it.
    void noteFailure(const Error& error, const QString& where)
    {
        const auto* control = qobject_cast<const UserControl*>(m_made.get());
        const QString type = control ? control->typeName() + u'.' : QString();
        if (control && where.startsWith(type))
            m_problems.addOfControl(
                m_current,
                QStringLiteral("The property %1: %2").arg(where.mid(type.size()), error.Description));
        else
            m_problems.add(where + QStringLiteral(": ") + error.Description);
    }

private:
    QWidget* createControl(const QString& control, QWidget* parent, const QString& name)
    {
        try {
            return publicControls().create(QStringLiteral("TVBoundControls.") + control, parent, {name});
        } catch (...) {
            m_problems.addOfControl(name, Error::fromCurrentException().Description);
        }
        return emptyWidget(parent, name);
    }

    /// Of a class that is not there: what the form says that it extends.
    QWidget* createInItsPlace(const QString& className, QWidget* parent, const QString& name)
    {
        m_problems.addOfWidget(name, QStringLiteral("There is no class %1").arg(className));
        for (const QString& base : m_content.basesOf(className)) {
            if (base.startsWith(ControlNamespace) || m_known.contains(base))
                return createWidget(base, parent, name);
        }
        return emptyWidget(parent, name);
    }

    static QWidget* emptyWidget(QWidget* parent, const QString& name)
    {
        auto* nothing = new QWidget(parent);
        nothing->setObjectName(name);
        return nothing;
    }

    const UiFormContent& m_content;
    UiFormProblems& m_problems;
    QSet<QString> m_known;
    QString m_current;
    QPointer<QWidget> m_made;
};

/// Sends failures that nobody catches to a loader, and no longer than it works.
class FailuresOfLoading
{
public:
    explicit FailuresOfLoading(Loader& loader)
        : m_before(setUnhandledErrorHandler(
              [&loader](const Error& error, const QString& where) { loader.noteFailure(error, where); }))
    {
    }
    ~FailuresOfLoading() { setUnhandledErrorHandler(m_before); }
    FailuresOfLoading(const FailuresOfLoading&) = delete;
    FailuresOfLoading& operator=(const FailuresOfLoading&) = delete;

private:
    UnhandledErrorHandler m_before;
};

} // namespace

QWidget* loadUiForm(const QString& fileName, QWidget* parent, QStringList& texts)
{
    UiFormProblems problems(fileName, texts);
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        problems.add(file.errorString());
        return nullptr;
    }
    const QDir folder = QFileInfo(fileName).absoluteDir();
    const UiFormContent content(file.readAll(), folder);
    if (const QString fault = content.fault(); !fault.isEmpty()) {
        problems.add(fault);
        return nullptr;
    }
    QByteArray checked = content.forLoader(problems);
    QBuffer device(&checked);
    device.open(QIODevice::ReadOnly);
    Loader loader(content, problems);
    loader.setWorkingDirectory(folder);
    const FailuresOfLoading failures(loader);
    QWidget* form = loader.load(&device, parent);
    if (!form)
        problems.add(loader.errorString());
    return form;
}

} // namespace tavrin
