#include "component/ProgramTest.h"

#include <QDir>
#include <QScopeGuard>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace tavrin::test;

/// What programs are told when the library cannot be loaded by what is registered.
class tst_Loading : public tavrin::test::ProgramTest
{
    Q_OBJECT

private Q_SLOTS:
    void loadingTellsWhatIsWrong_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        QTest::addColumn<QString>("className");
        QTest::addColumn<int>("result");
        QTest::addColumn<QString>("text");
        const auto latLong = u"TVBoundControls.LatLong"_s;
        QTest::newRow("unknown class") << ""_ba
                                       << ""_ba << u"TVBoundControls.Nothing"_s << TV_E_CLASSNOTREGISTERED
                                       << u"The class is not registered"_s;
        QTest::newRow("other version")
            << "Version=1.0"_ba
            << "Version=2.0"_ba << latLong << TV_E_VERSION << u"of another version"_s;
        QTest::newRow("library gone") << "Library=/"_ba
                                      << "Library=/gone/"_ba << latLong << TV_E_LIBRARY << u"No such file"_s;
        QTest::newRow("another library")
            << QFile::encodeName(u"Library="_s + libraryPath()) << "Library=libc.so.6"_ba << latLong
            << TV_E_LIBRARY << u"no DllGetClassObject"_s;
        QTest::newRow("class gone") << "[TVBoundControls.LatLong]"_ba
                                    << "[TVBoundControls.Old]"_ba << u"TVBoundControls.Old"_s
                                    << TV_E_CLASSNOTAVAILABLE << u"does not have the class"_s;
    }
    void loadingTellsWhatIsWrong()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        QFETCH(QString, className);
        QFETCH(int, result);
        QFETCH(QString, text);
        replace(before, after);
        const Outcome outcome = run(program(), {className, QString::number(result)});
        QVERIFY2(outcome.code == 0 && outcome.output.contains(text), qPrintable(outcome.output));
    }

    void aFileThatIsDamagedIsToldAsOne_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("text"); // behind the file's path
        const auto library = "Library=" + QFile::encodeName(libraryPath()) + "\n";
        const QByteArray whole = "[TVBoundControls.LatLong]\n" + library + "Version=1.0\n";
        const QByteArray other = "; made by hand\n[Other.Thing]\nLibrary=/a\nVersion=3\n\n";
        const auto row = [](const char* name, const QByteArray& content, const QString& text) {
            QTest::newRow(name) << content << text;
        };
        row("random bytes", QByteArray::fromHex("89504e470d0a1a0affd8ffe000104a464946"),
            u": it is no text"_s);
        row("zeros", QByteArray(16, '\0'), u": it is no text"_s);
        row("zero in an entry", whole + "a=b" + QByteArray(1, '\0') + "c\n", u": it is no text"_s);
        row("no UTF-8", whole + "Name=\xc3\x28\n", u": it is no text"_s);
        row("surrogate", whole + "Name=\xed\xa0\x80\n", u": it is no text"_s);
        row("overlong", whole + "Name=\xc0\xaf\n", u": it is no text"_s);
        row("cut in a character", whole + "Name=\xf0\x9f\x98", u": it is no text"_s);
        row("cut in its first heading", "[TVBoundControls.Lat", u", line 1: a heading without an end"_s);
        row("heading of nothing", "[]\n" + whole, u", line 1: a heading without an end"_s);
        row("cut in its first group", "[TVBoundControls.LatLong]\nLibr",
            u", line 2: neither a heading nor an entry"_s);
        row("garbage before the groups", "garbage\n" + whole, u", line 1: neither a heading nor an entry"_s);
        row("garbage behind the group", whole + "garbage\n", u", line 4: neither a heading nor an entry"_s);
        row("entry before the groups", "a=b\n" + whole, u", line 1: an entry without a heading"_s);
        row("no key", whole + "=b\n", u", line 4: neither a heading nor an entry"_s);
        row("the same group twice", whole + "\n" + other + whole + "\n",
            u", line 10: a second group TVBoundControls.LatLong"_s);
        row("another group twice", other + whole + other, u", line 10: a second group Other.Thing"_s);
    }
    void aFileThatIsDamagedIsToldAsOne()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, text);
        write(content);
        const QString sentence = u"The file of registrations is damaged: "_s + registrations() + text;
        Outcome outcome = run(program(), {u"TVBoundControls.LatLong"_s, QString::number(TV_E_REGISTRATION)});
        QCOMPARE(outcome.output, sentence + u'\n');
        QCOMPARE(outcome.code, 0);
        outcome = callEntryPoint(u"DllRegisterServer"_s, true); // it judges alike
        QCOMPARE(outcome.output, u"%1 %2\n"_s.arg(TV_E_REGISTRATION).arg(sentence));
        outcome = runPython();
        QCOMPARE(outcome.output, u"The file of registrations is damaged: "_s + registrations() + u'\n');
        QCOMPARE(outcome.code, 1);
    }

    void aGroupThatLacksItsValuesIsDamaged_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("text");
        const QByteArray heading = "[TVBoundControls.AgencyPicker]\n";
        const QByteArray library = "Library=" + QFile::encodeName(libraryPath()) + "\n";
        QTest::newRow("no version") << heading + library << u"no Version for TVBoundControls.AgencyPicker"_s;
        QTest::newRow("no library") << heading + "Version=1.0\n"
                                    << u"no Library for TVBoundControls.AgencyPicker"_s;
        QTest::newRow("empty library") << heading + "Library=\nVersion=1.0\n"
                                       << u"no Library for TVBoundControls.AgencyPicker"_s;
        QTest::newRow("in the next group") << heading + "Version=1.0\n[TVBoundControls.LatLong]\n" + library
                                           << u"no Library for TVBoundControls.AgencyPicker"_s;
    }
    void aGroupThatLacksItsValuesIsDamaged()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, text);
        write(content);
        const QString sentence =
            u"The file of registrations is damaged: %1: %2\n"_s.arg(registrations(), text);
        Outcome outcome =
            run(program(), {u"TVBoundControls.AgencyPicker"_s, QString::number(TV_E_REGISTRATION)});
        QCOMPARE(outcome.output, sentence);
        QCOMPARE(outcome.code, 0);
        outcome = runPython();
        QCOMPARE(outcome.output, sentence);
        QCOMPARE(outcome.code, 1);
    }

    void aValueThatIsTooLongIsToldOf()
    {
        write("[TVBoundControls.LatLong]\nLibrary=/" + QByteArray(100'000, 'a') + "\nVersion=1.0\n");
        const Outcome outcome =
            run(program(), {u"TVBoundControls.LatLong"_s, QString::number(TV_E_REGISTRATION)});
        QCOMPARE(outcome.output, u"The file of registrations is damaged: "_s + registrations() +
                                     u": too long a Library for TVBoundControls.LatLong\n"_s);
        QCOMPARE(outcome.code, 0);
    }

    void whatOthersWriteIntoTheFileIsNoDamage()
    {
        write("\xef\xbb\xbf; " + QByteArray(20'000, 'x') +
              "\r\n[Other.Thing] \r\nName=\xf0\x9f\x98\x80 \xc3\xa4\r\n" + QByteArray(20'000, 'k') +
              "=[v]\r\n \t\r\n# [no] heading\r\n[TVBoundControls.LatLong]\r\nLibrary=" +
              QFile::encodeName(libraryPath()) + "\r\nVersion=1.0");
        const Outcome outcome = run(program(), {u"TVBoundControls.LatLong"_s});
        QVERIFY2(outcome.code == 0, qPrintable(outcome.output));
        QCOMPARE(callEntryPoint(u"DllRegisterServer"_s).code, 0);
    }

    void withoutRegistrationsLoadingTellsWhere()
    {
        QVERIFY(QFile::remove(registrations()));
        Outcome outcome =
            run(program(), {u"TVBoundControls.LatLong"_s, QString::number(TV_E_CLASSNOTREGISTERED)});
        QCOMPARE(outcome.output, registrations() + u": No control is registered\n"_s);
        QCOMPARE(outcome.code, 0);
        outcome = runPython();
        QCOMPARE(outcome.output, registrations() + u": No control is registered\n"_s);
        QCOMPARE(outcome.code, 1);
    }

    void aFileThatCannotBeReadIsToldAsOne()
    {
        QVERIFY(QFile::remove(registrations()));
        QVERIFY(QDir().mkpath(registrations())); // a folder bears its name
        const auto removeIt = qScopeGuard([this] { QDir(registrations()).removeRecursively(); });
        const QString sentence =
            u"The file of registrations cannot be read: "_s + registrations() + u": Is a directory\n"_s;
        Outcome outcome = run(program(), {u"TVBoundControls.LatLong"_s, QString::number(TV_E_REGISTRATION)});
        QCOMPARE(outcome.output, sentence);
        QCOMPARE(outcome.code, 0);
        outcome = runPython();
        QCOMPARE(outcome.output, sentence);
        QCOMPARE(outcome.code, 1);
    }

    void aFileThatThePersonMayNotReadIsToldAsOne()
    {
        QVERIFY(QFile::setPermissions(registrations(), {}));
        QStringList words{program(), u"TVBoundControls.LatLong"_s, QString::number(TV_E_REGISTRATION)};
        if (::getuid() == 0) { // who may read every file: somebody else loads
            for (const QString& part : {u"."_s, u"TVBoundControls"_s, u"programs"_s})
                QCOMPARE(::chmod(QFile::encodeName(folderPath(part)).constData(), 0755), 0);
            words = QStringList{u"setpriv"_s, u"--reuid=65534"_s, u"--regid=65534"_s, u"--clear-groups"_s} +
                    words;
        }
        const Outcome outcome = run(words.takeFirst(), words);
        QCOMPARE(outcome.output, u"The file of registrations cannot be read: "_s + registrations() +
                                     u": Permission denied\n"_s);
    }

    void theExampleInPythonTellsWhatIsWrong_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        QTest::addColumn<QString>("text");
        const auto own = QFile::encodeName(u"Library="_s + libraryPath());
        QTest::newRow("class not registered") << "[TVBoundControls.AgencyPicker]"_ba
                                              << "[TVBoundControls.Old]"_ba << u"is not registered"_s;
        QTest::newRow("other version") << "Version=1.0"_ba
                                       << "Version=2.0"_ba << u"of another version"_s;
        QTest::newRow("library gone") << own << "Library=/gone/lib.so"_ba << u"No such file"_s;
        QTest::newRow("another library") << own << "Library=libc.so.6"_ba << u"has no DllGetClassObject"_s;
    }
    void theExampleInPythonTellsWhatIsWrong()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        QFETCH(QString, text);
        replace(before, after);
        const Outcome outcome = runPython();
        QVERIFY2(outcome.code == 1 && outcome.output.contains(text) && outcome.output.count(u'\n') == 1,
                 qPrintable(outcome.output));
    }
};

TAVRIN_TEST_MAIN(tst_Loading)
#include "tst_Loading.moc"
