#pragma once

#include <QJsonObject>
#include <QList>
#include <QPoint>
#include <QProcess>
#include <QString>

class QDesignerFormEditorInterface;
class QDesignerFormWindowInterface;
class QWidget;

/// Drags a control from the palette onto the form, with the pointer of the display itself.
class PaletteDrag
{
public:
    PaletteDrag(QDesignerFormEditorInterface& core, const QString& control);

    /// Asked again until it is true: the control stands on the form.
    bool goOn();
    /// The name, class and place of what was dropped.
    QJsonObject dropped() const;
    /// The point of the form on which it is dropped.
    static constexpr int DropX = 120;
    static constexpr int DropY = 260;

private:
    enum class Phase
    {
        Show,
        Press,
        Move,
        Release,
        Wait
    };
    bool showEntry();
    void input(const QStringList& steps);
    QDesignerFormWindowInterface& form() const;
    QList<QWidget*> widgets() const;

    QDesignerFormEditorInterface& m_core;
    QString m_control;
    Phase m_phase = Phase::Show;
    QPoint m_from;
    QPoint m_to;
    QList<QWidget*> m_before;
    QProcess m_input;
};
