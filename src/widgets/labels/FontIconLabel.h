#pragma once

#include "base/values/Color.h"
#include "widgets/drawing/SharedFont.h"

#include <QWidget>

namespace tavrin {

/// A line of plain text behind a sign of an icon font.
///
/// Screen readers know it as a text with its caption for a name.
class FontIconLabel : public QWidget
{
    Q_OBJECT

public:
    explicit FontIconLabel(QWidget* parent = nullptr);

    /// One of the signs of `IconGlyphs.h`; any other code, 0 at first, shows none and keeps its room.
    int Icon() const { return m_icon; }
    void SetIcon(int glyph);

    /// A caption that is too long for the label is cut at the right.
    QString Caption() const { return m_caption; }
    void SetCaption(const QString& caption);

    /// At first a font of its own; shared by reference. nullptr is ignored.
    FontPtr Font() const { return m_font.get(); }
    void SetFont(const FontPtr& font);

    /// Of sign and caption; the colour of a button's text at first.
    Color ForeColor() const { return m_foreColor; }
    void SetForeColor(Color color);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    SharedFont m_font;
    int m_icon = 0;
    QString m_caption;
    Color m_foreColor = SystemColor::ButtonText;
};

} // namespace tavrin
