#include "support/Looks.h"
#include "support/TestCase.h"
#include "widgets/panels/GroupBox.h"

#include <QAccessible>

using namespace tavrin::test;
using tavrin::Color;
using tavrin::GroupBox;
namespace SystemColor = tavrin::SystemColor;

class tst_GroupBox : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theBackgroundFillsTheWholeBoxBehindItsWidgets()
    {
        GroupBox box;
        box.resize(20, 10);
        auto* child = new GroupBox(&box);
        child->setGeometry(5, 5, 3, 2);
        QCOMPARE(box.BackColor(), SystemColor::ButtonFace);
        box.SetBackColor(Color::rgb(10, 20, 30));
        child->SetBackColor(Color::rgb(200, 20, 30));
        QCOMPARE(box.BackColor(), Color::rgb(10, 20, 30));
        const QImage image = imageOf(box);
        for (int y = 0; y < 10; ++y) {
            for (int x = 0; x < 20; ++x) {
                const bool inChild = QRect(5, 5, 3, 2).contains(x, y);
                QCOMPARE(image.pixelColor(x, y), inChild ? QColor(200, 20, 30) : QColor(10, 20, 30));
            }
        }
    }

    void aSystemColourFollowsTheThemeAtOnceAndAPlainOneStays()
    {
        Theme theme;
        QWidget window;
        auto* box = new GroupBox(&window);
        box->resize(20, 10);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        PaintCount count(*box);
        theme.change(QPalette::Window, QColor(1, 99, 7));
        QTRY_VERIFY(count.paints > 0);
        QCOMPARE(imageOf(*box).pixelColor(3, 3), QColor(1, 99, 7));
        box->SetBackColor(Color::rgb(50, 60, 70));
        theme.change(QPalette::Window, QColor(200, 99, 7));
        QCOMPARE(imageOf(*box).pixelColor(3, 3), QColor(50, 60, 70));
    }

    void anotherColourShowsAtOnce()
    {
        GroupBox box;
        box.show();
        QVERIFY(QTest::qWaitForWindowExposed(&box));
        PaintCount count(box);
        box.SetBackColor(Color::rgb(50, 60, 70));
        QTRY_VERIFY(count.paints > 0);
    }

    void screenReadersKnowItAsAGroup()
    {
        GroupBox box;
        QCOMPARE(QAccessible::queryAccessibleInterface(&box)->role(), QAccessible::Grouping);
    }
};

TAVRIN_TEST_MAIN(tst_GroupBox)
#include "tst_GroupBox.moc"
