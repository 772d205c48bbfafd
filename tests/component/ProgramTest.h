#pragma once

#include "component/CallResult.h"
#include "support/SanitizedLibrary.h"
#include "support/TestCase.h"

#include <QDir>
#include <QFile>
#include <QMap>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

namespace tavrin::test {

inline const QString Root = QStringLiteral(TAVRIN_TESTS "/..");

/// The library's functions as C declares them: LastError stands behind two numbers of 32 bits.
inline const QString TellLastError = QStringLiteral(R"(
class Error(ctypes.Structure):
    _fields_ = [('result', ctypes.c_int32), ('number', ctypes.c_int32), ('source', ctypes.c_char_p),
                ('description', ctypes.c_char_p)]
class Library(ctypes.Structure):
    _fields_ = [('size', ctypes.c_uint32), ('version', ctypes.c_uint32),
                ('LastError', ctypes.CFUNCTYPE(ctypes.c_int32, ctypes.POINTER(Error)))]
found = ctypes.c_void_p()
library.DllGetClassObject(b'TVBoundControls.Library', b'TvLibrary', ctypes.byref(found))
error = Error()
ctypes.cast(found, ctypes.POINTER(Library)).contents.LastError(ctypes.byref(error))
print(result, error.description.decode())
)");

inline bool isMissing(const char* program)
{
    return QStandardPaths::findExecutable(QString::fromLatin1(program)).isEmpty();
}

/// What a program has said, and how it ended.
struct Outcome
{
    int code;
    QString output;
};

/// Base of the test cases that start programs which know the library by nothing but what is registered: it
/// registers the library in a folder of the test's own, and makes one program that calls where no Qt is.
class ProgramTest : public TestCase
{
protected:
    void init() override
    {
        failOnUnexpectedWarnings();
        for (const auto* needed : {"cc", "c++", "python3"}) {
            if (isMissing(needed))
                QSKIP(qPrintable(QString::fromLatin1(needed) + QStringLiteral(" is not installed")));
        }
        QVERIFY(m_folder.isValid());
        makeProgram();
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_folder.path()));
        const Outcome registered = callEntryPoint(QStringLiteral("DllRegisterServer"));
        QVERIFY2(registered.code == 0, qPrintable(registered.output));
    }
    void cleanup() override
    {
        QFile::remove(registrations());
        qunsetenv("XDG_DATA_HOME");
        TestCase::cleanup();
    }

    QString program() const { return m_folder.filePath(QStringLiteral("programs")); }
    QString folderPath(const QString& name) const { return m_folder.filePath(name); }
    QString registrations() const
    {
        return m_folder.filePath(QStringLiteral("TVBoundControls/components.ini"));
    }
    void write(const QByteArray& content) const
    {
        QFile file(registrations());
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        QCOMPARE(file.write(content), content.size());
    }
    /// In the file of registrations, which must hold `before`.
    void replace(const QByteArray& before, const QByteArray& after) const
    {
        QFile file(registrations());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QByteArray content = file.readAll();
        QVERIFY(before.isEmpty() || content.contains(before));
        if (!before.isEmpty())
            content.replace(before, after);
        write(content);
    }
    static Outcome runPython()
    {
        return run(QStringLiteral("python3"),
                   {Root + QStringLiteral("/examples/python/agency.py"), QStringLiteral("--check")});
    }

    static QString libraryPath() { return QStringLiteral(TAVRIN_COMPONENT); }

    /// In a program that knows nothing of it but the path. With `tells` that prints the result and the last
    /// error.
    static Outcome callEntryPoint(const QString& name, bool tells = false)
    {
        const QString call =
            QStringLiteral("import ctypes, sys; library = ctypes.CDLL('%1'); result = library.%2(); ")
                .arg(libraryPath(), name);
        return run(
            QStringLiteral("python3"),
            {QStringLiteral("-c"), call + (tells ? TellLastError : QStringLiteral("sys.exit(result)"))});
    }

    /// Runs a program to its end and gives all that it has said.
    static Outcome run(const QString& name, const QStringList& arguments, const QString& folder = {},
                       const QMap<QString, QString>& variables = {})
    {
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        tavrin::test::letLoadSanitizedLibrary(environment);
        for (auto variable = variables.begin(); variable != variables.end(); ++variable)
            environment.insert(variable.key(), variable.value());
        process.setProcessEnvironment(environment);
        if (!folder.isEmpty())
            process.setWorkingDirectory(folder);
        process.start(name, arguments);
        const bool ended = process.waitForFinished(120'000) && process.exitStatus() == QProcess::NormalExit;
        const QString output = QString::fromUtf8(process.readAll());
        return {ended ? process.exitCode() : -1, ended ? output : output + process.errorString()};
    }

private:
    void makeProgram() const
    {
        if (QFile::exists(program()))
            return;
        const Outcome made =
            run(QStringLiteral("cc"),
                {QStringLiteral("-std=c99"), QStringLiteral("-pedantic"), QStringLiteral("-Wall"),
                 QStringLiteral("-Wextra"), QStringLiteral("-Werror"),
                 QStringLiteral("-I") + Root + QStringLiteral("/src"),
                 Root + QStringLiteral("/tests/component/programs.c"), QStringLiteral("-o"), program(),
                 QStringLiteral("-ldl")});
        QVERIFY2(made.code == 0, qPrintable(made.output));
    }

    QTemporaryDir m_folder;
};

} // namespace tavrin::test
