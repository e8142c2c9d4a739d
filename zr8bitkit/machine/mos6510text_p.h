#pragma once

// A state of a 6510 as a person reads it. Private to the kit.

#include <zr8bitkit/zrnumbers.h>

namespace ZR::MOS6510 {

inline QString stateHeading()
{
    return QStringLiteral("AC XR YR SP  NV-BDIZC");
}

/// The values of AC, XR, YR and SP, and of the flags in PS the letters of those that are set.
inline QString stateText(std::initializer_list<int> values, int status)
{
    QString text;
    for (const int value : values)
        text += ZRNumbers::hexDigits(value, 2) + QLatin1Char(' ');
    QString flags = QStringLiteral("NV-BDIZC");
    for (int i = 0; i < flags.size(); ++i) {
        if (flags.at(i) != QLatin1Char('-') && !(status & (0x80 >> i)))
            flags[i] = QLatin1Char('.');
    }
    return text + QLatin1Char(' ') + flags;
}

} // namespace ZR::MOS6510
