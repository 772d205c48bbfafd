#include "attachments/section/AttachmentsStage.h"

#include <QAccessible>
#include <QHeaderView>
#include <QSignalSpy>
#include <QStyle>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

/// How often the view hears of lines that come, go or change.
struct Changes
{
    explicit Changes(ListView& list)
        : inserted(list.model(), &QAbstractItemModel::rowsInserted)
        , removed(list.model(), &QAbstractItemModel::rowsRemoved)
        , changed(list.model(), &QAbstractItemModel::dataChanged)
    {
    }
    QSignalSpy inserted;
    QSignalSpy removed;
    QSignalSpy changed;
};

} // namespace

/// What the list of `Attachments` shows, and how it looks.
class tst_AttachmentsList : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Setting up

    void theColumnsHaveTheirTextsAndWidths()
    {
        AttachmentsStage stage;
        const auto width =
            static_cast<float>(QFontMetrics(stage.section->font()).horizontalAdvance(u'W') * 15);
        const QHeaderView* header = stage.list->header();
        QCOMPARE(header->count(), 4); // that of the numbers never shows
        QStringList texts;
        for (int section = 0; section < header->count(); ++section)
            texts << stage.list->model()->headerData(section, Qt::Horizontal).toString();
        QCOMPARE(texts, QStringList({u"Filename"_s, u"Description"_s, u"Uploaded By"_s, u"Upload Date"_s}));
        QCOMPARE(stage.list->ColumnWidth(u"SeqNo"_s), 0.0F);
        QCOMPARE(stage.list->ColumnWidth(u"Filename"_s), 15 * width);
        QCOMPARE(stage.list->ColumnWidth(u"Description"_s), 20 * width);
        QCOMPARE(stage.list->ColumnWidth(u"UserId"_s), 8 * width);
        QVERIFY(!header->sectionsMovable());
        QVERIFY(!header->sectionsClickable());
        QVERIFY(!stage.list->isSortingEnabled());
    }

    void aLineIsAsHighAsItsCellAndTheIconStandsInItsMiddleWithoutMagenta()
    {
        AttachmentsStage stage;
        QVERIFY(stage.openThree());
        const QModelIndex cell = stage.list->model()->index(1, 0);
        QCOMPARE(stage.list->visualRect(cell).height(), 32);
        const auto icon = cell.data(Qt::DecorationRole).value<QIcon>();
        const QImage image = icon.pixmap(QSize(32, 32), 1.0).toImage();
        QCOMPARE(image.size(), QSize(32, 32));
        QRect ink;
        for (int y = 0; y < 32; ++y) {
            for (int x = 0; x < 32; ++x) {
                const QColor color = image.pixelColor(x, y);
                QVERIFY((color.rgb() & 0xFFFFFFU) != 0xFF00FFU || color.alpha() == 0);
                if (color.alpha() > 0)
                    ink |= QRect(x, y, 1, 1);
            }
        }
        QVERIFY(!ink.isEmpty());
        QVERIFY(ink.width() <= 20 && ink.height() <= 20); // in its own size
        QVERIFY(std::abs(ink.left() - (31 - ink.right())) <= 1);
        QVERIFY(std::abs(ink.top() - (31 - ink.bottom())) <= 1);
    }

    void theColumnsCannotBeMoved()
    {
        const AttachmentsStage stage;
        QVERIFY(!stage.list->header()->sectionsMovable());
    }

    // Lines

    void aLineShowsWhatItsRowHolds()
    {
        AttachmentsStage stage;
        const tvTableRowPtr row = stage.add(12, u"2014\\03\\20160201130507_Report.PNG"_s, u"The window"_s);
        fieldOf(*row, u"OriginalFileName"_s)->SetValue(u"Report.PNG"_s);
        fieldOf(*row, u"UserId"_s)->SetValue(u"mmoss"_s);
        fieldOf(*row, u"UserDate"_s)->SetValue(QDateTime({2016, 2, 1}, {13, 5, 7}));
        stage.read();
        QCOMPARE(stage.lines(), QStringList{u"12|Report.PNG|The window|mmoss|02/01/2016"_s});
        stage.host.state().dateDisplayFormat = u"d.M.yyyy H:mm"_s;
        stage.read();
        QCOMPARE(stage.lines(), QStringList{u"12|Report.PNG|The window|mmoss|1.2.2016 13:05"_s});
    }

    void aRowOfNullsShowsEmptyCellsAndNoError()
    {
        AttachmentsStage stage;
        stage.add(1, u"a.txt"_s, Null());
        stage.read();
        QCOMPARE(stage.lines(), QStringList{u"1|a.txt|||"_s});
    }

    void aDateWithoutTimeAndATextThatIsNoDateAreShown()
    {
        AttachmentsStage stage;
        fieldOf(*stage.add(1, u"a.txt"_s), u"UserDate"_s)->SetValue(QDate(2016, 2, 1));
        fieldOf(*stage.add(2, u"b.txt"_s), u"UserDate"_s)->SetValue(u"last spring"_s);
        stage.read();
        QCOMPARE(stage.lines(), QStringList({u"1|a.txt|||02/01/2016"_s, u"2|b.txt|||last spring"_s}));
    }

    void aRowWithoutANameOfItsOwnShowsTheStoredOne()
    {
        AttachmentsStage stage;
        stage.add(1, u"2014\\03\\20160201130507_Report.pdf"_s);
        stage.read();
        QCOMPARE(stage.lines(), QStringList{u"1|20160201130507_Report.pdf|||"_s});
    }

    void nameAndDescriptionStandInTheirToolTips()
    {
        AttachmentsStage stage;
        stage.addThree();
        stage.read();
        const auto tip = [&](int column) {
            return stage.list->model()->index(0, column).data(Qt::ToolTipRole).toString();
        };
        QCOMPARE(tip(0), u"photo.png"_s);
        QCOMPARE(tip(1), u"Window"_s);
        QCOMPARE(tip(2), QString());
        QCOMPARE(tip(3), QString());
    }

    void theKindOfAFileIsSeenAndSaid_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("original");
        QTest::addColumn<QString>("said");
        QTest::newRow("image") << u"a.png"_s << u""_s << u"a.png, image"_s;
        QTest::newRow("document") << u"a.docx"_s << u""_s << u"a.docx, file"_s;
        QTest::newRow("the stored name decides") << u"a.png"_s << u"a.docx"_s << u"a.docx, image"_s;
    }
    void theKindOfAFileIsSeenAndSaid()
    {
        QFETCH(QString, stored);
        QFETCH(QString, original);
        QFETCH(QString, said);
        AttachmentsStage stage;
        fieldOf(*stage.add(1, stored, u"Window"_s), u"OriginalFileName"_s)->SetValue(original);
        stage.read();
        QVERIFY(stage.show());
        const QAccessibleInterface* cell =
            QAccessible::queryAccessibleInterface(stage.list)->tableInterface()->cellAt(0, 0);
        QCOMPARE(cell->text(QAccessible::Name), said);
        QCOMPARE(cell->text(QAccessible::Description), u"Description: Window"_s);
    }

    void aRefreshOfUnchangedRowsTouchesNoLine()
    {
        AttachmentsStage stage;
        stage.addThree();
        stage.read();
        const Changes changes(*stage.list);
        stage.read();
        QCOMPARE(changes.inserted.size(), 0);
        QCOMPARE(changes.removed.size(), 0);
        QCOMPARE(changes.changed.size(), 0);
    }

    void aRefreshReadsEachRowFewTimesHoweverManyThereAre()
    {
        AttachmentsStage stage;
        for (int key = 1; key <= 200; ++key)
            stage.add(key, u"a.txt"_s);
        stage.read();
        const qint64 before = stage.rows->reads;
        stage.read();
        QVERIFY(stage.rows->reads - before <= 200 + 10);
    }

    void withTheSecondOfThreeGoneTheThirdLineIsTheSecondAndGoesWithItsRow()
    {
        AttachmentsStage stage;
        stage.addThree();
        stage.read();
        stage.rows->SetPosition(2);
        stage.rows->RemoveCurrent(false);
        const Changes changes(*stage.list);
        stage.read();
        QCOMPARE(stage.keys(), QStringList({u"1"_s, u"3"_s}));
        QCOMPARE(changes.removed.size(), 1);
        QCOMPARE(changes.inserted.size(), 0);
        QVERIFY(stage.show());
        stage.click(0);
        stage.click(1);
        QCOMPARE(stage.rows->Position(), 2);
        QCOMPARE(stage.caption("lblFilename"), u"list.txt"_s);
    }

    void aNewRowTakesTheEndOfTheList()
    {
        AttachmentsStage stage;
        stage.add(7, u"a.txt"_s);
        stage.read();
        stage.add(3, u"b.txt"_s);
        stage.read();
        QCOMPARE(stage.keys(), QStringList({u"7"_s, u"3"_s}));
        QCOMPARE(stage.caption("lblCount"), u"2"_s);
    }

    void linesThatTheNextRecordHasTooAreReused()
    {
        AttachmentsStage stage;
        stage.addThree();
        stage.read();
        stage.replaceRows();
        stage.add(2, u"other.txt"_s);
        stage.add(5, u"new.txt"_s);
        const Changes changes(*stage.list);
        stage.read();
        QCOMPARE(stage.lines(), QStringList({u"2|other.txt|||"_s, u"5|new.txt|||"_s}));
        QCOMPARE(changes.inserted.size(), 1);
        QCOMPARE(changes.removed.size(), 2); // 1 and 3 are no neighbours
    }

    void aRecordWithTheSameNumbersInAnotherOrderHasItsLinesInItsOwn()
    {
        AttachmentsStage stage;
        stage.addThree();
        stage.read();
        stage.replaceRows();
        stage.add(9, u"nine.txt"_s);
        stage.add(3, u"three.txt"_s);
        stage.add(1, u"one.txt"_s);
        stage.read();
        QCOMPARE(stage.keys(), QStringList({u"9"_s, u"3"_s, u"1"_s}));
        QCOMPARE(stage.list->DropHighlight(), u"9"_s);
    }

    void twoRowsWithOneNumberShareALine()
    {
        AttachmentsStage stage;
        stage.add(1, u"a.txt"_s);
        stage.add(1, u"b.txt"_s);
        stage.read();
        stage.read();
        QCOMPARE(stage.lines(), QStringList{u"1|b.txt|||"_s});
        QCOMPARE(stage.caption("lblCount"), u"2"_s); // of the rows
    }

    void aRowWithoutANumberRaises()
    {
        AttachmentsStage stage;
        stage.add(Null(), u"a.txt"_s);
        QCOMPARE(stage.readError(stage.record).Number, 94);
    }

    // Layout

    void theLastColumnTakesWhatIsLeft_data()
    {
        QTest::addColumn<int>("files");
        QTest::addColumn<int>("width");
        QTest::newRow("without a scroll bar") << 2 << 900;
        QTest::newRow("with a scroll bar") << 40 << 900;
    }
    void theLastColumnTakesWhatIsLeft()
    {
        QFETCH(int, files);
        QFETCH(int, width);
        AttachmentsStage stage;
        for (int key = 1; key <= files; ++key)
            stage.add(key, u"a.txt"_s);
        stage.window.resize(width + 40, 600);
        QVERIFY(stage.show());
        stage.section->resize(width, 401);
        stage.read();
        const QStyle* style = stage.section->style();
        const QHeaderView* header = stage.list->header();
        const int bar = files > 10 ? style->pixelMetric(QStyle::PM_ScrollBarExtent) : 0;
        const int expected =
            width - header->sectionPosition(3) - 2 * style->pixelMetric(QStyle::PM_DefaultFrameWidth) - bar;
        QCOMPARE(stage.list->ColumnWidth(u"UserDate"_s), toTwips(expected));
        QTRY_COMPARE(header->sectionSize(3), expected); // and that is to the list's end
        QCOMPARE(header->length(), stage.list->viewport()->width());
    }

    void withoutRoomADateStaysReadable()
    {
        AttachmentsStage stage;
        stage.add(1, u"a.txt"_s);
        QVERIFY(stage.show());
        stage.section->resize(300, 401);
        stage.read();
        const int needed = QFontMetrics(stage.list->font()).horizontalAdvance(u"00/00/0000"_s);
        QVERIFY(stage.list->header()->sectionSize(3) > needed);
        QVERIFY(stage.list->ColumnWidth(u"UserDate"_s) > 0);
    }

    void theCountStandsAtTheRightEndBehindItsLabel()
    {
        AttachmentsStage stage;
        QVERIFY(stage.show());
        for (const int files : {0, 3, 1000}) {
            while (stage.rows->Count() < files)
                stage.add(stage.rows->Count() + 1, u"a.txt"_s);
            stage.read();
            const auto* count = stage.child<Label>("lblCount");
            QCOMPARE(count->Caption(), QString::number(files));
            QCOMPARE(count->geometry().right() + 1, stage.section->width());
            QCOMPARE(stage.child<Label>("lblCountLabel")->geometry().right() + 1 + 4, count->x());
        }
    }

    void aDescriptionWithLineEndsStandsOnOneLine_data()
    {
        QTest::addColumn<QString>("description");
        QTest::newRow("\\r\\n") << u"Front\r\ndoor"_s;
        QTest::newRow("\\n") << u"Front\ndoor"_s;
        QTest::newRow("\\r") << u"Front\rdoor"_s;
    }
    void aDescriptionWithLineEndsStandsOnOneLine()
    {
        QFETCH(QString, description);
        AttachmentsStage stage;
        const tvTableRowPtr row = stage.add(1, u"2014\\03\\photo.png"_s, u"Front door"_s);
        stage.rows->SetPosition(1);
        stage.read();
        QVERIFY(stage.show());
        const QImage plain = stage.list->grab().toImage();
        fieldOf(*row, u"Description"_s)->SetValue(u"Back door"_s);
        stage.read();
        QVERIFY(stage.list->grab().toImage() != plain);
        fieldOf(*row, u"Description"_s)->SetValue(description);
        stage.read();
        QCOMPARE(stage.list->grab().toImage(), plain);
        QCOMPARE(stage.list->SubItem(u"1"_s, u"Description"_s), description);
    }

    void theListHasNoBorderBesidesItsFocus()
    {
        AttachmentsStage stage;
        QVERIFY(stage.show());
        const auto edge = [&] { return stage.list->grab().toImage().pixel(0, stage.list->height() / 2); };
        QCOMPARE(edge(), stage.list->palette().color(QPalette::Highlight).rgb());
        stage.other->setFocus();
        QCOMPARE(edge(), stage.list->palette().color(QPalette::Base).rgb());
    }
};

TAVRIN_TEST_MAIN(tst_AttachmentsList)
#include "tst_AttachmentsList.moc"
