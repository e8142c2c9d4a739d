#pragma once

// A complete MOS 6510 with memory for tests.

#include <zr8bitkit/zr8bitprocmos6510full.h>
#include <zr8bitlib/zr8bitram.h>
#include <zr8bitlib/zr8bitregister.h>

#include <QtTest/QtTest>

using namespace Qt::StringLiterals;

inline QString hexOf(int value, int digits)
{
    return QString::number(0x10000 | value, 16).right(digits);
}

/// The complete processor in zeros, with two bytes more than it reaches. Its state is told in pairs such as
/// "AC=7f 1234=6005": registers by their ids and memory by its addresses, in hexadecimal digits.
struct Machine
{
    explicit Machine(bool undocumented = true)
    {
        processor.setUndocumented(undocumented);
        if (!ram.setSize(0x10002) || !processor.init())
            qFatal("no machine");
        processor.setMainMemory(&ram);
    }

    ZR::ZR8BitRegister *reg(const QString &id) { return processor.registers().value(id); }
    int valueOf(const QString &id) { return static_cast<unsigned short>(reg(id)->value()); }
    int step() { return static_cast<ZR8BitProcessorIface &>(processor).step(); }

    void set(const QString &state)
    {
        for (const QString &pair : state.split(u' ', Qt::SkipEmptyParts)) {
            const QString key = pair.section(u'=', 0, 0);
            const QString value = pair.section(u'=', 1);
            if (ZR::ZR8BitRegister *written = reg(key))
                written->setValue(static_cast<short>(value.toInt(nullptr, 16)));
            else
                ram.write(QByteArray::fromHex(value.toLatin1()), key.toInt(nullptr, 16));
        }
    }

    /// What there is now of a state, which may ask for the cycles, too.
    QString now(const QString &state)
    {
        QStringList pairs;
        for (const QString &pair : state.split(u' ', Qt::SkipEmptyParts)) {
            const QString key = pair.section(u'=', 0, 0);
            const auto digits = static_cast<int>(pair.section(u'=', 1).size());
            QString value = QString::fromLatin1(ram.value(key.toInt(nullptr, 16), digits / 2).toHex());
            if (reg(key))
                value = hexOf(valueOf(key), digits);
            else if (key == u"cycles"_s)
                value = QString::number(processor.cycles());
            pairs += key + u'=' + value;
        }
        return pairs.join(u' ');
    }

    ZR::ZR8BitRAM ram;
    ZR::ZR8BitProcMOS6510Full processor;
};
