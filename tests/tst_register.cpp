// Registers of 8 and 16 bits, and the status register with its flags.

#include "testlogger.h"

#include <zr8bitlib/zr8bitram.h>
#include <zr8bitlib/zrmos6510psregister.h>

#include <QtTest/QtTest>

using namespace Qt::StringLiterals;
using namespace ZR;

class tst_Register : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void values()
    {
        ZR8BitRegister reg;
        QVERIFY(reg.init(u"AC"_s, ZR8BitRegType8Bit, 5, nullptr)); // no address in an own block
        QCOMPARE(reg.id(), u"AC"_s);
        QCOMPARE(reg.value(), short(0));
        QSignalSpy spy(&reg, &ZR8BitRegister::onValueChanged);
        reg.setValue(0x1234);
        QCOMPARE(reg.value(), short(0x34));
        reg.setHi(char(0xFF));
        QCOMPARE(reg.value(), short(-1));
        reg.setLo(0x12);
        QCOMPARE(reg.hi(), char(0x12));
        QCOMPARE(spy.size(), 3);

        QVERIFY(reg.init(u"PC"_s, ZR8BitRegType16Bit, 0, nullptr));
        reg.setValue(short(0xFE34));
        QCOMPARE(reg.lo(), char(0x34));
        QCOMPARE(reg.hi(), char(0xFE));
        QCOMPARE(reg.value(), short(0xFE34));
    }

    void bits()
    {
        ZR8BitRegister reg;
        QVERIFY(reg.init(u"R"_s, ZR8BitRegType16Bit, 0, nullptr));
        QSignalSpy spy(&reg, &ZR8BitRegister::onValueChanged);
        for (char bit = 0; bit < 8; ++bit) {
            const int mask = 1 << bit;
            reg.setValue(0x00FF);
            reg.setHiBit(bit, 2);
            reg.setLoBit(bit, 0);
            QCOMPARE(int(reg.value()) & 0xFFFF, mask << 8 | (0xFF ^ mask));
            QCOMPARE(reg.hiBit(bit), static_cast<char>(mask));
            QCOMPARE(reg.loBit(bit) + reg.hiBit(static_cast<char>(bit ^ 1)), 0);
        }
        QCOMPARE(spy.size(), 8); // of setValue()
        reg.setValue(0x5AA5);
        for (const int bit : {-128, -1, 8, 31, 127}) {
            reg.setHiBit(static_cast<char>(bit), 1);
            reg.setLoBit(static_cast<char>(bit), 0);
            QCOMPARE(reg.hiBit(static_cast<char>(bit)), char(0));
        }
        QCOMPARE(reg.value(), short(0x5AA5));
    }

    void givenBlock()
    {
        ZR8BitRAM ram;
        QVERIFY(ram.setSize(8));
        ram.setWordValue(0x1234, 5);
        ZR8BitRegister reg;
        QVERIFY(reg.init(u"R"_s, ZR8BitRegType16Bit, 5, &ram));
        QCOMPARE(reg.value(), short(0x1234));
        reg.setHi(0x56);
        QCOMPARE(ram.byteValue(6), char(0x56));
        QVERIFY(!ram.isThereError());

        // At the last byte half of the register lies outside: the block tells, not the register.
        QVERIFY(reg.init(u"R"_s, ZR8BitRegType16Bit, 7, &ram));
        QSignalSpy spy(&reg, &ZR8BitRegister::onValueChanged);
        reg.setValue(0x0BCD);
        QCOMPARE(reg.value(), short(0x00CD));
        QVERIFY(!ram.isThereError());
        QCOMPARE(reg.hi(), char(0));
        QVERIFY(ram.isThereError());
        reg.setHi(1);
        QCOMPARE(spy.size(), 2);
        QVERIFY(!reg.isThereError());
    }

    void ownBlock()
    {
        TestLogger logger;
        ZR8BitRegister reg;
        reg.setLogger(&logger);
        QVERIFY(reg.init(u"R"_s, ZR8BitRegType8Bit, 0, nullptr));
        reg.setValue(7);
        auto *block = reg.findChild<ZR8BitRAM *>();
        QCOMPARE(block->logger(), nullptr);
        reg.setLogger(&logger);
        QCOMPARE(block->logger(), &logger);
        QCOMPARE(block->name(), u"RRegisterMemory"_s);
        QSignalSpy destroyed(block, &QObject::destroyed);
        QVERIFY(reg.init(u"S"_s, ZR8BitRegType16Bit, 0, nullptr));
        QCOMPARE(destroyed.size(), 1);
        QCOMPARE(reg.value(), short(0));
        QCOMPARE(reg.id(), u"S"_s);

        QVERIFY(reg.init(u"R"_s, static_cast<ZR8BitRegTypes>(7), 3, nullptr)); // no kind: no bytes
        reg.setValue(1);
        QCOMPARE(reg.value() + reg.hi() + reg.lo(), 0);

        ZR8BitRAM ram;
        QVERIFY(ram.setSize(1));
        QVERIFY(reg.init(u"T"_s, ZR8BitRegType8Bit, 0, &ram));
        QVERIFY(reg.findChildren<ZR8BitRAM *>().isEmpty());
    }

    void uninitialised()
    {
        ZRMOS6510PSRegister reg;
        QSignalSpy spy(&reg, &ZR8BitRegister::onValueChanged);
        reg.setValue(1);
        reg.setHi(1);
        reg.setLo(1);
        reg.setHiBit(0, 1);
        reg.setN(1);
        QCOMPARE(reg.value() + reg.hi() + reg.lo() + reg.hiBit(0) + reg.N(), 0);
        QCOMPARE(spy.size(), 0);
    }

    void flags()
    {
        using PS = ZRMOS6510PSRegister;
        const struct
        {
            int mask;
            char (PS::*read)();
            void (PS::*write)(const char &);
        } flags[] = {{0x80, &PS::N, &PS::setN}, {0x40, &PS::V, &PS::setV}, {0x10, &PS::B, &PS::setB},
                     {0x08, &PS::D, &PS::setD}, {0x04, &PS::I, &PS::setI}, {0x02, &PS::Z, &PS::setZ},
                     {0x01, &PS::C, &PS::setC}};
        PS ps;
        QVERIFY(ps.init(u"PS"_s, ZR8BitRegType8Bit, 0, nullptr));
        QCOMPARE(ps.value(), short(0x20));
        for (const auto &flag : flags) {
            (ps.*flag.write)(2);
            QCOMPARE((ps.*flag.read)(), static_cast<char>(flag.mask));
            QCOMPARE(ps.lo(), static_cast<char>(0x20 | flag.mask));
            ps.setLo(char(0xFF));
            (ps.*flag.write)(0);
            QCOMPARE((ps.*flag.read)(), char(0));
            QCOMPARE(ps.lo(), static_cast<char>(~flag.mask));
            ps.setLo(0x20);
        }
    }
};

QTEST_GUILESS_MAIN(tst_Register)
#include "tst_register.moc"
