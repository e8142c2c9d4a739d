// A host in a few lines: its own settings, a machine that is loaded, wired and run, and a picture for the
// TVC.

#include <zr8bitkit/zrmessagelogger.h>
#include <zr8bitlib/zr8bitcomputer.h>
#include <zr8bitlib/zr8bitram.h>
#include <zr8bitlib/zr8bitregister.h>
#include <zr8bitlib/zr8bittvccolor16.h>
#include <zrbaselib/zrconfigiface.h>

#include <QtCore/QHash>

#include <cstdio>

using namespace Qt::StringLiterals;

/// Settings in a hash. One name makes a list here.
class HashConfig : public ZRConfigIface
{
public:
    explicit HashConfig(const QHash<QString, QString> &settings)
        : _settings(settings)
    {
    }

    QString stringValue(const QString &key, const QString &defaultValue) override
    {
        return _settings.value(key, defaultValue);
    }

    QStringList stringListValue(const QString &key, const QStringList &defaultValue) override
    {
        return _settings.contains(key) ? QStringList{_settings.value(key)} : defaultValue;
    }

    int intValue(const QString &key, int defaultValue) override
    {
        return _settings.value(key, QString::number(defaultValue)).toInt();
    }

private:
    QHash<QString, QString> _settings;
};

int main()
{
    HashConfig config({{u"Computer.RAMs"_s, u"MAIN"_s},
                       {u"RAM_MAIN.Size"_s, u"65536"_s},
                       {u"Computer.Processors"_s, u"CPU"_s},
                       {u"PROC_CPU.Type"_s, u"MOS6510"_s}});
    ZR::ZRMessageLogger logger; // failures go to Qt's message log
    ZR::ZR8BitComputer computer;
    computer.setLogger(&logger);
    if (!computer.readFromConfig(QString(), &config)) {
        std::fprintf(stderr, "%s\n", qPrintable(computer.lastErrorStr()));
        return 1;
    }

    ZR::ZR8BitRAM *memory = computer.rams().value(u"MAIN"_s);
    ZR8BitProcessorIface *processor = computer.processors().value(u"CPU"_s);
    processor->setMainMemory(memory);
    if (!processor->init())
        return 1;

    memory->setValue(QByteArray("\x69\x7F\x69\x01", 4), 0); // ADC #$7F, ADC #$01
    while (processor->step() > 0)
        std::printf("AC = %d\n", processor->registers().value(u"AC"_s)->value());
    std::printf("%s\n", qPrintable(processor->hardwareIssueMsg()));

    QImage picture(4, 2, QImage::Format_RGB32); // a white dot on red
    picture.fill(Qt::red);
    picture.setPixelColor(1, 0, Qt::white);
    const QByteArray bytes = ZR::ZR8BitTVCColor16::QImageToTVC16Bin(picture);
    const QImage onTheTVC = ZR::ZR8BitTVCColor16::QImageFromTVC16Bin(bytes, picture.width());
    std::printf("%s is %s\n", bytes.toHex(' ').constData(),
                onTheTVC == picture ? "the same picture" : "another picture");
    return 0;
}
