#include "progress.h"

#include "console.h"

#include <cstdio>

Progress::Progress()
    : _isTerminal(isTerminal(stderr))
{
    _timer.start();
}

Progress::~Progress()
{
    if (_width > 0)
        _write(QString());
}

void Progress::show(qint64 instructionCount)
{
    if (!_isDue())
        return;
    const double millions = static_cast<double>(instructionCount) / 1e6;
    const double seconds = static_cast<double>(_timer.elapsed()) / 1000;
    _write(QStringLiteral("%1 million instructions, %2 million a second")
               .arg(QString::number(millions, 'f', 1), QString::number(millions / seconds, 'f', 1)));
}

void Progress::show(const QString &units, qint64 done, qint64 total)
{
    if (_isDue())
        _write(QStringLiteral("%1 of %2 %3").arg(QString::number(done), QString::number(total), units));
}

/// Whether there is a terminal, and its line is older than a while.
bool Progress::_isDue()
{
    constexpr qint64 Pause = 200;
    const qint64 time = _timer.elapsed();
    if (!_isTerminal || time < _nextTime)
        return false;
    _nextTime = time + Pause;
    return true;
}

/// Writes the line over the one that is shown, and the cursor stands at its start then.
void Progress::_write(const QString &text)
{
    const QString line = text.leftJustified(_width);
    std::fprintf(stderr, "\r%s\r", line.toUtf8().constData());
    std::fflush(stderr);
    _width = text.size();
}
