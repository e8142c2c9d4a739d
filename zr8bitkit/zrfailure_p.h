#pragma once

// How the classes of the kit report their failures. Private to the kit.

#include <QtCore/QString>

/// Reports message as the last error of *this, with the place where the macro stands, and gives false. The
/// source file is expected under the name `sourceFile`, as characters of a string literal.
#define ZR_FAIL(message)                                                                                     \
    (_setLastError((message), QString::fromLatin1(sourceFile), __LINE__,                                     \
                   QString::fromLocal8Bit(Q_FUNC_INFO)),                                                     \
     false)

namespace ZR {

/// Gives message as the error of a static operation, where that is asked for, and false.
inline bool fail(QString *error, const QString &message)
{
    if (error)
        *error = message;
    return false;
}

} // namespace ZR
