#include "base/values/Color.h"
#include "base/values/Font.h"
#include "support/Looks.h"
#include "support/TestCase.h"
#include "widgets/labels/LinkStage.h"
#include "widgets/labels/TextLink.h"

#include <QAccessible>
#include <QFontMetricsF>

using namespace Qt::StringLiterals;
using namespace tavrin::test;
using tavrin::Color;
using tavrin::TextLink;
namespace SystemColor = tavrin::SystemColor;

/// The caption of a link; what all links do stands in tst_LinkButtonLooks and tst_LinkButton.
class tst_TextLink : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void itIsAsLargeAsItsCaption()
    {
        TextLink link;
        link.SetCaption(u"Done"_s);
        const QFontMetricsF metrics(link.Font()->toQFont());
        QCOMPARE(link.width(), qRound(metrics.horizontalAdvance(u"Done"_s)));
        QCOMPARE(link.height(), qRound(metrics.height()));
        const int plain = link.width();
        link.Font()->SetSize(link.Font()->Size() * 2);
        QVERIFY(link.width() > plain);
        link.SetCaption(u"x"_s);
        QVERIFY(link.width() < plain);
    }

    void screenReadersTellTheCaptionOrTheToolTip()
    {
        TextLink link;
        link.SetCaption(u"+ & more"_s);
        QAccessibleInterface* told = QAccessible::queryAccessibleInterface(&link);
        QVERIFY(told);
        QVERIFY(told->state().focusable);
        QCOMPARE(told->text(QAccessible::Name), u"+ & more"_s);
        link.SetToolTipText(u"Add"_s);
        QCOMPARE(told->text(QAccessible::Name), u"Add"_s);
        QCOMPARE(link.Caption(), u"+ & more"_s);
    }

    void theCaptionIsPaintedInTheColourOfItsState()
    {
        auto* link = new TextLink;
        LinkStage stage(link);
        QVERIFY(stage.isReady());
        link->Font()->SetSize(30); // so that some pixel is wholly covered
        link->SetCaption(u"H"_s);
        link->SetHoverUnderline(true);
        QCOMPARE(link->ForeColor(), SystemColor::ButtonText);
        QCOMPARE(link->DisabledColor(), SystemColor::GreyText);
        link->SetForeColor(Color::rgb(200, 0, 0));
        QCOMPARE(link->HighlightColor(), Color::rgb(200, 0, 0)); // until it is set
        link->SetHighlightColor(Color::rgb(0, 0, 200));
        link->SetDisabledColor(Color::rgb(0, 120, 0));
        stage.hover(false);
        QTRY_COMPARE(strongestOf(imageOf(*link)), QColor(200, 0, 0));
        stage.hover(true);
        QTRY_COMPARE(strongestOf(imageOf(*link)), QColor(0, 0, 200));
        link->setEnabled(false);
        QCOMPARE(strongestOf(imageOf(*link)), QColor(0, 120, 0));
    }

    void belowTheMouseItIsUnderlinedOrTinted()
    {
        auto* link = new TextLink;
        LinkStage stage(link);
        QVERIFY(stage.isReady());
        link->SetCaption(u"-"_s);
        link->resize(60, 40);
        stage.hover(false);
        const QImage calm = imageOf(*link);
        stage.hover(true);
        QTRY_VERIFY(imageOf(*link) != calm);
        QVERIFY(imageOf(*link).pixelColor(30, 38).alpha() > 0); // tinted to its edges
        link->SetHoverUnderline(true);
        const QImage lined = imageOf(*link);
        QCOMPARE(lined.pixelColor(30, 38).alpha(), 0);
        QVERIFY(inkOf(lined).height() > inkOf(calm).height());
        link->setEnabled(false);
        QCOMPARE(inkOf(imageOf(*link)), inkOf(calm));
        link->setEnabled(true);
        stage.hover(false);
        QTRY_COMPARE(imageOf(*link), calm);
    }

    void theSystemsHighlightStaysReadableAsAText_data()
    {
        QTest::addColumn<QColor>("window");
        QTest::addColumn<QColor>("shown");
        QTest::newRow("light") << QColor(Qt::white) << QColor(0, 0, 200);
        QTest::newRow("dark") << QColor(20, 20, 20) << QColor(120, 180, 255);
    }
    void theSystemsHighlightStaysReadableAsAText()
    {
        QFETCH(QColor, window);
        QFETCH(QColor, shown);
        Theme theme;
        theme.change(QPalette::Window, window);
        theme.change(QPalette::Highlight, QColor(0, 0, 200));
        theme.change(QPalette::Link, QColor(120, 180, 255));
        TextLink link;
        link.Font()->SetSize(30);
        link.SetCaption(u"H"_s);
        link.SetForeColor(SystemColor::Highlight);
        QCOMPARE(strongestOf(imageOf(link)), shown);
    }
};

TAVRIN_TEST_MAIN(tst_TextLink)
#include "tst_TextLink.moc"
