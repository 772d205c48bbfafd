#include "base/values/Variant.h"
#include "frame/control_frame/ContainerColor.h"
#include "lookup/FlatPickerForm.h"
#include "support/TestCase.h"

#include <QScopeGuard>
#include <QTabWidget>

using namespace tavrin;
using namespace Qt::StringLiterals;
using tavrin::test::PeopleSite;
using tavrin::test::UserForm;

namespace {

const QVariant Ann = u"user:asmith"_s;

} // namespace

/// Colours, signs, fonts and caption of the flat pickers.
class tst_FlatPickerAppearance : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Colours

    void theColoursAreThoseOfTheState_data()
    {
        QTest::addColumn<bool>("enabled");
        QTest::addColumn<bool>("focused");
        QTest::addColumn<int>("set");
        QTest::newRow("normal") << true << false << 10;
        QTest::newRow("disabled") << false << false << 20;
        QTest::newRow("focused") << true << true << 30;
    }
    void theColoursAreThoseOfTheState()
    {
        QFETCH(bool, enabled);
        QFETCH(bool, focused);
        QFETCH(int, set);
        UserForm form;
        QVERIFY(form.isReady());
        form.picker->SetCaption(u"Officer"_s);
        if (focused)
            form.picker->setFocus();
        form.picker->SetEnabled(enabled);
        const TextBoxColorSet colors = tavrin::test::colorSet(set);
        QCOMPARE(form.tag->ForeColor(), colors.TagForeColor);
        QCOMPARE(form.tag->BackColor(), colors.TagBackColor);
        QCOMPARE(form.shape->BorderColor(), colors.BorderColor);
        QCOMPARE(form.shape->BackColor(), colors.BackColor);
        QCOMPARE(form.box->ForeColor(), colors.ForeColor);
        QCOMPARE(form.box->BackColor(), colors.BackColor);
        QCOMPARE(form.linkGroup->BackColor(), colors.BackColor);
        QCOMPARE(form.label->ForeColor(), colors.ForeColor);
        QCOMPARE(form.link->ForeColor(), colors.BorderColor);
        QCOMPARE(form.box->PlaceholderColor(), tavrin::test::colorSet(20).ForeColor); // in every state
        QCOMPARE(form.box->Placeholder(), enabled ? u"Type to search"_s : QString());
    }

    void theColoursComeAndGoWithTheFocus()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.picker->setFocus();
        QCOMPARE(form.shape->BackColor(), tavrin::test::colorSet(30).BackColor);
        form.after->setFocus();
        QCOMPARE(form.shape->BackColor(), tavrin::test::colorSet(10).BackColor);
    }

    void focusEnteringATagGivesTheFocusedColoursAndTheControlItselfTakesTheFocus()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.picker->SetValue(Ann);
        form.press(Qt::Key_Tab);
        QCOMPARE(form.shape->BackColor(), tavrin::test::colorSet(30).BackColor);
        QVERIFY(!form.box->isVisible());
        QVERIFY(form.picker->hasFocus());
        QCOMPARE(QApplication::focusWidget(), form.picker);
    }

    void aDisabledPickersColoursWinOverTheFocus()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.picker->setFocus();
        QVERIFY(form.box->hasFocus());
        QCOMPARE(form.shape->BackColor(), tavrin::test::colorSet(30).BackColor);
        form.picker->SetEnabled(false);
        const TextBoxColorSet disabled = tavrin::test::colorSet(20);
        QCOMPARE(form.shape->BackColor(), disabled.BackColor);
        QCOMPARE(form.shape->BorderColor(), disabled.BorderColor);
        QCOMPARE(form.box->ForeColor(), disabled.ForeColor);
        QCOMPARE(form.tag->BackColor(), disabled.TagBackColor);
        QVERIFY(!form.box->hasFocus());
        form.picker->SetEnabled(true); // the focus went on meanwhile
        QCOMPARE(form.shape->BackColor(), tavrin::test::colorSet(10).BackColor);
        QCOMPARE(form.shape->BorderColor(), tavrin::test::colorSet(10).BorderColor);
        form.picker->setFocus();
        QCOMPARE(form.shape->BackColor(), tavrin::test::colorSet(30).BackColor);
    }

    void theFrameHasTheContainersColourOrTheAmbientOne_data()
    {
        QTest::addColumn<QVariant>("container");
        QTest::addColumn<Color>("frame");
        QTest::newRow("no member BackColor") << QVariant() << Color(SystemColor::ButtonFace);
        QTest::newRow("one that is no colour") << QVariant(u"red"_s) << Color(SystemColor::ButtonFace);
        QTest::newRow("a colour") << QVariant::fromValue(Color::rgb(1, 2, 3)) << Color::rgb(1, 2, 3);
        QTest::newRow("a colour of the system")
            << QVariant::fromValue(SystemColor::WindowBackground) << Color(SystemColor::WindowBackground);
    }
    void theFrameHasTheContainersColourOrTheAmbientOne()
    {
        QFETCH(QVariant, container);
        QFETCH(Color, frame);
        PeopleSite site;
        QWidget form;
        form.setProperty("BackColor", container);
        const FlatUserPicker picker(&form);
        QCOMPARE(picker.FrameBackColor(), frame);
        form.setProperty("BackColor", QVariant::fromValue(Color::rgb(7, 8, 9)));
        QCOMPARE(picker.FrameBackColor(), Color::rgb(7, 8, 9)); // and follows it
    }

    void onAColouredContainerItIsNoPatch_data()
    {
        QTest::addColumn<QColor>("window");
        QTest::addColumn<bool>("onATab");
        QTest::addColumn<QVariant>("property");
        const QColor yellow(250, 240, 10);
        const QColor face = QApplication::palette().color(QPalette::Window);
        QTest::newRow("a palette") << yellow << false << QVariant();
        QTest::newRow("an ordinary tab page") << face << true << QVariant();
        QTest::newRow("a tab page on a palette") << yellow << true << QVariant();
        QTest::newRow("a colour of Qt") << face << false << QVariant(yellow);
        QTest::newRow("a number") << face << false << QVariant(0x30201);
    }
    void onAColouredContainerItIsNoPatch()
    {
        QFETCH(QColor, window);
        QFETCH(bool, onATab);
        QFETCH(QVariant, property);
        PeopleSite site;
        QWidget form;
        form.resize(700, 400);
        QPalette palette;
        palette.setColor(QPalette::Window, window);
        form.setPalette(palette);
        QWidget* page = &form;
        if (onATab) {
            auto* tabs = new QTabWidget(&form);
            tabs->resize(690, 390);
            page = new QWidget;
            tabs->addTab(page, u"Page"_s);
        }
        page->setProperty("BackColor", property);
        auto* picker = new FlatEmployeePicker(page);
        picker->move(30, 30);
        picker->SetCaption(u"Officer"_s);
        form.show();
        const QImage seen = form.grab().toImage();
        const auto at = [&](const QPoint& inPage) { return seen.pixelColor(page->mapTo(&form, inPage)); };
        const QColor beside = colorOf(property) ? colorOf(property)->resolve(palette) : at(QPoint(10, 10));
        const QRect place = picker->geometry();
        QCOMPARE(at(place.topRight() - QPoint(2, -2)), beside); // right of the caption
        QCOMPARE(picker->FrameBackColor().resolve(QApplication::palette()), beside);
    }

    void aColourThatComesFromFurtherDownIsSeenThroughThePicker()
    {
        PeopleSite site;
        QWidget form;
        form.resize(700, 400);
        auto* page = new QWidget(&form);
        page->resize(700, 400);
        auto* picker = new FlatUserPicker(page);
        picker->move(30, 30);
        picker->SetCaption(u"Officer"_s);
        form.show();
        const QColor yellow(250, 240, 10);
        form.setProperty("BackColor", yellow); // the form itself may draw a picture
        QCOMPARE(picker->FrameBackColor(), Color::rgb(250, 240, 10));
        QVERIFY(!picker->autoFillBackground());
        page->setProperty("BackColor", yellow); // what its own container offers is taken at its word
        QVERIFY(picker->autoFillBackground());
        page->setProperty("BackColor", QVariant());
        QVERIFY(!picker->autoFillBackground());
    }

    void theThemesColourIsFollowedByAPickerOnAFormOfTheTheme()
    {
        const QPalette before = QApplication::palette();
        const auto restore = qScopeGuard([&before] { QApplication::setPalette(before); });
        UserForm form;
        QVERIFY(form.isReady());
        const QColor dark(40, 50, 60);
        QApplication::setPalette(QPalette(dark));
        QTRY_COMPARE(form.picker->palette().color(QPalette::Window), dark);
        QCOMPARE(form.picker->FrameBackColor(), SystemColor::ButtonFace);
    }

    // Glyph

    void theGlyphFollowsStateAndValueAndTheToolTipTheValueAlone_data()
    {
        QTest::addColumn<bool>("enabled");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<int>("glyph");
        QTest::addColumn<QString>("toolTip");
        QTest::newRow("no value") << true << Null() << 59758 << QString();
        QTest::newRow("value") << true << Ann << 60846 << u"Clear"_s;
        QTest::newRow("disabled") << false << Null() << 59758 << QString();
        QTest::newRow("disabled with a value") << false << Ann << 59758 << u"Clear"_s;
    }
    void theGlyphFollowsStateAndValueAndTheToolTipTheValueAlone()
    {
        QFETCH(bool, enabled);
        QFETCH(QVariant, value);
        QFETCH(int, glyph);
        QFETCH(QString, toolTip);
        UserForm form;
        form.picker->SetValue(value);
        form.picker->SetEnabled(enabled);
        QCOMPARE(form.link->Symbol(), glyph);
        QCOMPARE(form.link->ToolTipText(), toolTip);
    }

    // Fonts

    void theTagIsBoldAt95PercentAndTheLinkAsLargeAsTheFont()
    {
        UserForm form;
        Font& font = *form.picker->Font();
        font.SetSize(20);
        font.SetItalic(true);
        font.SetUnderline(true);
        font.SetCharset(77);
        QCOMPARE(form.tag->Font()->Size(), 19.0);
        QVERIFY(form.tag->Font()->Bold());
        QVERIFY(form.tag->Font()->Italic());
        QVERIFY(form.tag->Font()->Underline());
        QCOMPARE(form.tag->Font()->Charset(), 77);
        QCOMPARE(form.link->Font()->Size(), 20.0);
        QVERIFY(form.link->Font() != form.picker->Font()); // it keeps its own icon font
        QCOMPARE(form.label->Font()->toQFont(), font.toQFont());
        QVERIFY(form.label->Font() != form.picker->Font()); // a clone
        QCOMPARE(form.box->Font(), form.picker->Font());    // the same
        QVERIFY(!font.Bold());
    }

    // Caption

    void theCaptionShowsWithAStarWhereRequired_data()
    {
        QTest::addColumn<QString>("caption");
        QTest::addColumn<bool>("required");
        QTest::addColumn<QString>("shown");
        QTest::newRow("plain") << u"Officer"_s << false << u"Officer"_s;
        QTest::newRow("required") << u"Officer"_s << true << u"Officer*"_s;
        QTest::newRow("none") << QString() << false << QString();
        QTest::newRow("none, required") << QString() << true << QString();
    }
    void theCaptionShowsWithAStarWhereRequired()
    {
        QFETCH(QString, caption);
        QFETCH(bool, required);
        QFETCH(QString, shown);
        UserForm form;
        form.picker->SetCaption(caption);
        form.picker->SetRequired(required);
        QCOMPARE(form.label->Caption(), shown);
        QCOMPARE(form.label->isVisible(), !caption.isEmpty());
        QCOMPARE(form.shape->y() == 0, caption.isEmpty()); // without one the box starts at the very top
    }

    void theCaptionsHeightIsAWholeMultipleOf60AtLeast60AboveTheLabels()
    {
        UserForm form;
        form.picker->SetCaption(u"Officer"_s);
        bool exact = false;
        bool rounded = false;
        for (int size = 6; size < 40; ++size) {
            form.picker->Font()->SetSize(size);
            const int label = static_cast<int>(toTwips(form.label->height()));
            const int caption = static_cast<int>(toTwips(form.shape->y()));
            QCOMPARE(caption % 60, 0);
            QVERIFY(caption >= label + 60);
            QVERIFY(caption < label + 120);
            exact = exact || caption == label + 60;
            rounded = rounded || caption > label + 60;
        }
        QVERIFY(exact && rounded); // both were seen
    }

    void aCaptionThatIsTakenAwayGivesItsRoomBack()
    {
        UserForm form;
        const int height = form.picker->height();
        form.picker->SetCaption(u"Officer"_s);
        QVERIFY(form.picker->height() > height);
        form.picker->SetCaption(QString());
        QCOMPARE(form.picker->height(), height);
        QVERIFY(!form.label->isVisible());
    }
};

TAVRIN_TEST_MAIN(tst_FlatPickerAppearance)
#include "tst_FlatPickerAppearance.moc"
