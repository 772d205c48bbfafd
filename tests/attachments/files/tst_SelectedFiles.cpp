#include "attachments/files/SelectedFiles.h"
#include "support/TestCase.h"

using namespace Qt::StringLiterals;
using namespace tavrin;

/// What a file dialog answers.
class tst_SelectedFiles : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theAnswerIsSplitAtTheCharactersOfCode0_data()
    {
        QTest::addColumn<QStringList>("parts");
        QTest::addColumn<QStringList>("files");
        QTest::newRow("nothing") << QStringList() << QStringList();
        QTest::newRow("one full path")
            << QStringList{u"/home/a/Report.pdf"_s} << QStringList{u"/home/a/Report.pdf"_s};
        QTest::newRow("a folder and one name")
            << QStringList{u"/home/a"_s, u"x.pdf"_s} << QStringList{u"/home/a/x.pdf"_s};
        QTest::newRow("in the given order")
            << QStringList{u"/home/a"_s, u"z.pdf"_s, u"a b.png"_s, u"m"_s}
            << QStringList{u"/home/a/z.pdf"_s, u"/home/a/a b.png"_s, u"/home/a/m"_s};
        QTest::newRow("the root") << QStringList{u"/"_s, u"x"_s, u"y"_s} << QStringList{u"/x"_s, u"/y"_s};
        QTest::newRow("one separator") << QStringList{u"/home/a/"_s, u"x"_s} << QStringList{u"/home/a/x"_s};
    }
    void theAnswerIsSplitAtTheCharactersOfCode0()
    {
        QFETCH(QStringList, parts);
        QFETCH(QStringList, files);
        QCOMPARE(ParseSelectedFiles(parts.join(QChar(u'\0'))), files);
    }

    void theFilesOfADialogComeBackFromItsAnswer_data()
    {
        QTest::addColumn<QStringList>("files");
        QTest::newRow("none") << QStringList();
        QTest::newRow("one") << QStringList{u"/home/a/x.pdf"_s};
        QTest::newRow("three") << QStringList{u"/home/a/x.pdf"_s, u"/home/a/ b"_s, u"/home/a/\u00E4.png"_s};
        QTest::newRow("of the root") << QStringList{u"/x"_s, u"/y"_s};
    }
    void theFilesOfADialogComeBackFromItsAnswer()
    {
        QFETCH(QStringList, files);
        QCOMPARE(ParseSelectedFiles(selectedFilesText(files)), files);
    }

    void theAnswerNamesTheFolderOnce()
    {
        QCOMPARE(selectedFilesText({u"/a/x"_s, u"/a/y"_s}),
                 QStringList({u"/a"_s, u"x"_s, u"y"_s}).join(QChar(u'\0')));
    }
};

TAVRIN_TEST_MAIN(tst_SelectedFiles)
#include "tst_SelectedFiles.moc"
