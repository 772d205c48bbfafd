#include "support/Looks.h"
#include "support/TestCase.h"
#include "widgets/labels/WrapLabel.h"

#include <QAccessible>

using namespace Qt::StringLiterals;
using namespace tavrin::test;
using tavrin::WrapLabel;

namespace {

bool isInk(QRgb pixel)
{
    return qAlpha(pixel) > 0;
}

/// The last row of the label's picture that has ink, from 0; -1 for none.
int lowestInk(WrapLabel& label)
{
    const QImage image = imageOf(label);
    for (int y = image.height() - 1; y >= 0; --y) {
        for (int x = 0; x < image.width(); ++x) {
            if (isInk(image.pixel(x, y)))
                return y;
        }
    }
    return -1;
}

} // namespace

class tst_WrapLabel : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void anEmptyTextIsAsHighAsALine()
    {
        WrapLabel label;
        label.resize(120, 90);
        label.SetCaption({});
        const int line = label.fontMetrics().height();
        QCOMPARE(label.height(), line);
        label.SetCaption(u"Short"_s);
        QCOMPARE(label.size(), QSize(120, line));
    }

    void aLongTextWrapsAndTheLabelGrowsAndShrinksWithIt()
    {
        WrapLabel label;
        label.resize(120, 10);
        label.SetCaption(u"The disk is full, and nothing of the file was kept in the folder"_s);
        const int line = label.fontMetrics().height();
        QVERIFY(label.height() >= 3 * line);
        QCOMPARE(label.width(), 120);
        QVERIFY(lowestInk(label) > label.height() - line); // the last line is not cut
        label.SetCaption(u"Short"_s);
        QCOMPARE(label.height(), line);
    }

    void aWordLongerThanALineIsBrokenAndNotCut()
    {
        WrapLabel label;
        label.resize(120, 10);
        label.SetCaption(QString(90, u'W'));
        const int needed = 90 * label.fontMetrics().horizontalAdvance(u'W') / 120;
        QVERIFY(label.height() >= needed * label.fontMetrics().height());
        QVERIFY(lowestInk(label) > label.height() - label.fontMetrics().height());
    }

    void anotherWidthMakesItHigherOrLower()
    {
        WrapLabel label;
        label.resize(400, 10);
        label.SetCaption(u"The file could not be copied to the folder"_s);
        const int wide = label.height();
        label.resize(90, label.height());
        label.show();
        QVERIFY(QTest::qWaitForWindowExposed(&label));
        QTRY_VERIFY(label.height() > wide);
        label.hide();
    }

    void anotherFontMakesItHigher()
    {
        WrapLabel label;
        label.resize(200, 10);
        label.SetCaption(u"Text"_s);
        const int before = label.height();
        QFont font = label.font();
        font.setPointSize(font.pointSize() * 3);
        label.setFont(font);
        QVERIFY(label.height() > 2 * before);
    }

    void lineEndsOfTheTextAreKeptAndMarkupIsShownAsItStands()
    {
        WrapLabel label;
        label.resize(400, 10);
        label.SetCaption(u"<b>one</b>\ntwo"_s);
        QCOMPARE(label.height(), 2 * label.fontMetrics().height());
        QCOMPARE(label.Caption(), u"<b>one</b>\ntwo"_s);
        QCOMPARE(QAccessible::queryAccessibleInterface(&label)->text(QAccessible::Name), label.Caption());
    }
};

TAVRIN_TEST_MAIN(tst_WrapLabel)
#include "tst_WrapLabel.moc"
