#pragma once

#include "widgets/labels/LinkButton.h"

namespace tavrin {

/// A link that bears a text. Tab reaches it.
///
/// Each change of its font or caption resizes it to the caption.
class TextLink : public LinkButton
{
    Q_OBJECT

public:
    explicit TextLink(QWidget* parent = nullptr);

    /// Shown as it stands: an '&' is an '&'.
    QString Caption() const { return m_caption; }
    void SetCaption(const QString& caption);

    /// Colour of the caption while the link is disabled; grey text at first.
    Color DisabledColor() const { return m_disabledColor; }
    void SetDisabledColor(Color color);

    /// Colour of the caption below the mouse; as `ForeColor` until it is set.
    Color HighlightColor() const { return m_hasHighlightColor ? m_highlightColor : ForeColor(); }
    void SetHighlightColor(Color color);

    /// Whether the caption is underlined below the mouse. While off, as at first, its place is tinted there.
    bool HoverUnderline() const { return m_hoverUnderline; }
    void SetHoverUnderline(bool underline);

    QSize sizeHint() const override;

protected:
    QString contentName() const override { return m_caption; }
    void paintContent(QPainter& painter) override;
    bool isTinted() const override { return !m_hoverUnderline; }

private:
    bool isHovered() const { return isEnabled() && (underMouse() || isDown()); }

    QString m_caption;
    Color m_disabledColor = SystemColor::GreyText;
    Color m_highlightColor;
    bool m_hasHighlightColor = false;
    bool m_hoverUnderline = false;
};

} // namespace tavrin
