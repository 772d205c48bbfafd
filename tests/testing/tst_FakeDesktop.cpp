#include "support/TestCase.h"
#include "testing/FakeDesktop.h"

#include <QDateTime>
#include <QStringList>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

class tst_FakeDesktop : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void boxesAreAnsweredByTheScriptAndKept()
    {
        const auto real = desktop().messageBoxes;
        {
            FakeMessageBoxes boxes;
            boxes.answerWith({BoxAnswer::No, BoxAnswer::Cancel});
            QStringList during;
            boxes.during([&] { during = boxes.texts(); });
            const auto ask = [](const QString& text) {
                return desktop().messageBoxes->show(nullptr, text, BoxIcon::Question, u"Title"_s,
                                                    BoxButtons::YesNo);
            };
            QCOMPARE(ask(u"one"_s), BoxAnswer::No);
            QCOMPARE(during, QStringList{u"one"_s});
            QCOMPARE(boxes.answersLeft(), 1);
            QCOMPARE(ask(u"two"_s), BoxAnswer::Cancel);
            QCOMPARE(ask(u"three"_s), BoxAnswer::Ok);
            QCOMPARE(boxes.shown().at(1).title, u"Title"_s);
            QCOMPARE(boxes.take().size(), 3);
            QCOMPARE(boxes.texts(), QStringList());
        }
        QCOMPARE(desktop().messageBoxes, real);
    }

    void filesAreChosenAndTheQuestionsKept()
    {
        const auto real = desktop().fileDialogs;
        {
            FakeFileDialogs dialogs;
            QCOMPARE(desktop().fileDialogs->openFiles(nullptr, u"Add"_s, {}, u"*.png"_s, true),
                     QStringList());
            dialogs.choose({u"/a.png"_s});
            QCOMPARE(desktop().fileDialogs->openFiles(nullptr, u"Cover"_s, {}, u"*"_s, false),
                     QStringList{u"/a.png"_s});
            QCOMPARE(dialogs.asked(), QStringList({u"Add|*.png|1"_s, u"Cover|*|0"_s}));
        }
        QCOMPARE(desktop().fileDialogs, real);
    }

    void theShellOpensNothing()
    {
        const auto real = desktop().shell;
        {
            FakeShell shell;
            QCOMPARE(desktop().shell->execute(u"/a"_s), 33);
            shell.answerWith(2);
            QCOMPARE(desktop().shell->execute(u"/b"_s), 2);
            QCOMPARE(shell.opened(), QStringList({u"/a"_s, u"/b"_s}));
        }
        QCOMPARE(desktop().shell, real);
    }

    void theClockStandsUntilItIsSet()
    {
        const auto real = desktop().clock;
        const QDateTime noon(QDate(2026, 5, 4), QTime(12, 0));
        {
            FakeClock clock(noon);
            QCOMPARE(desktop().clock->now(), noon);
            clock.setNow(noon.addDays(1));
            QCOMPARE(desktop().clock->now(), noon.addDays(1));
        }
        QCOMPARE(desktop().clock, real);
    }
};

TAVRIN_TEST_MAIN(tst_FakeDesktop)
#include "tst_FakeDesktop.moc"
