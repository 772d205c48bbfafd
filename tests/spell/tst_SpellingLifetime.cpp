#include "spell/FormStage.h"

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

const QString SyncFailed = u"Error synchronizing custom spell-check dictionary from database: no host"_s;

} // namespace

/// Boxes, handlers and dialogs in which the control dies, alone or with its form.
class tst_SpellingLifetime : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theControlMayDieInTheBoxOfAFailedSynchronisation_data() { addEnds(); }
    void theControlMayDieInTheBoxOfAFailedSynchronisation()
    {
        QFETCH(bool, wholeForm);
        FormStage stage;
        stage.host.state().failures.emplace(u"SyncCustomDictionaryFile"_s, Error(u"no host"_s));
        stage.boxes.during([&] { stage.end(wholeForm); });
        QVERIFY(!stage.check());
        QCOMPARE(stage.boxes.texts(), QStringList(SyncFailed));
        QVERIFY(!stage.log().contains(u"GetDictionaryFolder"_s)); // nothing is loaded for a dead control
    }

    void theControlMayDieInTheBoxOfASynchronisationThatTheHostAskedFor_data() { addEnds(); }
    void theControlMayDieInTheBoxOfASynchronisationThatTheHostAskedFor()
    {
        QFETCH(bool, wholeForm);
        FormStage stage;
        stage.host.state().failures.emplace(u"SyncCustomDictionaryFile"_s, Error(u"no host"_s));
        stage.boxes.during([&] { stage.end(wholeForm); });
        stage.control->SyncCustomDictionary();
        QCOMPARE(stage.boxes.texts(), QStringList(SyncFailed));
    }

    void theControlMayDieInTheBoxOfAFailedLoad_data() { addEnds(); }
    void theControlMayDieInTheBoxOfAFailedLoad()
    {
        QFETCH(bool, wholeForm);
        FormStage stage;
        QVERIFY(QFile::remove(stage.folder.main()));
        stage.boxes.during([&] { stage.end(wholeForm); });
        QVERIFY(!stage.check());
        QCOMPARE(stage.boxes.texts().size(), 1); // and no second one from a dead control
        QVERIFY(!stage.control);
    }

    void theControlMayDieInTheBoxThatRefusesACheck_data() { addEnds(); }
    void theControlMayDieInTheBoxThatRefusesACheck()
    {
        QFETCH(bool, wholeForm);
        FormStage stage;
        QVERIFY(QFile::remove(stage.folder.main()));
        QVERIFY(!stage.check());
        stage.boxes.during([&] { stage.end(wholeForm); });
        QVERIFY(!stage.check());
        QCOMPARE(stage.boxes.texts().size(), 3);
        QVERIFY(!stage.control);
    }

    void theControlMayDieWhenTheBoxTakesTheFocus_data() { addEnds(); }
    void theControlMayDieWhenTheBoxTakesTheFocus()
    {
        QFETCH(bool, wholeForm);
        FormStage stage;
        QVERIFY(stage.show());
        // On a window of its own, since Qt does not let a box die while it takes the focus.
        QWidget second;
        stage.line->setParent(&second);
        QLineEdit before(&second);
        second.show();
        second.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&second));
        before.setFocus();
        stage.line->act = [&] { stage.end(wholeForm); };
        const Person nobody({});
        QVERIFY(!stage.check());
        QVERIFY(!stage.control);
        QVERIFY(!nobody.came());
        QVERIFY(!stage.log().contains(u"HasPermission"_s));
        QCOMPARE(stage.boxes.texts(), QStringList());
    }

    void theControlMayDieAtTheFirstMark()
    {
        FormStage stage;
        QVERIFY(stage.show());
        connect(stage.line, &QLineEdit::selectionChanged, stage.line, [&] {
            if (stage.line->selectedText() == u"Qxzville"_s)
                stage.end(false);
        });
        const Person nobody({});
        QVERIFY(!stage.check());
        QVERIFY(!stage.control);
        QVERIFY(!nobody.came());
        QCOMPARE(stage.boxes.texts(), QStringList());
    }

    void theControlMayDieAtALaterMark()
    {
        FormStage stage;
        QVERIFY(stage.show());
        connect(stage.line, &QLineEdit::selectionChanged, stage.line, [&] {
            if (stage.line->selectedText() == u"teh"_s)
                stage.end(false);
        });
        const Person person({Person::click("cmdIgnore")});
        QVERIFY(!stage.check());
        QVERIFY(!stage.control);
        QVERIFY(person.isDone());
    }
};

TAVRIN_TEST_MAIN(tst_SpellingLifetime)
#include "tst_SpellingLifetime.moc"
