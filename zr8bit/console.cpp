#include "console.h"

#include "failure.h"

#include <zr8bitkit/zrnumbers.h>

#include <QtCore/QtLogging>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <system_error>

#ifdef Q_OS_WIN
#include <io.h>
#else
#include <unistd.h>
#endif

namespace {

// Noise in place of a sound would give a warning for every other byte.
constexpr qint64 LogWarningsShown = 20;
qint64 logWarnings = 0;

/// The number of the system's error when standard output first failed; 0 as long as it has not.
int outputError = 0;

/// Notes why standard output failed.
void noteOutputError()
{
    if (outputError == 0)
        outputError = errno;
}

[[noreturn]] void failOutput()
{
#ifdef SIGPIPE
    if (outputError == EPIPE)
        throw ReaderIsGone();
#endif
    throw Failure(QStringLiteral("Couldn't write to standard output: %1")
                      .arg(QString::fromLocal8Bit(std::generic_category().message(outputError))));
}

void printLogMessage(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    QString text = message;
    if (context.file)
        text += QStringLiteral(" [%1:%2, %3]")
                    .arg(QString::fromLocal8Bit(context.file), QString::number(context.line),
                         QString::fromLocal8Bit(context.function));
    if (type == QtCriticalMsg || type == QtFatalMsg)
        printError(QStringLiteral("zr8bit: error: ") + text);
    else if (++logWarnings <= LogWarningsShown)
        printWarning(text);
}

} // namespace

bool isTerminal(std::FILE *stream)
{
#ifdef Q_OS_WIN
    return _isatty(_fileno(stream)) != 0;
#else
    return isatty(fileno(stream)) != 0;
#endif
}

void print(const QString &text)
{
    printBytes(text.toUtf8());
}

void printBytes(const QByteArray &bytes)
{
    const auto size = static_cast<size_t>(bytes.size());
    if (std::fwrite(bytes.constData(), 1, size, stdout) != size) {
        noteOutputError();
        failOutput();
    }
}

void flushOutput()
{
    if (std::fflush(stdout) != 0)
        noteOutputError();
    if (outputError != 0) // or an earlier flush has failed, before a warning
        failOutput();
}

void endWithoutReader()
{
#ifdef SIGPIPE
    std::signal(SIGPIPE, SIG_DFL);
    std::raise(SIGPIPE);
#endif
    std::abort();
}

QString printable(const QString &text)
{
    QString shown;
    for (const QChar character : text) {
        if (character.category() == QChar::Other_Control)
            shown += QStringLiteral("\\x") + ZR::ZRNumbers::hexDigits(character.unicode(), 2);
        else
            shown += character;
    }
    return shown;
}

void printError(const QString &line)
{
    if (std::fflush(stdout) != 0) // what was printed before comes first, also where both go to one place
        noteOutputError();
    std::fprintf(stderr, "%s\n", printable(line).toUtf8().constData());
}

void printWarning(const QString &text)
{
    printError(QStringLiteral("zr8bit: warning: ") + text);
}

#ifdef Q_OS_WIN
ForeignMessages::ForeignMessages() = default;
ForeignMessages::~ForeignMessages() = default;
#else
ForeignMessages::ForeignMessages()
    : _kept(std::tmpfile())
    , _standardError(_kept ? dup(STDERR_FILENO) : -1)
{
    if (_standardError >= 0)
        dup2(fileno(_kept), STDERR_FILENO);
}

ForeignMessages::~ForeignMessages()
{
    if (_standardError >= 0) {
        dup2(_standardError, STDERR_FILENO);
        close(_standardError);
        std::rewind(_kept);
        std::array<char, 1000> line = {};
        while (std::fgets(line.data(), line.size(), _kept)) {
            const QString text = QString::fromUtf8(line.data()).trimmed();
            if (text.startsWith(QLatin1String("zr8bit: ")))
                printError(text); // our own
            else if (!text.isEmpty())
                printWarning(text);
        }
    }
    if (_kept)
        std::fclose(_kept);
}
#endif

void showMessageLog()
{
    qInstallMessageHandler(printLogMessage);
}

void finishMessageLog()
{
    if (logWarnings > LogWarningsShown)
        printWarning(QStringLiteral("%1 more warnings are not shown").arg(logWarnings - LogWarningsShown));
}
