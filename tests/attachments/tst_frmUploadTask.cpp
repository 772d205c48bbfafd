#include "UploadStage.h"
#include "attachments/FileUpload.h"
#include "attachments/frmUploadTask.h"
#include "support/NextModal.h"
#include "support/TestCase.h"
#include "support/TickingClock.h"
#include "support/Unhandled.h"
#include "widgets/FlowPanel.h"
#include "widgets/ScrollPanel.h"
#include "widgets/WrapLabel.h"

#include <QPointer>
#include <QPushButton>
#include <QScopeGuard>
#include <QScreen>
#include <QScrollBar>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace tavrin;
using test::FolderNotSet;
using test::LongReason;
using test::NextModal;

namespace {

/// A window and the dialog above it.
struct Stage : test::UploadStage
{
    Stage()
    {
        owner->resize(300, 200);
        owner->show();
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { look(); });
        m_timer.start(1);
    }
    ~Stage()
    {
        delete dialog;
        delete owner;
    }

    /// What the person does at each question; one more question than that is closed and counted.
    void answer(QList<std::function<void()>> acts) { m_acts = std::move(acts); }
    void start(const QStringList& paths)
    {
        dialog->SetFiles(paths);
        dialog->Start(owner);
    }
    /// The uploads of these paths fail from now on.
    void fail(const QStringList& paths, const QString& reason = u"The disk is full."_s)
    {
        for (const QString& path : paths)
            host.state().transferFailures.insert(path, reason);
    }
    /// Runs `act` once at each step of the copies, before the step.
    void during(const std::function<void(const QString& path)>& act)
    {
        host.state().duringTransfer = [act](const QString& path, qint64, qint64) { act(path); };
    }
    template <typename Widget>
    Widget* part(const char* name) const
    {
        return dialog->findChild<Widget*>(QString::fromLatin1(name));
    }
    ScrollPanel* scroll() const { return part<ScrollPanel>("ScrollPanel"); }
    FlowPanel* flow() const { return part<FlowPanel>("FlowPanel"); }
    QWidget* strip() const { return part<QWidget>("picRetry"); }
    void click(const char* button) const
    {
        QTest::mouseClick(dialog->windowHandle(), Qt::LeftButton, {}, middleOf(button));
    }
    QPoint middleOf(const char* button) const
    {
        auto* widget = part<QWidget>(button);
        return widget->mapTo(dialog.data(), widget->rect().center());
    }
    QList<FileUpload*> lines() const { return flow()->findChildren<FileUpload*>(); }
    /// The names of the files whose lines show.
    QStringList shown() const
    {
        QStringList names;
        for (const FileUpload* line : lines()) {
            if (!line->isHidden())
                names << QFileInfo(line->Filename()).fileName();
        }
        return names;
    }
    QStringList uploaded() const
    {
        QStringList names;
        for (const UploadedFile& file : dialog->UploadedFiles())
            names << file.OriginalFilename;
        return names;
    }

    QPointer<QWidget> owner = new QWidget;
    QPointer<frmUploadTask> dialog = new frmUploadTask;
    test::FakeMessageBoxes boxes;
    test::Unhandled unhandled;
    int unanswered = 0;

private:
    void look()
    {
        if (!dialog || QApplication::activeModalWidget() != dialog || !strip()->isEnabled())
            return;
        if (m_acts.isEmpty()) {
            ++unanswered;
            dialog->close();
            return;
        }
        m_acts.takeFirst()();
    }

    QList<std::function<void()>> m_acts;
    QTimer m_timer;
};

/// Tells of each move of a widget: the dialog is moved as its activation begins.
class MoveWatch : public QObject
{
public:
    explicit MoveWatch(std::function<void()> act)
        : m_act(std::move(act))
    {
    }
    QList<qsizetype> lines;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Move)
            m_act();
        return false;
    }

private:
    std::function<void()> m_act;
};

constexpr int LineHeight = 49; // a line without a reason

} // namespace

class tst_frmUploadTask : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theWordsAreAsAPersonKnowsThem()
    {
        const Stage stage;
        QCOMPARE(stage.dialog->windowTitle(), u"Uploading attachments..."_s);
        QCOMPARE(stage.strip()->findChild<WrapLabel*>()->Caption(),
                 u"Not all files were uploaded. What do you want to do with the files that could not be "
                 "uploaded?"_s);
        QCOMPARE(stage.part<QPushButton>("cmdRetry")->text(), u"Retry"_s);
        QCOMPARE(stage.part<QPushButton>("cmdSkip")->text(), u"Skip"_s);
    }

    void atFirstOnlyTheFrameShows()
    {
        const Stage stage;
        QCOMPARE(stage.dialog->height(), 0);
        QCOMPARE(stage.dialog->width(), 309);
        QCOMPARE(stage.strip()->height(), 93);
        QCOMPARE(stage.shown(), QStringList());
    }

    // The order of work

    void oneFileThatArrivesClosesTheDialogByItself()
    {
        Stage stage;
        stage.start(stage.files({u"Report.pdf"_s}));
        QVERIFY(!stage.dialog->isVisible());
        QCOMPARE(stage.unanswered, 0);
        QCOMPARE(stage.dialog->UploadedFiles().size(), 1);
        const UploadedFile file = stage.dialog->UploadedFiles().first();
        QCOMPARE(file.OriginalFilename, u"Report.pdf"_s);
        QVERIFY(file.Filename.endsWith(uR"(\20160201130507_Report.pdf)"_s));
        QCOMPARE(stage.stored(file.Filename), QByteArray("content"));
    }

    void withoutFilesThereIsNoDialog()
    {
        Stage stage;
        const NextModal modal([](QWidget&) {});
        stage.start({});
        QVERIFY(!modal.came());
        QVERIFY(!stage.dialog->isVisible());
        QCOMPARE(stage.dialog->UploadedFiles().size(), 0);
    }

    void theDialogIsModalAboveTheOwnersWindow()
    {
        Stage stage;
        auto* control = new QWidget(stage.owner);
        bool isModal = false;
        stage.during([&](const QString&) {
            isModal = QApplication::activeModalWidget() == stage.dialog &&
                      stage.dialog->parentWidget() == stage.owner;
        });
        stage.dialog->SetFiles(stage.files({u"a"_s}));
        stage.dialog->Start(control);
        QVERIFY(isModal);
    }

    void filesAreUploadedOneAfterTheOtherEachOnALineOfItsOwn()
    {
        Stage stage;
        QStringList seen;
        stage.during([&](const QString& path) {
            const QString step = QFileInfo(path).fileName() + u':' + stage.shown().join(u',');
            if (seen.isEmpty() || seen.last() != step)
                seen << step;
        });
        stage.start(stage.files({u"a"_s, u"b"_s, u"c"_s}));
        QCOMPARE(seen, QStringList({u"a:a"_s, u"b:a,b"_s, u"c:a,b,c"_s}));
        QCOMPARE(stage.uploaded(), QStringList({u"a"_s, u"b"_s, u"c"_s}));
    }

    void threeFilesOfWhichTheSecondFailsAreAllThereAfterARetry()
    {
        Stage stage;
        const QStringList paths = stage.files({u"a"_s, u"b"_s, u"c"_s});
        stage.fail({paths[1]});
        QStringList shownAtTheQuestion;
        stage.answer({[&] {
            shownAtTheQuestion = stage.shown();
            stage.host.state().transferFailures.clear();
            stage.click("cmdRetry");
        }});
        stage.start(paths);
        QCOMPARE(shownAtTheQuestion, QStringList({u"b"_s}));
        QCOMPARE(stage.unanswered, 0);
        QVERIFY(!stage.dialog->isVisible());
        QCOMPARE(stage.uploaded(),
                 QStringList({u"a"_s, u"c"_s, u"b"_s})); // the one that was tried again last
        QCOMPARE(stage.calls(u"Upload "_s).size(), 4);
    }

    void theFailedFilesAreTriedAgainInTheirOrderUnderANewStamp()
    {
        Stage stage;
        const QStringList paths = stage.files({u"c"_s, u"a"_s, u"x"_s, u"b"_s});
        stage.fail({paths[0], paths[1], paths[3]});
        stage.answer({[&] {
            stage.host.state().transferFailures.clear();
            stage.clock.setNow(QDateTime(QDate(2016, 2, 1), QTime(13, 6, 0)));
            stage.click("cmdRetry");
        }});
        stage.start(paths);
        QStringList names;
        for (const UploadedFile& file : stage.dialog->UploadedFiles())
            names << file.Filename.section(u'\\', -1);
        QCOMPARE(names, QStringList({u"20160201130507_x"_s, u"20160201130600_c"_s, u"20160201130600_a"_s,
                                     u"20160201130600_b"_s}));
    }

    void messagesArePumpedBeforeEachFile()
    {
        Stage stage;
        QStringList order;
        std::unique_ptr<Subscription> keep;
        stage.during([&](const QString& path) {
            order << QFileInfo(path).fileName();
            keep = std::make_unique<Subscription>(
                stage.lines().last()->UploadComplete.subscribe([&](const UploadedFile&) {
                    QTimer::singleShot(0, stage.dialog, [&order] { order << u"message"_s; });
                }));
        });
        stage.start(stage.files({u"a"_s, u"b"_s}));
        QCOMPARE(order.first(4), QStringList({u"a"_s, u"a"_s, u"message"_s, u"b"_s}));
    }

    void messagesArePumpedBeforeTheFirstLine()
    {
        Stage stage;
        MoveWatch watch(
            [&] { QTimer::singleShot(0, stage.dialog, [&] { watch.lines << stage.lines().size(); }); });
        stage.dialog->installEventFilter(&watch);
        stage.start(stage.files({u"a"_s}));
        QVERIFY(!watch.lines.isEmpty());
        QCOMPARE(watch.lines.last(), qsizetype(1)); // the hidden one alone
    }

    void aRetryThatFailsAsksAgain()
    {
        Stage stage;
        const QStringList paths = stage.files({u"a"_s, u"b"_s});
        stage.fail(paths);
        QStringList questions;
        stage.answer({[&] {
                          questions << stage.shown().join(u',');
                          stage.host.state().transferFailures.remove(paths[0]);
                          stage.click("cmdRetry");
                      },
                      [&] {
                          questions << stage.shown().join(u',');
                          stage.click("cmdSkip");
                      }});
        stage.start(paths);
        QCOMPARE(questions, QStringList({u"a,b"_s, u"b"_s}));
        QCOMPARE(stage.uploaded(), QStringList({u"a"_s}));
    }

    void skipLeavesTheFailedFileOutWithoutAMessage()
    {
        Stage stage;
        const QStringList paths = stage.files({u"a"_s, u"b"_s});
        stage.fail({paths[0]});
        stage.answer({[&] { stage.click("cmdSkip"); }});
        stage.start(paths);
        QCOMPARE(stage.uploaded(), QStringList({u"b"_s}));
        QCOMPARE(stage.boxes.texts(), QStringList());
        QCOMPARE(stage.unhandled.texts, QStringList());
        const NextModal modal([](QWidget&) {});
        stage.dialog->Start(stage.owner); // nothing is left of the failed paths
        QVERIFY(!modal.came());
    }

    void theFirstPassUnloadsNothingAndEachPassMakesNewLines()
    {
        Stage stage;
        const QPointer<FileUpload> design = stage.lines().first();
        const QStringList paths = stage.files({u"a"_s, u"b"_s});
        stage.fail({paths[1]});
        QList<QPointer<FileUpload>> first;
        stage.answer({[&] {
            for (FileUpload* line : stage.lines())
                first << line;
            stage.host.state().transferFailures.clear();
            stage.click("cmdRetry");
        }});
        stage.start(paths);
        QCOMPARE(first.size(), 3); // the hidden one and two
        QVERIFY(design && first[0] == design);
        QVERIFY(!first[1] && !first[2]);
        QCOMPARE(stage.lines().size(), 2);
        QCOMPARE(stage.calls(u"new Uploader"_s).size(), 1 + 2 + 1);
    }

    void aMissingSettingFailsEachLine()
    {
        Stage stage;
        stage.host.state().settings.clear();
        QStringList reasons;
        stage.answer({[&] {
            for (const FileUpload* line : stage.lines()) {
                if (!line->isHidden())
                    reasons << line->findChild<WrapLabel*>(u"lblStatus"_s)->Caption();
            }
            stage.click("cmdSkip");
        }});
        stage.start(stage.files({u"a"_s, u"b"_s}));
        QCOMPARE(reasons, QStringList({FolderNotSet, FolderNotSet}));
        QCOMPARE(stage.dialog->UploadedFiles().size(), 0);
    }

    void threeFilesOfOneNameFromThreeFoldersAllArriveWithoutAQuestion()
    {
        Stage stage;
        const test::TickingClock clock;
        QStringList paths;
        for (const auto& folder : {u"one"_s, u"two"_s, u"three"_s}) {
            QVERIFY(QDir(stage.disk.path()).mkdir(folder));
            paths << stage.file(folder + u"/scan.pdf"_s, folder.toUtf8());
        }
        stage.start(paths);
        QCOMPARE(stage.unanswered, 0);
        QCOMPARE(stage.uploaded(), QStringList({u"scan.pdf"_s, u"scan.pdf"_s, u"scan.pdf"_s}));
        QList<QByteArray> contents;
        for (const UploadedFile& file : stage.dialog->UploadedFiles())
            contents << stage.stored(file.Filename);
        QCOMPARE(contents, QList<QByteArray>({"one", "two", "three"}));
    }

    void aFolderAmongTheFilesIsOneFailedLine()
    {
        Stage stage;
        QStringList failed;
        stage.answer({[&] {
            failed = stage.shown();
            stage.click("cmdSkip");
        }});
        QVERIFY(QDir(stage.disk.path()).mkdir(u"folder"_s));
        stage.start({stage.file(u"a"_s), stage.disk.filePath(u"folder"_s), stage.file(u"b"_s)});
        QCOMPARE(failed, QStringList({u"folder"_s}));
        QCOMPARE(stage.uploaded(), QStringList({u"a"_s, u"b"_s}));
    }

    void aLaterActivationStartsNothing()
    {
        Stage stage;
        const QStringList paths = stage.files({u"a"_s});
        stage.fail(paths);
        stage.answer({[&] {
                          QEvent activation(QEvent::WindowActivate);
                          QApplication::sendEvent(stage.dialog, &activation); // acts at the next turn
                      },
                      [] {}, [] {}, [&] { stage.click("cmdSkip"); }});
        stage.start(paths);
        QCOMPARE(stage.calls(u"Upload "_s).size(), 1);
        QCOMPARE(stage.unanswered, 0);
    }

    // Sizes

    void theWindowGrowsWithItsLinesUpToAQuarterOfTheScreen()
    {
        Stage stage;
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
        QVERIFY(limit > 4 * LineHeight && limit < 5 * LineHeight);
        QCOMPARE(heights, QList<int>({LineHeight, 2 * LineHeight, 3 * LineHeight, 4 * LineHeight, limit}));
    }

    void aLineThatFailsPushesTheNextOneDown()
    {
        Stage stage;
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
        QVERIFY(places[0].height() > LineHeight + 20);
        QCOMPARE(places[1], QRect(0, places[0].bottom() + 1, 309, LineHeight));
    }

    void atTheQuestionTheTallestReasonShowsAboveTheStrip()
    {
        Stage stage;
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
        const QFont before = QApplication::font();
        const auto restore = qScopeGuard([&before] { QApplication::setFont(before); });
        QFont large = before;
        large.setPointSize(points);
        QApplication::setFont(large);
        Stage stage;
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
        Stage stage;
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
        Stage stage;
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
        Stage stage;
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
        QVERIFY(lineHeight > LineHeight);
        QCOMPARE(flowHeight, lineHeight);
        QCOMPARE(range, lineHeight - LineHeight); // the panel is as high as the line was
    }

    void theSecondPassIsNoHigherThanThePanelAtTheQuestionWasItIsMeant()
    {
        Stage stage;
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
        QVERIFY(highest < 3 * LineHeight);
    }

    void aReasonWithoutEndLeavesTheButtonsOnTheScreen()
    {
        Stage stage;
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
        Stage stage;
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
        Stage stage;
        const QRect screen = stage.owner->screen()->availableGeometry();
        stage.owner->move(100, screen.bottom() - 100);
        QRect window;
        stage.during([&](const QString&) { window = stage.dialog->frameGeometry(); });
        stage.start(stage.files({u"a"_s, u"b"_s, u"c"_s, u"d"_s}));
        QVERIFY(window.height() >= 4 * LineHeight);
        QVERIFY(screen.contains(window));
    }

    void twoHundredFilesAreAllThere()
    {
        Stage stage;
        QStringList names;
        for (int i = 0; i < 200; ++i)
            names << u"file %1.txt"_s.arg(i);
        int highest = 0;
        stage.during([&](const QString&) { highest = std::max(highest, stage.dialog->height()); });
        stage.start(stage.files(names));
        QCOMPARE(stage.uploaded(), names);
        QCOMPARE(highest, stage.owner->screen()->size().height() / 4);
    }

    // The mouse and the keys

    void theMousePointerIsBusyWhileFilesAreUploadedAndOrdinaryAtTheQuestion()
    {
        Stage stage;
        const QStringList paths = stage.files({u"a"_s});
        stage.fail(paths);
        QList<Qt::CursorShape> shapes;
        stage.during([&](const QString&) { shapes << stage.dialog->cursor().shape(); });
        stage.answer({[&] {
            shapes << stage.dialog->cursor().shape();
            stage.click("cmdSkip");
        }});
        stage.start(paths);
        QCOMPARE(shapes, QList<Qt::CursorShape>({Qt::BusyCursor, Qt::ArrowCursor}));
    }

    void theStripIsCoveredWhileFilesAreUploadedAndInViewAtTheQuestion()
    {
        Stage stage;
        const QStringList paths = stage.files({u"a"_s, u"b"_s, u"c"_s});
        stage.fail({paths[0]});
        int steps = 0;
        stage.during([&](const QString&) {
            ++steps;
            for (int y = 0; y < stage.dialog->height(); ++y)
                QVERIFY(!stage.strip()->isAncestorOf(stage.dialog->childAt(200, y)));
        });
        stage.answer({[&] {
            for (const char* button : {"cmdRetry", "cmdSkip"})
                QCOMPARE(stage.dialog->childAt(stage.middleOf(button)), stage.part<QWidget>(button));
            stage.click("cmdSkip");
        }});
        stage.start(paths);
        QVERIFY(steps > 3);
    }

    void aKeyAnswersTheQuestion_data()
    {
        QTest::addColumn<QList<int>>("keys");
        QTest::addColumn<int>("uploads");
        QTest::newRow("Enter tries again") << QList<int>{Qt::Key_Return} << 2;
        QTest::newRow("Enter of the number block") << QList<int>{Qt::Key_Enter} << 2;
        QTest::newRow("Escape goes on without") << QList<int>{Qt::Key_Escape} << 1;
        QTest::newRow("Tab and Space go on without") << QList<int>{Qt::Key_Tab, Qt::Key_Space} << 1;
        QTest::newRow("Tab and Enter go on without") << QList<int>{Qt::Key_Tab, Qt::Key_Return} << 1;
    }
    void aKeyAnswersTheQuestion()
    {
        QFETCH(QList<int>, keys);
        Stage stage;
        const QStringList paths = stage.files({u"a"_s});
        stage.fail(paths);
        stage.answer({[&] {
            stage.host.state().transferFailures.clear();
            for (const int key : keys)
                QTest::keyClick(stage.dialog->windowHandle(), static_cast<Qt::Key>(key));
        }});
        stage.start(paths);
        QCOMPARE(stage.unanswered, 0);
        QTEST(static_cast<int>(stage.calls(u"Upload "_s).size()), "uploads");
        QCOMPARE(stage.dialog->UploadedFiles().size(), stage.calls(u"Upload "_s).size() - 1);
    }

    void closingTheWindowAtTheQuestionGoesOnWithout()
    {
        Stage stage;
        const QStringList paths = stage.files({u"a"_s, u"b"_s});
        stage.fail({paths[1]});
        stage.answer({[&] { stage.dialog->close(); }});
        stage.start(paths);
        QCOMPARE(stage.unanswered, 0);
        QCOMPARE(stage.uploaded(), QStringList({u"a"_s}));
    }

    void whileFilesAreUploadedNothingClosesTheDialog()
    {
        Stage stage;
        bool stayed = true;
        stage.during([&](const QString&) {
            QTest::keyClick(stage.dialog->windowHandle(), Qt::Key_Escape);
            stayed = stayed && stage.dialog->isVisible();
            stage.dialog->close();
            stayed = stayed && stage.dialog->isVisible();
            stage.dialog->reject();
            stayed = stayed && stage.dialog->isVisible();
            // Behind the next progress, as a person's own.
            QTimer::singleShot(0, stage.dialog, [&] {
                stage.dialog->windowHandle()->close();
                QTest::keyClick(stage.dialog->windowHandle(), Qt::Key_Escape);
            });
        });
        stage.start(stage.files({u"a"_s, u"b"_s}));
        QVERIFY(stayed);
        QCOMPARE(stage.uploaded(), QStringList({u"a"_s, u"b"_s}));
    }

    void whileFilesAreTriedAgainNothingClosesTheDialogEither()
    {
        Stage stage;
        const QStringList paths = stage.files({u"a"_s, u"b"_s});
        stage.fail(paths);
        bool stayed = true;
        const auto tryToClose = [&] {
            QTest::keyClick(stage.dialog->windowHandle(), Qt::Key_Escape);
            stage.dialog->close();
            stage.dialog->reject();
            stayed = stayed && stage.dialog->isVisible();
        };
        stage.answer({[&] {
            stage.host.state().transferFailures.clear();
            stage.during([&](const QString&) { tryToClose(); });
            stage.click("cmdRetry");
        }});
        stage.start(paths);
        QVERIFY(stayed);
        QCOMPARE(stage.uploaded(), QStringList({u"a"_s, u"b"_s}));
    }

    void anEscapeBeforeTheWorkBeginsDropsNothing()
    {
        Stage stage;
        QTimer::singleShot(0, stage.dialog, [&] {
            if (stage.dialog->isVisible())
                QTest::keyClick(stage.dialog, Qt::Key_Escape);
        });
        stage.start(stage.files({u"a"_s}));
        QCOMPARE(stage.uploaded(), QStringList({u"a"_s}));
    }

    void keysAndClicksWhileFilesAreUploadedStartNoSecondPass()
    {
        Stage stage;
        const QStringList paths = stage.files({u"a"_s, u"b"_s});
        stage.fail({paths[0]});
        const auto press = [&] {
            for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Tab, Qt::Key_Space})
                QTest::keyClick(stage.dialog->windowHandle(), key);
            stage.click("cmdRetry");
            stage.part<QPushButton>("cmdRetry")->click();
            stage.part<QPushButton>("cmdSkip")->click();
        };
        stage.during([&](const QString&) {
            press();
            QTimer::singleShot(0, stage.dialog, press);
        });
        stage.answer({[&] {
            stage.during([](const QString&) {});
            stage.click("cmdSkip");
        }});
        stage.start(paths);
        QCOMPARE(stage.calls(u"Upload "_s).size(), 2);
        QCOMPARE(stage.uploaded(), QStringList({u"b"_s}));
    }

    void atTheQuestionTheFocusIsOnRetryAndTheWordsAreReadOut()
    {
        Stage stage;
        const QStringList paths = stage.files({u"a"_s});
        stage.fail(paths);
        QString focus;
        stage.answer({[&] {
            focus = QApplication::focusWidget() ? QApplication::focusWidget()->objectName() : QString();
            stage.click("cmdSkip");
        }});
        stage.start(paths);
        QCOMPARE(focus, u"cmdRetry"_s);
        QCOMPARE(stage.strip()->accessibleName(), stage.strip()->findChild<WrapLabel*>()->Caption());
    }

    // What goes wrong

    void anOwnerThatDiesDuringAnUploadTakesTheDialogWithIt_data()
    {
        QTest::addColumn<bool>("isRetry");
        QTest::newRow("first pass") << false;
        QTest::newRow("retry") << true;
    }
    void anOwnerThatDiesDuringAnUploadTakesTheDialogWithIt()
    {
        QFETCH(bool, isRetry);
        Stage stage;
        const QStringList paths = stage.files({u"a"_s, u"b"_s});
        int steps = 0;
        const auto killOwner = [&](const QString&) {
            ++steps;
            QTimer::singleShot(0, stage.owner, [&] { delete stage.owner; });
        };
        if (isRetry) {
            stage.fail(paths);
            stage.answer({[&] {
                stage.host.state().transferFailures.clear();
                stage.during(killOwner);
                stage.click("cmdRetry");
            }});
        } else {
            stage.during(killOwner);
        }
        stage.start(paths);
        QVERIFY(!stage.dialog && !stage.owner);
        QCOMPARE(steps, 1); // no further file is tried
        QVERIFY(QDir(stage.store.path()).isEmpty());
        QCOMPARE(stage.unhandled.texts, QStringList());
    }

    void aFailureOfThePassItselfIsToldAndClosesTheDialogWithWhatHasArrived()
    {
        Stage stage;
        const QStringList paths = stage.files({u"a"_s, u"b"_s});
        stage.during([&](const QString&) { stage.host.failWith(Error(u"The host is gone."_s)); });
        stage.start(paths);
        stage.host.failWith({});
        QCOMPARE(stage.unhandled.texts, QStringList({u"Form_Activate: The host is gone."_s}));
        QVERIFY(!stage.dialog->isVisible());
        QCOMPARE(stage.uploaded(), QStringList({u"a"_s}));
        QCOMPARE(stage.dialog->cursor().shape(), Qt::ArrowCursor);
    }
};

TAVRIN_TEST_MAIN(tst_frmUploadTask)
#include "tst_frmUploadTask.moc"
