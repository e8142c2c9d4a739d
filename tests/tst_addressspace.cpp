// The bus of memory blocks, devices and ports.

#include <zr8bitkit/zr8bitaddressspace.h>
#include <zr8bitlib/zr8bitram.h>

#include <QtTest/QtTest>

using namespace Qt::StringLiterals;
using namespace ZR;

class tst_AddressSpace : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// Thousands of maps of any kind at any place, and accesses beside a list of them that is searched from
    /// the top.
    void layers()
    {
        struct Layer
        {
            int first;
            int last;
            int shift;
            ZR8BitROM *block; ///< null for a device, which has the number of the map
            bool reads;
            bool writes;
            int number;
        };
        QRandomGenerator random(1);
        ZR8BitRAM ram;
        ZR8BitROM rom;
        QByteArray bytes(0x10400, '\0');
        random.fillRange(reinterpret_cast<quint32 *>(bytes.data()), bytes.size() / 4);
        ram.setContent(bytes);
        rom.setContent(bytes);
        ZR8BitAddressSpace space;
        std::vector<Layer> layers;
        int written = 0; ///< by the last call of a device
        for (int i = 1; i < 3000; ++i) {
            const int first = random.bounded(0x10000);
            const int length = 1 + random.bounded(qMin(0x10000 - first, i % 50 == 0 ? 0x10000 : 0x300));
            const int offset = random.bounded(0x100);
            ZR8BitROM *const blocks[] = {nullptr, &ram, &rom};
            ZR8BitROM *const block = blocks[random.bounded(3)];
            const bool reads = block || random.bounded(2);
            const bool writes = block ? block == &ram : random.bounded(2) != 0;
            const auto in = [i](quint16 address) { return quint8(address * 3 + i); };
            const auto out = [&written, i](quint16 address, quint8 value) {
                written = i + address * 5 + value;
            };
            QVERIFY(block ? space.mapMemory(first, block, offset, length)
                          : space.mapDevice(first, length, reads ? in : ZR8BitAddressSpace::ReadHandler(),
                                            writes ? out : ZR8BitAddressSpace::WriteHandler()));
            layers.push_back({first, first + length - 1, offset - first, block, reads, writes, i});
            for (int access = 0; access < 20; ++access) {
                const int address =
                    random.bounded(2) ? random.bounded(0x10000) : first + random.bounded(length);
                const auto top = [&](bool Layer::*answers) {
                    const auto at = std::find_if(layers.rbegin(), layers.rend(), [&](const Layer &l) {
                        return l.*answers && l.first <= address && address <= l.last;
                    });
                    return at == layers.rend() ? Layer{0, 0, 0, nullptr, false, false, 0} : *at;
                };
                const Layer read = top(&Layer::reads);
                const int expected = read.block    ? quint8(read.block->byteValue(address + read.shift))
                                     : read.number ? (address * 3 + read.number) & 0xFF
                                                   : 0xFF;
                QCOMPARE(int(space.read(quint16(address))), expected);

                const int value = random.bounded(256);
                const int before = written;
                const Layer wrote = top(&Layer::writes);
                space.write(quint16(address), quint8(value));
                if (wrote.block)
                    QCOMPARE(int(quint8(ram.byteValue(address + wrote.shift))), value);
                QCOMPARE(written, wrote.number && !wrote.block ? wrote.number + address * 5 + value : before);
            }
            if (i % 700 == 0) {
                space.clear();
                layers.clear();
            }
        }
        QVERIFY(rom.value(0, 0x10400) == bytes);
        QVERIFY(!ram.isThereError() && !rom.isThereError());
    }

    void ports()
    {
        ZR8BitAddressSpace space;
        QStringList heard;
        const auto in = [&](int value) {
            return [&heard, value](quint16 port) {
                heard += u"in %1"_s.arg(port);
                return quint8(value);
            };
        };
        QCOMPARE(int(space.in(4)), 0xFF);
        QVERIFY(space.mapPort(0xAB04, 0xFF, in(1), nullptr));
        QVERIFY(space.mapPort(0x0100, 0x0100, in(2), nullptr)); // above, for reads
        QCOMPARE(int(space.in(0x0204)), 1);
        QCOMPARE(int(space.in(0x0304)), 2);
        QVERIFY(space.mapPort(4, 0xFF, in(3), nullptr));
        QVERIFY(space.mapPort(4, 0xFF, nullptr, [&](quint16 port, quint8 value) {
            heard += u"out %1 %2"_s.arg(port).arg(value);
        }));
        QCOMPARE(int(space.in(0x0304)), 3);
        space.out(0x0304, 7);
        space.out(0x0305, 7);
        QCOMPARE(heard.join(u", "), u"in 516, in 772, in 772, out 772 7"_s);
        space.clear();
        QCOMPARE(int(space.in(4)), 0xFF);
    }

    /// Handlers that change the space while they run, as those of bank switches do.
    void changesWithin()
    {
        ZR8BitAddressSpace space;
        ZR8BitRAM ram;
        ram.setContent("ab");
        const QString text = u"a text of the handler's own"_s;
        QVERIFY(space.mapDevice(
            0, 1,
            [&, text](quint16) {
                space.clear();
                for (int i = 0; i < 200; ++i) // more than are kept without a look
                    space.mapMemory(0, &ram);
                return quint8(text.size());
            },
            nullptr));
        QCOMPARE(int(space.read(0)), int(text.size()));
        QCOMPARE(char(space.read(0)), 'a');
        QVERIFY(space.mapPort(0, 0, nullptr, [&, text](quint16, quint8) {
            space.mapPort(0, 0, nullptr, nullptr);
            space.clear();
            ram.setContent(text.toLatin1());
        }));
        space.out(1, 2);
        QCOMPARE(ram.size(), int(text.size()));
        QCOMPARE(int(space.read(0)), 0xFF);
    }

    void failures()
    {
        ZR8BitAddressSpace space;
        ZR8BitRAM ram(u"MAIN"_s);
        ram.setSize(0x100);
        const auto fails = [&](bool mapped, const char *message) {
            QVERIFY(!mapped);
            QCOMPARE(space.lastErrorStr(), QLatin1StringView(message));
        };
        fails(space.mapMemory(0, nullptr), "There is no block of memory to map!");
        fails(space.mapDevice(5, 0, nullptr, nullptr), "At least 1 byte can be mapped, not 0!");
        fails(space.mapMemory(0xFF01, &ram), "256 bytes from 65281 on do not fit into the 65536 addresses!");
        fails(space.mapMemory(0, &ram, 0x80, 0x81),
              "The memory block 'MAIN' of 256 bytes has no 129 bytes from 128 on!");
        fails(space.mapPort(0, 0x10000, nullptr, nullptr),
              "A port and its mask are 0 to 65535, not 0 and 65536!");
        QVERIFY(!space.mapPort(-1, 0, nullptr, nullptr) && !space.mapMemory(-1, &ram));
        QVERIFY(!space.mapMemory(INT_MAX, &ram) && !space.mapMemory(0, &ram, 0, -2));
        for (const int offset : {-1, 0x100, INT_MAX})
            QVERIFY(!space.mapMemory(0, &ram, offset));
        QCOMPARE(int(space.read(0)), 0xFF);
        QVERIFY(space.mapMemory(0xFF00, &ram));
    }
};

QTEST_GUILESS_MAIN(tst_AddressSpace)
#include "tst_addressspace.moc"
