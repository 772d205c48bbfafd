#include "widgets/panels/FlowPanel.h"

namespace tavrin {

void FlowPanel::Arrange()
{
    int bottom = 0;
    for (QWidget* child : findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (child->isWindow() || child->isHidden())
            continue;
        child->move(child->x(), bottom);
        bottom += child->height();
    }
    resize(width(), bottom);
}

} // namespace tavrin
