#ifndef ZRNUMBERS_H
#define ZRNUMBERS_H

#include <zr8bitkit/zr8bitkit_export.h>

#include <QtCore/QString>

#include <optional>

namespace ZR {

/// Numbers as settings, command lines and listings of machines write them. Keeps no state: may be used from
/// any number of threads at once.
class ZR8BITKIT_EXPORT ZRNumbers
{
public:
    /// A whole number, written as 512, 0x200 or $200, with a minus in front when it is below 0. Nothing for
    /// any other text, also one with blanks around it, nor for a number beyond the range of int.
    static std::optional<int> parse(const QString &text);

    /// The same for a number of 64 bits.
    static std::optional<qint64> parseLong(const QString &text);

    /// A number in base 16, in capitals and with zeros in front up to the given count of digits. One below 0
    /// becomes its 32 bits.
    static QString hexDigits(int number, int digits);

    /// An address as assemblers write it, with at least four digits: $0200.
    static QString addressText(int address);
};

} // namespace ZR

#endif
