// A whole machine: settings, a memory image, and its program run for some hundred steps beside a plain
// model of the processor; then the states of the machine of the kit that these settings make.

#include "fuzzing.h"

#include <zr8bitkit/zr8bitmachine.h>
#include <zr8bitkit/zrmapconfig.h>
#include <zr8bitlib/zr8bitcomputer.h>
#include <zr8bitlib/zr8bitram.h>
#include <zr8bitlib/zr8bitregister.h>

#include <QtCore/QTemporaryFile>

#include <array>

namespace {

constexpr int StepCount = 500;
constexpr int LargestIssueCount = 6;  // of bytes that are no instruction, which only take time
constexpr int LargestBlock = 0x10010; // goes beyond the addresses of the processor

/// The image over and over, up to a size.
QByteArray filled(const QByteArray &image, int size)
{
    return image.isEmpty() ? image : image.repeated(size / image.size() + 1).first(size);
}

/// The path of a file with this content. One file serves all executions, as making one takes longer than they
/// do.
QString fileOf(const QByteArray &content)
{
    static QTemporaryFile file;
    static QByteArray last;
    if (!file.isOpen() || content != last) {
        LAW((file.isOpen() || file.open()) && file.seek(0) && file.write(content) == content.size() &&
            file.flush() && file.resize(content.size()));
        last = content;
    }
    return file.fileName();
}

/// Settings in lines of key=value. The file of a block holds the image, as it is or filled to the size of the
/// block.
class TextConfig : public ZR::ZRMapConfig
{
public:
    TextConfig(const QString &text, const QByteArray &image)
        : _image(image)
    {
        for (const QString &line : text.split(u'\n')) {
            const qsizetype place = line.indexOf(u'=');
            if (place >= 0)
                setValue(line.left(place), line.mid(place + 1));
        }
    }

    QString stringValue(const QString &key, const QString &defaultValue) override
    {
        const QString value = ZRMapConfig::stringValue(key, defaultValue);
        if (!key.endsWith(QStringLiteral(".FilePath")) || value.isEmpty())
            return value;
        const QString sizeKey = key.chopped(8) + QStringLiteral("Size");
        return fileOf(value == QStringLiteral("filled") ? filled(_image, intValue(sizeKey, 0)) : _image);
    }

    int intValue(const QString &key, int defaultValue) override
    {
        return ZRMapConfig::intValue(key, defaultValue) % LargestBlock;
    }

private:
    QByteArray _image;
};

/// The values of the registers, in the order of their names.
using Values = std::array<int, 6>;
constexpr size_t AC = 0, PC = 1, PS = 2, XR = 4, YR = 5; // SP is 3

/// The processor as plain numbers, without a table, signals or locks. No instruction touches SP.
struct Model
{
    const QByteArray memory;
    Values reg;

    int byteAt(int address) const { return address < memory.size() ? memory[address] & 0xFF : 0; }
    int wordAt(int address) const { return byteAt(address) | byteAt(address + 1) << 8; }

    /// A byte of the instruction at PC, which goes on at the start of the memory.
    int fetch(int i) const
    {
        const int address = reg[PC] + i;
        return byteAt(address < memory.size() ? address : address & 0xFFFF);
    }

    /// Goes on to the next instruction. Returns the length.
    int skip(int length)
    {
        reg[PC] = (reg[PC] + length) & 0xFFFF;
        return length;
    }

    int add(int operand, int length);

    /// Runs one instruction and returns its length, 0 for an opcode that is none.
    int step();
};

int Model::add(int operand, int length)
{
    const int ac = reg[AC];
    const int sum = ac + operand + (reg[PS] & 1);
    const int overflow = ~(ac ^ operand) & (ac ^ sum) & 0x80;
    reg[AC] = sum & 0xFF;
    reg[PS] = (reg[PS] & 0x3C) | (sum & 0x80) | overflow >> 1 | (reg[AC] == 0) << 1 | sum >> 8;
    return skip(length);
}

int Model::step()
{
    const int low = fetch(1);
    const int word = low | fetch(2) << 8;
    // clang-format off
    switch (fetch(0)) {
    case 0x69: return add(low, 2);
    case 0x65: return add(byteAt(low), 2);
    case 0x75: return add(byteAt((low + reg[XR]) & 0xFF), 2);
    case 0x6D: return add(byteAt(word), 3);
    case 0x7D: return add(byteAt((word + reg[XR]) & 0xFFFF), 3);
    case 0x79: return add(byteAt((word + reg[YR]) & 0xFFFF), 3);
    case 0x61: return add(byteAt(wordAt((low + reg[XR]) & 0xFF)), 2);
    case 0x71: return add(byteAt((wordAt(low) + reg[YR]) & 0xFFFF), 2);
    case 0xAA: return skip(1);
    default: return 0;
    }
    // clang-format on
}

Values valuesOf(const QList<ZR::ZR8BitRegister *> &registers)
{
    Values values{};
    for (size_t i = 0; i < values.size(); ++i)
        values[i] = registers[static_cast<qsizetype>(i)]->value() & (i == PC ? 0xFFFF : 0xFF);
    return values;
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

void checkProgram(ZR8BitProcessorIface &processor, ZR::ZR8BitRAM &memory, const std::vector<short> &values)
{
    LAW(processor.init() && processor.step() == -1 && processor.hardwareIssue());
    processor.resetHardwareIssue();
    processor.setMainMemory(&memory);
    LAW(processor.registers().keys().join(u' ') == QStringLiteral("AC PC PS SP XR YR"));
    const QList<ZR::ZR8BitRegister *> registers = processor.registers().values();
    for (qsizetype i = 0; i < registers.size(); ++i)
        registers[i]->setValue(values[static_cast<size_t>(i)]);

    const QByteArray content = memory.value(0, memory.size());
    Model model{content, valuesOf(registers)};
    for (int i = 0, issues = 0; i < StepCount && issues < LargestIssueCount; ++i) {
        const int length = model.step();
        LAW(processor.step() == (length > 0 ? length : -1) && processor.hardwareIssue() == (length == 0));
        if (length == 0) {
            ++issues;
            LAW(processor.step() == 0 && !processor.hardwareIssueMsg().isEmpty());
            processor.resetHardwareIssue();
            model.skip(1);
            registers[PC]->setValue(static_cast<short>(model.reg[PC]));
        }
        LAW(valuesOf(registers) == model.reg);
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

/// Bytes that are no state of a machine change nothing; those that are one become its state.
void checkStates(const QString &settings, const QByteArray &image, int pos)
{
    TextConfig config(settings, image);
    ZR::ZR8BitMachine machine;
    if (!machine.load(&config)) {
        LAW(!machine.lastErrorStr().isEmpty() && !machine.processor() && machine.saveState().isEmpty());
        return;
    }
    machine.run({StepCount});
    const QByteArray state = machine.saveState();
    QByteArray mutated = state;
    for (qsizetype i = 0; i < image.size(); ++i) // most of what can be wrong stands in front of the blocks
        mutated[(pos + i) % qMin<qsizetype>(mutated.size(), 256)] ^= image[i];
    for (const QByteArray &bytes : {image, mutated, state.first(qBound(0, pos, int(state.size()))), state}) {
        const QByteArray before = machine.saveState();
        const bool isRestored = machine.restoreState(bytes);
        LAW(isRestored || (machine.saveState() == before && !machine.lastErrorStr().isEmpty()));
        LAW(!isRestored || machine.stateDifference(bytes, machine.saveState()).isEmpty());
        LAW(isRestored || bytes != state);
        machine.run({StepCount});
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, size_t size)
{
    FuzzedDataProvider input(bytes, size);
    std::vector<short> values(Values().size());
    for (short &value : values)
        value = input.ConsumeIntegral<short>();
    const int pos = input.ConsumeIntegralInRange(-1, LargestBlock);
    const ExactBytes rest = remainingBytes(input);
    const qsizetype zero = rest.bytes().indexOf('\0'); // stands between the settings and the image
    const qsizetype end = zero < 0 ? rest.bytes().size() : zero;
    const QString settings = QString::fromUtf8(rest.bytes().first(end));
    checkMachine(settings, rest.bytes().mid(end + 1), values, pos);
    checkStates(settings, rest.bytes().mid(end + 1), pos);
    return 0;
}
