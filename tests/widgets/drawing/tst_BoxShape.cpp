#include "support/Looks.h"
#include "support/TestCase.h"
#include "widgets/drawing/BoxShape.h"

#include <QAccessible>
#include <QPushButton>
#include <QSignalSpy>

using namespace tavrin::test;
using tavrin::BoxShape;
using tavrin::Color;
namespace SystemColor = tavrin::SystemColor;

class tst_BoxShape : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theBorderIsOnePixelAroundTheFill()
    {
        BoxShape shape;
        shape.resize(40, 30);
        shape.SetBorderColor(Color::rgb(200, 0, 0));
        shape.SetBackColor(Color::rgb(0, 0, 200));
        QCOMPARE(shape.BorderColor(), Color::rgb(200, 0, 0));
        QCOMPARE(shape.BackColor(), Color::rgb(0, 0, 200));
        const QImage image = imageOf(shape);
        const QColor border(200, 0, 0);
        const QColor fill(0, 0, 200);
        for (int x = 5; x < 35; ++x) {
            QCOMPARE(image.pixelColor(x, 0), border);
            QCOMPARE(image.pixelColor(x, 1), fill);
            QCOMPARE(image.pixelColor(x, 28), fill);
            QCOMPARE(image.pixelColor(x, 29), border);
        }
        for (int y = 5; y < 25; ++y) {
            QCOMPARE(image.pixelColor(0, y), border);
            QCOMPARE(image.pixelColor(1, y), fill);
            QCOMPARE(image.pixelColor(38, y), fill);
            QCOMPARE(image.pixelColor(39, y), border);
        }
    }

    void aShapeThatIsNotFilledIsItsOutlineOnly()
    {
        BoxShape shape;
        QVERIFY(shape.Filled());
        shape.resize(40, 30);
        shape.SetBorderColor(Color::rgb(200, 0, 0));
        shape.SetFilled(false);
        QVERIFY(!shape.Filled());
        const QImage image = imageOf(shape);
        QCOMPARE(image.pixelColor(20, 0), QColor(200, 0, 0));
        QCOMPARE(image.pixelColor(20, 1).alpha(), 0);
        QCOMPARE(image.pixelColor(20, 15).alpha(), 0);
    }

    void outsideOfTheCornersTheParentShows()
    {
        BoxShape shape;
        shape.resize(40, 30);
        const QImage image = imageOf(shape);
        for (const QPoint corner : {QPoint(0, 0), QPoint(39, 0), QPoint(0, 29), QPoint(39, 29)})
            QVERIFY(image.pixelColor(corner).alpha() < 64);
        QCOMPARE(image.pixelColor(20, 15).alpha(), 255);
    }

    void theMouseReachesWhatLiesBelow()
    {
        QWidget window;
        window.resize(100, 60);
        auto* button = new QPushButton(&window);
        button->resize(window.size());
        auto* shape = new BoxShape(&window);
        shape->resize(window.size());
        shape->raise();
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        const QSignalSpy clicked(button, &QPushButton::clicked);
        QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, QPoint(50, 30));
        QCOMPARE(clicked.size(), 1);
        QCOMPARE(shape->focusPolicy(), Qt::NoFocus);
    }

    void itLiesBehindTheWidgetsThatWereThereBefore()
    {
        QWidget window;
        window.resize(100, 60);
        auto* earlier = new QWidget(&window);
        earlier->setGeometry(10, 10, 20, 20);
        earlier->setAutoFillBackground(true);
        QPalette red;
        red.setColor(QPalette::Window, Qt::red);
        earlier->setPalette(red);
        auto* shape = new BoxShape(&window);
        shape->resize(window.size());
        shape->SetBackColor(Color::rgb(0, 0, 200));
        const QImage image = imageOf(window);
        QCOMPARE(image.pixelColor(20, 20), QColor(Qt::red));
        QCOMPARE(image.pixelColor(50, 30), QColor(0, 0, 200));
    }

    void systemColoursFollowTheThemeAtOnce()
    {
        Theme theme;
        QWidget window;
        auto* shape = new BoxShape(&window);
        shape->resize(40, 30);
        QCOMPARE(shape->BackColor(), SystemColor::WindowBackground);
        shape->SetBorderColor(SystemColor::GreyText);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        PaintCount count(*shape);
        theme.change(QPalette::Base, QColor(1, 99, 7));
        QTRY_VERIFY(count.paints > 0);
        theme.change(QPalette::Text, QColor(7, 99, 150)); // of the disabled as well
        const QImage image = imageOf(*shape);
        QCOMPARE(image.pixelColor(20, 15), QColor(1, 99, 7));
        QCOMPARE(image.pixelColor(20, 0), QColor(7, 99, 150));
    }

    void screenReadersHaveNothingToTellOfIt()
    {
        BoxShape shape;
        QAccessibleInterface* told = QAccessible::queryAccessibleInterface(&shape);
        QCOMPARE(told->role(), QAccessible::Whitespace);
        QVERIFY(!told->state().focusable);
    }
};

TAVRIN_TEST_MAIN(tst_BoxShape)
#include "tst_BoxShape.moc"
