#include "component/ClassRegister.h"
#include "frame/control_frame/PropertyBag.h"
#include "spell/SpellcheckStage.h"

#include <QMetaClassInfo>

#include <thread>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

using Stage = SpellcheckStage;

QStringList traced;

/// What is printed meanwhile.
template <typename Action>
QStringList tracedDuring(Action action)
{
    traced.clear();
    const QtMessageHandler before = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext&, const QString& text) { traced << text; });
    const auto restore = qScopeGuard([before] { qInstallMessageHandler(before); });
    action();
    return traced;
}

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

    void theDeveloperIsToldOfTheFirstUseAndThePersonIsNot()
    {
        Stage stage;
        stage.script();
        const auto first = stage.newControl();
        const auto second = stage.newControl();
        const QStringList lines = tracedDuring([&] {
            first->CheckSpellingWithResult(stage.line);
            first->CheckSpellingWithResult(stage.line);
            second->CheckSpellingWithResult(stage.line);
        });
#ifdef TAVRIN_TRACE
        QCOMPARE(lines, QStringList({u"Syncing custom dictionary (first instance)"_s,
                                     u"Not syncing custom dictionary (instance #2)"_s}));
#else
        QCOMPARE(lines, QStringList());
#endif
        QVERIFY(stage.boxes.shown().isEmpty());
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
};

TAVRIN_TEST_MAIN(tst_TavrinSpellcheck)
#include "tst_TavrinSpellcheck.moc"
