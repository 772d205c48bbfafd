#include "base/values/Color.h"
#include "base/values/Font.h"
#include "support/Looks.h"
#include "support/TestCase.h"
#include "widgets/labels/LinkStage.h"

#include <QAccessible>

#include <memory>

using namespace Qt::StringLiterals;
using namespace tavrin::test;
using tavrin::Color;
using tavrin::LinkButton;
namespace SystemColor = tavrin::SystemColor;

/// How links look and what they are called, whatever they show; a click of them stands in tst_LinkButton.
class tst_LinkButtonLooks : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void eachLinkHasAFontOfItsOwnAtFirst_data() { addLinkKinds(); }
    void eachLinkHasAFontOfItsOwnAtFirst()
    {
        QFETCH(LinkKind, kind);
        const std::unique_ptr<LinkButton> one(newLink(kind));
        const std::unique_ptr<LinkButton> two(newLink(kind));
        QVERIFY(one->Font() != two->Font());
        one->Font()->SetSize(30);
        QVERIFY(one->width() > two->width());
    }

    void eachChangeOfItsFontGivesItItsOwnSizeAgain_data() { addLinkKinds(); }
    void eachChangeOfItsFontGivesItItsOwnSizeAgain()
    {
        QFETCH(LinkKind, kind);
        const std::unique_ptr<LinkButton> link(newLink(kind));
        const int plain = link->width();
        link->resize(3, 90);
        link->Font()->SetSize(link->Font()->Size() * 2);
        QVERIFY(link->width() > plain);
        QCOMPARE(link->sizeHint(), link->size());
        const auto small = std::make_shared<tavrin::Font>();
        small->SetSize(6);
        link->SetFont(small);
        QCOMPARE(link->Font(), small);
        QVERIFY(link->width() < plain);
    }

    void theNameIsTheToolTipElseWhatTheLinkShows_data()
    {
        QTest::addColumn<LinkKind>("kind");
        QTest::addColumn<QString>("shown");
        QTest::newRow("sign") << LinkKind::Sign << u"Clear"_s;
        QTest::newRow("text") << LinkKind::Text << u"Done"_s;
    }
    void theNameIsTheToolTipElseWhatTheLinkShows()
    {
        QFETCH(LinkKind, kind);
        QFETCH(QString, shown);
        const std::unique_ptr<LinkButton> link(newLink(kind));
        QAccessibleInterface* told = QAccessible::queryAccessibleInterface(link.get());
        QVERIFY(told);
        QCOMPARE(told->role(), QAccessible::Button);
        QCOMPARE(told->text(QAccessible::Name), shown);
        link->SetToolTipText(u"Clear <b>all</b>"_s);
        QCOMPARE(link->ToolTipText(), u"Clear <b>all</b>"_s);
        QCOMPARE(told->text(QAccessible::Name), u"Clear <b>all</b>"_s);
        link->SetToolTipText(QString());
        QCOMPARE(told->text(QAccessible::Name), shown);
    }

    void theToolTipIsReadAsItStands_data() { addLinkKinds(); }
    void theToolTipIsReadAsItStands()
    {
        QFETCH(LinkKind, kind);
        LinkStage stage(kind);
        QVERIFY(stage.isReady());
        stage.link->SetToolTipText(u"Clear <b>all</b> & go"_s);
        QCOMPARE(toolTipRead(*stage.link), u"Clear <b>all</b> & go"_s);
    }

    void belowTheMouseItIsTintedUntilTheMouseLeaves_data() { addLinkKinds(); }
    void belowTheMouseItIsTintedUntilTheMouseLeaves()
    {
        QFETCH(LinkKind, kind);
        LinkStage stage(kind);
        QVERIFY(stage.isReady());
        stage.link->resize(60, 40);
        stage.hover(false);
        QCOMPARE(stage.link->cursor().shape(), Qt::PointingHandCursor);
        const QImage calm = imageOf(*stage.link);
        const QPoint edge(30, 1); // beside what it shows
        const QPoint otherEdge(30, 38);
        QCOMPARE(calm.pixelColor(edge).alpha(), 0);
        QCOMPARE(calm.pixelColor(otherEdge).alpha(), 0);
        PaintCount count(*stage.link);
        stage.hover(true);
        QTRY_VERIFY(count.paints > 0);
        const QImage tinted = imageOf(*stage.link);
        const int tint = tinted.pixelColor(edge).alpha();
        QVERIFY(tint > 0 && tint < 60);
        QCOMPARE(tinted.pixelColor(otherEdge).alpha(), tint);
        QTest::mousePress(stage.window.windowHandle(), Qt::LeftButton, {}, stage.link->geometry().center());
        QVERIFY(imageOf(*stage.link).pixelColor(edge).alpha() > tint);
        QTest::mouseRelease(stage.window.windowHandle(), Qt::LeftButton, {}, stage.link->geometry().center());
        count.paints = 0;
        stage.hover(false);
        QTRY_VERIFY(count.paints > 0);
        QCOMPARE(imageOf(*stage.link), calm);
    }

    void aDisabledLinkIsNotTinted_data() { addLinkKinds(); }
    void aDisabledLinkIsNotTinted()
    {
        QFETCH(LinkKind, kind);
        LinkStage stage(kind);
        QVERIFY(stage.isReady());
        stage.link->resize(60, 40);
        stage.hover(true);
        stage.link->setEnabled(false);
        QCOMPARE(imageOf(*stage.link).pixelColor(30, 1).alpha(), 0);
    }

    void aRingShowsTheFocus_data() { addLinkKinds(); }
    void aRingShowsTheFocus()
    {
        QFETCH(LinkKind, kind);
        Theme theme;
        theme.change(QPalette::Highlight, QColor(1, 99, 7));
        LinkStage stage(kind);
        QVERIFY(stage.isReady());
        const QPoint edge(stage.link->width() / 2, 0);
        QCOMPARE(imageOf(*stage.link).pixelColor(edge).alpha(), 0);
        stage.link->setFocus();
        QTRY_COMPARE(imageOf(*stage.link).pixelColor(edge), QColor(1, 99, 7));
        stage.other->setFocus();
        QTRY_COMPARE(imageOf(*stage.link).pixelColor(edge).alpha(), 0);
    }

    void aRingShowsTheFocusInsideTheParent_data() { addLinkKinds(); }
    void aRingShowsTheFocusInsideTheParent()
    {
        QFETCH(LinkKind, kind);
        Theme theme;
        theme.change(QPalette::Highlight, QColor(1, 99, 7));
        LinkStage stage(kind);
        QVERIFY(stage.isReady());
        stage.link->setGeometry(20, 80, 60, 40); // 20 pixels of it lie below the window's edge
        const QPoint edge(30, 19);
        QVERIFY(imageOf(*stage.link).pixelColor(edge) != QColor(1, 99, 7));
        stage.link->setFocus(Qt::TabFocusReason); // by the key for texts alone
        QTRY_COMPARE(imageOf(*stage.link).pixelColor(edge), QColor(1, 99, 7));
    }

    void aSystemColourFollowsTheThemeAtOnceAndAPlainOneStays_data() { addLinkKinds(); }
    void aSystemColourFollowsTheThemeAtOnceAndAPlainOneStays()
    {
        QFETCH(LinkKind, kind);
        Theme theme;
        LinkStage stage(kind);
        QVERIFY(stage.isReady());
        stage.link->Font()->SetSize(30); // so that some pixel is wholly covered
        QCOMPARE(stage.link->ForeColor(), SystemColor::ButtonText);
        QTRY_COMPARE(strongestOf(imageOf(*stage.link)).alpha(), 255);
        PaintCount count(*stage.link);
        theme.change(QPalette::WindowText, QColor(1, 99, 7));
        QTRY_VERIFY(count.paints > 0);
        QCOMPARE(strongestOf(imageOf(*stage.link)), QColor(1, 99, 7));
        stage.link->SetForeColor(Color::rgb(50, 60, 70));
        theme.change(QPalette::WindowText, QColor(200, 99, 7));
        QCOMPARE(strongestOf(imageOf(*stage.link)), QColor(50, 60, 70));
    }
};

TAVRIN_TEST_MAIN(tst_LinkButtonLooks)
#include "tst_LinkButtonLooks.moc"
