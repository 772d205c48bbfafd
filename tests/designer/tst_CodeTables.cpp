#include "designer/CodeTableDialog.h"
#include "designer/CodeTables.h"
#include "support/TestCase.h"

#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTreeWidget>

using namespace tavrin::designer;
using namespace tavrin::test;

namespace {

/// The folder of a person's data for as long as it lives.
class DataFolder
{
public:
    DataFolder()
        : m_before(qgetenv("XDG_DATA_HOME"))
    {
        qputenv("XDG_DATA_HOME", m_folder.path().toLocal8Bit());
    }
    ~DataFolder() { qputenv("XDG_DATA_HOME", m_before); }
    DataFolder(const DataFolder&) = delete;
    DataFolder& operator=(const DataFolder&) = delete;

    bool install(const QByteArray& tables) const
    {
        QFile file(m_folder.filePath(QStringLiteral("TVBoundControls/tables.csv")));
        return QDir(m_folder.path()).mkpath(QStringLiteral("TVBoundControls")) &&
               file.open(QIODevice::WriteOnly) && file.write(tables) == tables.size();
    }

private:
    QTemporaryDir m_folder;
    QByteArray m_before;
};

QStringList installed()
{
    QStringList texts;
    for (const CodeTable& table : installedCodeTables())
        texts << QStringLiteral("%1 %2").arg(table.number).arg(table.name);
    return texts;
}

void expectComplaint(int line)
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("tables\\.csv:%1: ").arg(line)));
}

QList<CodeTable> someTables()
{
    return {{7, QStringLiteral("Highway 302")},
            {45, QStringLiteral("Race")},
            {302, QStringLiteral("Weapon")},
            {1302, QStringLiteral("Offense")}};
}

} // namespace

class tst_CodeTables : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void withoutAFileThereAreNone()
    {
        const DataFolder folder;
        QCOMPARE(installed(), QStringList());
    }

    void aFileNamesTheTables()
    {
        const DataFolder folder;
        QVERIFY(folder.install("Name,TableNo,Source\r\nRace,312,sample\n\n\"Type, \"\"Weapon\"\"\",302,x\n"));
        QCOMPARE(installed(),
                 QStringList({QStringLiteral("312 Race"), QStringLiteral("302 Type, \"Weapon\"")}));
    }

    void aRowThatCannotBeReadIsToldOnceAndTheOthersStand()
    {
        const DataFolder folder;
        QVERIFY(folder.install("TableNo,Name\n1,One\nx,Two\n3,\n4,Four\n"));
        expectComplaint(3);
        QCOMPARE(installed(), QStringList({QStringLiteral("1 One"), QStringLiteral("4 Four")}));
    }

    void aFileWithoutItsColumnsIsTold()
    {
        const DataFolder folder;
        QVERIFY(folder.install("Number,Name\n1,One\n"));
        expectComplaint(1);
        QCOMPARE(installed(), QStringList());
    }

    void theDialogTakesWhatIsSeen()
    {
        CodeTableDialog dialog({{302, QStringLiteral("Weapon")}, {312, QStringLiteral("Race")}}, 312,
                               nullptr);
        dialog.show();
        QCOMPARE(dialog.chosenTable(), std::optional(312));
        auto* search = dialog.findChild<QLineEdit*>();
        QTest::keyClicks(search, QStringLiteral("weap"));
        QCOMPARE(dialog.chosenTable(), std::optional(302));
        QTest::keyClicks(search, QStringLiteral("onless"));
        QCOMPARE(dialog.chosenTable(), std::optional<int>());
        QTest::keyClick(search, Qt::Key_Return);
        QVERIFY2(dialog.isVisible(), "there is nothing to take");
        search->clear();
        QTest::keyClicks(search, QStringLiteral("31"));
        QTest::keyClick(search, Qt::Key_Return);
        QVERIFY(!dialog.isVisible());
        QCOMPARE(dialog.result(), static_cast<int>(QDialog::Accepted));
        QCOMPARE(dialog.chosenTable(), std::optional(312));
    }

    void theNumbersStandFlushRightInAColumnOfTheirOwn()
    {
        CodeTableDialog dialog(someTables(), 302, nullptr);
        dialog.show();
        const auto* list = dialog.findChild<QTreeWidget*>();
        QCOMPARE(list->columnCount(), 2);
        for (int row = 0; row < list->topLevelItemCount(); ++row) {
            const QTreeWidgetItem* item = list->topLevelItem(row);
            QCOMPARE(item->text(0), QString::number(someTables().at(row).number));
            QCOMPARE(item->text(1), someTables().at(row).name);
            QVERIFY(item->textAlignment(0) & Qt::AlignRight);
        }
        QVERIFY2(list->columnWidth(0) >= list->fontMetrics().horizontalAdvance(QStringLiteral("Number")),
                 "a number is cut");
    }

    void aWholeNumberIsFoundBeforeNamesAndNumbersThatHoldIt()
    {
        CodeTableDialog dialog(someTables(), 7, nullptr);
        dialog.show();
        auto* search = dialog.findChild<QLineEdit*>();
        QTest::keyClicks(search, QStringLiteral("302"));
        QCOMPARE(dialog.chosenTable(), std::optional(302));
        search->clear();
        QTest::keyClicks(search, QStringLiteral("of"));
        QCOMPARE(dialog.chosenTable(), std::optional(1302));
    }

    void whatIsTypedOverTheListSearches()
    {
        CodeTableDialog dialog(someTables(), 7, nullptr);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        auto* search = dialog.findChild<QLineEdit*>();
        auto* list = dialog.findChild<QTreeWidget*>();
        list->setFocus();
        QTest::keyClick(list, Qt::Key_R);
        QCOMPARE(search->text(), QStringLiteral("r"));
        QVERIFY(search->hasFocus());
        QCOMPARE(dialog.chosenTable(), std::optional(45));
    }

    void theArrowsGoThroughWhatIsFoundWhileTheSearchHasTheFocus()
    {
        CodeTableDialog dialog(someTables(), 7, nullptr);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        auto* search = dialog.findChild<QLineEdit*>();
        search->setFocus();
        QTest::keyClicks(search, QStringLiteral("e"));
        QCOMPARE(dialog.chosenTable(), std::optional(45));
        QTest::keyClick(search, Qt::Key_Down);
        QCOMPARE(dialog.chosenTable(), std::optional(302));
        QTest::keyClick(search, Qt::Key_Up);
        QCOMPARE(dialog.chosenTable(), std::optional(45));
        QVERIFY(search->hasFocus());
        QCOMPARE(search->text(), QStringLiteral("e"));
    }

    void enterTakesOnceAndEscLeavesWhereverTheFocusIs_data()
    {
        QTest::addColumn<bool>("inList");
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("result");
        QTest::newRow("Enter in the list") << true << int(Qt::Key_Return) << int(QDialog::Accepted);
        QTest::newRow("Enter in the search") << false << int(Qt::Key_Return) << int(QDialog::Accepted);
        QTest::newRow("Esc in the list") << true << int(Qt::Key_Escape) << int(QDialog::Rejected);
        QTest::newRow("Esc in the search") << false << int(Qt::Key_Escape) << int(QDialog::Rejected);
    }
    void enterTakesOnceAndEscLeavesWhereverTheFocusIs()
    {
        QFETCH(bool, inList);
        QFETCH(int, key);
        CodeTableDialog dialog(someTables(), 302, nullptr);
        dialog.show();
        QWidget* at =
            inList ? static_cast<QWidget*>(dialog.findChild<QTreeWidget*>()) : dialog.findChild<QLineEdit*>();
        at->setFocus();
        const QSignalSpy finished(&dialog, &QDialog::finished);
        QTest::keyClick(at, static_cast<Qt::Key>(key));
        QCOMPARE(finished.size(), 1);
        QTEST(finished.first().first().toInt(), "result");
        QCOMPARE(dialog.chosenTable(), std::optional(302));
    }

    void aDoubleClickTakesARow()
    {
        CodeTableDialog dialog(someTables(), 7, nullptr);
        dialog.show();
        auto* list = dialog.findChild<QTreeWidget*>();
        const QPoint place = list->visualItemRect(list->topLevelItem(1)).center();
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, place);
        QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, place);
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QCOMPARE(dialog.chosenTable(), std::optional(45));
    }
};

TAVRIN_TEST_MAIN(tst_CodeTables)
#include "tst_CodeTables.moc"
