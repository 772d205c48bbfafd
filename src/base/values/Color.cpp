#include "base/values/Color.h"

namespace tavrin {

namespace {

struct SystemEntry
{
    QPalette::ColorRole role;
    QPalette::ColorGroup group = QPalette::Current;
};

SystemEntry systemEntry(quint32 index)
{
    switch (index) {
    case 0x05: // window background
        return {QPalette::Base};
    case 0x06: // window frame
        return {QPalette::Dark};
    case 0x07: // menu text
    case 0x08: // window text
        return {QPalette::Text};
    case 0x0D:
        return {QPalette::Highlight};
    case 0x0E:
        return {QPalette::HighlightedText};
    case 0x04: // menu
    case 0x0F: // button face
        return {QPalette::Window};
    case 0x10: // button shadow
        return {QPalette::Dark};
    case 0x11: // grey text
        return {QPalette::Text, QPalette::Disabled};
    case 0x12: // button text
        return {QPalette::WindowText};
    case 0x14: // button highlight
        return {QPalette::Light};
    case 0x15: // three-dimensional dark shadow
        return {QPalette::Shadow};
    case 0x16: // three-dimensional light
        return {QPalette::Midlight};
    case 0x17: // tooltip text
        return {QPalette::ToolTipText};
    case 0x18: // tooltip background
        return {QPalette::ToolTipBase};
    default:
        return {QPalette::WindowText};
    }
}

} // namespace

QColor Color::resolve(const QPalette& palette) const
{
    if (!isSystem()) {
        return QColor(static_cast<int>(m_value & 0xFF), static_cast<int>(m_value >> 8 & 0xFF),
                      static_cast<int>(m_value >> 16 & 0xFF));
    }
    const SystemEntry entry = systemEntry(m_value & 0x7FFFFFFF);
    return palette.color(entry.group, entry.role);
}

QPalette::ColorRole Color::role() const
{
    return isSystem() ? systemEntry(m_value & 0x7FFFFFFF).role : QPalette::NoRole;
}

} // namespace tavrin
