#pragma once

#include "SharedFont.h"
#include "base/Color.h"
#include "base/Event.h"

#include <QAbstractButton>

namespace tavrin {

/// A link that is one sign of an icon font.
///
/// It raises `Click` for the left mouse button, for Space and Enter where it has the focus, and for a screen
/// reader's press. A click of the mouse leaves the focus where it is.
class Link : public QAbstractButton
{
    Q_OBJECT

public:
    explicit Link(QWidget* parent = nullptr);

    /// At first a font of its own; shared by reference. Each change of it resizes the link to the
    /// line's height, and a little more above and below. nullptr is ignored.
    FontPtr Font() const { return m_font.get(); }
    void SetFont(const FontPtr& font);

    /// One of the signs of `IconGlyphs.h`, or the code of a character of the font; 0, at first, shows none.
    int Symbol() const { return m_symbol; }
    void SetSymbol(int glyph);

    Color ForeColor() const { return m_foreColor; }
    void SetForeColor(Color color);

    /// Shown as plain text, and the name that screen readers tell; without one they tell the sign's.
    QString ToolTipText() const { return m_toolTipText; }
    void SetToolTipText(const QString& text);

    /// A handler may delete the link.
    Event<> Click;

    QSize sizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void fit();
    void applyName();
    void paintSign(QPainter& painter) const;

    SharedFont m_font;
    int m_symbol = 0;
    QString m_toolTipText;
    Color m_foreColor = SystemColor::ButtonText;
};

} // namespace tavrin
