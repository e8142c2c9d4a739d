#pragma once

#include <zrbaselib/zrloggeriface.h>

#include <QtCore/QStringList>

/// Keeps the failures that it is told, as in "zr8bitlib/zr8bitrom byteValue: message".
class TestLogger : public ZRLoggerIface
{
public:
    bool write(const QString &message, QtMsgType type, const QString &file, int line,
               const QString &function) override
    {
        const QString operation = function.section(u'(', 0, 0).section(u':', -1);
        reports +=
            type == QtCriticalMsg ? file + u' ' + operation + QStringLiteral(": ") + message : function;
        lines += line;
        return true;
    }

    QStringList reports;
    QList<int> lines;
};
