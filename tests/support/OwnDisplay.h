#pragma once

#include <QProcess>
#include <QStandardPaths>

namespace tavrin::test {

/// An X11 display that nobody sees, for programs that need a real one. It ends with this object.
class OwnDisplay
{
public:
    OwnDisplay() = default;
    ~OwnDisplay()
    {
        m_server.kill();
        m_server.waitForFinished();
    }
    OwnDisplay(const OwnDisplay&) = delete;
    OwnDisplay& operator=(const OwnDisplay&) = delete;

    /// What the machine lacks; "" when nothing.
    static QString missing()
    {
        if (QStandardPaths::findExecutable(QStringLiteral("Xvfb")).isEmpty())
            return QStringLiteral("Xvfb is not installed (package xvfb)");
        return {};
    }
    /// What it lacks for keys and pointer by x11_input.py; "" when nothing.
    static QString missingForInput()
    {
        if (const QString display = missing(); !display.isEmpty())
            return display;
        QProcess look;
        look.start(
            QStringLiteral("python3"),
            {QStringLiteral("-c"),
             QStringLiteral("import ctypes; ctypes.CDLL('libX11.so.6'); ctypes.CDLL('libXtst.so.6')")});
        if (!look.waitForFinished() || look.exitStatus() != QProcess::NormalExit || look.exitCode() != 0)
            return QStringLiteral("Python or libXtst is not installed (packages python3, libxtst6)");
        return {};
    }

    /// Its name; "" when it does not come up.
    QString start()
    {
        m_server.start(QStringLiteral("Xvfb"),
                       {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
                        QStringLiteral("0"), QStringLiteral("1680x1050x24"), QStringLiteral("-nolisten"),
                        QStringLiteral("tcp")});
        while (!m_server.canReadLine()) {
            if (!m_server.waitForReadyRead(30000))
                return {};
        }
        return u':' + QString::fromLatin1(m_server.readLine()).trimmed();
    }
    QString output() { return QString::fromLocal8Bit(m_server.readAllStandardError()); }

private:
    QProcess m_server;
};

} // namespace tavrin::test
