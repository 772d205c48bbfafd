#include "designer/CodeTableDialog.h"
#include "designer/CodeTables.h"
#include "support/TestCase.h"

#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QRegularExpression>
#include <QTemporaryDir>

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
};

TAVRIN_TEST_MAIN(tst_CodeTables)
#include "tst_CodeTables.moc"
