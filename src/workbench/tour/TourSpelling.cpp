#include "base/values/Variant.h"
#include "widgets/boxes/TextArea.h"
#include "widgets/lists/ListView.h"
#include "workbench/tour/TourSteps.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QProcess>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QVariantList>

namespace tavrin::workbench {

namespace {

constexpr int NarrativePageNo = 5;
constexpr int AttachmentsPageNo = 7;
/// Milliseconds; a whole program starts, loads its dictionaries and is walked through.
constexpr int VisitPatience = 120'000;

const QString Place = QStringLiteral("Kestrelgate"); // in no dictionary
const QString Narrative = QStringLiteral("The cyclist received first aid. She had been found near ") + Place;

bool isMessage(QWidget* box)
{
    return qobject_cast<QMessageBox*>(box) != nullptr;
}

bool isSpelling(QWidget* box)
{
    return box->objectName() == QLatin1String("frmSpelling");
}

class SpellingSteps final : public TourSteps
{
public:
    SpellingSteps(TourSite& site, QString folder);
    void walk();
    void walkElsewhere();

private:
    void correctAndAdd();
    void undoInTheBox();
    void checkTheComment();
    void saveAndCompare();
    void visitAnotherWorkstation();

    QPlainTextEdit* narrative() const
    {
        return d.find<QPlainTextEdit>(record(), QStringLiteral("Narrative"));
    }
    TextArea* comment() const { return d.find<TextArea>(record(), QStringLiteral("txtComment")); }
    QPushButton* spellingButton() const;
    void openNarrative() const;
    /// Starts a check and confirms its end. Without `inDialog` no word may be asked about.
    void check(const std::function<void()>& start, const std::function<void(QWidget*)>& inDialog = {}) const;
    void press(QWidget* dialog, const char* button) const
    {
        d.click(d.find<QPushButton>(dialog, QString::fromLatin1(button)));
    }
    QByteArray customWords() const;

    QString m_folder;
};

SpellingSteps::SpellingSteps(TourSite& site, QString folder)
    : TourSteps(site)
    , m_folder(std::move(folder))
{
}

void SpellingSteps::walk()
{
    correctAndAdd();
    undoInTheBox();
    checkTheComment();
    saveAndCompare();
    visitAnotherWorkstation();
}

QPushButton* SpellingSteps::spellingButton() const
{
    QPushButton* shown = nullptr; // each page has one
    for (QPushButton* button : record()->findChildren<QPushButton*>(QStringLiteral("spelling"))) {
        if (button->isVisible())
            shown = button;
    }
    d.check(shown != nullptr, QStringLiteral("there is a button for the check"));
    return shown;
}

void SpellingSteps::openNarrative() const
{
    showPage(NarrativePageNo);
    d.press(Qt::Key_V, Qt::AltModifier);
    d.check(narrative()->hasFocus(), QStringLiteral("the keyboard is in the narrative"));
}

QByteArray SpellingSteps::customWords() const
{
    QFile file(QDir(s.workspace.options().workstationFolder).filePath(QStringLiteral("custom.dic")));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void SpellingSteps::check(const std::function<void()>& start,
                          const std::function<void(QWidget*)>& inDialog) const
{
    QWidget* window = record();
    bool asks = false;
    d.withBox(
        [&] {
            if (inDialog)
                d.withBox(start, inDialog, isSpelling);
            else
                start();
        },
        [&](QWidget* box) {
            d.checkEqual(boxText(box), QStringLiteral("Spell check complete."), QStringLiteral("the box"));
            answer(QMessageBox::Ok, box);
        },
        [&](QWidget* box) {
            if (!inDialog && isSpelling(box)) {
                asks = true;
                box->close();
            }
            return isMessage(box);
        });
    d.check(!asks, QStringLiteral("no word is asked about"));
    window->activateWindow(); // what a desktop does by itself, the offscreen platform does not
    record();
}

void SpellingSteps::correctAndAdd()
{
    d.step(QStringLiteral("Misspell a word of the narrative"), [&] {
        openNarrative();
        emptyTheBox();
        d.type(QString(Narrative).replace(QStringLiteral("received"), QStringLiteral("recieved")));
        d.check(record()->isWindowModified(), QStringLiteral("the record is marked as changed"));
    });
    d.step(QStringLiteral("Check the spelling, correct it, and add a name"), [&] {
        const QPlainTextEdit* text = narrative(); // the dialog is in front of it
        QPushButton* button = spellingButton();
        check([&] { d.click(button); },
              [&](QWidget* dialog) {
                  d.checkEqual(text->textCursor().selectedText(), QStringLiteral("recieved"),
                               QStringLiteral("the word at issue"));
                  d.picture(QStringLiteral("A misspelt word"));
                  press(dialog, "cmdChange");
                  d.checkEqual(text->textCursor().selectedText(), Place,
                               QStringLiteral("the next word at issue"));
                  d.picture(QStringLiteral("A name that is in no dictionary"));
                  press(dialog, "cmdAdd");
              });
        d.checkEqual(narrative()->toPlainText(), Narrative, QStringLiteral("the narrative"));
        d.check(narrative()->hasFocus() && narrative()->textCursor().position() == 0,
                QStringLiteral("the caret stands at the start of the narrative"));
        d.checkEqual(QString::fromUtf8(customWords()), Place + u'\n', QStringLiteral("the custom words"));
    });
}

void SpellingSteps::undoInTheBox()
{
    d.step(QStringLiteral("The narrative takes the correction back, and again"), [&] {
        d.press(Qt::Key_Z, Qt::ControlModifier);
        d.check(narrative()->toPlainText().contains(QStringLiteral("recieved")),
                QStringLiteral("the word stands as it was typed"));
        d.press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        d.checkEqual(narrative()->toPlainText(), Narrative, QStringLiteral("the narrative"));
    });
    d.step(QStringLiteral("F7 finds nothing more"), [&] { check([&] { d.press(Qt::Key_F7); }); });
}

void SpellingSteps::checkTheComment()
{
    const QString sentence = QStringLiteral(" The lock is in good condition.");
    d.step(QStringLiteral("F7 checks the comment of a file"), [&] {
        showPage(AttachmentsPageNo);
        ListView& files = *d.find<ListView>(record(), QStringLiteral("lvwFiles"));
        d.click(files.viewport(), files.visualRect(files.model()->index(0, 1)).center());
        const QString before = comment()->toPlainText();
        d.click(comment()->viewport());
        d.press(Qt::Key_End, Qt::ControlModifier);
        d.type(QString(sentence).replace(QStringLiteral("condition"), QStringLiteral("condicion")));
        const TextArea* text = comment();
        check([&] { d.press(Qt::Key_F7); },
              [&](QWidget*) {
                  d.checkEqual(text->textCursor().selectedText(), QStringLiteral("condicion"),
                               QStringLiteral("the word at issue"));
                  d.picture(QStringLiteral("A misspelt comment"));
                  d.press(Qt::Key_Return);
              });
        d.checkEqual(comment()->toPlainText(), before + sentence, QStringLiteral("the comment"));
        d.check(comment()->hasFocus(), QStringLiteral("the keyboard is in the comment"));
    });
}

void SpellingSteps::saveAndCompare()
{
    d.step(QStringLiteral("Save what was corrected"), [&] {
        const QString written = comment()->toPlainText();
        save();
        d.checkEqual(ToText(stored(QStringLiteral("Narrative"))), Narrative, QStringLiteral("the narrative"));
        const QVariantList comments = storedRows(QStringLiteral("Attachments"), QStringLiteral("Notes"));
        d.checkEqual(ToText(comments.value(0)), written, QStringLiteral("the comment"));
    });
}

void SpellingSteps::visitAnotherWorkstation()
{
    d.step(QStringLiteral("Another workstation knows the added name"), [&] {
        const QTemporaryDir workstation;
        QProcess program;
        program.setProcessChannelMode(QProcess::MergedChannels);
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        program.setProcessEnvironment(environment);
        const Options& own = s.workspace.options();
        program.start(QCoreApplication::applicationFilePath(),
                      {QStringLiteral("--tour-elsewhere"), QStringLiteral("--tour"),
                       QDir(m_folder).filePath(QStringLiteral("elsewhere")), QStringLiteral("--db"),
                       own.database, QStringLiteral("--workstation"), workstation.path(),
                       QStringLiteral("--theme"),
                       isDark(own.theme) ? QStringLiteral("dark") : QStringLiteral("light")});
        const bool ended =
            QTest::qWaitFor([&] { return program.state() == QProcess::NotRunning; }, VisitPatience);
        d.check(ended, QStringLiteral("the other program has ended"));
        d.check(program.exitStatus() == QProcess::NormalExit && program.exitCode() == 0,
                QStringLiteral("all went well there:\n%1")
                    .arg(QString::fromUtf8(program.readAllStandardOutput())));
    });
}

void SpellingSteps::walkElsewhere()
{
    d.step(QStringLiteral("The list of incidents at another workstation"), [&] {
        d.check(customWords().isEmpty(), QStringLiteral("the workstation has no words yet"));
        searchAndOpen(QStringLiteral("bicycle"));
    });
    d.step(QStringLiteral("The name that was added elsewhere is known"), [&] {
        openNarrative();
        emptyTheBox();
        d.type(Narrative);
        check([&] { d.press(Qt::Key_F7); });
        d.checkEqual(QString::fromUtf8(customWords()), Place + u'\n', QStringLiteral("the custom words"));
    });
    d.step(QStringLiteral("The misspelt name is not, and the right one is offered"), [&] {
        const QString wrong = QStringLiteral("Kestrelgaet");
        d.press(Qt::Key_End, Qt::ControlModifier);
        d.type(QStringLiteral(" or ") + wrong);
        const QPlainTextEdit* text = narrative();
        check([&] { d.press(Qt::Key_F7); },
              [&](QWidget* dialog) {
                  d.checkEqual(text->textCursor().selectedText(), wrong, QStringLiteral("the word at issue"));
                  const auto* offers = d.find<QListWidget>(dialog, QStringLiteral("lstSuggestions"));
                  d.checkEqual(offers->currentItem()->text(), Place, QStringLiteral("the first suggestion"));
                  d.picture(QStringLiteral("The added name is offered"));
                  d.press(Qt::Key_Escape);
              });
        d.checkEqual(narrative()->toPlainText(), Narrative + QStringLiteral(" or ") + wrong,
                     QStringLiteral("the narrative"));
        discard();
    });
}

} // namespace

void walkSpelling(TourSite& site, const QString& folder)
{
    SpellingSteps(site, folder).walk();
}

void walkSpellingElsewhere(TourSite& site)
{
    SpellingSteps(site, QString()).walkElsewhere();
}

} // namespace tavrin::workbench
