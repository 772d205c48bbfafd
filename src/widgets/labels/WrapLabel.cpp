#include "widgets/labels/WrapLabel.h"

#include <QEvent>
#include <QPainter>
#include <QResizeEvent>
#include <QStyle>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace tavrin {

WrapLabel::WrapLabel(QWidget* parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    fit();
}

void WrapLabel::SetCaption(const QString& caption)
{
    setText(caption);
    fit();
}

int WrapLabel::heightForWidth(int width) const
{
    return heightAt(width);
}

int WrapLabel::heightAt(int width) const
{
    QTextLayout layout;
    return static_cast<int>(std::ceil(layOut(layout, width)));
}

void WrapLabel::changeEvent(QEvent* event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        fit();
}

void WrapLabel::paintEvent(QPaintEvent*)
{
    QTextLayout layout;
    layOut(layout, width());
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    layout.draw(&painter, QPointF());
}

void WrapLabel::resizeEvent(QResizeEvent* event)
{
    QLabel::resizeEvent(event);
    if (event->oldSize().width() != width())
        fit();
}

void WrapLabel::fit()
{
    resize(width(), heightAt(width()));
}

qreal WrapLabel::layOut(QTextLayout& layout, int width) const
{
    // A label of Qt wraps between words only and cuts what is longer.
    QTextOption option(QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft));
    option.setTextDirection(layoutDirection());
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.setFont(font());
    layout.setText(text().replace(u'\n', QChar::LineSeparator));
    qreal height = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        line.setPosition(QPointF(0, height));
        height += line.height();
    }
    layout.endLayout();
    return std::max(height, static_cast<qreal>(fontMetrics().height()));
}

} // namespace tavrin
