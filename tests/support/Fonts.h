#pragma once

#include "base/values/Font.h"

#include <QApplication>
#include <QFont>

#include <memory>

namespace tavrin::test {

/// A font that says only how large it is, as one does of which nothing else was ever set.
inline FontPtr fontOf(double points)
{
    auto font = std::make_shared<Font>();
    font->SetSize(points);
    return font;
}

/// While it lives, the application's font has this size.
class ApplicationFontSize
{
public:
    explicit ApplicationFontSize(int points)
        : m_before(QApplication::font())
    {
        QFont font = m_before;
        font.setPointSize(points);
        QApplication::setFont(font);
    }
    ~ApplicationFontSize() { QApplication::setFont(m_before); }
    ApplicationFontSize(const ApplicationFontSize&) = delete;
    ApplicationFontSize& operator=(const ApplicationFontSize&) = delete;

private:
    QFont m_before;
};

} // namespace tavrin::test
