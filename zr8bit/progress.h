#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QString>

/// Tells a person at a terminal how far a run is, on one line of standard error that goes away with this
/// object. Where standard error is no terminal, and within the first second, it shows nothing.
class Progress
{
public:
    Progress();
    ~Progress();
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;

    /// Shows how many instructions have run, when the line is older than a while.
    void show(qint64 instructionCount);

private:
    void _write(const QString &text);

    const bool _isTerminal;
    QElapsedTimer _timer;
    qint64 _nextTime = 1000; ///< milliseconds from the start
    qsizetype _width = 0;    ///< characters of the line that is shown
};
