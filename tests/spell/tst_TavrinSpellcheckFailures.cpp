#include "spell/SpellcheckStage.h"

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

using Stage = SpellcheckStage;

/// Something that is wrong at the workstation, and what the person sees of it.
struct Trouble
{
    const char* name;
    std::function<void(Stage&)> make;
    QStringList boxes; // of the first check; %1 is the folder
    bool isLoaded;     // whether there are dictionaries then
};

void putFolder(const QString& path)
{
    QVERIFY(QFile::remove(path));
    QVERIFY(QDir().mkdir(path));
}

void setMode(const QString& path, mode_t mode)
{
    QCOMPARE(::chmod(QFile::encodeName(path).constData(), mode), 0);
}

QByteArray withOneBitChanged(QByteArray content)
{
    content[400'000] = static_cast<char>(content.at(400'000) ^ 4);
    return content;
}

const QList<Trouble>& troubles()
{
    const QString rest = u"\r\n\r\n"_s + LoadText;
    const QString sync = u"Error synchronizing custom spell-check dictionary from database: "_s;
    const QString none = u"Could not find spell-checking dictionary file '%1/vssp_ae.dct'"_s + rest;
    const QString bad = u"The spelling dictionary %1/vssp_ae.dct cannot be used: "_s;
    const auto main = [](const QByteArray& content) {
        return [content](Stage& stage) { putFile(stage.folder.main(), content); };
    };
    const auto custom = [](const QByteArray& content) {
        return [content](Stage& stage) { putFile(stage.folder.custom(), content); };
    };
    static const QList<Trouble> list{
        {"no main dictionary",
         [](Stage& stage) { QVERIFY(QFile::remove(stage.folder.main())); },
         {none, CannotText},
         false},
        {"main dictionary a folder",
         [](Stage& stage) { putFolder(stage.folder.main()); },
         {none, CannotText},
         false},
        {"main dictionary empty", main({}), {bad + u"it is empty"_s + rest, CannotText}, false},
        {"main dictionary cut",
         main(supportFile().left(500'000)),
         {bad + u"its end is missing"_s + rest, CannotText},
         false},
        {"main dictionary binary",
         main(QByteArray("\0\1\xFF\xFE", 4).repeated(5000)),
         {bad + u"it is no spelling dictionary"_s + rest, CannotText},
         false},
        {"main dictionary damaged",
         main(withOneBitChanged(supportFile())),
         {bad + u"it is damaged"_s + rest, CannotText},
         false},
        {"custom words a folder",
         [](Stage& stage) { putFolder(stage.folder.custom()); },
         {sync + u"The file %1/custom.dic could not be read: it is no regular file"_s,
          u"The file %1/custom.dic could not be written: Is a directory"_s + rest, CannotText},
         false},
        {"no custom words", [](Stage& stage) { QVERIFY(QFile::remove(stage.folder.custom())); }, {}, true},
        {"custom words empty", custom({}), {}, true},
        {"custom words binary",
         custom(QByteArray("\0\1\xFF\xFE", 4).repeated(5000)),
         {sync + u"The file %1/custom.dic is no text"_s, u"The file %1/custom.dic is no text"_s + rest,
          CannotText},
         false},
        {"custom words cut in a character", custom("perpwalk\ncaf\xC3"), {}, true},
        {"custom words that are none",
         custom("teh/XYZ\nteh end\nteh\x01\n" + QByteArray(10'000, 'x') + "\n"),
         {},
         true},
        {"no database for the words",
         [](Stage& stage) {
             stage.host.state().failures.emplace(u"SyncCustomDictionaryFile"_s, Error(u"no database"_s));
         },
         {sync + u"no database"_s},
         true},
        {"no newer dictionary",
         [](Stage& stage) {
             stage.host.state().failures.emplace(u"RefreshSupportFile vssp_ae.dct"_s, Error(u"no host"_s));
         },
         {},
         true},
    };
    return list;
}

} // namespace

class tst_TavrinSpellcheckFailures : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Failures

    void whatAFailureSays_data()
    {
        QTest::addColumn<QString>("hostFails");   // an operation of the host
        QTest::addColumn<QString>("engineFails"); // or one of the engine; %1 is the folder
        QTest::addColumn<QString>("text");
        QTest::addColumn<BoxButtons>("buttons");
        QTest::addColumn<bool>("result");
        const QString none;
        const QString sync = u"Error synchronizing custom spell-check dictionary from database: "_s;
        const QString unexpected = u"Unexpected error occurred during spell-check: "_s;
        const QString load = u"\r\n\r\n"_s + LoadText;
        QTest::newRow("no database") << u"SyncCustomDictionaryFile"_s << none << sync + u"no host"_s
                                     << BoxButtons::OkCancel << true;
        QTest::newRow("the engine keeps the file")
            << none << u"custom "_s << sync + u"no engine"_s << BoxButtons::OkCancel << true;
        QTest::newRow("no newer support file")
            << u"RefreshSupportFile vssp_ae.dct"_s << none << none << BoxButtons::Ok << true;
        QTest::newRow("main dictionary locked")
            << none << u"main %1/vssp_ae.dct"_s << u"no engine"_s + load << BoxButtons::Ok << false;
        QTest::newRow("no permissions")
            << u"HasPermission"_s << none << unexpected + u"no host"_s << BoxButtons::Ok << false;
        QTest::newRow("allow-add") << none << u"allow-add 1"_s << unexpected + u"no engine"_s
                                   << BoxButtons::Ok << false;
        QTest::newRow("show-dialog") << none << u"show-dialog 1"_s << unexpected + u"no engine"_s
                                     << BoxButtons::Ok << false;
        QTest::newRow("check") << none << u"check line"_s << unexpected + u"no engine"_s << BoxButtons::Ok
                               << false;
    }
    void whatAFailureSays()
    {
        QFETCH(QString, hostFails);
        QFETCH(QString, engineFails);
        QFETCH(QString, text);
        QFETCH(BoxButtons, buttons);
        QFETCH(bool, result);
        Stage stage;
        stage.script();
        const auto control = stage.newControl();
        if (!hostFails.isEmpty())
            stage.host.state().failures.emplace(hostFails, Error(u"no host"_s));
        if (!engineFails.isEmpty())
            stage.engine->failing = QString(engineFails).replace(u"%1"_s, stage.folder.path());
        stage.line->SetText(u"some text"_s);
        stage.line->setSelection(2, 3);
        const bool answer = control->CheckSpellingWithResult(stage.line);
        QCOMPARE(answer, result);
        if (!text.isEmpty()) {
            compareBox(stage.boxes.shown().value(0), text, BoxIcon::Critical, u"Error"_s, buttons);
            QCOMPARE(stage.line->selectedText(), result ? QString() : u"me "_s);
        }
        const bool cannot = text.endsWith(LoadText);
        QCOMPARE(stage.boxes.shown().size(), (text.isEmpty() ? 0 : 1) + (cannot ? 1 : 0));
        if (cannot)
            compareBox(stage.boxes.shown().last(), CannotText, BoxIcon::Critical, u"Error"_s, BoxButtons::Ok);
    }

    void whatIsWrongAtTheWorkstationIsToldAndTheControlStaysUsable_data()
    {
        QTest::addColumn<qsizetype>("row");
        for (qsizetype i = 0; i < troubles().size(); ++i)
            QTest::newRow(troubles()[i].name) << i;
    }
    void whatIsWrongAtTheWorkstationIsToldAndTheControlStaysUsable()
    {
        QFETCH(qsizetype, row);
        const Trouble& trouble = troubles()[row];
        Stage stage;
        QVERIFY(stage.show());
        const auto control = stage.newControl();
        trouble.make(stage);
        stage.line->SetText(u"teh end"_s);
        stage.line->setSelection(2, 3);
        const auto check = [&](TavrinSpellcheck& checking) {
            stage.boxes.take();
            const Person person({Person::click("cmdIgnore")});
            checking.CheckSpelling(stage.line);
            return person.isDone();
        };

        QCOMPARE(check(*control), trouble.isLoaded);
        QStringList expected = trouble.boxes;
        expected.replaceInStrings(u"%1"_s, stage.folder.path());
        QCOMPARE(stage.boxes.texts(), expected + QStringList(CompleteText));
        for (const ShownBox& box : stage.boxes.shown()) {
            const bool isSync = box.text.startsWith(u"Error synchronizing"_s);
            if (box.text != CompleteText)
                compareBox(box, box.text, BoxIcon::Critical, u"Error"_s,
                           isSync ? BoxButtons::OkCancel : BoxButtons::Ok);
        }
        QCOMPARE(stage.line->Text(), u"teh end"_s);
        QCOMPARE(stage.line->selectedText(), trouble.isLoaded ? QString() : u"h e"_s);

        // The same control again: a failed load is final, all else is forgotten.
        QCOMPARE(check(*control), trouble.isLoaded);
        QStringList again{CompleteText};
        if (!trouble.isLoaded)
            again.prepend(CannotText);
        QCOMPARE(stage.boxes.texts(), again);

        // What is mended serves the next control, and the words that are brought anew.
        for (const QString& path : {stage.folder.main(), stage.folder.custom()})
            QDir(path).removeRecursively();
        putFile(stage.folder.main(), supportFile());
        putFile(stage.folder.custom(), {});
        stage.host.state().failures.clear();
        stage.boxes.take();
        control->SyncCustomDictionary();
        QVERIFY(stage.boxes.shown().isEmpty());
        QCOMPARE(check(*control), trouble.isLoaded);
        const auto another = stage.newControl();
        QVERIFY(check(*another));
        QCOMPARE(stage.boxes.texts(), QStringList(CompleteText));
    }

    void filesThatOneMayNotReadOrWriteAreTold_data()
    {
        QTest::addColumn<QString>("closed"); // what nobody may read, or into which nobody may write
        QTest::addColumn<QStringList>("boxes");
        const QString denied = u"Permission denied"_s;
        const QString rest = u"\r\n\r\n"_s + LoadText;
        const QString custom = u"The file %1/custom.dic could not be "_s;
        const QString sync = u"Error synchronizing custom spell-check dictionary from database: "_s;
        QTest::newRow("main dictionary")
            << u"vssp_ae.dct"_s
            << QStringList({u"The file %1/vssp_ae.dct could not be read: "_s + denied + rest, CannotText});
        QTest::newRow("custom words") << u"custom.dic"_s
                                      << QStringList({sync + custom + u"read: "_s + denied,
                                                      custom + u"read: "_s + denied + rest, CannotText});
        QTest::newRow("folder without custom words")
            << QString() << QStringList({custom + u"written: "_s + denied + rest, CannotText});
    }
    void filesThatOneMayNotReadOrWriteAreTold()
    {
        QFETCH(QString, closed);
        QFETCH(QStringList, boxes);
        Stage stage;
        const auto control = stage.newControl();
        const QString folder = stage.folder.path();
        if (closed.isEmpty())
            QVERIFY(QFile::remove(stage.folder.custom()));
        else
            setMode(QDir(folder).filePath(closed), 0);
        setMode(folder, 0555);
        const QString seen = asNobody([&] {
            const bool result = control->CheckSpellingWithResult(stage.line);
            return stage.boxes.texts().join(u'|') + (result ? u"|checked"_s : QString());
        });
        setMode(folder, 0755);
        boxes.replaceInStrings(u"%1"_s, folder);
        QCOMPARE(seen.split(u'|'), boxes);
    }

    void aReadOnlyFolderWithBothFilesIsEnoughToCheck()
    {
        Stage stage;
        const auto control = stage.newControl();
        stage.line->SetText(u"The end"_s);
        setMode(stage.folder.path(), 0555);
        const QString seen = asNobody([&] {
            const bool result = control->CheckSpellingWithResult(stage.line);
            return stage.boxes.texts().join(u'|') + (result ? u"checked"_s : QString());
        });
        setMode(stage.folder.path(), 0755);
        QCOMPARE(seen, u"checked"_s);
    }

    void whateverIsAnsweredToAFailedSynchronisationTheCheckGoesOn()
    {
        for (const BoxAnswer answer : {BoxAnswer::Ok, BoxAnswer::Cancel}) {
            Stage stage;
            stage.script();
            const auto control = stage.newControl();
            stage.host.state().failures.emplace(u"SyncCustomDictionaryFile"_s, Error(u"no host"_s));
            stage.boxes.answerWith({answer});
            QVERIFY(control->CheckSpellingWithResult(stage.line));
            QVERIFY(stage.log().contains(u"check line"_s));
            QVERIFY(!stage.log().contains(u"custom "_s)); // the file was not let go of
        }
    }

    void aSynchronisationThatFailsHalfWayLeavesTheEngineWithoutTheFile()
    {
        Stage stage;
        stage.script();
        const auto control = stage.newControl();
        stage.host.state().failures.emplace(u"GetDictionaryFolder"_s, Error(u"no folder"_s));
        control->SyncCustomDictionary();
        QCOMPARE(stage.log(),
                 QStringList({u"SyncCustomDictionaryFile"_s, u"custom "_s, u"GetDictionaryFolder"_s}));
        compareBox(stage.boxes.shown().value(0),
                   u"Error synchronizing custom spell-check dictionary from database: no folder"_s,
                   BoxIcon::Critical, u"Error"_s, BoxButtons::OkCancel);
    }

    void aFailedLoadIsNotTriedAgain()
    {
        Stage stage;
        stage.script();
        const auto control = stage.newControl();
        QVERIFY(QFile::remove(stage.folder.main()));
        QVERIFY(!control->CheckSpellingWithResult(stage.line));
        putFile(stage.folder.main(), supportFile());
        stage.boxes.take();
        stage.log().clear();
        QVERIFY(!control->CheckSpellingWithResult(stage.line));
        QCOMPARE(stage.boxes.texts(), QStringList(CannotText));
        QVERIFY(stage.log().isEmpty());
        const auto another = stage.newControl();
        QVERIFY(another->CheckSpellingWithResult(stage.line)); // a new instance loads for itself
    }

    void aMissingDictionaryHasTheNumberOfTheHost()
    {
        Stage stage;
        stage.script();
        const auto control = stage.newControl();
        QVERIFY(QFile::remove(stage.folder.main()));
        control->CheckSpellingWithResult(stage.line);
        QVERIFY(stage.host.state().given.contains(u"GetErrorNumber 5"_s));
    }

    void aWordThatTheDatabaseRefusesIsToldAndTheEngineGoesOn()
    {
        Stage stage;
        stage.script();
        const auto control = stage.newControl();
        stage.host.state().failures.emplace(u"AddWord"_s, Error(u"no database"_s));
        bool wentOn = false;
        stage.engine->during = [&](ScriptedEngine& engine) {
            engine.text = u"a Qxzville"_s;
            engine.start = 2;
            engine.length = 8;
            int code = 5;
            engine.UserAction.raise(code);
            QCOMPARE(code, 5);
            wentOn = true;
        };
        QVERIFY(control->CheckSpellingWithResult(stage.line));
        QVERIFY(wentOn);
        QCOMPARE(stage.boxes.shown().size(), 1);
        compareBox(stage.boxes.shown()[0], u"Error adding word to database: no database"_s, BoxIcon::Critical,
                   u"Error"_s, BoxButtons::OkCancel);
    }

    void withoutTheMainDictionaryACheckGivesThreeBoxes()
    {
        Stage stage;
        QVERIFY(QFile::remove(stage.folder.main()));
        const auto control = stage.newControl();
        stage.line->SetText(u"teh end"_s);
        control->CheckSpelling(stage.line);
        const auto& shown = stage.boxes.shown();
        QCOMPARE(shown.size(), 3);
        compareBox(shown[0],
                   u"Could not find spell-checking dictionary file '"_s + stage.folder.main() +
                       u"'\r\n\r\n"_s + LoadText,
                   BoxIcon::Critical, u"Error"_s, BoxButtons::Ok);
        compareBox(shown[1], CannotText, BoxIcon::Critical, u"Error"_s, BoxButtons::Ok);
        compareBox(shown[2], CompleteText, BoxIcon::Information, u"Spell Check"_s, BoxButtons::Ok);
    }

    void aFileThatCannotBeReadGivesTheBoxOfTheLoad_data()
    {
        QTest::addColumn<QString>("file");
        QTest::newRow("main") << u"vssp_ae.dct"_s;
        QTest::newRow("custom") << u"custom.dic"_s;
    }
    void aFileThatCannotBeReadGivesTheBoxOfTheLoad()
    {
        QFETCH(QString, file);
        Stage stage;
        const QString path = QDir(stage.folder.path()).filePath(file);
        if (file == u"vssp_ae.dct"_s) {
            putFile(path, supportFile().left(1000)); // cut off
        } else {
            QVERIFY(QFile::remove(path));
            QVERIFY(QDir().mkdir(path)); // neither read nor written
            modInstanceCounter::InstanceCount = 1;
        }
        const auto control = stage.newControl();
        QVERIFY(!control->CheckSpellingWithResult(stage.line));
        QCOMPARE(stage.boxes.shown().size(), 2);
        const QString text = stage.boxes.shown()[0].text;
        QVERIFY2(text.endsWith(u"\r\n\r\n"_s + LoadText), qPrintable(text));
        QVERIFY2(text.contains(file), qPrintable(text));
        QCOMPARE(stage.boxes.shown()[1].text, CannotText);
    }
};

TAVRIN_TEST_MAIN(tst_TavrinSpellcheckFailures)
#include "tst_TavrinSpellcheckFailures.moc"
