#include "workbench/application/Theme.h"

#include <QApplication>
#include <QProxyStyle>
#include <QStyleFactory>
#include <QStyleOption>

namespace tavrin::workbench {

namespace {

struct Shades
{
    QRgb window, base, alternate, text, button, border, accent, accentText, quiet, link;
};

constexpr Shades Light{0xFFF4F5F7, 0xFFFFFFFF, 0xFFF8F9FB, 0xFF1D2329, 0xFFECEEF1,
                       0xFFC5CBD3, 0xFF2B6CB0, 0xFFFFFFFF, 0xFF5F6B78, 0xFF1F5FA5};
constexpr Shades Dark{0xFF1F2226, 0xFF2D3238, 0xFF31373D, 0xFFE4E7EB, 0xFF33383E,
                      0xFF4A515A, 0xFF3872B3, 0xFFFFFFFF, 0xFFA3ADB8, 0xFF7DB2EA};

QPalette paletteOf(const Shades& shades)
{
    QPalette palette;
    const auto set = [&](QPalette::ColorRole role, QRgb color) { palette.setColor(role, QColor(color)); };
    set(QPalette::Window, shades.window);
    set(QPalette::WindowText, shades.text);
    set(QPalette::Base, shades.base);
    set(QPalette::AlternateBase, shades.alternate);
    set(QPalette::Text, shades.text);
    set(QPalette::PlaceholderText, shades.quiet);
    set(QPalette::Button, shades.button);
    set(QPalette::ButtonText, shades.text);
    set(QPalette::BrightText, shades.accentText);
    set(QPalette::ToolTipBase, shades.base);
    set(QPalette::ToolTipText, shades.text);
    set(QPalette::Highlight, shades.accent);
    set(QPalette::HighlightedText, shades.accentText);
    set(QPalette::Link, shades.link);
    set(QPalette::LinkVisited, shades.link);
    set(QPalette::Mid, shades.border);
    palette.setColor(QPalette::Light, QColor(shades.button).lighter(110));
    palette.setColor(QPalette::Midlight, QColor(shades.button).lighter(104));
    palette.setColor(QPalette::Dark, QColor(shades.border).darker(115));
    palette.setColor(QPalette::Shadow, QColor(shades.border).darker(150));
    for (const QPalette::ColorRole role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(shades.quiet));
    palette.setColor(QPalette::Disabled, QPalette::Base, QColor(shades.window));
    return palette;
}

/// Buttons and combo boxes as high as the text boxes beside them, and room left and right of texts.
class RoomyStyle final : public QProxyStyle
{
public:
    RoomyStyle()
        : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion")))
    {
    }

    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& content,
                           const QWidget* widget) const override
    {
        const QSize size = QProxyStyle::sizeFromContents(type, option, content, widget);
        if (type == CT_PushButton)
            return size.expandedTo({content.width() + 2 * ButtonRoom, lineHeight(option->fontMetrics)});
        if (type == CT_ComboBox)
            return size.expandedTo({0, lineHeight(option->fontMetrics)});
        return size;
    }

    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override
    {
        // The text of a cell begins one pixel behind its margin; so it stands below its header's, and below
        // the text of the box whose list it is in.
        if (metric == PM_FocusFrameHMargin)
            return CellRoom - 1;
        if (metric == PM_HeaderMargin)
            return CellRoom;
        return QProxyStyle::pixelMetric(metric, option, widget);
    }

private:
    static constexpr int ButtonRoom = 14;
    static constexpr int CellRoom = 4;
};

} // namespace

int lineHeight(const QFontMetrics& metrics)
{
    return metrics.height() + 12;
}

bool isDark(ThemeChoice choice)
{
    if (choice != ThemeChoice::System)
        return choice == ThemeChoice::Dark;
    const QPalette system = QApplication::palette();
    return system.color(QPalette::Window).lightness() < system.color(QPalette::WindowText).lightness();
}

void applyTheme(bool dark)
{
    QApplication::setStyle(new RoomyStyle);
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): the application owns the style
    QApplication::setPalette(paletteOf(dark ? Dark : Light));
}

QColor quietText(const QPalette& palette)
{
    return palette.color(QPalette::PlaceholderText);
}

} // namespace tavrin::workbench
