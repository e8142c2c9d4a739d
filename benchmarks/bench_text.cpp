// Conversions of the TVC beside what a user would pick instead, at 1, 4 and 16 MiB of bytes: text beside the
// Latin-1 conversions and a loop over a flat table, listings beside QByteArray::toHex() and a loop of split
// and toInt(), sound beside split and join. A time that grows as the size shows that a conversion is linear.
// Beside them a MIDI file of an hour, as a sound and as a text with notes.

#include <zr8bitkit/zr8bittvcmidi.h>
#include <zr8bitkit/zr8bittvctune.h>
#include <zr8bitlib/zr8bittvc.h>
#include <zr8bitlib/zr8bittvcsound.h>

#include <benchmark/benchmark.h>

#include <QtCore/QStringList>

#include <array>

using namespace ZR;

namespace {

/// Bytes that look random, from 0 up to a limit.
QByteArray makeBytes(benchmark::State &state, int limit)
{
    QByteArray bytes(static_cast<qsizetype>(state.range(0)), Qt::Uninitialized);
    quint32 random = 1;
    for (char &byte : bytes) {
        random = random * 1664525U + 1013904223U;
        byte = static_cast<char>((random >> 24) % static_cast<quint32>(limit));
    }
    return bytes;
}

QString makeText(benchmark::State &state)
{
    return ZR8BitTVC::TVCStrToQString(makeBytes(state, 0xA0));
}

/// Runs a conversion; the rate is that of the bytes on the TVC's side.
template <typename Input, typename Convert>
void run(benchmark::State &state, const Input &input, const Convert &convert)
{
    for (auto _ : state) {
        auto output = convert(input);
        benchmark::DoNotOptimize(output);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * state.range(0));
}

// Text

const std::array<uchar, 0x10000> codes = [] {
    std::array<uchar, 0x10000> table{};
    for (int unit = 0; unit < 0x10000; ++unit)
        table[static_cast<size_t>(unit)] =
            static_cast<uchar>(ZR8BitTVC::QStringToTVCStr(QString(QChar(unit))).at(0));
    return table;
}();

const std::array<char16_t, 0x100> units = [] {
    std::array<char16_t, 0x100> table{};
    for (int code = 0; code < 0x100; ++code)
        table[static_cast<size_t>(code)] =
            ZR8BitTVC::TVCStrToQString(QByteArray(1, static_cast<char>(code))).at(0).unicode();
    return table;
}();

QByteArray encodeByTable(const QString &text)
{
    QByteArray data(text.size(), Qt::Uninitialized);
    char *place = data.data();
    for (const QChar unit : text)
        *place++ = static_cast<char>(codes[unit.unicode()]);
    return data;
}

QString decodeByTable(const QByteArray &data)
{
    QString text(data.size(), Qt::Uninitialized);
    QChar *place = text.data();
    for (const char code : data)
        *place++ = QChar(units[static_cast<uchar>(code)]);
    return text;
}

void textEncode(benchmark::State &state)
{
    run(state, makeText(state), ZR8BitTVC::QStringToTVCStr);
}

void textEncodeFlatTable(benchmark::State &state)
{
    run(state, makeText(state), encodeByTable);
}

void textEncodeLatin1(benchmark::State &state)
{
    run(state, makeText(state), [](const QString &text) { return text.toLatin1(); });
}

void textDecode(benchmark::State &state)
{
    run(state, makeBytes(state, 0xA0), ZR8BitTVC::TVCStrToQString);
}

void textDecodeFlatTable(benchmark::State &state)
{
    run(state, makeBytes(state, 0xA0), decodeByTable);
}

void textDecodeLatin1(benchmark::State &state)
{
    run(state, makeBytes(state, 0xA0), [](const QByteArray &data) { return QString::fromLatin1(data); });
}

// Listings. The second argument is 1 for hexadecimal, the third is the values on a line.

QString makeListing(benchmark::State &state)
{
    return ZR8BitTVC::BinToDB(makeBytes(state, 0x100), state.range(1) != 0, false,
                              static_cast<int>(state.range(2)));
}

void listingEncode(benchmark::State &state)
{
    run(state, makeBytes(state, 0x100), [&state](const QByteArray &data) {
        return ZR8BitTVC::BinToDB(data, state.range(1) != 0, false, static_cast<int>(state.range(2)));
    });
}

void listingEncodeJoin(benchmark::State &state)
{
    run(state, makeBytes(state, 0x100), [&state](const QByteArray &data) {
        const bool hex = state.range(1) != 0;
        const auto perLine = static_cast<qsizetype>(state.range(2) > 0 ? state.range(2) : data.size());
        QStringList lines;
        for (qsizetype start = 0; start < data.size(); start += perLine) {
            QStringList values;
            for (const char byte : data.mid(start, perLine)) {
                const auto value = static_cast<uchar>(byte);
                values +=
                    hex ? QLatin1Char('$') + QString::number(value, 16).toUpper() : QString::number(value);
            }
            lines += QStringLiteral("DB ") + values.join(QLatin1Char(','));
        }
        return lines.join(QLatin1Char('\r'));
    });
}

void listingEncodeToHex(benchmark::State &state)
{
    run(state, makeBytes(state, 0x100), [](const QByteArray &data) { return data.toHex(','); });
}

void listingDecode(benchmark::State &state)
{
    run(state, makeListing(state), [](const QString &listing) {
        QByteArray data;
        benchmark::DoNotOptimize(ZR8BitTVC::DBToBin(listing, data));
        return data;
    });
}

void listingDecodeSplit(benchmark::State &state)
{
    run(state, makeListing(state), [](const QString &listing) {
        QByteArray data;
        const QStringList lines = listing.split(QLatin1Char('\r'));
        for (const QString &line : lines) {
            const QStringList values = line.mid(3).split(QLatin1Char(','));
            for (const QString &value : values)
                data += static_cast<char>(value.startsWith(QLatin1Char('$')) ? value.mid(1).toInt(nullptr, 16)
                                                                             : value.toInt());
        }
        return data;
    });
}

// Sound

const QString format = QStringLiteral("vpd");
const QString separator = QStringLiteral(",");

/// Records in range and the end byte.
QByteArray makeSound(benchmark::State &state)
{
    QByteArray sound = makeBytes(state, 15);
    for (qsizetype i = 2; i < sound.size(); i += 4)
        sound[i] = static_cast<char>(sound[i] | 1); // no pitch of 0
    return sound + '\xF0';
}

QString soundText(const QByteArray &sound)
{
    QString text;
    ZR8BitTVCSound::binToSound(sound, text, format, separator);
    return text;
}

void soundDecode(benchmark::State &state)
{
    run(state, makeSound(state), soundText);
}

void soundDecodeJoin(benchmark::State &state)
{
    run(state, makeSound(state), [](const QByteArray &sound) {
        QStringList numbers;
        const auto append = [&numbers](int value, int digits) {
            numbers += QString::number(value).rightJustified(digits, QLatin1Char('0'));
        };
        for (qsizetype i = 0; i + 3 < sound.size(); i += 4) {
            append(static_cast<uchar>(sound[i]), 2);
            append(static_cast<uchar>(sound[i + 1]) << 8 | static_cast<uchar>(sound[i + 2]), 4);
            append(static_cast<uchar>(sound[i + 3]), 3);
        }
        numbers += QStringLiteral("240");
        return numbers.join(separator);
    });
}

void soundEncode(benchmark::State &state)
{
    run(state, soundText(makeSound(state)), [](const QString &text) {
        QByteArray sound;
        benchmark::DoNotOptimize(ZR8BitTVCSound::soundToBin(text, sound, format, separator));
        return sound;
    });
}

void soundEncodeSplit(benchmark::State &state)
{
    run(state, soundText(makeSound(state)), [](const QString &text) {
        QByteArray sound;
        const QStringList numbers = text.split(separator);
        for (qsizetype i = 0; i < numbers.size(); ++i) {
            const int value = numbers[i].toInt();
            if (i % 3 == 1)
                sound += static_cast<char>(value >> 8);
            sound += static_cast<char>(value);
        }
        return sound;
    });
}

// MIDI

/// An hour of eight tracks with 16 notes a second each: 480 divisions are half a second.
QByteArray makeMidi()
{
    const auto chunk = [](const char *name, const QByteArray &bytes) {
        return name + QByteArray::fromHex(QByteArray::number(bytes.size(), 16).rightJustified(8, '0')) +
               bytes;
    };
    QByteArray file = chunk("MThd", QByteArray::fromHex("0001000801e0"));
    for (int track = 0; track < 8; ++track) {
        QByteArray events;
        for (int i = 0; i < 3600 * 16; ++i) {
            const auto note = static_cast<char>(40 + (i * (7 + track)) % 60);
            events += '\x0A';
            events += static_cast<char>(0x90 | track);
            events += note;
            events += '\x50';
            events += '\x32';
            events += note;
            events += '\0';
        }
        file += chunk("MTrk", events + QByteArray::fromHex("00ff2f00"));
    }
    return file;
}

void midiHour(benchmark::State &state)
{
    const QByteArray file = makeMidi();
    ZR8BitTVCTune::Options options;
    options.notes = true;
    for (auto _ : state) {
        QByteArray sound;
        QString text;
        if (!ZR8BitTVCMidi::toSound(file, sound) || !ZR8BitTVCTune::fromBytes(sound, text, options))
            state.SkipWithError("The file is refused");
        benchmark::DoNotOptimize(text);
    }
}

void sizes(benchmark::internal::Benchmark *benchmark)
{
    for (const int64_t size : {1, 4, 16})
        benchmark->Arg(size << 20);
    benchmark->Unit(benchmark::kMillisecond);
}

void listingSizes(benchmark::internal::Benchmark *benchmark)
{
    for (const int64_t size : {1, 4, 16}) {
        for (const int64_t hex : {0, 1})
            benchmark->Args({size << 20, hex, 0});
    }
    benchmark->Args({1 << 20, 0, 16})->Args({1 << 20, 1, 16})->Unit(benchmark::kMillisecond);
}

BENCHMARK(textEncode)->Apply(sizes);
BENCHMARK(textEncodeFlatTable)->Apply(sizes);
BENCHMARK(textEncodeLatin1)->Apply(sizes);
BENCHMARK(textDecode)->Apply(sizes);
BENCHMARK(textDecodeFlatTable)->Apply(sizes);
BENCHMARK(textDecodeLatin1)->Apply(sizes);
BENCHMARK(listingEncode)->Apply(listingSizes);
BENCHMARK(listingEncodeJoin)->Apply(listingSizes);
BENCHMARK(listingEncodeToHex)->Apply(sizes);
BENCHMARK(listingDecode)->Apply(listingSizes);
BENCHMARK(listingDecodeSplit)->Apply(listingSizes);
BENCHMARK(soundDecode)->Apply(sizes);
BENCHMARK(soundDecodeJoin)->Apply(sizes);
BENCHMARK(soundEncode)->Apply(sizes);
BENCHMARK(soundEncodeSplit)->Apply(sizes);
BENCHMARK(midiHour)->Unit(benchmark::kMillisecond);

} // namespace
