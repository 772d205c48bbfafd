#include "support/Looks.h"
#include "support/TestCase.h"
#include "widgets/labels/Label.h"

#include <QAccessible>
#include <QLineEdit>

using namespace Qt::StringLiterals;
using namespace tavrin::test;
using tavrin::Color;
using tavrin::Label;
namespace SystemColor = tavrin::SystemColor;

namespace {

/// Qt's own label of the same text and place.
QImage plainLabel(const QString& text, const QSize& size, QWidget* buddy = nullptr)
{
    QLabel label;
    label.setTextFormat(Qt::PlainText);
    label.setBuddy(buddy);
    label.setText(text);
    label.resize(size);
    return imageOf(label);
}
int widthOf(const QString& text, const QFont& font)
{
    return QFontMetrics(font).size(0, text).width();
}

} // namespace

class tst_Label : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void atFirstALabelResizesItselfToItsCaption()
    {
        Label label;
        QVERIFY(label.AutoSize());
        label.SetCaption(u"Weapon"_s);
        QCOMPARE(label.Caption(), u"Weapon"_s);
        QCOMPARE(label.width(), widthOf(u"Weapon"_s, label.font()));
        QCOMPARE(label.height(), label.fontMetrics().height());
        const QSize before = label.size();
        label.SetCaption(u"Weapon used"_s);
        QVERIFY(label.width() > before.width());
        label.Font()->SetBold(true);
        QCOMPARE(label.width(), widthOf(u"Weapon used"_s, label.Font()->toQFont()));
        QCOMPARE(label.toolTip(), QString());
    }

    void withoutAutoSizeItKeepsItsPlace()
    {
        Label label;
        label.SetAutoSize(false);
        QVERIFY(!label.AutoSize());
        label.resize(60, 20);
        label.SetCaption(u"Weapon used, if any"_s);
        label.Font()->SetSize(20);
        QCOMPARE(label.size(), QSize(60, 20));
        label.SetAutoSize(true);
        QCOMPARE(label.size(), label.sizeHint());
        QVERIFY(label.width() > 60);
    }

    void aLayoutMayMakeItNarrowerOnlyWithoutAutoSize()
    {
        Label label;
        label.SetCaption(u"Weapon used, if any"_s);
        QCOMPARE(label.minimumSizeHint().width(), label.sizeHint().width());
        label.SetAutoSize(false);
        QCOMPARE(label.minimumSizeHint(), QSize(0, label.sizeHint().height()));
    }

    void aLongCaptionIsCutAtTheRightAndStandsInTheToolTip()
    {
        QWidget window;
        window.resize(300, 100);
        auto* label = new Label(&window);
        label->SetAutoSize(false);
        label->SetCaption(u"Weapon used, if any"_s);
        label->resize(70, 20);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QCOMPARE(toolTipRead(*label), u"Weapon used, if any"_s);
        QCOMPARE(label->Caption(), u"Weapon used, if any"_s);
        const QString cut = label->fontMetrics().elidedText(label->Caption(), Qt::ElideRight, 70);
        QCOMPARE(imageOf(*label), plainLabel(cut, label->size()));
        label->resize(250, 20);
        QCOMPARE(toolTipRead(*label), QString());
        label->Font()->SetSize(40);
        QCOMPARE(toolTipRead(*label), u"Weapon used, if any"_s);
        label->SetAutoSize(true);
        QCOMPARE(toolTipRead(*label), QString());
    }

    void aCaptionThatIsTooLongIsCutWhereItIsToldTo()
    {
        Label label;
        label.SetAutoSize(false);
        label.SetCaption(u"/scans/archive/Report.pdf"_s);
        label.resize(90, 20);
        label.SetElideMode(Qt::ElideMiddle);
        const QString cut = label.fontMetrics().elidedText(label.Caption(), Qt::ElideMiddle, 90);
        QVERIFY(cut != label.Caption() && cut.endsWith(u"pdf"_s));
        QCOMPARE(imageOf(label), plainLabel(cut, label.size()));
        QCOMPARE(toolTipRead(label), u"/scans/archive/Report.pdf"_s);
    }

    void screenReadersTellTheWholeCaption()
    {
        Label label;
        label.SetAutoSize(false);
        label.resize(30, 20);
        label.SetCaption(u"Weapon used, if any"_s);
        QAccessibleInterface* told = QAccessible::queryAccessibleInterface(&label);
        QCOMPARE(told->role(), QAccessible::StaticText);
        QCOMPARE(told->text(QAccessible::Name), u"Weapon used, if any"_s);
    }

    void aToolTipThatItWasGivenStays()
    {
        Label label;
        label.setToolTip(u"own"_s);
        label.SetAutoSize(false);
        label.resize(30, 20);
        label.SetCaption(u"Weapon used, if any"_s);
        QCOMPARE(label.toolTip(), u"own"_s);
        label.SetAutoSize(true);
        QCOMPARE(label.toolTip(), u"own"_s);
    }

    void markupIsShownAndReadAsItStands()
    {
        const QString markup = u"<b>x</b> & <i>y</i>"_s;
        QWidget window;
        auto* label = new Label(&window);
        label->SetCaption(markup);
        QCOMPARE(label->width(), widthOf(markup, label->font()));
        label->SetAutoSize(false);
        label->resize(40, 20);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QCOMPARE(toolTipRead(*label), markup);
    }

    void withoutABuddyAnAmpersandIsShownAsItStands_data()
    {
        QTest::addColumn<bool>("autoSize");
        QTest::addColumn<int>("width");
        QTest::newRow("sized to its caption") << true << 0;
        QTest::newRow("in a wide place") << false << 200;
        QTest::newRow("cut") << false << 60;
        QTest::newRow("cut right behind it") << false << 40;
    }
    void withoutABuddyAnAmpersandIsShownAsItStands()
    {
        QFETCH(bool, autoSize);
        QFETCH(int, width);
        Label label;
        label.SetAutoSize(autoSize);
        label.SetCaption(u"Fish && chips & tea"_s);
        if (!autoSize)
            label.resize(width, 20);
        const QString shown = label.fontMetrics().elidedText(label.Caption(), Qt::ElideRight, label.width());
        QCOMPARE(imageOf(label), plainLabel(shown, label.size()));
        QVERIFY(!inkOf(imageOf(label)).isEmpty());
    }

    void withABuddyAnAmpersandMarksTheAccessKey()
    {
        QWidget window;
        window.resize(300, 100);
        auto* first = new QLineEdit(&window);
        auto* name = new QLineEdit(&window);
        first->setGeometry(100, 0, 100, 30);
        name->setGeometry(100, 40, 100, 30);
        auto* label = new Label(&window);
        label->SetCaption(u"&Name"_s);
        QCOMPARE(label->width(), widthOf(u"&Name"_s, label->font()));
        label->setBuddy(name);
        label->SetCaption(u"&Name"_s);
        QCOMPARE(label->width(), widthOf(u"Name"_s, label->font()));
        QCOMPARE(imageOf(*label), plainLabel(u"&Name"_s, label->size(), name));
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        first->setFocus();
        QTest::keyClick(window.windowHandle(), Qt::Key_N, Qt::AltModifier);
        QVERIFY(name->hasFocus());
    }

    void aCutCaptionKeepsItsAccessKeyAndTellsItNotInTheToolTip()
    {
        QWidget window;
        window.resize(300, 100);
        QLineEdit box(&window);
        auto* label = new Label(&window);
        label->setBuddy(&box);
        label->SetAutoSize(false);
        label->SetCaption(u"&Name && address of the owner"_s);
        label->resize(100, 20);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QCOMPARE(toolTipRead(*label), u"Name & address of the owner"_s);
        const QString cut =
            label->fontMetrics().elidedText(label->Caption(), Qt::ElideRight, 100, Qt::TextShowMnemonic);
        QVERIFY(cut != label->Caption());
        QCOMPARE(imageOf(*label), plainLabel(cut, label->size(), &box));
    }

    void aFontIsSharedAndNothingIsTakenOverFromTheParent()
    {
        QWidget parent;
        QFont bold = parent.font();
        bold.setBold(true);
        parent.setFont(bold);
        auto* label = new Label(&parent);
        label->SetCaption(u"Weapon"_s);
        QVERIFY(!label->font().bold());
        const auto font = std::make_shared<tavrin::Font>();
        label->SetFont(font);
        QCOMPARE(label->Font(), font);
        label->SetFont(nullptr);
        QCOMPARE(label->Font(), font);
        font->SetItalic(true);
        QVERIFY(label->font().italic());
        delete label;
        font->SetItalic(false); // nobody is left who would hear it
    }

    void theTextHasItsColourAlsoWhenDisabled()
    {
        Label label;
        QCOMPARE(label.ForeColor(), SystemColor::ButtonText);
        label.SetCaption(u"HEM"_s);
        label.SetForeColor(Color::rgb(200, 0, 0));
        QCOMPARE(label.ForeColor(), Color::rgb(200, 0, 0));
        const QColor enabled = strongestOf(imageOf(label));
        QCOMPARE(enabled.red(), 200);
        QCOMPARE(enabled.green(), 0);
        label.setEnabled(false);
        QCOMPARE(strongestOf(imageOf(label)), enabled);
    }

    void aSystemColourFollowsTheThemeAtOnceAndAPlainOneStays()
    {
        Theme theme;
        QWidget window;
        auto* label = new Label(&window);
        label->SetCaption(u"HEM"_s);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        PaintCount count(*label);
        theme.change(QPalette::WindowText, QColor(0, 90, 0));
        QTRY_VERIFY(count.paints > 0);
        QCOMPARE(strongestOf(imageOf(*label)).green(), 90);
        label->SetForeColor(Color::rgb(0, 70, 0));
        theme.change(QPalette::WindowText, QColor(0, 200, 0));
        QCOMPARE(strongestOf(imageOf(*label)).green(), 70);
    }
};

TAVRIN_TEST_MAIN(tst_Label)
#include "tst_Label.moc"
