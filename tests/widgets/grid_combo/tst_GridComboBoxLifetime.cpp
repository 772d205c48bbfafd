#include "base/failure/Error.h"
#include "support/TestCase.h"
#include "testing/Unhandled.h"
#include "widgets/grid_combo/GridStage.h"

#include <QCoreApplication>
#include <QPointer>

using namespace Qt::StringLiterals;
using namespace tavrin;
using tavrin::test::GridStage;

/// What closes an open list, and what whoever hears of a row may do to the box.
class tst_GridComboBoxLifetime : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theListClosesAndTakesNothing_data()
    {
        QTest::addColumn<QString>("when");
        for (const char* when : {"press", "focus", "hide", "disable", "move", "window"})
            QTest::newRow(when) << QString::fromLatin1(when);
    }
    void theListClosesAndTakesNothing()
    {
        QFETCH(QString, when);
        GridStage stage;
        QVERIFY(stage.isReady());
        stage.fill(5);
        stage.take();
        stage.combo->OpenList();
        stage.key(Qt::Key_Down);
        QVERIFY(stage.combo->ListIsOpen());
        if (when == u"press")
            QTest::mouseClick(stage.window.get(), Qt::LeftButton, {}, QPoint(280, 180));
        else if (when == u"focus")
            stage.other->setFocus();
        else if (when == u"hide")
            stage.combo->hide();
        else if (when == u"disable")
            stage.combo->SetEnabled(false);
        else if (when == u"move")
            stage.combo->move(20, 20);
        else
            stage.window->move(150, 150);
        QTRY_VERIFY(!stage.combo->ListIsOpen());
        QCOMPARE(stage.take(), QStringList());
        QCOMPARE(stage.combo->Bookmark(), QVariant(1));
    }

    void anErrorBehindAKeyOrAClickIsReportedAndTheBoxGoesOn()
    {
        tavrin::test::Unhandled unhandled;
        GridStage stage;
        QVERIFY(stage.isReady());
        stage.fill(5);
        Subscription failing = stage.combo->RowChange.subscribe([] { throw Error(u"no"_s); });
        stage.key(Qt::Key_Down);
        stage.combo->OpenList();
        stage.clickRow(4);
        QCOMPARE(unhandled.texts, QStringList({u"GridComboBox_KeyPress: no"_s, u"GridTable_Click: no"_s}));
        QCOMPARE(stage.combo->Bookmark(), QVariant(4));
        QVERIFY(!stage.combo->ListIsOpen());
    }

    void aFollowerOfARowChangeMayCloseTheForm_data()
    {
        QTest::addColumn<QString>("by");
        for (const char* by : {"key", "letter", "enter", "tab", "click"})
            QTest::newRow(by) << QString::fromLatin1(by);
    }
    void aFollowerOfARowChangeMayCloseTheForm()
    {
        QFETCH(QString, by);
        GridStage stage;
        QVERIFY(stage.isReady());
        stage.fill(5);
        const QPointer<GridComboBox> combo(stage.combo);
        const bool byMouse = by == u"click";
        const Subscription closing = stage.combo->RowChange.subscribe([&] { delete stage.combo; });
        if (by == u"key") {
            stage.key(Qt::Key_Down);
        } else if (by == u"letter") {
            QTest::keyClick(stage.combo, Qt::Key_E);
        } else {
            stage.combo->OpenList();
            stage.table()->setMarkedRow(3);
            if (byMouse)
                stage.clickRow(3);
            else
                QTest::keyClick(stage.window->windowHandle(), by == u"tab" ? Qt::Key_Tab : Qt::Key_Return);
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(combo.isNull());
    }

    void theWindowMayDieWithAnOpenList()
    {
        GridStage stage;
        QVERIFY(stage.isReady());
        stage.fill(5);
        stage.combo->OpenList();
        stage.window.reset();
    }
};

TAVRIN_TEST_MAIN(tst_GridComboBoxLifetime)
#include "tst_GridComboBoxLifetime.moc"
