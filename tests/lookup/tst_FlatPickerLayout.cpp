#include "base/values/Variant.h"
#include "lookup/FlatPickerForm.h"
#include "support/TestCase.h"

#include <QFontMetricsF>
#include <QVBoxLayout>

#include <cmath>

using namespace tavrin;
using namespace Qt::StringLiterals;
using tavrin::test::EmployeeForm;
using tavrin::test::PeopleSite;
using tavrin::test::UserForm;

namespace {

const QVariant Ann = u"user:asmith"_s;
constexpr Twips BoxMargin = 120; // 8 pixels

/// A place in twips, as the widget stores it.
QRect pixels(Twips left, Twips top, Twips width, Twips height)
{
    return {toPixels(left), toPixels(top), toPixels(width), toPixels(height)};
}

QFontMetricsF metricsOf(const Font& font)
{
    return QFontMetricsF(font.toQFont());
}

/// The measures of a form's picker, worked out anew.
template <typename Form>
struct Measures
{
    explicit Measures(const Form& form)
        : textHeight(static_cast<Twips>(metricsOf(*form.picker->Font()).height()) * 15)
        , captionHeight(form.picker->Caption().isEmpty()
                            ? 0
                            : 60 * std::ceil((toTwips(form.label->height()) + 60) / 60))
        , boxHeight(2 * BoxMargin + textHeight)
        , standardWidth(
              static_cast<Twips>(metricsOf(*form.picker->Font()).horizontalAdvance(QString(28, u'X'))) * 15)
        , textTop(boxHeight / 2 - textHeight / 2 + captionHeight)
        , tagMargin(boxHeight / 2 - toTwips(form.tag->height()) / 2)
        , width(toTwips(form.picker->width()))
        , linkSide(toTwips(form.link->width()))
        , linkHeight(toTwips(form.link->height()))
    {
    }

    QRect linkGroup(Twips extra) const
    {
        return pixels(width - linkSide - 90, boxHeight / 2 - linkHeight / 2 + captionHeight + extra, linkSide,
                      linkHeight);
    }

    Twips textHeight;
    Twips captionHeight;
    Twips boxHeight;
    Twips standardWidth;
    Twips textTop;
    Twips tagMargin;
    Twips width;
    Twips linkSide;
    Twips linkHeight;
};

void addLooks()
{
    QTest::addColumn<double>("points");
    QTest::addColumn<QString>("caption");
    for (const double points : {9.0, 23.0}) {
        for (const QString& caption : {QString(), u"Assigned to"_s}) {
            QTest::newRow(qPrintable(u"%1 points, caption \"%2\""_s.arg(points).arg(caption)))
                << points << caption;
        }
    }
}

/// Settles the one-pass-late width.
template <typename Form>
void layOutAgain(Form& form)
{
    form.picker->SetFont(form.picker->Font());
}

} // namespace

/// The layout of the flat pickers.
class tst_FlatPickerLayout : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Places

    void anEmptyPickersPartsStandAtTheirPlaces_data() { addLooks(); }
    void anEmptyPickersPartsStandAtTheirPlaces()
    {
        QFETCH(double, points);
        QFETCH(QString, caption);
        UserForm form;
        form.picker->SetCaption(caption);
        form.picker->Font()->SetSize(points);
        layOutAgain(form);
        const Measures<UserForm> is(form);
        QCOMPARE(form.picker->width(), toPixels(is.standardWidth));
        QCOMPARE(form.picker->height(), toPixels(is.boxHeight + is.captionHeight));
        QCOMPARE(form.label->pos(), QPoint(0, 0));
        QCOMPARE(form.shape->geometry(), pixels(0, is.captionHeight, is.width, is.boxHeight));
        QCOMPARE(form.link->pos(), QPoint(0, 0));
        QCOMPARE(form.linkGroup->geometry(), is.linkGroup(30)); // the drop-down sign stands lower
        QCOMPARE(form.box->geometry(),
                 pixels(BoxMargin, is.textTop, is.width - 2 * BoxMargin - is.linkSide, is.textHeight));
        QVERIFY(form.box->isVisible());
        QVERIFY(!form.tag->isVisible());
    }

    void aTagSpansTheBoxAndHidesTheTextBoxBesideIt_data() { addLooks(); }
    void aTagSpansTheBoxAndHidesTheTextBoxBesideIt()
    {
        QFETCH(double, points);
        QFETCH(QString, caption);
        UserForm form;
        form.picker->SetCaption(caption);
        form.picker->Font()->SetSize(points);
        form.picker->SetValue(Ann);
        const Measures<UserForm> is(form);
        const Twips tagWidth = is.width - 2 * is.tagMargin;
        QCOMPARE(form.tag->geometry(), pixels(is.tagMargin, is.captionHeight + is.tagMargin, tagWidth,
                                              toTwips(form.tag->sizeHint().height())));
        QCOMPARE(form.linkGroup->geometry(), is.linkGroup(0));
        QVERIFY(form.tag->geometry().intersects(form.linkGroup->geometry())); // the link lies over it
        QVERIFY(form.linkGroup->isVisible());
        const Twips left = 2 * toTwips(form.tag->x()) + toTwips(form.tag->width());
        QVERIFY(toTwips(form.linkGroup->x()) < left);
        QCOMPARE(form.box->pos(), pixels(left, is.textTop, 0, 0).topLeft());
        QCOMPARE(form.box->width(), 0); // a negative width counts as 0
        QVERIFY(!form.box->isVisible());
        QVERIFY(form.tag->isVisible());
    }

    void withoutNamesTheTagStaysHiddenAndTheBoxShowsTheItemsText_data() { addLooks(); }
    void withoutNamesTheTagStaysHiddenAndTheBoxShowsTheItemsText()
    {
        QFETCH(double, points);
        QFETCH(QString, caption);
        UserForm form;
        form.picker->SetShowName(false);
        form.picker->SetCaption(caption);
        form.picker->Font()->SetSize(points);
        form.picker->SetValue(Ann);
        const Measures<UserForm> is(form);
        QVERIFY(!form.tag->isVisible());
        QVERIFY(form.box->isVisible());
        QCOMPARE(form.box->Text(), u"Ann Smith"_s);
        QCOMPARE(form.box->geometry(),
                 pixels(BoxMargin, is.textTop, is.width - 2 * BoxMargin - is.linkSide, is.textHeight));
        QCOMPARE(form.linkGroup->geometry(), is.linkGroup(0));
        QCOMPARE(form.link->Symbol(), 60846);
    }

    void showNameSwitchesBetweenTagAndText()
    {
        UserForm form;
        form.picker->SetValue(Ann);
        form.picker->SetShowName(false);
        QVERIFY(!form.tag->isVisible());
        QVERIFY(form.box->isVisible());
        form.picker->SetShowName(true);
        QVERIFY(form.tag->isVisible());
        QVERIFY(!form.box->isVisible());
    }

    // Width

    void onlyAnEmptyPickerThatShowsNamesTakesTheStandardWidth_data()
    {
        QTest::addColumn<bool>("showName");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<bool>("standard");
        QTest::newRow("empty") << true << Null() << true;
        QTest::newRow("value") << true << Ann << false;
        QTest::newRow("no names") << false << Null() << false;
        QTest::newRow("no names, value") << false << Ann << false;
    }
    void onlyAnEmptyPickerThatShowsNamesTakesTheStandardWidth()
    {
        QFETCH(bool, showName);
        QFETCH(QVariant, value);
        QFETCH(bool, standard);
        UserForm form;
        form.picker->SetShowName(showName);
        form.picker->SetValue(value);
        const int own = form.picker->width() + 123;
        form.picker->resize(own, 11);
        const Measures<UserForm> is(form);
        QCOMPARE(form.picker->width(), standard ? toPixels(is.standardWidth) : own);
        QCOMPARE(form.picker->height(), toPixels(is.boxHeight)); // never one of the form's choosing
        QCOMPARE(form.shape->width(), form.picker->width());
    }

    void gainingAValueKeepsTheWidthAndLosingItTakesTheStandardOne()
    {
        UserForm form;
        const int standard = form.picker->width();
        form.picker->SetValue(Ann);
        QCOMPARE(form.picker->width(), standard);
        form.picker->resize(standard * 2, form.picker->height());
        form.picker->SetValue(u"team:3"_s);
        QCOMPARE(form.picker->width(), standard * 2);
        form.picker->SetValue(Null());
        QCOMPARE(form.picker->width(), standard);
    }

    void withoutNamesLosingTheValueKeepsTheWidth()
    {
        UserForm form;
        form.picker->SetShowName(false);
        form.picker->SetValue(Ann);
        form.picker->resize(777, form.picker->height());
        form.picker->SetValue(Null());
        QCOMPARE(form.picker->width(), 777);
    }

    void onePassAfterAShrinkTheTextBoxHasTheOldWidthAndTheNextPassCorrectsIt()
    {
        UserForm form;
        form.picker->SetValue(Ann);
        form.picker->resize(900, form.picker->height());
        form.picker->SetValue(Null()); // one pass
        const Measures<UserForm> is(form);
        QCOMPARE(form.picker->width(), toPixels(is.standardWidth));
        QVERIFY(form.picker->width() < 900);
        QCOMPARE(form.box->width(), toPixels(toTwips(900) - 2 * BoxMargin - is.linkSide)); // odd, and meant
        QCOMPARE(form.shape->width(), form.picker->width());
        layOutAgain(form);
        QCOMPARE(form.box->width(), toPixels(is.standardWidth - 2 * BoxMargin - is.linkSide));
    }

    void aBiggerFontGrowsTheBoxAndTheControlWithIt()
    {
        UserForm form;
        form.picker->SetValue(Ann);
        const int box = form.shape->height();
        const int control = form.picker->height();
        form.picker->Font()->SetSize(form.picker->Font()->Size() * 2);
        QVERIFY(form.shape->height() > box);
        QCOMPARE(form.picker->height() - control, form.shape->height() - box);
        QCOMPARE(form.tag->Font()->Size(), form.picker->Font()->Size() * 0.95);
        QVERIFY(form.tag->Font()->Bold());
    }

    void theSizeHintIsThatOfAnEmptyPicker()
    {
        UserForm form;
        const QSize bare = form.picker->sizeHint();
        QCOMPARE(bare, form.picker->size());
        form.picker->SetCaption(u"Officer"_s);
        const QSize empty = form.picker->sizeHint();
        QCOMPARE(empty, form.picker->size());
        QCOMPARE(empty.width(), bare.width());
        QVERIFY(empty.height() > bare.height());
        form.picker->SetValue(Ann);
        form.picker->resize(777, 5);
        QCOMPARE(form.picker->width(), 777); // a value lets it be as wide as it is asked to
        QCOMPARE(form.picker->sizeHint(), empty);
        QCOMPARE(form.picker->height(), empty.height());
    }

    void theListIsAsWideAsTheControlAndBelongsToItsWindow()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.type(u"smith"_s);
        const QWidget* popup = form.list()->window();
        QCOMPARE(popup->width(), form.picker->width());
        QCOMPARE(popup->parentWidget(), &form.window);
        QCOMPARE(popup->pos(), form.picker->mapToGlobal(QPoint(0, form.picker->height())));
        form.press(Qt::Key_Escape);
    }

    // Failures

    void aContainerWithAnUnknownUnitLeavesTheSizeAndTheRestIsLaidOut()
    {
        UserForm form;
        form.picker->SetValue(Ann);
        form.window.setProperty("ScaleUnits", u"Furlong"_s);
        const QSize size = form.picker->size();
        form.picker->SetCaption(u"Officer"_s); // which would grow it
        QCOMPARE(form.picker->size(), size);
        QVERIFY(form.shape->y() > 0);
    }

    void aContainerThatCountsInPixelsGivesTheSamePlaces()
    {
        UserForm form;
        const QSize size = form.picker->size();
        form.window.setProperty("ScaleUnits", u"Pixel"_s);
        layOutAgain(form);
        QCOMPARE(form.picker->size(), size);
    }

    void theResizingThatTheLayoutCausesLaysOutNothing()
    {
        UserForm form;
        form.host.state().log.clear();
        form.picker->resize(500, 300); // one pass by the resize event, and none by the one that it causes
        QCOMPARE(form.host.state().log.count(u"ScaleModeFromUnits Twip"_s), 1);
    }

    void aLayoutAroundThePickerGivesItItsOwnSize()
    {
        PeopleSite site;
        QWidget form;
        auto* column = new QVBoxLayout(&form);
        auto* picker = new FlatUserPicker(&form);
        column->addWidget(picker);
        form.resize(1000, 500);
        form.show();
        QVERIFY(QTest::qWaitForWindowExposed(&form));
        QCOMPARE(picker->size(), picker->sizeHint());
        picker->SetCaption(u"Officer"_s);
        QTRY_COMPARE(picker->size(), picker->sizeHint());
    }

    // The employees' picker

    void anEmployeesTagSizesToItsCaptionAndTheTextBoxStandsBesideIt_data() { addLooks(); }
    void anEmployeesTagSizesToItsCaptionAndTheTextBoxStandsBesideIt()
    {
        QFETCH(double, points);
        QFETCH(QString, caption);
        EmployeeForm form;
        form.picker->SetCaption(caption);
        form.picker->Font()->SetSize(points);
        form.picker->SetValue(12);
        const Measures<EmployeeForm> is(form);
        QCOMPARE(form.tag->size(), form.tag->sizeHint());
        QCOMPARE(form.tag->pos(), pixels(is.tagMargin, is.captionHeight + is.tagMargin, 0, 0).topLeft());
        const Twips left = 2 * toTwips(form.tag->x()) + toTwips(form.tag->width());
        QCOMPARE(form.box->geometry(),
                 pixels(left, is.textTop, toTwips(form.linkGroup->x()) - left, is.textHeight));
        QVERIFY(form.box->width() > 0);
        QVERIFY(form.box->isVisible());
        QVERIFY(form.tag->isVisible());
        QCOMPARE(form.linkGroup->geometry(), is.linkGroup(0));
    }

    void anEmployeesTagShrinksToAShorterName()
    {
        EmployeeForm form;
        form.picker->SetValue(11);
        const int width = form.tag->width();
        form.picker->SetValue(14); // "Zed, Ninel"
        QVERIFY(form.tag->width() < width);
        QCOMPARE(form.tag->size(), form.tag->sizeHint());
    }

    void aLongTagLeavesTheEmployeesTextBoxNoWidth()
    {
        EmployeeForm form;
        form.picker->SetValue(11);
        form.picker->resize(form.tag->width(), form.picker->height());
        QCOMPARE(form.box->width(), 0);
        QVERIFY(form.box->isVisible());
        QCOMPARE(form.picker->Value(), QVariant(11.0));
    }

    void theEmployeesTextBoxIsNeitherShownNorHiddenByTheLayout()
    {
        EmployeeForm form;
        form.box->hide();
        form.picker->SetValue(12);
        QVERIFY(!form.box->isVisible());
        form.picker->SetValue(Null());
        QVERIFY(!form.box->isVisible());
        form.box->show();
        form.picker->SetValue(12);
        QVERIFY(form.box->isVisible());
    }

    void anEmptyEmployeesPickerHasTheFrameOfTheOther()
    {
        EmployeeForm form;
        form.picker->SetCaption(u"Officer"_s);
        layOutAgain(form);
        const Measures<EmployeeForm> is(form);
        QCOMPARE(form.picker->size(),
                 QSize(toPixels(is.standardWidth), toPixels(is.boxHeight + is.captionHeight)));
        QCOMPARE(form.shape->geometry(), pixels(0, is.captionHeight, is.width, is.boxHeight));
        QCOMPARE(form.linkGroup->geometry(), is.linkGroup(30));
        QCOMPARE(form.box->geometry(),
                 pixels(BoxMargin, is.textTop, is.width - 2 * BoxMargin - is.linkSide, is.textHeight));
    }
};

TAVRIN_TEST_MAIN(tst_FlatPickerLayout)
#include "tst_FlatPickerLayout.moc"
