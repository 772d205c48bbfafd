#include "spell/SpellcheckStage.h"

#include <QLineEdit>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

using Stage = SpellcheckStage;

constexpr qint64 NoPersonWaitsLonger = 60'000; // ms; only tells a hang from a busy machine

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

class tst_TavrinSpellcheckEngine : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
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

    void withoutCustomWordsTheFileIsMadeEmptyAndTheCheckRuns()
    {
        Stage stage;
        QVERIFY(stage.show());
        QVERIFY(QFile::remove(stage.folder.custom()));
        const auto control = stage.newControl();
        stage.line->SetText(u"teh end"_s);
        const Person person({Person::click("cmdIgnore")});
        QVERIFY(control->CheckSpellingWithResult(stage.line));
        QVERIFY(person.isDone());
        QCOMPARE(stage.boxes.texts(), QStringList());
        QVERIFY(QFile::exists(stage.folder.custom()));
        QCOMPARE(stage.folder.customWords(), QByteArray());
    }

    void aTextOf10MBIsCheckedAndStandsAsItWas()
    {
        Stage stage;
        QVERIFY(stage.show());
        const auto control = stage.newControl();
        const QString line = u"The driver of the van said that he had seen nothing at all.\n"_s;
        const QString text = line.repeated(10'000'000 / line.size() + 1);
        stage.area->SetText(text);
        QElapsedTimer timer;
        timer.start();
        const Person nobody({});
        QVERIFY(control->CheckSpellingWithResult(stage.area));
        QVERIFY2(timer.elapsed() < NoPersonWaitsLonger, QByteArray::number(timer.elapsed()).constData());
        QVERIFY(!nobody.came());
        QVERIFY(!QApplication::overrideCursor());
        QCOMPARE(stage.area->Text(), text);
        QVERIFY(!stage.area->document()->isUndoAvailable());
        QCOMPARE(stage.area->textCursor().position(), 0);
        QVERIFY(stage.area->hasFocus());
        QTest::keyClicks(stage.area, u"So: "_s); // which nobody has to wait for any more
        QCOMPARE(stage.area->toPlainText().left(8), u"So: The "_s);
    }

    void aWordAtTheEndOf10MBIsCorrectedAndTheBoxTakesItBack()
    {
        Stage stage;
        QVERIFY(stage.show());
        const auto control = stage.newControl();
        const QString line = u"The driver of the van said that he had seen nothing at all.\n"_s;
        const QString text = line.repeated(10'000'000 / line.size() + 1);
        stage.area->SetText(text + u"Teh end"_s);
        {
            const Person person({[](const Dialog& dialog) {
                dialog.changeTo()->SetText(u"The"_s);
                dialog.click("cmdChange");
                return true;
            }});
            QVERIFY(control->CheckSpellingWithResult(stage.area));
            QVERIFY(person.isDone());
        }
        QVERIFY(stage.area->toPlainText() == text + u"The end"_s);
        QTest::keyClick(stage.area, Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(stage.area->toPlainText() == text + u"Teh end"_s);
        stage.line->SetText(u"teh end"_s);
        const Person person({Person::click("cmdIgnore")});
        QVERIFY(control->CheckSpellingWithResult(stage.line)); // the control is as good as new
        QVERIFY(person.isDone());
    }

    void aFolderWithBlanksAndAccentsServes()
    {
        Stage stage;
        QVERIFY(stage.show());
        const QString folder = stage.folder.path() + u"/W\u00F6rterb\u00FCcher von Jos\u00E9"_s;
        QVERIFY(QDir().mkdir(folder));
        QVERIFY(QFile::rename(stage.folder.main(), folder + u"/vssp_ae.dct"_s));
        stage.host.state().dictionaryFolder = folder;
        modInstanceCounter::InstanceCount = 1; // so that the control itself makes the custom words' file
        const auto control = stage.newControl();
        stage.line->SetText(u"teh Qxzville"_s);
        const Person person({Person::click("cmdIgnore"), Person::click("cmdAdd")});
        QVERIFY(control->CheckSpellingWithResult(stage.line));
        QVERIFY(person.isDone());
        QVERIFY(stage.boxes.shown().isEmpty());
        QCOMPARE(bytesOf(folder + u"/custom.dic"_s), QByteArray("Qxzville\n"));
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

TAVRIN_TEST_MAIN(tst_TavrinSpellcheckEngine)
#include "tst_TavrinSpellcheckEngine.moc"
