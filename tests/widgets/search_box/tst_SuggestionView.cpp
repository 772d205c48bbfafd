#include "base/failure/Guard.h"
#include "support/TestCase.h"
#include "testing/Unhandled.h"
#include "widgets/search_box/SearchStage.h"

#include <QAccessible>
#include <QImage>
#include <QScrollBar>

using namespace Qt::StringLiterals;
using tavrin::Error;
using tavrin::PictureSurface;
using tavrin::SuggestionView;
using tavrin::test::Unhandled;
using Stage = tavrin::test::SearchStage<>;

namespace {

/// A view of 200 x 100 pixels whose rows bear their numbers, and what it told.
class Rows
{
public:
    Rows()
        : view(
              [this](PictureSurface& picture, int row, bool highlighted) {
                  drawn << (highlighted ? -row : row);
                  if (fails)
                      throw Error(u"no"_s);
                  picture.Print(u"row"_s);
                  picture.SetCurrentX(picture.CurrentX() + 100);
                  picture.Print(QString::number(row));
                  picture.SetWidth(picture.CurrentX());
                  picture.EndLine();
                  picture.SetHeight(rowHeight > 0 ? rowHeight : picture.CurrentY());
              },
              nullptr)
    {
        view.setGeometry(100, 100, 200, 100);
        m_keep.push_back(view.RowClicked.subscribe([this](int row) { told << u"click %1"_s.arg(row); }));
        m_keep.push_back(view.HighlightChanged.subscribe(
            [this] { told << u"highlight %1"_s.arg(view.highlightedRow()); }));
    }
    bool show(int count)
    {
        view.setRows(count, 200);
        view.show();
        return QTest::qWaitForWindowExposed(&view);
    }
    QStringList take() { return std::exchange(told, {}); }
    bool isInView(int row) { return view.viewport()->rect().contains(view.rowRect(row)); }

    QStringList told;
    QList<int> drawn; // a highlighted row negative
    bool fails = false;
    tavrin::Twips rowHeight = 0;
    SuggestionView view;

private:
    std::vector<tavrin::Subscription> m_keep;
};

} // namespace

/// The rows of a list of suggestions, for eyes and for screen readers.
class tst_SuggestionView : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Rows

    void onlyTheFirstPageIsMeasured()
    {
        Rows rows;
        rows.view.setRows(100'000, 200);
        QCOMPARE(rows.drawn, QList<int>({0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
        rows.drawn.clear();
        rows.view.setRows(3, 200);
        QCOMPARE(rows.drawn, QList<int>({0, 1, 2}));
    }

    void onlyRowsInViewArePainted()
    {
        Rows rows;
        QVERIFY(rows.show(1000));
        rows.view.verticalScrollBar()->setValue(500 * rows.view.rowHeight() + 1);
        rows.drawn.clear();
        rows.view.viewport()->grab();
        QCOMPARE(rows.drawn.first(), 500); // whose lower part is in view
        QCOMPARE(rows.drawn.size(), (rows.view.viewport()->height() + 1) / rows.view.rowHeight() + 1);
        for (int i = 1; i < rows.drawn.size(); ++i)
            QCOMPARE(rows.drawn[i], rows.drawn[i - 1] + 1);
    }

    void rowsAreAsHighAsTheirPainterTells()
    {
        Rows rows;
        rows.view.setRows(3, 200);
        const int usual = rows.view.rowHeight();
        QVERIFY(usual >= rows.view.fontMetrics().height());
        rows.rowHeight = tavrin::toTwips(70);
        rows.view.setRows(3, 200);
        QVERIFY(rows.view.rowHeight() >= 70);
        QVERIFY(rows.view.rowHeight() < 90);
        rows.rowHeight = tavrin::toTwips(1); // never lower than a line
        rows.view.setRows(3, 200);
        QCOMPARE(rows.view.rowHeight(), usual);
    }

    void aPageIsAtMostTenRowsAndAtLeastOneLine()
    {
        Rows rows;
        for (const auto& [count, page] :
             {std::pair(0, 1), std::pair(1, 1), std::pair(10, 10), std::pair(11, 10), std::pair(1000, 10)}) {
            rows.view.setRows(count, 200);
            QCOMPARE(rows.view.pageSize().height(), page * rows.view.rowHeight());
        }
        rows.view.setRows(10, 200);
        const int width = rows.view.pageSize().width();
        rows.view.setRows(11, 200); // with a scroll bar
        QCOMPARE(rows.view.pageSize().width(), width + rows.view.verticalScrollBar()->sizeHint().width());
    }

    void placesAndRowsAgree()
    {
        Rows rows;
        QVERIFY(rows.show(3));
        for (int row = 0; row < 3; ++row) {
            QCOMPARE(rows.view.rowAt(rows.view.rowRect(row).topLeft()), row);
            QCOMPARE(rows.view.rowAt(rows.view.rowRect(row).bottomLeft()), row);
        }
        QCOMPARE(rows.view.rowAt({5, rows.view.rowRect(2).bottom() + 1}), -1); // below the last row
        QCOMPARE(rows.view.rowAt({-1, 5}), -1);
        QCOMPARE(rows.view.rowAt({5, -1}), -1);
        QVERIFY(rows.show(100));
        rows.view.verticalScrollBar()->setValue(10 * rows.view.rowHeight());
        QCOMPARE(rows.view.rowAt({5, 0}), 10);
        QCOMPARE(rows.view.rowRect(10).top(), 0);
        QVERIFY(!rows.view.viewport()->rect().intersects(rows.view.rowRect(9)));
    }

    void otherRowsStartAtTheFirstWithoutAHighlight()
    {
        Rows rows;
        QVERIFY(rows.show(100));
        rows.view.setHighlightedRow(50);
        QVERIFY(rows.view.verticalScrollBar()->value() > 0);
        rows.view.setRows(100, 200);
        QCOMPARE(rows.view.highlightedRow(), -1);
        QCOMPARE(rows.view.verticalScrollBar()->value(), 0);
    }

    void theHighlightedRowComesIntoViewAndIsToldOnce()
    {
        Rows rows;
        QVERIFY(rows.show(100));
        for (const int row : {50, 99, 0, 3}) {
            rows.view.setHighlightedRow(row);
            QVERIFY(rows.isInView(row));
            QCOMPARE(rows.take(), QStringList({u"highlight %1"_s.arg(row)}));
        }
        rows.view.setHighlightedRow(3);
        QCOMPARE(rows.take(), QStringList());
        rows.view.setHighlightedRow(100); // there is none
        QCOMPARE(rows.view.highlightedRow(), -1);
        QCOMPARE(rows.take(), QStringList({u"highlight -1"_s}));
        rows.view.setHighlightedRow(-5);
        QCOMPARE(rows.take(), QStringList());
    }

    void theHighlightedRowIsPaintedInTheColoursOfASelection()
    {
        Rows rows;
        QVERIFY(rows.show(3));
        rows.view.setHighlightedRow(1);
        rows.drawn.clear();
        const QImage picture = rows.view.viewport()->grab().toImage();
        QCOMPARE(rows.drawn, QList<int>({0, -1, 2}));
        const auto colorOf = [&](int row) {
            return picture.pixelColor(rows.view.rowRect(row).topLeft() + QPoint(2, 2));
        };
        const QPalette palette = rows.view.palette();
        QCOMPARE(colorOf(0), palette.color(QPalette::Active, QPalette::Base));
        QCOMPARE(colorOf(1), palette.color(QPalette::Active, QPalette::Highlight));
        QCOMPARE(colorOf(2), palette.color(QPalette::Active, QPalette::Base));
    }

    void aClickTellsItsRow()
    {
        Rows rows;
        QVERIFY(rows.show(3));
        const auto click = [&](const QPoint& place, Qt::MouseButton button) {
            QTest::mouseClick(rows.view.viewport(), button, {}, place);
            return rows.take();
        };
        QCOMPARE(click(rows.view.rowRect(2).center(), Qt::LeftButton), QStringList({u"click 2"_s}));
        QCOMPARE(click(rows.view.rowRect(2).center(), Qt::RightButton), QStringList());
        QCOMPARE(click({5, rows.view.rowRect(2).bottom() + 1}, Qt::LeftButton), QStringList());
        const tavrin::Subscription failing =
            rows.view.RowClicked.subscribe([](int) { throw Error(u"no"_s); });
        const Unhandled unhandled;
        click(rows.view.rowRect(0).center(), Qt::LeftButton);
        QCOMPARE(unhandled.texts, QStringList({u"SuggestionView_Click: no"_s}));
    }

    void whatAPainterThrowsIsReportedOnceForTheRows()
    {
        Rows rows;
        rows.fails = true;
        const Unhandled unhandled;
        QVERIFY(rows.show(3));
        rows.view.viewport()->grab();
        QCOMPARE(rows.view.rowText(0), QString());
        QCOMPARE(unhandled.texts, QStringList({u"SuggestionView_DrawItem: no"_s}));
        QCOMPARE(rows.view.rowCount(), 3);
        rows.view.setRows(3, 200);
        QCOMPARE(unhandled.texts.size(), 2);
    }

    void theTextOfARowIsWhatStandsInIt()
    {
        Rows rows;
        rows.view.setRows(3, 200);
        QCOMPARE(rows.view.rowText(2), u"row 2"_s);
        QCOMPARE(rows.view.rowText(3), QString());
        QCOMPARE(rows.view.rowText(-1), QString());
    }

    // Screen readers

    void screenReadersSeeAListOfItems()
    {
        Rows rows;
        QVERIFY(rows.show(30));
        QAccessibleInterface* list = QAccessible::queryAccessibleInterface(&rows.view);
        QVERIFY(list);
        QCOMPARE(list->role(), QAccessible::List);
        QCOMPARE(list->text(QAccessible::Name), u"Suggestions"_s);
        QCOMPARE(list->text(QAccessible::Description), u"30 suggestions"_s);
        QCOMPARE(list->childCount(), 30);
        QVERIFY(!list->child(-1));
        QVERIFY(!list->child(30));
        for (const int row : {0, 2, 29}) {
            QAccessibleInterface* item = list->child(row);
            QVERIFY(item && item->isValid());
            QCOMPARE(list->child(row), item); // the same again
            QCOMPARE(item->role(), QAccessible::ListItem);
            QCOMPARE(item->text(QAccessible::Name), u"row %1"_s.arg(row));
            QCOMPARE(item->parent(), list);
            QCOMPARE(item->childCount(), 0);
            QCOMPARE(list->indexOfChild(item), row);
        }
    }

    void itemsStandWhereTheirRowsAreOnTheScreen()
    {
        Rows rows;
        QVERIFY(rows.show(30));
        QAccessibleInterface* list = QAccessible::queryAccessibleInterface(&rows.view);
        const QRect second = list->child(1)->rect();
        QCOMPARE(second, QRect(rows.view.viewport()->mapToGlobal(rows.view.rowRect(1).topLeft()),
                               rows.view.rowRect(1).size()));
        QVERIFY(list->rect().contains(second));
        QCOMPARE(list->childAt(second.center().x(), second.center().y()), list->child(1));
        QVERIFY(!list->childAt(5, 5));
        rows.view.verticalScrollBar()->setValue(rows.view.rowHeight());
        QCOMPARE(list->child(1)->rect(), second.translated(0, -rows.view.rowHeight()));
        QVERIFY(list->child(0)->state().offscreen);
        QVERIFY(!list->child(1)->state().offscreen);
    }

    void theHighlightedItemIsSelected()
    {
        Rows rows;
        QVERIFY(rows.show(30));
        QAccessibleInterface* list = QAccessible::queryAccessibleInterface(&rows.view);
        QVERIFY(!list->focusChild());
        QVERIFY(list->child(2)->state().selectable);
        QVERIFY(!list->child(2)->state().selected);
        rows.view.setHighlightedRow(2);
        QVERIFY(list->child(2)->state().selected);
        QVERIFY(!list->child(1)->state().selected);
        QCOMPARE(list->focusChild(), list->child(2));
        rows.view.setHighlightedRow(1);
        QVERIFY(!list->child(2)->state().selected);
        QVERIFY(list->child(1)->state().selected);
    }

    // The offscreen platform drops what is told to screen readers, so only the way to the item is seen.
    void whatIsToldOfAHighlightLeadsToItsItem()
    {
        Rows rows;
        QVERIFY(rows.show(30));
        rows.view.setHighlightedRow(4);
        QAccessibleEvent event(&rows.view, QAccessible::Selection);
        event.setChild(rows.view.highlightedRow());
        QVERIFY(event.accessibleInterface());
        QCOMPARE(event.accessibleInterface()->text(QAccessible::Name), u"row 4"_s);
        QVERIFY(event.accessibleInterface()->state().selected);
    }

    void itemsOfRowsThatAreGoneAreNotValid()
    {
        Rows rows;
        QVERIFY(rows.show(30));
        QAccessibleInterface* list = QAccessible::queryAccessibleInterface(&rows.view);
        QAccessibleInterface* first = list->child(0);
        QAccessibleInterface* last = list->child(29);
        rows.view.setRows(3, 200);
        QCOMPARE(list->childCount(), 3);
        QVERIFY(first->isValid());
        QVERIFY(!last->isValid());
        QVERIFY(last->state().invalid);
        QCOMPARE(last->text(QAccessible::Name), QString());
        QCOMPARE(last->rect(), QRect());
        rows.view.setRows(0, 200);
        QVERIFY(!first->isValid());
        QCOMPARE(list->childCount(), 0);
        QCOMPARE(list->text(QAccessible::Description), u"No matches"_s);
        rows.view.setRows(1, 200);
        QCOMPARE(list->text(QAccessible::Description), u"1 suggestion"_s);
    }

    void theItemsDieWithTheView()
    {
        QAccessible::Id id = 0;
        {
            Rows rows;
            rows.view.setRows(3, 200);
            id = QAccessible::uniqueId(QAccessible::queryAccessibleInterface(&rows.view)->child(1));
            QVERIFY(QAccessible::accessibleInterface(id));
        }
        QVERIFY(!QAccessible::accessibleInterface(id));
    }

    // Through the box that the list belongs to

    void theBoxTellsHowManySuggestionsThereAre_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("description");
        QTest::newRow("none") << 0 << u"No matches"_s;
        QTest::newRow("one") << 1 << u"1 suggestion"_s;
        QTest::newRow("many") << 25 << u"25 suggestions"_s;
    }
    void theBoxTellsHowManySuggestionsThereAre()
    {
        QFETCH(int, count);
        QFETCH(QString, description);
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(count);
        QCOMPARE(stage.box->accessibleDescription(), QString());
        stage.key(Qt::Key_F4);
        QCOMPARE(stage.box->accessibleDescription(), description);
        stage.key(Qt::Key_Escape);
        QCOMPARE(stage.box->accessibleDescription(), QString());
    }

    void theBoxTellsTheHighlightedRow()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(25);
        stage.key(Qt::Key_F4);
        stage.key(Qt::Key_Down);
        QCOMPARE(stage.box->accessibleDescription(), u"item 0, 1 of 25"_s);
        stage.key(Qt::Key_PageDown);
        QCOMPARE(stage.box->accessibleDescription(), u"item 10, 11 of 25"_s);
        stage.movePointer(stage.rowOnScreen(9));
        QCOMPARE(stage.box->accessibleDescription(), u"item 9, 10 of 25"_s);
        stage.type(u"item 2"_s);
        QCOMPARE(stage.box->accessibleDescription(), u"6 suggestions"_s);
        stage.type(u"4"_s); // a single match is highlighted by itself
        QCOMPARE(stage.box->accessibleDescription(), u"item 24, 1 of 1"_s);
        stage.key(Qt::Key_Return);
        QCOMPARE(stage.box->accessibleDescription(), QString());
    }

    void aTextThatLooksLikeAPlaceholderIsToldAsItStands()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill({u"rate %1 of %2"_s, u"%3"_s});
        stage.key(Qt::Key_F4);
        stage.key(Qt::Key_Down);
        QCOMPARE(stage.box->accessibleDescription(), u"rate %1 of %2, 1 of 2"_s);
    }

    void aClosedListHasNoItems()
    {
        Stage stage;
        QVERIFY(stage.isReady());
        stage.fill(3);
        stage.key(Qt::Key_F4);
        QAccessibleInterface* list = QAccessible::queryAccessibleInterface(stage.view());
        QAccessibleInterface* item = list->child(1);
        QCOMPARE(item->text(QAccessible::Name), u"item 1"_s);
        stage.key(Qt::Key_Escape);
        QCOMPARE(list->childCount(), 0);
        QVERIFY(!item->isValid());
    }
};

TAVRIN_TEST_MAIN(tst_SuggestionView)
#include "tst_SuggestionView.moc"
