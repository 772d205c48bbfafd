#pragma once

#include "widgets/labels/LinkButton.h"

namespace tavrin {

/// A link that is one sign of an icon font. Tab goes past it.
///
/// Each change of its font resizes it to the line's height, and a little more above and below.
class Link : public LinkButton
{
    Q_OBJECT

public:
    explicit Link(QWidget* parent = nullptr);

    /// One of the signs of `IconGlyphs.h`, or the code of a character of the font; 0, at first, shows none.
    int Symbol() const { return m_symbol; }
    void SetSymbol(int glyph);

    QSize sizeHint() const override;

protected:
    QString contentName() const override;
    void paintContent(QPainter& painter) override;

private:
    int m_symbol = 0;
};

} // namespace tavrin
