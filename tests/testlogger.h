#pragma once

#include <zrbaselib/zrloggeriface.h>

#include <QtCore/QStringList>

/// Keeps what it is told, a line a message.
class TestLogger : public ZRLoggerIface
{
public:
    bool write(const QString &message, QtMsgType type, const QString &file, int line,
               const QString &function) override
    {
        lines += QStringLiteral("%1|%2|%3|%4").arg(QString::number(type), message, file, function);
        lineNumbers += line;
        return true;
    }

    QStringList lines;
    QList<int> lineNumbers;
};
