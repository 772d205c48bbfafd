#include "workbench/tour/TourDriver.h"

#include "base/failure/Error.h"
#include "base/failure/Guard.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QPainter>
#include <QPointer>
#include <QScopeGuard>
#include <QTest>
#include <QTimer>

#include <cstdio>
#include <optional>

namespace tavrin::workbench {

namespace {

constexpr int Patience = 10000; // milliseconds until something that does not come is given up

QWidget* topmost()
{
    if (QWidget* box = QApplication::activeModalWidget())
        return box;
    return QApplication::activeWindow();
}

/// All windows that are shown, the lower ones first, as they lie on the screen.
QImage screenPicture()
{
    QWidgetList windows;
    QRect area;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (!window->isVisible())
            continue;
        windows.append(window);
    }
    const auto level = [](const QWidget* window) {
        const Qt::WindowFlags type = window->windowFlags() & Qt::WindowType_Mask;
        const bool list = type == Qt::ToolTip || type == Qt::Popup;
        return list                       ? 3
               : window->isModal()        ? 2
               : window->isActiveWindow() ? 1
               : window->parentWidget()   ? 0
                                          : -1;
    };
    std::stable_sort(windows.begin(), windows.end(),
                     [&](const QWidget* a, const QWidget* b) { return level(a) < level(b); });
    for (const QWidget* window : windows)
        area |= window->geometry();
    const double scale = windows.isEmpty() ? 1 : windows.constFirst()->devicePixelRatioF();
    QImage picture(area.size() * scale, QImage::Format_RGB32);
    picture.setDevicePixelRatio(scale);
    picture.fill(QApplication::palette().color(QPalette::Mid));
    QPainter painter(&picture);
    for (QWidget* window : windows) {
        const QRect place = window->geometry().translated(-area.topLeft());
        painter.drawPixmap(place.topLeft(), window->grab());
        painter.setPen(QApplication::palette().color(QPalette::Dark));
        painter.drawRect(place.adjusted(0, 0, -1, -1));
    }
    return picture;
}

} // namespace

TourDriver::TourDriver(const QString& folder)
    : m_folder(folder)
{
}

void TourDriver::step(const QString& name, const std::function<void()>& body)
{
    ++m_step;
    m_picture = 0;
    body();
    picture(name);
    std::printf("ok %d - %s\n", m_step, qPrintable(name));
    std::fflush(stdout);
}

void TourDriver::picture(const QString& name)
{
    QApplication::processEvents();
    QString file = name.toLower();
    for (QChar& character : file) {
        if (!character.isLetterOrNumber())
            character = u'-';
    }
    const QString number =
        QStringLiteral("%1%2").arg(m_step, 2, 10, QLatin1Char('0')).arg(QChar(u'a' + m_picture++));
    const QString path = QDir(m_folder).filePath(number + u'-' + file + QStringLiteral(".png"));
    check(screenPicture().save(path), QStringLiteral("%1 can be written").arg(path));
}

QWidget* TourDriver::keyboardTarget() const
{
    QWidget* focus = QApplication::focusWidget();
    QWidget* target = focus ? focus : topmost();
    check(target != nullptr, QStringLiteral("a window has the keyboard"));
    return target;
}

void TourDriver::type(const QString& text)
{
    // A list takes letters that come quickly for one word; how quick this machine is does not matter. The
    // first letter begins a word of its own.
    const int interval = QApplication::keyboardInputInterval();
    const auto restore = qScopeGuard([interval] { QApplication::setKeyboardInputInterval(interval); });
    for (const QChar character : text) {
        QTest::keyClicks(keyboardTarget(), QString(character));
        QApplication::setKeyboardInputInterval(Patience);
    }
}

void TourDriver::press(int key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(keyboardTarget(), static_cast<Qt::Key>(key), modifiers);
}

void TourDriver::choose(QWidget* menu, int key)
{
    QTest::keyClick(menu, static_cast<Qt::Key>(key));
    QCoreApplication::sendPostedEvents(nullptr,
                                       QEvent::MetaCall); // the menu tells of it behind its own event
}

void TourDriver::click(QWidget* widget)
{
    click(widget, widget->rect().center());
}

void TourDriver::click(QWidget* widget, const QPoint& place)
{
    QTest::mouseClick(widget, Qt::LeftButton, Qt::NoModifier, place);
}

void TourDriver::withBox(const std::function<void()>& trigger, const std::function<void(QWidget* box)>& inBox,
                         const std::function<bool(QWidget* box)>& ready)
{
    bool came = false;
    QPointer<QWidget> below;
    std::optional<Error> failure;
    QTimer look;
    QElapsedTimer waited;
    waited.start();
    connectGuarded(&look, &QTimer::timeout, &look, "TourDriver_Box", [&] {
        QWidget* box = QApplication::activeModalWidget();
        if (!box || !box->isVisible() || (ready && !ready(box)))
            return;
        if (!box->isActiveWindow() && !waited.hasExpired(Patience)) {
            box->activateWindow(); // until then the keys would go elsewhere
            return;
        }
        look.stop();
        came = true;
        below = box->parentWidget();
        try {
            inBox(box);
        } catch (const Error& error) {
            failure = error;
            box->close();
        }
    });
    look.start(10);
    trigger();
    if (failure)
        throw Error(*failure);
    check(came, QStringLiteral("a box came"));
    if (below && below->isVisible()) {
        if (!below->isActiveWindow())
            below->activateWindow(); // what a desktop does by itself, the offscreen platform does not
        waitFor([&] { return !below || below->isActiveWindow(); },
                QStringLiteral("the window below is active"));
    }
}

void TourDriver::check(bool condition, const QString& what) const
{
    if (!condition)
        throw Error(QStringLiteral("not so: %1").arg(what));
}

void TourDriver::checkEqual(const QString& seen, const QString& expected, const QString& what) const
{
    check(seen == expected, QStringLiteral("%1 is \"%2\", but \"%3\" is there").arg(what, expected, seen));
}

void TourDriver::waitFor(const std::function<bool()>& condition, const QString& what) const
{
    check(QTest::qWaitFor(condition, Patience), what);
}

QWidget* TourDriver::window(const QString& objectName) const
{
    QWidget* found = nullptr;
    waitFor(
        [&] {
            for (QWidget* candidate : QApplication::topLevelWidgets()) {
                if (candidate->objectName() == objectName && candidate->isVisible())
                    found = candidate;
            }
            return found && found->isActiveWindow();
        },
        QStringLiteral("the window %1 is there").arg(objectName));
    return found;
}

} // namespace tavrin::workbench
