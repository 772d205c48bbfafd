#include "support/Looks.h"
#include "support/TestCase.h"
#include "widgets/labels/Label.h"
#include "widgets/panels/TipPanel.h"

#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;
using tavrin::Label;
using tavrin::TipPanel;
using tavrin::test::Theme;

class tst_TipPanel : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void itsPartsStandAtTheirPlaces()
    {
        const TipPanel panel(u"Click here."_s);
        QCOMPARE(panel.size(), QSize(357, 33));
        const auto labels = panel.findChildren<Label*>();
        QCOMPARE(labels.size(), 2);
        QCOMPARE(labels.at(0)->Caption(), u"Tip"_s);
        QCOMPARE(labels.at(0)->geometry(), QRect(32, 8, 24, 16));
        QVERIFY(labels.at(0)->font().bold());
        QCOMPARE(labels.at(1)->Caption(), u"Click here."_s);
        QCOMPARE(labels.at(1)->geometry(), QRect(60, 8, 310, 16));
        QVERIFY(!labels.at(1)->font().bold());
        QVERIFY(!panel.isEnabled());
    }

    void aClickOnItOrItsTextFallsThroughToWhatLiesBelow_data()
    {
        QTest::addColumn<QPoint>("at");
        QTest::newRow("picture") << QPoint(20, 17);
        QTest::newRow("sentence") << QPoint(100, 16);
        QTest::newRow("bare") << QPoint(3, 30);
    }
    void aClickOnItOrItsTextFallsThroughToWhatLiesBelow()
    {
        QFETCH(QPoint, at);
        QWidget window;
        QPushButton below(&window);
        below.setGeometry(0, 0, 400, 100);
        TipPanel panel(u"Click here."_s, &window);
        panel.move(10, 20);
        int clicks = 0;
        connect(&below, &QPushButton::clicked, &window, [&] { ++clicks; });
        window.resize(400, 100);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, panel.pos() + at);
        QCOMPARE(clicks, 1);
    }

    void itShowsInTheColoursOfAListThatIsNotDisabled()
    {
        Theme theme;
        theme.change(QPalette::Base, QColor(20, 30, 40));
        TipPanel panel(u"Click here."_s);
        const QImage picture = panel.grab().toImage();
        QCOMPARE(picture.pixelColor(2, 2), QColor(20, 30, 40));
        QCOMPARE_NE(picture.pixelColor(20, 14), QColor(20, 30, 40)); // the bulb
    }
};

TAVRIN_TEST_MAIN(tst_TipPanel)
#include "tst_TipPanel.moc"
