#pragma once

#include <QObject>
#include <QString>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

namespace tavrin::designer {

/// One public control as form designers and form loaders make it.
///
/// In a form designer, which introduces itself by `initialize`, the controls run in their design-time life
/// and ask no host. A form loader, as `QUiLoader`, makes them as the application would.
class ControlPlugin : public QObject, public QDesignerCustomWidgetInterface
{
    Q_OBJECT
    Q_INTERFACES(QDesignerCustomWidgetInterface)

public:
    /// `className` as in "TVBoundControls.AgencyPicker".
    ControlPlugin(const QString& className, QObject* parent);

    QString name() const override;
    QString group() const override { return QStringLiteral("Tavrin Bound User Controls"); }
    QString toolTip() const override;
    QString whatsThis() const override;
    QString includeFile() const override;
    QIcon icon() const override;
    bool isContainer() const override { return false; }
    /// A control that cannot be made goes to the handler of unhandled errors, and the answer is nullptr.
    QWidget* createWidget(QWidget* parent) override;
    bool isInitialized() const override { return m_inDesigner; }
    void initialize(QDesignerFormEditorInterface* designer) override;
    QString domXml() const override;

private:
    QString m_className;
    QString m_control;
    bool m_inDesigner = false;
};

} // namespace tavrin::designer
