#pragma once

#include "designer/probe/PaletteDrag.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonObject>
#include <QObject>
#include <QTimer>
#include <QtDesigner/QDesignerFormEditorPluginInterface>

#include <functional>
#include <memory>
#include <vector>

class QDesignerFormWindowInterface;
class QDesignerPropertySheetExtension;
class QWidget;

/// Looks around inside the real Qt Designer: a plugin that, told so by a script in a JSON file, selects every
/// control of the form, notes what palette, property editor and menus offer, edits, saves by Designer's own
/// action, writes a report and leaves.
class DesignerProbe : public QObject, public QDesignerFormEditorPluginInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.Qt.Designer.QDesignerFormEditorPluginInterface")
    Q_INTERFACES(QDesignerFormEditorPluginInterface)

public:
    bool isInitialized() const override { return m_core; }
    void initialize(QDesignerFormEditorInterface* core) override;
    QAction* action() const override { return nullptr; }
    QDesignerFormEditorInterface* core() const override { return m_core; }

private:
    /// True once it is done; asked again until then.
    using Step = std::function<bool()>;

    void goOn();
    void planSteps();
    void planControls();
    bool isReady();
    /// What a box says, which then gets its ordinary answer.
    void answerBox();
    bool notePalette();
    bool drag();
    bool noteControl(QWidget* control);
    bool edit();
    bool chooseTable();
    bool takePictures();
    void makeRoom(QWidget& window);
    void openGroupOnly();
    void showOwnProperties();
    bool save();
    void leave(const QString& fault);

    QDesignerFormWindowInterface* form() const;
    QWidget* widget(const QString& name) const;
    QDesignerPropertySheetExtension* sheetOf(QWidget* control) const;
    QJsonObject sheetReport(QWidget* control) const;

    QDesignerFormEditorInterface* m_core = nullptr;
    QJsonObject m_script;
    QJsonObject m_report;
    QTimer m_timer;
    QElapsedTimer m_stepTime;
    std::vector<Step> m_steps;
    std::unique_ptr<PaletteDrag> m_drag;
    std::size_t m_next = 0;
    bool m_busy = false;
};
