#pragma once

#include "support/OwnDisplay.h"
#include "support/SanitizedLibrary.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLibraryInfo>
#include <QProcess>
#include <QTemporaryDir>

namespace tavrin::test {

/// One run of the real Qt Designer, on a display of its own, with the plugin and the probe that looks around
/// in it.
class DesignerRun
{
public:
    ~DesignerRun()
    {
        m_designer.kill();
        m_designer.waitForFinished();
    }

    /// What the machine lacks; "" when nothing.
    static QString missing()
    {
        if (designerProgram().isEmpty())
            return QStringLiteral("Qt Designer is not installed (package designer-qt6)");
        return OwnDisplay::missing();
    }

    QString path(const QString& name) const { return m_folder.filePath(name); }

    /// Runs it to its end; "" or what went wrong.
    QString run(const QString& form, QJsonObject script)
    {
        const QString scriptFile = path(QStringLiteral("script.json"));
        script.insert(QStringLiteral("report"), path(QStringLiteral("report.json")));
        QFile file(scriptFile);
        if (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument(script).toJson()) < 0)
            return file.errorString();
        file.close();
        const QString display = m_display.start();
        if (display.isEmpty())
            return QStringLiteral("There is no display: ") + m_display.output();
        m_designer.setProcessEnvironment(environment(display, scriptFile));
        m_designer.start(designerProgram(), {form});
        const bool ended = m_designer.waitForFinished(120000);
        output = QString::fromLocal8Bit(m_designer.readAllStandardError());
        QFile written(path(QStringLiteral("report.json")));
        if (written.open(QIODevice::ReadOnly))
            report = QJsonDocument::fromJson(written.readAll()).object();
        const QString fault = report.value(QStringLiteral("fault")).toString();
        if (!ended || m_designer.exitStatus() != QProcess::NormalExit || m_designer.exitCode() != 0)
            return QStringLiteral("Designer ended with %1 %2\n%3")
                .arg(m_designer.exitCode())
                .arg(fault, output);
        return fault;
    }

    /// Without, Designer knows none of the controls.
    bool hasPlugin = true;
    QJsonObject report;
    /// What Designer wrote to its standard error.
    QString output;

private:
    static QString designerProgram()
    {
        const QString program = QLibraryInfo::path(QLibraryInfo::BinariesPath) + QStringLiteral("/designer");
        return QFileInfo(program).isExecutable() ? program : QString();
    }

    QProcessEnvironment environment(const QString& display, const QString& scriptFile) const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DISPLAY"), display);
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
        environment.insert(QStringLiteral("QT_PLUGIN_PATH"),
                           hasPlugin ? QStringLiteral(TAVRIN_DESIGNER_PLUGINS ":" TAVRIN_PROBE_PLUGINS)
                                     : QStringLiteral(TAVRIN_PROBE_PLUGINS));
        environment.insert(QStringLiteral("TAVRIN_PROBE_SCRIPT"), scriptFile);
        environment.insert(QStringLiteral("TAVRIN_INPUT"), QStringLiteral(TAVRIN_INPUT));
        // Nothing of the person's own comes in.
        environment.insert(QStringLiteral("HOME"), m_folder.path());
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), path(QStringLiteral("config")));
        environment.insert(QStringLiteral("XDG_DATA_HOME"), path(QStringLiteral("data")));
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_folder.path());
        letLoadSanitizedLibrary(environment);
        return environment;
    }

    QTemporaryDir m_folder;
    OwnDisplay m_display;
    QProcess m_designer;
};

} // namespace tavrin::test
