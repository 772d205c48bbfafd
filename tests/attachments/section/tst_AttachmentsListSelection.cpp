#include "attachments/section/AttachmentsStage.h"

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

/// The line of `Attachments` that is current, and how a person chooses it.
class tst_AttachmentsListSelection : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // What is seen of it

    void withAnEmptyCollectionTheListIsEmptyAndThePaneTooWithCountZero()
    {
        AttachmentsStage stage;
        stage.addThree();
        stage.read();
        stage.replaceRows();
        stage.read();
        QCOMPARE(stage.lines(), QStringList());
        QCOMPARE(stage.caption("lblCount"), u"0"_s);
        QVERIFY(!stage.list->SelectedItem());
        QVERIFY(!stage.list->DropHighlight());
        QCOMPARE(stage.caption("lblFilename"), QString());
        QCOMPARE(stage.description()->Text(), QString());
        QVERIFY(!stage.description()->isEnabled());
        QCOMPARE(stage.rows->Position(), 0);
    }

    void theCurrentLineIsInViewSelectedAndMarkedAlsoWhileTheFocusIsInTheBoxes()
    {
        AttachmentsStage stage;
        for (int key = 1; key <= 40; ++key)
            stage.add(key, u"a.txt"_s);
        stage.rows->SetPosition(40);
        QVERIFY(stage.show());
        stage.read();
        QCOMPARE(stage.list->SelectedItem(), u"40"_s);
        QCOMPARE(stage.list->DropHighlight(), u"40"_s);
        const QRect line = stage.list->visualRect(stage.list->model()->index(39, 1));
        QVERIFY(stage.list->viewport()->rect().contains(line));
        stage.description()->setFocus();
        const QImage image = stage.list->viewport()->grab().toImage();
        const QColor ground = image.pixelColor(line.right() - 4, line.center().y());
        const QColor highlight = stage.list->palette().color(QPalette::Active, QPalette::Highlight);
        QVERIFY(std::abs(ground.red() - highlight.red()) < 10); // a style may shade it a little
        QVERIFY(std::abs(ground.blue() - highlight.blue()) < 10);
    }

    void aSelectionThatIsNotMarkedShowsOnlyWithTheFocus()
    {
        AttachmentsStage stage;
        QVERIFY(stage.openThree());
        const auto ground = [&] {
            const QRect line = stage.list->visualRect(stage.list->model()->index(0, 1));
            return stage.list->viewport()->grab().toImage().pixel(line.right() - 4, line.center().y());
        };
        const QRgb plain = stage.list->palette().color(QPalette::Base).rgb();
        stage.list->SetDropHighlight(std::nullopt);
        QCOMPARE(stage.list->SelectedItem(), u"1"_s);
        QVERIFY(ground() != plain);
        stage.other->setFocus();
        QCOMPARE(ground(), plain);
        QCOMPARE(stage.list->SelectedItem(), u"1"_s);
    }

    // By the mouse and by keys

    void aClickMakesALineCurrentAndBringsTheTypedTextsHomeFirst()
    {
        AttachmentsStage stage;
        QVERIFY(stage.openThree());
        stage.describe(u"Broken"_s);
        stage.comment()->setPlainText(u"seen"_s);
        stage.click(2);
        QCOMPARE(stage.rows->Position(), 3);
        QCOMPARE(stage.list->DropHighlight(), u"3"_s);
        QCOMPARE(stage.list->SelectedItem(), u"3"_s);
        QCOMPARE(stage.value(stage.rows->Item(1), "Description"), u"Broken"_s);
        QCOMPARE(stage.value(stage.rows->Item(1), "Notes"), u"seen"_s);
        QCOMPARE(stage.lines().first(), u"1|photo.png|Broken||"_s);
        QCOMPARE(stage.caption("lblFilename"), u"list.txt"_s);
        QCOMPARE(stage.description()->Text(), u"List"_s);
    }

    void aClickBringsTheLineOfTheRowBeforeUpToDate()
    {
        AttachmentsStage stage;
        QVERIFY(stage.openThree());
        fieldOf(*stage.rows->Item(1), u"UserId"_s)->SetValue(u"mmoss"_s); // as a host may
        fieldOf(*stage.rows->Item(2), u"UserId"_s)->SetValue(u"mmoss"_s);
        stage.click(1);
        QCOMPARE(stage.lines().mid(0, 2),
                 QStringList({u"1|photo.png|Window|mmoss|"_s, u"2|report.docx|Report||"_s}));
    }

    void aClickOnTheCurrentLineDoesNotSaveTheTexts()
    {
        AttachmentsStage stage;
        QVERIFY(stage.openThree());
        stage.comment()->setPlainText(u"not yet"_s);
        stage.click(0);
        QCOMPARE(stage.value(stage.rows->Item(1), "Notes"), QString());
        QCOMPARE(stage.comment()->toPlainText(), u"not yet"_s);
    }

    void arrowKeysAndLettersChooseALineAsAClickDoes()
    {
        AttachmentsStage stage;
        QVERIFY(stage.openThree());
        stage.comment()->setPlainText(u"seen"_s);
        QTest::keyClick(stage.window.windowHandle(), Qt::Key_Down);
        QCOMPARE(stage.rows->Position(), 2);
        QCOMPARE(stage.value(stage.rows->Item(1), "Notes"), u"seen"_s);
        QCOMPARE(stage.caption("lblFilename"), u"report.docx"_s);
        QTest::keyClick(stage.window.windowHandle(), Qt::Key_P);
        QCOMPARE(stage.rows->Position(), 1);
        QCOMPARE(stage.list->DropHighlight(), u"1"_s);
        QVERIFY(stage.list->hasFocus());
    }

    // Failures

    void aFailureIsShownAndTheLineWhoseTextsShowStaysTheChosenOne()
    {
        AttachmentsStage stage;
        QVERIFY(stage.openThree());
        stage.comment()->setPlainText(u"seen"_s);
        stage.host.failWith(Error(u"the host is gone"_s));
        stage.click(1);
        stage.host.failWith({});
        QCOMPARE(stage.boxes.shown().size(), 1);
        const ShownBox box = stage.boxes.take().first();
        QCOMPARE(box.text, u"Unexpected error handling item click: the host is gone"_s);
        QCOMPARE(box.title, u"Attachments"_s);
        QCOMPARE(box.icon, BoxIcon::Critical);
        QCOMPARE(stage.rows->Position(), 1);
        QCOMPARE(stage.list->SelectedItem(), u"1"_s);
        QCOMPARE(stage.comment()->toPlainText(), u"seen"_s);
        stage.click(1); // and again, with a host
        QCOMPARE(stage.rows->Position(), 2);
        QCOMPARE(stage.boxes.texts(), QStringList());
    }

    void aLineBeyondWhatAPositionHoldsIsRefused()
    {
        AttachmentsStage stage;
        constexpr int beyond = 32768;
        for (int key = 1; key < beyond; ++key)
            stage.add(key, u"a.txt"_s);
        const tvTableRowPtr last = stage.rows->NewItem(); // no row there becomes the current one
        fieldOf(*last, u"SeqNo"_s)->SetValue(beyond);
        fieldOf(*last, u"FileName"_s)->SetValue(u"a.txt"_s);
        stage.rows->Add(last);
        stage.rows->SetPosition(32766);
        stage.read();
        QVERIFY(stage.show());
        QTest::keyClick(stage.window.windowHandle(), Qt::Key_Down);
        QCOMPARE(stage.rows->Position(), 32767);
        QTest::keyClick(stage.window.windowHandle(), Qt::Key_Down);
        QCOMPARE(stage.rows->Position(), 32767);
        QCOMPARE(stage.boxes.shown().size(), 1);
        QVERIFY(stage.boxes.texts().first().startsWith(u"Unexpected error handling item click: "_s));
        QCOMPARE(stage.list->SelectedItem(), u"32767"_s);
    }
};

TAVRIN_TEST_MAIN(tst_AttachmentsListSelection)
#include "tst_AttachmentsListSelection.moc"
