#include "support/Looks.h"
#include "support/TestCase.h"
#include "widgets/drawing/IconGlyphs.h"
#include "widgets/labels/FontIconLabel.h"

#include <QAccessible>

using namespace Qt::StringLiterals;
using namespace tavrin::test;
using tavrin::Color;
using tavrin::FontIconLabel;
namespace SystemColor = tavrin::SystemColor;

class tst_FontIconLabel : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theSignStandsBeforeTheText()
    {
        FontIconLabel label;
        label.resize(200, 20);
        QVERIFY(inkOf(imageOf(label)).isEmpty());
        label.SetIcon(tavrin::WarningGlyph);
        QCOMPARE(label.Icon(), tavrin::WarningGlyph);
        const QRect sign = inkOf(imageOf(label));
        QVERIFY(sign.width() >= 10 && sign.left() >= 0 && sign.right() <= 14);
        QVERIFY(std::abs(sign.center().y() - 10) <= 1);
        label.SetCaption(u"HHH"_s);
        QCOMPARE(label.Caption(), u"HHH"_s);
        const QRect both = inkOf(imageOf(label));
        QCOMPARE(both.left(), sign.left());
        label.SetIcon(0);
        const QRect text = inkOf(imageOf(label));
        QVERIFY(text.left() >= 20); // its room is kept
        QCOMPARE(text.right(), both.right());
    }

    void aTextThatIsTooLongIsCutAndNoRoomPaintsNothingBeyond()
    {
        FontIconLabel label;
        label.SetCaption(u"HHHHHHHHHHHHHHHHHHHHHHHHHHHHH"_s);
        label.resize(label.sizeHint());
        const QRect whole = inkOf(imageOf(label));
        label.resize(label.width() + 100, label.height());
        QCOMPARE(inkOf(imageOf(label)), whole); // which had room before
        label.resize(60, label.height());
        const QRect cut = inkOf(imageOf(label));
        QCOMPARE(cut.left(), whole.left());
        QVERIFY(cut.right() < 60 && cut.right() > 30);
        label.resize(10, 20);
        QVERIFY(inkOf(imageOf(label)).isEmpty());
    }

    void theSizeFollowsTheCaptionAndTheFont()
    {
        FontIconLabel label;
        label.SetCaption(u"one"_s);
        const QSize small = label.sizeHint();
        label.SetCaption(u"one two three"_s);
        QVERIFY(label.sizeHint().width() > small.width());
        QCOMPARE(label.sizeHint().height(), small.height());
        label.Font()->SetSize(40);
        QVERIFY(label.sizeHint().height() > small.height());
        label.SetFont(nullptr);
        const auto tiny = std::make_shared<tavrin::Font>();
        tiny->SetSize(3);
        label.SetFont(tiny);
        QCOMPARE(label.Font(), tiny);
        QCOMPARE(label.sizeHint().height(), 14); // of the sign
    }

    void ampersandsAndMarkupStandAsTheyAre()
    {
        FontIconLabel label;
        label.resize(300, 20);
        label.SetCaption(u"A & B"_s);
        const int plain = inkOf(imageOf(label)).right();
        label.SetCaption(u"A && B"_s);
        QVERIFY(inkOf(imageOf(label)).right() > plain);
        label.SetCaption(u"<b>A</b>"_s);
        QVERIFY(inkOf(imageOf(label)).right() > plain);
    }

    void aSystemColourFollowsTheThemeForSignAndText()
    {
        Theme theme;
        FontIconLabel label;
        label.resize(300, 60);
        label.Font()->SetSize(30); // whose strokes cover whole pixels
        QCOMPARE(label.ForeColor(), SystemColor::ButtonText);
        label.SetForeColor(SystemColor::TooltipText);
        theme.change(QPalette::ToolTipText, QColor(1, 99, 7));
        label.SetIcon(tavrin::WarningGlyph);
        QCOMPARE(strongestOf(imageOf(label)), QColor(1, 99, 7));
        label.SetIcon(0);
        label.SetCaption(u"HHH"_s);
        QCOMPARE(strongestOf(imageOf(label)), QColor(1, 99, 7));
        label.SetForeColor(Color::rgb(200, 60, 70));
        QCOMPARE(strongestOf(imageOf(label)), QColor(200, 60, 70));
    }

    void screenReadersReadItsText()
    {
        FontIconLabel label;
        label.SetCaption(u"Address not found."_s);
        QAccessibleInterface* told = QAccessible::queryAccessibleInterface(&label);
        QVERIFY(told);
        QCOMPARE(told->role(), QAccessible::StaticText);
        QCOMPARE(told->text(QAccessible::Name), u"Address not found."_s);
    }
};

TAVRIN_TEST_MAIN(tst_FontIconLabel)
#include "tst_FontIconLabel.moc"
