#include "console.h"

#include "failure.h"

#include <cstdio>

namespace {

[[noreturn]] void failOutput()
{
    throw Failure(QStringLiteral("Couldn't write to standard output!"));
}

} // namespace

void print(const QString &text)
{
    printBytes(text.toLocal8Bit());
}

void printBytes(const QByteArray &bytes)
{
    const auto size = static_cast<size_t>(bytes.size());
    if (std::fwrite(bytes.constData(), 1, size, stdout) != size)
        failOutput();
}

void flushOutput()
{
    if (std::fflush(stdout) != 0)
        failOutput();
}

void printError(const QString &line)
{
    std::fprintf(stderr, "%s\n", line.toLocal8Bit().constData());
}

QString fromArgument(const std::string &argument)
{
    return QString::fromLocal8Bit(argument.data(), static_cast<qsizetype>(argument.size()));
}
