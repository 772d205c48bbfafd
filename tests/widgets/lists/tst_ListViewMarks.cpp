#include "support/Looks.h"
#include "widgets/lists/ListStage.h"

#include <QAccessible>
#include <QHeaderView>
#include <QIconEngine>
#include <QPainter>
#include <QSignalSpy>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

/// A square of one colour, as large as it is painted.
class SquareEngine final : public QIconEngine
{
public:
    QIconEngine* clone() const override { return new SquareEngine; }
    void paint(QPainter* painter, const QRect& rect, QIcon::Mode, QIcon::State) override
    {
        painter->fillRect(rect, Qt::green);
    }
};

/// A style may shade a highlight a little.
bool isHighlight(const QColor& color)
{
    const QColor highlight = QApplication::palette().color(QPalette::Active, QPalette::Highlight);
    return std::abs(color.red() - highlight.red()) + std::abs(color.green() - highlight.green()) +
               std::abs(color.blue() - highlight.blue()) <
           20;
}

/// The colour at the right end of a row, where there is no text.
QColor groundOf(const ListStage& stage, int row)
{
    const QImage image = stage.list->viewport()->grab().toImage();
    const QRect cell = stage.rectOfRow(row, 1);
    return image.pixelColor(cell.right() - 3, cell.center().y());
}

} // namespace

/// What the rows of a `ListView` show, how they are marked and found.
class tst_ListViewMarks : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Rows and keys

    void keysAndIndexesLeadToEachOther()
    {
        ListStage stage;
        stage.add({u"Ann"_s, u"Ben"_s, u"Cy"_s});
        for (int index = 0; index < 3; ++index)
            QCOMPARE(stage.list->IndexOf(stage.list->Key(index)), index);
        stage.list->Remove(u"b"_s);
        QCOMPARE(stage.list->IndexOf(u"c"_s), 1);
        QCOMPARE(numberOf([&] { stage.list->IndexOf(u"b"_s); }), ListView::MissingKeyNumber);
    }

    void aRemovedRowLeavesTheRowsBehindItOneIndexFurtherUp()
    {
        ListStage stage;
        stage.add({u"Ann"_s, u"Ben"_s, u"Cy"_s});
        stage.list->Remove(u"b"_s);
        QCOMPARE(stage.keys(), QStringList({u"a"_s, u"c"_s}));
        QCOMPARE(stage.list->SubItem(stage.list->Key(1), u"name"_s), u"Cy"_s);
    }

    void severalRowsGoAtOnce_data()
    {
        QTest::addColumn<QStringList>("gone");
        QTest::addColumn<QStringList>("left");
        QTest::addColumn<int>("removals"); // as the view hears of them: neighbours go together
        QTest::newRow("none") << QStringList() << QStringList({u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s}) << 0;
        QTest::newRow("one") << QStringList({u"c"_s}) << QStringList({u"a"_s, u"b"_s, u"d"_s, u"e"_s}) << 1;
        QTest::newRow("neighbours") << QStringList({u"d"_s, u"b"_s, u"c"_s}) << QStringList({u"a"_s, u"e"_s})
                                    << 1;
        QTest::newRow("two runs") << QStringList({u"a"_s, u"d"_s, u"e"_s}) << QStringList({u"b"_s, u"c"_s})
                                  << 2;
        QTest::newRow("named twice") << QStringList({u"a"_s, u"a"_s})
                                     << QStringList({u"b"_s, u"c"_s, u"d"_s, u"e"_s}) << 1;
        QTest::newRow("all") << QStringList({u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s}) << QStringList() << 1;
    }
    void severalRowsGoAtOnce()
    {
        QFETCH(QStringList, gone);
        QFETCH(QStringList, left);
        QFETCH(int, removals);
        ListStage stage;
        stage.add({u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"5"_s});
        QSignalSpy removed(stage.list->model(), &QAbstractItemModel::rowsRemoved);
        stage.list->Remove(gone);
        QCOMPARE(stage.keys(), left);
        QCOMPARE(removed.size(), removals);
        for (const QString& key : gone)
            QVERIFY(!stage.list->Contains(key));
        for (const QString& key : left)
            QCOMPARE(stage.list->Key(stage.list->IndexOf(key)), key);
    }

    void anUnknownKeyAmongSeveralRemovesNone()
    {
        ListStage stage;
        stage.add({u"Ann"_s, u"Ben"_s});
        QCOMPARE(numberOf([&] {
                     stage.list->Remove(QStringList{u"a"_s, u"z"_s});
                 }),
                 ListView::MissingKeyNumber);
        QCOMPARE(stage.list->Count(), 2);
    }

    void aTextThatStaysTheSameIsNoChangeForTheView()
    {
        ListStage stage;
        stage.add({u"Ann"_s});
        QSignalSpy changes(stage.list->model(), &QAbstractItemModel::dataChanged);
        stage.list->SetSubItem(u"a"_s, u"name"_s, u"Ann"_s);
        QCOMPARE(changes.size(), 0);
        stage.list->SetSubItem(u"a"_s, u"name"_s, u"Amy"_s);
        QCOMPARE(changes.size(), 1);
    }

    void keysOfColumnsCompareWithoutCase()
    {
        ListStage stage;
        stage.add({u"Ann"_s});
        QCOMPARE(stage.list->SubItem(u"a"_s, u"NAME"_s), u"Ann"_s);
    }

    void aTagBelongsToItsRow()
    {
        ListStage stage;
        stage.add({u"Ann"_s, u"Ben"_s});
        QCOMPARE(stage.list->Tag(u"a"_s), QString());
        stage.list->SetTag(u"b"_s, u"UPDATED"_s);
        stage.list->Remove(u"a"_s);
        QCOMPARE(stage.list->Tag(u"b"_s), u"UPDATED"_s);
        QCOMPARE(numberOf([&] { stage.list->Tag(u"a"_s); }), ListView::MissingKeyNumber);
        QCOMPARE(numberOf([&] { stage.list->SetTag(u"a"_s, {}); }), ListView::MissingKeyNumber);
    }

    // Icons and heights

    void anIconStandsBeforeItsTextAndARowIsAsHighAsItWasTold()
    {
        ListStage stage;
        stage.add({u"Ann"_s, u"Ben"_s});
        stage.list->setIconSize({32, 32});
        stage.list->SetRowHeight(32);
        stage.list->SetSubItemIcon(u"b"_s, u"name"_s, QIcon(new SquareEngine), u"square"_s);
        QVERIFY(stage.show());
        QCOMPARE(stage.rectOfRow(0).height(), 32);
        QCOMPARE(stage.rectOfRow(1).height(), 32);
        const QImage image = stage.list->viewport()->grab().toImage();
        const QRect painted =
            boundsOf(image, [](const QColor& color) { return color.rgb() == QColor(Qt::green).rgb(); });
        QCOMPARE(painted.size(), QSize(32, 32));
        QCOMPARE(painted.top(), stage.rectOfRow(1).top());
        QVERIFY(stage.rectOfRow(1).contains(painted));
        stage.list->SetRowHeight(0);
        stage.list->SetSubItemIcon(u"b"_s, u"name"_s, QIcon());
        QTRY_VERIFY(stage.rectOfRow(0).height() < 32);
    }

    void screenReadersHearTheKindOfAnIconAndTheWholeLine()
    {
        ListStage stage;
        stage.add({u"photo.png"_s});
        stage.list->SetSubItem(u"a"_s, u"word"_s, u"Broken window"_s);
        stage.list->SetSubItemIcon(u"a"_s, u"name"_s, QIcon(new SquareEngine), u"image"_s);
        QVERIFY(stage.show());
        QAccessibleTableInterface* told = QAccessible::queryAccessibleInterface(stage.list)->tableInterface();
        QCOMPARE(told->cellAt(0, 0)->text(QAccessible::Name), u"photo.png, image"_s);
        QCOMPARE(told->cellAt(0, 0)->text(QAccessible::Description), u"Word: Broken window"_s);
        QCOMPARE(told->cellAt(0, 1)->text(QAccessible::Name), u"Broken window"_s);
        QCOMPARE(told->cellAt(0, 1)->text(QAccessible::Description), u"Name: photo.png, image"_s);
    }

    void aToolTipShowsAsItStandsAndAlsoWhereTheTextIsNotCut()
    {
        ListStage stage;
        stage.add({u"<b>bold</b>"_s, u"Ben"_s});
        stage.list->SetSubItemToolTip(u"a"_s, u"name"_s, u"<b>bold</b>"_s);
        QVERIFY(stage.show());
        QCOMPARE(tipAt(stage, 0), u"<b>bold</b>"_s);
        QCOMPARE(tipAt(stage, 1), QString());
    }

    // Marks

    void theDropHighlightShowsWhereverTheFocusIsAndAHiddenSelectionDoesNot()
    {
        ListStage stage;
        stage.add({u"Ann"_s, u"Ben"_s, u"Cy"_s});
        stage.list->SetHideSelection(true);
        stage.list->SetSelectedItem(u"b"_s);
        stage.list->SetDropHighlight(u"c"_s);
        QVERIFY(stage.show());
        QVERIFY(isHighlight(groundOf(stage, 1)));
        QVERIFY(isHighlight(groundOf(stage, 2)));
        QVERIFY(!isHighlight(groundOf(stage, 0)));
        stage.other->setFocus();
        QVERIFY(!isHighlight(groundOf(stage, 1)));
        QVERIFY(isHighlight(groundOf(stage, 2)));
        QCOMPARE(stage.list->SelectedItem(), u"b"_s); // hidden, not gone
    }

    void aSelectionThatIsNotHiddenShowsWithoutTheFocus()
    {
        ListStage stage;
        stage.add({u"Ann"_s});
        stage.list->SetSelectedItem(u"a"_s);
        QVERIFY(stage.show());
        stage.other->setFocus();
        QVERIFY(isHighlight(groundOf(stage, 0)));
    }

    void theDropHighlightGoesWithItsRowAndIsNoSelection()
    {
        ListStage stage;
        stage.add({u"Ann"_s, u"Ben"_s, u"Cy"_s});
        QVERIFY(!stage.list->DropHighlight());
        stage.list->SetDropHighlight(u"c"_s);
        QVERIFY(!stage.list->SelectedItem());
        stage.list->Remove(u"a"_s);
        QCOMPARE(stage.list->DropHighlight(), u"c"_s);
        stage.list->SetSelectedItem(u"b"_s);
        stage.list->SetSelectedItem(std::nullopt);
        QCOMPARE(stage.list->DropHighlight(), u"c"_s);
        stage.list->Remove(u"c"_s);
        QVERIFY(!stage.list->DropHighlight());
        stage.list->SetDropHighlight(u"b"_s);
        stage.list->SetDropHighlight(std::nullopt);
        QVERIFY(!stage.list->DropHighlight());
        QCOMPARE(numberOf([&] { stage.list->SetDropHighlight(u"c"_s); }), ListView::MissingKeyNumber);
    }

    // Places

    void aPlaceHitsTheRowBelowIt()
    {
        ListStage stage;
        stage.add({u"Ann"_s, u"Ben"_s});
        QVERIFY(stage.show());
        const auto hit = [&](const QPoint& inWindow) {
            const QPoint place = stage.list->mapFrom(&stage.window, inWindow);
            return stage.list->HitTest(toTwips(place.x()), toTwips(place.y()));
        };
        QCOMPARE(hit(stage.placeOfRow(0)), u"a"_s);
        QCOMPARE(hit(stage.placeOfRow(1, 1)), u"b"_s);
        QVERIFY(!hit(stage.placeOfRow(1) + QPoint(0, 60)));
        QVERIFY(!hit(stage.list->geometry().topLeft() + QPoint(20, 5))); // the header
        QVERIFY(!hit(QPoint(-50, -50)));
    }

    void aRowOutOfSightComesIntoView()
    {
        ListStage stage;
        for (int i = 0; i < 50; ++i)
            stage.list->AddItem(QString::number(i), {});
        QVERIFY(stage.show());
        QVERIFY(stage.list->HasVerticalScrollBar());
        QVERIFY(!stage.list->viewport()->rect().contains(stage.rectOfRow(49)));
        stage.list->EnsureVisible(u"49"_s);
        QVERIFY(stage.list->viewport()->rect().contains(stage.rectOfRow(49)));
        QVERIFY(!stage.list->SelectedItem());
        QCOMPARE(numberOf([&] { stage.list->EnsureVisible(u"50"_s); }), ListView::MissingKeyNumber);
    }

    void theScrollBarIsKnownAtOnceWhenRowsComeAndGo()
    {
        ListStage stage;
        QVERIFY(stage.show());
        QVERIFY(!stage.list->HasVerticalScrollBar());
        QStringList keys;
        for (int i = 0; i < 50; ++i) {
            keys << QString::number(i);
            stage.list->AddItem(keys.last(), {});
        }
        QVERIFY(stage.list->HasVerticalScrollBar());
        stage.list->Remove(keys);
        QVERIFY(!stage.list->HasVerticalScrollBar());
    }

    // Columns

    void aColumnsNewWidthLeavesWhatThePersonMadeOfTheOthers()
    {
        ListStage stage;
        stage.list->AddColumnHeader(u"more"_s, u"More"_s, 600);
        QVERIFY(stage.show());
        QCOMPARE(stage.list->ColumnLeft(u"word"_s), 3000.0F);
        stage.list->header()->resizeSection(0, 120); // as a drag of the header does
        stage.list->SetColumnWidth(u"word"_s, 1200);
        QCOMPARE(stage.list->header()->sectionSize(0), 120);
        QCOMPARE(stage.list->header()->sectionSize(1), 80);
        QCOMPARE(stage.list->ColumnLeft(u"word"_s), 1800.0F);
        QCOMPARE(stage.list->ColumnLeft(u"more"_s), 3000.0F);
        QCOMPARE(stage.list->ColumnLeft(u"key"_s), 0.0F); // does not show
    }

    void noColumnGetsNarrowerThanTheMinimum()
    {
        ListStage stage;
        stage.list->SetMinimumColumnWidth(900);
        QVERIFY(stage.show());
        stage.list->header()->resizeSection(0, 5);
        QCOMPARE(stage.list->header()->sectionSize(0), 60);
        const int room = stage.list->viewport()->width();
        stage.list->header()->resizeSection(0, room - 70);
        QCOMPARE(stage.list->header()->sectionSize(1), 70);
        stage.list->header()->resizeSection(0, room - 10);
        QCOMPARE(stage.list->header()->sectionSize(1), 60);
    }

    void withoutABorderALineShowsOnlyWithTheFocus()
    {
        ListStage stage;
        stage.list->SetBorder(false);
        QVERIFY(stage.show());
        const auto corner = [&] { return stage.list->grab().toImage().pixel(0, 100); };
        QCOMPARE(corner(), stage.list->palette().color(QPalette::Highlight).rgb());
        stage.other->setFocus();
        QCOMPARE(corner(), stage.list->palette().color(QPalette::Base).rgb());
        stage.list->SetBorder(true);
        QCOMPARE(corner(), stage.list->palette().color(QPalette::Mid).rgb());
    }

private:
    static QString tipAt(const ListStage& stage, int row)
    {
        const QPoint place = stage.rectOfRow(row).center();
        QHelpEvent help(QEvent::ToolTip, place, stage.list->viewport()->mapToGlobal(place));
        QCoreApplication::sendEvent(stage.list->viewport(), &help);
        QTextDocument document;
        document.setHtml(QToolTip::isVisible() ? QToolTip::text() : QString());
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (window->inherits("QTipLabel"))
                window->hide();
        }
        return document.toPlainText();
    }
};

TAVRIN_TEST_MAIN(tst_ListViewMarks)
#include "tst_ListViewMarks.moc"
