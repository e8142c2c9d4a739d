#include "program.h"
#include "smallmachine.h"

#include <cstdio>

int main()
{
    SmallMachine computer(exampleROM());
    ZR::ZR8BitMachine &machine = computer.machine();
    if (!machine.loadBytes(exampleProgram(), 0x200) || !machine.loadBytes(exampleHandler(), 0x300) ||
        !machine.loadBytes(QByteArray::fromHex("0003"), 0xFFFE) || // where an IRQ goes
        !machine.setRegister(QStringLiteral("SP"), 0xFF) ||
        !machine.setRegister(QStringLiteral("PC"), 0x200)) {
        std::fprintf(stderr, "%s\n", qPrintable(machine.lastErrorStr()));
        return 1;
    }
    const bool isOff = computer.run(1'000'000);
    std::printf("%s\n%s after %llu cycles\n", computer.printed().constData(), isOff ? "Off" : "Still on",
                static_cast<unsigned long long>(machine.cycles()));
    return isOff ? 0 : 1;
}
