#include "attachments/dialogs/UploadTaskStage.h"
#include "widgets/labels/WrapLabel.h"

#include <QPushButton>

using namespace Qt::StringLiterals;
using namespace tavrin;
using test::UploadTaskStage;

/// What a person does with the dialog of an upload, by mouse and by keys.
class tst_frmUploadTaskInput : public test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theMousePointerIsBusyWhileFilesAreUploadedAndOrdinaryAtTheQuestion()
    {
        UploadTaskStage stage;
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
        UploadTaskStage stage;
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
        UploadTaskStage stage;
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
        UploadTaskStage stage;
        const QStringList paths = stage.files({u"a"_s, u"b"_s});
        stage.fail({paths[1]});
        stage.answer({[&] { stage.dialog->close(); }});
        stage.start(paths);
        QCOMPARE(stage.unanswered, 0);
        QCOMPARE(stage.uploaded(), QStringList({u"a"_s}));
    }

    void whileFilesAreUploadedNothingClosesTheDialog()
    {
        UploadTaskStage stage;
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
        UploadTaskStage stage;
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
        UploadTaskStage stage;
        QTimer::singleShot(0, stage.dialog, [&] {
            if (stage.dialog->isVisible())
                QTest::keyClick(stage.dialog, Qt::Key_Escape);
        });
        stage.start(stage.files({u"a"_s}));
        QCOMPARE(stage.uploaded(), QStringList({u"a"_s}));
    }

    void keysAndClicksWhileFilesAreUploadedStartNoSecondPass()
    {
        UploadTaskStage stage;
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
        UploadTaskStage stage;
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
};

TAVRIN_TEST_MAIN(tst_frmUploadTaskInput)
#include "tst_frmUploadTaskInput.moc"
