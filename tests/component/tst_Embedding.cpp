#include "support/OwnDisplay.h"
#include "support/SanitizedLibrary.h"
#include "support/TestCase.h"

#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <memory>

using namespace Qt::StringLiterals;
using tavrin::test::OwnDisplay;

namespace {

const QString Folder = QStringLiteral(TAVRIN_TESTS "/component");

constexpr int Patience = 30'000;

/// A program that answers each line that it is told.
class Talker
{
public:
    Talker(const QString& program, const QStringList& arguments, const QProcessEnvironment& environment)
    {
        m_process.setProcessEnvironment(environment);
        m_process.start(program, arguments);
    }
    ~Talker()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    Talker(const Talker&) = delete;
    Talker& operator=(const Talker&) = delete;

    QString hear()
    {
        while (!m_process.canReadLine()) {
            if (!m_process.waitForReadyRead(Patience))
                return u"silence: "_s + QString::fromUtf8(m_process.readAllStandardError());
        }
        return QString::fromUtf8(m_process.readLine()).trimmed();
    }
    QString tell(const QString& line)
    {
        m_process.write(line.toUtf8() + '\n');
        return hear();
    }
    void kill()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    /// -1 for one that crashes or does not end.
    int code()
    {
        m_process.closeWriteChannel();
        return m_process.waitForFinished(Patience) && m_process.exitStatus() == QProcess::NormalExit
                   ? m_process.exitCode()
                   : -1;
    }

private:
    QProcess m_process;
};

} // namespace

/// A control of one program inside a window of another, on a real display.
class tst_Embedding : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (const QString missing = OwnDisplay::missingForInput(); !missing.isEmpty())
            QSKIP(qPrintable(missing));
        if (QStandardPaths::findExecutable(u"cc"_s).isEmpty())
            QSKIP("cc is not installed");
        QVERIFY(m_folder.isValid());
        QProcess compiler;
        compiler.setProcessChannelMode(QProcess::MergedChannels);
        compiler.start(u"cc"_s, {u"-std=c99"_s, u"-pedantic"_s, u"-Wall"_s, u"-Wextra"_s, u"-Werror"_s,
                                 u"-I" TAVRIN_TESTS "/../src"_s, Folder + u"/embedded.c"_s, u"-o"_s,
                                 m_folder.filePath(u"embedded"_s), u"-ldl"_s});
        QVERIFY(compiler.waitForFinished());
        QVERIFY2(compiler.exitCode() == 0, compiler.readAll().constData());
    }
    void init() override
    {
        failOnUnexpectedWarnings();
        m_display = std::make_unique<OwnDisplay>();
        const QString display = m_display->start();
        QVERIFY2(!display.isEmpty(), qPrintable(m_display->output()));
        m_environment = QProcessEnvironment::systemEnvironment();
        m_environment.insert(u"DISPLAY"_s, display);
        m_environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
        m_environment.insert(u"XDG_DATA_HOME"_s, m_folder.path());
        m_environment.insert(u"XDG_RUNTIME_DIR"_s, m_folder.path());
        m_foreign = std::make_unique<Talker>(u"python3"_s, QStringList{Folder + u"/foreign_window.py"_s},
                                             m_environment);
        const QString window = m_foreign->hear();
        QVERIFY2(window.toULongLong() != 0, qPrintable(window));
        tavrin::test::letLoadSanitizedLibrary(m_environment);
        registerLibrary();
        m_program =
            std::make_unique<Talker>(m_folder.filePath(u"embedded"_s), QStringList{window}, m_environment);
        QCOMPARE(m_program->hear(), u"done"_s);
        QCOMPARE(m_program->tell(u"move 100 100 400 30"_s), u"done"_s);
        QCOMPARE(m_program->tell(u"put 1"_s), u"done"_s); // its list is there from here on
        QCOMPARE(m_program->tell(u"show"_s), u"done"_s);
    }
    void cleanup() override
    {
        m_program.reset();
        m_foreign.reset();
        m_display.reset();
        TestCase::cleanup();
    }

    void theControlAppearsInTheForeignWindowOnItsPlace()
    {
        QTRY_COMPARE(m_foreign->tell(u"children"_s), u"100 100 400 30 shown"_s);
        QTRY_VERIFY2(m_foreign->tell(u"colors"_s).toInt() > 10, "it paints nothing");
        QCOMPARE(m_program->tell(u"move 20 40 300 50"_s), u"done"_s);
        QTRY_COMPARE(m_foreign->tell(u"children"_s), u"20 40 300 50 shown"_s);
        QCOMPARE(m_program->tell(u"hide"_s), u"done"_s);
        QTRY_COMPARE(m_foreign->tell(u"children"_s), u"20 40 300 50 hidden"_s);
        QTRY_COMPARE(m_foreign->tell(u"colors"_s), u"1"_s);
    }

    void aClickGivesItTheKeysOfTheWindowUnderThePointer()
    {
        QCOMPARE(m_foreign->tell(u"focus"_s), u"done"_s);
        QTRY_COMPARE(m_foreign->tell(u"children"_s), u"100 100 400 30 shown"_s);
        QCOMPARE(m_foreign->tell(u"click 140 115"_s), u"done"_s);
        chooseByKeys();
    }

    void itsListOpensBelowIt()
    {
        QCOMPARE(m_foreign->tell(u"focus"_s), u"done"_s);
        QTRY_COMPARE(m_foreign->tell(u"children"_s), u"100 100 400 30 shown"_s);
        QCOMPARE(m_foreign->tell(u"others"_s), QString());
        QCOMPARE(m_foreign->tell(u"click 200 115"_s), u"done"_s);
        QTRY_VERIFY(!m_foreign->tell(u"others"_s).isEmpty());
        const QStringList list = m_foreign->tell(u"others"_s).split(u' ');
        QCOMPARE(list.size(), 4);
        QCOMPARE(list.at(0), u"100"_s);
        const int top = list.at(1).toInt();
        QVERIFY2(top > 115 && top <= 130, qPrintable(list.join(u' ')));
    }

    void aProgramHandsTheKeyboardOverWhereverThePointerIs()
    {
        QTRY_COMPARE(m_foreign->tell(u"children"_s), u"100 100 400 30 shown"_s);
        QCOMPARE(m_foreign->tell(u"point 5 5"_s), u"done"_s);
        QCOMPARE(m_foreign->tell(u"hand"_s), u"done"_s);
        QCOMPARE(m_foreign->tell(u"focused"_s), u"inside"_s);
        chooseByKeys();
    }

    void theEndOfTheForeignWindowLeavesAControlThatCanStillBeDriven_data()
    {
        QTest::addColumn<bool>("wholeProgram");
        QTest::addColumn<bool>("destroys");
        QTest::newRow("the window, then the control") << false << true;
        QTest::newRow("the program, then the control") << true << true;
        QTest::newRow("the window, then the application") << false << false;
        QTest::newRow("the program, then the application") << true << false;
    }
    void theEndOfTheForeignWindowLeavesAControlThatCanStillBeDriven()
    {
        QFETCH(bool, wholeProgram);
        QFETCH(bool, destroys);
        QTRY_COMPARE(m_foreign->tell(u"children"_s), u"100 100 400 30 shown"_s);
        if (wholeProgram)
            m_foreign->kill();
        else
            QCOMPARE(m_foreign->tell(u"close"_s), u"done"_s);
        QCOMPARE(m_program->tell(u"put 2"_s), u"done"_s);
        QCOMPARE(m_program->tell(u"get"_s), u"SSO: done"_s);
        for (const QString& line : {u"move 1 2 300 40"_s, u"hide"_s, u"show"_s})
            QCOMPARE(m_program->tell(line), u"done"_s);
        if (destroys)
            QCOMPARE(m_program->tell(u"destroy"_s), u"done"_s);
        QCOMPARE(m_program->tell(u"end"_s), u"done"_s);
        QCOMPARE(m_program->code(), 0);
    }

private:
    void registerLibrary()
    {
        QProcess python;
        python.setProcessEnvironment(m_environment);
        python.start(u"python3"_s,
                     {u"-c"_s, u"import ctypes, sys; sys.exit(ctypes.CDLL('%1').DllRegisterServer())"_s.arg(
                                   QStringLiteral(TAVRIN_COMPONENT))});
        QVERIFY(python.waitForFinished());
        QVERIFY2(python.exitCode() == 0, python.readAllStandardError().constData());
    }

    /// The keys go to the picker: they find an agency, and Enter takes it.
    void chooseByKeys()
    {
        QCOMPARE(m_foreign->tell(u"type south"_s), u"done"_s);
        QCOMPARE(m_foreign->tell(u"key Return"_s), u"done"_s);
        QCOMPARE(m_program->hear(), u"ItemSelect"_s);
        QCOMPARE(m_program->tell(u"get"_s), u"SSO: done"_s);
    }

    QTemporaryDir m_folder;
    std::unique_ptr<OwnDisplay> m_display;
    QProcessEnvironment m_environment;
    std::unique_ptr<Talker> m_foreign;
    std::unique_ptr<Talker> m_program;
};

TAVRIN_TEST_MAIN(tst_Embedding)
#include "tst_Embedding.moc"
