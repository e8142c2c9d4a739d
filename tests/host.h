#pragma once

// Runs the command line host as a process.

#include <QtCore/QProcess>
#include <QtTest/QtTest>

struct HostResult
{
    int exitCode = -1; ///< -1 when the host crashed or did not end
    QByteArray output;
    QByteArray errors;
};

inline HostResult runHost(const QStringList &arguments, const QByteArray &input = QByteArray())
{
    QProcess host;
    // Without a UTF-8 locale Qt warns on standard error.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    host.setProcessEnvironment(environment);
    host.start(QStringLiteral(ZR_HOST), arguments);
    host.write(input);
    host.closeWriteChannel();
    if (!host.waitForFinished(60000) || host.exitStatus() != QProcess::NormalExit)
        return {};
    return {host.exitCode(), host.readAllStandardOutput(), host.readAllStandardError()};
}

inline QString examplePath(const char *fileName)
{
    return QStringLiteral(ZR_EXAMPLES) + QLatin1Char('/') + QLatin1String(fileName);
}
