// A whole machine: settings, a memory image, and its program run for some thousand steps beside a plain
// model of the processor.

#include "fuzzing.h"

#include <zr8bitlib/zr8bitcomputer.h>
#include <zr8bitlib/zr8bitram.h>
#include <zr8bitlib/zr8bitregister.h>
#include <zrbaselib/zrconfigiface.h>

#include <QtCore/QHash>
#include <QtCore/QStringList>
#include <QtCore/QTemporaryFile>

namespace {

constexpr int StepCount = 2000;
constexpr int LargestIssueCount = 20; // of bytes that are no instruction, which only take time
constexpr int LargestBlock = 0x20000;

/// The image over and over, up to a size.
QByteArray filled(const QByteArray &image, int size)
{
    return image.isEmpty() ? image : image.repeated(size / image.size() + 1).first(size);
}

/// Settings in lines of key=value; lists are separated by commas. The file of a block holds the image, as it
/// is or filled to the size of the block.
class TextConfig : public ZRConfigIface
{
public:
    TextConfig(const QString &text, const QByteArray &image)
        : _image(image)
    {
        LAW(_file.open());
        for (const QString &line : text.split(u'\n')) {
            const qsizetype place = line.indexOf(u'=');
            if (place >= 0)
                _values.insert(line.left(place), line.mid(place + 1));
        }
    }

    QString stringValue(const QString &key, const QString &defaultValue) override
    {
        if (!_values.contains(key))
            return defaultValue;
        const QString value = _values.value(key);
        if (!key.endsWith(QStringLiteral(".FilePath")) || value.isEmpty())
            return value;
        const QString sizeKey = key.chopped(8) + QStringLiteral("Size");
        return file(value == QStringLiteral("filled") ? filled(_image, intValue(sizeKey, 0)) : _image);
    }

    QStringList stringListValue(const QString &key, const QStringList &defaultValue) override
    {
        return _values.contains(key) ? _values.value(key).split(u',') : defaultValue;
    }

    int intValue(const QString &key, int defaultValue) override
    {
        return _values.contains(key) ? _values.value(key).toInt() % LargestBlock : defaultValue;
    }

private:
    QString file(const QByteArray &content)
    {
        LAW(_file.resize(0) && _file.seek(0) && _file.write(content) == content.size() && _file.flush());
        return _file.fileName();
    }

    QByteArray _image;
    QTemporaryFile _file;
    QHash<QString, QString> _values;
};

/// The processor as plain numbers, without a table, signals or locks.
struct Model
{
    const QByteArray memory;
    int ac = 0, xr = 0, yr = 0, pc = 0, ps = 0;

    int byteAt(int address) const { return address < memory.size() ? memory[address] & 0xFF : 0; }
    int wordAt(int address) const { return byteAt(address) | byteAt(address + 1) << 8; }

    /// A byte of the instruction at pc, which goes on at the start of the memory.
    int fetch(int i) const { return byteAt(pc + i < memory.size() ? pc + i : (pc + i) & 0xFFFF); }

    /// Runs one instruction and returns its length, 0 for an opcode that is none.
    int step();
};

int Model::step()
{
    const int low = fetch(1);
    const int word = low | fetch(2) << 8;
    int operand = 0;
    int length = 2;
    switch (fetch(0)) {
    case 0x69:
        operand = low;
        break;
    case 0x65:
        operand = byteAt(low);
        break;
    case 0x75:
        operand = byteAt((low + xr) & 0xFF);
        break;
    case 0x6D:
        operand = byteAt(word);
        length = 3;
        break;
    case 0x7D:
        operand = byteAt((word + xr) & 0xFFFF);
        length = 3;
        break;
    case 0x79:
        operand = byteAt((word + yr) & 0xFFFF);
        length = 3;
        break;
    case 0x61:
        operand = byteAt(wordAt((low + xr) & 0xFF));
        break;
    case 0x71:
        operand = byteAt((wordAt(low) + yr) & 0xFFFF);
        break;
    case 0xAA:
        pc = (pc + 1) & 0xFFFF;
        return 1;
    default:
        return 0;
    }
    const int sum = ac + operand + (ps & 1);
    const int overflow = ~(ac ^ operand) & (ac ^ sum) & 0x80;
    ac = sum & 0xFF;
    ps = (ps & 0x3C) | (ac & 0x80) | overflow >> 1 | (ac == 0) << 1 | sum >> 8;
    pc = (pc + length) & 0xFFFF;
    return length;
}

int valueOf(const QMap<QString, ZR::ZR8BitRegister *> &registers, const char *id)
{
    ZR::ZR8BitRegister *reg = registers.value(QString::fromLatin1(id));
    return reg->value() & (reg->regType() == ZR::ZR8BitRegType8Bit ? 0xFF : 0xFFFF);
}

/// The content of a block is the image, or zeros when it has no file.
void checkContent(ZR::ZR8BitROM &block, const QString &filePathKey, TextConfig &config,
                  const QByteArray &image)
{
    const QByteArray content = block.value(0, block.size());
    LAW(content.size() == block.size());
    const bool hasFile = !config.stringValue(filePathKey, QString()).isEmpty();
    LAW(content == (hasFile ? filled(image, block.size()) : QByteArray(block.size(), '\0')));
}

/// A write changes the bytes that it reaches, and no others.
void checkWrite(ZR::ZR8BitRAM &memory, const QByteArray &data, int pos)
{
    QByteArray expected = memory.value(0, memory.size());
    const bool isInside = pos >= 0 && pos < expected.size();
    if (isInside)
        expected = (expected.first(pos) + data).left(expected.size()) + expected.mid(pos + data.size());
    LAW(memory.write(data, pos) == isInside);
    LAW(memory.value(0, memory.size()) == expected);
}

void checkProgram(ZR8BitProcessorIface &processor, ZR::ZR8BitRAM &memory, std::vector<short> values)
{
    LAW(processor.init() && processor.step() == -1 && processor.hardwareIssue());
    processor.resetHardwareIssue();
    processor.setMainMemory(&memory);
    const QMap<QString, ZR::ZR8BitRegister *> registers = processor.registers();
    for (ZR::ZR8BitRegister *reg : registers) {
        reg->setValue(values.back());
        values.pop_back();
    }

    const QByteArray content = memory.value(0, memory.size());
    Model model{content,
                valueOf(registers, "AC"),
                valueOf(registers, "XR"),
                valueOf(registers, "YR"),
                valueOf(registers, "PC"),
                valueOf(registers, "PS")};
    const int sp = valueOf(registers, "SP"); // which no instruction touches
    for (int i = 0, issues = 0; i < StepCount && issues < LargestIssueCount; ++i) {
        const int length = model.step();
        LAW(processor.step() == (length > 0 ? length : -1) && processor.hardwareIssue() == (length == 0));
        if (length == 0) {
            ++issues;
            LAW(processor.step() == 0 && !processor.hardwareIssueMsg().isEmpty());
            processor.resetHardwareIssue();
            model.pc = (model.pc + 1) & 0xFFFF;
            registers.value(QStringLiteral("PC"))->setValue(static_cast<short>(model.pc));
        }
        LAW(valueOf(registers, "AC") == model.ac && valueOf(registers, "PC") == model.pc &&
            valueOf(registers, "PS") == model.ps && valueOf(registers, "XR") == model.xr &&
            valueOf(registers, "YR") == model.yr && valueOf(registers, "SP") == sp);
    }
    LAW(memory.value(0, memory.size()) == content);
}

void checkMachine(const QString &settings, const QByteArray &image, const std::vector<short> &values, int pos)
{
    TextConfig config(settings, image);
    ZR::ZR8BitComputer computer;
    const bool isLoaded = computer.readFromConfig(QString(), &config);
    LAW(isLoaded != computer.isThereError());
    LAW(isLoaded != computer.rams().isEmpty() && isLoaded != computer.processors().isEmpty());
    if (!isLoaded) {
        LAW(computer.roms().isEmpty());
        return;
    }
    for (const auto &[name, rom] : computer.roms().asKeyValueRange())
        checkContent(*rom, QStringLiteral("ROM_%1.FilePath").arg(name), config, image);
    for (const auto &[name, ram] : computer.rams().asKeyValueRange())
        checkContent(*ram, QStringLiteral("RAM_%1.FilePath").arg(name), config, image);
    ZR::ZR8BitRAM &memory = *computer.rams().first();
    checkProgram(*computer.processors().first(), memory, values);
    checkWrite(memory, image, pos);
    LAW(computer.readFromConfig(QString(), &config)); // the wired machine goes, and comes again
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, size_t size)
{
    constexpr int RegisterCount = 6;
    FuzzedDataProvider input(bytes, size);
    std::vector<short> values(RegisterCount);
    for (short &value : values)
        value = input.ConsumeIntegral<short>();
    const int pos = input.ConsumeIntegralInRange(-1, LargestBlock);
    const ExactBytes rest = remainingBytes(input);
    const qsizetype zero = rest.bytes().indexOf('\0'); // stands between the settings and the image
    const qsizetype end = zero < 0 ? rest.bytes().size() : zero;
    checkMachine(QString::fromUtf8(rest.bytes().first(end)), rest.bytes().mid(end + 1), values, pos);
    return 0;
}
