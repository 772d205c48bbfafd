#include "widgets/panels/GroupBox.h"

#include "widgets/drawing/ConstituentLook.h"

#include <QApplication>
#include <QPainter>

namespace tavrin {

GroupBox::GroupBox(QWidget* parent)
    : QWidget(parent)
{
    installAccessibleRole<GroupBox, QAccessible::Grouping>();
}

void GroupBox::SetBackColor(Color color)
{
    m_backColor = color;
    update();
}

void GroupBox::paintEvent(QPaintEvent*)
{
    QPainter(this).fillRect(rect(), m_backColor.resolve(QApplication::palette(this)));
}

} // namespace tavrin
