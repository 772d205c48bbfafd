#include "support/Looks.h"
#include "support/TestCase.h"
#include "widgets/labels/TextLink.h"

#include <QAccessible>
#include <QPushButton>

using namespace Qt::StringLiterals;
using namespace tavrin::test;
using tavrin::Color;
using tavrin::TextLink;
namespace SystemColor = tavrin::SystemColor;

namespace {

/// A window with a button that has the focus, and a link behind it.
class Stage
{
public:
    Stage()
    {
        window.resize(200, 100);
        other = new QPushButton(&window);
        other->setGeometry(100, 50, 80, 30);
        link = new TextLink(&window);
        link->SetCaption(u"Done"_s);
        link->move(20, 20);
        window.show();
        window.activateWindow();
        other->setFocus();
    }
    bool isReady() { return QTest::qWaitForWindowActive(&window) && other->hasFocus(); }
    void press(Qt::Key key) { QTest::keyClick(window.windowHandle(), key); }
    void hover(bool over)
    {
        QTest::mouseMove(window.windowHandle(), over ? link->geometry().center() : QPoint(190, 5));
    }

    QWidget window;
    QPushButton* other;
    TextLink* link;
};

} // namespace

/// The caption of a link and its looks; what a click does stands in tst_LinkButton.
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
        QCOMPARE(told->role(), QAccessible::Button);
        QVERIFY(told->state().focusable);
        QCOMPARE(told->text(QAccessible::Name), u"+ & more"_s);
        link.SetToolTipText(u"Add"_s);
        QCOMPARE(told->text(QAccessible::Name), u"Add"_s);
        QCOMPARE(link.Caption(), u"+ & more"_s);
    }

    void theCaptionIsPaintedInTheColourOfItsState()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.link->Font()->SetSize(30); // so that some pixel is wholly covered
        stage.link->SetCaption(u"H"_s);
        stage.link->SetHoverUnderline(true);
        QCOMPARE(stage.link->ForeColor(), SystemColor::ButtonText);
        QCOMPARE(stage.link->DisabledColor(), SystemColor::GreyText);
        stage.link->SetForeColor(Color::rgb(200, 0, 0));
        QCOMPARE(stage.link->HighlightColor(), Color::rgb(200, 0, 0)); // until it is set
        stage.link->SetHighlightColor(Color::rgb(0, 0, 200));
        stage.link->SetDisabledColor(Color::rgb(0, 120, 0));
        stage.hover(false);
        QTRY_COMPARE(strongestOf(imageOf(*stage.link)), QColor(200, 0, 0));
        stage.hover(true);
        QTRY_COMPARE(strongestOf(imageOf(*stage.link)), QColor(0, 0, 200));
        stage.link->setEnabled(false);
        QCOMPARE(strongestOf(imageOf(*stage.link)), QColor(0, 120, 0));
    }

    void belowTheMouseItIsUnderlinedOrTinted()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.link->SetCaption(u"-"_s);
        stage.link->resize(60, 40);
        stage.hover(false);
        const QImage calm = imageOf(*stage.link);
        stage.hover(true);
        QTRY_VERIFY(imageOf(*stage.link) != calm);
        QVERIFY(imageOf(*stage.link).pixelColor(30, 38).alpha() > 0); // tinted to its edges
        stage.link->SetHoverUnderline(true);
        const QImage lined = imageOf(*stage.link);
        QCOMPARE(lined.pixelColor(30, 38).alpha(), 0);
        QVERIFY(inkOf(lined).height() > inkOf(calm).height());
        stage.link->setEnabled(false);
        QCOMPARE(inkOf(imageOf(*stage.link)), inkOf(calm));
        stage.link->setEnabled(true);
        stage.hover(false);
        QTRY_COMPARE(imageOf(*stage.link), calm);
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

    void aRingShowsTheFocusInsideTheParent()
    {
        Theme theme;
        theme.change(QPalette::Highlight, QColor(1, 99, 7));
        Stage stage;
        QVERIFY(stage.isReady());
        stage.link->SetCaption(u"-"_s);
        stage.link->setGeometry(20, 80, 60, 40); // 20 pixels of it lie below the window's edge
        const QPoint edge(30, 19);
        QVERIFY(imageOf(*stage.link).pixelColor(edge) != QColor(1, 99, 7));
        stage.press(Qt::Key_Tab);
        QTRY_COMPARE(imageOf(*stage.link).pixelColor(edge), QColor(1, 99, 7));
    }
};

TAVRIN_TEST_MAIN(tst_TextLink)
#include "tst_TextLink.moc"
