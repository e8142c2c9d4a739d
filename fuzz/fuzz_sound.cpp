// Sounds in both directions, under any format and separator, and as samples, WAVE files and plots.

#include "fuzzing.h"

#include <zr8bitkit/zr8bittvcsoundplot.h>
#include <zr8bitkit/zr8bittvcwave.h>
#include <zr8bitlib/zr8bittvcsound.h>

#include <QtCore/QBuffer>
#include <QtCore/QtEndian>
#include <QtCore/QtLogging>

#include <algorithm>

using namespace Qt::StringLiterals;
using ZR::ZR8BitTVCSound;
using Wave = ZR::ZR8BitTVCWave;

namespace {

constexpr char EndByte = '\xF0';

/// How a sound is written.
struct Form
{
    QString format;
    QString separator;

    qsizetype recordSize() const
    {
        return format.size() + format.count(u'p', Qt::CaseInsensitive); // a pitch has two bytes
    }

    bool separatesNumbers() const
    {
        return !separator.isEmpty() && std::none_of(separator.begin(), separator.end(),
                                                    [](QChar character) { return character.isDigit(); });
    }

    bool isValid() const
    {
        return std::all_of(format.begin(), format.end(),
                           [](QChar letter) { return QStringLiteral("vpdVPD").contains(letter); });
    }
};

/// A stream that was written is read, and then written, as the same again.
void checkRoundTrip(const QByteArray &stream, const Form &form)
{
    QString text;
    LAW(ZR8BitTVCSound::binToSound(stream, text, form.format, form.separator));
    LAW(text.endsWith(QStringLiteral("240")));
    if (!form.separatesNumbers())
        return;
    QByteArray back;
    LAW(ZR8BitTVCSound::soundToBin(text, back, form.format, form.separator));
    LAW(back == stream);
}

void checkEncode(const QString &text, const Form &form)
{
    QByteArray stream("old");
    if (!ZR8BitTVCSound::soundToBin(text, stream, form.format, form.separator)) {
        LAW(form.isValid() || stream.isEmpty());
        return;
    }
    LAW(form.isValid() && stream.endsWith(EndByte));
    LAW((stream.size() - 1) % qMax<qsizetype>(form.recordSize(), 1) == 0);
    checkRoundTrip(stream, form);
}

void checkDecode(const QByteArray &stream, const Form &form)
{
    QString text = QStringLiteral("old");
    if (!ZR8BitTVCSound::binToSound(stream, text, form.format, form.separator)) {
        LAW(form.isValid() || text.isEmpty());
        return;
    }
    LAW(form.isValid());
    if (!form.separatesNumbers())
        return;
    QByteArray back;
    LAW(ZR8BitTVCSound::soundToBin(text, back, form.format, form.separator));
    LAW(back.size() == stream.size() || back.size() == stream.size() + 1); // an end that is missing is added
    checkRoundTrip(back, form);
}

constexpr qsizetype WaveHeader = 44;
constexpr qsizetype LongestPlayed = 40; ///< bytes of a sound that is played

/// A sound as samples, file and plot: all are made or refused alike. Returns the file.
QByteArray checkPlaying(const QByteArray &sound, const Wave::Options &options)
{
    QList<qint16> samples;
    QBuffer wave;
    QBuffer plot;
    QString error;
    LAW(wave.open(QIODevice::WriteOnly) && plot.open(QIODevice::WriteOnly));
    const bool isPlayed = Wave::samples(sound, options, samples);
    LAW(Wave::writeWave(sound, options, wave, {}, &error) == isPlayed && error.isEmpty() == isPlayed);
    LAW(ZR::ZR8BitTVCSoundPlot::write(sound, options, plot) == isPlayed && plot.data().isEmpty() != isPlayed);
    LAW(wave.data().size() == (isPlayed ? WaveHeader + 2 * samples.size() : 0));
    for (qsizetype i = 0; i < samples.size(); ++i)
        LAW(samples[i] == qFromLittleEndian<qint16>(wave.data().constData() + WaveHeader + 2 * i));
    LAW(std::all_of(samples.begin(), samples.end(), [](qint16 sample) { return qAbs(sample) <= 15 * 1024; }));
    return wave.data();
}

/// Records and the same as tones sound alike.
void checkTones(FuzzedDataProvider &input, const Wave::Options &options)
{
    QByteArray sound;
    QList<ZR::ZR8BitTVCTone> tones;
    while (input.remaining_bytes() > 0 && sound.size() < LongestPlayed) {
        ZR::ZR8BitTVCTone tone;
        const int duration = input.ConsumeIntegral<quint8>();
        const qint64 start = tones.isEmpty() ? 0 : tones.last().end;
        tone.end = start + duration * options.tick * ZR::ZR8BitTVCTone::TStates / 1000;
        tone.pitch = input.ConsumeIntegralInRange(1, 4095);
        tone.volume = input.ConsumeIntegralInRange(0, 15);
        for (const int byte : {tone.volume, tone.pitch >> 8, tone.pitch, duration})
            sound += static_cast<char>(byte);
        tones += tone;
    }
    QBuffer wave;
    LAW(wave.open(QIODevice::WriteOnly));
    LAW(Wave::writeWave(tones, options.rate, wave) && checkPlaying(sound + EndByte, options) == wave.data());
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
    const bool encode = input.ConsumeBool();
    Form form{QStringLiteral("vpd"), QStringLiteral(",")};
    if (input.ConsumeBool())
        form.separator = QString::fromStdString(input.ConsumeRandomLengthString(8));
    if (input.ConsumeBool()) {
        form.format.clear();
        for (int letters = input.ConsumeIntegralInRange(0, 5); letters > 0; --letters)
            form.format += QLatin1Char(input.PickValueInArray({'v', 'p', 'd', 'V', 'P', 'D', '\xE9'}));
    }
    const Wave::Options options{form.format, input.ConsumeIntegralInRange(0, 2),
                                input.ConsumeIntegralInRange(7999, 16000)};
    if (input.ConsumeBool() && options.tick > 0 && options.rate >= Wave::LowestRate)
        checkTones(input, {u"vpd"_s, options.tick, options.rate});
    if (encode) {
        checkEncode(remainingText(input).text(), form);
        return 0;
    }
    const ExactBytes stream = remainingBytes(input);
    checkDecode(stream.bytes(), form);
    checkPlaying(stream.bytes().first(qMin(stream.bytes().size(), LongestPlayed)), options);
    return 0;
}
