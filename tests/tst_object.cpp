// The object base: names, texts, failures and their log, class shapes, settings defaults, files.

#include "testconfig.h"
#include "testlogger.h"

#include <zr8bitlib/zr8bitcomputer.h>
#include <zr8bitlib/zr8bitprocmos6510.h>
#include <zr8bitlib/zr8bitram.h>
#include <zrbaselib/zrutils.h>

#include <QtTest/QtTest>

using namespace ZR;

class tst_Object : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void classShape_data();
    void classShape();
    void texts();
    void failures();
    void settingsDefaults();
    void readFile();
};

namespace {

template <typename Class>
void addShape(const char *parent, const char *methods = "")
{
    QTest::newRow(Class::staticMetaObject.className())
        << &Class::staticMetaObject << Class::className() << QByteArray(parent) << QByteArray(methods);
}

} // namespace

void tst_Object::classShape_data()
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
}

void tst_Object::classShape()
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

void tst_Object::texts()
{
    ZR8BitRAM ram;
    QVERIFY(ram.name().isEmpty());
    QCOMPARE(ram.setName(QStringLiteral("MAIN")), QStringLiteral("MAIN"));
    QCOMPARE(ram.name(), QStringLiteral("MAIN"));
    ram.setDesc(QStringLiteral("title"), QStringLiteral("text"));
    QCOMPARE(ram.descHint() + ram.desc(), QStringLiteral("titletext"));
    ram.setDesc(QStringLiteral("other"));
    ram.setDescHint(QStringLiteral("hint"));
    QCOMPARE(ram.descHint() + ram.desc(), QStringLiteral("hintother"));
    QCOMPARE(static_cast<ZRObject *>(ram.qt_metacast("ZRObject")), static_cast<ZRObject *>(&ram));
    ZR8BitProcMOS6510 processor;
    QCOMPARE(qobject_cast<ZR8BitProcessorIface *>(&processor),
             static_cast<ZR8BitProcessorIface *>(&processor));
}

void tst_Object::failures()
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
        QStringLiteral("Invalid memory address: 0x00000003! Availabel: 0x00000000 - 0x-0000001");
    QCOMPARE(ram.lastErrorStr(), addressFailure);
    QCOMPARE(logger.lines.size(), 1);
    QVERIFY(logger.lineNumbers.first() > 0);
    const QString expected =
        QStringLiteral("%1|%2|zr8bitlib/zr8bitrom|").arg(int(QtCriticalMsg)).arg(addressFailure);
    QVERIFY2(logger.lines.first().startsWith(expected), qPrintable(logger.lines.first()));
    QVERIFY2(logger.lines.first().contains(QLatin1String("ZR::ZR8BitROM::byteValue(const int")),
             qPrintable(logger.lines.first()));

    QVERIFY(ram.setSize(1));
    QCOMPARE(ram.lastErrorStr(), addressFailure); // a success takes nothing back
}

void tst_Object::settingsDefaults()
{
    TestConfig config{{QStringLiteral("A.Word"), QStringLiteral(" Yes ")},
                      {QStringLiteral("A.Off"), QStringLiteral("off")},
                      {QStringLiteral("A.Long"), QStringLiteral("-5000000000")},
                      {QStringLiteral("A.Real"), QStringLiteral("2.5")}};
    const auto key = [](const char *field) { return QStringLiteral("A.") + QLatin1String(field); };
    QVERIFY(config.contains(key("Word")) && !config.contains(key("None")));
    QVERIFY(config.boolValue(key("Word"), false) && !config.boolValue(key("Off"), true));
    QVERIFY(config.boolValue(key("Real"), true) && !config.boolValue(key("None"), false));
    QCOMPARE(config.longValue(key("Long"), 1), Q_INT64_C(-5000000000));
    QCOMPARE(config.longValue(key("Word"), 1), 1);
    QCOMPARE(config.doubleValue(key("Real"), 1), 2.5);
    QCOMPARE(config.doubleValue(key("None"), 1), 1.0);
}

void tst_Object::readFile()
{
    QTemporaryDir dir;
    QFile file(dir.filePath(QStringLiteral("x.bin")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    const QByteArray content("a\r\n\0b", 5);
    QCOMPARE(file.write(content), 5);
    file.close();
    QByteArray data("old");
    QVERIFY(ZRUtils::readFile(file.fileName(), data));
    QCOMPARE(data, content);
    QVERIFY(!ZRUtils::readFile(dir.path(), data));
    QVERIFY(!ZRUtils::readFile(dir.filePath(QStringLiteral("none")), data));
}

QTEST_GUILESS_MAIN(tst_Object)
#include "tst_object.moc"
