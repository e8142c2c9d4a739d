#pragma once

// A Z80 with memory for tests, and what is known of its instructions.

#include "testrows.h"

#include <zr8bitkit/zr8bitbus.h>
#include <zr8bitkit/zr8bitprocz80.h>

#include <array>

using namespace Qt::StringLiterals;

/// A Z80 in zeros on a bus. Its state is told in pairs such as "A=7f 1234=6005": registers by their ids and
/// memory by its addresses, in hexadecimal digits.
struct Machine : ZR::ZR8BitBus
{
    Machine()
    {
        processor.setBus(this);
        if (!processor.init())
            qFatal("no machine");
    }

    quint8 read(quint16 address) override { return memory[address]; }
    void write(quint16 address, quint8 value) override { memory[address] = value; }
    quint8 in(quint16 port) override { return static_cast<quint8>(port); }
    void out(quint16 port, quint8 value) override { written = port << 8 | value; }

    int step() { return static_cast<ZR8BitProcessorIface &>(processor).step(); }

    void load(const QByteArray &bytes, int address)
    {
        std::copy(bytes.begin(), bytes.end(), memory.begin() + address);
    }
    void set(const QString &state)
    {
        for (const QString &pair : state.split(u' ', Qt::SkipEmptyParts)) {
            const QString key = pair.section(u'=', 0, 0);
            const QString value = pair.section(u'=', 1);
            bool isAddress = false;
            const int address = key.toInt(&isAddress, 16);
            if (!processor.setRegisterValue(key, value.toInt(nullptr, 16)) && isAddress)
                load(bytesOf(value), address);
        }
    }
    /// What there is now of a state, which may ask for T states and for port and byte of an OUT, too.
    QString now(const QString &state)
    {
        QStringList pairs;
        for (const QString &pair : state.split(u' ', Qt::SkipEmptyParts)) {
            const QString key = pair.section(u'=', 0, 0);
            const auto digits = static_cast<int>(pair.section(u'=', 1).size());
            int value = processor.registerValue(key);
            if (key == u"T"_s)
                pairs += u"T="_s + QString::number(processor.cycles());
            else if (key == u"out"_s)
                value = written;
            else if (value < 0)
                value = memory[static_cast<quint16>(key.toInt(nullptr, 16))];
            if (key != u"T"_s)
                pairs += u"%1=%2"_s.arg(key).arg(value, digits, 16, '0'_L1);
        }
        return pairs.join(u' ');
    }

    std::array<quint8, 0x10000> memory = {};
    int written = 0;
    ZR::ZR8BitProcZ80 processor;
};

inline constexpr int prefixes[] = {0, 0xCB, 0xED, 0xDD, 0xFD, 0xDDCB, 0xFDCB};

/// The least T states of the main page: a digit for each opcode, from 0 to Z.
inline constexpr char timesOfMain[] = "4A7644744B764474"
                                      "8A764474CB764474"
                                      "7AG644747BG64474"
                                      "7AD6BBA47BD64474"
                                      "4444447444444474"
                                      "4444447444444474"
                                      "4444447444444474"
                                      "7777774744444474"
                                      "4444447444444474"
                                      "4444447444444474"
                                      "4444447444444474"
                                      "4444447444444474"
                                      "5AAAAB7B5AA4AH7B"
                                      "5AABAB7B54ABA47B"
                                      "5AAJAB7B54A4A47B"
                                      "5AA4AB7B56A4A47B";

/// What an instruction takes at least by the data sheet, and by what is known of the others.
inline int timeOf(int prefix, int code)
{
    const bool isBit = code >> 6 == 1;
    const bool isInMemory =
        (code & 0xC0) != 0xC0 && code >= 0x40 && code != 0x76 && ((code & 7) == 6 || (code & 0xF8) == 0x70);
    const int ofMain = QByteArray(1, timesOfMain[code]).toInt(nullptr, 36);
    switch (prefix) {
    case 0:
        return ofMain;
    case 0xCB:
        return (code & 7) != 6 ? 8 : isBit ? 12 : 15;
    case 0xED:
        if (code == 0x67 || code == 0x6F)
            return 18;
        if (isBit && (code & 0xF7) != 0x77)
            return QByteArray(1, "CCFK8E89"[code & 7]).toInt(nullptr, 36);
        return (code & 0xE4) == 0xA0 ? 16 : 8;
    case 0xDD:
    case 0xFD:
        return code == 0x34 || code == 0x35 ? 23 : code == 0x36 || isInMemory ? 19 : ofMain + 4;
    default:
        return isBit ? 20 : 23;
    }
}

/// What it takes more when it jumps, calls, returns or repeats itself.
inline int moreOf(int prefix, int code)
{
    if (prefix == 0xED)
        return (code & 0xF4) == 0xB0 ? 5 : 0;
    if ((prefix & 0xFF) == 0xCB)
        return 0;
    if ((code & 0xC7) == 0xC0)
        return 6;
    if ((code & 0xC7) == 0xC4)
        return 7;
    return code == 0x10 || (code & 0xE7) == 0x20 ? 5 : 0;
}

/// The bytes of an instruction with operands that leave nothing to chance.
inline QByteArray bytesOf(int prefix, int code, QByteArray operand)
{
    QByteArray bytes;
    if (prefix > 0xFF)
        bytes += static_cast<char>(prefix >> 8);
    if (prefix > 0)
        bytes += static_cast<char>(prefix);
    if (prefix > 0xFF)
        bytes += std::exchange(operand, operand.sliced(1))[0];
    return bytes + static_cast<char>(code) + operand;
}
