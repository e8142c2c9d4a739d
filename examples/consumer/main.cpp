// A host in a few lines: its own settings, a machine that is loaded and wired, and a program of two
// instructions.

#include <zr8bitlib/zr8bitcomputer.h>
#include <zr8bitlib/zr8bitram.h>
#include <zr8bitlib/zr8bitregister.h>
#include <zrbaselib/zrconfigiface.h>

#include <QtCore/QHash>

#include <cstdio>

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
    HashConfig config({{QStringLiteral("Computer.RAMs"), QStringLiteral("MAIN")},
                       {QStringLiteral("RAM_MAIN.Size"), QStringLiteral("65536")},
                       {QStringLiteral("Computer.Processors"), QStringLiteral("CPU")},
                       {QStringLiteral("PROC_CPU.Type"), QStringLiteral("MOS6510")}});
    ZR::ZR8BitComputer computer;
    if (!computer.readFromConfig(QString(), &config)) {
        std::fprintf(stderr, "%s\n", qPrintable(computer.lastErrorStr()));
        return 1;
    }

    ZR::ZR8BitRAM *memory = computer.rams().value(QStringLiteral("MAIN"));
    ZR8BitProcessorIface *processor = computer.processors().value(QStringLiteral("CPU"));
    processor->setMainMemory(memory);
    processor->init();

    memory->setValue(QByteArray("\x69\x7F\x69\x01", 4), 0); // ADC #$7F, ADC #$01
    while (processor->step() > 0)
        std::printf("AC = %d\n", processor->registers().value(QStringLiteral("AC"))->value());
    std::printf("%s\n", qPrintable(processor->hardwareIssueMsg()));
    return 0;
}
