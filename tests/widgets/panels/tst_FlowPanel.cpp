#include "support/TestCase.h"
#include "widgets/panels/FlowPanel.h"

using tavrin::FlowPanel;

namespace {

/// Three children of 10, 20 and 30 pixels in height.
struct Stage
{
    Stage()
    {
        panel.resize(100, 7);
        int height = 0;
        for (QWidget*& child : children) {
            child = new QWidget(&panel);
            child->setGeometry(5, 3, 50, height += 10);
        }
    }
    QList<int> tops() const
    {
        QList<int> list;
        for (const QWidget* child : children)
            list << child->y();
        return list;
    }

    FlowPanel panel;
    QWidget* children[3];
};

} // namespace

class tst_FlowPanel : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theChildrenStandOneBelowTheOtherInTheOrderInWhichTheyCame()
    {
        Stage stage;
        stage.panel.Arrange();
        QCOMPARE(stage.tops(), QList<int>({0, 10, 30}));
        QCOMPARE(stage.panel.size(), QSize(100, 60));
        QCOMPARE(stage.children[1]->x(), 5);
        QCOMPARE(stage.children[1]->size(), QSize(50, 20));
    }

    void aHiddenChildTakesNoRoomAndStaysWhereItIs()
    {
        Stage stage;
        stage.children[1]->hide();
        stage.panel.Arrange();
        QCOMPARE(stage.tops(), QList<int>({0, 3, 10}));
        QCOMPARE(stage.panel.height(), 40);
        stage.children[1]->show();
        stage.panel.Arrange();
        QCOMPARE(stage.tops(), QList<int>({0, 10, 30}));
    }

    void aChildThatGrowsMovesThoseBelowItAtTheNextArrangement()
    {
        Stage stage;
        stage.panel.Arrange();
        stage.children[0]->resize(50, 90);
        QCOMPARE(stage.tops(), QList<int>({0, 10, 30}));
        stage.panel.Arrange();
        QCOMPARE(stage.tops(), QList<int>({0, 90, 110}));
        QCOMPARE(stage.panel.height(), 140);
    }

    void withoutVisibleChildrenItHasNoHeight()
    {
        Stage stage;
        for (QWidget* child : stage.children)
            child->hide();
        stage.panel.Arrange();
        QCOMPARE(stage.panel.size(), QSize(100, 0));
    }

    void aWindowThatBelongsToThePanelIsNotArranged()
    {
        Stage stage;
        const QWidget window(&stage.panel, Qt::Tool);
        const QPoint before = window.pos();
        stage.panel.Arrange();
        QCOMPARE(stage.panel.height(), 60);
        QCOMPARE(window.pos(), before);
    }
};

TAVRIN_TEST_MAIN(tst_FlowPanel)
#include "tst_FlowPanel.moc"
