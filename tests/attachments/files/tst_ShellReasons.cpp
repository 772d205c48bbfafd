#include "attachments/files/ShellReasons.h"
#include "base/failure/Error.h"
#include "support/TestCase.h"
#include "testing/FakeDesktop.h"

using namespace Qt::StringLiterals;
using namespace tavrin;
using tavrin::test::FakeShell;

namespace {

const QString GeneralReason = u"A general error occurred trying to open the file."_s;

/// The error of opening a file when the desktop answers so; its number is 0 when there is none.
Error openingError(qint64 answer)
{
    FakeShell shell;
    shell.answerWith(answer);
    try {
        ShellOpenFile(u"/tmp/a b.pdf"_s);
    } catch (const Error& error) {
        return error;
    }
    return Error(QString(), 0);
}

} // namespace

/// Opening a file with the desktop's program, and the words for a refusal.
class tst_ShellReasons : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void eachAnswerHasItsReason_data()
    {
        QTest::addColumn<int>("answer");
        QTest::addColumn<QString>("reason");
        const auto row = [](int answer, const QString& reason) {
            QTest::addRow("%d", answer) << answer << reason;
        };
        row(0, u"The operating system is out of memory or resources."_s);
        row(2, u"The specified file was not found."_s);
        row(3, u"The specified path was not found."_s);
        row(5, u"The operating system denied access to the specified file."_s);
        row(8, u"There was not enough memory to complete the operation."_s);
        row(26, u"A sharing violation occurred."_s);
        row(27, u"The file name association is incomplete or invalid."_s);
        row(28, u"The DDE transaction could not be comlpete because the request timed out."_s);
        row(29, u"The DDE transaction failed."_s);
        row(30,
            u"The DDE transaction could not be completed because other DDE transactions were being processed."_s);
        row(31, u"There is no application associated with the given file name extension."_s);
        row(32, u"The specified DLL was not found."_s);
        for (const int other : {-32768, -1, 1, 4, 6, 7, 9, 10, 11, 25})
            row(other, GeneralReason);
    }
    void eachAnswerHasItsReason()
    {
        QFETCH(int, answer);
        QFETCH(QString, reason);
        QCOMPARE(shellReason(static_cast<qint16>(answer)), reason);
        const Error error = openingError(answer);
        QCOMPARE(error.Number, -1550908416);
        QCOMPARE(static_cast<quint32>(error.Number), 0xA38F0400U);
        QCOMPARE(error.Source, u"ShellOpenFile"_s);
        QCOMPARE(error.Description, u"Could not open file '/tmp/a b.pdf'. Reason: "_s + reason);
    }

    void anAnswerAbove32IsSuccess_data()
    {
        QTest::addColumn<int>("answer");
        QTest::newRow("33") << 33;
        QTest::newRow("42") << 42;
        QTest::newRow("32767") << 32767;
    }
    void anAnswerAbove32IsSuccess()
    {
        QFETCH(int, answer);
        QCOMPARE(shellReason(static_cast<qint16>(answer)), QString());
        QCOMPARE(openingError(answer).Number, 0);
    }

    void anAnswerBeyond16BitsRaisesOverflowAsItIsMeant_data()
    {
        QTest::addColumn<qint64>("answer");
        QTest::newRow("32768") << qint64(32768);
        QTest::newRow("65569, whose low half is 33") << qint64(65569);
        QTest::newRow("-32769") << qint64(-32769);
    }
    void anAnswerBeyond16BitsRaisesOverflowAsItIsMeant()
    {
        QFETCH(qint64, answer);
        const Error error = openingError(answer);
        QCOMPARE(error.Number, Error::OverflowNumber);
        QCOMPARE(error.Description, u"Overflow"_s);
    }

    void thePathGoesToTheDesktopAsItStands()
    {
        FakeShell shell;
        ShellOpenFile(u"/tmp/-rf; $(x) \"y\".pdf"_s);
        QCOMPARE(shell.opened(), QStringList{u"/tmp/-rf; $(x) \"y\".pdf"_s});
    }
};

TAVRIN_TEST_MAIN(tst_ShellReasons)
#include "tst_ShellReasons.moc"
