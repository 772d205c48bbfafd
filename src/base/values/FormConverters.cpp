#include "base/values/FormConverters.h"

#include "base/values/Color.h"
#include "base/values/Font.h"

#include <QGuiApplication>

namespace tavrin {

namespace {

/// False for a colour that is none.
bool toColor(const void* from, void* to)
{
    const QColor& color = *static_cast<const QColor*>(from);
    *static_cast<Color*>(to) = Color::rgb(color.red(), color.green(), color.blue());
    return color.isValid();
}

bool registerAll()
{
    return QMetaType::registerConverterFunction(toColor, QMetaType::fromType<QColor>(),
                                                QMetaType::fromType<Color>()) &&
           QMetaType::registerConverter<Color, QColor>(
               [](Color color) { return color.resolve(QGuiApplication::palette()); }) &&
           QMetaType::registerConverter<int, Color>(
               [](int number) { return Color(static_cast<quint32>(number)); }) &&
           QMetaType::registerConverter<uint, Color>([](uint number) { return Color(number); }) &&
           QMetaType::registerConverter<QFont, FontPtr>(
               [](const QFont& font) { return std::make_shared<Font>(font); }) &&
           QMetaType::registerConverter<FontPtr, QFont>(
               [](const FontPtr& font) { return font ? font->toQFont() : QFont(); });
}

} // namespace

void registerFormConverters()
{
    static const bool registered = registerAll(); // Qt warns of a converter that comes twice
    Q_UNUSED(registered)
}

} // namespace tavrin
