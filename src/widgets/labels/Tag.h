#pragma once

#include "base/values/Color.h"
#include "widgets/drawing/SharedFont.h"

#include <QWidget>

namespace tavrin {

/// The chip that bears a chosen value's name.
///
/// It sizes itself to its caption whenever caption or font change; in a narrower place the caption is cut at
/// the right. Presses of the mouse are left to the parent. Screen readers know it as a text of its caption.
class Tag : public QWidget
{
    Q_OBJECT

public:
    explicit Tag(QWidget* parent = nullptr);

    QString Caption() const { return m_caption; }
    void SetCaption(const QString& caption);

    /// Shared by reference: a change inside the font shows at once. nullptr is ignored.
    FontPtr Font() const { return m_font.get(); }
    void SetFont(const FontPtr& font);

    /// The highlight's text at first, on the highlight.
    Color ForeColor() const { return m_foreColor; }
    void SetForeColor(Color color);
    Color BackColor() const { return m_backColor; }
    void SetBackColor(Color color);

    /// Shown as plain text.
    QString ToolTipText() const { return m_toolTipText; }
    void SetToolTipText(const QString& text);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void fit();

    SharedFont m_font;
    QString m_caption;
    QString m_toolTipText;
    Color m_foreColor = SystemColor::HighlightText;
    Color m_backColor = SystemColor::Highlight;
};

} // namespace tavrin
