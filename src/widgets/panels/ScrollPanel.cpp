#include "widgets/panels/ScrollPanel.h"

#include <QScrollBar>

#include <algorithm>

namespace tavrin {

ScrollPanel::ScrollPanel(QWidget* parent)
    : QScrollArea(parent)
{
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

void ScrollPanel::SetHeight(Twips height)
{
    resize(width(), std::max(0, toPixels(height)));
}

void ScrollPanel::SetContent(QWidget* content)
{
    setWidget(content);
}

void ScrollPanel::RefreshView()
{
    // Qt itself looks at the sizes when the panel is shown only.
    const int contentHeight = widget() ? widget()->height() : 0;
    QScrollBar* bar = verticalScrollBar();
    bar->setPageStep(height());
    bar->setRange(0, std::max(0, contentHeight - height()));
    viewport()->update();
}

void ScrollPanel::ScrollTo(Twips top)
{
    verticalScrollBar()->setValue(toPixels(top));
}

Twips ScrollPanel::ScrollTop() const
{
    return toTwips(verticalScrollBar()->value());
}

} // namespace tavrin
