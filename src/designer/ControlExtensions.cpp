#include "designer/ControlExtensions.h"

#include "designer/ControlMenu.h"
#include "designer/ControlSheet.h"
#include "designer/PropertyStandIn.h"

#include <QScopedValueRollback>
#include <QtDesigner/QDesignerFormEditorInterface>
#include <QtDesigner/QExtensionFactory>
#include <QtDesigner/QExtensionManager>

namespace tavrin::designer {

namespace {

class SheetFactory final : public QExtensionFactory
{
public:
    using QExtensionFactory::QExtensionFactory;

protected:
    QObject* createExtension(QObject* object, const QString& iid, QObject* parent) const override
    {
        auto* control = qobject_cast<UserControl*>(object);
        if (!control || m_asking || iid != QLatin1String(Q_TYPEID(QDesignerPropertySheetExtension)))
            return nullptr;
        // Asked a second time from here, the manager goes on to the designer's own factory.
        const QScopedValueRollback asking(m_asking, true);
        auto* widgetSheet = qt_extension<QDesignerPropertySheetExtension*>(extensionManager(), control);
        auto* standInSheet =
            qt_extension<QDesignerPropertySheetExtension*>(extensionManager(), new PropertyStandIn(*control));
        if (!widgetSheet || !standInSheet)
            return nullptr;
        return new ControlSheet(*control, *widgetSheet, *standInSheet, parent);
    }

private:
    mutable bool m_asking = false;
};

class MenuFactory final : public QExtensionFactory
{
public:
    using QExtensionFactory::QExtensionFactory;

protected:
    QObject* createExtension(QObject* object, const QString& iid, QObject* parent) const override
    {
        auto* control = qobject_cast<UserControl*>(object);
        if (!control || iid != QLatin1String(Q_TYPEID(QDesignerTaskMenuExtension)))
            return nullptr;
        return new ControlMenu(*control, parent);
    }
};

} // namespace

void installExtensions(QDesignerFormEditorInterface& designer)
{
    QExtensionManager* manager = designer.extensionManager();
    if (!manager)
        return;
    manager->registerExtensions(new SheetFactory(manager),
                                QLatin1String(Q_TYPEID(QDesignerPropertySheetExtension)));
    manager->registerExtensions(new MenuFactory(manager),
                                QLatin1String(Q_TYPEID(QDesignerTaskMenuExtension)));
}

} // namespace tavrin::designer
