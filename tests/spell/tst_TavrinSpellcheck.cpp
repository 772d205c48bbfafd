#include "component/ClassRegister.h"
#include "frame/control_frame/PropertyBag.h"
#include "frame/host_contracts/Host.h"
#include "spell/HunspellEngine.h"
#include "spell/SpellingStage.h"
#include "spell/TavrinSpellcheck.h"
#include "spell/modInstanceCounter.h"
#include "support/FakeDesktop.h"
#include "support/FakeHost.h"
#include "support/Unhandled.h"
#include "widgets/TextArea.h"

#include <QLineEdit>
#include <QMetaClassInfo>
#include <QVBoxLayout>

#include <thread>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

const QString LoadText =
    u"There was a problem loading the spell-check dictionary. The file may be missing or "
    u"locked by another application or user."_s;
const QString CannotText = u"Cannot perform spell-checking because the spell-checker did not load properly. "
                           u"Try restarting the application."_s;
const QString CompleteText = u"Spell check complete."_s;

/// An engine that notes what it is told, and ends its checks as it is told.
class ScriptedEngine final : public SpellingEngine
{
public:
    explicit ScriptedEngine(FakeHostState& state)
        : m_state(state)
    {
    }

    void SetMainDictionaryPath(const QString& path) override { note(u"main "_s + path); }
    void SetCustomDictionaryPath(const QString& path) override { note(u"custom "_s + path); }
    void SetAllowAdd(bool allow) override { note(u"allow-add "_s + QString::number(allow)); }
    void SetShowDialog(bool show) override { note(u"show-dialog "_s + QString::number(show)); }
    void CheckWindow(QWidget* textBox) override
    {
        note(u"check "_s + textBox->objectName());
        if (during)
            during(*this);
        if (ends)
            CheckEnded.raise(*ends);
    }
    QString CheckedText() const override { return text; }
    qsizetype BadWordStart() const override { return start; }
    qsizetype BadWordLength() const override { return length; }

    std::function<void(ScriptedEngine&)> during;
    std::optional<int> ends = 0;
    QString text;
    qsizetype start = 0;
    qsizetype length = 0;
    /// The operation that raises, as it is noted.
    QString failing;

private:
    void note(const QString& operation)
    {
        m_state.log << operation;
        if (operation == failing)
            throw Error(u"no engine"_s);
    }

    FakeHostState& m_state;
};

/// A form with text boxes and spell-check controls, before a host and boxes that answer by themselves.
struct Stage
{
    Stage()
        : installation(host)
    {
        modInstanceCounter::InstanceCount = 0;
        host.state().dictionaryFolder = folder.path();
        host.state().permissions << u"_Global/1"_s;
        auto* layout = new QVBoxLayout(&window);
        line = new TextBox(&window);
        line->setObjectName(u"line"_s);
        area = new TextArea(&window);
        area->setObjectName(u"area"_s);
        layout->addWidget(line);
        layout->addWidget(area);
    }
    ~Stage() { spellingEngineFactory() = before; }

    /// From now on controls get a scripted engine.
    void script()
    {
        spellingEngineFactory() = [this] {
            auto made = std::make_unique<ScriptedEngine>(host.state());
            engine = made.get();
            return made;
        };
    }
    std::unique_ptr<TavrinSpellcheck> newControl() { return std::make_unique<TavrinSpellcheck>(&window); }
    bool show()
    {
        window.show();
        window.activateWindow();
        return QTest::qWaitForWindowActive(&window);
    }
    QStringList& log() { return host.state().log; }
    qsizetype syncs() { return log().count(u"SyncCustomDictionaryFile"_s); }

    SpellingEngineFactory before = spellingEngineFactory();
    SpellingFolder folder;
    FakeHost host;
    HostInstallation installation;
    FakeMessageBoxes boxes;
    QWidget window;
    TextBox* line;
    TextArea* area;
    ScriptedEngine* engine = nullptr;
};

void compareBox(const ShownBox& box, const QString& text, BoxIcon icon, const QString& title,
                BoxButtons buttons)
{
    QCOMPARE(box.text, text);
    QCOMPARE(box.icon, icon);
    QCOMPARE(box.title, title);
    QCOMPARE(box.buttons, buttons);
}

/// What a host's own text box may be: it offers the members and nothing else.
class HostBox : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QWidget* hWnd READ hWnd)
    Q_PROPERTY(int SelStart READ SelStart WRITE SetSelStart)
    Q_PROPERTY(int SelLength READ SelLength WRITE SetSelLength)

public:
    QWidget* hWnd() const { return box; }
    int SelStart() const { return start; }
    void SetSelStart(int value)
    {
        start = value;
        calls << u"SelStart"_s;
    }
    int SelLength() const { return length; }
    void SetSelLength(int value)
    {
        length = value;
        calls << u"SelLength"_s;
    }
    Q_INVOKABLE void SetFocus() { calls << u"SetFocus"_s; }

    QWidget* box = nullptr;
    int start = 3;
    int length = 4;
    QStringList calls;
};

} // namespace

class tst_TavrinSpellcheck : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // The face

    void itIsAControlWithThreeOperations()
    {
        const QMetaObject& meta = TavrinSpellcheck::staticMetaObject;
        QCOMPARE(meta.propertyCount(), UserControl::staticMetaObject.propertyCount());
        QStringList members;
        for (int i = UserControl::staticMetaObject.methodCount(); i < meta.methodCount(); ++i)
            members << QString::fromLatin1(meta.method(i).name());
        QCOMPARE(members,
                 QStringList({u"CheckSpelling"_s, u"CheckSpellingWithResult"_s, u"SyncCustomDictionary"_s}));
        const auto told = [&meta](const char* name) {
            const int index = meta.indexOfClassInfo(name);
            return index < 0 ? QString() : QString::fromLatin1(meta.classInfo(index).value());
        };
        QCOMPARE(told("ClassName"), u"TVBoundControls.TavrinSpellcheck"_s);
        QCOMPARE(told("DefaultInterface"), u"_TavrinSpellcheck"_s);
        QCOMPARE(told("EventInterface"), QString());
    }

    void aFormMakesItByItsName()
    {
        const std::unique_ptr<UserControl> control(
            publicControls().create(u"TVBoundControls.TavrinSpellcheck"_s, nullptr, {}));
        QVERIFY(qobject_cast<TavrinSpellcheck*>(control.get()));
    }

    void itSavesNothing()
    {
        TavrinSpellcheck control;
        PropertyBag bag;
        control.WriteProperties(bag);
        QVERIFY(bag.entries().empty());
        control.ReadProperties(bag);
    }

    void itIs32By32PixelsWhateverTheHostAsksFor()
    {
        TavrinSpellcheck control;
        QCOMPARE(control.size(), QSize(32, 32));
        for (const QSize& given : {QSize(400, 300), QSize(10, 10), QSize(0, 0), QSize(32, 32)}) {
            control.resize(given);
            QCOMPARE(control.size(), QSize(32, 32));
            QCOMPARE(control.sizeHint(), QSize(32, 32));
        }
        QCOMPARE(control.Width(), 480.0F);
        QCOMPARE(control.Height(), 480.0F);
    }

    void itShowsItselfInTheDesignerOnly()
    {
        const auto colours = [](QWidget& control) {
            const QImage picture = control.grab().toImage();
            QSet<QRgb> seen;
            for (int y = 0; y < picture.height(); ++y) {
                for (int x = 0; x < picture.width(); ++x)
                    seen << picture.pixel(x, y);
            }
            return seen.size();
        };
        TavrinSpellcheck running;
        QCOMPARE(colours(running), 1);
        const DesignTime designer;
        TavrinSpellcheck designed;
        QVERIFY(colours(designed) > 10);
    }

    // The order of a check

    void aFirstCheckDoesItsStepsInOrder()
    {
        Stage stage;
        stage.script();
        const auto control = stage.newControl();
        QVERIFY(stage.log().isEmpty());
        QVERIFY(control->CheckSpellingWithResult(stage.line));
        const QString main = stage.folder.main();
        const QString custom = stage.folder.custom();
        QCOMPARE(stage.log(),
                 QStringList({u"SyncCustomDictionaryFile"_s, u"custom "_s, u"GetDictionaryFolder"_s,
                              u"custom "_s + custom, u"RefreshSupportFile vssp_ae.dct"_s,
                              u"GetDictionaryFolder"_s, u"main "_s + main, u"custom "_s + custom,
                              u"HasPermission"_s, u"allow-add 1"_s, u"show-dialog 1"_s, u"check line"_s}));
        QVERIFY(stage.boxes.shown().isEmpty());

        stage.log().clear();
        stage.host.state().permissions.clear();
        QVERIFY(control->CheckSpellingWithResult(stage.area));
        QCOMPARE(stage.log(),
                 QStringList({u"HasPermission"_s, u"allow-add 0"_s, u"show-dialog 1"_s, u"check area"_s}));
    }

    void theRightToAddWordsIsAskedForAtEachCheck()
    {
        Stage stage;
        stage.script();
        stage.host.state().permissions = {u"_Global/10"_s, u"Incident/1"_s};
        const auto control = stage.newControl();
        control->CheckSpellingWithResult(stage.line);
        QVERIFY(stage.log().contains(u"allow-add 0"_s));
        stage.host.state().permissions = {u"_Global/1"_s};
        control->CheckSpellingWithResult(stage.line);
        QVERIFY(stage.log().contains(u"allow-add 1"_s));
    }

    void theBoxHasTheFocusBeforeItIsChecked()
    {
        Stage stage;
        stage.script();
        QVERIFY(stage.show());
        stage.area->setFocus();
        const auto control = stage.newControl();
        bool hadFocus = false;
        stage.engine->during = [&](ScriptedEngine&) { hadFocus = stage.line->hasFocus(); };
        control->CheckSpellingWithResult(stage.line);
        QVERIFY(hadFocus);
    }

    void theAnswerIsTheLastVerdictOfTheEngine()
    {
        Stage stage;
        stage.script();
        const auto control = stage.newControl();
        const auto answer = [&](std::optional<int> ends) {
            stage.engine->ends = ends;
            return control->CheckSpellingWithResult(stage.line);
        };
        QVERIFY(!answer(std::nullopt)); // no verdict yet
        QVERIFY(answer(0));
        QVERIFY(answer(std::nullopt)); // the earlier verdict stays; this is meant
        QVERIFY(!answer(1));
        QVERIFY(!answer(std::nullopt));
        QVERIFY(answer(0));
        QVERIFY(!answer(-1));
    }

    void checkSpellingSaysThatItIsCompleteWhateverHappened_data()
    {
        QTest::addColumn<QString>("failing");
        QTest::addColumn<int>("ends");
        QTest::addColumn<qsizetype>("boxes");
        QTest::newRow("finished") << QString() << 0 << qsizetype(1);
        QTest::newRow("cancelled") << QString() << 1 << qsizetype(1);
        QTest::newRow("failed") << u"show-dialog 1"_s << 0 << qsizetype(2);
    }
    void checkSpellingSaysThatItIsCompleteWhateverHappened()
    {
        QFETCH(QString, failing);
        QFETCH(int, ends);
        QFETCH(qsizetype, boxes);
        Stage stage;
        stage.script();
        const auto control = stage.newControl();
        stage.engine->failing = failing;
        stage.engine->ends = ends;
        control->CheckSpelling(stage.line);
        QCOMPARE(stage.boxes.shown().size(), boxes);
        compareBox(stage.boxes.shown().last(), CompleteText, BoxIcon::Information, u"Spell Check"_s,
                   BoxButtons::Ok);
    }

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
        QVERIFY(stage.log().contains(u"GetErrorNumber"_s));
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

    // Words

    void onlyAction5AddsTheWordAtIssue_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<QStringList>("words");
        for (const int code : {-1, 0, 1, 4, 6})
            QTest::addRow("%d", code) << code << QStringList();
        QTest::newRow("5") << 5 << QStringList(u"Qxzville"_s);
    }
    void onlyAction5AddsTheWordAtIssue()
    {
        QFETCH(int, code);
        QFETCH(QStringList, words);
        Stage stage;
        stage.script();
        const auto control = stage.newControl();
        stage.engine->during = [code](ScriptedEngine& engine) {
            engine.text = u"In Qxzville it is"_s;
            engine.start = 3;
            engine.length = 8;
            int action = code;
            engine.UserAction.raise(action);
        };
        control->CheckSpellingWithResult(stage.line);
        QCOMPARE(stage.host.state().addedWords, words);
    }

    void aWordAtOffset0IsTakenFromTheFirstCharacter()
    {
        Stage stage;
        QVERIFY(stage.show());
        const auto control = stage.newControl();
        stage.line->SetText(u"Qxzville it is"_s);
        const Person person({Person::click("cmdAdd")});
        QVERIFY(control->CheckSpellingWithResult(stage.line));
        QVERIFY(person.isDone());
        QCOMPARE(stage.host.state().addedWords, QStringList(u"Qxzville"_s));
        QCOMPARE(stage.folder.customWords(), QByteArray("Qxzville\n"));
    }

    // The first use

    void onlyTheFirstControlThatIsUsedSynchronises()
    {
        Stage stage;
        const auto first = stage.newControl();
        const auto second = stage.newControl();
        QCOMPARE(modInstanceCounter::InstanceCount, 0); // nobody was used
        QVERIFY(first->CheckSpellingWithResult(stage.line));
        QCOMPARE(modInstanceCounter::InstanceCount, 1);
        QCOMPARE(stage.syncs(), 1);
        QVERIFY(second->CheckSpellingWithResult(stage.line));
        QVERIFY(first->CheckSpellingWithResult(stage.line));
        QCOMPARE(modInstanceCounter::InstanceCount, 2);
        QCOMPARE(stage.syncs(), 1);
    }

    void aControlThatIsNeverUsedDoesNotCount()
    {
        Stage stage;
        const auto unused = stage.newControl();
        {
            const auto died = stage.newControl();
        }
        const auto used = stage.newControl();
        QVERIFY(used->CheckSpellingWithResult(stage.line));
        QCOMPARE(stage.syncs(), 1);
        QCOMPARE(modInstanceCounter::InstanceCount, 1);
    }

    void theCountDoesNotGoDownWhenAControlDies()
    {
        Stage stage;
        stage.script();
        for (int i = 1; i <= 3; ++i) {
            const auto control = stage.newControl();
            QVERIFY(control->CheckSpellingWithResult(stage.line));
            QCOMPARE(modInstanceCounter::InstanceCount, i);
        }
        QCOMPARE(stage.syncs(), 1);
    }

    void eachThreadHasItsOwnCount()
    {
        modInstanceCounter::InstanceCount = 7;
        qint32 other = -1;
        std::thread([&] { other = modInstanceCounter::InstanceCount++; }).join();
        QCOMPARE(other, 0);
        QCOMPARE(modInstanceCounter::InstanceCount, 7);
    }

    void aHostThatSynchronisesItselfDoesNotSpareTheFirstCheckItsOwn()
    {
        Stage stage;
        const auto control = stage.newControl();
        control->SyncCustomDictionary();
        QCOMPARE(stage.syncs(), 1);
        QCOMPARE(modInstanceCounter::InstanceCount, 0);
        QVERIFY(control->CheckSpellingWithResult(stage.line));
        QCOMPARE(stage.syncs(), 2);
        QVERIFY(stage.boxes.shown().isEmpty());
    }

    void withoutCustomWordsTheFileIsMadeEmptyAndTheCheckRuns()
    {
        Stage stage;
        QVERIFY(stage.show());
        QVERIFY(QFile::remove(stage.folder.custom()));
        stage.host.state().failures.emplace(u"SyncCustomDictionaryFile"_s, Error(u"no host"_s));
        const auto control = stage.newControl();
        stage.line->SetText(u"teh end"_s);
        const Person person({Person::click("cmdIgnore")});
        QVERIFY(control->CheckSpellingWithResult(stage.line));
        QVERIFY(person.isDone());
        QVERIFY(QFile::exists(stage.folder.custom()));
        QCOMPARE(stage.folder.customWords(), QByteArray());
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

    // Checks with the real engine

    void aCheckGoesOverTheTextAndAnswersWhetherItWasFinished_data()
    {
        QTest::addColumn<QByteArray>("last"); // the button that ends it
        QTest::addColumn<bool>("finished");
        QTest::newRow("finished") << QByteArray("cmdIgnore") << true;
        QTest::newRow("cancelled") << QByteArray("cmdCancel") << false;
    }
    void aCheckGoesOverTheTextAndAnswersWhetherItWasFinished()
    {
        QFETCH(QByteArray, last);
        QFETCH(bool, finished);
        Stage stage;
        QVERIFY(stage.show());
        const auto control = stage.newControl();
        stage.area->SetText(u"teh driver\nsayd so"_s);
        const Person person({[](const Dialog& dialog) {
                                 dialog.changeTo()->SetText(u"the"_s);
                                 dialog.press(Qt::Key_Return);
                                 return true;
                             },
                             Person::click(last)});
        QCOMPARE(control->CheckSpellingWithResult(stage.area), finished);
        QVERIFY(person.isDone());
        QCOMPARE(stage.area->toPlainText(), u"the driver\nsayd so"_s);
        QVERIFY(stage.boxes.shown().isEmpty());
    }

    void withAllWordsRightNoDialogComes()
    {
        Stage stage;
        QVERIFY(stage.show());
        const auto control = stage.newControl();
        const Person person({});
        for (const QString& text : {QString(), u"The driver said so."_s}) {
            stage.line->SetText(text);
            QVERIFY(control->CheckSpellingWithResult(stage.line));
        }
        QVERIFY(!person.came());
    }

    void afterACheckTheCaretStandsAtTheStartWithNothingSelected_data()
    {
        QTest::addColumn<QByteArray>("button");
        QTest::newRow("finished") << QByteArray("cmdIgnore");
        QTest::newRow("cancelled") << QByteArray("cmdCancel");
    }
    void afterACheckTheCaretStandsAtTheStartWithNothingSelected()
    {
        QFETCH(QByteArray, button);
        Stage stage;
        QVERIFY(stage.show());
        const auto control = stage.newControl();
        QTextEdit rich(&stage.window);
        stage.line->SetText(u"The end sayd"_s);
        stage.area->SetText(u"The\nend sayd"_s);
        rich.setPlainText(u"The\nend sayd"_s);
        for (QWidget* box : {static_cast<QWidget*>(stage.line), static_cast<QWidget*>(stage.area),
                             static_cast<QWidget*>(&rich)}) {
            const Person person({Person::click(button)});
            control->CheckSpellingWithResult(box);
            QVERIFY(person.isDone());
        }
        QCOMPARE(stage.line->cursorPosition(), 0);
        QVERIFY(!stage.line->hasSelectedText());
        QCOMPARE(stage.area->textCursor().position(), 0);
        QVERIFY(!stage.area->textCursor().hasSelection());
        QCOMPARE(rich.textCursor().position(), 0);
        QVERIFY(!rich.textCursor().hasSelection());
    }

    void aBoxThatCannotTakeTheFocusIsStillChecked_data()
    {
        QTest::addColumn<bool>("enabled");
        QTest::addColumn<bool>("visible");
        QTest::newRow("disabled") << false << true;
        QTest::newRow("hidden") << true << false;
    }
    void aBoxThatCannotTakeTheFocusIsStillChecked()
    {
        QFETCH(bool, enabled);
        QFETCH(bool, visible);
        Stage stage;
        QVERIFY(stage.show());
        const auto control = stage.newControl();
        stage.line->SetText(u"teh end"_s);
        stage.line->setEnabled(enabled);
        stage.line->setVisible(visible);
        const Person person({Person::click("cmdIgnore")});
        QVERIFY(control->CheckSpellingWithResult(stage.line));
        QVERIFY(person.isDone());
        QVERIFY(!stage.line->hasFocus());
        QVERIFY(stage.boxes.shown().isEmpty());
    }

    void withoutTheRightThereIsNoWayToAddAWord()
    {
        Stage stage;
        QVERIFY(stage.show());
        stage.host.state().permissions.clear();
        const auto control = stage.newControl();
        stage.line->SetText(u"Qxzville"_s);
        bool offered = true;
        const Person person({[&](const Dialog& dialog) {
                                 offered = dialog.button("cmdAdd")->isVisible();
                                 return true;
                             },
                             Person::click("cmdIgnore")});
        QVERIFY(control->CheckSpellingWithResult(stage.line));
        QVERIFY(person.isDone());
        QVERIFY(!offered);
        QVERIFY(stage.host.state().addedWords.isEmpty());
    }

    void addedWordsReachTheDatabaseWhenTheCheckEndsAndThoseTakenBackDoNot_data()
    {
        QTest::addColumn<QByteArray>("last");
        QTest::newRow("finished") << QByteArray("cmdIgnore");
        QTest::newRow("cancelled") << QByteArray("cmdCancel");
    }
    void addedWordsReachTheDatabaseWhenTheCheckEndsAndThoseTakenBackDoNot()
    {
        QFETCH(QByteArray, last);
        Stage stage;
        QVERIFY(stage.show());
        const auto control = stage.newControl();
        stage.area->SetText(u"teh Qxzville and Bqvton sayd"_s);
        QStringList told;
        const Person person({Person::click("cmdChange"), Person::click("cmdAdd"), Person::click("cmdAdd"),
                             Person::click("cmdUndo"), Person::click("cmdIgnore"), [&](const Dialog& dialog) {
                                 told = stage.host.state().addedWords; // nobody was told yet
                                 dialog.click(last);
                                 return true;
                             }});
        control->CheckSpellingWithResult(stage.area);
        QVERIFY(person.isDone());
        QCOMPARE(told, QStringList());
        QCOMPARE(stage.host.state().addedWords, QStringList(u"Qxzville"_s));
        QCOMPARE(stage.folder.customWords(), QByteArray("Qxzville\n"));
    }

    void anAddedWordIsKnownAtOnceOnThisWorkstation()
    {
        Stage stage;
        QVERIFY(stage.show());
        const auto control = stage.newControl();
        stage.line->SetText(u"Qxzville"_s);
        {
            const Person person({Person::click("cmdAdd")});
            QVERIFY(control->CheckSpellingWithResult(stage.line));
        }
        const Person nobody({});
        QVERIFY(control->CheckSpellingWithResult(stage.line));
        const auto other = stage.newControl();
        QVERIFY(other->CheckSpellingWithResult(stage.line));
        QVERIFY(!nobody.came());
    }

    void anAddThatTheDatabaseRefusesIsInTheLocalFileOnly()
    {
        Stage stage;
        QVERIFY(stage.show());
        const auto control = stage.newControl();
        stage.line->SetText(u"Qxzville Bqvton"_s);
        stage.host.state().failures.emplace(u"AddWord"_s, Error(u"no database"_s));
        const Person person({Person::click("cmdAdd"), Person::click("cmdAdd")});
        QVERIFY(control->CheckSpellingWithResult(stage.line));
        QVERIFY(person.isDone());
        QCOMPARE(stage.boxes.texts(), QStringList({u"Error adding word to database: no database"_s,
                                                   u"Error adding word to database: no database"_s}));
        QCOMPARE(stage.folder.customWords(), QByteArray("Qxzville\nBqvton\n"));
    }

    void aSecondCheckWhileOneRunsIsRefused()
    {
        Stage stage;
        QVERIFY(stage.show());
        const auto control = stage.newControl();
        const auto other = stage.newControl();
        stage.line->SetText(u"teh end"_s);
        const Person person({[&](const Dialog&) {
                                 const bool same = control->CheckSpellingWithResult(stage.area);
                                 const bool sameBox = other->CheckSpellingWithResult(stage.line);
                                 return !same && !sameBox;
                             },
                             Person::click("cmdIgnore")});
        QVERIFY(control->CheckSpellingWithResult(stage.line));
        QVERIFY(person.isDone());
        const QString refused =
            u"Unexpected error occurred during spell-check: A spell check is already under way."_s;
        QCOMPARE(stage.boxes.texts(), QStringList({refused, refused}));
    }

    // Boxes of all kinds

    void anObjectThatOffersTheMembersIsChecked()
    {
        Stage stage;
        QVERIFY(stage.show());
        const auto control = stage.newControl();
        stage.line->SetText(u"teh end"_s);
        HostBox box;
        box.box = stage.line;
        const Person person({Person::click("cmdIgnore")});
        QVERIFY(control->CheckSpellingWithResult(&box));
        QVERIFY(person.isDone());
        QCOMPARE(box.calls, QStringList({u"SetFocus"_s, u"SelStart"_s, u"SelLength"_s}));
        QCOMPARE(box.start, 0);
        QCOMPARE(box.length, 0);
    }

    void anObjectThatOffersNothingIsAnUnexpectedError()
    {
        Stage stage;
        const auto control = stage.newControl();
        QObject object;
        QVERIFY(!control->CheckSpellingWithResult(&object));
        QVERIFY(!control->CheckSpellingWithResult(&stage.window));
        QVERIFY(!control->CheckSpellingWithResult(nullptr));
        const QString prefix = u"Unexpected error occurred during spell-check: "_s;
        const QString none = prefix + u"Object doesn't support this property or method"_s;
        QCOMPARE(stage.boxes.texts(), QStringList({none, none, prefix + u"There is no text box to check"_s}));
        for (const ShownBox& box : stage.boxes.shown())
            compareBox(box, box.text, BoxIcon::Critical, u"Error"_s, BoxButtons::Ok);
    }

    // Lives

    void aBoxThatDiesAbandonsTheCheck()
    {
        Stage stage;
        QVERIFY(stage.show());
        const auto control = stage.newControl();
        stage.line->SetText(u"Qxzville teh"_s);
        const Person person({Person::click("cmdAdd"), [&](const Dialog&) {
                                 delete stage.line;
                                 return true;
                             }});
        QVERIFY(!control->CheckSpellingWithResult(stage.line));
        QVERIFY(person.isDone());
        QVERIFY(stage.boxes.shown().isEmpty());
        QCOMPARE(stage.host.state().addedWords, QStringList(u"Qxzville"_s)); // it was added all the same
    }

    void aWindowThatDiesWithItsBoxAndTheControlEndsTheCheck()
    {
        Stage stage;
        auto* window = new QWidget;
        auto* box = new QLineEdit(u"teh end"_s, window);
        auto* control = new TavrinSpellcheck(window);
        window->show();
        const Person person({[&](const Dialog&) {
            delete window;
            return true;
        }});
        control->CheckSpelling(box);
        QVERIFY(person.isDone());
        QCOMPARE(stage.boxes.texts(), QStringList(CompleteText));
        QCOMPARE(stage.boxes.shown()[0].parent, nullptr);
    }

    void aControlThatDiesAloneEndsTheCheck()
    {
        Stage stage;
        QVERIFY(stage.show());
        auto* control = new TavrinSpellcheck(&stage.window);
        stage.line->SetText(u"teh end"_s);
        {
            const Person person({[&](const Dialog&) {
                delete control;
                return true;
            }});
            QVERIFY(!control->CheckSpellingWithResult(stage.line));
            QVERIFY(person.isDone());
        }
        QCOMPARE(stage.line->Text(), u"teh end"_s);
        const auto another = stage.newControl(); // the box is free again
        const Person next({Person::click("cmdIgnore")});
        QVERIFY(another->CheckSpellingWithResult(stage.line));
        QVERIFY(next.isDone());
    }

    void aVerdictMayEndTheControl()
    {
        Stage stage;
        stage.script();
        auto control = stage.newControl();
        stage.engine->during = [](ScriptedEngine&) {};
        const Subscription closing = stage.engine->CheckEnded.subscribe([&](int&) { control.reset(); });
        TavrinSpellcheck* checked = control.get();
        QVERIFY(!checked->CheckSpellingWithResult(stage.line));
        QVERIFY(!control);
    }
};

TAVRIN_TEST_MAIN(tst_TavrinSpellcheck)
#include "tst_TavrinSpellcheck.moc"
