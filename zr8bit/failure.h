#pragma once

#include <QtCore/QString>

#include <exception>

/// Ends a command with a text for the person who gave it. Becomes a line on standard error and exit code 1.
class Failure : public std::exception
{
public:
    explicit Failure(const QString &text)
        : _text(text)
    {
    }

    const QString &text() const { return _text; }

private:
    QString _text;
};

/// Ends a command with an exit code of its own, and without a word.
struct ExitStatus
{
    int code = 0;
};
