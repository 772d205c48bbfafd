#include "attachments/dialogs/frmDownloadFolderPrompt.h"
#include "attachments/section/AttachmentsForm.h"

#include <QApplication>
#include <QDialog>
#include <QTimer>

#include <functional>
#include <utility>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

/// Takes the name that the prompt for the folder suggests, or the answer of a test. The dialogs that follow
/// are left alone.
class Prompt
{
public:
    explicit Prompt(std::function<void(QWidget&)> answer =
                        [](QWidget& prompt) { QTest::keyClick(prompt.windowHandle(), Qt::Key_Return); })
        : m_answer(std::move(answer))
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] {
            QWidget* modal = QApplication::activeModalWidget();
            if (!qobject_cast<frmDownloadFolderPrompt*>(modal) || !modal->isVisible())
                return;
            if (std::exchange(m_came, true))
                modal->close(); // the answer has left it open
            else
                m_answer(*modal);
        });
        m_timer.start(1);
    }
    bool came() const { return m_came; }

private:
    std::function<void(QWidget&)> m_answer;
    QTimer m_timer;
    bool m_came = false;
};

void chooseDownloadAll(AttachmentsForm& form)
{
    form.choose(0, Qt::Key_D);
}

} // namespace

/// Downloading all files of `Attachments` into a folder.
class tst_AttachmentsDownloadAll : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // The folder

    void allFilesComeIntoAFolderNamedAfterTheForm()
    {
        AttachmentsForm form;
        form.window.setWindowTitle(u"Incident 7[*]"_s);
        QVERIFY(form.openThree());
        form.boxes.answerWith({BoxAnswer::No});
        const Prompt prompt;
        chooseDownloadAll(form);
        QTRY_COMPARE(form.boxes.shown().size(), 1);
        const QString path = form.downloads.filePath(u"Incident 7"_s);
        const ShownBox box = form.boxes.shown().first();
        QCOMPARE(box.text, u"All attachments for this record were downloaded to "_s + path +
                               u".\r\n\r\nDo you want to open this folder now?"_s);
        QCOMPARE(box.title, u"Download Complete"_s);
        QCOMPARE(box.icon, BoxIcon::Question);
        QCOMPARE(box.buttons, BoxButtons::YesNo);
        QCOMPARE(box.parent, form.section.data());
        QCOMPARE(QDir(path).entryList(QDir::Files),
                 QStringList({u"door.png"_s, u"lock.png"_s, u"report.docx"_s}));
        QCOMPARE(form.shell.opened(), QStringList());
        QVERIFY(form.window.findChildren<QDialog*>().isEmpty());
    }

    void yesOpensTheFolder()
    {
        AttachmentsForm form;
        QVERIFY(form.openThree());
        form.boxes.answerWith({BoxAnswer::Yes});
        const Prompt prompt;
        chooseDownloadAll(form);
        QTRY_COMPARE(form.shell.opened(), QStringList{form.downloads.filePath(u"Incident 7"_s)});
    }

    void aFolderThatDoesNotOpenIsToldInTheBoxOfTheDownload()
    {
        AttachmentsForm form;
        QVERIFY(form.openThree());
        form.boxes.answerWith({BoxAnswer::Yes});
        form.shell.answerWith(5);
        const Prompt prompt;
        chooseDownloadAll(form);
        QTRY_COMPARE(form.boxes.shown().size(), 2);
        QCOMPARE(form.boxes.shown().last().text,
                 u"Attachments were not downloaded: Could not open file '"_s +
                     form.downloads.filePath(u"Incident 7"_s) +
                     u"'. Reason: The operating system denied access to the specified file."_s);
        QCOMPARE(form.boxes.shown().last().icon, BoxIcon::Critical);
    }

    void aFolderThatIsThereGetsANumber()
    {
        AttachmentsForm form;
        QVERIFY(form.downloads.mkdir(u"Incident 7"_s));
        QVERIFY(form.openThree());
        form.boxes.answerWith({BoxAnswer::No});
        const Prompt prompt;
        chooseDownloadAll(form);
        QTRY_COMPARE(form.boxes.shown().size(), 1);
        QVERIFY(form.boxes.shown().first().text.contains(form.downloads.filePath(u"Incident 7 (1)"_s)));
        QCOMPARE(QDir(form.downloads.filePath(u"Incident 7 (1)"_s)).entryList(QDir::Files).size(), 3);
        QVERIFY(QDir(form.downloads.filePath(u"Incident 7"_s)).isEmpty());
    }

    void aFolderNameThatTheDiskWouldNotTakeBecomesALikeOneInTheDownloadsFolder_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QStringList>("before");
        QTest::addColumn<QString>("onDisk");
        const QStringList none;
        QTest::newRow("the folder itself") << u"."_s << none << u"_"_s;
        QTest::newRow("the folder above") << u".."_s << none << u"__"_s;
        QTest::newRow("a control character") << u"a\x1B"
                                                u"b"_s
                                             << none << u"a_b"_s;
        QTest::newRow("blanks around it") << u" a "_s << none << u" a "_s;
        const QString longest(237, u'x');
        QTest::newRow("237 bytes") << longest << none << longest;
        QTest::newRow("the longest, once more") << longest << QStringList{longest} << longest + u" (1)"_s;
    }
    void aFolderNameThatTheDiskWouldNotTakeBecomesALikeOneInTheDownloadsFolder()
    {
        QFETCH(QString, name);
        QFETCH(QStringList, before);
        QFETCH(QString, onDisk);
        AttachmentsForm form;
        form.window.setWindowTitle(name);
        QVERIFY(form.openThree());
        for (const QString& folder : before)
            QVERIFY(form.downloads.mkdir(folder));
        form.boxes.answerWith({BoxAnswer::No});
        const Prompt prompt;
        chooseDownloadAll(form);
        QTRY_COMPARE(form.boxes.shown().size(), 1);
        QCOMPARE(form.boxes.shown().first().title, u"Download Complete"_s);
        const auto all = QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot;
        QStringList expected = before + QStringList{onDisk};
        expected.sort();
        QCOMPARE(form.downloads.entryList(all, QDir::Name), expected);
        QCOMPARE(QDir(form.downloads.filePath(onDisk)).entryList(QDir::Files).size(), 3);
    }

    // The prompt

    void thePromptStandsAboveTheWindowOfTheSection()
    {
        AttachmentsForm form;
        QVERIFY(form.openThree());
        QWidget other;
        other.show();
        QWidget* owner = nullptr;
        const Prompt prompt([&](QWidget& dialog) {
            owner = dialog.parentWidget();
            dialog.close();
        });
        chooseDownloadAll(form);
        QTRY_VERIFY(prompt.came() && !QApplication::activeModalWidget());
        QCOMPARE(owner, &form.window);
    }

    void aFolderNameThatIsTooLongIsToldInThePromptAndNotCut()
    {
        AttachmentsForm form;
        form.window.setWindowTitle(QString(255, u'x'));
        QVERIFY(form.openThree());
        QString told;
        const Prompt prompt([&](QWidget& dialog) {
            QTest::keyClick(dialog.windowHandle(), Qt::Key_Return);
            told = dialog.findChild<QLabel*>(u"lblError"_s)->text();
            QTest::keyClick(dialog.windowHandle(), Qt::Key_Escape);
        });
        chooseDownloadAll(form);
        QTRY_VERIFY(prompt.came() && !QApplication::activeModalWidget());
        QCOMPARE(told, u"Folder name is too long. Please shorten it by 18 characters."_s);
        QCOMPARE(form.boxes.shown().size(), 0);
        QVERIFY(form.downloads.isEmpty());
    }

    void cancellingThePromptDownloadsNothing()
    {
        AttachmentsForm form;
        QVERIFY(form.openThree());
        const Prompt prompt([](QWidget& dialog) { QTest::keyClick(dialog.windowHandle(), Qt::Key_Escape); });
        chooseDownloadAll(form);
        QTRY_VERIFY(prompt.came() && !QApplication::activeModalWidget());
        QCOMPARE(form.boxes.shown().size(), 0);
        QVERIFY(form.downloads.isEmpty());
    }

    // Failures

    void aFileThatFailsStopsAllAndNothingStays()
    {
        AttachmentsForm form;
        QVERIFY(form.openThree());
        form.host.state().transferFailures.insert(form.store.path() + u'\\' + form.text(2, "FileName"),
                                                  u"the store is away"_s);
        const Prompt prompt;
        chooseDownloadAll(form);
        QTRY_COMPARE(form.boxes.shown().size(), 1);
        QCOMPARE(form.theBox(),
                 u"Attachments were not downloaded: Error downloading file door.png: the store is away"
                 u"|Attachments|critical"_s);
        QVERIFY(form.downloads.isEmpty());
    }

    void aCancelledDownloadIsToldAndAsksNoQuestion()
    {
        AttachmentsForm form;
        QVERIFY(form.openThree());
        bool isFirst = true;
        form.host.state().duringTransfer = [&](const QString&, qint64, qint64) {
            if (QWidget* task = QApplication::activeModalWidget(); task && std::exchange(isFirst, false))
                task->close(); // counts as Cancel
        };
        const Prompt prompt;
        chooseDownloadAll(form);
        QTRY_COMPARE(form.boxes.shown().size(), 1);
        QCOMPARE(form.theBox(),
                 u"Attachments were not downloaded: Download was canceled.|Attachments|critical"_s);
        QVERIFY(form.downloads.isEmpty());
    }

    // A form that goes

    void aFormThatDeletesTheSectionUnderThePromptEndsTheDownloadQuietly()
    {
        AttachmentsForm form;
        QVERIFY(form.openThree());
        const Unhandled unhandled;
        const Prompt prompt([&](QWidget& dialog) {
            delete form.section.data();
            QTest::keyClick(dialog.windowHandle(), Qt::Key_Return);
        });
        chooseDownloadAll(form);
        QVERIFY(prompt.came());
        QVERIFY(!QApplication::activeModalWidget());
        QVERIFY(form.section.isNull());
        QCOMPARE(unhandled.texts, QStringList());
        QCOMPARE(form.boxes.shown().size(), 0);
        QVERIFY(form.downloads.isEmpty());
    }

    void aFormThatDeletesTheSectionWhileAllIsDownloadedAsksNoQuestion()
    {
        AttachmentsForm form;
        QVERIFY(form.openThree());
        const Unhandled unhandled;
        form.host.state().duringTransfer = [&](const QString&, qint64, qint64) {
            delete form.section.data();
        };
        const Prompt prompt;
        chooseDownloadAll(form);
        QVERIFY(form.section.isNull());
        QVERIFY(!QApplication::activeModalWidget());
        QCOMPARE(unhandled.texts, QStringList());
        QCOMPARE(form.boxes.shown().size(), 0);
    }
};

TAVRIN_TEST_MAIN(tst_AttachmentsDownloadAll)
#include "tst_AttachmentsDownloadAll.moc"
