#include "spell/SpellcheckStage.h"

using namespace tavrin;
using namespace tavrin::test;

namespace {

/// A host's own text box without a way to take the focus, or with one that fails.
class BoxWithoutFocus : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QWidget* hWnd READ hWnd)
    Q_PROPERTY(int SelStart MEMBER start)
    Q_PROPERTY(int SelLength MEMBER length)

public:
    QWidget* hWnd() const { return box; }

    QWidget* box = nullptr;
    int start = 3;
    int length = 4;
};

} // namespace

/// The files of the workstation while several controls and programs use them.
class tst_SpellingFiles : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aWordAddedInOneFormIsKnownInAnotherThatWasUsedBefore()
    {
        SpellcheckStage stage;
        QVERIFY(stage.show());
        const auto control = stage.newControl();
        const auto other = stage.newControl();
        QVERIFY(other->CheckSpellingWithResult(stage.line)); // it has its own copy of the words now
        stage.line->SetText(u"Qxzville"_s);
        {
            const Person person({Person::click("cmdAdd")});
            QVERIFY(control->CheckSpellingWithResult(stage.line));
            QVERIFY(person.isDone());
        }
        const Person nobody({});
        QVERIFY(other->CheckSpellingWithResult(stage.line));
        QVERIFY(!nobody.came());
    }

    void undoLeavesAWordThatAnotherFormHadAdded()
    {
        SpellcheckStage stage;
        QVERIFY(stage.show());
        const auto control = stage.newControl();
        const auto other = stage.newControl();
        stage.line->SetText(u"Qxzville sayd"_s);
        stage.area->SetText(u"Qxzville sayd"_s);
        {
            const Person person({[&](const Dialog& dialog) {
                                     // A second workbench of this workstation is quicker.
                                     putFile(stage.folder.custom(), "Qxzville\n");
                                     dialog.click("cmdAdd");
                                     return true;
                                 },
                                 Person::click("cmdUndo"), Person::click("cmdIgnore")});
            QVERIFY(other->CheckSpellingWithResult(stage.line));
            QVERIFY(person.isDone());
        }
        QCOMPARE(stage.folder.customWords(), QByteArray("Qxzville\n"));
        const Person next({Person::click("cmdIgnore")}); // at "sayd" alone
        QVERIFY(control->CheckSpellingWithResult(stage.area));
        QVERIFY(next.isDone());
    }

    void wordsThatAreGoneFromTheFileAreAskedAboutAgain()
    {
        SpellcheckStage stage;
        QVERIFY(stage.show());
        putFile(stage.folder.custom(), "Qxzville\n");
        const auto control = stage.newControl();
        stage.line->SetText(u"Qxzville"_s);
        QVERIFY(control->CheckSpellingWithResult(stage.line));
        putFile(stage.folder.custom(), "");
        const Person person({Person::click("cmdIgnore")});
        QVERIFY(control->CheckSpellingWithResult(stage.line));
        QVERIFY(person.isDone());
    }

    void aFileThatGoesBadBetweenTwoChecksStopsNoCheck_data()
    {
        QTest::addColumn<bool>("isGone");
        QTest::newRow("gone") << true;
        QTest::newRow("binary") << false;
    }
    void aFileThatGoesBadBetweenTwoChecksStopsNoCheck()
    {
        QFETCH(bool, isGone);
        SpellcheckStage stage;
        QVERIFY(stage.show());
        const auto control = stage.newControl();
        QVERIFY(control->CheckSpellingWithResult(stage.line));
        const QByteArray binary("\0\1\xFF", 3);
        if (isGone)
            QVERIFY(QFile::remove(stage.folder.custom()));
        else
            putFile(stage.folder.custom(), binary);
        stage.line->SetText(u"Qxzville"_s);
        QString message;
        const Person person({Person::click("cmdAdd"), [&](const Dialog& dialog) {
                                 message = dialog.message().remove(QChar(0x200B));
                                 dialog.click("cmdIgnore");
                                 return true;
                             }});
        QVERIFY(control->CheckSpellingWithResult(stage.line));
        QVERIFY(person.isDone());
        QCOMPARE(message, isGone ? u"The file %1 could not be written: No such file or directory"_s.arg(
                                       stage.folder.custom())
                                 : u"The file %1 is no text"_s.arg(stage.folder.custom()));
        QCOMPARE(stage.boxes.texts(), QStringList());
        QCOMPARE(stage.host.state().addedWords, QStringList());
        if (!isGone)
            QCOMPARE(stage.folder.customWords(), binary); // nothing is written behind what is no text
    }

    void aHostThatNamesNoFolderHasNoFilesInTheWorkingOne()
    {
        SpellcheckStage stage;
        stage.host.state().dictionaryFolder.clear();
        const QTemporaryDir working;
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(working.path()));
        putFile(working.filePath(u"vssp_ae.dct"_s), supportFile());
        const auto control = stage.newControl();
        const bool result = control->CheckSpellingWithResult(stage.line);
        QVERIFY(QDir::setCurrent(before));
        QVERIFY(!result);
        const QString reason = u"The host names no folder for the spelling dictionaries"_s;
        QCOMPARE(stage.boxes.texts(),
                 QStringList({u"Error synchronizing custom spell-check dictionary from database: "_s + reason,
                              reason + u"\r\n\r\n"_s + LoadText, CannotText}));
        QVERIFY(!QFile::exists(working.filePath(u"custom.dic"_s)));
    }

    void anObjectThatCannotTakeTheFocusIsStillChecked()
    {
        SpellcheckStage stage;
        QVERIFY(stage.show());
        const auto control = stage.newControl();
        stage.line->SetText(u"teh end"_s);
        BoxWithoutFocus box;
        box.box = stage.line;
        const Person person({Person::click("cmdIgnore")});
        QVERIFY(control->CheckSpellingWithResult(&box));
        QVERIFY(person.isDone());
        QCOMPARE(stage.boxes.texts(), QStringList());
        QCOMPARE(box.start, 0);
        QCOMPARE(box.length, 0);
    }

    void whenTheFileIsLeftOutTheCheckRunsAndNoWordCanBeAdded()
    {
        SpellcheckStage stage;
        QVERIFY(stage.show());
        const auto control = stage.newControl();
        QVERIFY(control->CheckSpellingWithResult(stage.line));
        // The engine lets go of the file, and then the host cannot name it.
        stage.host.state().failures.emplace(u"GetDictionaryFolder"_s, Error(u"no folder"_s));
        control->SyncCustomDictionary();
        QCOMPARE(stage.boxes.take().size(), 1);
        stage.line->SetText(u"Qxzville"_s);
        QString message;
        const Person person({Person::click("cmdAdd"), [&](const Dialog& dialog) {
                                 message = dialog.message();
                                 dialog.click("cmdIgnore");
                                 return true;
                             }});
        QVERIFY(control->CheckSpellingWithResult(stage.line));
        QVERIFY(person.isDone());
        QCOMPARE(message, u"No custom dictionary is open"_s);
        QCOMPARE(stage.host.state().addedWords, QStringList());
        QCOMPARE(stage.boxes.texts(), QStringList());
    }
};

TAVRIN_TEST_MAIN(tst_SpellingFiles)
#include "tst_SpellingFiles.moc"
