#include "attachments/dialogs/frmDownloadFolderPrompt.h"
#include "frame/modUtils.h"
#include "support/NextModal.h"
#include "support/TestCase.h"
#include "widgets/boxes/TextBox.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace tavrin;

namespace {

const QString PleaseEnter = u"Please enter a folder name."_s;
const QString CannotContain = u"Folder name cannot contain any of the following characters: <>:\"/\\|?*"_s;

struct Stage
{
    explicit Stage(const QString& name = u"Incident 7"_s) { prompt.SetFolderName(name); }
    bool show()
    {
        prompt.show();
        prompt.activateWindow();
        return QTest::qWaitForWindowActive(&prompt);
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(prompt.windowHandle(), key, modifiers);
    }
    void click(QPushButton* button) { QTest::mouseClick(button, Qt::LeftButton); }

    frmDownloadFolderPrompt prompt;
    TextBox* txtFolderName = prompt.findChild<TextBox*>(u"txtFolderName"_s);
    QLabel* lblError = prompt.findChild<QLabel*>(u"lblError"_s);
    QPushButton* cmdDownload = prompt.findChild<QPushButton*>(u"cmdDownload"_s);
    QPushButton* cmdCancel = prompt.findChild<QPushButton*>(u"cmdCancel"_s);
};

} // namespace

class tst_frmDownloadFolderPrompt : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void itSaysWhatWillHappen()
    {
        const Stage stage;
        QCOMPARE(stage.prompt.windowTitle(), u"Download All Attachments"_s);
        QCOMPARE(stage.prompt.findChild<QLabel*>(u"lblMessage"_s)->text(),
                 u"All attachments in this record will be downloaded to a new folder in your Downloads "
                 u"folder. If desired, you can change the folder name that will be used below."_s);
        auto* caption = stage.prompt.findChild<QLabel*>(u"lblFolderName"_s);
        QCOMPARE(caption->text(), u"Folder Name"_s);
        QCOMPARE(caption->buddy(), stage.txtFolderName);
        QCOMPARE(stage.txtFolderName->accessibleName(), u"Folder Name"_s);
        QCOMPARE(stage.txtFolderName->maxLength(), 255);
        QVERIFY(stage.lblError->isHidden());
        QCOMPARE(stage.cmdDownload->text(), u"Download"_s);
        QCOMPARE(stage.cmdCancel->text(), u"Cancel"_s);
    }

    void theSuggestionIsSelectedAndHasTheFocus()
    {
        Stage stage;
        QVERIFY(stage.show());
        QVERIFY(stage.txtFolderName->hasFocus());
        QCOMPARE(stage.txtFolderName->selectedText(), u"Incident 7"_s);
        stage.press(Qt::Key_X);
        QCOMPARE(stage.txtFolderName->Text(), u"x"_s);
        stage.prompt.hide();
    }

    void whatEndsThePrompt_data()
    {
        QTest::addColumn<QString>("way");
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("canceled");
        QTest::newRow("Download") << u"Download"_s << u"Incident 7"_s << false;
        QTest::newRow("Enter") << u"Enter"_s << u"Incident 7"_s << false;
        QTest::newRow("Cancel") << u"Cancel"_s << QString() << true;
        QTest::newRow("Escape") << u"Escape"_s << QString() << true;
        QTest::newRow("window's frame") << u"frame"_s << QString() << true;
        QTest::newRow("Enter on Cancel") << u"Enter on Cancel"_s << QString() << true;
        QTest::newRow("Space on Cancel") << u"Space on Cancel"_s << QString() << true;
    }
    void whatEndsThePrompt()
    {
        QFETCH(QString, way);
        QFETCH(QString, name);
        QFETCH(bool, canceled);
        QWidget owner; // outlives the prompt, which becomes its child but is not its own to delete
        Stage stage;
        owner.show();
        const tavrin::test::NextModal next([&](QWidget&) {
            if (way == u"Download"_s)
                stage.click(stage.cmdDownload);
            else if (way == u"Enter"_s)
                stage.press(Qt::Key_Return);
            else if (way == u"Cancel"_s)
                stage.click(stage.cmdCancel);
            else if (way == u"Escape"_s)
                stage.press(Qt::Key_Escape);
            else if (way == u"frame"_s)
                stage.prompt.close();
            else {
                stage.cmdCancel->setFocus();
                stage.press(way == u"Space on Cancel"_s ? Qt::Key_Space : Qt::Key_Return);
            }
        });
        stage.prompt.ShowModal(&owner);
        QVERIFY(next.came());
        QVERIFY(!stage.prompt.isVisible());
        QCOMPARE(stage.prompt.Canceled(), canceled);
        QCOMPARE(stage.prompt.FolderName(), name);
        QVERIFY(stage.lblError->isHidden());
    }

    void blanksAroundANameAreTakenAsTyped()
    {
        Stage stage(u" Incident 7  "_s);
        QVERIFY(stage.show());
        stage.press(Qt::Key_Return);
        QVERIFY(!stage.prompt.isVisible());
        QCOMPARE(stage.prompt.FolderName(), u" Incident 7  "_s);
    }

    void aNameThatIsRefusedKeepsThePromptOpen_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << QString() << PleaseEnter;
        QTest::newRow("blanks") << u"   "_s << PleaseEnter;
        for (const QChar character : modUtils::InvalidNameCharacters())
            QTest::newRow(qPrintable(u"with %1"_s.arg(character)))
                << u"a%1b"_s.arg(character) << CannotContain;
        const auto tooLong = [](const QString& excess) {
            return u"Folder name is too long. Please shorten it by %1."_s.arg(excess);
        };
        QTest::newRow("238 bytes") << QString(238, u'x') << tooLong(u"1 character"_s);
        QTest::newRow("255 bytes") << QString(255, u'x') << tooLong(u"18 characters"_s);
        QTest::newRow("240 bytes of 80 units")
            << QString(80, QChar(0x20AC)) << tooLong(u"1 character"_s); // three bytes each
        QTest::newRow("765 bytes of 255 units")
            << QString(255, QChar(0x20AC)) << tooLong(u"176 characters"_s);
        QTest::newRow("pairs") << u"\U0001F600"_s.repeated(61)
                               << tooLong(u"2 characters"_s); // four bytes each
        QTest::newRow("too long, with ?") << QString(255, u'?') << CannotContain;
    }
    void aNameThatIsRefusedKeepsThePromptOpen()
    {
        QFETCH(QString, name);
        QFETCH(QString, text);
        Stage stage(name);
        QVERIFY(stage.show());
        const QSize before = stage.prompt.size();
        const QPoint button = stage.cmdDownload->pos();
        stage.click(stage.cmdDownload);
        QVERIFY(stage.prompt.isVisible());
        QVERIFY(stage.lblError->isVisible());
        QCOMPARE(stage.lblError->text(), text);
        QVERIFY(stage.lblError->heightForWidth(stage.lblError->width()) <= stage.lblError->height());
        QVERIFY(stage.txtFolderName->hasFocus());
        QVERIFY(!stage.prompt.Canceled());
        QCOMPARE(stage.prompt.size(), before); // nothing moves below the mouse
        QCOMPARE(stage.cmdDownload->pos(), button);

        stage.txtFolderName->SetText(u"good"_s);
        stage.click(stage.cmdDownload);
        QVERIFY(!stage.prompt.isVisible());
        QVERIFY(stage.lblError->isHidden());
        QCOMPARE(stage.prompt.FolderName(), u"good"_s);
    }

    void aRefusalDescribesTheBoxToScreenReaders()
    {
        Stage stage(u"a?b"_s);
        QVERIFY(stage.show());
        stage.press(Qt::Key_Return);
        QCOMPARE(stage.txtFolderName->accessibleDescription(), CannotContain);
        stage.txtFolderName->SetText(u"good"_s);
        stage.press(Qt::Key_Return);
        QCOMPARE(stage.txtFolderName->accessibleDescription(), QString());
    }

    void theBoxTakes255Units()
    {
        Stage stage{QString()};
        QVERIFY(stage.show());
        stage.txtFolderName->SetText(QString(300, u'x'));
        QCOMPARE(stage.txtFolderName->Text().size(), 255);
        stage.prompt.hide();
    }

    void aNameAsLongAsTheDiskTakesItIsTaken_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("237 bytes") << QString(237, u'x');
        QTest::newRow("237 bytes of 79 units") << QString(79, QChar(0x20AC));
        QTest::newRow("236 bytes of 59 pairs") << u"\U0001F600"_s.repeated(59);
    }
    void aNameAsLongAsTheDiskTakesItIsTaken()
    {
        QFETCH(QString, name);
        Stage stage(name);
        QVERIFY(stage.show());
        stage.press(Qt::Key_Return);
        QVERIFY(!stage.prompt.isVisible());
        QCOMPARE(stage.prompt.FolderName(), name);
    }

    void theTabKeyGoesFromTheNameToCancel()
    {
        Stage stage;
        QVERIFY(stage.show());
        for (const char* name : {"cmdDownload", "cmdCancel", "txtFolderName"}) {
            stage.press(Qt::Key_Tab);
            QCOMPARE(QApplication::focusWidget()->objectName(), QString::fromLatin1(name));
        }
        stage.prompt.hide();
    }

    void theErrorCanBeReadOnAnyTheme()
    {
        const QPalette before = QApplication::palette();
        for (const QColor& ground : {QColor(244, 245, 247), QColor(31, 34, 38)}) {
            QPalette palette = before;
            palette.setColor(QPalette::Window, ground);
            QApplication::setPalette(palette);
            const Stage stage;
            const QColor text = stage.lblError->palette().color(QPalette::WindowText);
            QVERIFY(std::abs(text.lightness() - ground.lightness()) > 100);
            QApplication::setPalette(before);
        }
        Stage stage; // and one that is open when the theme changes
        QVERIFY(stage.show());
        QPalette dark = before;
        dark.setColor(QPalette::Window, QColor(31, 34, 38));
        QApplication::setPalette(dark);
        QTRY_VERIFY(stage.lblError->palette().color(QPalette::WindowText).lightness() > 128);
        QApplication::setPalette(before);
        stage.prompt.hide();
    }
};

TAVRIN_TEST_MAIN(tst_frmDownloadFolderPrompt)
#include "tst_frmDownloadFolderPrompt.moc"
