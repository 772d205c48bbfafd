#include "base/values/Variant.h"
#include "lookup/ComboPickerForm.h"
#include "lookup/EmployeePicker.h"
#include "support/Fonts.h"
#include "support/TestCase.h"
#include "widgets/drawing/Placement.h"

#include <QVBoxLayout>

using namespace tavrin;
using namespace Qt::StringLiterals;
using tavrin::test::employee;
using tavrin::test::fontOf;
using tavrin::test::listOf;
using tavrin::test::recordOf;
using tavrin::test::RecordParts;
using Form = tavrin::test::ComboPickerForm<EmployeePicker>;

namespace {

constexpr int ComboPixels = 113; // 1695 twips
constexpr int LabelPixels = 116; // and 45 more

} // namespace

/// The layout of `EmployeePicker` and the painting of its rows.
class tst_EmployeePickerLayout : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Layout

    void withTheNameTheComboIs1695WideAndTheLabelTakesTheRest_data()
    {
        QTest::addColumn<double>("size");
        QTest::newRow("9 points") << 9.0;
        QTest::newRow("24 points") << 24.0;
    }
    void withTheNameTheComboIs1695WideAndTheLabelTakesTheRest()
    {
        QFETCH(double, size);
        Form form(400);
        QVERIFY(form.isReady());
        form.picker->SetFont(fontOf(size));
        const int height = form.box->sizeHint().height();
        QCOMPARE(form.box->geometry(), QRect(0, 0, ComboPixels, height));
        QCOMPARE(form.label->geometry(), QRect(LabelPixels, 0, 400 - LabelPixels, height));
        QCOMPARE(form.picker->geometry(), QRect(20, 20, 400, height));
        form.picker->resize(500, 200); // the height is the combo's whatever the container wants
        QCOMPARE(form.box->geometry(), QRect(0, 0, ComboPixels, height));
        QCOMPARE(form.label->geometry(), QRect(LabelPixels, 0, 500 - LabelPixels, height));
        QCOMPARE(form.picker->geometry(), QRect(20, 20, 500, height));
    }

    void withoutTheNameTheLabelIsHiddenTheComboFillsTheControlAndTheLabelsHeightStillFollows()
    {
        Form form(400);
        QVERIFY(form.isReady());
        form.picker->SetShowName(false);
        QVERIFY(!form.label->isVisible());
        QCOMPARE(form.box->geometry().size(), form.picker->size());
        QCOMPARE(form.box->width(), 400);
        QCOMPARE(form.label->x(), 400 + 3); // it moves, and keeps its width
        QCOMPARE(form.label->width(), 400 - LabelPixels);
        const int height = form.picker->height();
        form.picker->SetFont(fontOf(30));
        QVERIFY(form.picker->height() > height);
        QCOMPARE(form.picker->height(), form.box->height());
        QCOMPARE(form.label->height(), form.picker->height());
        form.picker->resize(250, 10);
        QCOMPARE(form.box->width(), 250);
        QCOMPARE(form.label->height(), form.box->height());
        form.picker->SetShowName(true);
        QVERIFY(form.label->isVisible());
        QCOMPARE(form.label->geometry(), QRect(LabelPixels, 0, 250 - LabelPixels, form.box->height()));
    }

    void aControlNarrowerThanTheComboGrowsToItAndTheLabelKeepsItsWidth()
    {
        Form form(400);
        QVERIFY(form.isReady());
        const int width = form.label->width();
        form.picker->resize(60, 30);
        QCOMPARE(form.picker->width(), ComboPixels);
        QCOMPARE(form.box->width(), ComboPixels);
        QCOMPARE(form.label->x(), LabelPixels);
        QCOMPARE(form.label->width(), width); // its left is beyond the control, so the width stands
        form.picker->SetShowName(false);
        form.picker->resize(60, 30);
        QCOMPARE(form.picker->width(), 60);
        QCOMPARE(form.box->width(), 60);
    }

    void theLabelHasAWidthAsSoonAsItsLeftIsInsideTheControl_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("labelWidth");
        QTest::newRow("its left is the edge") << LabelPixels << 400 - LabelPixels;
        QTest::newRow("one pixel") << LabelPixels + 1 << 1;
    }
    void theLabelHasAWidthAsSoonAsItsLeftIsInsideTheControl()
    {
        QFETCH(int, width);
        Form form(400);
        QVERIFY(form.isReady());
        form.picker->resize(width, 30);
        QTEST(form.label->width(), "labelWidth");
    }

    void theListIsAsWideAsTheControlAndNotAsTheCombo()
    {
        Form form(700);
        QVERIFY(form.isReady());
        form.type(u"dan"_s);
        QCOMPARE(form.view()->window()->width(), 700);
        form.box->CloseList();
        form.picker->resize(750, 30);
        form.type(u"e"_s);
        QCOMPARE(form.view()->window()->width(), 750);
        form.box->CloseList();
    }

    void aChangeInsideTheFontResizesTheControl()
    {
        Form form(400);
        QVERIFY(form.isReady());
        const FontPtr font = fontOf(9);
        form.picker->SetFont(font);
        const int height = form.picker->height();
        font->SetSize(30);
        QVERIFY(form.picker->height() > height);
        QCOMPARE(form.picker->height(), form.box->height());
        QCOMPARE(form.label->height(), form.box->height());
        font->SetSize(9);
        QCOMPARE(form.picker->height(), height);
    }

    void inALayoutTheControlGrowsAndShrinksWithItsWindow_data()
    {
        QTest::addColumn<bool>("showName");
        QTest::newRow("with the name") << true;
        QTest::newRow("without the name") << false;
    }
    void inALayoutTheControlGrowsAndShrinksWithItsWindow()
    {
        QFETCH(bool, showName);
        tavrin::test::FakeHost host;
        const HostInstallation installation(host);
        QWidget window;
        auto* layout = new QVBoxLayout(&window);
        layout->setContentsMargins(0, 0, 0, 0);
        auto* picker = new EmployeePicker(&window);
        picker->SetShowName(showName);
        layout->addWidget(picker);
        layout->addStretch();
        window.resize(300, 200);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        for (const int width : {700, 200}) {
            window.resize(width, 200);
            QTRY_COMPARE(picker->width(), width);
            QCOMPARE(window.width(), width);
        }
        QCOMPARE(picker->height(), picker->findChild<AutoCompleteComboBox*>()->height());
        window.resize(40, 200);
        QTRY_VERIFY(window.width() < 200);
        QCOMPARE(picker->width() >= ComboPixels, showName);
    }

    // Rows

    void aRowHasItsFixedFontTheIdInBoldAndTheBadgeInAColumn()
    {
        Form form;
        form.picker->SetFont(fontOf(30));
        const XmlNode item = recordOf("Employee", employee(1, "A11", "Adams, Ann", "501", true));
        const QStringList calls{u"Segoe UI 9 bold \"A11: \" at 0"_s,
                                u"Segoe UI 9 \"Adams, Ann\" at 600"_s,
                                u"Segoe UI 9 \"#501\" at 2500"_s,
                                u"width 2900"_s,
                                u"line"_s,
                                u"height 200"_s};
        QCOMPARE(form.drawn(item), calls);
        QCOMPARE(form.drawn(item, {}, true), calls); // a selected row is painted alike
    }

    void aLongNameIsOverprintedByTheBadge()
    {
        const Form form;
        QCOMPARE(
            form.drawn(recordOf("Employee", employee(1, "A11", "A name of more than 25 letters", "7", true))),
            QStringList({u"Segoe UI 9 bold \"A11: \" at 0"_s,
                         u"Segoe UI 9 \"A name of more than 25 letters\" at 600"_s,
                         u"Segoe UI 9 \"#7\" at 2500"_s, u"width 2700"_s, u"line"_s, u"height 200"_s}));
    }

    void aBadgeOfBlanksPrintsNothingAndTheNumberSignComesForARealBadgeOnly_data()
    {
        QTest::addColumn<QString>("badge");
        QTest::addColumn<QStringList>("printed");
        QTest::addColumn<QString>("width");
        QTest::newRow("blanks") << u"   "_s << QStringList() << u"width 2500"_s;
        QTest::newRow("empty") << QString() << QStringList() << u"width 2500"_s;
        QTest::newRow("untrimmed") << u" 7 "_s << QStringList{u"Segoe UI 9 \"# 7 \" at 2500"_s}
                                   << u"width 2900"_s;
    }
    void aBadgeOfBlanksPrintsNothingAndTheNumberSignComesForARealBadgeOnly()
    {
        QFETCH(QString, badge);
        QFETCH(QStringList, printed);
        QFETCH(QString, width);
        const Form form;
        QCOMPARE(form.drawn(recordOf("Employee", employee(1, "A", "N", qPrintable(badge), true))),
                 QStringList({u"Segoe UI 9 bold \"A: \" at 0"_s, u"Segoe UI 9 \"N\" at 360"_s}) + printed +
                     QStringList({width, u"line"_s, u"height 200"_s}));
    }

    void theQueryIsMarkedInAllThreeTexts()
    {
        const Form form;
        const XmlNode item = recordOf("Employee", employee(1, "A5", "Bo 5a", "A5", true));
        QCOMPARE(form.drawn(item, u"a5"_s),
                 QStringList(
                     {u"box 0 to 240"_s, u"Segoe UI 9 bold \"A5\" at 0"_s, u"Segoe UI 9 bold \": \" at 240"_s,
                      u"Segoe UI 9 \"Bo 5a\" at 480"_s, u"Segoe UI 9 \"#\" at 2500"_s, u"box 2600 to 2840"_s,
                      u"Segoe UI 9 bold \"A5\" at 2600"_s, u"width 2840"_s, u"line"_s, u"height 200"_s}));
    }

    void theColonBelongsToTheTextThatIsMarked()
    {
        const Form form;
        const XmlNode item = recordOf("Employee", employee(1, "A5", "Bo", "", true));
        QVERIFY(form.drawn(item, u"5: "_s).contains(u"Segoe UI 9 bold \"5: \" at 120"_s));
    }

    void aRecordWithoutChildElementsPrintsEmptyTextsInTheirPlaces()
    {
        const Form form;
        QCOMPARE(
            form.drawn(recordOf("Employee", {})),
            QStringList({u"Segoe UI 9 bold \": \" at 0"_s, u"width 2500"_s, u"line"_s, u"height 200"_s}));
    }

    void theRealListHasRowsOfTheFixedFontWhateverTheControlsFont()
    {
        Form form;
        QVERIFY(form.isReady());
        form.type(u"a"_s);
        QCOMPARE(form.view()->rowText(0), u"A11: Adams, Ann #501"_s);
        MeasuredPicture picture(form.view()->font(), form.view()->viewport(), QSizeF(100, 100));
        form.box->DrawItem.raise(picture, form.search(u"a"_s).front(), {}, false);
        QCOMPARE(picture.Width(), picture.TextWidth(QString(25, u'X')) + picture.TextWidth(u"#501"_s));
        QCOMPARE(picture.FontSize(), 9.0);
        form.box->CloseList();
    }
};

TAVRIN_TEST_MAIN(tst_EmployeePickerLayout)
#include "tst_EmployeePickerLayout.moc"
