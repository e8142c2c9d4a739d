#include <zr8bitkit/zrmessagelogger.h>

#include <QtCore/QDebug>

namespace ZR {

bool ZRMessageLogger::write(const QString &message, QtMsgType type, const QString &file, int line,
                            const QString &function)
{
    const QByteArray fileName = file.toLocal8Bit();
    const QByteArray functionName = function.toLocal8Bit();
    const QMessageLogger logger(fileName.constData(), line, functionName.constData());
    switch (type) {
    case QtDebugMsg:
        logger.debug().noquote() << message;
        break;
    case QtInfoMsg:
        logger.info().noquote() << message;
        break;
    case QtWarningMsg:
        logger.warning().noquote() << message;
        break;
    case QtCriticalMsg:
    case QtFatalMsg:
        logger.critical().noquote() << message;
        break;
    }
    return true;
}

} // namespace ZR
