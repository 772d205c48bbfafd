#include "designer/EditorValue.h"

#include "base/values/Variant.h"

#include <QFont>
#include <QImage>
#include <QMetaProperty>

namespace tavrin::designer {

namespace {

bool isWholeNumber(const QVariant& value)
{
    return value.typeId() == QMetaType::Int || value.typeId() == QMetaType::UInt;
}

QVariant colorValue(const QVariant& value, const QVariant& start)
{
    const auto color = value.value<Color>();
    if (color.isSystem() && color != start.value<Color>())
        return static_cast<int>(color.value());
    return QVariant::fromValue(value.value<QColor>());
}

QVariant toColor(const QVariant& value)
{
    const bool isColor = value.typeId() == QMetaType::QColor && value.value<QColor>().isValid();
    return isWholeNumber(value) || isColor ? QVariant::fromValue(value.value<Color>()) : QVariant();
}

/// A font that says all of its properties, so that the editor takes none from the form.
QFont whole(QFont font)
{
    font.setResolveMask(QFont::AllPropertiesResolved);
    return font;
}

} // namespace

Editor editorOf(const QObject& control, const SavedProperty& property)
{
    const QMetaObject& meta = *control.metaObject();
    const int index = meta.indexOfProperty(property.key.toLatin1().constData());
    const bool isVariant = index >= 0 && meta.property(index).typeId() == QMetaType::QVariant;
    switch (property.kind) {
    case PropertyKind::Color:
        return Editor::Color;
    case PropertyKind::Font:
        return Editor::Font;
    case PropertyKind::Picture:
        return Editor::Picture;
    case PropertyKind::Text:
        return isVariant ? Editor::Text : Editor::Plain;
    case PropertyKind::Variant:
        return control.inherits("tavrin::AutoCompleteField") ? Editor::Number : Editor::Text;
    default:
        return Editor::Plain;
    }
}

QVariant editorValue(Editor editor, const QVariant& value, const QVariant& start)
{
    switch (editor) {
    case Editor::Text:
        return IsNull(value) ? QString() : value.toString();
    case Editor::Number:
        return value.toInt();
    case Editor::Color:
        return colorValue(value, start);
    case Editor::Font:
        return whole(value.value<QFont>());
    default:
        return value;
    }
}

QVariant controlValue(Editor editor, const QVariant& value)
{
    switch (editor) {
    case Editor::Text:
        return value.typeId() == QMetaType::QString ? (value.toString().isEmpty() ? Null() : value)
                                                    : QVariant();
    case Editor::Number:
        return isWholeNumber(value) ? value : QVariant();
    case Editor::Color:
        return toColor(value);
    case Editor::Font:
        return value.typeId() == QMetaType::QFont ? QVariant::fromValue(value.value<FontPtr>()) : QVariant();
    default:
        return value;
    }
}

bool saysTheSame(Editor editor, const QVariant& a, const QVariant& b)
{
    switch (editor) {
    case Editor::Text:
        return editorValue(editor, a, {}) == editorValue(editor, b, {});
    case Editor::Font:
        return a.value<QFont>() == b.value<QFont>();
    case Editor::Picture:
        return a.value<QImage>() == b.value<QImage>();
    default:
        return SameValue(a, b);
    }
}

} // namespace tavrin::designer
