#include "console.h"

#include "failure.h"
#include "numbers.h"

#include <QtCore/QtLogging>

#include <cstdio>

namespace {

// Noise in place of a sound would give a warning for every other byte.
constexpr qint64 LogWarningsShown = 20;
qint64 logWarnings = 0;

[[noreturn]] void failOutput()
{
    throw Failure(QStringLiteral("Couldn't write to standard output!"));
}

void printLogMessage(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type == QtCriticalMsg || type == QtFatalMsg)
        printError(QStringLiteral("zr8bit: error: ") + text);
    else if (++logWarnings <= LogWarningsShown)
        printWarning(text);
}

} // namespace

void print(const QString &text)
{
    printBytes(text.toUtf8());
}

void printBytes(const QByteArray &bytes)
{
    const auto size = static_cast<size_t>(bytes.size());
    if (std::fwrite(bytes.constData(), 1, size, stdout) != size)
        failOutput();
}

void flushOutput()
{
    // An earlier flush, in front of a warning, may have failed.
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0)
        failOutput();
}

void printError(const QString &line)
{
    QString shown;
    for (const QChar character : line) {
        if (character.category() == QChar::Other_Control)
            shown += QStringLiteral("\\x") + hexDigits(character.unicode(), 2);
        else
            shown += character;
    }
    std::fflush(stdout); // what was printed before comes first, also where both go to one place
    std::fprintf(stderr, "%s\n", shown.toUtf8().constData());
}

void printWarning(const QString &text)
{
    printError(QStringLiteral("zr8bit: warning: ") + text);
}

void showMessageLog()
{
    qInstallMessageHandler(printLogMessage);
}

void finishMessageLog()
{
    if (logWarnings > LogWarningsShown)
        printWarning(QStringLiteral("%1 more warnings are not shown").arg(logWarnings - LogWarningsShown));
}
