// A host in a few lines: a machine that is wired and run, and a picture for the TVC.

#include <zr8bitkit/zr8bitmachine.h>
#include <zr8bitkit/zrmapconfig.h>
#include <zr8bitlib/zr8bitprocbase.h>
#include <zr8bitlib/zr8bitregister.h>
#include <zr8bitlib/zr8bittvccolor16.h>

#include <cstdio>

using namespace Qt::StringLiterals;

int main()
{
    ZR::ZRMapConfig config{{u"Computer.RAMs"_s, u"MAIN"_s},
                           {u"RAM_MAIN.Size"_s, u"65536"_s},
                           {u"Computer.Processors"_s, u"CPU"_s},
                           {u"PROC_CPU.Type"_s, u"MOS6510"_s}};
    ZR::ZR8BitMachine machine;
    const QByteArray program("\x69\x7F\x69\x01", 4); // ADC #$7F, ADC #$01
    if (!machine.load(&config) || !machine.loadBytes(program, 0)) {
        std::fprintf(stderr, "%s\n", qPrintable(machine.lastErrorStr()));
        return 1;
    }
    while (machine.run({1}) == ZR::ZR8BitMachine::RunEnd::Count)
        std::printf("AC = %d\n", machine.findRegister(u"AC"_s)->value());
    std::printf("%s\n", qPrintable(machine.processor()->hardwareIssueMsg()));

    QImage picture(4, 2, QImage::Format_RGB32); // a white dot on red
    picture.fill(Qt::red);
    picture.setPixelColor(1, 0, Qt::white);
    const QByteArray bytes = ZR::ZR8BitTVCColor16::QImageToTVC16Bin(picture);
    const QImage onTheTVC = ZR::ZR8BitTVCColor16::QImageFromTVC16Bin(bytes, picture.width());
    std::printf("%s is %s\n", bytes.toHex(' ').constData(),
                onTheTVC == picture ? "the same picture" : "another picture");
    return 0;
}
