#pragma once

#include "widgets/drawing/IconGlyphs.h"
#include "widgets/labels/Link.h"
#include "widgets/labels/TextLink.h"

#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QWidget>

#include <utility>

// What the tests of links share.

namespace tavrin::test {

enum class LinkKind
{
    Sign,
    Text
};

inline constexpr std::pair<const char*, LinkKind> LinkKinds[] = {{"sign", LinkKind::Sign},
                                                                 {"text", LinkKind::Text}};

/// A row for each kind of link.
inline void addLinkKinds()
{
    QTest::addColumn<LinkKind>("kind");
    for (const auto& [name, kind] : LinkKinds)
        QTest::newRow(name) << kind;
}

/// A link that shows something; the caller's.
inline LinkButton* newLink(LinkKind kind, QWidget* parent = nullptr)
{
    if (kind == LinkKind::Sign) {
        auto* sign = new Link(parent);
        sign->SetSymbol(ClearGlyph);
        return sign;
    }
    auto* text = new TextLink(parent);
    text->SetCaption(QStringLiteral("Done"));
    return text;
}

/// A window with a button that has the focus, and a link behind it.
class LinkStage
{
public:
    explicit LinkStage(LinkKind kind)
        : LinkStage(newLink(kind))
    {
    }
    /// The window takes the link over.
    explicit LinkStage(LinkButton* shown)
        : link(shown)
    {
        window.resize(200, 100);
        other = new QPushButton(&window);
        other->setGeometry(100, 50, 80, 30);
        link->setParent(&window);
        link->move(20, 20);
        window.show();
        window.activateWindow();
        other->setFocus();
    }
    bool isReady() { return QTest::qWaitForWindowActive(&window) && other->hasFocus(); }
    /// A click where the window system would give one.
    void click(Qt::MouseButton button)
    {
        QTest::mouseClick(window.windowHandle(), button, {}, link->geometry().center());
    }
    void press(Qt::Key key) { QTest::keyClick(window.windowHandle(), key); }
    /// Moves the mouse onto the link, or away from it.
    void hover(bool over)
    {
        QTest::mouseMove(window.windowHandle(), over ? link->geometry().center() : QPoint(190, 5));
    }

    QWidget window;
    QPushButton* other;
    QPointer<LinkButton> link;
};

} // namespace tavrin::test
