#include "frame/desktop/Desktop.h"
#include "support/FakeDesktop.h"
#include "support/NextModal.h"
#include "support/TestCase.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QMessageBox>
#include <QTemporaryDir>

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

    void theShellRefusesWhatIsNotAnExistingAbsolutePath_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("empty") << u""_s;
        QTest::newRow("relative") << u"."_s;
        QTest::newRow("missing") << u"/nowhere/at/all"_s;
        QTest::newRow("address") << u"http://localhost/"_s;
        QTest::newRow("option") << u"-rf"_s;
    }
    void theShellRefusesWhatIsNotAnExistingAbsolutePath()
    {
        QFETCH(QString, path);
        QVERIFY(desktop().shell->execute(path) <= 32);
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
