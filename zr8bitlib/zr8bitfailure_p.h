#pragma once

// How the model classes word and report their failures. Private to the library.

#include <QtCore/QString>

#include <type_traits>

/// Reports message as the last error of *this, with the line of the macro and the signature of the function
/// that it stands in. The name of the source file has to be in a constant `sourceFile`.
#define ZR_SET_LAST_ERROR(message) ZR_SET_LAST_ERROR_OF(Q_FUNC_INFO, message)

/// The same in a step of an operation, which reports with the operation's signature.
#define ZR_SET_LAST_ERROR_OF(operation, message)                                                             \
    _setLastError((message), QString::fromLatin1(sourceFile), __LINE__, QString::fromLocal8Bit(operation))

/// Reports message as above and stops the processor *this with it.
#define ZR_SET_HARDWARE_ISSUE(message)                                                                       \
    do {                                                                                                     \
        ZR_SET_LAST_ERROR(message);                                                                          \
        _setHardwareIssue(_lastError);                                                                       \
    } while (false)

namespace ZR {

constexpr int OpcodeDigits = 2;
constexpr int AddressDigits = 8;

/// An opcode or a memory address as messages show it: digits of base 16 in small letters, zero-filled.
template <typename Number>
QString hexText(Number number, int digits)
{
    static_assert(std::is_integral_v<Number>);
    return QStringLiteral("%1").arg(number, digits, 16, QLatin1Char('0'));
}

/// The failure of a readFromConfig() that is given no reader.
inline QString noConfigText()
{
    return QStringLiteral("Config handler must be defined!");
}

} // namespace ZR
