#pragma once

#include "SharedFont.h"
#include "base/Color.h"
#include "base/Event.h"

#include <QAbstractButton>

namespace tavrin {

/// A link of plain text, underlined below the mouse.
///
/// It raises `Click` for the left mouse button, for Space and Enter where it has the focus, and for a screen
/// reader's press.
class TextLink : public QAbstractButton
{
    Q_OBJECT

public:
    explicit TextLink(QWidget* parent = nullptr);

    /// Shown as it stands and cut at the right when it is too long; the name that screen readers tell.
    QString Caption() const { return m_caption; }
    void SetCaption(const QString& caption);

    /// At first a font of its own; shared by reference. nullptr is ignored.
    FontPtr Font() const { return m_font.get(); }
    void SetFont(const FontPtr& font);

    /// The colour of the highlight at first.
    Color ForeColor() const { return m_foreColor; }
    void SetForeColor(Color color);
    /// The colour below the mouse; the colour of the highlight at first.
    Color HighlightColor() const { return m_highlightColor; }
    void SetHighlightColor(Color color);
    /// The colour while disabled; grey at first.
    Color DisabledColor() const { return m_disabledColor; }
    void SetDisabledColor(Color color);

    /// A handler may delete the link.
    Event<> Click;

    QSize sizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QColor textColor(bool isHovered) const;

    SharedFont m_font;
    QString m_caption;
    Color m_foreColor = SystemColor::Highlight;
    Color m_highlightColor = SystemColor::Highlight;
    Color m_disabledColor = SystemColor::GreyText;
};

} // namespace tavrin
