#pragma once

#include <QWidget>

namespace tavrin {

/// A panel that stacks its children, and is as high as they are together.
///
///     auto* row = new QWidget(panel);
///     row->show();
///     panel->Arrange();
class FlowPanel : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

    /// Places the children that are not hidden one below the other, in the order in which they came, each
    /// with the left side and the size that it has, and takes their height. Without any it is 0 high. To be
    /// called after a child was added, hidden or resized.
    void Arrange();
};

} // namespace tavrin
