#include "attachments/dialogs/UploadTaskStage.h"
#include "support/Fonts.h"
#include "widgets/labels/WrapLabel.h"

#include <QPushButton>
#include <QScreen>
#include <QScrollBar>

using namespace Qt::StringLiterals;
using namespace tavrin;
using test::ApplicationFontSize;
using test::LongReason;
using test::UploadLineHeight;
using test::UploadTaskStage;

/// How large the dialog of an upload is, and what of it is in view.
class tst_frmUploadTaskSizes : public test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theWindowGrowsWithItsLinesUpToAQuarterOfTheScreen()
    {
        UploadTaskStage stage;
        const int limit = stage.dialog->screen()->size().height() / 4;
        QList<int> heights;
        stage.during([&](const QString&) {
            const int height = stage.dialog->height();
            QCOMPARE(height, std::min(limit, stage.flow()->height()));
            QCOMPARE(stage.scroll()->geometry(), QRect(0, 0, 309, height)); // the strip is covered
            const QWidget* newest = stage.lines().last();
            const int bottom = newest->y() + newest->height();
            QCOMPARE(toPixels(stage.scroll()->ScrollTop()), std::max(0, bottom - height));
            if (heights.isEmpty() || heights.last() != height)
                heights << height;
        });
        stage.start(stage.files({u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s, u"f"_s, u"g"_s}));
        QVERIFY(limit > 4 * UploadLineHeight && limit < 5 * UploadLineHeight);
        QCOMPARE(heights, QList<int>({UploadLineHeight, 2 * UploadLineHeight, 3 * UploadLineHeight,
                                      4 * UploadLineHeight, limit}));
    }

    void aLineThatFailsPushesTheNextOneDown()
    {
        UploadTaskStage stage;
        const QStringList paths = stage.files({u"a"_s, u"b"_s});
        stage.fail({paths[0]}, LongReason);
        QList<QRect> places;
        stage.during([&](const QString& path) {
            if (path == paths[1])
                places = {stage.lines()[1]->geometry(), stage.lines()[2]->geometry()};
        });
        stage.answer({[&] { stage.click("cmdSkip"); }});
        stage.start(paths);
        QCOMPARE(places.size(), 2);
        QCOMPARE(places[0].top(), 0);
        QVERIFY(places[0].height() > UploadLineHeight + 20);
        QCOMPARE(places[1], QRect(0, places[0].bottom() + 1, 309, UploadLineHeight));
    }

    void atTheQuestionTheTallestReasonShowsAboveTheStrip()
    {
        UploadTaskStage stage;
        const QStringList paths = stage.files({u"a"_s, u"b"_s, u"c"_s});
        stage.fail({paths[0]});
        stage.fail({paths[2]}, LongReason);
        stage.answer({[&] {
            const QList<FileUpload*> lines = stage.lines();
            const int tallest = lines[3]->height();
            QVERIFY(tallest > lines[1]->height());
            QCOMPARE(stage.scroll()->geometry(), QRect(0, 0, 309, tallest + 16));
            QCOMPARE(stage.dialog->height(), tallest + 16 + 93);
            QCOMPARE(stage.strip()->geometry(), QRect(0, tallest + 16, 309, 93));
            QCOMPARE(stage.scroll()->ScrollTop(), Twips(0));
            QCOMPARE(lines[1]->y(), 0);
            QCOMPARE(lines[3]->y(), lines[1]->height()); // the one that arrived takes no room
            QCOMPARE(stage.flow()->height(), lines[1]->height() + tallest);
            stage.click("cmdSkip");
        }});
        stage.start(paths);
        QCOMPARE(stage.unanswered, 0);
    }

    void aLargerFontLeavesTheQuestionAboveItsButtons_data()
    {
        QTest::addColumn<int>("points");
        QTest::newRow("14 points") << 14;
        QTest::newRow("18 points") << 18;
    }
    void aLargerFontLeavesTheQuestionAboveItsButtons()
    {
        QFETCH(int, points);
        const ApplicationFontSize large(points);
        UploadTaskStage stage;
        const QStringList paths = stage.files({u"a"_s});
        stage.fail(paths);
        stage.answer({[&] {
            const auto* question = stage.strip()->findChild<WrapLabel*>();
            QVERIFY(question->height() > 50); // else the font has not come
            for (const char* name : {"cmdRetry", "cmdSkip"}) {
                const auto* button = stage.part<QPushButton>(name);
                QVERIFY(button->y() > question->geometry().bottom());
                QVERIFY(stage.strip()->rect().contains(button->geometry()));
                QVERIFY(button->height() >= button->fontMetrics().height());
                QVERIFY(button->width() > button->fontMetrics().horizontalAdvance(button->text()));
            }
            QCOMPARE(stage.strip()->geometry().bottom() + 1, stage.dialog->height());
            stage.click("cmdSkip");
        }});
        stage.start(paths);
        QCOMPARE(stage.unanswered, 0);
    }

    void atTheQuestionTheTallestReasonShowsThoughItIsTheFirst()
    {
        UploadTaskStage stage;
        const QStringList paths = stage.files({u"a"_s, u"b"_s});
        stage.fail({paths[0]}, LongReason);
        stage.fail({paths[1]});
        stage.answer({[&] {
            const QList<FileUpload*> lines = stage.lines();
            QVERIFY(lines[1]->height() > lines[2]->height());
            QCOMPARE(stage.scroll()->height(), lines[1]->height() + 16);
            stage.click("cmdSkip");
        }});
        stage.start(paths);
        QCOMPARE(stage.unanswered, 0);
    }

    void atTheQuestionTheFirstLineIsInViewThoughTheLastWasBefore()
    {
        UploadTaskStage stage;
        const QStringList paths = stage.files({u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s, u"f"_s, u"g"_s});
        stage.fail(paths);
        Twips lastSeen = 0;
        stage.during([&](const QString&) { lastSeen = stage.scroll()->ScrollTop(); });
        stage.answer({[&] {
            QVERIFY(stage.flow()->height() > stage.scroll()->height());
            QCOMPARE(stage.scroll()->ScrollTop(), Twips(0));
            stage.click("cmdSkip");
        }});
        stage.start(paths);
        QVERIFY(lastSeen > 0);
        QCOMPARE(stage.unanswered, 0);
    }

    void aFailureMakesRoomForItsReasonAtOnce()
    {
        UploadTaskStage stage;
        const QStringList paths = stage.files({u"a"_s});
        stage.fail(paths, LongReason);
        int flowHeight = 0;
        int lineHeight = 0;
        int range = 0;
        std::unique_ptr<Subscription> keep;
        stage.during([&](const QString&) {
            FileUpload* line = stage.lines().last();
            keep = std::make_unique<Subscription>(line->UploadFailed.subscribe([&, line](const QString&) {
                lineHeight = line->height();
                flowHeight = stage.flow()->height();
                range = stage.scroll()->verticalScrollBar()->maximum();
            })); // behind the form's own
        });
        stage.answer({[&] { stage.click("cmdSkip"); }});
        stage.start(paths);
        QVERIFY(lineHeight > UploadLineHeight);
        QCOMPARE(flowHeight, lineHeight);
        QCOMPARE(range, lineHeight - UploadLineHeight); // the panel is as high as the line was
    }

    void theSecondPassIsNoHigherThanThePanelAtTheQuestionWasItIsMeant()
    {
        UploadTaskStage stage;
        const QStringList paths = stage.files({u"a"_s, u"b"_s, u"c"_s});
        stage.fail(paths);
        int atTheQuestion = 0;
        int highest = 0;
        stage.answer({[&] {
            atTheQuestion = stage.scroll()->height();
            stage.host.state().transferFailures.clear();
            stage.during([&](const QString&) { highest = std::max(highest, stage.dialog->height()); });
            stage.click("cmdRetry");
        }});
        stage.start(paths);
        QCOMPARE(highest, atTheQuestion);
        QVERIFY(highest < 3 * UploadLineHeight);
    }

    void aReasonWithoutEndLeavesTheButtonsOnTheScreen()
    {
        UploadTaskStage stage;
        const QStringList paths = stage.files({u"a"_s});
        stage.fail(paths, QString(200, u'-').replace(u"-"_s, LongReason));
        QRect window;
        stage.answer({[&] {
            window = stage.dialog->frameGeometry();
            stage.click("cmdSkip");
        }});
        stage.start(paths);
        QVERIFY(stage.owner->screen()->availableGeometry().contains(window));
    }

    void theDialogComesUpOverItsOwner()
    {
        UploadTaskStage stage;
        stage.owner->setGeometry(200, 150, 500, 300);
        QRect window;
        stage.during([&](const QString&) { window = stage.dialog->geometry(); });
        stage.start(stage.files({u"a"_s}));
        QVERIFY(qAbs(window.center().x() - stage.owner->geometry().center().x()) <
                10); // a frame may be between
        QVERIFY(stage.owner->geometry().contains(window.topLeft()));
    }

    void aDialogLowOnTheScreenMovesUpAsItGrows()
    {
        UploadTaskStage stage;
        const QRect screen = stage.owner->screen()->availableGeometry();
        stage.owner->move(100, screen.bottom() - 100);
        QRect window;
        stage.during([&](const QString&) { window = stage.dialog->frameGeometry(); });
        stage.start(stage.files({u"a"_s, u"b"_s, u"c"_s, u"d"_s}));
        QVERIFY(window.height() >= 4 * UploadLineHeight);
        QVERIFY(screen.contains(window));
    }

    void twoHundredFilesAreAllThere()
    {
        UploadTaskStage stage;
        QStringList names;
        for (int i = 0; i < 200; ++i)
            names << u"file %1.txt"_s.arg(i);
        int highest = 0;
        stage.during([&](const QString&) { highest = std::max(highest, stage.dialog->height()); });
        stage.start(stage.files(names));
        QCOMPARE(stage.uploaded(), names);
        QCOMPARE(highest, stage.owner->screen()->size().height() / 4);
    }
};

TAVRIN_TEST_MAIN(tst_frmUploadTaskSizes)
#include "tst_frmUploadTaskSizes.moc"
