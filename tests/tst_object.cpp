// The object base: names, texts, failures and their log, class shapes, settings defaults, files.

#include "testconfig.h"
#include "testlogger.h"

#include <zr8bitlib/zr8bitcomputer.h>
#include <zr8bitlib/zr8bitprocmos6510.h>
#include <zr8bitlib/zr8bitram.h>
#include <zr8bitlib/zr8bittvc.h>
#include <zrbaselib/zrutils.h>

#include <QtTest/QtTest>

using namespace Qt::StringLiterals;
using namespace ZR;

namespace {

template <typename Class>
void addShape(const char *parent, const char *methods = "")
{
    QTest::newRow(Class::staticMetaObject.className())
        << &Class::staticMetaObject << Class::className() << QByteArray(parent) << QByteArray(methods);
}

} // namespace

class tst_Object : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void classShape_data()
    {
        QTest::addColumn<const QMetaObject *>("meta");
        QTest::addColumn<QString>("className");
        QTest::addColumn<QByteArray>("parent");
        QTest::addColumn<QByteArray>("methods");
        addShape<ZR8BitComputer>("QObject");
        addShape<ZR8BitROM>("QObject");
        addShape<ZR8BitRAM>("ZR::ZR8BitROM");
        addShape<ZR8BitRegister>("QObject", "onValueChanged()");
        addShape<ZRMOS6510PSRegister>("ZR::ZR8BitRegister");
        addShape<ZR8BitProcBase>("QObject");
        addShape<ZR8BitProcMOS6510>("ZR::ZR8BitProcBase", "mc_ADC(ZR8BitProcCommand*,const char*)");
        addShape<ZR8BitProcCommand>("QObject", "execute(ZR8BitProcCommand*,const char*)");
        addShape<ZR8BitProcCommands>("QObject");
        addShape<ZR8BitTVC>("QObject");
    }

    void classShape()
    {
        QFETCH(const QMetaObject *, meta);
        QFETCH(QString, className);
        QFETCH(QByteArray, parent);
        QFETCH(QByteArray, methods);
        QCOMPARE(QLatin1String(meta->className()), QLatin1String("ZR::") + className);
        QCOMPARE(QByteArray(meta->superClass()->className()), parent);
        QByteArrayList found;
        for (int i = meta->methodOffset(); i < meta->methodCount(); ++i)
            found += meta->method(i).methodSignature();
        QCOMPARE(found.join(), methods);
    }

    void texts()
    {
        ZR8BitRAM ram;
        QVERIFY(ram.name().isEmpty());
        QCOMPARE(ram.setName(u"MAIN"_s), u"MAIN"_s);
        QCOMPARE(ram.name(), u"MAIN"_s);
        ram.setDesc(u"title"_s, u"text"_s);
        QCOMPARE(ram.descHint() + ram.desc(), u"titletext"_s);
        ram.setDesc(u"other"_s);
        ram.setDescHint(u"hint"_s);
        QCOMPARE(ram.descHint() + ram.desc(), u"hintother"_s);
        QCOMPARE(static_cast<ZRObject *>(ram.qt_metacast("ZRObject")), static_cast<ZRObject *>(&ram));
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
        QVERIFY2(logger.lines.first().startsWith(expected), qPrintable(logger.lines.first()));
        QVERIFY2(logger.lines.first().contains(QLatin1String("ZR::ZR8BitROM::byteValue(const int")),
                 qPrintable(logger.lines.first()));

        QVERIFY(ram.setSize(1));
        QCOMPARE(ram.lastErrorStr(), addressFailure); // a success takes nothing back
    }

    void settingsDefaults()
    {
        TestConfig config{{u"A.Word"_s, u" Yes "_s},
                          {u"A.Off"_s, u"off"_s},
                          {u"A.Long"_s, u"-5000000000"_s},
                          {u"A.Real"_s, u"2.5"_s}};
        const auto key = [](const char *field) { return u"A."_s + QLatin1String(field); };
        QVERIFY(config.contains(key("Word")) && !config.contains(key("None")));
        QVERIFY(config.boolValue(key("Word"), false) && !config.boolValue(key("Off"), true));
        QVERIFY(config.boolValue(key("Real"), true) && !config.boolValue(key("None"), false));
        QCOMPARE(config.longValue(key("Long"), 1), Q_INT64_C(-5000000000));
        QCOMPARE(config.longValue(key("Word"), 1), 1);
        QCOMPARE(config.doubleValue(key("Real"), 1), 2.5);
        QCOMPARE(config.doubleValue(key("None"), 1), 1.0);
    }

    void readFile()
    {
        QTemporaryDir dir;
        QFile file(dir.filePath(u"x.bin"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        const QByteArray content("a\r\n\0b", 5);
        QCOMPARE(file.write(content), 5);
        file.close();
        QByteArray data("old");
        QVERIFY(ZRUtils::readFile(file.fileName(), data));
        QCOMPARE(data, content);
        QVERIFY(!ZRUtils::readFile(dir.path(), data));
        QVERIFY(!ZRUtils::readFile(dir.filePath(u"none"_s), data));
    }
};

QTEST_GUILESS_MAIN(tst_Object)
#include "tst_object.moc"
