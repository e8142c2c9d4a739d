// Files that people bring: settings, programs and labels for machines, and tunes.

#include "fuzzing.h"

#include <zr8bitkit/zr8bitlabels.h>
#include <zr8bitkit/zr8bitprogramfile.h>
#include <zr8bitkit/zr8bittvcmidi.h>
#include <zr8bitkit/zr8bittvctune.h>
#include <zr8bitkit/zriniconfig.h>

#include <QtCore/QTemporaryFile>
#include <QtCore/QtLogging>

#include <cctype>

using namespace Qt::StringLiterals;
using ZR::ZR8BitProgramFile;
using Midi = ZR::ZR8BitTVCMidi;
using Tune = ZR::ZR8BitTVCTune;

namespace {

constexpr qsizetype MemorySize = 0x10000;

/// The settings of a file with this content; one file serves all executions.
bool load(ZR::ZRIniConfig &config, const QByteArray &content)
{
    static QTemporaryFile file;
    LAW((file.isOpen() || file.open()) && file.seek(0) && file.write(content) == content.size() &&
        file.flush() && file.resize(content.size()));
    const bool isLoaded = config.load(file.fileName());
    LAW(isLoaded != config.isThereError() && (isLoaded || config.unreadKeys().isEmpty()));
    return isLoaded;
}

void checkSettings(const QByteArray &content)
{
    ZR::ZRIniConfig config;
    if (load(config, content)) {
        for (const QString &key : config.unreadKeys()) {
            LAW(config.nameOf(key).startsWith(key + u" ("_s));
            config.stringListValue(key, {});
            config.intValue(key, 0);
        }
        LAW(config.unreadKeys().isEmpty());
    }
    // Any text between quotes is read as it is.
    const QString value = QString::fromUtf8(content).remove(u'\r').remove(u'\n').remove(QChar(0));
    const QByteArray quoted = QString(value).replace(u'"', u"\"\""_s).toUtf8();
    ZR::ZRIniConfig again;
    LAW(load(again, "[A]\nKey = \"" + quoted + "\" ; a comment\n# another\nOther=1"));
    LAW(again.stringValue(u"A.Key"_s, {}) == value && again.intValue(u"A.Other"_s, 0) == 1);
}

/// A program as the memory that it leaves.
QByteArray laidOut(const ZR8BitProgramFile::Program &program)
{
    QByteArray memory(MemorySize, '\0');
    for (const auto &[address, bytes] : program.segments) {
        LAW(address >= 0 && address + bytes.size() <= MemorySize);
        memory.replace(address, bytes.size(), bytes);
    }
    return memory;
}

QByteArray hexRecord(int address, int type, const QByteArray &bytes)
{
    QByteArray record;
    record += static_cast<char>(bytes.size());
    record += static_cast<char>(address >> 8);
    record += static_cast<char>(address);
    record += static_cast<char>(type) + bytes;
    char sum = 0;
    for (const char byte : std::as_const(record))
        sum = static_cast<char>(sum - byte);
    return ':' + (record + sum).toHex() + "\r\n";
}

void checkHex(FuzzedDataProvider &input)
{
    QByteArray hex;
    QByteArray memory(MemorySize, '\0');
    const size_t changed = input.ConsumeIntegral<quint16>();
    const int paragraph = input.ConsumeIntegral<quint16>() & 0xFFF; // of 16 bytes
    hex += hexRecord(0, 2, QByteArray::fromHex(QByteArray::number(0x10000 | paragraph, 16).mid(1)));
    while (input.remaining_bytes() > 0) {
        const int offset = input.ConsumeIntegral<quint16>();
        const auto bytes =
            input.ConsumeBytesWithTerminator<char>(input.ConsumeIntegralInRange<size_t>(0, 40), '!');
        const auto size = qMin(static_cast<qsizetype>(bytes.size()), MemorySize - offset - 16 * paragraph);
        if (size <= 0)
            continue;
        hex += hexRecord(offset, 0, QByteArray(bytes.data(), size));
        memory.replace(16 * paragraph + offset, size, QByteArray(bytes.data(), size));
    }
    hex += hexRecord(0, 1, {});
    const auto program = ZR8BitProgramFile::read(hex, u"any"_s);
    LAW(program && program->format == ZR8BitProgramFile::Format::IntelHex && laidOut(*program) == memory);
    // Each digit counts.
    char &digit = hex.data()[static_cast<qsizetype>(changed) % hex.size()];
    if (std::isxdigit(digit)) {
        digit = digit == '7' ? '8' : '7';
        LAW(!ZR8BitProgramFile::read(hex, u"any.hex"_s));
    }
}

void checkProgram(const QByteArray &content)
{
    for (const QString &name : {u"a.hex"_s, u"a.prg"_s, u"a"_s}) {
        QString error;
        const auto program = ZR8BitProgramFile::read(content, name, &error);
        LAW(program.has_value() == error.isEmpty());
        if (program)
            laidOut(*program);
    }
    const int address = content.size() < 2 ? 0 : (content[0] & 0xFF) | (content[1] & 0xFF) << 8;
    const auto prg = ZR8BitProgramFile::read(content, u"A.PRG"_s);
    const auto raw = ZR8BitProgramFile::readRaw(content.mid(2), address);
    LAW(!prg || prg->format != ZR8BitProgramFile::Format::Prg || laidOut(*prg) == laidOut(*raw));
}

void checkLabels(const QByteArray &text)
{
    ZR::ZR8BitLabels labels;
    labels.read(text);
    LAW(labels.skippedLineCount() <= text.count('\n') + text.count('\r') + 1);
    ZR::ZR8BitLabels written;
    QByteArray lines;
    for (int address = 0; address < MemorySize; ++address) {
        const QString name = labels.nameOf(static_cast<quint16>(address));
        LAW(name.isEmpty() || labels.addressOf(name) >= 0);
        if (labels.addressOf(name) == address)
            lines += name.toUtf8() + " = $" + QByteArray::number(address, 16) + '\n';
    }
    written.read(lines);
    LAW(written.skippedLineCount() == 0);
}

/// A text of notes is read as the bytes that it was written from.
void checkNotes(const QByteArray &sound, const Tune::Options &options)
{
    QString text;
    QByteArray back;
    LAW(Tune::fromBytes(sound, text, options) && Tune::toBytes(text, back, options) && back == sound);
}

void checkTune(const QString &text, const Tune::Options &options)
{
    QByteArray sound("old");
    QString error;
    const bool isRead = Tune::toBytes(text, sound, options, &error);
    LAW(isRead == error.isEmpty() && (isRead || sound == "old"));
    if (isRead)
        checkNotes(sound, options);
}

void checkMidi(const QByteArray &file, const Midi::Options &options)
{
    constexpr qsizetype LongestText = 4000; // of records
    QByteArray sound("old");
    ZR::ZR8BitTVCMidiReport report;
    QString error;
    const bool isRead = Midi::toSound(file, sound, options, &report, &error);
    LAW(isRead == error.isEmpty() && (isRead || sound == "old"));
    LAW(report.hidden + report.outOfRange <= report.notes - int(isRead));
    for (qsizetype i = 0; isRead && i < sound.size() - 1; i += 4)
        LAW(sound[i] >= 0 && sound[i] <= 15 && sound[i + 1] >= 0 && sound[i + 1] < 16 && sound[i + 3] != 0);
    Tune::Options notes;
    notes.notes = true;
    if (isRead && sound.size() < LongestText)
        checkNotes(sound, notes);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    ignoreMessages();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, size_t size)
{
    FuzzedDataProvider input(bytes, size);
    // clang-format off
    switch (input.ConsumeIntegralInRange(0, 5)) {
    case 0: checkSettings(remainingBytes(input).bytes()); break;
    case 1: checkTune(remainingText(input).text(), {u"vpd"_s, u","_s, true, true}); break;
    case 2: checkProgram(remainingBytes(input).bytes()); break;
    case 3: checkHex(input); break;
    case 4: {
        const Midi::Options options{input.ConsumeIntegralInRange(0, 3), input.ConsumeIntegralInRange(0, 16),
                                    input.ConsumeIntegralInRange(19, 250)};
        checkMidi(remainingBytes(input).bytes(), options);
        break;
    }
    default: checkLabels(remainingBytes(input).bytes());
    }
    // clang-format on
    return 0;
}
