#pragma once

#include "frame/control_frame/UserControl.h"

#include <QtDesigner/QDesignerTaskMenuExtension>

#include <memory>
#include <vector>

class QMenu;

namespace tavrin::designer {

/// What the designer's menu of a control offers beside the usual: a code table by its name, where the host
/// has installed the names, and a system colour, which changes with the theme, in the place of a fixed one.
class ControlMenu : public QObject, public QDesignerTaskMenuExtension
{
    Q_OBJECT
    Q_INTERFACES(QDesignerTaskMenuExtension)

public:
    ControlMenu(UserControl& control, QObject* parent);
    ~ControlMenu() override;

    QList<QAction*> taskActions() const override;
    /// For a double click: to choose a table, where there is one to choose.
    QAction* preferredEditAction() const override;

private:
    void addTableAction(const char* property);
    void addColorMenu(const char* property);
    /// The editor shows a system colour as its number; the menu tells which it is.
    void markColor(const QMenu& menu) const;
    /// Whether there is a table to choose: a host may have installed its names meanwhile.
    bool offersTable() const;
    void chooseTable(const QString& property);
    /// As the property editor does: it can be undone.
    void put(const QString& property, const QVariant& value);

    UserControl& m_control;
    QAction* m_chooseTable = nullptr;
    QList<QAction*> m_actions;
    std::vector<std::unique_ptr<QMenu>> m_menus;
};

} // namespace tavrin::designer
