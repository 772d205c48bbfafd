#pragma once

#include <QString>
#include <QWidget>

#include <functional>

namespace tavrin::workbench {

/// The hands and eyes of the tour.
///
/// Keys go to whatever has the keyboard, as a person's do. Every check raises an `Error` that says what was
/// not so, which ends the tour.
class TourDriver
{
public:
    explicit TourDriver(const QString& folder);

    /// Runs one step, writes its picture and prints its line.
    void step(const QString& name, const std::function<void()>& body);
    /// How many steps have been begun.
    int steps() const { return m_step; }

    void type(const QString& text);
    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    /// A line of an open menu, by its key; returns when what it does is done.
    void choose(QWidget* menu, int key);
    void click(QWidget* widget);
    void click(QWidget* widget, const QPoint& place);

    /// Does `trigger`, which opens a modal box, and `inBox` once the box is there, and `ready` when that is
    /// given. Ends when it is closed.
    void withBox(const std::function<void()>& trigger, const std::function<void(QWidget* box)>& inBox,
                 const std::function<bool(QWidget* box)>& ready = {});

    void check(bool condition, const QString& what) const;
    void checkEqual(const QString& seen, const QString& expected, const QString& what) const;
    /// Lets the program work until the condition holds.
    void waitFor(const std::function<bool()>& condition, const QString& what) const;

    /// The window of this name that is shown last; raises when there is none.
    QWidget* window(const QString& objectName) const;
    /// A widget below `top` by its name; raises when there is none.
    template <typename Widget>
    Widget* find(const QWidget* top, const QString& objectName) const
    {
        auto* widget = top->findChild<Widget*>(objectName);
        check(widget != nullptr, QStringLiteral("there is a %1").arg(objectName));
        return widget;
    }

    /// Writes a picture of what is on the screen, numbered behind the step's own.
    void picture(const QString& name);

private:
    QWidget* keyboardTarget() const;

    QString m_folder;
    int m_step = 0;
    int m_picture = 0;
};

} // namespace tavrin::workbench
