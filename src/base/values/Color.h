#pragma once

#include "base/export/Export.h"

#include <QColor>
#include <QMetaType>
#include <QPalette>

namespace tavrin {

/// A colour as records, forms and themes hold it: a 32-bit value.
///
/// Plain: 0x00BBGGRR, blue in the high byte. With the top bit set: 0x80000000 + the index of a system
/// colour, which is looked up in a palette at the moment of painting, so that a change of theme shows at
/// once.
class TAVRIN_EXPORT Color
{
public:
    /// Black.
    constexpr Color() = default;
    /// A colour in the form that `value` gives.
    constexpr explicit Color(quint32 value)
        : m_value(value)
    {
    }

    /// A plain colour; each part from 0 to 255, which is not checked.
    static constexpr Color rgb(int red, int green, int blue)
    {
        return Color(static_cast<quint32>(red) | static_cast<quint32>(green) << 8 |
                     static_cast<quint32>(blue) << 16);
    }

    /// 0x00BBGGRR, or 0x80000000 + the index of a system colour.
    constexpr quint32 value() const { return m_value; }
    /// Whether it is looked up in a palette.
    constexpr bool isSystem() const { return (m_value & 0x80000000U) != 0; }

    /// The colour in this palette. A system index that is not known gives the palette's window text.
    QColor resolve(const QPalette& palette) const;

    /// The palette role that stands for the system index; `QPalette::NoRole` for a plain colour.
    QPalette::ColorRole role() const;

    // Equal when their values are; a system colour never equals the plain one that it shows as.
    friend constexpr bool operator==(Color a, Color b) { return a.m_value == b.m_value; }
    friend constexpr bool operator!=(Color a, Color b) { return a.m_value != b.m_value; }

private:
    quint32 m_value = 0;
};

/// The system colours that controls and themes use, by the palette role that each of them takes.
namespace SystemColor {
inline constexpr Color WindowBackground{0x80000005U}; ///< of fields and lists: `QPalette::Base`
inline constexpr Color WindowText{0x80000008U};       ///< of fields and lists: `QPalette::Text`
inline constexpr Color Highlight{0x8000000DU};        ///< behind selected text: `QPalette::Highlight`
inline constexpr Color HighlightText{0x8000000EU};    ///< selected text: `QPalette::HighlightedText`
inline constexpr Color ButtonFace{0x8000000FU};       ///< of forms and buttons: `QPalette::Window`
inline constexpr Color GreyText{0x80000011U};    ///< disabled text: `QPalette::Text` of the disabled group
inline constexpr Color ButtonText{0x80000012U};  ///< of forms and buttons: `QPalette::WindowText`
inline constexpr Color Light3D{0x80000016U};     ///< a light edge: `QPalette::Midlight`
inline constexpr Color TooltipText{0x80000017U}; ///< `QPalette::ToolTipText`
inline constexpr Color TooltipBackground{0x80000018U}; ///< `QPalette::ToolTipBase`
} // namespace SystemColor

} // namespace tavrin

Q_DECLARE_METATYPE(tavrin::Color)
