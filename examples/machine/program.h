#pragma once

#include <QtCore/QByteArray>

/// The two banks of the ROM: a routine that prints the letter of its bank.
inline QByteArray exampleROM()
{
    const QByteArray one = QByteArray::fromHex("A941 8D00D0 60"); // LDA #'A', STA $D000, RTS
    const QByteArray two = QByteArray::fromHex("A942 8D00D0 60"); // LDA #'B', STA $D000, RTS
    return one.leftJustified(0x1000, '\0') + two.leftJustified(0x1000, '\0');
}

/// A program for $0200. It calls both banks, prints what the RAM below them holds, and waits for three ticks.
inline QByteArray exampleProgram()
{
    return QByteArray::fromHex("A903 8500"     // LDA #3, STA 0: two pins are outputs
                               "A92A 8D00A0"   // LDA #'*', STA $A000: into the RAM
                               "A901 8501"     // LDA #1, STA 1: bank 0
                               "2000A0"        // JSR $A000
                               "A903 8501"     // LDA #3, STA 1: bank 1
                               "2000A0"        // JSR $A000
                               "A900 8501"     // LDA #0, STA 1: no ROM
                               "AD00A0 8D00D0" // LDA $A000, STA $D000
                               "A904 8D10D0"   // LDA #4, STA $D010: a tick every 1,024 cycles
                               "58 4C2702");   // CLI, and wait at $0227
}

/// The handler of the interrupt, for $0300. It prints a point, and switches off after the third.
inline QByteArray exampleHandler()
{
    return QByteArray::fromHex("AD10D0"       // LDA $D010: takes the interrupt back
                               "A92E 8D00D0"  // LDA #'.', STA $D000
                               "E8 E003 D003" // INX, CPX #3, BNE over the next one
                               "8D20D0"       // STA $D020
                               "40");         // RTI
}
