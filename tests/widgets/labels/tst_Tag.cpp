#include "support/Looks.h"
#include "support/TestCase.h"
#include "widgets/labels/Tag.h"

#include <QAccessible>
#include <QMouseEvent>

using namespace Qt::StringLiterals;
using namespace tavrin::test;
using tavrin::Color;
using tavrin::Tag;
namespace SystemColor = tavrin::SystemColor;

namespace {

QSize roomFor(const Tag& tag)
{
    const QFontMetrics metrics(tag.Font()->toQFont());
    return metrics.size(Qt::TextSingleLine, tag.Caption()) + QSize(16, 4);
}

/// A window that notes the presses that reach it.
class Parent final : public QWidget
{
public:
    QList<QPoint> presses;

protected:
    void mousePressEvent(QMouseEvent* event) override { presses << event->position().toPoint(); }
};

} // namespace

class tst_Tag : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aTagIsAsLargeAsItsCaptionAndItsPaddings()
    {
        Tag tag;
        tag.SetCaption(u"Handgun"_s);
        QCOMPARE(tag.Caption(), u"Handgun"_s);
        QCOMPARE(tag.size(), roomFor(tag));
        QCOMPARE(tag.sizeHint(), tag.size());
        const int before = tag.width();
        tag.SetCaption(u"Handgun, loaded"_s);
        QVERIFY(tag.width() > before);
        QCOMPARE(tag.size(), roomFor(tag));
    }

    void aBoldFontMakesItWiderAndALargerOneHigher()
    {
        Tag tag;
        tag.SetCaption(u"Handgun"_s);
        const QSize plain = tag.size();
        tag.Font()->SetBold(true);
        QVERIFY(tag.width() > plain.width());
        QCOMPARE(tag.size(), roomFor(tag));
        tag.Font()->SetBold(false);
        QCOMPARE(tag.size(), plain);
        tag.Font()->SetSize(tag.Font()->Size() * 2);
        QVERIFY(tag.height() > plain.height());
        QCOMPARE(tag.size(), roomFor(tag));
    }

    void anotherColourShowsAtOnce()
    {
        QWidget window;
        auto* tag = new Tag(&window);
        tag->SetCaption(u"Handgun"_s);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        PaintCount count(*tag);
        const auto repaints = [&](const auto& change) {
            QCoreApplication::processEvents(); // whatever was to be painted before
            count.paints = 0;
            change();
            QCoreApplication::processEvents();
            return count.paints;
        };
        QCOMPARE(repaints([] {}), 0);
        QCOMPARE(repaints([&] { tag->SetBackColor(Color::rgb(1, 2, 3)); }), 1);
        QCOMPARE(repaints([&] { tag->SetForeColor(Color::rgb(4, 5, 6)); }), 1);
    }

    void aFontIsSharedAndOutlivesItsTags()
    {
        const auto font = std::make_shared<tavrin::Font>();
        Tag stays;
        stays.SetCaption(u"Handgun"_s);
        {
            Tag goes;
            goes.SetFont(font);
            stays.SetFont(font);
            QCOMPARE(goes.Font(), font);
        }
        const int plain = stays.width();
        font->SetBold(true);
        QVERIFY(stays.width() > plain);
        stays.SetFont(nullptr);
        QCOMPARE(stays.Font(), font);
    }

    void nothingOfTheParentsFontIsTakenOver()
    {
        QWidget parent;
        QFont bold = parent.font();
        bold.setBold(true);
        parent.setFont(bold);
        Tag tag(&parent);
        tag.SetCaption(u"Handgun"_s);
        QVERIFY(!tag.font().bold());
        QCOMPARE(tag.size(), roomFor(tag));
    }

    void inANarrowerPlaceTheCaptionIsCutAtTheRight()
    {
        Tag tag;
        tag.SetCaption(u"Knife or cutting instrument"_s);
        const QSize narrow(80, tag.height());
        tag.resize(narrow);
        Tag cut;
        cut.SetCaption(tag.fontMetrics().elidedText(tag.Caption(), Qt::ElideRight, 80 - 16));
        cut.resize(narrow);
        QCOMPARE(imageOf(tag), imageOf(cut));
        QCOMPARE(tag.Caption(), u"Knife or cutting instrument"_s);
        Tag empty;
        empty.resize(narrow);
        QVERIFY(imageOf(tag) != imageOf(empty));
    }

    void theCornersAreRound()
    {
        Tag tag;
        tag.SetCaption(u"Handgun"_s);
        tag.SetBackColor(Color::rgb(10, 200, 30));
        const QImage image = imageOf(tag);
        QCOMPARE(image.pixelColor(image.width() / 2, 0), QColor(10, 200, 30));
        QCOMPARE(image.pixelColor(0, image.height() / 2), QColor(10, 200, 30));
        QVERIFY(image.pixelColor(0, 0).alpha() < 128);
        QVERIFY(image.pixelColor(image.width() - 1, image.height() - 1).alpha() < 128);
    }

    void theCaptionHasItsColourOnTheChips()
    {
        Tag tag;
        QCOMPARE(tag.BackColor(), SystemColor::Highlight);
        QCOMPARE(tag.ForeColor(), SystemColor::HighlightText);
        tag.SetCaption(u"HEM"_s);
        tag.SetBackColor(Color::rgb(0, 0, 0));
        tag.SetForeColor(Color::rgb(255, 0, 0));
        QCOMPARE(tag.BackColor(), Color::rgb(0, 0, 0));
        QCOMPARE(tag.ForeColor(), Color::rgb(255, 0, 0));
        const auto isRed = [](const QColor& color) { return color.red() > 200 && color.green() == 0; };
        const QRect ink = boundsOf(imageOf(tag), isRed);
        QVERIFY(!ink.isEmpty());
        QVERIFY(tag.rect().adjusted(8, 2, -8, -2).contains(ink));
    }

    void aDisabledTagKeepsItsColours()
    {
        Tag tag;
        tag.SetCaption(u"HEM"_s);
        tag.SetBackColor(Color::rgb(0, 0, 0));
        tag.SetForeColor(Color::rgb(255, 255, 255));
        const QImage enabled = imageOf(tag);
        tag.setEnabled(false);
        QCOMPARE(imageOf(tag), enabled);
    }

    void systemColoursFollowTheThemeAtOnceAndPlainOnesStay()
    {
        Theme theme;
        QWidget window;
        auto* tag = new Tag(&window);
        tag->SetCaption(u"Handgun"_s);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        const QPoint edge(tag->width() / 2, 0);
        PaintCount count(*tag);
        theme.change(QPalette::Highlight, QColor(1, 99, 7));
        QTRY_VERIFY(count.paints > 0);
        QCOMPARE(imageOf(*tag).pixelColor(edge), QColor(1, 99, 7));
        tag->SetBackColor(Color::rgb(50, 60, 70));
        theme.change(QPalette::Highlight, QColor(200, 99, 7));
        QCOMPARE(imageOf(*tag).pixelColor(edge), QColor(50, 60, 70));
    }

    void aPressOfTheMouseIsLeftToTheParent()
    {
        Parent parent;
        parent.resize(200, 100);
        auto* tag = new Tag(&parent);
        tag->SetCaption(u"Handgun"_s);
        tag->move(20, 30);
        parent.show();
        QVERIFY(QTest::qWaitForWindowExposed(&parent));
        QTest::mouseClick(tag, Qt::LeftButton, {}, QPoint(5, 6));
        QCOMPARE(parent.presses, QList<QPoint>({QPoint(25, 36)}));
        QCOMPARE(tag->focusPolicy(), Qt::NoFocus);
    }

    void theToolTipIsReadAsItStands_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("plain") << u"Category & group"_s;
        QTest::newRow("markup") << u"<b>Category</b> & <i>group</i>"_s;
        QTest::newRow("half a mark") << u"a <b and > c"_s;
    }
    void theToolTipIsReadAsItStands()
    {
        QFETCH(QString, text);
        QWidget window;
        auto* tag = new Tag(&window);
        tag->SetCaption(u"Handgun"_s);
        tag->SetToolTipText(text);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QCOMPARE(tag->ToolTipText(), text);
        QCOMPARE(toolTipRead(*tag), text);
        QAccessibleInterface* told = QAccessible::queryAccessibleInterface(tag);
        QCOMPARE(told->text(QAccessible::Description), text);
        tag->SetToolTipText(QString());
        QCOMPARE(toolTipRead(*tag), QString());
    }

    void screenReadersKnowItAsTheTextOfItsCaption()
    {
        Tag tag;
        tag.SetCaption(u"Handgun"_s);
        QAccessibleInterface* told = QAccessible::queryAccessibleInterface(&tag);
        QVERIFY(told);
        QCOMPARE(told->role(), QAccessible::StaticText);
        QCOMPARE(told->text(QAccessible::Name), u"Handgun"_s);
        tag.SetCaption(u"Knife"_s);
        QCOMPARE(told->text(QAccessible::Name), u"Knife"_s);
    }
};

TAVRIN_TEST_MAIN(tst_Tag)
#include "tst_Tag.moc"
