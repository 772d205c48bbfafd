#include "frame/control_frame/ContainerColor.h"

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QStyleOption>
#include <QTabWidget>
#include <QVariant>

#include <cmath>
#include <limits>

namespace tavrin {

namespace {

bool isNumber(const QVariant& value)
{
    switch (value.typeId()) {
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Float:
    case QMetaType::Double:
        return true;
    default:
        return false;
    }
}

std::optional<Color> fromNumber(double number)
{
    const bool is32Bit = number >= std::numeric_limits<qint32>::min() &&
                         number <= std::numeric_limits<quint32>::max() && number == std::floor(number);
    if (!is32Bit)
        return std::nullopt;
    return Color(static_cast<quint32>(static_cast<qint64>(number)));
}

Color plain(const QColor& color)
{
    return Color::rgb(color.red(), color.green(), color.blue());
}

/// Invalid where the brush leaves everything under it to be seen.
QColor visible(const QBrush& brush)
{
    return brush.style() == Qt::NoBrush || brush.color().alpha() == 0 ? QColor() : brush.color();
}

/// What the style draws behind the pages, which fill nothing themselves.
QColor paneColor(const QTabWidget& tabs)
{
    if (tabs.documentMode())
        return {}; // no pane is drawn
    constexpr int Side = 32;
    QImage surface(Side, Side, QImage::Format_ARGB32_Premultiplied);
    surface.fill(Qt::transparent);
    QPainter painter(&surface);
    QStyleOptionTabWidgetFrame option;
    option.initFrom(&tabs);
    option.rect = surface.rect();
    option.lineWidth = tabs.style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &option, &tabs);
    tabs.style()->drawPrimitive(QStyle::PE_FrameTabWidget, &option, &painter, &tabs);
    const QColor middle = surface.pixelColor(Side / 2, Side / 2);
    return middle.alpha() == 0 ? QColor() : middle;
}

/// The background that the widget has of its own; invalid for none.
QColor ownBackground(const QWidget& widget)
{
    if (widget.isWindow())
        return visible(widget.palette().brush(QPalette::Active, QPalette::Window));
    if (widget.autoFillBackground() || widget.testAttribute(Qt::WA_StyledBackground))
        return visible(widget.palette().brush(QPalette::Active, widget.backgroundRole()));
    if (const auto* tabs = qobject_cast<const QTabWidget*>(&widget))
        return paneColor(*tabs);
    return {};
}

/// The theme's colour where it is one, which another theme replaces.
Color themedOrPlain(const QColor& color)
{
    const QPalette theme = QApplication::palette();
    for (const Color system : {SystemColor::ButtonFace, SystemColor::WindowBackground}) {
        if (system.resolve(theme).rgb() == color.rgb())
            return system;
    }
    return plain(color);
}

} // namespace

std::optional<Color> colorOf(const QVariant& property)
{
    if (property.typeId() == qMetaTypeId<Color>())
        return property.value<Color>();
    if (property.typeId() == QMetaType::QColor) {
        const auto color = property.value<QColor>();
        return color.isValid() && color.alpha() == 255 ? std::optional(plain(color)) : std::nullopt;
    }
    return isNumber(property) ? fromNumber(property.toDouble()) : std::nullopt;
}

Color shownBackColor(const QWidget& container)
{
    for (const QWidget* widget = &container; widget; widget = widget->parentWidget()) {
        if (const std::optional<Color> offered = colorOf(widget->property("BackColor")))
            return *offered;
        if (const QColor own = ownBackground(*widget); own.isValid())
            return themedOrPlain(own);
        if (widget->isWindow())
            break;
    }
    return SystemColor::ButtonFace;
}

} // namespace tavrin
