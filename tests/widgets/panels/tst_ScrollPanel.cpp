#include "support/TestCase.h"
#include "widgets/panels/ScrollPanel.h"

#include <QPointer>
#include <QScrollBar>

using tavrin::ScrollPanel;
using tavrin::toTwips;

namespace {

/// A panel of 200 by 100 onto a content of 200 by 300.
struct Stage
{
    Stage()
    {
        panel.resize(200, 100);
        content->resize(200, 300);
        panel.SetContent(content);
        panel.RefreshView();
    }
    bool show()
    {
        panel.show();
        return QTest::qWaitForWindowExposed(&panel);
    }

    ScrollPanel panel;
    QWidget* content = new QWidget;
};

} // namespace

class tst_ScrollPanel : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void itScrollsToAPlaceWhileHiddenAndWhileShown()
    {
        Stage stage;
        stage.panel.ScrollTo(toTwips(40));
        QCOMPARE(stage.panel.ScrollTop(), toTwips(40));
        QVERIFY(stage.show());
        QTRY_COMPARE(stage.content->y(), -40);
        stage.panel.ScrollTo(toTwips(75));
        QCOMPARE(stage.content->y(), -75);
    }

    void itScrollsNoFurtherThanTheContentGoes()
    {
        Stage stage;
        QVERIFY(stage.show());
        stage.panel.ScrollTo(toTwips(5000));
        QCOMPARE(stage.panel.ScrollTop(), toTwips(200));
        stage.panel.ScrollTo(toTwips(-5));
        QCOMPARE(stage.panel.ScrollTop(), toTwips(0));
    }

    void aRefreshTakesNoticeOfAContentThatHasGrownOrShrunk()
    {
        Stage stage;
        QVERIFY(stage.show());
        stage.content->resize(200, 500);
        stage.panel.RefreshView();
        stage.panel.ScrollTo(toTwips(5000));
        QCOMPARE(stage.panel.ScrollTop(), toTwips(400));
        stage.content->resize(200, 130);
        stage.panel.RefreshView();
        QCOMPARE(stage.panel.ScrollTop(), toTwips(30));
    }

    void anotherHeightChangesHowFarItScrolls()
    {
        Stage stage;
        QVERIFY(stage.show());
        stage.panel.SetHeight(toTwips(120));
        QCOMPARE(stage.panel.Height(), toTwips(120));
        QCOMPARE(stage.panel.width(), 200);
        stage.panel.RefreshView();
        stage.panel.ScrollTo(toTwips(5000));
        QCOMPARE(stage.panel.ScrollTop(), toTwips(180));
        stage.panel.SetHeight(-15);
        QCOMPARE(stage.panel.Height(), toTwips(0));
    }

    void theBarComesWithAHighContentAndTheContentKeepsItsWidth()
    {
        Stage stage;
        stage.content->resize(200, 60);
        stage.panel.RefreshView();
        QVERIFY(stage.show());
        QVERIFY(!stage.panel.verticalScrollBar()->isVisible());
        stage.content->resize(200, 300);
        stage.panel.RefreshView();
        QTRY_VERIFY(stage.panel.verticalScrollBar()->isVisible());
        QVERIFY(!stage.panel.horizontalScrollBar()->isVisible());
        QCOMPARE(stage.content->width(), 200);
    }

    void theKeysScrollIt()
    {
        Stage stage;
        QVERIFY(stage.show());
        stage.panel.setFocus();
        QTest::keyClick(&stage.panel, Qt::Key_PageDown);
        QVERIFY(stage.panel.ScrollTop() > 0);
    }

    void itOwnsItsContent()
    {
        QPointer<QWidget> content;
        {
            const Stage stage;
            content = stage.content;
        }
        QVERIFY(!content);
    }
};

TAVRIN_TEST_MAIN(tst_ScrollPanel)
#include "tst_ScrollPanel.moc"
