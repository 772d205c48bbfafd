#pragma once

#include <QApplication>
#include <QEvent>
#include <QHelpEvent>
#include <QImage>
#include <QTest>
#include <QTextDocument>
#include <QToolTip>
#include <QWidget>

// What the tests of constituents see of them.

namespace tavrin::test {

/// Changes of the application's palette, which is as before in the end.
class Theme
{
public:
    Theme() = default;
    Theme(const Theme&) = delete;
    Theme& operator=(const Theme&) = delete;
    ~Theme() { QApplication::setPalette(m_before); }

    void change(QPalette::ColorRole role, const QColor& color)
    {
        QPalette palette = QApplication::palette();
        palette.setColor(role, color);
        QApplication::setPalette(palette);
    }

private:
    QPalette m_before = QApplication::palette();
};

/// Counts the paint events of a widget.
class PaintCount final : public QObject
{
public:
    explicit PaintCount(QWidget& widget) { widget.installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            ++paints;
        return false;
    }
    int paints = 0;
};

/// The widget and its children alone, without what lies below them.
inline QImage imageOf(QWidget& widget)
{
    QImage image(widget.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    widget.render(&image, {}, {}, QWidget::DrawChildren);
    return image;
}

/// The bounds of the pixels for which `counts` is true.
template <typename Condition>
QRect boundsOf(const QImage& image, Condition counts)
{
    QRect bounds;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (counts(image.pixelColor(x, y)))
                bounds |= QRect(x, y, 1, 1);
        }
    }
    return bounds;
}

/// The bounds of all that is painted.
inline QRect inkOf(const QImage& image)
{
    return boundsOf(image, [](const QColor& color) { return color.alpha() > 0; });
}

/// The most opaque pixel; of several the first.
inline QColor strongestOf(const QImage& image)
{
    QColor strongest(Qt::transparent);
    boundsOf(image, [&](const QColor& color) {
        if (color.alpha() > strongest.alpha())
            strongest = color;
        return false;
    });
    return strongest;
}

/// What a person reads in the tool tip that opens over the widget; "" when none does.
inline QString toolTipRead(QWidget& widget)
{
    QHelpEvent help(QEvent::ToolTip, widget.rect().center(), widget.mapToGlobal(widget.rect().center()));
    QCoreApplication::sendEvent(&widget, &help);
    const QString shown = QToolTip::isVisible() ? QToolTip::text() : QString();
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->inherits("QTipLabel"))
            window->hide();
    }
    if (!Qt::mightBeRichText(shown))
        return shown;
    QTextDocument document;
    document.setHtml(shown);
    return document.toPlainText();
}

} // namespace tavrin::test
