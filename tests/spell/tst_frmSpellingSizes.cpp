#include "spell/DialogStage.h"

using namespace tavrin;
using namespace tavrin::test;

namespace {

QRect roomOf(const QLabel& label)
{
    return label.fontMetrics().boundingRect(QRect(0, 0, label.width(), QWIDGETSIZE_MAX), Qt::TextWordWrap,
                                            label.text());
}

} // namespace

/// Words and messages that are longer than the dialog has been made for.
class tst_frmSpellingSizes : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aWordThatIsTooLongIsShownCutAndNeverWrittenCut_data()
    {
        QTest::addColumn<int>("length");
        for (const int length : {201, 10'000, 100'000})
            QTest::addRow("%d", length) << length;
    }
    void aWordThatIsTooLongIsShownCutAndNeverWrittenCut()
    {
        QFETCH(int, length);
        const QString word(length, u'q');
        DialogStage stage(u"A "_s + word + u" end."_s);
        QVERIFY(stage.open());
        const Dialog dialog = stage.dialog();
        QVERIFY(dialog.marked().size() <= 200);
        QVERIFY(dialog.marked().contains(QChar(0x2026)));
        QCOMPARE(dialog.changeTo()->Text(), QString());
        QCOMPARE(dialog.changeTo()->placeholderText(), u"Too long to be shown"_s);
        QVERIFY(!dialog.button("cmdChange")->isEnabled());
        QVERIFY(dialog.part<QLabel>("lblSentence")->accessibleName().size() < 300);
        dialog.changeTo()->SetText(u"short"_s);
        dialog.click("cmdChange");
        QCOMPARE(stage.text(), u"A short end."_s);
    }

    void aWordThatIsShownWholeCanBeEdited()
    {
        const QString word(200, u'q');
        DialogStage stage(u"A "_s + word + u" end. teh"_s);
        QVERIFY(stage.open());
        const Dialog dialog = stage.dialog();
        QCOMPARE(dialog.marked(), word);
        QCOMPARE(dialog.changeTo()->Text(), word);
        QCOMPARE(dialog.changeTo()->placeholderText(), QString());
    }

    void aLongRefusalCanBeReadToItsEnd_data()
    {
        QTest::addColumn<QString>("word");
        QTest::addColumn<bool>("isFileGone");
        QTest::newRow("a long word") << QString(150, u'q') << false;
        QTest::newRow("a wide word") << QString(150, u'W') << false;
        QTest::newRow("a file that is gone") << u"Qxzville"_s << true;
    }
    void aLongRefusalCanBeReadToItsEnd()
    {
        QFETCH(QString, word);
        QFETCH(bool, isFileGone);
        DialogStage stage(word + u" teh"_s);
        QVERIFY(stage.open());
        const Dialog dialog = stage.dialog();
        const auto* label = dialog.part<QLabel>("lblMessage");
        const QSize before = label->size();
        const QPoint button = dialog.button("cmdIgnore")->pos();
        if (isFileGone)
            QVERIFY(QFile::remove(stage.folder.custom()));
        dialog.click("cmdAdd");
        QVERIFY(!dialog.message().isEmpty());
        QTRY_VERIFY(roomOf(*label).height() <= label->height());
        QVERIFY(roomOf(*label).width() <= label->width());
        QCOMPARE(label->width(), before.width());
        QCOMPARE(dialog.button("cmdIgnore")->pos(), button); // it stays below the mouse
        QTRY_VERIFY(stage.form->rect().contains(label->geometry()));
        dialog.click("cmdIgnore");
        QTRY_COMPARE(label->size(), before);
    }

    void aFileDeepInFoldersIsNamedWithinTheDialog()
    {
        DialogStage stage(u"Qxzville teh"_s);
        QVERIFY(stage.open());
        const QString deep = QDir(stage.folder.path()).filePath(QString(120, u'W') + u"/custom.dic"_s);
        QVERIFY(QDir().mkpath(QFileInfo(deep).path()));
        putFile(deep, {});
        spellerOf(stage.folder)->setCustomDictionary(deep);
        QVERIFY(QFile::remove(deep));
        const Dialog dialog = stage.dialog();
        dialog.click("cmdAdd");
        QCOMPARE(dialog.message().remove(QChar(0x200B)),
                 u"The file %1 could not be written: No such file or directory"_s.arg(deep));
        const auto* label = dialog.part<QLabel>("lblMessage");
        QTRY_VERIFY(roomOf(*label).height() <= label->height());
        QVERIFY(roomOf(*label).width() <= label->width());
    }
};

TAVRIN_TEST_MAIN(tst_frmSpellingSizes)
#include "tst_frmSpellingSizes.moc"
