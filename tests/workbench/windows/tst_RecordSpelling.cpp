#include "base/values/Variant.h"
#include "host/database/Statement.h"
#include "spell/SpellingStage.h"
#include "spell/modInstanceCounter.h"
#include "support/TestCase.h"
#include "widgets/boxes/TextArea.h"
#include "widgets/lists/ListView.h"
#include "workbench/Site.h"
#include "workbench/application/Theme.h"

#include <QListWidget>
#include <QPlainTextEdit>

#include <cmath>

using namespace tavrin;
using namespace tavrin::workbench;
using namespace tavrin::test;
using namespace Qt::StringLiterals;

namespace {

const QString CompleteText = u"Spell check complete."_s;

/// A site with an incident's window, in front of which a person asks for the spelling.
struct SpellingSite : Site
{
    SpellingSite() { modInstanceCounter::InstanceCount = 0; }

    QPlainTextEdit* narrative() const { return window->findChild<QPlainTextEdit*>(u"Narrative"_s); }
    TextArea* comment() const { return window->findChild<TextArea*>(u"txtComment"_s); }
    /// That of the page in front.
    QPushButton* button() const
    {
        for (QPushButton* button : window->findChildren<QPushButton*>(u"spelling"_s)) {
            if (button->isVisible())
                return button;
        }
        return nullptr;
    }
    void activate() const
    {
        window->activateWindow(); // a box may have been in front of it
        QVERIFY(QTest::qWaitForWindowActive(window));
    }
    void pressF7() const
    {
        activate();
        QTest::keyClick(window->windowHandle(), Qt::Key_F7);
    }
    void check(bool byKey) const
    {
        if (byKey)
            pressF7();
        else
            QTest::mouseClick(button(), Qt::LeftButton);
    }
    /// With a comment that can be typed into.
    void addFile()
    {
        putFile(folder.filePath(u"seen.txt"_s), "seen");
        dialogs.choose({folder.filePath(u"seen.txt"_s)});
        QTest::mouseClick(window->findChild<QWidget*>(u"lnkAddAttachments"_s), Qt::LeftButton);
        activate();
        auto* list = window->findChild<ListView*>(u"lvwFiles"_s);
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          list->visualRect(list->model()->index(0, 1)).center());
    }
    QStringList wordsInTheDatabase()
    {
        QStringList words;
        Statement select(workspace->database(), u"SELECT word FROM custom_word ORDER BY word"_s);
        select.run();
        while (select.next())
            words << select.text(0);
        return words;
    }

    FakeFileDialogs dialogs;
};

Person::Step changeTo(const QString& text)
{
    return [text](const Dialog& dialog) {
        dialog.changeTo()->SetText(text);
        dialog.click("cmdChange");
        return true;
    };
}

void addWays()
{
    QTest::addColumn<bool>("byKey");
    QTest::newRow("F7") << true;
    QTest::newRow("button") << false;
}

/// How far two colours stand apart, from 1 to 21.
double contrast(const QColor& one, const QColor& other)
{
    const auto luminance = [](const QColor& color) {
        const auto part = [](double value) {
            return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * part(color.redF()) + 0.7152 * part(color.greenF()) + 0.0722 * part(color.blueF());
    };
    const double a = luminance(one);
    const double b = luminance(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

} // namespace

/// The check of an incident's texts, with the real control, engine, dictionaries and database.
class tst_RecordSpelling : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() override
    {
        applyTheme(false);
        TestCase::cleanup();
    }

    // Which text

    void theNarrativeIsCheckedAndCorrected_data() { addWays(); }
    void theNarrativeIsCheckedAndCorrected()
    {
        QFETCH(bool, byKey);
        SpellingSite site;
        site.store(u"Narrative"_s, u"The bicycle was recieved."_s);
        site.openPage(NarrativePageNo);
        const Person person({Person::click("cmdChange")});
        site.check(byKey);
        QVERIFY(person.isDone());
        QCOMPARE(site.narrative()->toPlainText(), u"The bicycle was received."_s);
        QCOMPARE(site.boxes.texts(), QStringList(CompleteText));
        QVERIFY(site.window->isDirty());
        QVERIFY(site.window->save());
        QCOMPARE(site.stored(u"Narrative"_s).toString(), u"The bicycle was received."_s);
    }

    void theCommentOfTheFileIsCheckedOnThePageOfTheAttachments_data() { addWays(); }
    void theCommentOfTheFileIsCheckedOnThePageOfTheAttachments()
    {
        QFETCH(bool, byKey);
        SpellingSite site;
        site.store(u"Narrative"_s, u"A wrnog narrative."_s);
        site.openPage(AttachmentsPageNo);
        site.addFile();
        site.comment()->setFocus();
        QTest::keyClicks(site.comment(), u"The lok is fine."_s);
        const Person person({changeTo(u"lock"_s)});
        site.check(byKey);
        QVERIFY(person.isDone());
        QCOMPARE(site.comment()->toPlainText(), u"The lock is fine."_s);
        QCOMPARE(site.narrative()->toPlainText(), u"A wrnog narrative."_s);
        QVERIFY(site.window->save());
        const RecordPtr record = site.workspace->store().load(site.incidentNo);
        const RecordRowPtr row = record->collection(u"Attachments"_s)->rows().at(0);
        QCOMPARE(ToText(fieldOf(*row, u"Notes"_s)->Value()), u"The lock is fine."_s);
    }

    void onAPageWithoutATextF7DoesNothing()
    {
        SpellingSite site;
        site.store(u"Narrative"_s, u"A wrnog narrative."_s);
        site.openPage(GeneralPageNo);
        QLineEdit* summary = site.line(u"Summary"_s);
        summary->setFocus();
        const Person person({});
        site.pressF7();
        QVERIFY(!person.came());
        QVERIFY(site.boxes.shown().isEmpty());
        QVERIFY(summary->hasFocus());
        QVERIFY(!site.button());
        QCOMPARE(modInstanceCounter::InstanceCount, 0); // nothing was loaded for nothing
    }

    void withoutAFileThereIsNoCommentToCheck()
    {
        SpellingSite site;
        site.openPage(AttachmentsPageNo);
        QVERIFY(!site.comment()->isEnabled());
        site.pressF7();
        QTest::mouseClick(site.button(), Qt::LeftButton);
        QVERIFY(site.boxes.shown().isEmpty());
        QCOMPARE(modInstanceCounter::InstanceCount, 0);
    }

    void anIncidentWithoutANarrativeIsCompleteAtOnce_data() { addWays(); }
    void anIncidentWithoutANarrativeIsCompleteAtOnce()
    {
        QFETCH(bool, byKey);
        SpellingSite site;
        site.store(u"Narrative"_s, Null());
        site.openPage(NarrativePageNo);
        const Person person({});
        site.check(byKey);
        QVERIFY(!person.came());
        QCOMPARE(site.boxes.texts(), QStringList(CompleteText));
        QVERIFY(!site.window->isDirty());
        QVERIFY(IsNull(site.stored(u"Narrative"_s)));
    }

    void aNarrativeThatCannotBeChangedIsCheckedAndStaysAsItIs()
    {
        SpellingSite site;
        site.store(u"Narrative"_s, u"The bicycle was recieved."_s);
        site.openPage(NarrativePageNo);
        site.narrative()->setReadOnly(true);
        QString told;
        bool couldChange = true;
        const Person person({[&](const Dialog& dialog) {
            told = dialog.message();
            couldChange = dialog.button("cmdChange")->isEnabled();
            dialog.press(Qt::Key_Return); // which ignores the word
            return true;
        }});
        site.pressF7();
        QVERIFY(person.isDone());
        QCOMPARE(told, u"The text of this box cannot be changed."_s);
        QVERIFY(!couldChange);
        QCOMPARE(site.narrative()->toPlainText(), u"The bicycle was recieved."_s);
        QVERIFY(!site.window->isDirty());
    }

    void eachWindowChecksItsOwnIncident()
    {
        SpellingSite site;
        site.store(u"Narrative"_s, u"The frist incident."_s);
        site.openPage(NarrativePageNo);
        const qint64 otherNo = site.workspace->store().list().at(1).IncidentNo;
        RecordWindow other(*site.workspace, site.workspace->store().load(otherNo));
        other.setAttribute(Qt::WA_DeleteOnClose, false);
        other.findChild<QPlainTextEdit*>(u"Narrative"_s)->setPlainText(u"The secnod incident."_s);
        other.findChild<QListWidget*>(u"pages"_s)->setCurrentRow(NarrativePageNo);
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        const Person person({changeTo(u"second"_s)});
        QTest::keyClick(other.windowHandle(), Qt::Key_F7);
        QVERIFY(person.isDone());
        QCOMPARE(other.findChild<QPlainTextEdit*>(u"Narrative"_s)->toPlainText(), u"The second incident."_s);
        QCOMPARE(site.narrative()->toPlainText(), u"The frist incident."_s);
    }

    // Afterwards

    void theKeyboardIsInTheCheckedTextAfterwards_data()
    {
        QTest::addColumn<bool>("byKey");
        QTest::addColumn<QByteArray>("last");
        for (const char* last : {"cmdIgnore", "cmdCancel"}) {
            QTest::addRow("F7, %s", last) << true << QByteArray(last);
            QTest::addRow("button, %s", last) << false << QByteArray(last);
        }
    }
    void theKeyboardIsInTheCheckedTextAfterwards()
    {
        QFETCH(bool, byKey);
        QFETCH(QByteArray, last);
        SpellingSite site;
        site.store(u"Narrative"_s, u"The bicycle was recieved."_s);
        site.openPage(NarrativePageNo);
        site.button()->setFocus();
        const Person person({Person::click(last)});
        if (byKey)
            site.pressF7();
        else
            QTest::keyClick(site.window->windowHandle(), Qt::Key_Space);
        QVERIFY(person.isDone());
        site.window->activateWindow(); // what a desktop does by itself
        QTRY_COMPARE(QApplication::focusWidget(), site.narrative());
        QCOMPARE(site.narrative()->textCursor().position(), 0);
        QVERIFY(!site.narrative()->textCursor().hasSelection());
        QVERIFY(!site.window->isDirty());
        QTest::keyClick(site.window->windowHandle(), Qt::Key_X);
        QCOMPARE(site.narrative()->toPlainText(), u"xThe bicycle was recieved."_s);
    }

    void theNarrativesOwnUndoTakesTheCorrectionBack()
    {
        SpellingSite site;
        site.store(u"Narrative"_s, u"The bicycle was recieved."_s);
        site.openPage(NarrativePageNo);
        const Person person({Person::click("cmdChange")});
        site.pressF7();
        QVERIFY(person.isDone());
        QVERIFY(site.window->isDirty());
        QTest::keyClick(site.narrative(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(site.narrative()->toPlainText(), u"The bicycle was recieved."_s);
        QVERIFY(!site.window->isDirty());
    }

    // Words

    void anAddedWordIsInTheDatabaseAndInTheWorkstationsFile()
    {
        SpellingSite site;
        site.store(u"Narrative"_s, u"Found near Kestrelgate."_s);
        site.openPage(NarrativePageNo);
        const Person person({Person::click("cmdAdd")});
        site.pressF7();
        QVERIFY(person.isDone());
        QCOMPARE(site.wordsInTheDatabase(), QStringList(u"Kestrelgate"_s));
        QCOMPARE(bytesOf(site.folder.filePath(u"workstation/custom.dic"_s)), QByteArray("Kestrelgate\n"));
        QVERIFY(!site.window->isDirty()); // the incident is as it was
    }

    void aUserWithoutTheRightCannotAdd()
    {
        SpellingSite site;
        site.workspace.reset();
        Options options;
        options.database = site.folder.filePath(u"records.sqlite"_s);
        options.workstationFolder = site.folder.filePath(u"workstation"_s);
        options.user = u"jobrien"_s;
        site.workspace.emplace(options);
        site.store(u"Narrative"_s, u"Found near Kestrelgate."_s);
        site.openPage(NarrativePageNo);
        bool offered = true;
        const Person person({[&](const Dialog& dialog) {
                                 offered = dialog.button("cmdAdd")->isVisible();
                                 return true;
                             },
                             Person::click("cmdIgnore")});
        site.pressF7();
        QVERIFY(person.isDone());
        QVERIFY(!offered);
        QCOMPARE(site.wordsInTheDatabase(), QStringList());
    }

    void aDatabaseThatIsGoneWhileAWordIsAddedIsToldAndTheNextCheckWorks()
    {
        SpellingSite site;
        site.store(u"Narrative"_s, u"Found near Kestrelgate or Bqvton."_s);
        site.openPage(NarrativePageNo);
        const auto other = Database::open(site.workspace->database().path());
        {
            const Person person({[&](const Dialog& dialog) {
                                     other->execute(u"ALTER TABLE custom_word RENAME TO gone"_s);
                                     dialog.click("cmdAdd");
                                     return true;
                                 },
                                 Person::click("cmdIgnore")});
            site.pressF7();
            QVERIFY(person.isDone());
        }
        QCOMPARE(site.boxes.shown().size(), 2);
        const ShownBox box = site.boxes.shown()[0];
        const QString prefix = u"Error adding word to database: "_s;
        QVERIFY2(box.text.startsWith(prefix) && box.text.size() > prefix.size(), qPrintable(box.text));
        QCOMPARE(box.title, u"Error"_s);
        QCOMPARE(box.icon, BoxIcon::Critical);
        QCOMPARE(box.buttons, BoxButtons::OkCancel);
        QCOMPARE(site.boxes.shown()[1].text, CompleteText);
        QCOMPARE(bytesOf(site.folder.filePath(u"workstation/custom.dic"_s)), QByteArray("Kestrelgate\n"));

        other->execute(u"ALTER TABLE gone RENAME TO custom_word"_s);
        site.boxes.take();
        const Person person({Person::click("cmdAdd")}); // the first name is known here
        site.pressF7();
        QVERIFY(person.isDone());
        QCOMPARE(site.wordsInTheDatabase(), QStringList(u"Bqvton"_s));
        QCOMPARE(site.boxes.texts(), QStringList(CompleteText));
    }

    // The theme

    void theDialogCanBeReadInBothThemesAndFollowsAChange()
    {
        SpellingSite site;
        site.store(u"Narrative"_s, u"The bicycle was recieved."_s);
        QStringList unreadable;
        const auto look = [&](const Dialog& dialog, const char* theme) {
            const auto compare = [&](const QWidget* part, const QColor& ground, const QColor& text) {
                constexpr double readable = 4.5; // what people with weak eyes need
                if (contrast(ground, text) < readable)
                    unreadable << QString::fromLatin1(theme) + u' ' + part->objectName();
            };
            for (const QWidget* part : dialog.form.findChildren<QLabel*>())
                compare(part, dialog.form.palette().color(QPalette::Window),
                        part->palette().color(QPalette::WindowText));
            for (const QWidget* part : dialog.form.findChildren<QPushButton*>())
                compare(part, part->palette().color(QPalette::Button),
                        part->palette().color(QPalette::ButtonText));
            const auto* sentence = dialog.part<QTextEdit>("txtSentence");
            const QColor base = sentence->palette().color(QPalette::Base);
            compare(sentence, base, sentence->palette().color(QPalette::Text));
            QTextCursor cursor(sentence->document());
            cursor.setPosition(sentence->toPlainText().indexOf(u"recieved") + 1);
            compare(sentence, base, cursor.charFormat().foreground().color());
            for (const QWidget* part :
                 {static_cast<QWidget*>(dialog.changeTo()), static_cast<QWidget*>(dialog.list())}) {
                compare(part, part->palette().color(QPalette::Base), part->palette().color(QPalette::Text));
                compare(part, part->palette().color(QPalette::Highlight),
                        part->palette().color(QPalette::HighlightedText));
            }
        };
        applyTheme(true);
        site.openPage(NarrativePageNo);
        QColor dark;
        QColor light;
        const Person person({[&](const Dialog& dialog) {
                                 look(dialog, "dark");
                                 dark = dialog.form.palette().color(QPalette::Window);
                                 applyTheme(false);
                                 return true;
                             },
                             [&](const Dialog& dialog) {
                                 look(dialog, "light");
                                 light = dialog.form.palette().color(QPalette::Window);
                                 dialog.click("cmdCancel");
                                 return true;
                             }});
        site.pressF7();
        QVERIFY(person.isDone());
        QCOMPARE(unreadable, QStringList());
        QVERIFY(dark.lightness() < 100);
        QVERIFY(light.lightness() > 200);
    }
};

TAVRIN_TEST_MAIN(tst_RecordSpelling)
#include "tst_RecordSpelling.moc"
