#include "designer/ControlPlugin.h"

#include "base/failure/Guard.h"
#include "component/ClassRegister.h"
#include "designer/ControlExtensions.h"
#include "designer/ControlIcon.h"
#include "designer/ControlTexts.h"

#include <QVariant>
#include <QtDesigner/QDesignerFormEditorInterface>

#include <memory>
#include <optional>

namespace tavrin::designer {

namespace {

/// The designer has it when its extensions are installed: each of the plugin's controls is introduced to it.
constexpr char Installed[] = "_tavrin_extensions";

/// "AgencyPicker" as the name of an instance.
QString instanceName(const QString& control)
{
    return control.left(1).toLower() + control.mid(1);
}

} // namespace

ControlPlugin::ControlPlugin(const QString& className, QObject* parent)
    : QObject(parent)
    , m_className(className)
    , m_control(className.section(u'.', -1))
{
}

QString ControlPlugin::name() const
{
    return QStringLiteral("tavrin::") + m_control;
}

QString ControlPlugin::toolTip() const
{
    return textsOf(m_control).toolTip;
}

QString ControlPlugin::whatsThis() const
{
    return textsOf(m_control).whatsThis;
}

QString ControlPlugin::includeFile() const
{
    return QStringLiteral("<TVBoundControls/%1.h>").arg(m_control);
}

QIcon ControlPlugin::icon() const
{
    return controlIcon(m_control);
}

QWidget* ControlPlugin::createWidget(QWidget* parent)
{
    UserControl* control = nullptr;
    guard("createWidget", [&] {
        std::optional<DesignTime> designer;
        if (m_inDesigner)
            designer.emplace();
        control = publicControls().create(m_className, parent, {});
    });
    return control;
}

void ControlPlugin::initialize(QDesignerFormEditorInterface* designer)
{
    if (!designer || std::exchange(m_inDesigner, true))
        return;
    if (!designer->property(Installed).toBool())
        guard("initialize", [&] { installExtensions(*designer); });
    designer->setProperty(Installed, true);
}

QString ControlPlugin::domXml() const
{
    QSize size;
    guard("domXml", [&] {
        const DesignTime designer;
        size = std::unique_ptr<UserControl>(publicControls().create(m_className, nullptr, {}))->size();
    });
    return QStringLiteral("<ui language=\"c++\" displayname=\"%1\">"
                          "<widget class=\"%2\" name=\"%3\">"
                          "<property name=\"geometry\"><rect><x>0</x><y>0</y>"
                          "<width>%4</width><height>%5</height></rect></property>"
                          "</widget></ui>")
        .arg(m_control, name(), instanceName(m_control))
        .arg(size.width())
        .arg(size.height());
}

} // namespace tavrin::designer
