#include "frame/desktop/Desktop.h"
#include "support/NextModal.h"
#include "support/TestCase.h"
#include "testing/FakeDesktop.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDesktopServices>
#include <QFileDialog>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QUrl>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using tavrin::BoxAnswer;
using tavrin::BoxButtons;
using tavrin::BoxIcon;
using tavrin::desktop;
using tavrin::test::FakeMessageBoxes;
using tavrin::test::NextModal;

namespace {

QMessageBox& boxIn(QWidget& modal)
{
    auto* box = qobject_cast<QMessageBox*>(&modal);
    Q_ASSERT(box);
    return *box;
}

/// Takes the addresses that the desktop is asked to open.
class OpenedAddresses : public QObject
{
    Q_OBJECT

public:
    OpenedAddresses() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "take"); }
    ~OpenedAddresses() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }

    QList<QUrl> addresses;

public Q_SLOTS:
    void take(const QUrl& address) { addresses << address; }
};

/// Takes the rights of root away for a while.
class AsOrdinaryUser
{
public:
    AsOrdinaryUser()
    {
        if (m_isRoot && ::setresuid(Nobody, Nobody, 0) != 0)
            qFatal("cannot become an ordinary user");
    }
    AsOrdinaryUser(const AsOrdinaryUser&) = delete;
    AsOrdinaryUser& operator=(const AsOrdinaryUser&) = delete;
    ~AsOrdinaryUser()
    {
        if (m_isRoot && ::setresuid(0, 0, 0) != 0)
            qFatal("cannot become root again");
    }

private:
    static constexpr uid_t Nobody = 65534;
    bool m_isRoot = ::getuid() == 0;
};

} // namespace

class tst_Desktop : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aBoxShowsItsWordsAsTheyAreAndIsModal()
    {
        QWidget parent;
        QString text;
        QString title;
        auto format = Qt::AutoText;
        auto icon = QMessageBox::NoIcon;
        bool selectable = false;
        bool modal = false;
        QWidget* boxParent = nullptr;
        const NextModal next([&](QWidget& window) {
            QMessageBox& box = boxIn(window);
            text = box.text();
            title = box.windowTitle();
            format = box.textFormat();
            icon = box.icon();
            selectable = box.textInteractionFlags().testFlag(Qt::TextSelectableByMouse);
            modal = box.isModal();
            boxParent = box.parentWidget();
            QTest::mouseClick(box.button(QMessageBox::Ok), Qt::LeftButton);
        });
        QCOMPARE(desktop().messageBoxes->show(&parent, u"<b>no</b> & %1"_s, BoxIcon::Critical, u"Error"_s,
                                              BoxButtons::Ok),
                 BoxAnswer::Ok);
        QVERIFY(next.came());
        QCOMPARE(text, u"<b>no</b> & %1"_s);
        QCOMPARE(title, u"Error"_s);
        QCOMPARE(format, Qt::PlainText);
        QCOMPARE(icon, QMessageBox::Critical);
        QVERIFY(selectable);
        QVERIFY(modal);
        QCOMPARE(boxParent, &parent);
    }

    void iconsAreTheBoxesOwn_data()
    {
        QTest::addColumn<BoxIcon>("icon");
        QTest::addColumn<QMessageBox::Icon>("shown");
        QTest::newRow("none") << BoxIcon::None << QMessageBox::NoIcon;
        QTest::newRow("information") << BoxIcon::Information << QMessageBox::Information;
        QTest::newRow("question") << BoxIcon::Question << QMessageBox::Question;
        QTest::newRow("exclamation") << BoxIcon::Exclamation << QMessageBox::Warning;
        QTest::newRow("critical") << BoxIcon::Critical << QMessageBox::Critical;
    }
    void iconsAreTheBoxesOwn()
    {
        QFETCH(BoxIcon, icon);
        QFETCH(QMessageBox::Icon, shown);
        auto seen = QMessageBox::Icon(-1);
        const NextModal next([&](QWidget& window) {
            seen = boxIn(window).icon();
            window.close();
        });
        desktop().messageBoxes->tell(nullptr, u"a"_s, icon, u"b"_s);
        QVERIFY(next.came());
        QCOMPARE(seen, shown);
    }

    void eachButtonGivesItsAnswerAndThereAreNoOthers_data()
    {
        QTest::addColumn<BoxButtons>("buttons");
        QTest::addColumn<int>("count");
        QTest::addColumn<QMessageBox::StandardButton>("pressed");
        QTest::addColumn<BoxAnswer>("answer");
        const auto row = [](const char* name, BoxButtons buttons, int count,
                            QMessageBox::StandardButton pressed, BoxAnswer answer) {
            QTest::newRow(name) << buttons << count << pressed << answer;
        };
        row("ok", BoxButtons::Ok, 1, QMessageBox::Ok, BoxAnswer::Ok);
        row("ok of two", BoxButtons::OkCancel, 2, QMessageBox::Ok, BoxAnswer::Ok);
        row("cancel of two", BoxButtons::OkCancel, 2, QMessageBox::Cancel, BoxAnswer::Cancel);
        row("yes", BoxButtons::YesNo, 2, QMessageBox::Yes, BoxAnswer::Yes);
        row("no", BoxButtons::YesNo, 2, QMessageBox::No, BoxAnswer::No);
        row("yes of three", BoxButtons::YesNoCancel, 3, QMessageBox::Yes, BoxAnswer::Yes);
        row("no of three", BoxButtons::YesNoCancel, 3, QMessageBox::No, BoxAnswer::No);
        row("cancel of three", BoxButtons::YesNoCancel, 3, QMessageBox::Cancel, BoxAnswer::Cancel);
        row("save", BoxButtons::SaveDiscardCancel, 3, QMessageBox::Save, BoxAnswer::Save);
        row("discard", BoxButtons::SaveDiscardCancel, 3, QMessageBox::Discard, BoxAnswer::Discard);
        row("cancel of a save", BoxButtons::SaveDiscardCancel, 3, QMessageBox::Cancel, BoxAnswer::Cancel);
        row("retry", BoxButtons::RetryCancel, 2, QMessageBox::Retry, BoxAnswer::Retry);
        row("cancel of a retry", BoxButtons::RetryCancel, 2, QMessageBox::Cancel, BoxAnswer::Cancel);
    }
    void eachButtonGivesItsAnswerAndThereAreNoOthers()
    {
        QFETCH(BoxButtons, buttons);
        QFETCH(int, count);
        QFETCH(QMessageBox::StandardButton, pressed);
        QFETCH(BoxAnswer, answer);
        int seen = 0;
        const NextModal next([&](QWidget& window) {
            seen = static_cast<int>(boxIn(window).buttons().size());
            QTest::mouseClick(boxIn(window).button(pressed), Qt::LeftButton);
        });
        QCOMPARE(desktop().messageBoxes->show(nullptr, u"a"_s, BoxIcon::Question, u"b"_s, buttons), answer);
        QVERIFY(next.came());
        QCOMPARE(seen, count);
    }

    void escapeAndTheCloseButtonAnswerCancelOrNoOrOk_data()
    {
        QTest::addColumn<BoxButtons>("buttons");
        QTest::addColumn<BoxAnswer>("answer");
        QTest::newRow("ok") << BoxButtons::Ok << BoxAnswer::Ok;
        QTest::newRow("ok and cancel") << BoxButtons::OkCancel << BoxAnswer::Cancel;
        QTest::newRow("yes and no") << BoxButtons::YesNo << BoxAnswer::No;
        QTest::newRow("yes, no and cancel") << BoxButtons::YesNoCancel << BoxAnswer::Cancel;
        QTest::newRow("save, discard and cancel") << BoxButtons::SaveDiscardCancel << BoxAnswer::Cancel;
        QTest::newRow("retry and cancel") << BoxButtons::RetryCancel << BoxAnswer::Cancel;
    }
    void escapeAndTheCloseButtonAnswerCancelOrNoOrOk()
    {
        QFETCH(BoxButtons, buttons);
        QFETCH(BoxAnswer, answer);
        for (const bool byKey : {true, false}) {
            const NextModal next([&](QWidget& window) {
                if (byKey)
                    QTest::keyClick(&window, Qt::Key_Escape);
                else
                    window.close();
            });
            QCOMPARE(desktop().messageBoxes->show(nullptr, u"a"_s, BoxIcon::Question, u"b"_s, buttons),
                     answer);
            QVERIFY(next.came());
        }
    }

    void aCancelledFileDialogGivesNoFiles_data()
    {
        QTest::addColumn<bool>("several");
        QTest::newRow("one") << false;
        QTest::newRow("several") << true;
    }
    void aCancelledFileDialogGivesNoFiles()
    {
        QFETCH(bool, several);
        const QTemporaryDir folder;
        const NextModal next([](QWidget& window) { QTest::keyClick(&window, Qt::Key_Escape); });
        QCOMPARE(desktop().fileDialogs->openFiles(nullptr, u"Choose"_s, folder.path(), u"All (*)"_s, several),
                 QStringList());
        QVERIFY(next.came());
    }

    // The shell

    void theShellTellsWhyItDoesNotOpen_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<qint64>("result");
        const auto row = [](const char* name, const QString& path, qint64 result) {
            QTest::newRow(name) << path << result;
        };
        row("empty", u""_s, 3);
        row("relative", u"note.txt"_s, 3);
        row("here", u"."_s, 3);
        row("address", u"http://localhost/"_s, 3);
        row("address of a file", u"file:///etc/passwd"_s, 3);
        row("option", u"-rf"_s, 3);
        row("NUL in the name", u"/%1note.txt"_s.arg(QChar(QChar::Null)), 3);
        row("missing file", u"%1/none.txt"_s, 2);
        row("missing folder", u"%1/nowhere/none.txt"_s, 3);
        row("missing folder, named as one", u"%1/nowhere/"_s, 3);
        row("a file taken for a folder", u"%1/note.txt/none.txt"_s, 3);
        row("link to nothing", u"%1/dangling.txt"_s, 2);
        row("executable file", u"%1/program"_s, 5);
        row("executable document", u"%1/program.pdf"_s, 5);
        row("starter", u"%1/starter.desktop"_s, 5);
        row("starter, in capitals", u"%1/STARTER.DESKTOP"_s, 5);
        row("starter by its content", u"%1/starter.txt"_s, 5);
        row("program of another platform", u"%1/setup.EXE"_s, 5);
        row("link to a starter", u"%1/innocent.txt"_s, 5);
        row("link to a program", u"%1/innocent.pdf"_s, 5);
        row("FIFO", u"%1/fifo.txt"_s, 5);
        row("device", u"/dev/null"_s, 5);
    }
    void theShellTellsWhyItDoesNotOpen()
    {
        QFETCH(QString, path);
        QFETCH(qint64, result);
        const QTemporaryDir folder;
        const OpenedAddresses opened;
        const auto write = [&](const char* name, const QByteArray& content, bool executable = false) {
            QFile file(folder.filePath(QString::fromLatin1(name)));
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
            if (executable)
                QVERIFY(file.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
        };
        write("note.txt", "hello");
        write("program", "#!/bin/sh\n", true);
        write("program.pdf", "%PDF", true);
        write("starter.desktop", "x");
        write("STARTER.DESKTOP", "x");
        write("starter.txt", "# a note\n[Desktop Entry]\nExec=true\n");
        write("setup.EXE", "MZ");
        QVERIFY(QFile::link(folder.filePath(u"none"_s), folder.filePath(u"dangling.txt"_s)));
        QVERIFY(QFile::link(folder.filePath(u"starter.desktop"_s), folder.filePath(u"innocent.txt"_s)));
        QVERIFY(QFile::link(folder.filePath(u"program"_s), folder.filePath(u"innocent.pdf"_s)));
        QCOMPARE(::mkfifo(QFile::encodeName(folder.filePath(u"fifo.txt"_s)).constData(), 0600), 0);
        QCOMPARE(desktop().shell->execute(path.contains(u"%1"_s) ? path.arg(folder.path()) : path), result);
        QCOMPARE(opened.addresses, QList<QUrl>()); // nothing was handed over
    }

    void whatMayNotBeReadIsDenied()
    {
        const QTemporaryDir folder;
        QCOMPARE(::chmod(QFile::encodeName(folder.path()).constData(), 0755), 0);
        const QString locked = folder.filePath(u"locked"_s);
        QVERIFY(QDir().mkpath(locked));
        for (const QString& path : {folder.filePath(u"secret.txt"_s), locked + u"/note.txt"_s}) {
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        QVERIFY(QFile::setPermissions(folder.filePath(u"secret.txt"_s), {}));
        QVERIFY(QFile::setPermissions(locked, QFile::ReadOwner | QFile::WriteOwner));
        const OpenedAddresses opened;
        qint64 file = 0;
        qint64 inLockedFolder = 0;
        {
            const AsOrdinaryUser ordinary; // nothing is denied to root
            file = desktop().shell->execute(folder.filePath(u"secret.txt"_s));
            inLockedFolder = desktop().shell->execute(locked + u"/note.txt"_s);
        }
        QFile::setPermissions(locked, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QCOMPARE(file, 5);
        QCOMPARE(inLockedFolder, 5);
        QCOMPARE(opened.addresses, QList<QUrl>());
    }

    void filesAndFoldersAreHandedOverAsOneLocalAddress_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("isFolder");
        QTest::newRow("file") << u"note.txt"_s << false;
        QTest::newRow("folder") << u"All of case 7"_s << true;
        QTest::newRow("folder like a starter") << u"a.desktop"_s << true;
        QTest::newRow("blanks and quotes") << u"my \"note\" 'x' $(touch y) ; `z` & more.txt"_s << false;
        QTest::newRow("like an option") << u"--help.txt"_s << false;
        QTest::newRow("signs of an address") << u"a#b?c=%41.txt"_s << false;
        QTest::newRow("letters of all kinds") << u"Übung – 検.txt"_s << false;
    }
    void filesAndFoldersAreHandedOverAsOneLocalAddress()
    {
        QFETCH(QString, name);
        QFETCH(bool, isFolder);
        const QTemporaryDir folder;
        const QString path = folder.filePath(name);
        if (isFolder) {
            QVERIFY(QDir().mkpath(path));
        } else {
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write("hello") == 5);
        }
        const OpenedAddresses opened;
        QCOMPARE(desktop().shell->execute(path), 33);
        QCOMPARE(opened.addresses, QList<QUrl>({QUrl::fromLocalFile(path)}));
        QCOMPARE(opened.addresses.first().toLocalFile(), path);
    }

    void aDesktopWithoutAnOpenerSaysThatThereIsNoProgram()
    {
        const QTemporaryDir folder; // this platform of Qt has no opener
        QCOMPARE(desktop().shell->execute(folder.path()), 31);
    }

    void theClockIsTheWorkstations()
    {
        const QDateTime before = QDateTime::currentDateTime();
        const QDateTime now = desktop().clock->now();
        QVERIFY(before <= now && now <= QDateTime::currentDateTime());
    }

    void fakeBoxesAnswerByTheirScriptAndGiveWayToTheRealOnes()
    {
        const auto real = desktop().messageBoxes;
        {
            FakeMessageBoxes boxes;
            QVERIFY(desktop().messageBoxes != real);
            boxes.answerWith({BoxAnswer::No, BoxAnswer::Cancel});
            const auto ask = [] {
                return desktop().messageBoxes->show(nullptr, u"Sure?"_s, BoxIcon::Question, u"T"_s,
                                                    BoxButtons::YesNoCancel);
            };
            QCOMPARE(ask(), BoxAnswer::No);
            QCOMPARE(boxes.answersLeft(), 1);
            QCOMPARE(ask(), BoxAnswer::Cancel);
            QCOMPARE(ask(), BoxAnswer::Ok);
            QCOMPARE(boxes.texts(), QStringList({u"Sure?"_s, u"Sure?"_s, u"Sure?"_s}));
        }
        QCOMPARE(desktop().messageBoxes, real);
    }
};

TAVRIN_TEST_MAIN(tst_Desktop)
#include "tst_Desktop.moc"
