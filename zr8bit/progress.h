#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QString>

/// Tells a person at a terminal how far a long job is, on one line of standard error that goes away with this
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

    /// Shows how many units of a job, such as frames, are done of how many, in the same way.
    void show(const QString &units, qint64 done, qint64 total);

private:
    bool _isDue();
    void _write(const QString &text);

    const bool _isTerminal;
    QElapsedTimer _timer;
    qint64 _nextTime = 1000; ///< milliseconds from the start
    qsizetype _width = 0;    ///< characters of the line that is shown
};
