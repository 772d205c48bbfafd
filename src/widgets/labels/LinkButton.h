#pragma once

#include "base/failure/Event.h"
#include "base/values/Color.h"
#include "widgets/drawing/SharedFont.h"

#include <QAbstractButton>

namespace tavrin {

/// What links share, whatever they show.
///
/// A link raises `Click` for the left mouse button, for Space and Enter where it has the focus, and for a
/// screen reader's press. A click of the mouse leaves the focus where it is.
class LinkButton : public QAbstractButton
{
    Q_OBJECT

public:
    /// At first a font of its own; shared by reference. Each change of it gives the link its own size again.
    /// nullptr is ignored.
    FontPtr Font() const { return m_font.get(); }
    void SetFont(const FontPtr& font);

    Color ForeColor() const { return m_foreColor; }
    void SetForeColor(Color color);

    /// Shown as plain text, and the name that screen readers tell; without one they tell what the link shows.
    QString ToolTipText() const { return m_toolTipText; }
    void SetToolTipText(const QString& text);

    /// A handler may delete the link.
    Event<> Click;

protected:
    explicit LinkButton(QWidget* parent);

    /// What screen readers tell of a link without a tool tip.
    virtual QString contentName() const = 0;
    virtual void paintContent(QPainter& painter) = 0;
    /// Whether the place below the mouse is tinted.
    virtual bool isTinted() const { return true; }

    /// To be called when the content has changed.
    void applyName();
    /// Takes the font over and resizes the link to its own size. The last statement of a constructor.
    void fit();
    /// A link may reach over its parent's edge.
    QRect visiblePart() const;

    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    SharedFont m_font;
    QString m_toolTipText;
    Color m_foreColor = SystemColor::ButtonText;
};

} // namespace tavrin
