#pragma once

#include "base/values/Color.h"

#include <QObject>
#include <QPointer>

#include <functional>

class QWidget;

namespace tavrin {

/// Tells when an ambient value of a control's container is another one: "Font", "BackColor" or "ScaleUnits".
///
/// The colour may be that of a widget further down, where the container is one that is looked through. What
/// changes it without an event, such as `setAutoFillBackground`, is seen before the window is painted anew.
class ContainerWatch : public QObject
{
    Q_OBJECT

public:
    using Changed = std::function<void(const QString& name)>;

    /// Watches the container that the control has now.
    ContainerWatch(QWidget& control, Changed changed);

    /// The control may have another container. Tells nothing; returns whether it has.
    bool follow();

    /// Tells when the colour is another one, which no event may have told of.
    void look();
    /// The colour as it is now. The control has it then: only another one is told.
    Color takeColor();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void watchAll();
    bool noteColor();
    void propertyChanged(const QObject* owner, const QByteArray& name);

    QWidget& m_control;
    Changed m_changed;
    QPointer<QObject> m_container;
    QList<QPointer<QObject>> m_watched; // the container and what it stands on
    Color m_color;
    QColor m_shown;
};

} // namespace tavrin
