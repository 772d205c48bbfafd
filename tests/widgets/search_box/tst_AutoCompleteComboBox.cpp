#include "support/TestCase.h"
#include "testing/Unhandled.h"
#include "widgets/drawing/IconGlyphs.h"
#include "widgets/labels/Link.h"
#include "widgets/search_box/AutoCompleteComboBox.h"
#include "widgets/search_box/SearchStage.h"

#include <QApplication>

using namespace Qt::StringLiterals;
using tavrin::AutoCompleteComboBox;
using tavrin::ClearGlyph;
using tavrin::DropDownGlyph;
using tavrin::Error;
using tavrin::Link;
using tavrin::test::Unhandled;

namespace {

class Stage : public tavrin::test::SearchStage<AutoCompleteComboBox>
{
public:
    Link* button() const { return box->findChild<Link*>(u"lnkButton"_s); }
    /// 0 where there is no button.
    int sign() const { return button()->isHidden() ? 0 : button()->Symbol(); }
    void click() const
    {
        QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {},
                          button()->mapTo(window, button()->rect().center()));
    }
};

enum class Content
{
    Nothing,
    Typed,
    ByCode,
    Chosen,
    ChosenWithoutText,
};

void put(Stage& stage, Content content)
{
    if (content == Content::Typed)
        stage.type(u"item"_s);
    if (content == Content::ByCode)
        stage.box->SetText(u"item"_s);
    if (content == Content::Chosen || content == Content::ChosenWithoutText)
        stage.box->SelectItem(stage.items[1]);
    if (content == Content::ChosenWithoutText)
        stage.box->SetText(QString());
    stage.box->CloseList();
    stage.take();
}

} // namespace

class tst_AutoCompleteComboBox : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theButtonShowsWhatAClickDoes_data()
    {
        QTest::addColumn<Content>("content");
        QTest::addColumn<bool>("showClear");
        QTest::addColumn<int>("minimum");
        QTest::addColumn<int>("sign");
        const auto row = [](const char* name, Content content, bool showClear, int minimum, int sign) {
            QTest::newRow(name) << content << showClear << minimum << sign;
        };
        row("empty", Content::Nothing, false, 0, DropDownGlyph);
        row("empty, may clear", Content::Nothing, true, 0, DropDownGlyph);
        row("empty, waits for a text", Content::Nothing, false, 1, 0);
        row("empty, may clear, waits for a text", Content::Nothing, true, 1, 0);
        row("typed", Content::Typed, false, 0, DropDownGlyph);
        row("typed, may clear", Content::Typed, true, 0, ClearGlyph);
        row("typed, may clear, waits for a text", Content::Typed, true, 1, ClearGlyph);
        row("typed, waits for a text", Content::Typed, false, 1, 0);
        row("text of code, may clear", Content::ByCode, true, 0, ClearGlyph);
        row("chosen", Content::Chosen, false, 0, DropDownGlyph);
        row("chosen, may clear", Content::Chosen, true, 0, ClearGlyph);
        row("chosen without a text, may clear", Content::ChosenWithoutText, true, 0, ClearGlyph);
    }
    void theButtonShowsWhatAClickDoes()
    {
        QFETCH(Content, content);
        QFETCH(bool, showClear);
        QFETCH(int, minimum);
        QFETCH(int, sign);
        for (const bool contentFirst : {false, true}) {
            Stage stage;
            QVERIFY(stage.isReady());
            stage.fill(3);
            if (contentFirst)
                put(stage, content);
            stage.box->SetShowClearButton(showClear);
            QCOMPARE(stage.box->ShowClearButton(), showClear);
            stage.box->SetMinQueryLength(minimum);
            QCOMPARE(stage.box->MinQueryLength(), minimum);
            if (!contentFirst)
                put(stage, content);
            QCOMPARE(stage.sign(), sign);
            QCOMPARE(stage.button()->ToolTipText(), sign == ClearGlyph ? u"Clear"_s : QString());
        }
    }

    void theButtonFollowsWhatIsTyped()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.box->SetShowClearButton(true);
        stage.type(u"a"_s);
        QCOMPARE(stage.sign(), ClearGlyph);
        stage.key(Qt::Key_Backspace);
        QCOMPARE(stage.sign(), DropDownGlyph);
        stage.type(u"a"_s);
        stage.key(Qt::Key_Tab); // which drops what was not chosen
        QCOMPARE(stage.sign(), DropDownGlyph);
    }

    void aClickOpensAndASecondOneCloses()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        stage.after->setFocus();
        stage.click();
        QCOMPARE(stage.rows(), 3);
        QVERIFY(stage.box->hasFocus());
        QCOMPARE(stage.highlighted(), -1);
        QCOMPARE(stage.take(), QStringList({u"search ''"_s}));
        stage.click();
        QVERIFY(!stage.box->ListIsOpen());
        QCOMPARE(stage.take(), QStringList());
        stage.click();
        QCOMPARE(stage.rows(), 3);
        QCOMPARE(stage.take(), QStringList({u"search ''"_s}));
    }

    void aClickOpensTheListOfTheTypedTextAndTheWholeOneOfAChosenItem()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill({u"aa"_s, u"ab"_s, u"b"_s});
        put(stage, Content::Nothing);
        stage.type(u"a"_s);
        stage.box->CloseList();
        stage.take();
        stage.click();
        QCOMPARE(stage.take(), QStringList({u"search 'a'"_s}));
        stage.box->SelectItem(stage.items[1]);
        stage.take();
        stage.click();
        QCOMPARE(stage.take(), QStringList({u"search ''"_s}));
        QCOMPARE(stage.rows(), 3);
    }

    void aClickClears_data()
    {
        QTest::addColumn<Content>("content");
        QTest::newRow("typed") << Content::Typed;
        QTest::newRow("text of code") << Content::ByCode;
        QTest::newRow("chosen") << Content::Chosen;
    }
    void aClickClears()
    {
        QFETCH(Content, content);
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        stage.box->SetShowClearButton(true);
        put(stage, content);
        if (content == Content::Typed)
            stage.key(Qt::Key_F4); // also of an open list
        stage.take();
        stage.onEvent = [&](const QString&) { stage.told << stage.box->Text() + u" is there"_s; };
        stage.click();
        QCOMPARE(stage.take(), QStringList({u"chosen none"_s, u" is there"_s})); // no search
        QVERIFY(stage.box->SelectedItem().isNull());
        QCOMPARE(stage.box->Text(), QString());
        QVERIFY(!stage.box->ListIsOpen());
        QVERIFY(stage.box->hasFocus());
        QCOMPARE(stage.sign(), DropDownGlyph);
    }

    void aDisabledBoxHasNoButtonAndOpensNothing()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        stage.click();
        QVERIFY(stage.box->ListIsOpen());
        stage.take();
        stage.box->SetEnabled(false);
        QVERIFY(!stage.box->Enabled());
        QVERIFY(!stage.box->ListIsOpen());
        QCOMPARE(stage.sign(), 0);
        stage.click();
        stage.key(Qt::Key_F4);
        QVERIFY(!stage.box->ListIsOpen());
        QCOMPARE(stage.take(), QStringList());
        stage.box->SetEnabled(true);
        QCOMPARE(stage.sign(), DropDownGlyph);
        stage.window->setEnabled(false);
        QCOMPARE(stage.sign(), 0);
    }

    void heightAndButtonFollowTheFont()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        const auto font = std::make_shared<tavrin::Font>();
        font->SetSize(9);
        stage.box->SetFont(font);
        const int height = stage.box->height();
        const int side = stage.button()->width();
        QCOMPARE(stage.box->width(), 200);
        font->SetSize(18); // a change inside the shared font
        QCOMPARE(stage.box->font().pointSizeF(), 18.0);
        QVERIFY(stage.box->height() > height);
        QCOMPARE(stage.box->height(), stage.box->sizeHint().height());
        QVERIFY(stage.button()->width() > side);
        QVERIFY(stage.box->rect().contains(stage.button()->geometry()));
        QCOMPARE(stage.box->width(), 200);
        stage.box->SetFont(nullptr);
        QCOMPARE(stage.box->Font(), font);
        font->SetSize(9);
        QCOMPARE(stage.box->height(), height);
    }

    void theTextEndsBeforeTheButton()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        for (const int width : {120, 300}) {
            stage.box->resize(width, stage.box->height());
            const QRect button = stage.button()->geometry();
            QVERIFY(stage.box->rect().contains(button));
            QVERIFY(button.left() > width - 2 * button.width());
            constexpr int ownMargin = 3; // of a line edit: its frame and a blank
            QVERIFY(stage.box->width() - ownMargin - stage.box->textMargins().right() <= button.left());
        }
    }

    void aTextSetByCodeInTheHandlerOfTheClearedChoiceShows()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        stage.box->SetShowClearButton(true);
        put(stage, Content::Chosen);
        stage.onEvent = [&](const QString&) { stage.box->SetText(u"all"_s); };
        stage.click();
        QCOMPARE(stage.box->Text(), u"all"_s);
        QCOMPARE(stage.sign(), ClearGlyph);
    }

    void anErrorOfAClickIsReportedOnce_data()
    {
        QTest::addColumn<bool>("clear");
        QTest::newRow("search") << false;
        QTest::newRow("clear") << true;
    }
    void anErrorOfAClickIsReportedOnce()
    {
        QFETCH(bool, clear);
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        stage.box->SetShowClearButton(clear);
        put(stage, clear ? Content::Chosen : Content::Nothing);
        const Unhandled unhandled;
        stage.onEvent = [](const QString&) { throw Error(u"no"_s); };
        stage.click();
        QCOMPARE(unhandled.texts, QStringList({u"Link_Click: no"_s}));
        QVERIFY(!stage.box->ListIsOpen());
        stage.onEvent = nullptr;
        stage.click();
        QCOMPARE(stage.rows(), 3);
    }

    void aHandlerMayDeleteTheBoxOrTheFormAtAClick_data()
    {
        QTest::addColumn<Content>("content");
        QTest::addColumn<bool>("withForm");
        QTest::newRow("search, box") << Content::Nothing << false;
        QTest::newRow("search, form") << Content::Nothing << true;
        QTest::newRow("clear, box") << Content::Chosen << false;
        QTest::newRow("clear, form") << Content::Chosen << true;
    }
    void aHandlerMayDeleteTheBoxOrTheFormAtAClick()
    {
        QFETCH(Content, content);
        QFETCH(bool, withForm);
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        stage.box->SetShowClearButton(true);
        put(stage, content);
        const Unhandled unhandled;
        stage.onEvent = [&](const QString&) {
            if (withForm)
                delete stage.window.data();
            else
                delete stage.box.data();
        };
        stage.click();
        QVERIFY(!stage.box);
        QCOMPARE(stage.told.size(), 1);
        QCOMPARE(unhandled.texts, QStringList());
    }
};

TAVRIN_TEST_MAIN(tst_AutoCompleteComboBox)
#include "tst_AutoCompleteComboBox.moc"
