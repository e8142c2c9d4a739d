#pragma once

// Runs the command line host as a process.

#include <QtCore/QProcess>
#include <QtTest/QtTest>

#include <functional>

struct HostResult
{
    int exitCode = -1; ///< -1 when the process crashed or did not end
    QByteArray output;
    QByteArray errors;
};

inline HostResult runProcess(QProcess &process, const QString &program, const QStringList &arguments,
                             const QByteArray &input = QByteArray())
{
    // The host does not depend on a UTF-8 locale, nor warns that there is none.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit)
        return {};
    return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
}

/// Runs the host; prepare is called in its process before it starts, where the system can do so.
inline HostResult runHost(const QStringList &arguments, const QByteArray &input = QByteArray(),
                          [[maybe_unused]] const std::function<void()> &prepare = {})
{
    QProcess host;
#ifdef Q_OS_UNIX
    host.setChildProcessModifier(prepare);
#endif
    return runProcess(host, QStringLiteral(ZR_HOST), arguments, input);
}

/// Runs a command line without blanks in its words, in which %1 stands for a path.
inline HostResult run(const char *line, const QString &path = QString(),
                      const QByteArray &input = QByteArray())
{
    QStringList arguments = QString::fromUtf8(line).split(u' ');
    arguments.replaceInStrings(QStringLiteral("%1"), path);
    return runHost(arguments, input);
}

inline QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

inline void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("no file");
}

inline QString examplePath(const char *fileName)
{
    return QStringLiteral(ZR_EXAMPLES) + QLatin1Char('/') + QLatin1String(fileName);
}
