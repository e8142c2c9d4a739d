// The object base: names, texts, failures and their log, and the defaults of settings.

#include "testconfig.h"
#include "testlogger.h"

#include <zr8bitlib/zr8bitprocmos6510.h>
#include <zr8bitlib/zr8bitram.h>
#include <zr8bitlib/zr8bittvc.h>

#include <QtTest/QtTest>

using namespace Qt::StringLiterals;
using namespace ZR;

class tst_Object : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void texts()
    {
        ZR8BitTVC object(u"A"_s);
        QCOMPARE(object.name(), u"A"_s);
        QCOMPARE(object.setName(u"B"_s), u"B"_s);
        object.setDesc(u"title"_s, u"text"_s);
        QCOMPARE(object.descHint() + object.desc(), u"titletext"_s);
        object.setDesc(u"other"_s);
        object.setDescHint(u"hint"_s);
        QCOMPARE(object.name() + object.descHint() + object.desc(), u"Bhintother"_s);
        QCOMPARE(static_cast<ZRObject *>(object.qt_metacast("ZRObject")), static_cast<ZRObject *>(&object));
        ZR8BitProcMOS6510 processor;
        QCOMPARE(qobject_cast<ZR8BitProcessorIface *>(&processor),
                 static_cast<ZR8BitProcessorIface *>(&processor));
    }

    void failures()
    {
        TestLogger logger;
        ZR8BitRAM ram;
        QVERIFY(!ram.isThereError() && ram.lastErrorStr().isEmpty());
        QVERIFY(!ram.readFromConfig(QString(), nullptr));
        QVERIFY(ram.isThereError());

        ram.setLogger(&logger);
        QCOMPARE(ram.logger(), &logger);
        ram.byteValue(3);
        const QString addressFailure =
            u"Invalid memory address: 0x00000003! Availabel: 0x00000000 - 0x-0000001"_s;
        QCOMPARE(ram.lastErrorStr(), addressFailure);
        QCOMPARE(logger.lines.size(), 1);
        QVERIFY(logger.lineNumbers.first() > 0);
        const QString expected = u"%1|%2|zr8bitlib/zr8bitrom|"_s.arg(int(QtCriticalMsg)).arg(addressFailure);
        QVERIFY(logger.lines.first().startsWith(expected));
        QVERIFY(logger.lines.first().contains(u"ZR::ZR8BitROM::byteValue(const int"_s));

        QVERIFY(ram.setSize(1));
        QCOMPARE(ram.lastErrorStr(), addressFailure); // a success takes nothing back
    }

    void settingsDefaults()
    {
        TestConfig config{{u"Word"_s, u" Yes "_s}, {u"Off"_s, u"off"_s}, {u"Long"_s, u"-5000000000"_s}};
        QVERIFY(config.contains(u"Word"_s) && !config.contains(u"None"_s));
        QVERIFY(config.boolValue(u"Word"_s, false) && !config.boolValue(u"Off"_s, true));
        QVERIFY(config.boolValue(u"Long"_s, true) && !config.boolValue(u"None"_s, false));
        QCOMPARE(config.longValue(u"Long"_s, 1), Q_INT64_C(-5000000000));
        QCOMPARE(config.longValue(u"Word"_s, 1), 1);
        QCOMPARE(config.doubleValue(u"Long"_s, 1), -5e9);
        QCOMPARE(config.doubleValue(u"None"_s, 1), 1.0);
    }
};

QTEST_GUILESS_MAIN(tst_Object)
#include "tst_object.moc"
